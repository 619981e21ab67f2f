#include "xmpsutil/XMPSNumericLocale.h"

#include <clocale>
#include <cstring>

XMPSNumericLocale::XMPSNumericLocale() : m_switched(false) {
    const char* current = std::setlocale(LC_NUMERIC, nullptr);
    // Already "C": nothing to switch or restore.
    if (current == nullptr || std::strcmp(current, "C") == 0) return;
    // setlocale's text may be overwritten by the next call: keep a copy.
    m_previous = current;
    m_switched = std::setlocale(LC_NUMERIC, "C") != nullptr;
}

XMPSNumericLocale::~XMPSNumericLocale() {
    if (m_switched) std::setlocale(LC_NUMERIC, m_previous.c_str());
}
