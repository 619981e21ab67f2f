// The nonlinear model's section of the model file.
//
// Layout (all little-endian), chosen by the file version:
//   version > 2011.5 -> V5, > 2009.0 -> V4, > 2008.0 -> V3, > 2007.0 -> V2,
//   otherwise V1.
// V1..V4: one fixed record per persisted term (block members are skipped):
//   0 int16 type code   2 int16 active   4 int32 row index
//   8 int32 T (argument occurrences)  12 int32 U (distinct arguments)
//   16 int32 K (constants)  20 identifier, NUL-terminated in a fixed field
//   field/record bytes: V1 25/48, V2 250/272, V3 2000/2020, V4 500/520.
// V5: a 20-byte record per term (the fields above without identifier), then,
//   when terms were written, an int32 byte count and the identifiers one
//   after another, each NUL-terminated and cut to 500 bytes with its NUL.
// Then, for the same terms in order: T int32 variable indices, U int32
//   matrix-entry indices, K doubles. After them, for versions above 2007.0,
//   the block list's own section.
// Nothing at all is written for an empty pool.
#include <algorithm>
#include <cstring>
#include <memory>
#include <unordered_set>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearBlockList.h"
#include "nlpdata/NLUserEquation.h"
#include "nlpdata/NonLinearModel.h"

namespace {

const char* const kReadPlace = "NonLinearModel::StreamRead";
const char* const kListError = "Error during read of NonLinearity List from binary file";

constexpr size_t kRecordHead = 20;
constexpr size_t kV5IdLimit = 500;  // bytes of one identifier, NUL included

struct Layout {
    size_t idField;
    size_t record;
};

Layout LayoutOf(int v) {
    switch (v) {
        case 1: return {25, 48};
        case 2: return {250, 272};
        case 3: return {2000, 2020};
        case 4: return {500, 520};
        default: return {0, kRecordHead};
    }
}

[[noreturn]] void ListError(const std::string& detail = std::string()) {
    ZEM_RAISE(zemsrc::kNlpData, "ZEMDataMgr Error",
              detail.empty() ? std::string(kListError) : std::string(kListError) + " : " + detail,
              kReadPlace);
}

template <typename T>
size_t TableLength(T** table) {
    size_t n = 0;
    if (table)
        while (table[n]) ++n;
    return n;
}

// Reads n bytes in bounded steps, so that a count from a stream that cannot
// tell its length only costs memory as its bytes actually arrive.
bool ReadBytes(std::istream* is, std::vector<unsigned char>& out, uint64_t n) {
    constexpr uint64_t kStep = 1u << 20;
    out.clear();
    while (n > 0) {
        const size_t step = static_cast<size_t>(n < kStep ? n : kStep);
        const size_t at = out.size();
        out.resize(at + step);
        if (!zembin::readExact(is, out.data() + at, step)) return false;
        n -= step;
    }
    return true;
}

struct TermDestroyer {
    void operator()(INonLinearity* t) const { t->Destroy(); }
};

}  // namespace

int NonLinearModel::LayoutFor(double version) {
    if (version > 2011.5) return 5;
    if (version > 2009.0) return 4;
    if (version > 2008.0) return 3;
    if (version > 2007.0) return 2;
    return 1;
}

std::vector<INonLinearity*> NonLinearModel::PersistedTerms() {
    std::vector<INonLinearity*> out;
    out.reserve(m_pool.size());
    for (INonLinearity* t : m_pool)
        if (t->GetBlkMember() == 0) out.push_back(t);
    return out;
}

// ---------------------------------------------------------------- writing

namespace {

void PutHead(unsigned char* rec, INonLinearity* t) {
    ILPEquation* row = t->GetEquationPtr();
    zembin::put16(rec + 0, t->GetType());
    zembin::put16(rec + 2, t->Active());
    zembin::put32(rec + 4, row ? row->GetIndex() : 0);
    zembin::put32(rec + 8, t->NumberOfVariableTerms());
    zembin::put32(rec + 12, t->NumberOfUniqueVariableEntries());
    zembin::put32(rec + 16, t->NumberOfNLConstants());
}

}  // namespace

