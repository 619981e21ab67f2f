#include "cli/Commands.h"

#include "cli/CliModel.h"
#include "cli/Compressed.h"
#include "cli/Formats.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {InfoCommand(), DumpCommand(), DisplayCommand(),
                                                  EvalCommand(), ConvertCommand(),
                                                  DiffCommand(), CasesCommand(),
                                                  CalcCommand()};
    return commands;
}

std::vector<OptionSpec> InputOptions(std::vector<OptionSpec> more) {
    more.push_back({"--format", "NAME", "read FILE in this format instead of the one its extension names"});
    more.push_back({"--correlations", "PATH",
                    "the correlation library for correlation terms (default: $ZEM_QCL_LIBRARY,\n"
                    "                  else libzemqcl.so beside libzemxmps.so)"});
    return more;
}

void LoadInput(const ParsedArgs& args, CliModel& model) {
    if (args.positionals.empty()) throw UsageError("missing FILE");
    if (args.positionals.size() > 1) {
        throw UsageError("unexpected argument '" + args.positionals[1] + "'");
    }
    const std::string& path = args.positionals[0];
    // A ".gz" file is read as the file it holds: "blend.mps.gz" as MPS.
    const InputFormat& format = ResolveInputFormat(InflatedInput::Inner(path), args.Value("--format"));
    if (InflatedInput::IsCompressed(path)) {
        InflatedInput inflated(path);
        format.load(inflated.Path(), model);
    } else {
        format.load(path, model);
    }
    // The library is opened only when a correlation term is evaluated.
    INonLinearModel* nl = nullptr;
    if (args.values.count("--correlations") && model.ZemIfAny()) model.ZemIfAny()->GetNonLinearModelIntf(&nl);
    if (nl) nl->SetQCLLibraryPath(args.Value("--correlations").c_str());
}

namespace {

// Blanks that pad `text` out to a column `width` wide; one blank when the
// text fills the column or runs past it, so that it never touches what follows.
std::string padding(const std::string& text, size_t width) {
    return std::string(text.size() < width ? width - text.size() : 1, ' ');
}

void printFormats(std::ostream& os) {
    os << "Input formats (chosen by the file's extension, or with --format NAME; a file\n"
          "ending in .gz is read compressed, as the format of the name before .gz):\n";
    for (const InputFormat& f : InputFormats()) {
        os << "  " << f.name << padding(f.name, 10) << f.extension << padding(f.extension, 8)
           << f.description << "\n";
    }
    os << "Output formats (chosen by the output file's extension):\n";
    for (const OutputFormat& f : OutputFormats()) {
        os << "  " << f.name << padding(f.name, 10) << f.extension << padding(f.extension, 8)
           << f.description << "\n";
    }
}

const char* const kExitStatus =
    "Exit status: 0 on success; 1 when the library refuses the input (its exception\n"
    "is printed on standard error); 2 for a usage error.\n";

}  // namespace

void PrintMainHelp(std::ostream& os) {
    os << "zem - inspect linear and nonlinear optimisation models\n\n"
          "Usage: zem COMMAND FILE [OPTIONS]\n"
          "       zem COMMAND --help\n"
          "       zem --help\n"
          "       zem --version    the library's version\n\n"
          "Commands:\n";
    for (const Command& c : Commands()) {
        os << "  " << c.name << padding(c.name, 10) << c.summary << "\n";
    }
    os << "\n";
    printFormats(os);
    os << "\n" << kExitStatus;
}

void PrintCommandHelp(const Command& command, std::ostream& os) {
    os << "Usage: zem " << command.name << " " << command.arguments << "\n\n"
       << command.description << "\n\nOptions:\n";
    for (const OptionSpec& o : command.options) {
        std::string left = o.name;
        if (o.valueName != nullptr) left += std::string(" ") + o.valueName;
        os << "  " << left << padding(left, 16) << o.help << "\n";
    }
    os << "  --help          show this help\n\n";
    printFormats(os);
    os << "\n" << kExitStatus;
}
