// The manifest of a nonlinear block: the named text fields that tell the
// external modelling host how to build one block (its instance name, where
// its model source is and of which kind, its solver, scripts and the map of
// its inputs and outputs).
//
//   NLBlockManifest m;
//   m.Set(NLBlockManifest::kBlockInstanceName, "CDU1");
//   m.Set(NLBlockManifest::kModelSourceType, "FILE");
//   m.Set(NLBlockManifest::kSourceFileSpec, "cdu.mdl");
//   bool ok = m.Verify();                 // true: the required fields are set
//
// Every field starts as "". The manifest only records; building the block
// from it needs the host, which this library build does not have.
#pragma once

#include <array>
#include <string>

class NLBlockManifest {
public:
    enum Field {
        kGQTModelType,
        kKebDfFileSpec,
        kBlockInstanceName,
        kDelayLoad,
        kInitScriptSpec,
        kInputOutputMap,
        kModelSourceType,
        kPerioModelTags,
        kSolver,
        kSourceDirSpec,
        kSourceFileSpec,
        kFieldCount
    };

    void Destroy() { delete this; }
    const std::string& Get(Field f) const { return m_fields[f]; }
    void Set(Field f, const char* text) { m_fields[f] = text ? text : ""; }
    // True when every required field (instance name, model source type and
    // source file) is non-empty.
    bool Verify() const;
    // The field's name as the Get/Set operations spell it ("BlockInstanceName").
    static const char* FieldName(Field f);

private:
    std::array<std::string, kFieldCount> m_fields;
};
