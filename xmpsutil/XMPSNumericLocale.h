// Switches the process's numeric locale category to "C" for the lifetime of
// the object and restores the previous setting when it goes out of scope,
// also when an exception leaves the scope. The extended MPS reader and
// writer hold one for each section that reads or prints numbers, so that
// the decimal point is always "." whatever the host locale is.
//
//   {
//       XMPSNumericLocale cLocale;
//       value = std::strtod(text, nullptr);   // "." is the decimal point
//   }                                         // caller's locale is back
#pragma once

#include <string>

class XMPSNumericLocale {
public:
    XMPSNumericLocale();
    ~XMPSNumericLocale();
    XMPSNumericLocale(const XMPSNumericLocale&) = delete;
    XMPSNumericLocale& operator=(const XMPSNumericLocale&) = delete;

private:
    std::string m_previous;
    bool m_switched;
};
