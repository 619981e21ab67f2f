// printf-style formatting into std::string for the model listings, and the
// letter-spaced headings' underlines.
//
//   os << lpfmt::format("NonZero [%7d] %-12s : %-12s :  % #10.4e\n", idx, row, col, coef);
//   os << lpfmt::underline("D I S P L A Y   O F   L P   D A T A   O B J E C T");
//     -> "- - - - - - -   - -   - -   - - - -   - - - - - -"
#pragma once

#include <string>

namespace lpfmt {

// vsnprintf into a string of whatever length the result needs.
std::string format(const char* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

// The heading with every non-blank character replaced by '-'.
std::string underline(const std::string& heading);

}  // namespace lpfmt
