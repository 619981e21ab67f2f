// zem calc: evaluates one expression with the library's expression
// evaluator.
//
//   zem calc "2^3^2"                       -> 512
//   zem calc "x*y + 1" --set x=2 --set y=3 -> 7
//   zem calc "1/0"                         -> stderr "Error: Divide by zero error. (position 1)", exit 1
//   zem calc "1/0" --json                  -> {"ok":false,"message":"Error: Divide by zero error.","position":1,"code":3}
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "cli/Commands.h"
#include "cli/Json.h"
#include "nlpdata/CExpEval.h"

namespace {

// NAME=VALUE of --set, into the evaluator's symbol table.
void addSetting(CExpEval& eval, const std::string& setting) {
    const size_t eq = setting.find('=');
    if (eq == std::string::npos || eq == 0) throw UsageError("--set expects NAME=VALUE, not '" + setting + "'");
    const std::string name = setting.substr(0, eq);
    const std::string text = setting.substr(eq + 1);
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE)
        throw UsageError("--set " + name + ": '" + text + "' is not a number");
    if (eval.AddSymbol(name.c_str(), value) < 0)
        throw UsageError("--set " + name + ": more than " + std::to_string(CExpEval::kMaxSymbols) + " symbols");
}

int runCalc(const ParsedArgs& args, std::ostream& out) {
    if (args.positionals.empty()) throw UsageError("missing EXPR");
    if (args.positionals.size() > 1) throw UsageError("unexpected argument '" + args.positionals[1] + "'");
    CExpEval eval(false, args.Has("--exact-names"));
    const auto sets = args.lists.find("--set");
    if (sets != args.lists.end())
        for (const std::string& s : sets->second) addSetting(eval, s);
    const std::string& text = args.positionals[0];
    eval.SetExpression(text.c_str());
    double value = 0.0;
    const bool ok = eval.Evaluate(value);
    if (args.Has("--json")) {
        JsonWriter json(out);
        json.BeginObject();
        json.Key("ok");
        json.Bool(ok);
        if (ok) {
            json.Key("value");
            json.Number(value);
        } else {
            json.Key("message");
            json.String(eval.GetErrorMessage());
            json.Key("position");
            json.Integer(eval.GetErrorPosition());
            json.Key("code");
            json.Integer(eval.GetErrorCode());
        }
        json.EndObject();
        json.Finish();
        return 0;
    }
    if (!ok) {
        out.flush();
        std::cerr << eval.GetErrorMessage() << " (position " << eval.GetErrorPosition() << ")\n";
        return 1;
    }
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    out << buffer << '\n';
    return 0;
}

}  // namespace

Command CalcCommand() {
    return {"calc", "evaluate one expression", "EXPR [--set NAME=VALUE]... [--exact-names] [--json]",
            "Evaluates EXPR and prints its value (%.17g). Operators, loosest first:\n"
            "  ||   &&   == !=   < > <= >=   + -   * /   unary -   ^ (right-associative)\n"
            "with ! (not) and the functions sqrt, abs, ln, lg, exp; comparisons and\n"
            "logical operators give 1 or 0. Names are symbols set with --set and compare\n"
            "case-insensitively unless --exact-names is given; an unknown name is an\n"
            "error. An expression that begins with '-' follows '--': zem calc -- \"-2^2\".\n"
            "On failure the evaluator's message and the character position (0-based)\n"
            "are printed on standard error and the exit status is 1. With --json the\n"
            "result is {\"ok\": true, \"value\": v} or {\"ok\": false, \"message\": ...,\n"
            "\"position\": p, \"code\": c}, and the exit status is 0.",
            {{"--set", "NAME=VALUE", "give the symbol NAME this value (repeatable)", true},
             {"--exact-names", nullptr, "compare names case-sensitively"},
             {"--json", nullptr, "print the result as JSON"}},
            runCalc};
}