void NonLinearModel::WriteFixedRecords(std::ostream* os, size_t idField, size_t recordSize) {
    const std::vector<INonLinearity*> terms = PersistedTerms();
    std::vector<unsigned char> rec(recordSize);
    for (INonLinearity* t : terms) {
        std::fill(rec.begin(), rec.end(), 0);
        PutHead(rec.data(), t);
        const char* id = t->GetNonLinearityID();
        zembin::putName(rec.data() + kRecordHead, idField, id ? id : "");
        zembin::writeBytes(os, rec.data(), rec.size());
    }
    WriteArrays(os, terms);
}

void NonLinearModel::WriteArrays(std::ostream* os, const std::vector<INonLinearity*>& terms) {
    std::vector<unsigned char> buf;
    auto flush = [&]() {
        if (!buf.empty()) zembin::writeBytes(os, buf.data(), buf.size());
        buf.clear();
    };
    unsigned char b[8];
    for (INonLinearity* t : terms)
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) {
            zembin::put32(b, v->GetIndex());
            buf.insert(buf.end(), b, b + 4);
        }
    flush();
    for (INonLinearity* t : terms)
        for (ILPNonZero* nz = t->FrstNZ(); nz; nz = t->NextNZ()) {
            zembin::put32(b, nz->GetIndex());
            buf.insert(buf.end(), b, b + 4);
        }
    flush();
    for (INonLinearity* t : terms)
        for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst()) {
            zembin::putF64(b, c->GetValue());
            buf.insert(buf.end(), b, b + 8);
        }
    flush();
}

void NonLinearModel::StreamWriteV1(std::ostream* os) { WriteFixedRecords(os, 25, 48); }
void NonLinearModel::StreamWriteV2(std::ostream* os) { WriteFixedRecords(os, 250, 272); }
void NonLinearModel::StreamWriteV3(std::ostream* os) { WriteFixedRecords(os, 2000, 2020); }
void NonLinearModel::StreamWriteV4(std::ostream* os) { WriteFixedRecords(os, 500, 520); }

void NonLinearModel::StreamWriteV5(std::ostream* os) {
    const std::vector<INonLinearity*> terms = PersistedTerms();
    std::vector<unsigned char> recs(terms.size() * kRecordHead, 0);
    std::string ids;
    for (size_t i = 0; i < terms.size(); ++i) {
        PutHead(recs.data() + i * kRecordHead, terms[i]);
        const char* id = terms[i]->GetNonLinearityID();
        ids += zembin::cutName(id ? id : "", kV5IdLimit - 1);
        ids += '\0';
    }
    if (!recs.empty()) zembin::writeBytes(os, recs.data(), recs.size());
    if (!terms.empty()) {
        zembin::writeI32(os, static_cast<int32_t>(ids.size()));
        zembin::writeBytes(os, ids.data(), ids.size());
    }
    WriteArrays(os, terms);
}

void NonLinearModel::StreamWrite(std::ostream* os, double version) {
    if (!os || m_pool.empty()) return;
    switch (LayoutFor(version)) {
        case 5: StreamWriteV5(os); break;
        case 4: StreamWriteV4(os); break;
        case 3: StreamWriteV3(os); break;
        case 2: StreamWriteV2(os); break;
        default: StreamWriteV1(os); break;
    }
    if (version > 2007.0) m_blocks->StreamWrite(os);
}

// ---------------------------------------------------------------- reading

