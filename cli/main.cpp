// zem: the command-line program over the model library.
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cli/Args.h"
#include "api/ZEMVersion.h"
#include "cli/Commands.h"
#include "lpdata/ZEMException.h"

namespace {

int run(const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError("missing COMMAND");
    const std::string& name = args[0];
    if (name == "--help" || name == "-h" || name == "help") {
        PrintMainHelp(std::cout);
        return 0;
    }
    if (name == "--version") {
        std::cout << "zem (libzemxmps) " << ZEMLibraryVersion() << "\n";
        return 0;
    }
    for (const Command& command : Commands()) {
        if (name != command.name) continue;
        std::vector<OptionSpec> specs = command.options;
        specs.push_back({"--help", nullptr, "show this help"});
        specs.push_back({"-h", nullptr, "show this help"});
        const ParsedArgs parsed = ParseArgs({args.begin() + 1, args.end()}, specs);
        if (parsed.Has("--help") || parsed.Has("-h")) {
            PrintCommandHelp(command, std::cout);
            return 0;
        }
        return command.run(parsed, std::cout);
    }
    throw UsageError("unknown command '" + name + "'");
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const UsageError& e) {
        std::cout.flush();
        std::cerr << "zem: " << e.what() << "\nRun 'zem --help' for usage.\n";
        return 2;
    } catch (ZEM_Exception& e) {
        std::cout.flush();
        e.Display(std::cerr);
        if (std::ostringstream* trace = e.Getbufptr()) std::cerr << trace->str();
        return 1;
    } catch (const std::exception& e) {
        std::cout.flush();
        std::cerr << "zem: " << e.what() << "\n";
        return 1;
    }
}
