// The model's named option settings. Keys and values are free text with no
// meaning to the library; each key may carry a value in the first column, a
// value in the second column, or both.
//
//   opt->SetOption("ITERLIM", "500", nullptr);   // first column only
//   opt->SetOption("ITERLIM", nullptr, "FIXED"); // second column only
//   opt->GetOptionValue("ITERLIM");              // "500"
//   opt->GetOptionSecondValue("ITERLIM");        // "FIXED"
//
// Persisted form (one block per column, first column first):
//   uint32 L (little-endian)   byte length of the body
//   L bytes                    name NUL value NUL, for each entry in key order
// An empty column is a length of 0 and no body.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

class IZEMOptionTable {
public:
    virtual ~IZEMOptionTable() = default;
    // Replaces the entry of `name` in each column whose value is non-empty;
    // a null or empty name does nothing.
    virtual void SetOption(const char* name, const char* value, const char* secondValue) = 0;
    // The value in the first or second column, or null when absent. The
    // pointer stays valid until that entry changes.
    virtual const char* GetOptionValue(const char* name) = 0;
    virtual const char* GetOptionSecondValue(const char* name) = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os) = 0;
    // Adds the entries read from the stream; a short read throws
    // ZEM_Exception "Error during read of ZEM Option List from binary file".
    virtual void StreamRead(std::istream* is) = 0;
    // Every option name that has a value in either column, in byte order.
    virtual void OptionNames(std::vector<std::string>& names) = 0;
    // Removes the first-column value of `name` (the second column stays);
    // nothing happens when there is none.
    virtual void RemoveOptionValue(const char* name) = 0;
};
