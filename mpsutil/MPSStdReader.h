// Reader of fixed-field MPS files into a standard data manager.
//
// A file is a NAME card, a ROWS section, a COLUMNS section, then any of RHS,
// RANGES, BOUNDS and SETS in any order (each may repeat), and ENDATA:
//
//   *        1         2         3         4         5         6
//   *234567890123456789012345678901234567890123456789012345678901
//   NAME          BLEND
//   ROWS
//    N  COST
//    L  LIM1
//    G  LIM2
//    E  MYEQN
//   COLUMNS
//       X1        COST               1.0   LIM1               1.0
//       X1        LIM2               1.0
//       X2        COST               2.0   LIM1               1.0
//       X2        MYEQN             -1.0
//   RHS
//       RHS       LIM1               4.0   LIM2               1.0
//   RANGES
//       RNG       LIM1               2.5
//   BOUNDS
//    UP BND       X1                 4.0
//    MI BND       X2
//   SETS
//    S1 SOS1      X1                 1.0   X2                 2.0
//   ENDATA
//
// Lines whose first character is "*" or "$" are comments and empty lines are
// skipped. Any other line whose first character is not a blank is a header
// card, matched by prefix ("ROWSX" is ROWS); a line with a blank first
// character is a data card, split into six fixed fields (MPSFieldParser.h).
// Blanks inside a field become underscores. The line buffer is 1024 bytes: a
// line longer than 1023 characters is split, and its remainder is read as a
// line (a card) of its own. A NUL byte ends a line's text.
//
// Section rules, in brief (the messages are the exception names):
// - ROWS: key "N" (in either of the two key columns; tested first), then
//   "E", "G", "L". The first N row is the objective, later N rows are free
//   rows. So "LE" reads as an equality row.
// - COLUMNS: column name in field 2 and up to two (row, value) pairs; a card
//   with a column name only makes the column "empty" (no variable is made,
//   and BOUNDS cards on it are ignored). Repeated (row, column) pairs are
//   summed. There is no integer-marker handling: a 'MARKER' card is a pair
//   without a value and is refused.
// - RHS: a set name is required; an unknown row in the first pair is
//   ignored, in the second pair it is an error.
// - RANGES: a range of exactly 0 makes the row an equality.
// - BOUNDS: LO UP SB FX FR MI PL BV LI UI SC; an unknown column is created.
// - SETS: S1 S2 S3 CS TB T2 DP.
// At ENDATA the data manager's ProcessFullCollection runs, which removes
// every row that received no coefficient.
//
// Every failure throws ZEM_Exception with source tag "mpsutil"; a file that
// cannot be opened throws ZEM_ExcpFileError (file not found).
//
// Derived readers (the extended dialect) override the hooks
// ExtendedHeaderCardSet, ProcessExtendedSections,
// ProcessExtendedBOUNDSKeySet, ParseDataCard and SetFieldWidth, and the
// section loop's step (ReadSection) and look-ahead rule (LocateCard), and
// reuse the line and card reading, the field buffers, the geometry, the one
// throw path (CardError, ProcessError) and the model sink (MPSModelSink.h).
#pragma once

#include <cstdint>
#include <fstream>
#include <istream>
#include <string>
#include <unordered_set>

#include "mpsutil/MPSFieldParser.h"
#include "mpsutil/MPSLineSource.h"
#include "mpsutil/MPSModelSink.h"

class ILPStdDataMgr;
class ILPVariable;

// Card codes returned by ReadMPSCard and kept as the section state. Derived
// readers add their own section codes through ExtendedHeaderCardSet.
enum MPSCardCode : int16_t {
    kMPSCardEndOfFile = 0,  // no card left before ENDATA
    kMPSCardNAME = 1,
    kMPSCardROWS = 2,
    kMPSCardCOLUMNS = 3,
    kMPSCardRHS = 4,
    kMPSCardRANGES = 5,
    kMPSCardBOUNDS = 6,
    kMPSCardSETS = 7,
    kMPSCardENDATA = 8,
    kMPSCardData = 10
};

class MPSStdReader {
public:
    // `extendedWidths` makes every read use the extended field widths
    // (SetExtendedFieldWidth). Without a model the reader makes its own on
    // the first read and owns it until TakeLPStdDataObject.
    explicit MPSStdReader(bool extendedWidths = false);
    MPSStdReader(ILPStdDataMgr* model, bool extendedWidths = false);
    MPSStdReader(const MPSStdReader&) = delete;
    MPSStdReader& operator=(const MPSStdReader&) = delete;
    virtual ~MPSStdReader();

