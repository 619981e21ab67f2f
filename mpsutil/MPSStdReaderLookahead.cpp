// Look-ahead of the standard MPS reader: the name fields of the next,
// still unread line are located in the raw buffer and their name index
// slots requested, so that the lookups of the next card do not wait for
// memory. Nothing here changes what is read.
#include <algorithm>

#include "mpsutil/MPSStdReader.h"

bool MPSStdReader::PeekField(const char* line, size_t len, int field, const char*& text,
                             size_t& n) const {
    const size_t start = static_cast<size_t>(m_geometry.start[field]);
    if (start >= len) return false;
    const char* t = line + start;
    size_t e = std::min(len - start, static_cast<size_t>(m_geometry.Width(field)));
    while (e > 0 && t[e - 1] == ' ') --e;
    size_t b = 0;
    while (b < e && t[b] == ' ') ++b;
    text = t + b;
    n = e - b;
    return n > 0;
}

void MPSStdReader::PrefetchNextCard(int varField, int eqnField1, int eqnField2) {
    const char* line = nullptr;
    size_t len = 0;
    if (!m_lines.Peek(line, len) || len == 0) return;
    const char* text = nullptr;
    size_t n = 0;
    if (varField >= 0 && PeekField(line, len, varField, text, n)) m_sink.PrefetchVariable(text, n);
    for (const int f : {eqnField1, eqnField2})
        if (f >= 0 && PeekField(line, len, f, text, n)) m_sink.PrefetchEquation(text, n);
}
