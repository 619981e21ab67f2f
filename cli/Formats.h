// The input formats zem reads and the output formats it writes, as tables: a
// format is chosen by the file's extension, or (input) by name with
// --format. Adding a format is adding a row to a table in Formats.cpp.
#pragma once

#include <string>
#include <vector>

class CliModel;

struct InputFormat {
    const char* name;         // for --format
    const char* extension;    // with the dot, compared without regard to case
    const char* description;  // for the help text
    // Reads the file into the model; failures throw the library's exception.
    void (*load)(const std::string& path, CliModel& model);
};

const std::vector<InputFormat>& InputFormats();

// The format named `formatName`, or when it is empty the one of the path's
// extension; throws UsageError when there is none.
const InputFormat& ResolveInputFormat(const std::string& path, const std::string& formatName);

struct OutputFormat {
    const char* name;
    const char* extension;
    const char* description;
    // Writes the model (held as a model manager, CliModel::Zem) to the file;
    // failures throw the library's exception.
    void (*save)(const std::string& path, CliModel& model);
};

const std::vector<OutputFormat>& OutputFormats();

// The output format of the path's extension; throws UsageError when there
// is none.
const OutputFormat& ResolveOutputFormat(const std::string& path);
// The output format of that name; throws UsageError when there is none.
const OutputFormat& OutputFormatNamed(const std::string& name);

// Saves the model in `format` through a temporary file in the target's
// folder, renamed over `path` only when the whole write succeeded: a failed
// write leaves an existing target as it was and no temporary file behind.
// File errors name `path`.
void SaveOutput(const OutputFormat& format, const std::string& path, CliModel& model);
