#include "mpsutil/MPSToolsReader.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMException.h"
#include "lpdata/ZEMTypes.h"

namespace {

constexpr int16_t kCardObjSense = 20;
constexpr const char* kRoutine = "MPSToolsReader::ParseDataCard";

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

bool Same(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b) {
        if (std::toupper(static_cast<unsigned char>(*a)) != std::toupper(static_cast<unsigned char>(*b))) {
            return false;
        }
    }
    return *a == *b;
}

// A decimal number as MPS files write them: sign, digits with at most one
// point, an optional exponent ("1.5", "-.2", "3e+05").
bool IsNumber(const char* s) {
    auto digits = [&s] {
        const char* from = s;
        while (std::isdigit(static_cast<unsigned char>(*s))) ++s;
        return s > from;
    };
    if (*s == '+' || *s == '-') ++s;
    bool mantissa = digits();
    if (*s == '.') {
        ++s;
        mantissa = digits() || mantissa;
    }
    if (!mantissa) return false;
    if (*s == 'e' || *s == 'E') {
        ++s;
        if (*s == '+' || *s == '-') ++s;
        if (!digits()) return false;
    }
    return *s == '\0';
}

// Bound keys that take no value; the others need one.
bool BoundWithoutValue(const char* key) {
    for (const char* k : {"FR", "MI", "PL", "BV"}) {
        if (std::strcmp(key, k) == 0) return true;
    }
    return false;
}

}  // namespace

// ---- Cards ----

int16_t MPSToolsReader::ParseDataCard() {
    // Fixed columns when every character outside the six fields is blank
    // and no field holds two words (free format's "UP BND X 4" would fit
    // the 8 columns of one name field).
    bool fixed = true;
    int fieldEnd = 0;
    for (int f = 0; f < kMPSFieldCount && fixed; ++f) {
        for (int i = fieldEnd; i < m_geometry.start[f] && i < m_lineLength; ++i) fixed = IsBlank(m_line[i]);
        fieldEnd = m_geometry.start[f] + m_geometry.Width(f);
        bool word = false, gap = false;
        for (int i = m_geometry.start[f]; i < fieldEnd && i < m_lineLength && fixed; ++i) {
            if (IsBlank(m_line[i])) {
                gap = word;
            } else {
                fixed = !gap;
                word = true;
            }
        }
    }
    for (int i = fieldEnd; i < m_lineLength && fixed; ++i) fixed = IsBlank(m_line[i]);
    if (fixed) {
        ParseMPSStdDataCard();
    } else {
        ParseTokens();
    }
    if (m_section == kMPSCardCOLUMNS) {
        ColumnsCard();
    } else if ((m_section == kMPSCardRHS || m_section == kMPSCardRANGES) && !HasField(kMPSFieldName1)) {
        std::snprintf(m_fields[kMPSFieldName1], kMPSLineSize, "%s", m_section == kMPSCardRHS ? "RHS" : "RNG");
    } else if (m_section == kMPSCardBOUNDS) {
        BoundsCard();
    }
    return kMPSCardData;
}

void MPSToolsReader::ParseTokens() {
    std::vector<std::string_view> t;
    for (int i = 0; i < m_lineLength;) {
        while (i < m_lineLength && IsBlank(m_line[i])) ++i;
        const int start = i;
        while (i < m_lineLength && !IsBlank(m_line[i])) ++i;
        if (i > start) t.emplace_back(m_line + start, static_cast<size_t>(i - start));
    }
    const size_t n = t.size();
    // The fields the tokens fill, in token order (-1: none).
    std::vector<int> into;
    if (m_section == kMPSCardROWS && n == 2) {
        into = {kMPSFieldKey, kMPSFieldName1};
    } else if (m_section == kMPSCardCOLUMNS && n == 3 && t[1] == "'MARKER'") {
        into = {kMPSFieldName1, kMPSFieldName2, kMPSFieldName3};
    } else if ((m_section == kMPSCardCOLUMNS || m_section == kMPSCardRHS || m_section == kMPSCardRANGES) &&
               n >= 1 && n <= 5) {
        // An even count has no column (or set) name.
        into = {kMPSFieldName1, kMPSFieldName2, kMPSFieldNumber1, kMPSFieldName3, kMPSFieldNumber2};
        if (n % 2 == 0) into.erase(into.begin());
    } else if (m_section == kMPSCardBOUNDS && n >= 2 && n <= 4) {
        const bool noValue = BoundWithoutValue(std::string(t[0]).c_str());
        into = {kMPSFieldKey, kMPSFieldName1, kMPSFieldName2, kMPSFieldNumber1};
        // Without a set name: "UP X 4", "FR X".
        if (n == (noValue ? 2u : 3u)) into.erase(into.begin() + 1);
    } else if (m_section != kMPSCardROWS && m_section != kMPSCardCOLUMNS && m_section != kMPSCardRHS &&
               m_section != kMPSCardRANGES && m_section != kMPSCardBOUNDS && n <= 5) {
        into = {kMPSFieldName1, kMPSFieldName2, kMPSFieldNumber1, kMPSFieldName3, kMPSFieldNumber2};
    }
    if (into.size() < n) CardError("MPS Free Format Error - Wrong Number Of Fields", kRoutine, __LINE__);
    for (size_t i = 0; i < n; ++i) {
        char* field = m_fields[into[i]];
        std::snprintf(field, kMPSLineSize, "%.*s", static_cast<int>(t[i].size()), t[i].data());
        // A word where a number belongs means the fields were miscounted
        // (a name with a blank in it, say): refused, never read as 0.
        if ((into[i] == kMPSFieldNumber1 || into[i] == kMPSFieldNumber2) && std::strcmp(field, "'INTORG'") != 0 &&
            std::strcmp(field, "'INTEND'") != 0 && !IsNumber(field)) {
            CardError("MPS Free Format Error - Number Expected", kRoutine, __LINE__);
        }
    }
}

