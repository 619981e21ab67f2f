// Reader of the MPS files that other tools of the field write, read as
// CoinMpsIO reads them. It is an opt-in companion of MPSStdReader (whose
// rules and refusals stay as they are); a caller chooses it by making this
// reader instead (zem: --format mps-tools):
//
//   MPSToolsReader reader(model);
//   reader.ReadMPSFile("p0033.mps");        // throws ZEM_Exception on failure
//
// Differences from the standard reader:
// - Free format as well as fixed fields: a data card whose text lies in the
//   fixed columns (blanks between the fields) is read by column, any other
//   by blank-separated tokens. The title is the first token after NAME.
// - Integer MARKER blocks ('MARKER' 'INTORG' ... 'MARKER' 'INTEND'): their
//   columns become discrete with default bounds [0, 1], which BOUNDS cards
//   then change.
// - A card without a column name continues the previous column; RHS, RANGES
//   and BOUNDS cards may leave out the set name.
// - RANGES on an equality row R: [rhs, rhs + R] for R > 0, [rhs + R, rhs]
//   for R < 0 (the row becomes >= or <= with that range).
// - An UP (or UI) bound below 0 on a column whose lower bound is 0 makes the
//   lower bound -infinity, unless a bound card set that 0 explicitly, which
//   is refused ("MPS BOUNDS Section Error - Negative Upper Bound Over An
//   Explicit Lower Bound Of 0").
// - OBJSENSE (on its own card or followed by its value): MIN or MINIMIZE is
//   accepted; MAX or MAXIMIZE is refused, because the model holds no
//   objective sense ("MPS OBJSENSE Error - Maximisation Is Not Carried").
// - N rows after the first are dropped, as the other tools drop them. A row
//   without coefficients (the objective included), which the model would
//   drop where the other tools keep it, is refused ("MPS COLUMNS Section
//   Error - Row Without Coefficients").
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "mpsutil/MPSStdReader.h"

class MPSToolsReader : public MPSStdReader {
public:
    explicit MPSToolsReader(ILPStdDataMgr* model) : MPSStdReader(model) {}

protected:
    int16_t ParseDataCard() override;
    void NAMECard() override;
    void NAMEData() override;
    void RHSCard() override;
    void RANGESCard() override;
    void BOUNDSCard() override;
    void SETSCard() override;
    void ENDATACard() override;
    int16_t ExtendedHeaderCardSet() override;
    void ProcessExtendedSections() override;
    void CheckMPSStatus() override;

private:
    // Splits a free-format card into the fields its section expects.
    void ParseTokens();
    // Fixes up a COLUMNS card: markers, continuations, integer columns.
    void ColumnsCard();
    // Notes explicit lower bounds and applies the negative UP rule.
    void BoundsCard();
    // Once, after COLUMNS: integer columns get their type and bounds.
    void FinishColumns();
    void ObjectiveSense(const char* word);
    void ReadObjectiveSense();

    bool m_integerBlock = false;
    bool m_columnsFinished = false;
    std::string m_previousColumn;
    std::vector<std::string> m_integerColumns;
    std::unordered_set<std::string> m_integerSeen;
    std::unordered_set<std::string> m_rowsUsed;
    std::unordered_set<std::string> m_explicitLower;
};
