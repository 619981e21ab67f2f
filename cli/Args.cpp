#include "cli/Args.h"

std::string ParsedArgs::Value(const std::string& name, const std::string& fallback) const {
    const auto it = values.find(name);
    return it == values.end() ? fallback : it->second;
}

namespace {

const OptionSpec* findSpec(const std::vector<OptionSpec>& specs, const std::string& name) {
    for (const OptionSpec& spec : specs) {
        if (name == spec.name) return &spec;
    }
    return nullptr;
}

}  // namespace

ParsedArgs ParseArgs(const std::vector<std::string>& args, const std::vector<OptionSpec>& specs) {
    ParsedArgs parsed;
    bool optionsEnded = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsEnded || arg.size() < 2 || arg.compare(0, 1, "-") != 0) {
            parsed.positionals.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        const size_t eq = arg.find('=');
        const std::string name = arg.substr(0, eq);
        const OptionSpec* spec = findSpec(specs, name);
        if (spec == nullptr) throw UsageError("unknown option '" + name + "'");
        if (spec->valueName == nullptr) {
            if (eq != std::string::npos) throw UsageError("option '" + name + "' takes no value");
            parsed.flags.insert(name);
            continue;
        }
        std::string value;
        if (eq != std::string::npos) {
            value = arg.substr(eq + 1);
        } else if (i + 1 < args.size()) {
            value = args[++i];
        } else {
            throw UsageError("option '" + name + "' needs a value");
        }
        if (spec->repeatable) {
            parsed.lists[name].push_back(value);
            continue;
        }
        if (!parsed.values.emplace(name, value).second) {
            throw UsageError("option '" + name + "' given twice");
        }
    }
    return parsed;
}
