// The parts of a model that only a model manager holds, gathered for the
// commands that report them: the nonlinear terms, the named variable
// collections and the option table. Every function accepts a null manager
// (a model read as a standard data manager) and then reports nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

class INonLinearity;
class ILPVariableCollection;
class IZEMMgr;
class IZEMOptionTable;

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
