// The concrete matrix entry. Its row and column numbers are read through the
// equation and variable it points to. Entries made by a matrix live in the
// matrix's pool (LPNonZeroPool.h), which they find from their own address,
// and go back to it on Destroy; others (made with new) are deleted. The
// fields are ordered so that the entry takes 56 bytes, a pool slot exactly.
//
// Every write of a coefficient, an equation or a variable pointer (setters,
// copy, assignment) advances one process-wide change counter, so that copies
// of the matrix's content (the evaluation snapshot) can tell cheaply whether
// any entry anywhere changed since they were taken. The library is
// single-threaded: the counter is atomic only so that reading it is never a
// data race, and it is advanced with a plain load and store.
#pragma once

#include <atomic>
#include <cstdint>

#include "lpdata/ILPNonZero.h"

class LPNonZeroPool;

class LPNonZero : public ILPNonZero {
public:
    LPNonZero() = default;
    LPNonZero(const LPNonZero& other);
    LPNonZero& operator=(const LPNonZero& other);
    ~LPNonZero() override = default;

    void Destroy() override;
    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    void GetCoordinates(int& row, int& col) const override;
    int GetEquationIdx() const override;
    int GetVariableIdx() const override;
    void SetEquationPtr(ILPEquation* eqn) override {
        m_equation = eqn;
        Changed();
    }
    ILPEquation* GetEquationPtr() const override { return m_equation; }
    void SetVariablePtr(ILPVariable* var) override {
        m_variable = var;
        Changed();
    }
    ILPVariable* GetVariablePtr() const override { return m_variable; }
    void SetCoefficient(double v) override {
        m_coefficient = v;
        Changed();
    }
    double GetCoefficient() const override { return m_coefficient; }
    void SetPartialDeriv(double v) override { m_partial = v; }
    void AddPartialDeriv(double v) override { m_partial += v; }
    double GetPartialDeriv() const override { return m_partial; }
    void IncrNonlinear() override { ++m_nonlinear; }
    void DecrNonlinear() override { --m_nonlinear; }
    int16_t GetNonlinear() const override { return m_nonlinear; }
    void Display(std::ostream& os) override;
    void SetModelIndex(int index) override { m_modelIndex = index; }
    int GetModelIndex() const override { return m_modelIndex; }
    int Compare(ILPNonZero* other, int mode, double tolerance, std::ostream& os) override;
    bool BeenDiffed() const override { return m_diffed; }
    void SetDiffed(bool diffed) override { m_diffed = diffed; }

    // Number of entry writes so far in this process.
    static uint64_t ChangeCount() { return s_changes.load(std::memory_order_relaxed); }

private:
    friend class LPNonZeroPool;

    static void Changed() {
        s_changes.store(s_changes.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    }
    static std::atomic<uint64_t> s_changes;

    ILPEquation* m_equation = nullptr;
    ILPVariable* m_variable = nullptr;
    double m_coefficient = 0.0;
    double m_partial = 0.0;
    int32_t m_index = 0;
    int32_t m_modelIndex = 0;
    int16_t m_nonlinear = 0;
    bool m_diffed = false;
    bool m_pooled = false;  // made by a pool (not copied: a copy is a heap object)
};
