// Number texts of the extended MPS writer.
//
//   short form  (XLINEAR coefficients, RHS, RANGES):   0.123450E+01
//   long form   (INITIAL values):                      0.1234567890E+01
//   constant form (NONLINEAR coefficients, constants):  1.234500e+00
//
// The short and long forms print ten times the value with "% 12.5E" or
// "% 16.9E" and then exchange the leading digit with the decimal point, so
// the mantissa is below one and the exponent one higher; a blank sign
// becomes "0" (1.2345 -> "0.123450E+01", -1.2345 -> "-.123450E+01"). A value
// within 1e-5 of +1 or -1 is first snapped to exactly +1 or -1. The constant
// form is "% #12.6e".
//
// Each function writes a NUL-terminated text into `buf` (at least
// kNumberBufSize bytes) and returns its length. The texts are the ones
// printf gives in the "C" locale, whatever the process locale is.
#pragma once

namespace xmpsnum {

constexpr int kNumberBufSize = 40;

int ShortForm(char* buf, double value);
int LongForm(char* buf, double value);
int ConstantForm(char* buf, double value);
// The shortest text that strtod reads back as exactly `value` ("250",
// "0.1", "1e+20"); used where the format prescribes no form (bounds).
int ExactForm(char* buf, double value);

// printf("% .<precision>E") (or "e" when !upper) of a finite or non-finite
// value, for precision 1 to 17. The building block of the forms above.
int SignedExp(char* buf, double value, int precision, bool upper);

}  // namespace xmpsnum
