#include "lpdata/ZEMBinaryIO.h"

#include <limits>

namespace zembin {

void putName(unsigned char* field, size_t width, const std::string& name) {
    if (width == 0) return;
    std::memset(field, 0, width);
    const size_t n = name.size() < width - 1 ? name.size() : width - 1;
    std::memcpy(field, name.data(), n);
}

std::string getName(const unsigned char* field, size_t width) {
    size_t n = 0;
    while (n < width && field[n] != 0) ++n;
    return std::string(reinterpret_cast<const char*>(field), n);
}

std::string cutName(const std::string& name, size_t maxChars) {
    return name.size() <= maxChars ? name : name.substr(0, maxChars);
}

void writeBytes(std::ostream* os, const void* data, size_t n) {
    os->write(static_cast<const char*>(data), static_cast<std::streamsize>(n));
}

void writeI32(std::ostream* os, int32_t v) {
    unsigned char b[4];
    put32(b, v);
    writeBytes(os, b, 4);
}

void writeF64(std::ostream* os, double v) {
    unsigned char b[8];
    putF64(b, v);
    writeBytes(os, b, 8);
}

bool readExact(std::istream* is, void* data, size_t n) {
    if (is == nullptr || !*is) return false;
    if (n == 0) return true;
    is->read(static_cast<char*>(data), static_cast<std::streamsize>(n));
    return static_cast<size_t>(is->gcount()) == n;
}

bool readI32(std::istream* is, int32_t& v) {
    unsigned char b[4];
    if (!readExact(is, b, 4)) return false;
    v = get32(b);
    return true;
}

bool readF64(std::istream* is, double& v) {
    unsigned char b[8];
    if (!readExact(is, b, 8)) return false;
    v = getF64(b);
    return true;
}

uint64_t remaining(std::istream* is) {
    constexpr uint64_t kUnknown = std::numeric_limits<uint64_t>::max();
    if (is == nullptr || !*is) return 0;
    const std::streampos here = is->tellg();
    if (here == std::streampos(-1)) {
        is->clear();
        return kUnknown;
    }
    is->seekg(0, std::ios::end);
    const std::streampos end = is->tellg();
    is->seekg(here);
    if (end == std::streampos(-1) || !*is) {
        is->clear();
        is->seekg(here);
        return kUnknown;
    }
    return end >= here ? static_cast<uint64_t>(end - here) : 0;
}

bool canHold(std::istream* is, int64_t count, uint64_t recordSize) {
    if (count < 0) return false;
    if (count == 0 || recordSize == 0) return true;
    const uint64_t left = remaining(is);
    return static_cast<uint64_t>(count) <= left / recordSize;
}

}  // namespace zembin