void MPSToolsReader::ColumnsCard() {
    if (std::strcmp(Field(kMPSFieldName2), "'MARKER'") == 0) {
        const char* kind = HasField(kMPSFieldName3) ? Field(kMPSFieldName3) : Field(kMPSFieldNumber1);
        if (std::strcmp(kind, "'INTORG'") == 0) {
            m_integerBlock = true;
        } else if (std::strcmp(kind, "'INTEND'") == 0) {
            m_integerBlock = false;
        } else {
            CardError("MPS COLUMNS Section Error - Unknown MARKER Card", kRoutine, __LINE__);
        }
        // The card goes on as one that names the previous column and no
        // entry, which COLUMNS passes over.
        for (auto& field : m_fields) field[0] = '\0';
        std::snprintf(m_fields[kMPSFieldName1], kMPSLineSize, "%s",
                      m_previousColumn.empty() ? "'MARKER'" : m_previousColumn.c_str());
        return;
    }
    if (!HasField(kMPSFieldName1) && !m_previousColumn.empty()) {
        std::snprintf(m_fields[kMPSFieldName1], kMPSLineSize, "%s", m_previousColumn.c_str());
    }
    if (HasField(kMPSFieldName1) && m_previousColumn != Field(kMPSFieldName1)) {
        m_previousColumn = Field(kMPSFieldName1);
        if (m_integerBlock && m_integerSeen.insert(m_previousColumn).second) {
            m_integerColumns.push_back(m_previousColumn);
        }
    }
    if (HasField(kMPSFieldName2)) m_rowsUsed.insert(Field(kMPSFieldName2));
    if (HasField(kMPSFieldName3)) m_rowsUsed.insert(Field(kMPSFieldName3));
}

void MPSToolsReader::BoundsCard() {
    if (!HasField(kMPSFieldName1) && HasField(kMPSFieldName2)) {
        std::snprintf(m_fields[kMPSFieldName1], kMPSLineSize, "%s", "BND");
    }
    const char* key = Field(kMPSFieldKey);
    const char* column = Field(kMPSFieldName2);
    for (const char* k : {"LO", "FX", "LI", "MI", "FR", "BV"}) {
        if (std::strcmp(key, k) == 0) m_explicitLower.insert(column);
    }
    const bool upper = std::strcmp(key, "UP") == 0 || std::strcmp(key, "UI") == 0;
    if (!upper || !HasField(kMPSFieldNumber1) || FieldNumber(kMPSFieldNumber1) >= 0.0) return;
    // A negative upper bound over the default lower bound of 0 frees the
    // lower bound; the UP card itself then sets the upper bound.
    ILPVariable* var = m_sink.FindVariable(column);
    if (var == nullptr || var->GetBoundLower() != 0.0) return;
    if (m_explicitLower.count(column) != 0) {
        CardError("MPS BOUNDS Section Error - Negative Upper Bound Over An Explicit Lower Bound Of 0",
                  kRoutine, __LINE__);
    }
    var->SetBoundLower(-ZEM_INFINITY);
}

// ---- Sections ----

