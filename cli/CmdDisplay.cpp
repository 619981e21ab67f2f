// zem display: the model's own listings.
#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "lpdata/ILPStdDataMgr.h"

namespace {

int runDisplay(const ParsedArgs& args, std::ostream& out) {
    const int chosen = args.Has("--by-row") + args.Has("--by-column") + args.Has("--algebraic");
    if (chosen > 1) throw UsageError("choose one of --by-row, --by-column and --algebraic");
    CliModel model;
    LoadInput(args, model);
    ILPStdDataMgr* data = model.Data();
    if (args.Has("--by-row")) {
        data->DisplayByRow(out);
    } else if (args.Has("--by-column")) {
        data->DisplayByColumn(out);
    } else if (args.Has("--algebraic")) {
        data->AlgebraicDisplay(out);
    } else {
        data->Display(out);
    }
    out.flush();
    return 0;
}

}  // namespace

Command DisplayCommand() {
    return {"display", "the model's listings (full, by row, by column, algebraic)",
            "FILE [--by-row | --by-column | --algebraic] [--format NAME]",
            "Prints the model's own display: by default the heading, the variables, the\n"
            "equations and the nonzeros; with --by-row or --by-column the heading and the\n"
            "matrix in that order; with --algebraic each row written as an equation,\n"
            "followed by a summary of the variables.",
            InputOptions({{"--by-row", nullptr, "the matrix row by row"},
                          {"--by-column", nullptr, "the matrix column by column"},
                          {"--algebraic", nullptr, "the rows as equations"}}),
            runDisplay};
}
