// Shared helpers of the lpdata tests: exception checks, an unseekable stream,
// a small model and random entity fills.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <streambuf>
#include <string>

#include "lpdata/ILPNonZero.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPSpOrdSet.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"

namespace lptest {

inline const unsigned char* Bytes(const std::string& s) { return reinterpret_cast<const unsigned char*>(s.data()); }

// Runs op and checks the exception's name, reason and routine; an empty
// expectation is not checked.
template <class Op>
void ExpectError(Op op, const std::string& name, const std::string& reason, const std::string& routine) {
    try {
        op();
        ADD_FAILURE() << "no exception, expected: " << name << " / " << reason;
    } catch (const ZEM_Exception& e) {
        if (!name.empty()) {
            EXPECT_EQ(e.Name(), name);
        }
        if (!reason.empty()) {
            EXPECT_EQ(e.Reason(), reason);
        }
        if (!routine.empty()) {
            EXPECT_EQ(e.Routine(), routine);
        }
    }
}

// A read-only stream buffer that cannot seek, so readers cannot learn the
// stream's size in advance.
class NoSeekBuf : public std::streambuf {
public:
    explicit NoSeekBuf(std::string data) : m_data(std::move(data)) {
        setg(&m_data[0], &m_data[0], &m_data[0] + m_data.size());
    }

private:
    std::string m_data;
};

inline void Put32At(std::string& s, size_t at, int32_t v) {
    zembin::put32(reinterpret_cast<unsigned char*>(&s[at]), v);
}

inline std::string NonzeroRecord(int32_t v, int32_t e, double c) {
    unsigned char rec[16] = {};
    zembin::put32(rec, v);
    zembin::put32(rec + 4, e);
    zembin::putF64(rec + 8, c);
    return std::string(reinterpret_cast<char*>(rec), 16);
}

struct Model {
    LPVariableList vars;
    LPEquationList eqns;
    LPMatrix matrix{&vars, &eqns};
    LPSpOrdSetList sets;
};

inline ILPNonZero* AddEntry(LPMatrix& m, ILPEquation* e, ILPVariable* v, double c) {
    ILPNonZero* nz = nullptr;
    m.CreateNewNonZeroObject(&nz);
    nz->SetEquationPtr(e);
    nz->SetVariablePtr(v);
    nz->SetCoefficient(c);
    return m.AddNonZeroObject(nz);
}

inline double R(std::mt19937& rng) { return std::uniform_real_distribution<double>(-1e6, 1e6)(rng); }

// The double fields of a variable and of an equation, in record order.
using VarSetter = void (ILPVariable::*)(double);
using EqnSetter = void (ILPEquation::*)(double);
const VarSetter kVarDoubles[] = {&ILPVariable::SetVarValue,       &ILPVariable::SetBoundLower,
                                 &ILPVariable::SetBoundUpper,     &ILPVariable::SetBaseValue,
                                 &ILPVariable::SetPersistentValue, &ILPVariable::SetTempBoundLower,
                                 &ILPVariable::SetStepBound,      &ILPVariable::SetSampleBoundLower,
                                 &ILPVariable::SetSampleBoundUpper};
const EqnSetter kEqnDoubles[] = {&ILPEquation::SetEqnValue, &ILPEquation::SetRHS, &ILPEquation::SetRange,
                                 &ILPEquation::SetBaseValue};

inline void FillRandomVariables(LPVariableList& list, int n, std::mt19937& rng) {
    for (int i = 0; i < n; ++i) {
        ILPVariable* v = list.InsertVariable(("VAR_" + std::to_string(i) + std::string(rng() % 70, 'x')).c_str());
        for (VarSetter set : kVarDoubles) (v->*set)(R(rng));
        v->SetVarType(static_cast<int16_t>(rng() % 5));
        v->SetVarStatus(static_cast<int16_t>(rng() % 6));
        v->SetNonlinear(static_cast<int>(rng() % 100) - 50);
        v->SetVarShadowPrice(R(rng));
    }
}

inline void FillRandomEquations(LPEquationList& list, int n, std::mt19937& rng) {
    for (int i = 0; i < n; ++i) {
        ILPEquation* e = list.InsertEquation(("EQN_" + std::to_string(i) + std::string(rng() % 70, 'y')).c_str());
        e->SetType(static_cast<int16_t>(rng() % 6));
        for (EqnSetter set : kEqnDoubles) (e->*set)(R(rng));
        e->SetShadowPrice(R(rng));
        e->SetEqnScale(R(rng));
    }
}

}  // namespace lptest
