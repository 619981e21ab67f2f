// The reader's framework: input, lines, cards, field geometry and the order
// of sections. The section handlers are in MPSStdReaderSections.cpp.
#include "mpsutil/MPSStdReader.h"

#include <cstring>
#include <new>
#include <sstream>

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr const char* kReadFile = "MPSStdReader::ReadMPSFile";

// Header keywords in the order they are tried, with the length compared.
struct HeaderKeyword {
    const char* word;
    size_t length;
    int16_t code;
};
constexpr HeaderKeyword kHeaders[] = {
    {"NAME", 4, kMPSCardNAME},       {"ROWS", 4, kMPSCardROWS},
    {"COLUMNS", 7, kMPSCardCOLUMNS}, {"RHS", 3, kMPSCardRHS},
    {"RANGES", 6, kMPSCardRANGES},   {"BOUNDS", 6, kMPSCardBOUNDS},
    {"SETS", 4, kMPSCardSETS},       {"ENDATA", 6, kMPSCardENDATA},
};

}  // namespace

MPSStdReader::MPSStdReader(bool extendedWidths)
    : m_extendedWidths(extendedWidths), m_sourceTag(zemsrc::kMpsUtil) {}

MPSStdReader::MPSStdReader(ILPStdDataMgr* model, bool extendedWidths)
    : m_extendedWidths(extendedWidths), m_model(model), m_sourceTag(zemsrc::kMpsUtil) {}

MPSStdReader::~MPSStdReader() {
    if (m_ownsModel && m_model != nullptr) m_model->Destroy();
}

void MPSStdReader::Destroy() { delete this; }

void MPSStdReader::TakeLPStdDataObject(ILPStdDataMgr** out) {
    if (out != nullptr) *out = m_model;
    m_sink.Detach();
    m_model = nullptr;
    m_ownsModel = false;
}

void MPSStdReader::SetExtendedFieldWidth() { SetFieldWidth(128, 13, 2); }

void MPSStdReader::SetFieldWidth(int16_t nameWidth, int16_t numberWidth, int16_t keyWidth) {
    m_geometry.Set(nameWidth, numberWidth, keyWidth);
}

void MPSStdReader::AllocateDataObject() {
    ILPStdDataMgr* model = nullptr;
    CreateLPStdDataObject(&model);
    if (model == nullptr) {
        ProcessError("MPS/LP Data Object Allocation Exception", "Failed to create LPStdDataMgr object",
                     "MPSStdReader::AllocateDataObject", __LINE__);
    }
    m_model = model;
    m_ownsModel = true;
}

// ---- Input ----

void MPSStdReader::OpenMPSFile(const char* path) {
    CloseMPSFile();
    if (path != nullptr) m_file.open(path, std::ios::in);
    if (path == nullptr || !m_file.is_open()) {
        throw ZEM_ExcpFileError(eFileNotFound, " ", path ? path : "",
                                "MPSStdReader::OpenMPSFile", zemsrc::kMpsUtil, __LINE__);
    }
    AttachInput(&m_file);
}

void MPSStdReader::CloseMPSFile() {
    if (m_input == &m_file) AttachInput(nullptr);
    if (m_file.is_open()) m_file.close();
    m_file.clear();
}

void MPSStdReader::AttachInput(std::istream* in) {
    m_input = in;
    m_lines.Attach(in);
    m_next = MPSCardView{};
    m_lineCount = 0;
    m_line = "";
    m_lineLength = 0;
}

bool MPSStdReader::ReadMPSLine() {
    size_t text = 0;
    const char* line = m_lines.TakeLine(m_lineSpare, sizeof m_lineSpare, text);
    if (line == nullptr) {
        m_line = "";
        m_lineLength = 0;
        if (m_lines.InputFailed()) {
            throw ZEM_ExcpFileError(eFileReadError, " ", "", "MPSStdReader::ReadMPSLine",
                                    zemsrc::kMpsUtil, __LINE__);
        }
        return false;
    }
    ++m_lineCount;
    m_line = line;
    m_lineLength = static_cast<int>(text);
    return true;
}

