// Line input for the MPS readers: reads the input in large blocks and hands
// it out line by line, in place, so reading a line costs one scan.
//
// Lines are cut with the rule of fgets on a buffer of `cap` bytes: at most
// cap - 1 bytes, ending with (and including) the line feed when one comes
// within them. A longer line is thus split, and its remainder comes back as
// the following line(s).
#pragma once

#include <cstddef>
#include <istream>
#include <memory>

class MPSLineSource {
public:
    // Starts reading `in` (not owned) from its current position; null
    // detaches. Drops whatever was buffered from a previous input.
    void Attach(std::istream* in);

    // The next line, cut by the rule of fgets on a buffer of `cap` bytes
    // (at most cap - 1 bytes, up to and including a line feed within them),
    // without a copy: the line's text (the bytes before the first line feed,
    // carriage return or NUL), of length `text`, NUL-terminated in place
    // inside the input buffer. Only a line cut at cap - 1 bytes whose
    // remainder follows in the buffer is copied, into `spare` (cap bytes).
    // The text stays valid until the next call; null when the input is
    // exhausted. Parsing from the input buffer also spares the parser
    // reading back bytes stored a moment before, which stalls the processor.
    const char* TakeLine(char* spare, size_t cap, size_t& text);

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
    // Not zero-filled: only read bytes are used. One byte more than
    // m_capacity, so that a last line without a line feed can be terminated
    // in place.
    std::unique_ptr<char[]> m_buf;
    size_t m_capacity = 0;
    size_t m_pos = 0;
    size_t m_end = 0;
    // The line Peek found at m_peekAt ends its text with a line feed at
    // m_peekAt + m_peekText, so TakeLine need not scan it again (the
    // readers peek at every line before taking it). Without the second
    // scan the XMPS read of the benchmark model takes 0.95-0.98 times as
    // long, the standard read 0.98-0.99 (bench_reader_ab, both orders).
    static constexpr size_t kNoPeek = static_cast<size_t>(-1);
    mutable size_t m_peekAt = kNoPeek;
    mutable size_t m_peekText = 0;
    bool m_eof = true;
    bool m_failed = false;
};
