// Operations on whole models used around solver passes: the check for names
// that collide once screened for a case-blind target language, and the
// comparison of two models field by field.
//
//   ZEMModelOperations ops;
//   int groups = ops.CheckDuplicateNames(model, "/tmp/dups.txt");   // 0: none
//   std::vector<ZEMModelDifference> d = ops.CompareModels(a, b, 1e-6);
//   for (const ZEMModelDifference& x : d) std::cout << x.text << "\n";
//
// Duplicate names: every variable and equation name is put through the
// model's NameScreen and folded to upper case (the target language does not
// tell cases apart); names of either kind that end on the same text form one
// collision group, since variables and equations share one name space
// there. The report lists one group per paragraph:
//   Duplicate screened name A_A1
//     Variable a
//     Equation A_A1
// and closes with "<n> duplicate name group(s)". A clean model gets
// "No duplicate names" and result 0.
//
// Comparison: the first model's entities are labelled p1, the second's p2.
// Variables and equations are paired by name and compared with their own
// Compare (every bound, value, type, status, right-hand side, range, scale
// and entry count, within the relative tolerance |a-b|/(|a|+1) < t);
// nonzeros are paired by row and column names; nonlinear terms are paired
// within each pair of rows by type and variables, and their constants
// compared. An entity present on one side only gives the line
//   "Problem <Kind> <name> is in p1 but not in p2" (or the reverse),
// where a nonzero is named "ROW/COLUMN" and a term
// "for Equation ROW in Variables X Y".
// Each line of an entity's Compare text becomes one difference.
#pragma once

#include <ostream>
#include <string>
#include <vector>

class IZEMDataMgr;

struct ZEMModelDifference {
    std::string kind;  // "Variable", "Equation", "NonZero", "Nonlinearity"
    std::string name;  // the entity's name; "ROW/COLUMN" for a nonzero, the row for a term
    std::string text;  // one report line, without its line feed
};

// Tolerance of the comparisons when the caller gives none.
constexpr double kZEMCompareTolerance = 1e-6;

class ZEMModelOperations {
public:
    // Writes the duplicate-name report to `os` and returns the number of
    // collision groups.
    int DuplicateNames(IZEMDataMgr* model, std::ostream& os);
    // The same report written to the file `path` (ZEM_ExcpFileError when it
    // cannot be created).
    int CheckDuplicateNames(IZEMDataMgr* model, const char* path);

    // Every difference between `a` (p1) and `b` (p2), variables first, then
    // equations, nonzeros and terms, each in the first model's order.
    // checkValues also compares values, base values, residuals and
    // infeasibilities (the solution), not only the model's data.
    std::vector<ZEMModelDifference> CompareModels(IZEMDataMgr* a, IZEMDataMgr* b,
                                                  double tolerance, bool checkValues = true);
    // CompareModels written as one line per difference to the file `path`,
    // closed by "<n> difference(s)"; returns the number of differences.
    int CompareModelsToFile(IZEMDataMgr* a, IZEMDataMgr* b, const char* path, double tolerance);
};
