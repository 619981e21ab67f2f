// The XMPS reader's XLINEAR and NONLINEAR sections: the token rule, the
// fixed-column XLINEAR rule and the cards that make matrix coefficients and
// nonlinear terms.
#include <algorithm>
#include <cstring>
#include <memory>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "xmpsutil/XMPSNumericLocale.h"
#include "xmpsutil/XMPSReader.h"
#include "zemmgr/IZEMMgr.h"

namespace {

constexpr const char* kProcessError = "MPS Read/Process Error";
const char* const kNonLinearRoutine = "XMPSReader::NONLINEARData";
const char* const kXLinearRoutine = "XMPSReader::XLINEARData";

// Destroys a term that was made but not yet handed to the nonlinear model.
struct TermDestroyer {
    void operator()(INonLinearity* t) const { t->Destroy(); }
};
using PendingTerm = std::unique_ptr<INonLinearity, TermDestroyer>;

}  // namespace

// The texts of one of the two term-card handlers.
struct XMPSReader::TermTexts {
    const char* routine;
    const char* incomplete;
    const char* noCoefficient;
    const char* unknownKey;
    const char* noVariables;
    const char* numericInLinear;  // null: every argument is a name
    const char* createEquation;
    const char* createVariable;
    const char* createNonZero;
    const char* createProduct;
    const char* createKeywordTerm;  // a card fault
    const char* productVariable;
    const char* productVariableRoutine;
};

// ---- Token rule ----

void XMPSReader::AppendArgument(const char* text) { AppendArgument(text, std::strlen(text)); }

void XMPSReader::AppendArgument(const char* text, size_t n) {
    m_argStart.push_back(m_argText.size());
    m_argText.insert(m_argText.end(), text, text + n);
    m_argText.push_back('\0');
}

bool XMPSReader::ReadContinuedXMPSLine() {
    while (ReadMPSLine()) {
        if (m_lineLength == 0 || m_line[0] == '*' || m_line[0] == '$') continue;
        return true;
    }
    return false;
}

int16_t XMPSReader::ParseNONLINEARDataCard() {
    m_argColumn = -1;
    m_keyword[0] = '\0';
    m_coefficient[0] = '\0';
    m_argText.clear();
    m_argStart.clear();
    char* key = m_fields[kMPSFieldKey];
    char* equation = m_fields[kMPSFieldName1];
    key[0] = '\0';
    equation[0] = '\0';
    m_equationLength = 0;

    // Key: the non-blank characters of the fixed key field.
    int k = 0;
    for (int i = 1; i < 1 + m_geometry.keyWidth && i < m_lineLength; ++i) {
        if (!xmpstok::IsBlank(m_line[i])) key[k++] = m_line[i];
    }
    key[k] = '\0';

    // Tokens are located in the line and copied once, at most kTokenMax
    // characters of each (the rest of a longer token is passed over).
    const auto copy = [](char* dst, const xmpstok::FieldSpan& t, size_t cap) {
        const size_t n = std::min(t.n, cap);
        xmpstok::CopyToken(dst, t.text, n);
        return n;
    };
    constexpr size_t kMax = xmpstok::kTokenMax;
    // The look-ahead located the equation of a card it mapped. With this,
    // and the look-ahead clearing only the fields it sets (XMPSReader.cpp),
    // the XMPS read of the benchmark model takes 0.96-0.98 times as long.
    const bool located = CardInHandLocated();
    const xmpstok::LineMap* map = &CardMap();
    xmpstok::FieldSpan t = located ? m_next.fields[kMPSFieldName1] : map->Next(m_geometry.start[kMPSFieldName1]);
    if (t.text == nullptr) return kXMPSCardToken;
    m_equationLength = copy(equation, t, std::min(kMax, static_cast<size_t>(std::max<int16_t>(m_geometry.nameWidth, 0))));
    const auto after = [this](const xmpstok::FieldSpan& span) { return static_cast<int>(span.text + span.n - m_line); };

    // The tokens' text as cut to kMax characters.
    const auto isNumber = [](const xmpstok::FieldSpan& span) {
        return xmpstok::IsANumber(span.text, std::min<size_t>(span.n, xmpstok::kTokenMax));
    };
    t = map->Next(after(t));
    if (t.text == nullptr) return kXMPSCardToken;
    if (!isNumber(t)) {
        // A keyword cut short could name another term (a user equation's
        // formula is its keyword), so a longer one is refused.
        if (t.n > kMax)
            CardError("XMPS NONLINEAR Section Error - Keyword longer than 128 characters", kNonLinearRoutine, __LINE__);
        copy(m_keyword, t, kMax);
        t = map->Next(after(t));
        if (t.text == nullptr) return kXMPSCardToken;
        // A keyword without a number after it: the card has no coefficient.
        if (!isNumber(t)) return kXMPSCardToken;
    }
    copy(m_coefficient, t, kMax);

    int pos = after(t);
    for (bool firstLine = true;;) {
        t = map->Next(pos);
        if (t.text == nullptr) break;
        pos = after(t);
        if (t.n == 1 && t.text[0] == '\\') {
            firstLine = false;
            if (!ReadContinuedXMPSLine()) break;
            map = &CardMap();
            pos = 0;
            continue;
        }
        if (firstLine && m_argColumn < 0) m_argColumn = static_cast<int>(t.text - m_line);
        AppendArgument(t.text, std::min(t.n, kMax));
    }
    return kXMPSCardToken;
}