void MPSStdReader::ResetReadState() {
    m_objectiveSeen = false;
    m_section = kMPSCardEndOfFile;
    m_cardStatus = kMPSCardEndOfFile;
    m_emptyColumns.clear();
    m_sink.Forget();
    for (auto& field : m_fields) field[0] = '\0';
}

// ---- Cards ----

int16_t MPSStdReader::ReadMPSCard() {
    for (;;) {
        if (!ReadMPSLine()) {
            for (auto& field : m_fields) field[0] = '\0';
            m_section = kMPSCardEndOfFile;
            return m_cardStatus = kMPSCardEndOfFile;
        }
        if (m_lineLength == 0) continue;
        for (auto& field : m_fields) field[0] = '\0';
        const char first = m_line[0];
        if (first == ' ') return m_cardStatus = ParseDataCard();
        if (first == '*' || first == '$') continue;

        for (const HeaderKeyword& h : kHeaders) {
            if (!MPSHasPrefix(m_line, h.word, h.length)) continue;
            switch (h.code) {
                case kMPSCardNAME: {
                    NAMECard();
                    const int at = m_geometry.start[kMPSFieldName2] - 4;
                    if (at < m_lineLength) {
                        MPSExtractField(m_fields[kMPSFieldName1], m_line + at, m_geometry.nameWidth);
                    }
                    break;
                }
                case kMPSCardROWS: ROWSCard(); break;
                case kMPSCardCOLUMNS: COLUMNSCard(); break;
                case kMPSCardRHS: RHSCard(); break;
                case kMPSCardRANGES: RANGESCard(); break;
                case kMPSCardBOUNDS: BOUNDSCard(); break;
                case kMPSCardSETS: SETSCard(); break;
                default: ENDATACard(); break;
            }
            m_section = h.code;
            return m_cardStatus = h.code;
        }
        const int16_t code = ExtendedHeaderCardSet();
        if (code == 0) {
            CardError("Unknown Header Card Read in MPS File", "MPSStdReader::ReadMPSCard", __LINE__);
        }
        m_section = code;
        return m_cardStatus = code;
    }
}

int16_t MPSStdReader::ParseDataCard() {
    ParseMPSStdDataCard();
    return kMPSCardData;
}

void MPSStdReader::ParseMPSStdDataCard() {
    MPSExtractFixedFields(m_line, m_lineLength, m_geometry, m_fields);
}

void MPSStdReader::NAMECard() { m_section = kMPSCardNAME; }
void MPSStdReader::ROWSCard() { m_section = kMPSCardROWS; }
void MPSStdReader::COLUMNSCard() { m_section = kMPSCardCOLUMNS; }
void MPSStdReader::RHSCard() { m_section = kMPSCardRHS; }
void MPSStdReader::RANGESCard() { m_section = kMPSCardRANGES; }
void MPSStdReader::BOUNDSCard() { m_section = kMPSCardBOUNDS; }
void MPSStdReader::SETSCard() { m_section = kMPSCardSETS; }
void MPSStdReader::ENDATACard() { m_section = kMPSCardENDATA; }

int16_t MPSStdReader::ExtendedHeaderCardSet() { return 0; }
void MPSStdReader::ProcessExtendedSections() {}
bool MPSStdReader::ProcessExtendedBOUNDSKeySet(const char*, ILPVariable*) { return false; }
void MPSStdReader::CheckMPSStatus() {}

// ---- Whole file ----

void MPSStdReader::ReadMPSFile(const char* path) {
    OpenMPSFile(path);
    try {
        ReadModel();
    } catch (...) {
        CloseMPSFile();
        throw;
    }
    CloseMPSFile();
}

void MPSStdReader::ReadMPSFromStream(std::istream& in) {
    AttachInput(&in);
    try {
        ReadModel();
    } catch (...) {
        AttachInput(nullptr);
        throw;
    }
    AttachInput(nullptr);
}

