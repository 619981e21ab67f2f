// zem diff: the differences between two models, one per line (or one JSON
// object per line), exit status 0 when they agree and 1 when they differ.
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "cli/Formats.h"
#include "cli/Json.h"
#include "zemmgr/IZEMMgr.h"
#include "zemoper/ZEMModelOperations.h"

namespace {

double parseTolerance(const std::string& text) {
    char* end = nullptr;
    const double t = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !std::isfinite(t) || t <= 0.0)
        throw UsageError("--tolerance needs a positive number, not '" + text + "'");
    return t;
}

void load(const std::string& path, const std::string& formatName, CliModel& model) {
    model.Zem();  // terms and collections need the whole model
    ResolveInputFormat(path, formatName).load(path, model);
}

int runDiff(const ParsedArgs& args, std::ostream& out) {
    if (args.positionals.size() < 2) throw UsageError("diff needs two files");
    if (args.positionals.size() > 2)
        throw UsageError("unexpected argument '" + args.positionals[2] + "'");
    const double tolerance = args.values.count("--tolerance")
                                 ? parseTolerance(args.Value("--tolerance"))
                                 : kZEMCompareTolerance;
    CliModel a, b;
    load(args.positionals[0], args.Value("--format"), a);
    load(args.positionals[1], args.Value("--format"), b);
    ZEMModelOperations ops;
    const std::vector<ZEMModelDifference> diffs = ops.CompareModels(a.Zem(), b.Zem(), tolerance);
    for (const ZEMModelDifference& d : diffs) {
        if (!args.Has("--json")) {
            out << d.text << "\n";
            continue;
        }
        JsonWriter json(out);
        json.BeginObject();
        json.Key("kind");
        json.String(d.kind);
        json.Key("name");
        json.String(d.name);
        json.Key("text");
        json.String(d.text);
        json.EndObject();
        json.Finish();
    }
    out.flush();
    return diffs.empty() ? 0 : 1;
}

}  // namespace

Command DiffCommand() {
    return {"diff", "the differences between two models",
            "A B [--json] [--tolerance T] [--format NAME]",
            "Compares model A (p1) with model B (p2): every variable (bounds, values,\n"
            "type, status, entry count), equation (type, right-hand side, range, scale,\n"
            "values), matrix entry and nonlinear term, numbers equal when\n"
            "|a-b|/(|a|+1) < T (default 1e-6). Prints one line per difference, such as\n"
            "\"Problem Variable X lower bounds do not match: p1 is 0, p2 is 1\" or\n"
            "\"Problem Equation R is in p1 but not in p2\"; with --json one object per\n"
            "line with the keys kind, name and text. Exit status 0 when the models\n"
            "agree, 1 when they differ (or the library refuses a file).",
            InputOptions({{"--json", nullptr, "one JSON object per difference"},
                          {"--tolerance", "T", "relative tolerance of the numbers"}}),
            runDiff};
}
