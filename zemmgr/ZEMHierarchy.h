// The hierarchy companion of ZEMMgr. See IZEMHierarchy.h.
#pragma once

#include "zemmgr/IZEMHierarchy.h"

class IZEMDataMgr;

class ZEMHierarchy : public IZEMHierarchy {
public:
    explicit ZEMHierarchy(IZEMDataMgr* mgr) : m_mgr(mgr) {}
    void SetSeparator(char sep) override { m_sep = sep; }
    char GetSeparator() const override { return m_sep; }
    std::vector<std::string> Units() override;
    int UnitVariableCount(const char* unit) override;
    int UnitEquationCount(const char* unit) override;
    int CollectUnitVariables(const char* unit, const char* collectionName) override;

private:
    // The unit part of a name, or false when the name has no separator.
    bool UnitOf(const char* name, std::string& unit) const;

    IZEMDataMgr* m_mgr;
    char m_sep = '.';
};
