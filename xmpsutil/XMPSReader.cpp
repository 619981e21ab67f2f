// The XMPS reader's framework: framing, headers, the two card rules and the
// XLINEAR / NONLINEAR term cards. The other extended sections are in
// XMPSReaderSections.cpp.
#include "xmpsutil/XMPSReader.h"

#include <cstring>
#include <memory>
#include <new>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "xmpsutil/XMPSNumericLocale.h"
#include "zemmgr/IZEMMgr.h"

namespace {

constexpr const char* kProcessError = "MPS Read/Process Error";
// Returned for a first line that is no header at all, so that the read
// fails with "Expected NAME Card" rather than as an unknown header.
constexpr int16_t kUnknownFirstCard = 199;

struct ExtendedHeader {
    const char* word;
    size_t length;
    int16_t code;
};
// Tried in this order, each as a prefix of the line.
constexpr ExtendedHeader kExtendedHeaders[] = {
    {"<zemblockpersist", 16, kXMPSXMLHEADER}, {"<zemXMPS>", 9, kXMPSXMLSTART},
    {"XLINEAR", 7, kXMPSXLINEAR},             {"NONLINEAR", 9, kXMPSNONLINEAR},
    {"INITIAL", 7, kXMPSINITIAL},             {"XOPTION", 7, kXMPSXOPTION},
    {"XTNDFMT", 7, kXMPSXTNDFMT},             {"COMPLEMENT", 10, kXMPSCOMPLEMENT},
    {"TEMPBOUNDS", 10, kXMPSTEMPBOUNDS},      {"VARGROUPS", 9, kXMPSVARGROUPS},
    {"EXTERNMDLS", 10, kXMPSEXTERNMDLS},
};

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

namespace {

const char* const kNonLinearRoutine = "XMPSReader::NONLINEARData";
const char* const kXLinearRoutine = "XMPSReader::XLINEARData";

}  // namespace

// ---- Construction ----

XMPSReader::XMPSReader(bool extendedFormat) : MPSStdReader(false), m_extendedFormat(extendedFormat) {
    CommonCtor();
}

XMPSReader::XMPSReader(IZEMDataMgr* model, bool extendedFormat)
    : MPSStdReader(model, false), m_zem(model), m_extendedFormat(extendedFormat) {
    CommonCtor();
}

void XMPSReader::CommonCtor() { SetFieldWidth(8, 12, 2); }

XMPSReader::~XMPSReader() {
    if (m_ownsZem && m_zem != nullptr) m_zem->IRelease();
    m_zem = nullptr;
    m_model = nullptr;
    m_ownsModel = false;
}

void XMPSReader::Destroy() { delete this; }

void XMPSReader::AllocateDataObject() {
    IZEMMgr* mgr = nullptr;
    ZEMObjectFactory(&mgr);
    if (mgr == nullptr) {
        ProcessFault("MPS/ZEM Data Object Allocation Exception", "Failed to create ZEMDataMgr object",
                     "XMPSReader::AllocateDataObject", __LINE__);
    }
    mgr->IAddRef();
    m_zem = mgr;
    m_model = mgr;
    m_ownsZem = true;
    m_ownsModel = false;
}

void XMPSReader::TakeZEMDataObject(IZEMDataMgr** out) {
    if (out != nullptr) *out = m_zem;
    m_zem = nullptr;
    m_ownsZem = false;
    MPSStdReader::TakeLPStdDataObject(nullptr);
}

void XMPSReader::TakeLPStdDataObject(ILPStdDataMgr** out) {
    if (out != nullptr) *out = m_zem != nullptr ? m_zem : m_model;
    TakeZEMDataObject(nullptr);
}

void XMPSReader::SetFieldWidth(int16_t nameWidth, int16_t numberWidth, int16_t keyWidth) {
    MPSStdReader::SetFieldWidth(nameWidth, numberWidth, keyWidth);
    m_thirdFieldColumn = m_geometry.start[kMPSFieldName1] + m_geometry.nameWidth + 2;
    m_nameListColumn = m_thirdFieldColumn + m_geometry.numberWidth + 2;
}

bool XMPSReader::IsANumber(const char* token) { return xmpstok::IsANumber(token); }

bool XMPSReader::ExtractToken(int& count, const char* source, char* target, int maxLen) {
    return xmpstok::ExtractToken(count, source, target, maxLen);
}

// ---- Reading ----

void XMPSReader::ReadMPSFile(const char* path) {
    OpenMPSFile(path);
    try {
        ReadXMPSInput(&m_file);
    } catch (...) {
        CloseMPSFile();
        throw;
    }
    CloseMPSFile();
}

void XMPSReader::ReadMPSStream(std::stringstream* in) {
    if (in == nullptr) {
        ProcessFault("MPS Read Error", "No stream provided", "XMPSReader::ReadMPSStream", __LINE__);
    }
    AttachInput(in);
    try {
        ReadXMPSInput(in);
    } catch (...) {
        AttachInput(nullptr);
        throw;
    }
    AttachInput(nullptr);
}

void XMPSReader::ReadMPSXMLStream(std::stringstream*) {}

void XMPSReader::ReadXMPSInput(std::istream*) {
    ResetReadState();
    m_xlinearSeen = false;
    m_nonlinearSeen = false;
    m_initialRead = false;
    m_lastEquation = nullptr;
    m_lastVariable = nullptr;
    if (m_extendedFormat) {
        SetExtendedFieldWidth();
    } else {
        SetFieldWidth(8, 12, 2);
    }
    if (m_model == nullptr) AllocateDataObject();

    m_readingFirstCard = true;
    int16_t code = ReadMPSCard();
    m_readingFirstCard = false;
    if (code == kXMPSXMLHEADER) {
        XMLHeaderData();
        code = m_cardStatus;
    }
    if (code == kXMPSXMLSTART) {
        XMLStartData();
        code = m_cardStatus;
    }
    if (code != kMPSCardNAME) {
        ProcessFault("MPS File Read Error", "Expected NAME Card", "XMPSReader::ReadMPSStream",
                     __LINE__);
    }
    NAMEData();
    ReadSectionLoop();
}

void XMPSReader::ReadSectionLoop() {
    for (;;) {
        const int linesBefore = m_lineCount;
        const int16_t status = m_cardStatus;
        switch (status) {
            case kMPSCardROWS: ROWSData(); break;
            case kMPSCardCOLUMNS: {
                XMPSNumericLocale cLocale;
                COLUMNSData();
                break;
            }
            case kMPSCardRHS: {
                XMPSNumericLocale cLocale;
                RHSData();
                break;
            }
            case kMPSCardRANGES: {
                XMPSNumericLocale cLocale;
                RANGESData();
                break;
            }
            case kMPSCardBOUNDS: {
                XMPSNumericLocale cLocale;
                BOUNDSData();
                break;
            }
            case kMPSCardSETS: SETSData(); break;
            case kMPSCardENDATA:
                m_lastEquation = nullptr;
                m_lastVariable = nullptr;
                CheckMPSStatus();
                m_model->ProcessFullCollection();
                return;
            case kMPSCardEndOfFile:
                ProcessFault("MPS File Read Error", "Unexpected end of XMPS file - no ENDATA card",
                             "XMPSReader::ReadMPSStream", __LINE__);
            default: ProcessExtendedSections(); break;
        }
        // Every handler reads at least one card; one that did not would
        // make this loop run for ever.
        if (m_lineCount == linesBefore && m_cardStatus == status) {
            ProcessFault(kProcessError, "Section handler read no card", "XMPSReader::ReadMPSStream",
                         __LINE__);
        }
    }
}

void XMPSReader::NAMEData() {
    // In this dialect the model name is the token after the keyword.
    char* name = m_fields[kMPSFieldName1];
    int count = 0;
    if (m_lineLength > 4) {
        ExtractToken(count, m_line + 4, name, xmpstok::kTokenMax);
    } else {
        name[0] = '\0';
    }
    MPSStdReader::NAMEData();
}

int16_t XMPSReader::ExtendedHeaderCardSet() {
    for (const ExtendedHeader& h : kExtendedHeaders) {
        if (!MPSHasPrefix(m_line, h.word, h.length)) continue;
        switch (h.code) {
            case kXMPSXMLHEADER: XMLHEADERCard(); break;
            case kXMPSXMLSTART: XMLSTARTCard(); break;
            case kXMPSXLINEAR: XLINEARCard(); break;
            case kXMPSNONLINEAR: NONLINEARCard(); break;
            case kXMPSINITIAL: INITIALCard(); break;
            case kXMPSXOPTION: XOPTIONCard(); break;
            case kXMPSXTNDFMT: XTNDFMTCard(); break;
            case kXMPSCOMPLEMENT: COMPLEMENTCard(); break;
            case kXMPSTEMPBOUNDS: TEMPBOUNDSCard(); break;
            case kXMPSVARGROUPS: VARGROUPSCard(); break;
            default: EXTERNMDLSCard(); break;
        }
        return h.code;
    }
    return m_readingFirstCard ? kUnknownFirstCard : 0;
}

void XMPSReader::ProcessExtendedSections() {
    switch (m_cardStatus) {
        case kXMPSXLINEAR:
        case kXMPSNONLINEAR: NONLINEARData(); return;
        case kXMPSINITIAL: INITIALData(); return;
        case kXMPSXOPTION: XOPTIONData(); return;
        case kXMPSXTNDFMT: XTNDFMTData(); return;
        case kXMPSCOMPLEMENT: COMPLEMENTData(); return;
        case kXMPSTEMPBOUNDS: TEMPBOUNDSData(); return;
        case kXMPSVARGROUPS: VARGROUPSData(); return;
        case kXMPSEXTERNMDLS: EXTERNMDLSData(); return;
        case kXMPSXMLHEADER: XMLHeaderData(); return;
        case kXMPSXMLSTART: XMLStartData(); return;
        case kMPSCardData:
        case kXMPSCardFixedXLINEAR:
        case kXMPSCardToken:
            CardFault("Unexpected Data Card Read in XMPS File - no section header",
                      "XMPSReader::ProcessExtendedSections", __LINE__);
        default:
            CardFault("Unexpected Header Card Read in MPS File", "XMPSReader::ProcessExtendedSections",
                      __LINE__);
    }
}

// ---- Card rules ----

bool XMPSReader::SectionHasKey() const {
    switch (m_section) {
        case kMPSCardCOLUMNS:
        case kMPSCardRHS:
        case kMPSCardRANGES:
        case kXMPSXOPTION:
        case kXMPSCOMPLEMENT: return false;
        default: return true;
    }
}

int16_t XMPSReader::ParseDataCard() {
    if (m_section == kXMPSXLINEAR || m_section == kXMPSNONLINEAR) return ParseNONLINEARDataCard();
    ParseMPSStdDataCardFreeFormat();
    return kMPSCardData;
}

void XMPSReader::ParseMPSStdDataCardFreeFormat() {
    char* const fields[xmpstok::kCardFieldCount] = {
        m_fields[kMPSFieldKey],   m_fields[kMPSFieldName1], m_fields[kMPSFieldName2],
        m_fields[kMPSFieldNumber1], m_fields[kMPSFieldName3], m_fields[kMPSFieldNumber2]};
    xmpstok::ParseFreeFormat(m_line, m_lineLength, SectionHasKey(), fields);
}

void XMPSReader::AppendArgument(const char* text) {
    const size_t n = std::strlen(text);
    m_argStart.push_back(m_argText.size());
    m_argText.insert(m_argText.end(), text, text + n + 1);
}

bool XMPSReader::ReadContinuedXMPSLine() {
    while (ReadMPSLine()) {
        if (m_lineLength == 0 || m_line[0] == '*' || m_line[0] == '$') continue;
        return true;
    }
    return false;
}

int16_t XMPSReader::ParseNONLINEARDataCard() {
    m_keyword[0] = '\0';
    m_coefficient[0] = '\0';
    m_argText.clear();
    m_argStart.clear();
    char* key = m_fields[kMPSFieldKey];
    char* equation = m_fields[kMPSFieldName1];
    key[0] = '\0';
    equation[0] = '\0';

    // Key: the non-blank characters of the fixed key field.
    int k = 0;
    for (int i = 1; i < 1 + m_geometry.keyWidth && i < m_lineLength; ++i) {
        if (!xmpstok::isBlank(m_line[i])) key[k++] = m_line[i];
    }
    key[k] = '\0';

    int pos = m_geometry.start[kMPSFieldName1];
    if (pos >= m_lineLength) return kXMPSCardToken;
    int count = 0;
    if (!ExtractToken(count, m_line + pos, equation, xmpstok::kTokenMax)) return kXMPSCardToken;
    pos += count;
    if (static_cast<int>(std::strlen(equation)) > m_geometry.nameWidth) {
        equation[m_geometry.nameWidth] = '\0';
    }

    char token[xmpstok::kTokenMax + 1];
    count = 0;
    if (!ExtractToken(count, m_line + pos, token, xmpstok::kTokenMax)) return kXMPSCardToken;
    pos += count;
    if (!IsANumber(token)) {
        std::memcpy(m_keyword, token, sizeof token);
        count = 0;
        if (!ExtractToken(count, m_line + pos, token, xmpstok::kTokenMax)) return kXMPSCardToken;
        pos += count;
        // A keyword without a number after it: the card has no coefficient.
        if (!IsANumber(token)) return kXMPSCardToken;
    }
    std::memcpy(m_coefficient, token, sizeof token);

    for (;;) {
        count = 0;
        if (!ExtractToken(count, m_line + pos, token, xmpstok::kTokenMax)) break;
        pos += count;
        if (token[0] == '\\' && token[1] == '\0') {
            if (!ReadContinuedXMPSLine()) break;
            pos = 0;
            continue;
        }
        AppendArgument(token);
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
    if (eqnStart < m_lineLength) MPSExtractField(m_fields[kMPSFieldName1], m_line + eqnStart, nameWidth);
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
        ProcessFault("MPS Read/Process Synchronization Error", wrongStateText, routine, __LINE__);
    }
}

void XMPSReader::FetchTermModel(const char* failText, const char* routine, INonLinearModel** nl) {
    m_varList = nullptr;
    m_eqnList = nullptr;
    m_matrix = nullptr;
    *nl = nullptr;
    if (m_zem != nullptr) {
        m_zem->GetVariableCollectionIntf(&m_varList);
        m_zem->GetEquationCollectionIntf(&m_eqnList);
        m_zem->GetMatrixIntf(&m_matrix);
        m_zem->GetNonLinearModelIntf(nl);
    }
    if (m_varList == nullptr || m_eqnList == nullptr || m_matrix == nullptr || *nl == nullptr) {
        ProcessFault(kProcessError, failText, routine, __LINE__);
    }
}

ILPVariable* XMPSReader::FindOrCreateVariable(const char* name, const char* failText,
                                              const char* routine) {
    // Cards of one column usually come together.
    if (m_lastVariable != nullptr && std::strcmp(m_lastVariable->GetName(), name) == 0) {
        return m_lastVariable;
    }
    ILPVariable* var = FindVariable(name);
    if (var == nullptr) var = NewVariable(name);
    if (var == nullptr) ProcessFault(kProcessError, failText, routine, __LINE__);
    m_lastVariable = var;
    return var;
}

void XMPSReader::NONLINEARData() {
    if (m_section != kXMPSXLINEAR && m_section != kXMPSNONLINEAR) {
        ProcessFault("MPS Read/Process Synchronization Error",
                     "NONLINEARData method invoked in wrong state", "XMPSReader:NONLINEARData",
                     __LINE__);
    }
    XMPSNumericLocale cLocale;
    const bool xlinear = m_section == kXMPSXLINEAR;
    if (ReadMPSCard() != kXMPSCardToken) {
        ProcessFault(kProcessError,
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
    do {
        ApplyTermCard(texts, nl);
    } while (ReadMPSCard() == kXMPSCardToken);
}

void XMPSReader::XLINEARData() {
    if (m_section != kXMPSXLINEAR) {
        ProcessFault("MPS Read/Process Synchronization Error",
                     "XLINEARData method invoked in wrong state", "XMPSReader:XLINEARData", __LINE__);
    }
    XMPSNumericLocale cLocale;
    if (ReadMPSCard() != kXMPSCardToken) {
        ProcessFault(kProcessError, "XLINEAR Data section appears empty - no data card following header",
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
    do {
        // The section's cards were split by the token rule; this handler
        // reads them by columns.
        ParseXLINEARDataCard();
        ApplyTermCard(texts, nl);
    } while (ReadMPSCard() == kXMPSCardToken);
}

void XMPSReader::ApplyTermCard(const TermTexts& texts, INonLinearModel* nl) {
    const char* eqName = Field(kMPSFieldName1);
    if (eqName[0] == '\0') CardFault(texts.incomplete, texts.routine, __LINE__);
    if (m_coefficient[0] == '\0') CardFault(texts.noCoefficient, texts.routine, __LINE__);

    // The row type is settled first, so a refused key creates nothing.
    int16_t type = ZEM_EQN_UNKNOWN;
    const bool hasKey = HasField(kMPSFieldKey);
    if (hasKey) {
        GetEquationTypeFromKey(type);
        if (type == ZEM_EQN_UNKNOWN) CardFault(texts.unknownKey, texts.routine, __LINE__);
    }
    const int nArgs = ArgumentCount();
    int numbers = 0;
    if (texts.numericInLinear != nullptr) {
        for (int i = 0; i < nArgs; ++i) numbers += IsANumber(Argument(i)) ? 1 : 0;
    }
    if (nArgs - numbers == 0) CardFault(texts.noVariables, texts.routine, __LINE__);
    if (m_keyword[0] == '\0' && numbers > 0) {
        CardFault(texts.numericInLinear, texts.routine, __LINE__);
    }

    ILPEquation* eqn = m_lastEquation;
    if (eqn == nullptr || std::strcmp(eqn->GetName(), eqName) != 0) {
        eqn = FindEquation(eqName);
        if (eqn == nullptr) {
            m_eqnList->CreateNewEquationObject(&eqn);
            if (eqn == nullptr) ProcessFault(kProcessError, texts.createEquation, texts.routine, __LINE__);
            eqn->SetName(eqName);
            m_eqnList->AddEquationObject(eqn);
        }
        m_lastEquation = eqn;
    }
    if (hasKey && eqn->GetType() != ZEM_EQN_OBJECTIVE) eqn->SetType(type);

    const double coefficient = MPSParseNumber(m_coefficient);
    if (m_keyword[0] == '\0' && nArgs == 1) {
        ILPVariable* var = FindOrCreateVariable(Argument(0), texts.createVariable, texts.routine);
        ILPNonZero* nz = nullptr;
        m_matrix->CreateNewNonZeroObject(&nz);
        if (nz == nullptr) ProcessFault(kProcessError, texts.createNonZero, texts.routine, __LINE__);
        nz->SetEquationPtr(eqn);
        nz->SetVariablePtr(var);
        nz->SetCoefficient(coefficient);
        m_matrix->AddNonZeroObject(nz);
        return;
    }

    INonLinearity* made = nullptr;
    if (m_keyword[0] == '\0') {
        nl->CreateNonLinearityObject(static_cast<int16_t>(1), &made);
        if (made == nullptr) ProcessFault(kProcessError, texts.createProduct, texts.routine, __LINE__);
    } else {
        nl->CreateNonLinearityObject(m_keyword, &made);
        if (made == nullptr) CardFault(texts.createKeywordTerm, texts.routine, __LINE__);
    }
    PendingTerm term(made);
    term->SetEquationPtr(eqn);
    term->AddNLConstantObject(coefficient);
    for (int i = 0; i < nArgs; ++i) {
        const char* arg = Argument(i);
        if (m_keyword[0] != '\0' && texts.numericInLinear != nullptr && IsANumber(arg)) {
            term->AddNLConstantObject(MPSParseNumber(arg));
        } else if (m_keyword[0] == '\0') {
            term->AddVariableObject(
                FindOrCreateVariable(arg, texts.productVariable, texts.productVariableRoutine));
        } else {
            term->AddVariableObject(FindOrCreateVariable(arg, texts.createVariable, texts.routine));
        }
    }
    nl->AddNonLinearityObject(term.release());
}

// ---- Errors ----

namespace {

// A traceback buffer that tells where in the input the read stopped.
std::ostringstream* InputPosition(int lineCount) {
    auto* buffer = new std::ostringstream;
    if (lineCount > 0) *buffer << "XMPS input line " << lineCount << "\n";
    return buffer;
}

}  // namespace

void XMPSReader::CardFault(const char* message, const char* routine, int srcLine) const {
    throw ZEM_Exception(message, m_line, routine, zemsrc::kXmpsUtil, srcLine,
                        InputPosition(m_lineCount));
}

void XMPSReader::ProcessFault(const char* category, const char* message, const char* routine,
                              int srcLine) const {
    throw ZEM_Exception(category, message, routine, zemsrc::kXmpsUtil, srcLine,
                        InputPosition(m_lineCount));
}

void CreateXMPSReaderObject(XMPSReader** out, IZEMDataMgr* model) {
    if (out == nullptr) return;
    *out = new (std::nothrow) XMPSReader(model, false);
}
