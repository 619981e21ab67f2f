// The option table: two ordered maps from option name to text value, one per
// column, ordered bytewise by name. See IZEMOptionTable.h for the persisted
// form.
#pragma once

#include <map>
#include <string>

#include "zemmgr/IZEMOptionTable.h"

class ZEMOptionTable : public IZEMOptionTable {
public:
    ZEMOptionTable() = default;
    ~ZEMOptionTable() override = default;

    void SetOption(const char* name, const char* value, const char* secondValue) override;
    const char* GetOptionValue(const char* name) override;
    const char* GetOptionSecondValue(const char* name) override;
    void Display(std::ostream& os) override;
    void StreamWrite(std::ostream* os) override;
    void StreamRead(std::istream* is) override;
    void OptionNames(std::vector<std::string>& names) override;
    void RemoveOptionValue(const char* name) override;

    using Column = std::map<std::string, std::string>;
    const Column& FirstColumn() const { return m_first; }
    const Column& SecondColumn() const { return m_second; }

private:
    static void WriteColumn(std::ostream* os, const Column& column);
    static void ReadColumn(std::istream* is, Column& column);

    Column m_first;
    Column m_second;
};
