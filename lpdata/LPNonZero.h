// The concrete matrix entry. Its row and column numbers are read through the
// equation and variable it points to.
#pragma once

#include "lpdata/ILPNonZero.h"

class LPNonZero : public ILPNonZero {
public:
    LPNonZero() = default;
    LPNonZero(const LPNonZero& other) = default;
    LPNonZero& operator=(const LPNonZero& other) = default;
    ~LPNonZero() override = default;

    void Destroy() override { delete this; }
    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    void GetCoordinates(int& row, int& col) const override;
    int GetEquationIdx() const override;
    int GetVariableIdx() const override;
    void SetEquationPtr(ILPEquation* eqn) override { m_equation = eqn; }
    ILPEquation* GetEquationPtr() const override { return m_equation; }
    void SetVariablePtr(ILPVariable* var) override { m_variable = var; }
    ILPVariable* GetVariablePtr() const override { return m_variable; }
    void SetCoefficient(double v) override { m_coefficient = v; }
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

private:
    int32_t m_index = 0;
    int32_t m_modelIndex = 0;
    ILPEquation* m_equation = nullptr;
    ILPVariable* m_variable = nullptr;
    double m_coefficient = 0.0;
    double m_partial = 0.0;
    int16_t m_nonlinear = 0;
    bool m_diffed = false;
};
