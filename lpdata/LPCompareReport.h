// Line writer shared by the entity comparisons. Every difference line reads
//   "Problem <Kind> " name message "p1 is " v1 ", p2 is " v2 ending
// where messages that already end in "p1 is " carry the first label
// themselves. Mode 3 labels the sides "old MG" and "zem MG".
#pragma once

#include <ostream>
#include <string>

class LPCompareReport {
public:
    LPCompareReport(std::ostream& os, const char* kind, const char* name, int mode)
        : m_os(os), m_kind(kind), m_name(name ? name : ""),
          m_label1(mode == 3 ? "old MG" : "p1"), m_label2(mode == 3 ? "zem MG" : "p2") {}

    // Writes one difference line; returns true so callers can accumulate.
    template <typename T>
    bool Line(const char* message, const T& v1, const T& v2, const char* ending = "\n") {
        const std::string msg(message);
        m_os << "Problem " << m_kind << " " << m_name << msg;
        const std::string withLabel = std::string("p1 is ");
        const bool carriesLabel = msg.size() >= withLabel.size() &&
                                  msg.compare(msg.size() - withLabel.size(), withLabel.size(),
                                              withLabel) == 0;
        if (!carriesLabel) m_os << m_label1 << " is ";
        m_os << v1 << ", " << m_label2 << " is " << v2 << ending;
        m_found = true;
        return true;
    }

    bool Found() const { return m_found; }
    const char* Label1() const { return m_label1; }
    const char* Label2() const { return m_label2; }

private:
    std::ostream& m_os;
    const char* m_kind;
    std::string m_name;
    const char* m_label1;
    const char* m_label2;
    bool m_found = false;
};
