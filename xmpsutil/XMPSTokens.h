// Token and card scanning of the extended MPS dialect.
//
// An XMPS data card is read by one of two rules:
//
//   free-format rule (every section but XLINEAR and NONLINEAR)
//
//      UP BND1              FEED1             0.2500000000E+03
//     ^^^^^ key: the non-blank characters of columns 1-4
//         ^ column 5 non-blank: the token starting there is the first name
//           then, by blank-delimited tokens: second name, first value,
//           third name, second value
//
//   token rule (XLINEAR and NONLINEAR)
//
//      G  BLEND1   EXPX  0.5  FEED1  2.0  \  (continued)
//          FEED2
//     key at column 2; equation name; an optional function keyword (a token
//     that is no number); the coefficient; then the arguments, where a lone
//     "\" continues the card on the next non-comment line.
//
// Tokens are at most kTokenMax characters; longer ones are cut and the rest
// of the token is skipped. Blanks are spaces and tabs.
//
// Free-format MPS written by other tools puts names in column 4 or lets a
// name run across column 5 (" N cost", " x[1,2] cost 0.5"). Such a card is
// read by tokens alone, the first token being the key when the section has
// keys and the first name otherwise. A card counts as such when, in a
// section with keys, the first four columns hold more than one token or a
// token crosses from column 4 into column 5; in a section without keys
// (COLUMNS, RHS, RANGES, XOPTION, COMPLEMENT), when the first four columns
// hold any text at all.
#pragma once

#include <cstddef>
#include <cstring>

#include "mpsutil/MPSFieldParser.h"

namespace xmpstok {

// Longest token kept; token buffers hold kTokenMax + 1 bytes.
constexpr int kTokenMax = 128;

inline bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Copies the n bytes of a token from src to dst and terminates dst
// (MPSCopyText).
inline void CopyToken(char* dst, const char* src, size_t n) { MPSCopyText(dst, src, n); }

// The lenient number test of the format: the first character must be a
// digit or one of "+-."; tokens of one or two such characters are numbers;
// otherwise the characters from the second up to, not including, the last
// must be digits, signs or points, except that the first of "DEde" met is
// accepted once as the exponent mark. The last character is never looked at.
bool IsANumber(const char* token);
// The same test of the n characters at token (no NUL among them).
bool IsANumber(const char* token, size_t n);

// Skips blanks from `source`, copies the next token (at most maxLen
// characters, the rest of a longer token is passed over) into `target` with
// a terminator and adds the number of characters passed over to `count`.
// Returns false, with an empty target, when only blanks remained.
bool ExtractToken(int& count, const char* source, char* target, int maxLen);

// The six fields of a data card, in card order: key, name 1, name 2,
// number 1, name 3, number 2.
constexpr int kCardFieldCount = 6;

// Reads `line` (length `len`) by the free-format rule into the six buffers
// `fields` (each at least kTokenMax + 1 bytes). `sectionHasKey` tells
// whether field 1 carries a key in the current section; it decides how a
// card that is not laid out on the columns is read (see above). In a section
// without keys a card with text in columns 1-4 is read by tokens alone.
void ParseFreeFormat(const char* line, int len, bool sectionHasKey, char* const* fields);

// Where ParseFreeFormat finds each field in the line: a token, or (for the
// key of a card aligned on the columns, keyColumns set) columns 1-4, whose
// blanks are dropped. An absent field has a null text.
using FieldSpan = MPSFieldView;
// Locates the fields of a line already mapped (XMPSLineMap.h).
class LineMap;
void LocateFreeFormat(const LineMap& map, bool sectionHasKey, FieldSpan* spans);
// Copies the six located fields into their buffers as ParseFreeFormat does.
void CopyFields(const FieldSpan* spans, char* const* fields);

}  // namespace xmpstok