int16_t XMPSReader::ParseXLINEARDataCard() {
    m_keyword[0] = '\0';
    m_coefficient[0] = '\0';
    m_argText.clear();
    m_argStart.clear();
    for (auto& field : m_fields) field[0] = '\0';
    if (m_lineLength > 1) MPSExtractField(m_fields[kMPSFieldKey], m_line + 1, m_geometry.keyWidth);
    const int nameWidth = m_geometry.nameWidth;
    const int eqnStart = m_geometry.start[kMPSFieldName1];
    m_equationLength =
        eqnStart < m_lineLength ? MPSExtractField(m_fields[kMPSFieldName1], m_line + eqnStart, nameWidth) : 0;
    if (m_thirdFieldColumn < m_lineLength) {
        const int width = m_geometry.numberWidth < xmpstok::kTokenMax ? m_geometry.numberWidth
                                                                      : xmpstok::kTokenMax;
        MPSExtractField(m_coefficient, m_line + m_thirdFieldColumn, width);
    }
    char name[kMPSLineSize];
    for (int at = m_nameListColumn; at < m_lineLength; at += nameWidth + 2) {
        if (MPSExtractField(name, m_line + at, nameWidth) == 0) break;
        AppendArgument(name);
    }
    return kXMPSCardFixedXLINEAR;
}

// ---- Term cards ----

void XMPSReader::RequireSection(int16_t code, const char* wrongStateText,
                                const char* routine) const {
    if (m_section != code) {
        ProcessError("MPS Read/Process Synchronization Error", wrongStateText, routine, __LINE__);
    }
}

void XMPSReader::FetchTermModel(const char* failText, const char* routine, INonLinearModel** nl) {
    *nl = nullptr;
    if (m_zem != nullptr) m_zem->GetNonLinearModelIntf(nl);
    if (!m_sink.Attach(m_zem) || *nl == nullptr) {
        ProcessError(kProcessError, failText, routine, __LINE__);
    }
}

ILPVariable* XMPSReader::FindOrCreateVariable(const char* name, size_t n, const char* failText,
                                              const char* routine) {
    ILPVariable* var = m_sink.FindOrCreateVariable(name, n);
    if (var == nullptr) ProcessError(kProcessError, failText, routine, __LINE__);
    return var;
}

void XMPSReader::NONLINEARData() {
    if (m_section != kXMPSXLINEAR && m_section != kXMPSNONLINEAR) {
        ProcessError("MPS Read/Process Synchronization Error",
                     "NONLINEARData method invoked in wrong state", "XMPSReader:NONLINEARData",
                     __LINE__);
    }
    XMPSNumericLocale cLocale;
    const bool xlinear = m_section == kXMPSXLINEAR;
    if (ReadMPSCard() != kXMPSCardToken) {
        ProcessError(kProcessError,
                     xlinear ? "XLINEAR Data section appears empty - no data card following header"
                             : "NONLINEAR Data section appears empty - no data card following header",
                     kNonLinearRoutine, __LINE__);
    }
    INonLinearModel* nl = nullptr;
    FetchTermModel("NONLINEARData Unable to Retrieve a model data object", kNonLinearRoutine, &nl);
    static const TermTexts texts = {
        kNonLinearRoutine,
        "MPS NONLINEAR Section Error - Incomplete Data Entry",
        "MPS NONLINEAR Section Error - Incomplete Data Entry - No Coefficient",
        "XMPS NONLINEAR Section Error - Unknown Row Type Key Found",
        "MPS NONLINEAR Section Error - Incomplete Data Entry - No Variables in Function",
        "MPS NONLINEAR Section Error - Numerical constants in Linear term entry",
        "NONLINEARData Unable to create new Equation data object",
        "NONLINEARData Unable to create new Variable data object",
        "NONLINEARData Unable to create new NonZero data object",
        "NONLINEARData Unable to create new NonLinearity data object",
        "MPS NONLINEAR Section Error - Unable to create new NonLinearity data object",
        // The keyword-less product branch reports a failed variable with
        // the XLINEAR text and place.
        "XLINEARData Unable to create new Variable data object",
        kXLinearRoutine,
    };
    ApplyTermCards(texts, nl, false);
}

