// Reads a model's names as a hierarchy of units: the part of a name before
// the first separator is its unit ("U1.FEED" belongs to unit "U1"). Made by
// the manager on first GetZEMHierarchyIntf and owned by it.
#pragma once

#include <string>
#include <vector>

class ILPVariableCollection;

class IZEMHierarchy {
public:
    virtual ~IZEMHierarchy() = default;
    virtual void SetSeparator(char sep) = 0;
    virtual char GetSeparator() const = 0;
    // Distinct units of the variable and equation names, in first-seen
    // order (variables first).
    virtual std::vector<std::string> Units() = 0;
    virtual int UnitVariableCount(const char* unit) = 0;
    virtual int UnitEquationCount(const char* unit) = 0;
    // Makes (or refills) the named collection of the manager with the unit's
    // variables; returns the collection size.
    virtual int CollectUnitVariables(const char* unit, const char* collectionName) = 0;
};