void NonLinearModel::ReadSection(int layout, int count, ILPVariable** vars, ILPEquation** eqns,
                                 ILPNonZero** nzs, std::istream* is) {
    if (count < 0) ListError("negative NonLinearity count");
    if (count == 0) return;
    if (!is) ListError();
    const Layout lay = LayoutOf(layout);
    if (!zembin::canHold(is, count, lay.record)) ListError();

    // 1. The records.
    std::vector<TermRecord> recs;
    recs.reserve(static_cast<size_t>(std::min(count, 1 << 16)));
    std::vector<unsigned char> buf(lay.record);
    int64_t totalT = 0, totalU = 0, totalK = 0;
    for (int i = 0; i < count; ++i) {
        if (!zembin::readExact(is, buf.data(), buf.size())) ListError();
        recs.emplace_back();
        TermRecord& r = recs.back();
        const unsigned char* p = buf.data();
        r.type = zembin::get16(p);
        r.active = zembin::get16(p + 2);
        r.row = zembin::get32(p + 4);
        r.nVars = zembin::get32(p + 8);
        r.nUnique = zembin::get32(p + 12);
        r.nConsts = zembin::get32(p + 16);
        if (lay.idField) r.id = zembin::getName(p + kRecordHead, lay.idField);
        if (r.nVars < 0 || r.nUnique < 0 || r.nConsts < 0 || r.nUnique > r.nVars)
            ListError("invalid counts in a NonLinearity record");
        totalT += r.nVars;
        totalU += r.nUnique;
        totalK += r.nConsts;
    }

    // 2. The identifier block of V5.
    if (layout == 5) {
        int32_t length = 0;
        if (!zembin::readI32(is, length) || length < 1)
            ZEM_RAISE(zemsrc::kNlpData, "LPStdDataMgr Error",
                      "Error during read of NonLinearity name count from binary file", kReadPlace);
        if (!zembin::canHold(is, length, 1))
            ZEM_RAISE(zemsrc::kNlpData, "ZEMDataMgr Error",
                      "Error during read of NonLinearity names from binary file", kReadPlace);
        std::vector<unsigned char> raw;
        if (!ReadBytes(is, raw, static_cast<uint64_t>(length)))
            ZEM_RAISE(zemsrc::kNlpData, "ZEMDataMgr Error",
                      "Error during read of NonLinearity names from binary file", kReadPlace);
        const std::string block(raw.begin(), raw.end());
        size_t pos = 0;
        for (TermRecord& r : recs) {
            const size_t end = block.find('\0', pos);
            if (end == std::string::npos)
                ZEM_RAISE(zemsrc::kNlpData, "ZEMDataMgr Error",
                          "Error during read of NonLinearity names from binary file", kReadPlace);
            r.id.assign(block, pos, end - pos);
            pos = end + 1;
        }
    }

    // 3. The three arrays.
    // The totals can reach 2^62 each: add the byte counts in long double.
    const long double need = 4.0L * totalT + 4.0L * totalU + 8.0L * totalK;
    if (need > static_cast<long double>(zembin::remaining(is))) ListError();
    std::vector<unsigned char> raw;
    auto readInts = [&](int64_t n) {
        if (!ReadBytes(is, raw, static_cast<uint64_t>(n) * 4)) ListError();
        std::vector<int32_t> out(static_cast<size_t>(n));
        for (size_t i = 0; i < out.size(); ++i) out[i] = zembin::get32(raw.data() + 4 * i);
        return out;
    };
    const std::vector<int32_t> varIdx = readInts(totalT);
    const std::vector<int32_t> nzIdx = readInts(totalU);
    if (!ReadBytes(is, raw, static_cast<uint64_t>(totalK) * 8)) ListError();
    std::vector<double> constants(static_cast<size_t>(totalK));
    for (size_t i = 0; i < constants.size(); ++i) constants[i] = zembin::getF64(raw.data() + 8 * i);

    // 4. Every reference is checked against the tables before a term is made.
    const size_t nVars = TableLength(vars), nEqns = TableLength(eqns), nNzs = TableLength(nzs);
    size_t ti = 0, ui = 0;
    for (const TermRecord& r : recs) {
        if (r.row < 1 || static_cast<size_t>(r.row) > nEqns)
            ListError("Equation index out of range");
        ILPEquation* row = eqns[r.row - 1];
        if (row->GetIndex() < 1) ListError("Equation not in the model");
        std::vector<ILPVariable*> unique;
        std::unordered_set<ILPVariable*> seen;
        for (int32_t k = 0; k < r.nVars; ++k, ++ti) {
            const int32_t v = varIdx[ti];
            if (v < 1 || static_cast<size_t>(v) > nVars) ListError("Variable index out of range");
            if (vars[v - 1]->GetIndex() < 1) ListError("Variable not in the model");
            if (seen.insert(vars[v - 1]).second) unique.push_back(vars[v - 1]);
        }
        if (unique.size() != static_cast<size_t>(r.nUnique))
            ListError("distinct Variable count does not match");
        for (int32_t k = 0; k < r.nUnique; ++k, ++ui) {
            const int32_t n = nzIdx[ui];
            if (n < 1 || static_cast<size_t>(n) > nNzs) ListError("NonZero index out of range");
            ILPNonZero* nz = nzs[n - 1];
            if (nz->GetEquationPtr() != row || nz->GetVariablePtr() != unique[k])
                ListError("NonZero does not join the term's Equation and Variable");
        }
    }

    // 5. The terms.
    ti = ui = 0;
    size_t ki = 0;
    std::vector<ILPNonZero*> entries;
    for (const TermRecord& r : recs) {
        INonLinearity* made = nullptr;
        if (!r.id.empty())
            CreateNonLinearityObject(r.id.c_str(), &made);
        else
            CreateNonLinearityObject(r.type, &made);
        if (!made) ListError("Unable to create new NonLinearity data object");
        std::unique_ptr<INonLinearity, TermDestroyer> guard(made);
        made->SetEquationPtr(eqns[r.row - 1]);
        for (int32_t k = 0; k < r.nVars; ++k) made->AddVariableObject(vars[varIdx[ti++] - 1]);
        for (int32_t k = 0; k < r.nConsts; ++k) made->AddNLConstantObject(constants[ki++]);
        if (r.active == 0) made->DeActivate();
        entries.clear();
        for (int32_t k = 0; k < r.nUnique; ++k) entries.push_back(nzs[nzIdx[ui++] - 1]);
        NonLinearityNLEEquation::CheckIfUserEquation(made);
        Insert(guard.release(), entries.data());
    }
}

