// Look-ahead of the standard MPS reader: the name fields of the next,
// still unread line are located in the raw buffer and their name index
// slots requested, so that the lookups of the next card do not wait for
// memory. Nothing here changes what is read.
#include <algorithm>

#include "mpsutil/MPSStdReader.h"

void MPSStdReader::LocateCard(const char* line, size_t len, MPSCardView& card) {
    // The name fields alone: this reader splits the card in hand by its own
    // blank rule, so the look-ahead is all the located card serves, and
    // locating the key and numbers as well made a read about 5% slower.
    card.length = len;
    for (const int field : {kMPSFieldName1, kMPSFieldName2, kMPSFieldName3}) {
        MPSFieldView& view = card.fields[field];
        view = MPSFieldView{};
        const size_t start = static_cast<size_t>(m_geometry.start[field]);
        if (start >= len) continue;
        const char* t = line + start;
        size_t e = std::min(len - start, static_cast<size_t>(m_geometry.Width(field)));
        while (e > 0 && t[e - 1] == ' ') --e;
        size_t b = 0;
        while (b < e && t[b] == ' ') ++b;
        if (e > b) view = MPSFieldView{t + b, e - b, false};
    }
}

void MPSStdReader::PrefetchNextCard(int varField, int eqnField1, int eqnField2) {
    const char* line = nullptr;
    size_t len = 0;
    if (!m_lines.Peek(line, len) || len == 0) return;
    const int next = m_lineCount + 1;
    if (m_next.lineNumber != next || m_next.line != line || m_next.section != m_section) {
        m_next.lineNumber = next;
        m_next.line = line;
        m_next.section = m_section;
        LocateCard(line, len, m_next);
    }
    if (varField >= 0) {
        const MPSFieldView& v = m_next.fields[varField];
        if (v.n > 0) m_sink.PrefetchVariable(v.text, v.n);
    }
    for (const int f : {eqnField1, eqnField2}) {
        if (f < 0) continue;
        const MPSFieldView& v = m_next.fields[f];
        if (v.n > 0) m_sink.PrefetchEquation(v.text, v.n);
    }
}
