#include "mpsutil/MPSStdWriter.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"

MPSStdWriter::MPSStdWriter() = default;

MPSStdWriter::MPSStdWriter(ILPStdDataMgr* model) : m_model(model) {}

MPSStdWriter::~MPSStdWriter() { CloseMPSFile(true); }

void MPSStdWriter::Destroy() { delete this; }

void MPSStdWriter::WriteMPSFile(const char* path) {
    OpenMPSFile(path);
    try {
        if (m_model == nullptr) {
            throw ZEM_Exception("MPS File Write Error", "No LP Data Object Available",
                                "MPSStdWriter::WriteMPSFile", zemsrc::kMpsUtil, __LINE__);
        }
        WriteSections();
    } catch (...) {
        CloseMPSFile(true);
        throw;
    }
    CloseMPSFile();
}

void MPSStdWriter::WriteMPSToStream(std::ostream& os) {
    if (m_model == nullptr) {
        throw ZEM_Exception("MPS File Write Error", "No LP Data Object Available",
                            "MPSStdWriter::WriteMPSToStream", zemsrc::kMpsUtil, __LINE__);
    }
    AttachOutput(&os);
    try {
        WriteSections();
    } catch (...) {
        AttachOutput(nullptr);
        throw;
    }
    const bool failed = m_writeFailed;
    AttachOutput(nullptr);
    if (failed) {
        throw ZEM_ExcpFileError(eFileWriteError, " ", "", "MPSStdWriter::WriteMPSToStream",
                                zemsrc::kMpsUtil, __LINE__);
    }
}

void MPSStdWriter::WriteSections() {
    NAMEData();
    ROWSData();
    COLUMNSData();
    RHSData();
    RANGESData();
    BOUNDSData();
    SETSData();
    ProcessExtendedSections();
    ENDATACard();
}

// ---- Output ----

void MPSStdWriter::OpenMPSFile(const char* path) {
    CloseMPSFile(true);
    m_filePath = path != nullptr ? path : "";
    m_file = path != nullptr ? std::fopen(path, "w+") : nullptr;
    if (m_file == nullptr) {
        throw ZEM_ExcpFileError(eFileCreateForWrite, " ", m_filePath.c_str(),
                                "MPSStdWriter::OpenMPSFile", zemsrc::kMpsUtil, __LINE__);
    }
    m_stream = nullptr;
    m_lineCount = 0;
    m_writeFailed = false;
}

void MPSStdWriter::CloseMPSFile(bool quiet) {
    if (m_file == nullptr) return;
    const bool failed = m_writeFailed || std::ferror(m_file) != 0;
    const bool closeFailed = std::fclose(m_file) != 0;
    m_file = nullptr;
    m_writeFailed = false;
    if ((failed || closeFailed) && !quiet) {
        throw ZEM_ExcpFileError(eFileWriteError, " ", m_filePath.c_str(),
                                "MPSStdWriter::CloseMPSFile", zemsrc::kMpsUtil, __LINE__);
    }
}

void MPSStdWriter::AttachOutput(std::ostream* os) {
    m_stream = os;
    m_lineCount = 0;
    m_writeFailed = false;
}

void MPSStdWriter::PutMPSLine() {
    ++m_lineCount;
    size_t n = strnlen(m_lineBuffer, kMPSLineSize - 1);
    m_lineBuffer[n++] = '\n';
    m_lineBuffer[n] = '\0';
    if (m_file != nullptr) {
        if (std::fwrite(m_lineBuffer, 1, n, m_file) != n) m_writeFailed = true;
    } else if (m_stream != nullptr) {
        m_stream->write(m_lineBuffer, static_cast<std::streamsize>(n));
        if (!*m_stream) m_writeFailed = true;
    }
}

void MPSStdWriter::WriteHeaderCard(const char* keyword) {
    std::snprintf(m_lineBuffer, sizeof m_lineBuffer, "%s", keyword);
    PutMPSLine();
}

// ---- Cards ----

void MPSStdWriter::SetField(int field, const char* text) {
    std::snprintf(m_fields[field], sizeof m_fields[field], "%s", text != nullptr ? text : "");
}

void MPSStdWriter::ClearFields() {
    for (auto& field : m_fields) field[0] = '\0';
}

void MPSStdWriter::WriteMPSDataCard() {
    constexpr int kLast = kMPSLineSize - 1;  // room for the text of a line
    std::memset(m_lineBuffer, ' ', kLast);
    int end = 0;
    for (int f = 0; f < kMPSFieldCount; ++f) {
        if (m_fields[f][0] == '\0') continue;
        const int start = m_geometry.start[f];
        if (start >= kLast) continue;
        char text[2 * kMPSLineSize];
        const int n = std::snprintf(text, sizeof text, "%*s", m_geometry.Width(f), m_fields[f]);
        const int copied = std::min(std::min(n, static_cast<int>(sizeof text) - 1), kLast - start);
        std::memcpy(m_lineBuffer + start, text, static_cast<size_t>(copied));
        end = std::max(end, start + copied);
    }
    m_lineBuffer[end] = '\0';
    PutMPSLine();
    ClearFields();
}

void MPSStdWriter::NAMECard() {
    std::string title;
    if (m_model != nullptr) m_model->GetModelTitle(title);
    std::snprintf(m_lineBuffer, sizeof m_lineBuffer, "%-*s%s", m_geometry.start[kMPSFieldName2],
                  "NAME", title.c_str());
    PutMPSLine();
}

void MPSStdWriter::ROWSCard() { WriteHeaderCard("ROWS"); }
void MPSStdWriter::COLUMNSCard() { WriteHeaderCard("COLUMNS"); }
void MPSStdWriter::RHSCard() { WriteHeaderCard("RHS"); }
void MPSStdWriter::RANGESCard() { WriteHeaderCard("RANGES"); }
void MPSStdWriter::BOUNDSCard() { WriteHeaderCard("BOUNDS"); }
void MPSStdWriter::SETSCard() { WriteHeaderCard("SETS"); }
void MPSStdWriter::ENDATACard() { WriteHeaderCard("ENDATA"); }

void MPSStdWriter::NAMEData() { NAMECard(); }
void MPSStdWriter::ROWSData() { ROWSCard(); }
void MPSStdWriter::COLUMNSData() { COLUMNSCard(); }
void MPSStdWriter::RHSData() { RHSCard(); }
void MPSStdWriter::RANGESData() { RANGESCard(); }
void MPSStdWriter::BOUNDSData() { BOUNDSCard(); }

void MPSStdWriter::SETSData() {
    ILPSpOrdSetList* sets = nullptr;
    if (m_model != nullptr) m_model->GetSpOrdSetCollectionIntf(&sets);
    if (sets != nullptr && sets->NumberOfSpOrdSets() > 0) SETSCard();
}

void MPSStdWriter::ProcessExtendedSections() {}

void CreateMPSStdWriterObject(MPSStdWriter** out, ILPStdDataMgr* model) {
    if (out == nullptr) return;
    *out = new (std::nothrow) MPSStdWriter(model);
}