    // Reads the whole file into the model, ending with the model's
    // ProcessFullCollection.
    virtual void ReadMPSFile(const char* path);
    // Hands the model to the caller (who releases it with Destroy); the
    // reader no longer owns or uses it.
    virtual void TakeLPStdDataObject(ILPStdDataMgr** out);
    // Names 128 wide, numbers 13, keys 2.
    virtual void SetExtendedFieldWidth();
    virtual void Destroy();

    // Reads a model from an open stream (in-memory input) with the same
    // rules as ReadMPSFile.
    void ReadMPSFromStream(std::istream& in);
    int LineNumber() const { return m_lineCount; }

protected:
    virtual void AllocateDataObject();
    // Reads lines up to the next card and returns its code; data cards are
    // split into the six fields first.
    virtual int16_t ReadMPSCard();
    // Splits the current line into the fields and returns the data card
    // code to report (kMPSCardData here).
    virtual int16_t ParseDataCard();
    virtual void ParseMPSStdDataCard();

    // Header hooks: each records its section as the current state.
    virtual void NAMECard();
    virtual void ROWSCard();
    virtual void COLUMNSCard();
    virtual void RHSCard();
    virtual void RANGESCard();
    virtual void BOUNDSCard();
    virtual void SETSCard();
    virtual void ENDATACard();

    // Section handlers: each processes the cards of its section and returns
    // with the next header card read (its code is the current state).
    virtual void NAMEData();
    virtual void ROWSData();
    virtual void COLUMNSData();
    virtual void RHSData();
    virtual void RANGESData();
    virtual void BOUNDSData();
    virtual void SETSData();

    // Returns the section code of a header line this reader does not know,
    // or 0 when the line is no header (the read then fails).
    virtual int16_t ExtendedHeaderCardSet();
    // Processes the section of a code returned by ExtendedHeaderCardSet.
    virtual void ProcessExtendedSections();
    // Applies a bound key that BOUNDS does not know; false refuses it.
    virtual bool ProcessExtendedBOUNDSKeySet(const char* key, ILPVariable* var);
    // Runs at ENDATA before the model is processed.
    virtual void CheckMPSStatus();
    virtual void SetFieldWidth(int16_t nameWidth, int16_t numberWidth, int16_t keyWidth);
    // Type of the ROWS key in the key field: 1 for the first N row (the
    // model is then told that its matrix includes the objective), 5 for
    // later N rows, 2 E, 4 G, 3 L, 0 for anything else.
    virtual void GetEquationTypeFromKey(int16_t& type);

    // ---- Helpers for this reader and derived readers ----

    // Opens the file (ZEM_ExcpFileError "file not found" on failure) and
    // makes it the input.
    void OpenMPSFile(const char* path);
    void CloseMPSFile();
    // Makes `in` the input and resets the line counter.
    void AttachInput(std::istream* in);
    // Reads one line into m_line: at most 1023 characters, cut at the first
    // line feed and the first carriage return. False at the end of input.
    bool ReadMPSLine();
    // Resets the per-read state (line counter, objective flag, sets).
    void ResetReadState();
    // Throws the wrong-state error unless the section state is `section`.
    void CheckSection(int16_t section, const char* message, const char* routine,
                      int srcLine) const;
    // Reads the first card of a section that may not be empty and throws
    // "MPS Read/Process Error" with `emptyMessage` unless it is a data card.
    void ReadFirstDataCard(const char* emptyMessage, const char* routine, int srcLine);
    // Attaches the sink to the model's variable list, equation list and
    // matrix; throws "MPS Read/Process Error" with `message` when one is
    // missing.
    void FetchModelParts(const char* message, const char* routine, int srcLine);

    // The one throw path of the readers. A data error carries the message as
    // its name and the current card's text as its reason; a process error
    // its category and message. Both carry the reader's source tag and a
    // traceback that tells the input line ("MPS input line 12"; see
    // SetReaderLabels). `srcLine` is the throwing source line.
    [[noreturn]] void CardError(const char* message, const char* routine, int srcLine) const;
    [[noreturn]] void ProcessError(const char* category, const char* message,
                                   const char* routine, int srcLine) const;
    // Set once by a derived reader: its source tag, the word that labels
    // input lines in tracebacks, the routine named by the section loop's
    // errors and the message for input that ends without ENDATA.
    void SetReaderLabels(const char* sourceTag, const char* inputLabel, const char* loopRoutine,
                         const char* noEndataMessage);

