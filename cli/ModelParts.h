// The parts of a model, gathered for the commands that report them: the
// linear parts every model has, and those that only a model manager holds
// (the nonlinear terms, the named variable collections and the option
// table). The manager functions accept a null manager (a model read as a
// standard data manager) and then report nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

class ILPEquationList;
class ILPMatrix;
class ILPSpOrdSetList;
class ILPStdDataMgr;
class ILPVariableList;
class INonLinearity;
class ILPVariableCollection;
class IZEMMgr;
class IZEMOptionTable;

// The linear parts of a model; a part the model does not give is null.
struct LinearParts {
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    ILPSpOrdSetList* sets = nullptr;
};

LinearParts LinearPartsOf(ILPStdDataMgr* data);

struct NonlinearCounts {
    int terms = 0;
    int equations = 0;  // distinct rows that hold at least one term
};

NonlinearCounts CountNonlinear(IZEMMgr* zem);

// Calls `visit` for each term, in pool order.
void ForEachTerm(IZEMMgr* zem, const std::function<void(INonLinearity*)>& visit);

// Calls `visit` for each named variable collection, in the manager's order.
void ForEachCollection(IZEMMgr* zem, const std::function<void(ILPVariableCollection*)>& visit);

// One option name with its value in each column (absent: no value).
struct OptionEntry {
    std::string name;
    std::optional<std::string> value;
    std::optional<std::string> second;
};

// Every option, by name in byte order, both columns merged.
std::vector<OptionEntry> ListOptions(IZEMOptionTable* table);
std::vector<OptionEntry> ListOptions(IZEMMgr* zem);
