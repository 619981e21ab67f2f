// Name screening for case-blind target languages.
//
// Upper-case letters, digits (except a leading one) and "_" are kept. Every
// other character is recorded in a suffix that starts with "_" so the
// original name can be rebuilt:
//   - a lower-case letter stays and is recorded as itself plus its position;
//   - any other character is replaced by a class digit and recorded as that
//     digit, a letter and its position (the class and letter together name
//     the character code);
//   - a leading digit becomes the letter 17 codes later ("0" -> "A") and is
//     not recorded.
// Example: "a-b" becomes "a1b_a01T1b2".
#include <string>

#include "lpdata/ZEMException.h"
#include "zemmgr/ZEMMgr.h"

namespace {

// Class digit and letter of a character that is neither a letter, a digit
// nor "_".
void classify(unsigned code, char& digit, char& letter) {
    struct Band {
        unsigned lo, hi;
        char digit;
        int shift;
    };
    static const Band bands[] = {
        {0, 25, '0', 65},     {26, 47, '1', 39},    {58, 64, '2', 7},
        {91, 96, '3', -26},   {123, 148, '4', -58}, {149, 174, '5', -84},
        {175, 200, '6', -110}, {201, 226, '7', 120}, {227, 252, '8', 94},
        {253, 255, '9', 68},
    };
    for (const Band& b : bands) {
        if (code >= b.lo && code <= b.hi) {
            digit = b.digit;
            letter = static_cast<char>((code + 256 + static_cast<unsigned>(b.shift)) % 256);
            return;
        }
    }
    digit = '0';
    letter = '?';
}

}  // namespace

void ZEMNameScreen(std::string& name) {
    // Work on a copy: a refused name is left as it was.
    std::string out = name;
    std::string suffix = "_";
    for (size_t pos = 0; pos < out.size(); ++pos) {
        const unsigned code = static_cast<unsigned char>(out[pos]);
        const bool digit = code >= '0' && code <= '9';
        if (digit) {
            if (pos == 0) out[pos] = static_cast<char>(code + 17);
            continue;
        }
        if ((code >= 'A' && code <= 'Z') || code == '_') continue;
        if (code >= 'a' && code <= 'z') {
            suffix += static_cast<char>(code);
            suffix += std::to_string(pos);
            continue;
        }
        char classDigit, letter;
        classify(code, classDigit, letter);
        out[pos] = classDigit;
        suffix += classDigit;
        suffix += letter;
        suffix += std::to_string(pos);
    }
    if (suffix.size() > 127)
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error",
                  "NameScreen suffix longer than 127 characters: " + name, "ZEMMgr::NameScreen");
    if (suffix.size() > 1) out += suffix;
    name = out;
}
