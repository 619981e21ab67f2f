// Command-line arguments of one zem command: positional arguments, flags
// ("--json") and options with a value ("--format mps" or "--format=mps").
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// A mistake in the command line: zem prints it with a hint and exits 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct OptionSpec {
    const char* name;  // with the leading dashes, e.g. "--format"
    const char* valueName;  // null for a flag, else the value's name in help
    const char* help;
    bool repeatable = false;  // may be given more than once; values kept in order in `lists`
};

struct ParsedArgs {
    std::vector<std::string> positionals;
    std::set<std::string> flags;
    std::map<std::string, std::string> values;
    std::map<std::string, std::vector<std::string>> lists;

    bool Has(const std::string& name) const { return flags.count(name) != 0; }
    // The value of an option, or `fallback` when it was not given.
    std::string Value(const std::string& name, const std::string& fallback = "") const;
};

// Parses `args` against `specs`; an unknown option, a missing value or a
// repeated option throws UsageError. "--" ends the options.
ParsedArgs ParseArgs(const std::vector<std::string>& args, const std::vector<OptionSpec>& specs);
