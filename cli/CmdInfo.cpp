// zem info: the size of a model by kind of variable and equation.
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/ModelParts.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMTypes.h"

namespace {

struct ModelSummary {
    std::string title;
    int variables = 0;
    int equations = 0;
    int nonzeros = 0;
    int sets = 0;
    NonlinearCounts nonlinear;
    // Counts by type word, in type-code order.
    std::map<int16_t, int> variableTypes;
    std::map<int16_t, int> equationTypes;
};

ModelSummary summarize(ILPStdDataMgr* data) {
    ModelSummary s;
    data->GetModelTitle(s.title);
    const auto [vars, eqns, matrix, sets] = LinearPartsOf(data);
    if (vars != nullptr) {
        for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
            ++s.variables;
            ++s.variableTypes[v->GetVarType()];
        }
    }
    if (eqns != nullptr) {
        for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
            ++s.equations;
            ++s.equationTypes[e->GetType()];
        }
    }
    if (matrix != nullptr) s.nonzeros = matrix->NumberOfNonZeros();
    if (sets != nullptr) s.sets = sets->NumberOfSpOrdSets();
    return s;
}

// Each word once, with its summed count, in the order of its first code.
template <typename WordOf>
std::vector<std::pair<std::string, int>> wordCounts(const std::map<int16_t, int>& counts, WordOf word) {
    // Codes that share a word ("Unknown") are added up.
    std::map<std::string, int> sums;
    for (const auto& [code, n] : counts) sums[word(code)] += n;
    std::vector<std::pair<std::string, int>> out;
    for (const auto& entry : counts) {
        const std::string w = word(entry.first);
        auto it = sums.find(w);
        if (it == sums.end()) continue;  // listed already
        out.emplace_back(w, it->second);
        sums.erase(it);
    }
    return out;
}

template <typename WordOf>
void printCounts(std::ostream& out, const std::map<int16_t, int>& counts, WordOf word) {
    for (const auto& [w, n] : wordCounts(counts, word)) {
        char line[96];
        std::snprintf(line, sizeof line, "  %-18s %10d\n", w.c_str(), n);
        out << line;
    }
}

template <typename WordOf>
void jsonCounts(JsonWriter& json, const std::map<int16_t, int>& counts, WordOf word) {
    json.BeginObject();
    for (const auto& [w, n] : wordCounts(counts, word)) {
        json.Key(w);
        json.Integer(n);
    }
    json.EndObject();
}

int runInfo(const ParsedArgs& args, std::ostream& out) {
    CliModel model;
    LoadInput(args, model);
    ModelSummary s = summarize(model.Data());
    s.nonlinear = CountNonlinear(model.ZemIfAny());
    if (args.Has("--json")) {
        JsonWriter json(out, true);
        json.BeginObject();
        json.Key("title");
        json.String(s.title);
        json.Key("variables");
        json.Integer(s.variables);
        json.Key("equations");
        json.Integer(s.equations);
        json.Key("nonzeros");
        json.Integer(s.nonzeros);
        json.Key("sets");
        json.Integer(s.sets);
        json.Key("nonlinear_terms");
        json.Integer(s.nonlinear.terms);
        json.Key("nonlinear_equations");
        json.Integer(s.nonlinear.equations);
        json.Key("variable_types");
        jsonCounts(json, s.variableTypes, ZEMVarTypeWord);
        json.Key("equation_types");
        jsonCounts(json, s.equationTypes, ZEMEqnTypeWord);
        json.EndObject();
        json.Finish();
        return 0;
    }
    char line[128];
    out << "Title:      " << s.title << "\n";
    std::snprintf(line, sizeof line, "Variables:  %d\n", s.variables);
    out << line;
    printCounts(out, s.variableTypes, ZEMVarTypeWord);
    std::snprintf(line, sizeof line, "Equations:  %d\n", s.equations);
    out << line;
    printCounts(out, s.equationTypes, ZEMEqnTypeWord);
    std::snprintf(line, sizeof line, "Nonzeros:   %d\nSets:       %d\n", s.nonzeros, s.sets);
    out << line;
    std::snprintf(line, sizeof line, "Nonlinear:  %d terms in %d equations\n", s.nonlinear.terms,
                  s.nonlinear.equations);
    out << line;
    out.flush();
    return 0;
}

}  // namespace

Command InfoCommand() {
    return {"info", "summary: title, variables and equations by type, nonzeros, sets, terms",
            "FILE [--json] [--format NAME]",
            "Prints the model's title, its numbers of variables by type, of equations by\n"
            "type, of nonzeros, of special ordered sets, of nonlinear terms and of the\n"
            "equations that hold them (0 for a standard MPS file). With --json, one\n"
            "object with the keys title, variables, equations, nonzeros, sets,\n"
            "nonlinear_terms, nonlinear_equations, variable_types and equation_types (the\n"
            "last two map type words such as \"Continuous\" or \"EQ\" to counts).",
            InputOptions({{"--json", nullptr, "print one JSON object"}}), runInfo};
}
