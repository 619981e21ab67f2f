// Shared by the zem tests: a fixture that runs the zem program in a scratch
// directory and captures its exit status, standard output and errors, plus
// helpers to read its JSON and to load a model in this process.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "mpsutil/MPSStdReader.h"
#include "xmpsutil/XMPSReader.h"
#include "zemmgr/IZEMMgr.h"

namespace clitest {

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

inline std::string Example(const char* name) { return std::string(ZEM_SOURCE_DIR) + "/examples/" + name; }
inline std::string Blend() { return Example("blend.mps"); }
inline std::string Refinery() { return Example("refinery.xmps"); }

// zem's JSON output, parsed strictly and with object keys in their order.
using Doc = nlohmann::ordered_json;

// The JSON object's keys, in order, as one comma-separated text.
inline std::string KeyList(const Doc& v) {
    std::string out;
    for (const auto& item : v.items()) out += (out.empty() ? "" : ",") + item.key();
    return out;
}

// The texts of a JSON array, and the numbers of an array or of an object's keys.
inline std::vector<std::string> Texts(const Doc& array) { return array.get<std::vector<std::string>>(); }
inline std::vector<double> Numbers(const Doc& array) { return array.get<std::vector<double>>(); }
inline std::vector<double> Numbers(const Doc& v, std::initializer_list<const char*> keys) {
    std::vector<double> out;
    for (const char* k : keys) out.push_back(v.at(k).get<double>());
    return out;
}

struct Release {
    void operator()(IZEMMgr* m) const { m->IRelease(); }
};
using Model = std::unique_ptr<IZEMMgr, Release>;

// The file read in this process by the reader zem picks for its extension.
inline Model ReadHere(const std::string& path) {
    IZEMMgr* raw = nullptr;
    ZEMObjectFactory(&raw);
    raw->IAddRef();
    Model m(raw);
    if (path.size() > 5 && path.substr(path.size() - 5) == ".xmps") {
        XMPSReader(m.get(), false).ReadMPSFile(path.c_str());
    } else {
        MPSStdReader(m.get()).ReadMPSFile(path.c_str());
    }
    return m;
}

class ZemRun : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/zem_cli_test_XXXXXX";
        dir_ = mkdtemp(tmpl);
        zem_ = std::string(ZEM_BINARY_DIR) + "/zem";
        if (!std::filesystem::exists(zem_)) GTEST_SKIP() << zem_ << " was not built";
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
    }
    Result Run(const std::string& args) {
        const std::string out = dir_ + "/stdout", err = dir_ + "/stderr";
        const int raw = std::system(("'" + zem_ + "' " + args + " > '" + out + "' 2> '" + err + "'").c_str());
        return Result{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, Slurp(out), Slurp(err)};
    }
    // Runs a command that must succeed and parses its JSON output.
    Doc Json(const std::string& args) {
        const Result r = Run(args);
        EXPECT_EQ(r.status, 0) << args << "\n" << r.err;
        return Doc::parse(r.out);
    }
    std::string File(const std::string& name, const std::string& content) {
        const std::string path = dir_ + "/" + name;
        std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
        return path;
    }
    // Each word must appear in the text.
    static void ExpectAll(const std::string& text, std::initializer_list<const char*> words) {
        for (const char* w : words) EXPECT_NE(text.find(w), std::string::npos) << "missing: " << w;
    }

    std::string dir_;
    std::string zem_;
};

}  // namespace clitest

namespace nlohmann {
// Failure messages print a document as its JSON text.
inline void PrintTo(const ordered_json& j, std::ostream* os) { *os << j.dump(); }
}  // namespace nlohmann
