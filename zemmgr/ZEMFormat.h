// printf-style formatting into a std::string, for the fixed formats of the
// listings.
#pragma once

#include <string>

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string ZEMFormat(const char* format, ...);
