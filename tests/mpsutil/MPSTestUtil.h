// Helpers shared by the MPS tests: models that release themselves, reading
// MPS text, building fixed-field cards and checking refusals.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdReader.h"

namespace mpstest {

struct DestroyModel {
    void operator()(ILPStdDataMgr* m) const { m->Destroy(); }
};
using ModelPtr = std::unique_ptr<ILPStdDataMgr, DestroyModel>;

inline ModelPtr NewModel() {
    ILPStdDataMgr* m = nullptr;
    CreateLPStdDataObject(&m);
    return ModelPtr(m);
}

// A fixed-field card: key at column 2, names at 5, 15 and 40, numbers
// right-aligned in columns 25-36 and 50-61; trailing blanks dropped.
inline std::string Card(const std::string& key, const std::string& n1, const std::string& n2 = "",
                        const std::string& v1 = "", const std::string& n3 = "",
                        const std::string& v2 = "") {
    std::string line(61, ' ');
    auto put = [&](size_t at, size_t width, const std::string& text, bool right) {
        const std::string t = text.substr(0, width);
        line.replace(right ? at + width - t.size() : at, t.size(), t);
    };
    put(1, 2, key, false);
    put(4, 8, n1, false);
    put(14, 8, n2, false);
    put(24, 12, v1, true);
    put(39, 8, n3, false);
    put(49, 12, v2, true);
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

inline std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& l : lines) text += l + "\n";
    return text;
}

// Reads MPS text into `model` with a standard reader.
inline void ReadInto(ILPStdDataMgr* model, const std::string& text) {
    MPSStdReader reader(model);
    std::istringstream in(text);
    reader.ReadMPSFromStream(in);
}

inline ModelPtr Read(const std::string& text) {
    ModelPtr model = NewModel();
    ReadInto(model.get(), text);
    return model;
}

// The exception of type E that `f` throws; the test fails when none is.
// With `notFileError`, a file error is a failure too.
template <class E = ZEM_Exception, class F>
E Raised(F f, bool notFileError = false) {
    try {
        f();
    } catch (E& e) {
        if (notFileError) {
            EXPECT_EQ(dynamic_cast<ZEM_ExcpFileError*>(&e), nullptr) << "a file error";
        }
        return e;
    }
    throw std::runtime_error("no exception was raised");
}

// The exception a read of `text` throws.
inline ZEM_Exception ReadError(const std::string& text) {
    return Raised([&] { Read(text); });
}

inline ILPVariableList* Vars(ILPStdDataMgr* m) { ILPVariableList* v = nullptr; m->GetVariableCollectionIntf(&v); return v; }
inline ILPEquationList* Eqns(ILPStdDataMgr* m) { ILPEquationList* e = nullptr; m->GetEquationCollectionIntf(&e); return e; }
inline ILPVariable* Var(ILPStdDataMgr* m, const char* name) { return Vars(m)->VarNameLookup(name); }
inline ILPEquation* Eqn(ILPStdDataMgr* m, const char* name) { return Eqns(m)->EqnNameLookup(name); }

// Names of the model's variables (or equations) in list order.
inline std::vector<std::string> VarNames(ILPStdDataMgr* m) {
    std::vector<std::string> names;
    for (ILPVariable* v = Vars(m)->FrstVariableObject(); v; v = Vars(m)->NextVariableObject()) names.push_back(v->GetName());
    return names;
}
inline std::vector<std::string> EqnNames(ILPStdDataMgr* m) {
    std::vector<std::string> names;
    for (ILPEquation* e = Eqns(m)->FrstEquationObject(); e; e = Eqns(m)->NextEquationObject()) names.push_back(e->GetName());
    return names;
}

// The coefficient at (row, column), or NaN when there is no entry.
inline double Coef(ILPStdDataMgr* m, const char* row, const char* col) {
    ILPMatrix* matrix = nullptr;
    m->GetMatrixIntf(&matrix);
    ILPEquation* e = Eqn(m, row);
    ILPVariable* v = Var(m, col);
    ILPNonZero* nz = e && v ? matrix->ExistIncidence(e->GetIndex(), v->GetIndex()) : nullptr;
    return nz ? nz->GetCoefficient() : std::nan("");
}

inline int NonZeroCount(ILPStdDataMgr* m) { int n = 0, rows = 0, nz = 0; m->ModelDimension(n, rows, nz); return nz; }

// A temporary directory removed with its contents at the end of the test.
class TempDir {
public:
    TempDir() {
        char tmpl[] = "/tmp/zem_mps_test_XXXXXX";
        const char* made = mkdtemp(tmpl);
        path_ = made ? made : "/tmp";
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::string& path() const { return path_; }
    std::string File(const std::string& name, const std::string& content) const {
        const std::string p = path_ + "/" + name;
        std::ofstream(p, std::ios::binary) << content;
        return p;
    }

private:
    std::string path_;
};

}  // namespace mpstest
