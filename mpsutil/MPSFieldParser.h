// Fixed-field card parsing shared by the MPS readers and the writer's field
// placement.
//
// A fixed-field MPS data card has up to six fields at fixed columns. With the
// classic geometry (key width 2, name width 8, number width 12) they are, as
// 1-based columns:
//
//   field 1  key       2-3      e.g. " UP" in BOUNDS, " N" in ROWS
//   field 2  name 1    5-12     column name, RHS/range/bound set name
//   field 3  name 2    15-22    row name, or bound column name
//   field 4  number 1  25-36
//   field 5  name 3    40-47
//   field 6  number 2  50-61
//
//   *234567890123456789012345678901234567890123456789012345678901
//    UP BND1      X1                4.0
//       X1        R1                2.0   R2                 1.0
//
// Every field is read with the same rule (MPSExtractField): blanks before the
// text are skipped, blanks after it are dropped, and blanks between two
// pieces of text inside the field become underscores, so 'MY ROW' is read as
// 'MY_ROW'. Numbers are converted with strtod semantics (MPSParseNumber).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Size of the line buffer and of every field buffer: a line holds at most
// 1023 characters, so no field can be longer.
constexpr int kMPSLineSize = 1024;
// Widths are clamped to this so that a field always fits its buffer.
constexpr int kMPSMaxFieldWidth = kMPSLineSize - 1;

// The fields of a data card, in card order.
enum MPSFieldIndex : int {
    kMPSFieldKey = 0,
    kMPSFieldName1 = 1,
    kMPSFieldName2 = 2,
    kMPSFieldNumber1 = 3,
    kMPSFieldName3 = 4,
    kMPSFieldNumber2 = 5,
    kMPSFieldCount = 6
};

// Where a field lies in its line: `n` characters at `text` (null: absent).
// `keyColumns` marks a key taken from columns 1-4 whose blanks are dropped
// when it is copied.
struct MPSFieldView {
    const char* text = nullptr;
    size_t n = 0;
    bool keyColumns = false;
};

// A data card as a value: the fields of one input line, located (not
// copied) by the rule of the section it was read in. The look-ahead locates
// the next line once into such a card; when that line becomes the card in
// hand it is promoted instead of being split again.
struct MPSCardView {
    int lineNumber = 0;  // the input line (0: none)
    const char* line = nullptr;
    size_t length = 0;   // of the text located
    int16_t section = 0;
    MPSFieldView fields[kMPSFieldCount];
};

// Widths and 0-based start offsets of the six fields.
struct MPSFieldGeometry {
    int16_t keyWidth = 0;
    int16_t nameWidth = 0;
    int16_t numberWidth = 0;
    int start[kMPSFieldCount] = {};

    MPSFieldGeometry() { Set(8, 12, 2); }

    // Key at offset 1; name 1 at keyWidth + 2; name 2 at name 1 + nameWidth
    // + 2; number 1 at name 2 + nameWidth + 2; name 3 at number 1 +
    // numberWidth + 3; number 2 at name 3 + nameWidth + 2. Widths outside
    // [0, kMPSMaxFieldWidth] are clamped into it.
    void Set(int16_t nameWidth, int16_t numberWidth, int16_t keyWidth);
    int Width(int field) const;
};

// Copies the field whose text starts at `text` and that is `width`
// characters wide into `dst` (at least width + 1 bytes), NUL-terminated,
// with the blank rule described above. Reading stops at a NUL in `text`, so
// a field cut short by the end of the line is read up to that end. Returns
// the number of characters stored.
size_t MPSExtractField(char* dst, const char* text, int width);

// Splits a fixed-field data card: clears the six fields, then extracts them
// in card order and stops at the first field whose start lies at or beyond
// the end of the line (the remaining fields stay empty). `fields` holds
// kMPSFieldCount buffers of kMPSLineSize bytes.
void MPSExtractFixedFields(const char* line, int length, const MPSFieldGeometry& geometry,
                           char (*fields)[kMPSLineSize]);

// strtod semantics without its cost: the leading numeric part of the text is
// converted (so "12.5abc" is 12.5) and text without one gives 0. Decimal
// points are always ".", whatever the locale, except for the rare forms
// (hexadecimal) that are handed to strtod itself.
double MPSParseNumber(const char* text);

// Copies the n bytes at src to dst and terminates dst. Eight bytes at a
// time, then four, two and one: names and tokens are short, and a memcpy
// call per copy (with memcmp for MPSSameBytes) made an XMPS read of the
// benchmark model take 1.06 to 1.13 times as long. Nothing is read from src
// when n is 0.
inline void MPSCopyText(char* dst, const char* src, size_t n) {
    size_t i = 0;
    for (; i + 8 <= n; i += 8) std::memcpy(dst + i, src + i, 8);
    if (n - i >= 4) {
        std::memcpy(dst + i, src + i, 4);
        i += 4;
    }
    if (n - i >= 2) {
        std::memcpy(dst + i, src + i, 2);
        i += 2;
    }
    if (i < n) dst[i] = src[i];
    dst[n] = '\0';
}

// True when the n bytes at a and at b are the same; eight bytes at a time,
// the last eight read overlapping (see MPSCopyText for why).
inline bool MPSSameBytes(const char* a, const char* b, size_t n) {
    if (n < 8) {
        for (size_t i = 0; i < n; ++i)
            if (a[i] != b[i]) return false;
        return true;
    }
    uint64_t x, y;
    for (size_t i = 0; i + 8 < n; i += 8) {
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        if (x != y) return false;
    }
    std::memcpy(&x, a + n - 8, 8);
    std::memcpy(&y, b + n - 8, 8);
    return x == y;
}

// True when `line` begins with the first `n` characters of `keyword`.
bool MPSHasPrefix(const char* line, const char* keyword, size_t n);
