// Little-endian binary record primitives shared by every stream record of the
// library (lists, matrix, sets, collections, nonlinear terms, option table,
// model file).
//
// Records have fixed layouts, so writers fill a byte buffer at fixed offsets
// and write it in one call, and readers read a whole record and decode it:
//
//   unsigned char rec[16] = {};
//   zembin::put32(rec + 0, varIndex);
//   zembin::put32(rec + 4, eqnIndex);
//   zembin::putF64(rec + 8, coefficient);
//   zembin::writeBytes(os, rec, sizeof rec);
//
// Doubles are IEEE 754 binary64; every integer is stored little-endian
// whatever the host's byte order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>
#include <string>

namespace zembin {

inline void put16(unsigned char* p, int16_t v) {
    const uint16_t u = static_cast<uint16_t>(v);
    p[0] = static_cast<unsigned char>(u);
    p[1] = static_cast<unsigned char>(u >> 8);
}

inline void put32(unsigned char* p, int32_t v) {
    const uint32_t u = static_cast<uint32_t>(v);
    for (int i = 0; i < 4; ++i) p[i] = static_cast<unsigned char>(u >> (8 * i));
}

inline void put64(unsigned char* p, uint64_t u) {
    for (int i = 0; i < 8; ++i) p[i] = static_cast<unsigned char>(u >> (8 * i));
}

inline void putF64(unsigned char* p, double v) {
    uint64_t u;
    std::memcpy(&u, &v, sizeof u);
    put64(p, u);
}

inline int16_t get16(const unsigned char* p) {
    return static_cast<int16_t>(static_cast<uint16_t>(p[0] | (p[1] << 8)));
}

inline int32_t get32(const unsigned char* p) {
    uint32_t u = 0;
    for (int i = 3; i >= 0; --i) u = (u << 8) | p[i];
    return static_cast<int32_t>(u);
}

inline uint64_t get64(const unsigned char* p) {
    uint64_t u = 0;
    for (int i = 7; i >= 0; --i) u = (u << 8) | p[i];
    return u;
}

inline double getF64(const unsigned char* p) {
    const uint64_t u = get64(p);
    double v;
    std::memcpy(&v, &u, sizeof v);
    return v;
}

// Copies `name` into a fixed field of `width` bytes: at most width-1
// characters, NUL-terminated, the rest of the field zero.
void putName(unsigned char* field, size_t width, const std::string& name);
// Reads a NUL-terminated name from a fixed field; never reads past `width`.
std::string getName(const unsigned char* field, size_t width);

// A name cut to at most `maxChars` characters (the 60-character cut of the
// name blocks and set records).
std::string cutName(const std::string& name, size_t maxChars);

void writeBytes(std::ostream* os, const void* data, size_t n);
void writeI32(std::ostream* os, int32_t v);
void writeF64(std::ostream* os, double v);

// Reads exactly n bytes; false on a short read (the stream is then failed).
bool readExact(std::istream* is, void* data, size_t n);
bool readI32(std::istream* is, int32_t& v);
bool readF64(std::istream* is, double& v);

// Bytes left between the read position and the end of a seekable stream, or
// UINT64_MAX when the stream cannot tell.
uint64_t remaining(std::istream* is);

// True when `count` records of `recordSize` bytes can still be in the stream:
// the guard every reader applies before allocating for a count it was given.
bool canHold(std::istream* is, int64_t count, uint64_t recordSize);

}  // namespace zembin
