// zem convert: reads a model and writes it in the format of the output
// file's extension (extended MPS, model file, GAMS input or summary).
#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "cli/Formats.h"

namespace {

int runConvert(const ParsedArgs& args, std::ostream& out) {
    if (args.positionals.size() < 2) throw UsageError("missing OUTPUT");
    if (args.positionals.size() > 2) {
        throw UsageError("unexpected argument '" + args.positionals[2] + "'");
    }
    const std::string output = args.positionals[1];
    const OutputFormat& resolved = ResolveOutputFormat(output);
    const bool free = args.Has("--free");
    if (free && std::string(resolved.name) != "mps") throw UsageError("--free applies to .mps output only");
    const OutputFormat& format = free ? OutputFormatNamed("mps-free") : resolved;
    ParsedArgs input = args;
    input.positionals.pop_back();
    CliModel model;
    // Written formats take the whole model.
    model.Zem();
    LoadInput(input, model);
    SaveOutput(format, output, model);
    out.flush();
    return 0;
}

}  // namespace

Command ConvertCommand() {
    return {"convert", "write a model in another format",
            "FILE OUTPUT [--format NAME] [--free]",
            "Reads FILE and writes the model to OUTPUT in the format of OUTPUT's\n"
            "extension:\n"
            "  .xmps  the extended MPS dialect, which holds the linear and the nonlinear\n"
            "         model, bounds, initial values, groups and options\n"
            "  .zem   the model file, the whole model in binary; zem reads it back\n"
            "  .gms   the model as GAMS model input\n"
            "  .mps   standard MPS of a linear model, read alike by this library's\n"
            "         standard reader, CoinMpsIO and GLPK: fixed fields when every name\n"
            "         and number fits, else (or with --free) free format; integer\n"
            "         columns through LI/UI/BV bounds\n"
            "  .txt   a summary: the model's heading with its dimensions and options,\n"
            "         the algebraic listing and the full display\n"
            "Any other extension is a usage error. A model the format cannot carry is\n"
            "refused with the entity named, and nothing is written. The file is written\n"
            "under a temporary name beside OUTPUT and renamed when complete, so a failed\n"
            "conversion leaves an existing OUTPUT as it was. An output file that cannot\n"
            "be written is reported as the library's file error.",
            InputOptions({{"--free", nullptr, "write .mps output in free format"}}), runConvert};
}
