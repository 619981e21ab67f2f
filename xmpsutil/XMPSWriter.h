// Writer of a model as an extended MPS (XMPS) file or stream, in the format
// that XMPSReader reads (see XMPSReader.h for an example file). The file is
// always written in the extended layout:
//
//   header      <zemblockpersist type="XMPS" version="7.2">, <zemXMPS>,
//               NAME <title>, XTNDFMT
//   XLINEAR     matrix coefficients that are not zero, then product terms:
//                " %c  %-16s  %13s  %-16s"   row letter, row, coefficient, column
//   NONLINEAR   every other term: " %c  %s   %s % #12.6e" and its variables,
//               three to a line, then its constants one to a line, joined
//               by "\" continuations
//   RHS, RANGES, BOUNDS, SETS, TEMPBOUNDS, INITIAL, VARGROUPS,
//   XOPTION, COMPLEMENT, EXTERNMDLS, ENDATA, footer
//
// No ROWS or COLUMNS section is written: the reader creates rows and
// columns from the cards that name them. The row letter of a card is that
// of its row's type (objective and free rows "N", "E", "L", "G"); a row of
// any other type keeps the letter of the card before it.
//
// What is written so that the model comes back when the file is read:
// - The objective's cards come first in XLINEAR and in NONLINEAR, because
//   the first "N" row read becomes the objective.
// - BOUNDS: binary variables "BV", discrete "LI" (and "UI"), semi-continuous
//   "SC" (and "UP"); continuous ones "FR", "FX", or "MI"/"LO" and "UP" as
//   their bounds differ from [0, 1e20]; "SB" for a step bound other than
//   2e20. A variable that no card names otherwise gets "PL" (no change), so
//   that it exists before SETS, VARGROUPS and COMPLEMENT name it.
// - TEMPBOUNDS: "LO" for a temporary lower bound that is not 0, or "FX"
//   where the reader would replace a "LO" value by 0.
// - INITIAL: a card for each variable whose value or basis state differs
//   from what BOUNDS leaves (value 1, basic, or the "FX"/"SB" effects).
// - A product term goes to XLINEAR when it has two or more variables and
//   just its coefficient as constant, else to NONLINEAR with "XPROD".
// - XOPTION and COMPLEMENT carry the option table and the complementarity
//   pairs.
// What the format carries, and what the writer refuses before writing
// anything (a model it cannot carry, naming the first offending entity), is
// set out in XMPSWriterCheck.h. A file write that fails part way removes the
// file.
#pragma once

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "mpsutil/MPSStdWriter.h"

class ILPEquation;
class ILPNonZero;
class ILPVariable;
class INonLinearity;
class IZEMDataMgr;

class XMPSWriter : public MPSStdWriter {
public:
    XMPSWriter();
    explicit XMPSWriter(IZEMDataMgr* model);
    ~XMPSWriter() override;

    void WriteMPSFile(const char* path) override;
    void Destroy() override;

    virtual void WriteMPSStream(std::stringstream* out);
    // Writes the same content as WriteMPSStream into a caller's stream.
    virtual void WriteZEMMPSStream(std::stringstream* out);
    // Nothing is written to an XML stream.
    virtual void WriteMPSXMLStream(std::stringstream* out);

protected:
    void ProcessExtendedSections() override;
    void RHSCard() override;
    void RANGESCard() override;
    void BOUNDSCard() override;
    void SETSCard() override;
    void ENDATACard() override;

    virtual void WriteXMPSHeader();
    virtual void WriteXMPSFooter();
    virtual void WriteXLINEARData();
    virtual void WriteNONLINEARData();
    virtual void WriteRHSData();
    virtual void WriteRANGESData();
    virtual void WriteBOUNDSData();
    virtual void WriteSETSData();
    virtual void WriteTEMPBOUNDSData();
    virtual void WriteINITIALData();
    virtual void WriteVARGROUPSData();
    virtual void WriteEXTERNMDLSData();
    virtual void XLINEARCard();
    virtual void NONLINEARCard();
    virtual void TEMPBOUNDSCard();
    virtual void INITIALCard();
    virtual void VARGROUPSCard();
    virtual void EXTERNMDLSCard();
    virtual void WriteXOPTIONData();
    virtual void WriteCOMPLEMENTData();

    // The letter of the row's type, or the previous card's letter for a
    // type without one.
    char RowLetter(const ILPEquation* eqn);

    IZEMDataMgr* m_zem = nullptr;

    // Writes a header line: the keyword alone.
    void HeaderLine(const char* keyword);

private:
    static constexpr size_t kOutputBlock = 1 << 18;
    class Line;
    friend class Line;
    void WriteBody(const char* routine);
    void WriteToStream(std::stringstream* out, const char* routine);
    void WriteCoefficientCard(ILPNonZero* nz);
    void WriteProductTerm(INonLinearity* term);
    void WriteKeywordTerm(INonLinearity* term);
    void MarkNamed(const ILPVariable* var);
    bool IsNamed(const ILPVariable* var) const;
    void BoundCard(const char* key, const char* column, const double* value);
    void EmitLine(const char* text, size_t n);
    void FlushOutput();

    std::string m_output;

    char m_rowLetter = 'E';
    bool m_xlinearHeaderWritten = false;
    bool m_nonlinearHeaderWritten = false;
    // By variable index: the variable appears on an XLINEAR or NONLINEAR card.
    std::vector<char> m_named;
    // By variable index: the value and basis state the BOUNDS cards leave.
    std::vector<double> m_valueAfterBounds;
    std::vector<int16_t> m_statusAfterBounds;
};

// Stores a new writer of `model` in *out, or null when it cannot be made.
// Release it with Destroy.
void CreateXMPSWriterObject(XMPSWriter** out, IZEMDataMgr* model);