void MPSStdReader::ReadModel() {
    ResetReadState();
    if (m_extendedWidths) SetExtendedFieldWidth();
    if (m_model == nullptr) AllocateDataObject();

    if (ReadMPSCard() != kMPSCardNAME) {
        ProcessError("MPS File Read Error", "Expected NAME Card", kReadFile, __LINE__);
    }
    NAMEData();
    if (m_cardStatus != kMPSCardROWS) {
        ProcessError("MPS File Read Error", "Expected ROWS Card", kReadFile, __LINE__);
    }
    ROWSData();
    if (m_cardStatus != kMPSCardCOLUMNS) {
        ProcessError("MPS File Read Error", "Expected COLUMNS Card", kReadFile, __LINE__);
    }
    COLUMNSData();
    ReadSectionLoop();
}

void MPSStdReader::ReadSectionLoop() {
    for (;;) {
        const int linesBefore = m_lineCount;
        const int16_t code = m_cardStatus;
        if (code == kMPSCardENDATA) {
            m_sink.Forget();  // rows and columns may be dropped now
            CheckMPSStatus();
            m_model->ProcessFullCollection();
            return;
        }
        if (code == kMPSCardEndOfFile) {
            ProcessError("MPS File Read Error", m_noEndataMessage, m_loopRoutine, __LINE__);
        }
        ReadSection(code);
        if (m_lineCount == linesBefore && m_cardStatus == code) SectionReadNoCard(code);
    }
}

void MPSStdReader::ReadSection(int16_t code) {
    switch (code) {
        case kMPSCardRHS: RHSData(); break;
        case kMPSCardRANGES: RANGESData(); break;
        case kMPSCardBOUNDS: BOUNDSData(); break;
        case kMPSCardSETS: SETSData(); break;
        default: ProcessExtendedSections(); break;
    }
}

void MPSStdReader::SectionReadNoCard(int16_t code) {
    // A header of the file's first part again, or a section of a derived
    // reader that read nothing.
    if (code == kMPSCardNAME || code == kMPSCardROWS || code == kMPSCardCOLUMNS) {
        CardError("Unexpected Header Card Read in MPS File", m_loopRoutine, __LINE__);
    }
    ProcessError("MPS Read/Process Error", "No handler for the section of this header card",
                 m_loopRoutine, __LINE__);
}

// ---- Helpers ----

void MPSStdReader::CheckSection(int16_t section, const char* message, const char* routine,
                                int srcLine) const {
    if (m_section != section) {
        ProcessError("MPS Read/Process Synchronization Error", message, routine, srcLine);
    }
}

void MPSStdReader::ReadFirstDataCard(const char* emptyMessage, const char* routine,
                                     int srcLine) {
    if (ReadMPSCard() != kMPSCardData) {
        ProcessError("MPS Read/Process Error", emptyMessage, routine, srcLine);
    }
}

void MPSStdReader::FetchModelParts(const char* message, const char* routine, int srcLine) {
    if (!m_sink.Attach(m_model)) ProcessError("MPS Read/Process Error", message, routine, srcLine);
}

double MPSStdReader::FieldNumber(int f) const { return MPSParseNumber(m_fields[f]); }

void MPSStdReader::SetReaderLabels(const char* sourceTag, const char* inputLabel,
                                   const char* loopRoutine, const char* noEndataMessage) {
    m_sourceTag = sourceTag;
    m_inputLabel = inputLabel;
    m_loopRoutine = loopRoutine;
    m_noEndataMessage = noEndataMessage;
}

namespace {

// A traceback buffer that tells where in the input the read stopped.
std::ostringstream* InputPosition(const char* label, int lineCount) {
    auto* buffer = new std::ostringstream;
    if (lineCount > 0) *buffer << label << lineCount << "\n";
    return buffer;
}

}  // namespace

void MPSStdReader::CardError(const char* message, const char* routine, int srcLine) const {
    throw ZEM_Exception(message, m_line, routine, m_sourceTag, srcLine,
                        InputPosition(m_inputLabel, m_lineCount));
}

void MPSStdReader::ProcessError(const char* category, const char* message, const char* routine,
                                int srcLine) const {
    throw ZEM_Exception(category, message, routine, m_sourceTag, srcLine,
                        InputPosition(m_inputLabel, m_lineCount));
}

void CreateMPSStdReaderObject(MPSStdReader** out, ILPStdDataMgr* model) {
    if (out == nullptr) return;
    *out = new (std::nothrow) MPSStdReader(model, false);
}
