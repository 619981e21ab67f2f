// Writer of standard MPS for other tools: a linear model as a file that this
// library's standard reader, CoinMpsIO and GLPK all read back to the same
// model (names, types, bounds, right-hand sides, ranges, objective). The
// check of MPSExportCheck.h runs first and refuses, before anything is
// written, what the format or the other tools would not give back.
//
//   NAME          BLEND
//   ROWS
//    N  COST
//    L  FAT
//   COLUMNS
//       CORN      COST               0.3   FAT               0.04
//   RHS
//       RHS       FAT                  5
//   RANGES
//       RNG       FAT                  2
//   BOUNDS
//    UP BND       CORN                80
//    LI BND       TRUCKS               0
//   ENDATA
//
// Fixed-field layout (names left-aligned in columns 5-12, 15-22 and 40-47,
// numbers right-aligned in 25-36 and 50-61) when everything fits; free
// format (one blank between fields) when a name or a number does not, or
// when asked for. Integer columns are marked by LI/UI (BV for binary),
// never by MARKER cards. Numbers are the shortest texts that read back
// exactly.
//
//   MPSExportWriter writer(model);
//   writer.WriteMPSFile("blend.mps");     // ZEM_Exception "MPS Write Refused"
#pragma once

#include "mpsutil/MPSStdWriter.h"

class ILPEquation;
class IZEMDataMgr;

class MPSExportWriter : public MPSStdWriter {
public:
    explicit MPSExportWriter(IZEMDataMgr* model, bool freeFormat = false);

    // Checks the model, then writes it; a refused model leaves no file.
    void WriteMPSFile(const char* path) override;
    // The same to a caller's stream (hides the unchecked base version).
    void WriteMPSToStream(std::ostream& os);
    // True once a write chose (or was told to use) free format.
    bool FreeFormat() const { return m_free; }

protected:
    void WriteMPSDataCard() override;
    void ROWSData() override;
    void COLUMNSData() override;
    void RHSData() override;
    void RANGESData() override;
    void BOUNDSData() override;

private:
    void SetNumber(int field, double value);
    // Adds a (row, value) pair to the card being filled, writing the card
    // when both pairs are taken.
    void AddPair(const char* row, double value);
    void FlushPair();
    // RHS and RANGES: the section (only when some row has a value other
    // than 0) with one pair per such row.
    void RowValues(void (MPSExportWriter::*header)(), const char* set, double (ILPEquation::*value)() const);

    IZEMDataMgr* m_zem;
    bool m_askedFree;
    bool m_free = false;
    bool m_pairPending = false;
};