    // The section loop, shared by every reader: from the header card in
    // hand, one section after another (ReadSection) up to ENDATA, where the
    // model finishes the read. A section handler that reads no card is
    // refused through SectionReadNoCard rather than looping for ever.
    void ReadSectionLoop();
    // Reads the section whose header card is in hand: RHS, RANGES, BOUNDS
    // and SETS here, anything else through ProcessExtendedSections.
    virtual void ReadSection(int16_t code);
    // Throws for a section handler that read no card.
    [[noreturn]] virtual void SectionReadNoCard(int16_t code);

    // Look-ahead for the name lookups, which on a large model each cost a
    // cache miss: when the next line is already buffered, it is located once
    // into m_next (LocateCard) and the sink asks for the slots of the name
    // fields given (-1: none) in the name indexes ahead of use, so the next
    // card's lookups find them in cache. Only a hint: nothing is read into
    // the model and nothing is checked; a misplaced field costs a wasted
    // request.
    // Measured on the benchmark model: without it a standard read takes 1.6
    // to 1.7 times as long, an XMPS read 1.3 to 1.4 times (bench/mps_README.md).
    void PrefetchNextCard(int varField, int eqnField1, int eqnField2 = -1);
    // Locates the fields of the raw data card `line` (len bytes, no newline,
    // not NUL-terminated) into `card` by the current section's rule and sets
    // card.length to the length located. Here the fixed name fields, the
    // blanks around each dropped.
    virtual void LocateCard(const char* line, size_t len, MPSCardView& card);
    // True when the card in hand is the line the look-ahead located in m_next.
    bool CardInHandLocated() const {
        return m_next.lineNumber == m_lineCount && m_next.line == m_line &&
               m_next.length == static_cast<size_t>(m_lineLength) && m_next.section == m_section;
    }

    const char* Field(int f) const { return m_fields[f]; }
    bool HasField(int f) const { return m_fields[f][0] != '\0'; }
    double FieldNumber(int f) const;

    // ---- State ----

    std::ifstream m_file;
    std::istream* m_input = nullptr;
    MPSLineSource m_lines;
    // The current line's text, NUL-terminated; valid until the next line is
    // read (it lies in the line source's buffer, or in m_lineSpare).
    const char* m_line = "";
    char m_lineSpare[kMPSLineSize] = {};
    int m_lineLength = 0;
    int m_lineCount = 0;

    // The next line as the look-ahead located it (PrefetchNextCard).
    MPSCardView m_next;

    int16_t m_section = kMPSCardEndOfFile;  // current section state
    int16_t m_cardStatus = kMPSCardEndOfFile;  // result of the last ReadMPSCard

    // The six fields of the current data card: key, name 1, name 2,
    // number 1, name 3, number 2. For a NAME card, name 1 holds the name.
    char m_fields[kMPSFieldCount][kMPSLineSize] = {};
    MPSFieldGeometry m_geometry;
    bool m_extendedWidths = false;

    bool m_objectiveSeen = false;
    // Columns named in COLUMNS without any entry: no variable exists for
    // them and BOUNDS cards on them are skipped.
    std::unordered_set<std::string> m_emptyColumns;
    // Rows whose unknown names RHS and RANGES accept silently (filled by
    // derived readers; empty here).
    std::unordered_set<std::string> m_ignoredRows;

    ILPStdDataMgr* m_model = nullptr;
    bool m_ownsModel = false;
    // Everything the readers put into the model goes through the sink.
    MPSModelSink m_sink;

private:
    // Everything after the input is open: NAME, ROWS, COLUMNS, the section
    // loop and ENDATA.
    void ReadModel();
    void AddColumnEntry(int rowField, int valueField, ILPVariable* var);
    void ApplyBound(ILPVariable* var);

    const char* m_sourceTag;
    const char* m_inputLabel = "MPS input line ";
    const char* m_loopRoutine = "MPSStdReader::ReadMPSFile";
    const char* m_noEndataMessage = "Unexpected end of MPS file - no ENDATA card";
};

// Stores a new reader of `model` (null: the reader makes its own) in *out,
// or null when it cannot be made. Release it with Destroy.
void CreateMPSStdReaderObject(MPSStdReader** out, ILPStdDataMgr* model);
