// Base of the MPS writers: owns the output (a file or a caller's stream),
// the line buffer, the field geometry and the order of the sections, and
// writes the section header cards. It writes no data cards itself: derived
// writers fill the six field texts and call WriteMPSDataCard, which
// right-aligns each text in its field:
//
//   NAME          BLEND
//   ROWS
//   COLUMNS
//          X1      COST           1.0       LIM1           1.0
//   RHS
//   RANGES
//   BOUNDS
//   ENDATA
//
// (SETS is written only when the model has a special ordered set.)
#pragma once

#include <cstdint>
#include <cstdio>
#include <ostream>
#include <string>

#include "mpsutil/MPSFieldParser.h"

class ILPStdDataMgr;

class MPSStdWriter {
public:
    MPSStdWriter();
    explicit MPSStdWriter(ILPStdDataMgr* model);
    MPSStdWriter(const MPSStdWriter&) = delete;
    MPSStdWriter& operator=(const MPSStdWriter&) = delete;
    virtual ~MPSStdWriter();

    // Creates the file (ZEM_ExcpFileError "Error Creating File for Write"
    // when it cannot) and writes the model's sections into it.
    virtual void WriteMPSFile(const char* path);
    virtual void Destroy();

    // Writes the same sections to a caller's stream.
    void WriteMPSToStream(std::ostream& os);
    int LineCount() const { return m_lineCount; }

protected:
    // Places every non-empty field text right-aligned in its field and
    // writes the line; the field texts are cleared afterwards.
    virtual void WriteMPSDataCard();

    virtual void NAMECard();
    virtual void ROWSCard();
    virtual void COLUMNSCard();
    virtual void RHSCard();
    virtual void RANGESCard();
    virtual void BOUNDSCard();
    virtual void SETSCard();
    virtual void ENDATACard();

    // Each writes its section; here only the header card (SETS only when
    // the model has a set).
    virtual void NAMEData();
    virtual void ROWSData();
    virtual void COLUMNSData();
    virtual void RHSData();
    virtual void RANGESData();
    virtual void BOUNDSData();
    virtual void SETSData();
    virtual void ProcessExtendedSections();

    // ---- Helpers for this writer and derived writers ----

    void OpenMPSFile(const char* path);
    // Closes the file; a failed write or close throws ZEM_ExcpFileError
    // "Error during data WRITE" unless `quiet` (used on the error path).
    void CloseMPSFile(bool quiet = false);
    // Makes `os` the output (null: none) and resets the line counter.
    void AttachOutput(std::ostream* os);
    // Writes m_lineBuffer as one line: raises the line counter and appends
    // the line feed (the text is cut to 1023 characters to fit).
    void PutMPSLine();
    // Writes a header card: `keyword` at the start of the line.
    void WriteHeaderCard(const char* keyword);
    void SetField(int field, const char* text);
    void ClearFields();

    FILE* m_file = nullptr;
    std::ostream* m_stream = nullptr;
    std::string m_filePath;
    char m_lineBuffer[kMPSLineSize + 1] = {};
    int m_lineCount = 0;
    bool m_writeFailed = false;
    char m_fields[kMPSFieldCount][kMPSLineSize] = {};
    MPSFieldGeometry m_geometry;
    ILPStdDataMgr* m_model = nullptr;

private:
    void WriteSections();
};

// Stores a new writer of `model` in *out, or null when it cannot be made.
// Release it with Destroy.
void CreateMPSStdWriterObject(MPSStdWriter** out, ILPStdDataMgr* model);
