#include "lpdata/LPRecordIO.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace lprec {

size_t ReserveHint(std::istream* is, int n) {
    if (n <= 0) return 0;
    const bool sized = zembin::remaining(is) != std::numeric_limits<uint64_t>::max();
    return static_cast<size_t>(sized ? n : std::min(n, 1 << 16));
}

namespace {
constexpr size_t kChunkBytes = 1 << 16;
}

RecordReader::RecordReader(std::istream* is, size_t recordSize, uint64_t count)
    : m_is(is), m_recordSize(recordSize == 0 ? 1 : recordSize), m_left(count) {}

const unsigned char* RecordReader::Next() {
    if (m_pos == m_end) {
        if (m_left == 0) return nullptr;
        const uint64_t perChunk = std::max<uint64_t>(1, kChunkBytes / m_recordSize);
        const uint64_t records = std::min(m_left, perChunk);
        const size_t bytes = static_cast<size_t>(records) * m_recordSize;
        if (m_buffer.size() < bytes) m_buffer.resize(bytes);
        if (!zembin::readExact(m_is, m_buffer.data(), bytes)) {
            m_left = 0;
            return nullptr;
        }
        m_left -= records;
        m_pos = 0;
        m_end = bytes;
    }
    const unsigned char* rec = m_buffer.data() + m_pos;
    m_pos += m_recordSize;
    return rec;
}

RecordWriter::RecordWriter(std::ostream* os, size_t recordSize)
    : m_os(os), m_recordSize(recordSize) {
    m_buffer.resize(std::max(kChunkBytes / recordSize, size_t{1}) * recordSize);
}

RecordWriter::~RecordWriter() { Flush(); }

unsigned char* RecordWriter::Next() {
    if (m_used + m_recordSize > m_buffer.size()) Flush();
    unsigned char* rec = m_buffer.data() + m_used;
    std::memset(rec, 0, m_recordSize);
    m_used += m_recordSize;
    return rec;
}

void RecordWriter::Flush() {
    if (m_used > 0 && m_os != nullptr) zembin::writeBytes(m_os, m_buffer.data(), m_used);
    m_used = 0;
}

bool ReadBlock(std::istream* is, uint64_t n, std::vector<unsigned char>& out) {
    out.clear();
    // Sized once when the stream is known to hold the block; otherwise the
    // buffer grows only as data actually arrives.
    const uint64_t left = zembin::remaining(is);
    if (n <= left && left != std::numeric_limits<uint64_t>::max()) out.reserve(static_cast<size_t>(n));
    while (out.size() < n) {
        const size_t step = static_cast<size_t>(std::min<uint64_t>(n - out.size(), kChunkBytes * 16));
        const size_t at = out.size();
        out.resize(at + step);
        if (!zembin::readExact(is, out.data() + at, step)) {
            out.clear();
            return false;
        }
    }
    return true;
}

}  // namespace lprec
