// zem cases: builds a case file from a JSON list of edits, shows a case file
// against its model, and writes a model with cases applied.
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "cases/ZEMCaseCollection.h"
#include "cli/Args.h"
#include "cli/CaseJson.h"
#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "cli/Formats.h"
#include "zemmgr/IZEMMgr.h"

namespace {

// Loads the model named by `path` as a whole model manager.
IZEMMgr* loadModel(const std::string& path, const ParsedArgs& args, CliModel& model) {
    ParsedArgs input;
    input.positionals = {path};
    if (!args.Value("--format").empty()) input.values["--format"] = args.Value("--format");
    model.Zem();
    LoadInput(input, model);
    return model.Zem();
}

std::string required(const ParsedArgs& args, const char* option) {
    const std::string v = args.Value(option);
    if (v.empty()) throw UsageError(std::string("missing ") + option);
    return v;
}

void expectPositionals(const ParsedArgs& args, size_t least, size_t most) {
    if (args.positionals.size() < least) throw UsageError("missing arguments");
    if (args.positionals.size() > most)
        throw UsageError("unexpected argument '" + args.positionals[most] + "'");
}

void restore(CZEMCaseCollection& cases, const std::string& path) {
    if (cases.RestoreXLMFile(path.c_str()) != 0)
        throw std::runtime_error("'" + path + "' is not a case file of version 2008.1");
}

int runBuild(const ParsedArgs& args, std::ostream&) {
    expectPositionals(args, 2, 2);
    const std::string output = required(args, "-o");
    CliModel model;
    CZEMCaseCollection cases(loadModel(required(args, "--model"), args, model));
    std::ifstream in(args.positionals[1], std::ios::binary);
    if (!in.is_open()) throw std::runtime_error("cannot read '" + args.positionals[1] + "'");
    std::ostringstream text;
    text << in.rdbuf();
    AddCasesFromJson(text.str(), cases);
    cases.PersistXLMAsFile(output.c_str());
    return 0;
}

int runShow(const ParsedArgs& args, std::ostream& out) {
    expectPositionals(args, 2, 2);
    CliModel model;
    CZEMCaseCollection cases(loadModel(required(args, "--model"), args, model));
    restore(cases, args.positionals[1]);
    if (args.Has("--json")) {
        WriteCasesJson(cases, out);
    } else {
        cases.Display(out);
        out.flush();
    }
    return 0;
}

bool parseInt(const std::string& text, int& out) {
    try {
        size_t used = 0;
        out = std::stoi(text, &used);
        return used == text.size();
    } catch (const std::exception&) {
        return false;
    }
}

int runApply(const ParsedArgs& args, std::ostream& out) {
    expectPositionals(args, 4, SIZE_MAX);
    const std::string output = required(args, "-o");
    const OutputFormat& format = ResolveOutputFormat(output);
    CliModel model;
    CZEMCaseCollection cases(loadModel(args.positionals[1], args, model));
    restore(cases, args.positionals[2]);
    for (size_t i = 3; i < args.positionals.size(); ++i) {
        const std::string& which = args.positionals[i];
        // A name first; a text that names no case is tried as a number.
        if (cases.ApplyCase(which.c_str()) == 0) continue;
        int number = 0;
        const bool numeric = !which.empty() &&
                             which.find_first_not_of("-0123456789") == std::string::npos &&
                             parseInt(which, number);
        if (!numeric || cases.ApplyCaseNumber(number) != 0)
            throw std::runtime_error("no case '" + which + "' in " + args.positionals[2]);
    }
    SaveOutput(format, output, model);
    out.flush();
    return 0;
}

struct SubCommand {
    const char* name;
    int (*run)(const ParsedArgs& args, std::ostream& out);
};

const SubCommand kSubCommands[] = {{"build", runBuild}, {"show", runShow}, {"apply", runApply}};

int runCases(const ParsedArgs& args, std::ostream& out) {
    if (args.positionals.empty()) throw UsageError("missing build, show or apply");
    for (const SubCommand& s : kSubCommands)
        if (args.positionals[0] == s.name) return s.run(args, out);
    throw UsageError("unknown cases command '" + args.positionals[0] + "'");
}

}  // namespace

Command CasesCommand() {
    return {"cases", "build, show and apply case files",
            "build EDITS.json --model MODEL -o CASES.xlm\n"
            "       zem cases show CASES.xlm --model MODEL [--json]\n"
            "       zem cases apply MODEL CASES.xlm CASE [CASE...] -o OUT",
            "A case is a numbered, named list of reversible edits of a model; a case\n"
            "file holds the cases of one model.\n"
            "  build  reads the cases from EDITS.json, checks every name against MODEL\n"
            "         and writes the case file; anything refused writes nothing.\n"
            "         {\"cases\": [{\"number\": 1, \"name\": \"HIGHDEMAND\", \"description\": \"...\",\n"
            "           \"edits\": [{\"kind\": \"rhs\", \"equation\": \"DEMAND\", \"value\": 110}]}]}\n"
            "         kinds: value, bound (lower|upper|fix), variable_type, rhs, range,\n"
            "         coefficient, equation_type, term_coefficient, option\n"
            "  show   lists the case file read against MODEL; --json gives the same JSON\n"
            "         form with the collection's name and the model dimension.\n"
            "  apply  applies the cases named (or numbered) in order and writes the\n"
            "         edited model to OUT in the format of its extension; a model whose\n"
            "         term multiplier was edited is refused (no format carries it).",
            InputOptions({{"--model", "MODEL", "the model the case file belongs to"},
                          {"-o", "FILE", "the file to write"},
                          {"--json", nullptr, "show: write JSON"}}),
            runCases};
}
