// The XMPS reader's framework: framing, headers, the section loop and the
// choice of card rule. The XLINEAR / NONLINEAR cards are in
// XMPSReaderTerms.cpp, the other extended sections in XMPSReaderSections.cpp.
#include "xmpsutil/XMPSReader.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "lpdata/ZEMException.h"
#include "xmpsutil/XMPSNumericLocale.h"
#include "zemmgr/IZEMMgr.h"

namespace {

constexpr const char* kProcessError = "MPS Read/Process Error";
constexpr const char* kLoopRoutine = "XMPSReader::ReadMPSStream";
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

}  // namespace

// ---- Construction ----

XMPSReader::XMPSReader(bool extendedFormat) : MPSStdReader(false), m_extendedFormat(extendedFormat) {
    CommonCtor();
}

XMPSReader::XMPSReader(IZEMDataMgr* model, bool extendedFormat)
    : MPSStdReader(model, false), m_zem(model), m_extendedFormat(extendedFormat) {
    CommonCtor();
}

void XMPSReader::CommonCtor() {
    SetFieldWidth(8, 12, 2);
    SetReaderLabels(zemsrc::kXmpsUtil, "XMPS input line ", kLoopRoutine,
                    "Unexpected end of XMPS file - no ENDATA card");
}

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
        ProcessError("MPS/ZEM Data Object Allocation Exception", "Failed to create ZEMDataMgr object",
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
        ProcessError("MPS Read Error", "No stream provided", "XMPSReader::ReadMPSStream", __LINE__);
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
        ProcessError("MPS File Read Error", "Expected NAME Card", kLoopRoutine, __LINE__);
    }
    NAMEData();
    ReadSectionLoop();
}

void XMPSReader::ReadSection(int16_t code) {
    switch (code) {
        case kMPSCardROWS: ROWSData(); return;
        case kMPSCardCOLUMNS:
        case kMPSCardRHS:
        case kMPSCardRANGES:
        case kMPSCardBOUNDS: {
            XMPSNumericLocale cLocale;
            if (code == kMPSCardCOLUMNS) {
                COLUMNSData();
            } else {
                MPSStdReader::ReadSection(code);
            }
            return;
        }
        default: MPSStdReader::ReadSection(code); return;
    }
}

void XMPSReader::SectionReadNoCard(int16_t) {
    ProcessError(kProcessError, "Section handler read no card", kLoopRoutine, __LINE__);
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
            CardError("Unexpected Data Card Read in XMPS File - no section header",
                      "XMPSReader::ProcessExtendedSections", __LINE__);
        default:
            CardError("Unexpected Header Card Read in MPS File", "XMPSReader::ProcessExtendedSections",
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

void XMPSReader::LocateCard(const char* line, size_t len, MPSCardView& card) {
    const int cut = static_cast<int>(std::min(len, static_cast<size_t>(kMPSLineSize - 1)));
    card.length = static_cast<size_t>(cut);
    m_nextMap.Build(line, cut);
    if (m_section != kXMPSXLINEAR && m_section != kXMPSNONLINEAR) {
        xmpstok::LocateFreeFormat(m_nextMap, SectionHasKey(), card.fields);
        return;
    }
    // The token rule's cards use these two fields alone.
    card.fields[kMPSFieldName2] = MPSFieldView{};
    card.fields[kMPSFieldName1] = m_nextMap.Next(m_geometry.start[kMPSFieldName1]);
    const int at = m_argColumn;
    if (at > 0 && at < cut && xmpstok::IsBlank(line[at - 1]) && !xmpstok::IsBlank(line[at])) {
        card.fields[kMPSFieldName2] = m_nextMap.Next(at);
    }
}

const xmpstok::LineMap& XMPSReader::CardMap() {
    if (CardInHandLocated()) return m_nextMap;
    m_map.Build(m_line, m_lineLength);
    return m_map;
}

void XMPSReader::ParseMPSStdDataCardFreeFormat() {
    char* const fields[xmpstok::kCardFieldCount] = {
        m_fields[kMPSFieldKey],   m_fields[kMPSFieldName1], m_fields[kMPSFieldName2],
        m_fields[kMPSFieldNumber1], m_fields[kMPSFieldName3], m_fields[kMPSFieldNumber2]};
    if (CardInHandLocated()) {
        xmpstok::CopyFields(m_next.fields, fields);
        return;
    }
    xmpstok::FieldSpan spans[xmpstok::kCardFieldCount];
    xmpstok::LocateFreeFormat(CardMap(), SectionHasKey(), spans);
    xmpstok::CopyFields(spans, fields);
}

void CreateXMPSReaderObject(XMPSReader** out, IZEMDataMgr* model) {
    if (out == nullptr) return;
    *out = new (std::nothrow) XMPSReader(model, false);
}
