// zem display: the model's own listings.
#include "cli/CliModel.h"
#include "cli/Commands.h"
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"

namespace {

// Evaluates the model once with the correlation log on and copies the log
// (written by the library to a temporary file) to `out`.
void showCorrelationLog(IZEMMgr* zem, std::ostream& out) {
    INonLinearModel* nl = nullptr;
    zem->GetNonLinearModelIntf(&nl);
    if (nl == nullptr) return;
    char path[] = "/tmp/zem-correlations-XXXXXX";
    const int fd = mkstemp(path);
    if (fd < 0) throw ZEM_Exception("ZEMMgr Error", "Unable to make a file for the correlation log", "zem display");
    close(fd);
    nl->SetHqclLogFile(path);
    nl->SetHqcl(true);
    nl->OpenLogFiles();
    try {
        nl->EvaluateModel();
    } catch (...) {
        nl->CloseLogFiles();
        std::remove(path);
        throw;
    }
    nl->CloseLogFiles();
    std::ifstream log(path);
    out << "\nC O R R E L A T I O N   L O G\n\n" << log.rdbuf();
    std::remove(path);
}

int runDisplay(const ParsedArgs& args, std::ostream& out) {
    const int chosen = args.Has("--by-row") + args.Has("--by-column") + args.Has("--algebraic");
    if (chosen > 1) throw UsageError("choose one of --by-row, --by-column and --algebraic");
    CliModel model;
    if (args.Has("--correlation-log")) model.Zem();
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
    if (args.Has("--correlation-log")) showCorrelationLog(model.Zem(), out);
    out.flush();
    return 0;
}

}  // namespace

Command DisplayCommand() {
    return {"display", "the model's listings (full, by row, by column, algebraic)",
            "FILE [--by-row | --by-column | --algebraic] [--correlation-log] [--format NAME]",
            "Prints the model's own display: by default the heading, the variables, the\n"
            "equations and the nonzeros; with --by-row or --by-column the heading and the\n"
            "matrix in that order; with --algebraic each row written as an equation,\n"
            "followed by a summary of the variables. With --correlation-log the model is\n"
            "then evaluated once with correlation logging on and the correlation log\n"
            "(one report per correlation term calculated) is printed after the listing.",
            InputOptions({{"--by-row", nullptr, "the matrix row by row"},
                          {"--by-column", nullptr, "the matrix column by column"},
                          {"--algebraic", nullptr, "the rows as equations"},
                          {"--correlation-log", nullptr, "evaluate and print the correlation log"}}),
            runDisplay};
}
