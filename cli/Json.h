// A small streaming JSON writer for the command-line program.
//
//   JsonWriter json(std::cout);
//   json.BeginObject();
//   json.Key("title"); json.String("PLAN");
//   json.Key("lower"); json.Number(-1e20);
//   json.EndObject();
//   json.Finish();
//
// Commas are placed by the writer. Numbers use the shortest text that reads
// back to the same double (std::to_chars), so 1e20 is written "1e+20";
// infinities and NaN, which JSON cannot hold, are written as null. Strings
// are escaped; bytes that are not valid UTF-8 are written as the code point
// of the same value (\u00XX), so the output is always valid UTF-8.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

class JsonWriter {
public:
    explicit JsonWriter(std::ostream& os, bool pretty = false);
    ~JsonWriter();

    void BeginObject();
    void EndObject();
    void BeginArray();
    void EndArray();
    void Key(std::string_view key);
    void String(std::string_view text);
    void Number(double value);
    void Integer(int64_t value);
    void Bool(bool value);
    void Null();
    // Ends the document with a line feed and flushes the output.
    void Finish();

    // The JSON text of a string value, quotes included.
    static std::string Quote(std::string_view text);
    // The JSON text of a number (null when not finite).
    static std::string NumberText(double value);

private:
    void BeforeValue();
    void Close(const char* bracket);
    void Raw(std::string_view text);
    void Flush();
    void NewLine();

    std::ostream& m_os;
    std::string m_buffer;
    // One entry per open container: true once it holds a member.
    std::vector<bool> m_hasMember;
    bool m_afterKey = false;
    bool m_pretty;
};