void XMPSReader::XLINEARData() {
    if (m_section != kXMPSXLINEAR) {
        ProcessError("MPS Read/Process Synchronization Error",
                     "XLINEARData method invoked in wrong state", "XMPSReader:XLINEARData", __LINE__);
    }
    XMPSNumericLocale cLocale;
    if (ReadMPSCard() != kXMPSCardToken) {
        ProcessError(kProcessError, "XLINEAR Data section appears empty - no data card following header",
                     kXLinearRoutine, __LINE__);
    }
    INonLinearModel* nl = nullptr;
    FetchTermModel("XLINEARData Unable to Retrieve a model data object", kXLinearRoutine, &nl);
    static const TermTexts texts = {
        kXLinearRoutine,
        "MPS XLINEAR Section Error - Incomplete Data Entry",
        "MPS XLINEAR Section Error - Incomplete Data Entry - No Coefficient",
        "XMPS XLINEAR Section Error - Unknown Row Type Key Found",
        "MPS XLINEAR Section Error - Incomplete Data Entry - No Variables",
        nullptr,
        "XLINEARData Unable to create new Equation data object",
        "XLINEARData Unable to create new Variable data object",
        "XLINEARData Unable to create new NonZero data object",
        "XLINEARData Unable to create new NonLinearity data object",
        "XLINEARData Unable to create new NonLinearity data object",
        "XLINEARData Unable to create new Variable data object",
        kXLinearRoutine,
    };
    ApplyTermCards(texts, nl, true);
}

// Applies the section's cards from the current one on; the row types the
// keys gave are set when the section ends, also when a card fails.
void XMPSReader::ApplyTermCards(const TermTexts& texts, INonLinearModel* nl, bool byColumns) {
    try {
        do {
            // By columns: the card was split by the token rule and is read
            // again by the fixed columns.
            if (byColumns)
                ParseXLINEARDataCard();
            else
                PrefetchNextCard(kMPSFieldName2, kMPSFieldName1);
            ApplyTermCard(texts, nl);
        } while (ReadMPSCard() == kXMPSCardToken);
    } catch (...) {
        m_sink.ApplyDeferredRowTypes();
        throw;
    }
    m_sink.ApplyDeferredRowTypes();
}

void XMPSReader::ApplyTermCard(const TermTexts& texts, INonLinearModel* nl) {
    const char* eqName = Field(kMPSFieldName1);
    if (eqName[0] == '\0') CardError(texts.incomplete, texts.routine, __LINE__);
    if (m_coefficient[0] == '\0') CardError(texts.noCoefficient, texts.routine, __LINE__);

    // The row type is settled first, so a refused key creates nothing.
    int16_t type = ZEM_EQN_UNKNOWN;
    const bool hasKey = HasField(kMPSFieldKey);
    if (hasKey) {
        GetEquationTypeFromKey(type);
        if (type == ZEM_EQN_UNKNOWN) CardError(texts.unknownKey, texts.routine, __LINE__);
    }
    const int nArgs = ArgumentCount();
    int numbers = 0;
    if (texts.numericInLinear != nullptr) {
        for (int i = 0; i < nArgs; ++i) numbers += xmpstok::IsANumber(Argument(i), ArgumentLength(i)) ? 1 : 0;
    }
    if (nArgs - numbers == 0) CardError(texts.noVariables, texts.routine, __LINE__);
    if (m_keyword[0] == '\0' && numbers > 0) {
        CardError(texts.numericInLinear, texts.routine, __LINE__);
    }

    int eqnIndex = 0;  // 0 when not known without a visit
    ILPEquation* eqn = m_sink.FindOrCreateEquation(eqName, m_equationLength, eqnIndex);
    if (eqn == nullptr) ProcessError(kProcessError, texts.createEquation, texts.routine, __LINE__);
    if (hasKey) m_sink.DeferRowType(eqn, eqnIndex, type);

    const double coefficient = MPSParseNumber(m_coefficient);
    if (m_keyword[0] == '\0' && nArgs == 1) {
        ILPVariable* var =
            FindOrCreateVariable(Argument(0), ArgumentLength(0), texts.createVariable, texts.routine);
        if (!m_sink.AddCoefficient(eqn, eqnIndex, var, coefficient)) {
            ProcessError(kProcessError, texts.createNonZero, texts.routine, __LINE__);
        }
        return;
    }

    INonLinearity* made = nullptr;
    if (m_keyword[0] == '\0') {
        nl->CreateNonLinearityObject(static_cast<int16_t>(1), &made);
        if (made == nullptr) ProcessError(kProcessError, texts.createProduct, texts.routine, __LINE__);
    } else {
        nl->CreateNonLinearityObject(m_keyword, &made);
        if (made == nullptr) CardError(texts.createKeywordTerm, texts.routine, __LINE__);
    }
    PendingTerm term(made);
    term->SetEquationPtr(eqn);
    term->AddNLConstantObject(coefficient);
    for (int i = 0; i < nArgs; ++i) {
        const char* arg = Argument(i);
        if (m_keyword[0] != '\0' && texts.numericInLinear != nullptr && IsANumber(arg)) {
            term->AddNLConstantObject(MPSParseNumber(arg));
        } else if (m_keyword[0] == '\0') {
            term->AddVariableObject(FindOrCreateVariable(arg, ArgumentLength(i), texts.productVariable,
                                                         texts.productVariableRoutine));
        } else {
            term->AddVariableObject(FindOrCreateVariable(arg, ArgumentLength(i), texts.createVariable, texts.routine));
        }
    }
    // The model takes the term only when it accepts it.
    nl->AddNonLinearityObject(term.get());
    term.release();
}