void MPSToolsReader::NAMECard() {
    m_integerBlock = false;
    m_columnsFinished = false;
    m_previousColumn.clear();
    m_integerColumns.clear();
    m_integerSeen.clear();
    m_rowsUsed.clear();
    m_explicitLower.clear();
    MPSStdReader::NAMECard();
}

void MPSToolsReader::NAMEData() {
    // The title is the first token after NAME, wherever it stands.
    int i = 4;
    while (i < m_lineLength && IsBlank(m_line[i])) ++i;
    int end = i;
    while (end < m_lineLength && !IsBlank(m_line[end])) ++end;
    std::snprintf(m_fields[kMPSFieldName1], kMPSLineSize, "%.*s", end - i, m_line + i);
    MPSStdReader::NAMEData();
    while (m_cardStatus == kCardObjSense) ReadObjectiveSense();
}

void MPSToolsReader::RHSCard() {
    MPSStdReader::RHSCard();
    FinishColumns();
}

void MPSToolsReader::RANGESCard() {
    MPSStdReader::RANGESCard();
    FinishColumns();
}

void MPSToolsReader::BOUNDSCard() {
    MPSStdReader::BOUNDSCard();
    FinishColumns();
}

void MPSToolsReader::SETSCard() {
    MPSStdReader::SETSCard();
    FinishColumns();
}

void MPSToolsReader::ENDATACard() {
    MPSStdReader::ENDATACard();
    FinishColumns();
}

void MPSToolsReader::FinishColumns() {
    if (m_columnsFinished || m_sink.Variables() == nullptr) return;
    m_columnsFinished = true;
    m_emptyColumns.erase("'MARKER'");
    for (const std::string& name : m_integerColumns) {
        if (ILPVariable* var = m_sink.FindVariable(name.c_str())) {
            var->SetVarType(ZEM_VAR_DISCRETE);
            var->SetBoundUpper(1.0);
        }
    }
}

int16_t MPSToolsReader::ExtendedHeaderCardSet() {
    if (!MPSHasPrefix(m_line, "OBJSENSE", 8)) return 0;
    // "OBJSENSE MAX" on one line, or the sense on the cards that follow.
    int i = 8;
    while (i < m_lineLength && IsBlank(m_line[i])) ++i;
    if (i < m_lineLength) ObjectiveSense(m_line + i);
    return kCardObjSense;
}

void MPSToolsReader::ProcessExtendedSections() {
    if (m_section == kCardObjSense) ReadObjectiveSense();
}

void MPSToolsReader::ReadObjectiveSense() {
    while (ReadMPSCard() == kMPSCardData) {
        for (const auto& field : m_fields) {
            if (field[0] != '\0') {
                ObjectiveSense(field);
                break;
            }
        }
    }
}

void MPSToolsReader::ObjectiveSense(const char* word) {
    std::string w(word);
    w.erase(w.find_last_not_of(" \t") + 1);
    if (Same(w.c_str(), "MIN") || Same(w.c_str(), "MINIMIZE")) return;
    if (Same(w.c_str(), "MAX") || Same(w.c_str(), "MAXIMIZE")) {
        CardError("MPS OBJSENSE Error - Maximisation Is Not Carried", "MPSToolsReader::ObjectiveSense",
                  __LINE__);
    }
    CardError("MPS OBJSENSE Error - Unknown Sense", "MPSToolsReader::ObjectiveSense", __LINE__);
}

void MPSToolsReader::CheckMPSStatus() {
    FinishColumns();
    ILPEquationList* eqns = m_sink.Equations();
    if (eqns == nullptr) return;
    std::vector<ILPEquation*> freeRows;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        const int16_t type = e->GetType();
        if (type == ZEM_EQN_FREE) {
            freeRows.push_back(e);
            continue;
        }
        if (m_rowsUsed.count(e->GetName()) == 0) {
            ZEM_RAISE(zemsrc::kMpsUtil, "MPS COLUMNS Section Error - Row Without Coefficients",
                      std::string("Row ") + e->GetName() +
                          " has no coefficient: the model would drop it where other tools keep it",
                      "MPSToolsReader::CheckMPSStatus");
        }
        const double range = e->GetRange();
        if (type == ZEM_EQN_EQ && range != 0.0) {
            e->SetType(range > 0.0 ? ZEM_EQN_GE : ZEM_EQN_LE);
            e->SetRange(std::fabs(range));
        }
    }
    for (ILPEquation* e : freeRows) m_model->RemoveEquation(e);
}
