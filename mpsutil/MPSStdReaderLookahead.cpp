// Look-ahead of the standard MPS reader: the name fields of the next,
// still unread line are located in the raw buffer and their name index
// slots requested, so that the lookups of the next card do not wait for
// memory. Nothing here changes what is read.
#include <algorithm>

#include "lpdata/LPEquationList.h"
#include "lpdata/LPVariableList.h"
#include "mpsutil/MPSStdReader.h"

void MPSStdReader::PeekFields(const char* line, size_t len, const char* text[kMPSFieldCount],
                              size_t n[kMPSFieldCount]) const {
    for (int f = 0; f < kMPSFieldCount; ++f) {
        n[f] = 0;
        text[f] = line;
        const size_t start = static_cast<size_t>(m_geometry.start[f]);
        if (start >= len) continue;
        const char* t = line + start;
        size_t e = std::min(len - start, static_cast<size_t>(m_geometry.Width(f)));
        while (e > 0 && t[e - 1] == ' ') --e;
        size_t b = 0;
        while (b < e && t[b] == ' ') ++b;
        text[f] = t + b;
        n[f] = e - b;
    }
}

void MPSStdReader::PrefetchNextCard(int varField, int eqnField1, int eqnField2) {
    const char* line = nullptr;
    size_t len = 0;
    if (!m_lines.Peek(line, len) || len == 0) return;
    const char* text[kMPSFieldCount];
    size_t n[kMPSFieldCount];
    PeekFields(line, len, text, n);
    if (m_varHint != nullptr && varField >= 0 && n[varField] > 0)
        m_varHint->PrefetchName(text[varField], n[varField]);
    if (m_eqnHint == nullptr) return;
    for (const int f : {eqnField1, eqnField2})
        if (f >= 0 && n[f] > 0) m_eqnHint->PrefetchName(text[f], n[f]);
}
