// Fuzzes the model-file writer and reader as a pair: the fuzz bytes are a
// little program that builds a model through the public interfaces (rows,
// columns, entries, terms of every type, sets, groups, options, odd names
// and odd values). The model is then saved. A refusal must be the library's
// exception with nothing written; a saved model must restore and save again
// to the very same bytes. Anything else stops the fuzzer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

namespace {

class Bytes {
public:
    Bytes(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}
    bool More() const { return m_at < m_size; }
    uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    double Number() {
        static const double kPicks[] = {0.0, 1.0, -1.0, 0.5, 1e20, -1e20, 2e20, 1e-300, 3.25, -7.0};
        const uint8_t b = Byte();
        if (b < 200) return kPicks[b % 10];
        double v = 0.0;
        uint8_t raw[sizeof v];
        for (uint8_t& r : raw) r = Byte();
        std::memcpy(&v, raw, sizeof v);
        return v;
    }
    std::string Name() {
        static const char* const kNames[] = {"X", "Y", "ROW", "100001", "-Z", ".5", "A B", "\\", "*C", "x"};
        const uint8_t b = Byte();
        if (b < 160) return kNames[b % 10] + std::to_string(b / 10);
        if (b < 200) return std::string(static_cast<size_t>(Byte() % 3) + 59, 'N');
        std::string s;
        for (uint8_t n = Byte() % 12; n > 0; --n) s += static_cast<char>(Byte() | 1);
        return s;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_at = 0;
};

struct Parts {
    IZEMMgr* mgr = nullptr;
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    INonLinearModel* nl = nullptr;
    std::vector<ILPVariable*> v;
    std::vector<ILPEquation*> e;
};

template <class T>
T* Pick(std::vector<T*>& from, Bytes& in) {
    return from.empty() ? nullptr : from[in.Byte() % from.size()];
}

void Step(Parts& p, Bytes& in) {
    static const int16_t kTermCodes[] = {1, 2, 3, 4, 5, 7, 10, 14, 15, 16, 17, 18, 19, 20, 21, 91, 92, 93, 94};
    switch (in.Byte() % 12) {
        case 0: {
            ILPVariable* x = p.vars->InsertVariable(in.Name().c_str());
            if (x != nullptr) p.v.push_back(x);
            break;
        }
        case 1: {
            ILPEquation* r = p.eqns->InsertEquation(in.Name().c_str());
            if (r == nullptr) break;
            r->SetType(static_cast<int16_t>(in.Byte() % 7));
            p.e.push_back(r);
            break;
        }
        case 2: {
            ILPVariable* x = Pick(p.v, in);
            ILPEquation* r = Pick(p.e, in);
            ILPNonZero* nz = nullptr;
            if (x != nullptr && r != nullptr) p.mgr->InsertMatrixEntry(r->GetName(), x->GetName(), in.Number(), &nz);
            break;
        }
        case 3: {
            ILPVariable* x = Pick(p.v, in);
            if (x == nullptr) break;
            x->SetBoundLower(in.Number());
            x->SetBoundUpper(in.Number());
            x->SetVarType(static_cast<int16_t>(in.Byte() % 6));
            x->SetVarStatus(static_cast<int16_t>(in.Byte() % 7));
            x->SetVarValue(in.Number());
            x->SetTempBoundLower(in.Number());
            x->SetStepBound(in.Number());
            break;
        }
        case 4: {
            ILPEquation* r = Pick(p.e, in);
            if (r == nullptr) break;
            r->SetRHS(in.Number());
            r->SetRange(in.Number());
            r->SetEqnScale(in.Number());
            break;
        }
        case 5: {
            ILPEquation* r = Pick(p.e, in);
            INonLinearity* t = nullptr;
            p.nl->CreateNonLinearityObject(kTermCodes[in.Byte() % (sizeof kTermCodes / sizeof kTermCodes[0])], &t);
            if (t == nullptr) break;
            if (r == nullptr) {
                t->Destroy();
                break;
            }
            t->SetEquationPtr(r);
            for (uint8_t n = in.Byte() % 5; n > 0; --n) t->AddNLConstantObject(in.Number());
            for (uint8_t n = in.Byte() % 5; n > 0; --n)
                if (ILPVariable* x = Pick(p.v, in)) t->AddVariableObject(x);
            p.nl->AddNonLinearityObject(t);
            break;
        }
        case 6: {
            ILPSpOrdSetList* sets = nullptr;
            p.mgr->GetSpOrdSetCollectionIntf(&sets);
            ILPSpOrdSet* s = nullptr;
            sets->CreateNewSpOrdSetObject(&s);
            s->SetName(in.Name().c_str());
            s->SetType(static_cast<int16_t>(in.Byte() % 9));
            for (uint8_t n = in.Byte() % 4; n > 0; --n)
                if (ILPVariable* x = Pick(p.v, in)) s->AddVariableObject(x);
            sets->AddSpOrdSetObject(s);
            break;
        }
        case 7: {
            ILPVariableCollection* c = nullptr;
            p.mgr->NewNamedVarCollection(in.Name().c_str(), &c);
            if (c == nullptr) break;
            c->SetDirection(static_cast<int16_t>(in.Byte() % 3) - 1);
            for (uint8_t n = in.Byte() % 4; n > 0; --n)
                if (ILPVariable* x = Pick(p.v, in)) c->AddVariableObject(x);
            break;
        }
        case 8: {
            IZEMOptionTable* options = nullptr;
            p.mgr->GetOptionTableIntf(&options);
            const std::string name = in.Name(), value = in.Name();
            options->SetOption(name.c_str(), value.c_str(), in.Byte() % 2 ? in.Name().c_str() : nullptr);
            break;
        }
        case 9: p.mgr->SetModelTitle(in.Byte() % 8 == 0 ? std::string(129, 'T').c_str() : in.Name().c_str()); break;
        case 10: {
            ILPVariable* x = Pick(p.v, in);
            ILPVariable* y = Pick(p.v, in);
            if (x != nullptr && in.Byte() % 4 == 0) x->SetComplementarityTarget(y);
            break;
        }
        default: {
            ILPEquation* r = Pick(p.e, in);
            if (r != nullptr && in.Byte() % 8 == 0) r->SetBlkMember(1);
            break;
        }
    }
}

void Release(IZEMMgr* m) { m->IRelease(); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IZEMMgr* mgr = nullptr;
    ZEMObjectFactory(&mgr);
    if (mgr == nullptr) return 0;
    mgr->IAddRef();
    Parts p;
    p.mgr = mgr;
    mgr->GetVariableCollectionIntf(&p.vars);
    mgr->GetEquationCollectionIntf(&p.eqns);
    mgr->GetNonLinearModelIntf(&p.nl);
    Bytes in(data, size);
    for (int steps = 0; in.More() && steps < 200; ++steps) Step(p, in);
    mgr->ProcessFullCollection();

    std::stringstream first;
    try {
        mgr->PersistAsStream(&first);
    } catch (ZEM_Exception&) {
        // A refused model writes nothing.
        if (!first.str().empty()) std::abort();
        Release(mgr);
        return 0;
    }
    IZEMMgr* back = nullptr;
    ZEMObjectFactory(&back);
    back->IAddRef();
    std::stringstream second;
    try {
        back->RestoreFromStream(&first);
        back->PersistAsStream(&second);
    } catch (ZEM_Exception&) {
        // A file the writer made must read back.
        std::abort();
    }
    std::stringstream again;
    mgr->PersistAsStream(&again);
    if (second.str() != again.str()) std::abort();
    Release(back);
    Release(mgr);
    return 0;
}
