// The commands of zem, as a table: each command file defines one Command
// and Commands.cpp lists them. Adding a command is adding a file and a row.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "cli/Args.h"

class CliModel;

struct Command {
    const char* name;
    const char* summary;      // one line for the command list
    const char* arguments;    // the usage line after "zem NAME", e.g. "FILE [--json]"
    const char* description;  // paragraphs for "zem NAME --help"
    std::vector<OptionSpec> options;
    // Runs the command; returns the exit status. Library failures are
    // thrown, usage mistakes throw UsageError.
    int (*run)(const ParsedArgs& args, std::ostream& out);
};

const std::vector<Command>& Commands();

// The options every command that reads a model accepts (--format).
std::vector<OptionSpec> InputOptions(std::vector<OptionSpec> more);

// Loads the model named by the single positional argument, in the format
// of --format or of the file's extension.
void LoadInput(const ParsedArgs& args, CliModel& model);

// Help texts.
void PrintMainHelp(std::ostream& os);
void PrintCommandHelp(const Command& command, std::ostream& os);

// One per command file.
Command InfoCommand();
Command DumpCommand();
Command DisplayCommand();
Command EvalCommand();
Command ConvertCommand();
Command DiffCommand();
Command CasesCommand();
Command CalcCommand();
