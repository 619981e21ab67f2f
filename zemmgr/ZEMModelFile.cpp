#include "zemmgr/ZEMModelFile.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "lpdata/LPRecordIO.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "nlpdata/NonLinearity.h"
#include "zemmgr/IZEMOptionTable.h"
#include "zemmgr/ZEMOptionTable.h"

namespace ZEMModelFile {

const char* const kHeaderReadError = "Error during read of ZEMFile Header from binary file";
const char* const kVersionError = "Incompatible ZEMFile Version Error";
const char* const kElementReadError = "Error during read of ZEMFile element from binary file";

namespace {

constexpr const char* kReadRoutine = "ZEMMgr::RestoreFromFile";
constexpr size_t kTitleField = kMaxTitle + 1;  // 129 bytes at offset 8

[[noreturn]] void readError(const char* message) {
    ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error", message, kReadRoutine);
}

// Section readers hand out new[] tables; this frees them on every path.
template <typename T>
using Table = std::unique_ptr<T*[]>;

template <typename T>
Table<T> emptyTable() {
    Table<T> t(new T*[1]);
    t[0] = nullptr;
    return t;
}

// Smallest number of bytes the sections of a file with these counts can
// take: used to refuse counts that the stream cannot hold before any reader
// allocates for them. Older record layouts are smaller, so only the sizes
// that hold for every version are used.
bool countsFit(std::istream* is, const int32_t* counts) {
    for (int i = 0; i < 6; ++i)
        if (counts[i] < 0) return false;
    // variables: 88-byte records from 2011.5 on, earlier layouts are not
    // smaller than an 8-byte value; equations likewise; nonzeros 16 bytes;
    // set records 68 bytes plus 4 per member; terms 20 bytes.
    const uint64_t need = uint64_t(counts[0]) * 8 + uint64_t(counts[1]) * 8 +
                          uint64_t(counts[2]) * 16 + uint64_t(counts[3]) * 68 +
                          uint64_t(counts[4]) * 4 + uint64_t(counts[5]) * 20;
    return zembin::canHold(is, static_cast<int64_t>(need > INT64_MAX ? INT64_MAX : need), 1);
}

}  // namespace

namespace {

constexpr size_t kIdentifierMax = 499;

class Refusal {
public:
    Refusal(const char* routine, const char* category, const char* src)
        : m_routine(routine), m_category(category), m_src(src) {}
    [[noreturn]] void Raise(const char* kind, const char* name, const char* why) const {
        ZEMRaise(m_category, std::string(kind) + " \"" + (name != nullptr ? name : "") +
                                 "\" cannot be saved: " + why,
                 m_routine, m_src, __LINE__);
    }
    void Name(const char* kind, const char* name) const {
        if (name != nullptr && std::strlen(name) > lprec::kNameChars)
            Raise(kind, name, "its name is longer than the 60 characters the model file keeps");
    }
    void Block(const char* kind, const char* name, int block) const {
        if (block != 0)
            Raise(kind, name,
                  "it belongs to a nonlinear block, and blocks are saved by the block component, "
                  "which this build does not have");
    }

private:
    const char* m_routine;
    const char* m_category;
    const char* m_src;
};

}  // namespace

void CheckWritable(const ZEMModelState& state, const ZEMModelContent& content,
                   const std::vector<ILPVariableCollection*>& collections, const char* routine,
                   const char* category, const char* src) {
    if (state.title.size() > kMaxTitle)
        ZEMRaise(category, "Model title longer than 128 characters does not fit the ZEMFile header",
                 routine, src, __LINE__);
    const Refusal refuse(routine, category, src);
    for (ILPVariable* v = content.vars->FrstVariableObject(); v; v = content.vars->NextVariableObject()) {
        refuse.Name("Variable", v->GetName());
        refuse.Block("Variable", v->GetName(), v->GetBlkMember());
        if (v->GetComplementarityTarget() != nullptr)
            refuse.Raise("Variable", v->GetName(), "the model file has no place for its complementarity partner");
        const char* description = v->GetDescription();
        if (description != nullptr && description[0] != '\0')
            refuse.Raise("Variable", v->GetName(), "the model file has no place for its description");
    }
    for (ILPEquation* e = content.eqns->FrstEquationObject(); e; e = content.eqns->NextEquationObject()) {
        refuse.Name("Equation", e->GetName());
        refuse.Block("Equation", e->GetName(), e->GetBlkMember());
        if (content.matrix->NonZerosInRow(e->GetIndex()) == 0)
            refuse.Raise("Equation", e->GetName(), "it has no entries, and restoring a model drops such rows");
    }
    for (ILPSpOrdSet* s = content.sets->FrstSpOrdSetObject(); s; s = content.sets->NextSpOrdSetObject())
        refuse.Name("Set", s->GetName());
    for (ILPVariableCollection* c : collections) refuse.Name("Collection", c->Name());
    if (content.nonlinear == nullptr) return;
    for (INonLinearity* t = content.nonlinear->FrstNonLinearityObject(); t;
         t = content.nonlinear->NextNonLinearityObject()) {
        const char* id = t->GetNonLinearityID();
        refuse.Block("Term", id, t->GetBlkMember());
        if (NonLinearity::MultiplierApart(t))
            refuse.Raise("Term", id, "its multiplier was changed apart from its first constant, which the file carries");
        if (id != nullptr && std::strlen(id) > kIdentifierMax)
            refuse.Raise("Term", id, "its identifier is longer than the 499 characters the model file keeps");
    }
}

void WriteToPath(const char* path, const char* routine, const char* src,
                 const std::function<void(std::ofstream*)>& write) {
    const char* name = path ? path : "";
    std::ofstream out(name, std::ios::out | std::ios::binary | std::ios::trunc);
    if (!out.is_open()) throw ZEM_ExcpFileError(eFileCreateForWrite, "", name, routine, src, __LINE__);
    try {
        write(&out);
        out.close();
        if (out.fail()) throw ZEM_ExcpFileError(eFileWriteError, "", name, routine, src, __LINE__);
    } catch (...) {
        if (out.is_open()) out.close();
        std::remove(name);
        throw;
    }
}

void Write(std::ostream* os, double version, const ZEMModelState& state,
           const ZEMModelContent& content,
           const std::vector<ILPVariableCollection*>& collections, const char* routine) {
    CheckWritable(state, content, collections, routine);
    os->clear();

    unsigned char header[kHeaderSize] = {};
    zembin::putF64(header, version);
    std::memcpy(header + 8, state.title.data(), state.title.size());

    const int32_t nTerms =
        content.nonlinear != nullptr ? content.nonlinear->NumberOfPersistedNonLinearities() : 0;
    unsigned char counts[kCountsSize] = {};
    zembin::put32(counts + 0, content.vars->NumberOfVariables());
    zembin::put32(counts + 4, content.eqns->NumberOfEquations());
    zembin::put32(counts + 8, content.matrix->NumberOfNonZeros());
    zembin::put32(counts + 12, content.sets->NumberOfSpOrdSets());
    zembin::put32(counts + 16, content.sets->TotalSOSVars());
    zembin::put32(counts + 20, nTerms);
    counts[24] = state.matrixIncludesObjective ? 1 : 0;

    const unsigned char flags[2] = {static_cast<unsigned char>(state.valuesInitialized ? 1 : 0),
                                    static_cast<unsigned char>(state.hybrid ? 1 : 0)};
    zembin::writeBytes(os, header, sizeof header);
    zembin::writeBytes(os, counts, sizeof counts);
    zembin::writeBytes(os, flags, sizeof flags);

    content.vars->StreamWrite(os, version);
    content.eqns->StreamWrite(os, version);
    content.matrix->StreamWrite(os);
    content.sets->StreamWrite(os);
    if (content.nonlinear != nullptr) content.nonlinear->StreamWrite(os, version);
    if (content.options != nullptr) {
        content.options->StreamWrite(os);
    } else {
        ZEMOptionTable empty;
        empty.StreamWrite(os);
    }
    zembin::writeI32(os, static_cast<int32_t>(collections.size()));
    for (ILPVariableCollection* col : collections) col->StreamWrite(os);
}

void Read(std::istream* is, Mode mode, const ZEMModelContent& content, ZEMModelState& state,
          const std::string& modelDir, const ZEMCollectionSink& sink) {
    const bool append = mode == Mode::Append;

    unsigned char header[kHeaderSize];
    if (!zembin::readExact(is, header, sizeof header)) readError(kHeaderReadError);
    const double version = zembin::getF64(header);
    // Written as a refusal test so that a NaN version is let through.
    if (version != kCurrentVersion && version < 1.05) readError(kVersionError);
    if (!append) state.title = zembin::getName(header + 8, kTitleField);

    unsigned char countBytes[kCountsSize];
    if (!zembin::readExact(is, countBytes, sizeof countBytes)) readError(kHeaderReadError);
    int32_t counts[6];
    for (int i = 0; i < 6; ++i) counts[i] = zembin::get32(countBytes + 4 * i);
    if (!append) state.matrixIncludesObjective = countBytes[24] != 0;
    const int32_t nVars = counts[0], nEqns = counts[1], nNz = counts[2];
    const int32_t nSets = counts[3], nMembers = counts[4], nTerms = counts[5];

    unsigned char flag = 1;
    if (version >= 1.03) {
        if (!zembin::readExact(is, &flag, 1)) readError(kElementReadError);
    }
    state.valuesInitialized = flag != 0;
    flag = 0;
    if (version >= 2020.0) {
        if (!zembin::readExact(is, &flag, 1)) readError(kElementReadError);
    }
    state.hybrid = flag != 0;
    if (!countsFit(is, counts)) readError(kHeaderReadError);

    // Each section reader hands out the objects it made, in file order;
    // later sections refer to them by position. An empty section was not
    // written at all, so it is not read either.
    Table<ILPVariable> vars = emptyTable<ILPVariable>();
    if (nVars > 0) {
        ILPVariable** raw = nullptr;
        if (append)
            content.vars->StreamReadSafe(nVars, &raw, is, version);
        else
            content.vars->StreamRead(nVars, &raw, is, version);
        if (raw != nullptr) vars.reset(raw);
    }
    Table<ILPEquation> eqns = emptyTable<ILPEquation>();
    if (nEqns > 0) {
        ILPEquation** raw = nullptr;
        if (append)
            content.eqns->StreamReadSafe(nEqns, &raw, is, version);
        else
            content.eqns->StreamRead(nEqns, &raw, is, version);
        if (raw != nullptr) eqns.reset(raw);
    }
    Table<ILPNonZero> nzs = emptyTable<ILPNonZero>();
    if (nNz > 0) {
        ILPNonZero** raw = nullptr;
        if (append)
            content.matrix->StreamReadSafe(nNz, &raw, vars.get(), eqns.get(), is);
        else
            content.matrix->StreamRead(nNz, &raw, vars.get(), eqns.get(), is);
        if (raw != nullptr) nzs.reset(raw);
    }
    if (nSets > 0) {
        ILPSpOrdSet** raw = nullptr;
        if (append)
            content.sets->StreamReadSafe(nSets, nMembers, &raw, vars.get(), is);
        else
            content.sets->StreamRead(nSets, nMembers, &raw, vars.get(), is);
        Table<ILPSpOrdSet> sets(raw);
    }

    if (nTerms > 0) {
        // A container without a nonlinear model cannot take terms.
        if (content.nonlinear == nullptr) readError(kElementReadError);
        content.nonlinear->SetModelDir(modelDir.c_str());
        if (append) {
            content.nonlinear->StreamReadSafe(version, nTerms, vars.get(), eqns.get(), nzs.get(),
                                              is);
        } else {
            content.nonlinear->StreamRead(version, nTerms, vars.get(), eqns.get(), nzs.get(), is);
            (void)content.nonlinear->FrstNonLinearitySCDEquation();
        }
    } else if (content.nonlinear != nullptr) {
        content.nonlinear->SetModelDir(modelDir.c_str());
        if (!append) (void)content.nonlinear->FrstNonLinearitySCDEquation();
    }

    if (content.options != nullptr) {
        content.options->StreamRead(is);
    } else {
        ZEMOptionTable ignored;
        ignored.StreamRead(is);
    }

    if (version >= 1.04) {
        int32_t nCollections = 0;
        if (!zembin::readI32(is, nCollections)) readError(kElementReadError);
        // A collection record is at least 72 bytes.
        if (!zembin::canHold(is, nCollections, 72)) readError(kElementReadError);
        for (int32_t i = 0; i < nCollections; ++i) {
            ILPVariableCollection* col = sink.make ? sink.make() : nullptr;
            if (col == nullptr) readError(kElementReadError);
            try {
                col->StreamRead(vars.get(), is);
            } catch (...) {
                col->Destroy();
                throw;
            }
            if (!sink.add || !sink.add(col)) col->Destroy();
        }
    }
}

}  // namespace ZEMModelFile
