// Helpers shared by the binary record readers and writers of the lists, the
// matrix, the set list and the collections.
//
// Readers never allocate for a count they were given before checking that the
// stream can hold that many records (zembin::canHold); when the stream cannot
// tell its size they read in bounded chunks, so memory only grows with the
// bytes that actually arrive.
//
// Name block (after the records of a list): a 32-bit byte count, then the
// names in list order, each NUL-terminated and cut to its first 60
// characters. An empty list writes no block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "lpdata/ZEMBinaryIO.h"

namespace lprec {

// How many of n records, already known to fit in the stream, to reserve
// room for: all n when the stream's size is known, else a bounded start.
size_t ReserveHint(std::istream* is, int n);

// Longest name kept in a name block or a fixed name field.
constexpr size_t kNameChars = 60;

// Reads fixed-size records one at a time from an internal buffer that is
// refilled a bounded chunk at a time.
class RecordReader {
public:
    RecordReader(std::istream* is, size_t recordSize, uint64_t count);
    // The next record, or null on a short read.
    const unsigned char* Next();

private:
    std::istream* m_is;
    size_t m_recordSize;
    uint64_t m_left;
    std::vector<unsigned char> m_buffer;
    size_t m_pos = 0;
    size_t m_end = 0;
};

// Collects records and writes them in large blocks.
class RecordWriter {
public:
    RecordWriter(std::ostream* os, size_t recordSize);
    ~RecordWriter();
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;
    // A zeroed record to fill; it is written by a later call or by Flush.
    unsigned char* Next();
    void Flush();

private:
    std::ostream* m_os;
    size_t m_recordSize;
    std::vector<unsigned char> m_buffer;
    size_t m_used = 0;
};

// Reads exactly n bytes into out, growing it chunk by chunk as data arrives.
bool ReadBlock(std::istream* is, uint64_t n, std::vector<unsigned char>& out);

// Number of entries before the terminating null of a reader's table.
template <class T>
size_t TableLength(T* const* table) {
    size_t n = 0;
    if (table != nullptr)
        while (table[n] != nullptr) ++n;
    return n;
}

// Hands `items` out as a new[] array with a terminating null entry.
template <class T>
T** MakeTable(const std::vector<T*>& items) {
    T** table = new T*[items.size() + 1];
    for (size_t i = 0; i < items.size(); ++i) table[i] = items[i];
    table[items.size()] = nullptr;
    return table;
}

// Writes the name block of a list of entities (nothing when it is empty).
template <class E>
void WriteNameBlock(std::ostream* os, const std::vector<E*>& items) {
    if (items.empty()) return;
    std::string block;
    for (const E* e : items) {
        const char* name = e->GetName();
        block += zembin::cutName(name ? name : "", kNameChars);
        block.push_back('\0');
    }
    zembin::writeI32(os, static_cast<int32_t>(block.size()));
    zembin::writeBytes(os, block.data(), block.size());
}

// Walks a name block: calls take(name) for each NUL-terminated name, in
// order, until the block or `limit` names are used up. A trailing name
// without its terminator is not used. Returns the number of names taken.
template <class Take>
size_t ForEachBlockName(const std::vector<unsigned char>& block, size_t limit, Take take) {
    size_t pos = 0;
    size_t taken = 0;
    while (taken < limit && pos < block.size()) {
        size_t end = pos;
        while (end < block.size() && block[end] != 0) ++end;
        if (end == block.size()) break;
        take(std::string(reinterpret_cast<const char*>(block.data()) + pos, end - pos));
        ++taken;
        pos = end + 1;
    }
    return taken;
}

}  // namespace lprec
