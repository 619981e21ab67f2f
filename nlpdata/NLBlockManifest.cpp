#include "nlpdata/NLBlockManifest.h"

namespace {

struct FieldRow {
    const char* name;
    bool required;
};

// In the order of NLBlockManifest::Field.
const FieldRow kFields[NLBlockManifest::kFieldCount] = {
    {"GQTModelType", false},   {"KebDfFileSpec", false},  {"BlockInstanceName", true},
    {"DelayLoad", false},      {"InitScriptSpec", false}, {"InputOutputMap", false},
    {"ModelSourceType", true}, {"PerioModelTags", false}, {"Solver", false},
    {"SourceDirSpec", false},  {"SourceFileSpec", true},
};

}  // namespace

bool NLBlockManifest::Verify() const {
    for (int f = 0; f < kFieldCount; ++f)
        if (kFields[f].required && m_fields[f].empty()) return false;
    return true;
}

const char* NLBlockManifest::FieldName(Field f) { return kFields[f].name; }
