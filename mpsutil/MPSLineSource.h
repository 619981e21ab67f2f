// Line input for the MPS readers: reads the input in large blocks and hands
// it out line by line, so reading a line costs one scan and one copy.
//
// Lines are handed out with the rule of fgets on a buffer of `cap` bytes: at
// most cap - 1 bytes, ending with (and including) the line feed when one
// comes within them. A longer line is thus split, and its remainder comes
// back as the following line(s).
#pragma once

#include <cstddef>
#include <istream>
#include <memory>

class MPSLineSource {
public:
    // Starts reading `in` (not owned) from its current position; null
    // detaches. Drops whatever was buffered from a previous input.
    void Attach(std::istream* in);

    // Copies the next line into dst (cap >= 2 bytes), NUL-terminated, and
    // stores the number of bytes copied in len. Returns false when the input
    // is exhausted (nothing copied).
    bool ReadLine(char* dst, size_t cap, size_t& len);

    // The next line's bytes (without its newline and a carriage return
    // before it) when the whole line is
    // already buffered; false otherwise. Nothing is consumed.
    bool Peek(const char*& line, size_t& len) const;

    // True when the input failed for another reason than its end.
    bool InputFailed() const { return m_failed; }

private:
    // Makes at least `need` bytes available from m_pos unless the input ends.
    void Fill(size_t need);

    std::istream* m_in = nullptr;
    std::unique_ptr<char[]> m_buf;  // not zero-filled: only read bytes are used
    size_t m_capacity = 0;
    size_t m_pos = 0;
    size_t m_end = 0;
    bool m_eof = true;
    bool m_failed = false;
};