void NonLinearModel::StreamReadV1(int count, ILPVariable** vars, ILPEquation** eqns,
                                  ILPNonZero** nzs, std::istream* is) {
    ReadSection(1, count, vars, eqns, nzs, is);
}
void NonLinearModel::StreamReadV2(int count, ILPVariable** vars, ILPEquation** eqns,
                                  ILPNonZero** nzs, std::istream* is) {
    ReadSection(2, count, vars, eqns, nzs, is);
}
void NonLinearModel::StreamReadV3(int count, ILPVariable** vars, ILPEquation** eqns,
                                  ILPNonZero** nzs, std::istream* is) {
    ReadSection(3, count, vars, eqns, nzs, is);
}
void NonLinearModel::StreamReadV4(int count, ILPVariable** vars, ILPEquation** eqns,
                                  ILPNonZero** nzs, std::istream* is) {
    ReadSection(4, count, vars, eqns, nzs, is);
}
void NonLinearModel::StreamReadV5(int count, ILPVariable** vars, ILPEquation** eqns,
                                  ILPNonZero** nzs, std::istream* is) {
    ReadSection(5, count, vars, eqns, nzs, is);
}

void NonLinearModel::StreamRead(double version, int count, ILPVariable** vars,
                                ILPEquation** eqns, ILPNonZero** nzs, std::istream* is) {
    if (count == 0) return;  // an empty pool wrote nothing, not even the block list
    ReadSection(LayoutFor(version), count, vars, eqns, nzs, is);
    if (version > 2007.0) m_blocks->StreamRead(is);
}

void NonLinearModel::StreamReadSafe(double version, int count, ILPVariable** vars,
                                    ILPEquation** eqns, ILPNonZero** nzs, std::istream* is) {
    // Terms are always appended, and every reference is checked, so the
    // appending form reads exactly like the plain one.
    StreamRead(version, count, vars, eqns, nzs, is);
}
