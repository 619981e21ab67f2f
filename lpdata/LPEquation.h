// The concrete row. Defaults: equality (type 2), RHS, limits and range 0,
// scale 1.0, residual 1e20. Changing RHS or range re-derives the row limits:
//   >= row: [RHS, RHS + |range|];  <= row: [RHS - |range|, RHS];
//   other types keep their limits.
#pragma once

#include <string>

#include "lpdata/ILPEquation.h"

class LPEquation : public ILPEquation {
public:
    LPEquation() = default;
    LPEquation(const LPEquation& other) = default;
    LPEquation& operator=(const LPEquation& other) = default;
    ~LPEquation() override = default;

    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    void SetName(const char* name) override { m_name = name ? name : ""; }
    const char* GetName() const override { return m_name.c_str(); }
    void SetRange(double v) override;
    double GetRange() const override { return m_range; }
    void SetType(int16_t type) override { m_type = type; }
    int16_t GetType() const override { return m_type; }
    void SetRHS(double v) override;
    double GetRHS() const override { return m_rhs; }
    double GetRHSLo() const override { return m_rhsLower; }
    double GetRHSUp() const override { return m_rhsUpper; }
    void SetRHSLo(double v) override;
    void SetRHSUp(double v) override;
    void SetNumberNZ(int n) override { m_numberNZ = n; }
    int GetNumberNZ() const override { return m_numberNZ; }
    void SetEqnValue(double v) override { m_value = v; }
    void AddEqnValue(double v) override { m_value += v; }
    double GetEqnValue() const override { return m_value; }
    void SetEqnScale(double v) override { m_scale = v; }
    double GetEqnScale() const override { return m_scale; }
    void SetBaseValue(double v) override { m_baseValue = v; }
    double GetBaseValue() const override { return m_baseValue; }
    void SetResidualValue(double v) override { m_residual = v; }
    double GetResidualValue() const override { return m_residual; }
    void SetShadowPrice(double v) override { m_shadowPrice = v; }
    double GetShadowPrice() const override { return m_shadowPrice; }
    void SetInfeasValue(double v) override { m_infeas = v; }
    double GetInfeasValue() const override { return m_infeas; }
    void IncrNonlinear() override { ++m_nonlinear; }
    void DecrNonlinear() override { --m_nonlinear; }
    int GetNonlinear() const override { return m_nonlinear; }
    void Display(std::ostream& os) override;
    void SetModelIndex(int index) override { m_modelIndex = index; }
    int GetModelIndex() const override { return m_modelIndex; }
    int Compare(ILPEquation* other, std::ostream& os, int mode, bool checkValues,
                double tolerance, int nz1, int nz2, bool shortForm) override;
    bool BeenDiffed() const override { return m_diffed; }
    void SetDiffed(bool diffed) override { m_diffed = diffed; }
    int GetBlkMember() const override { return m_blkMember; }
    void SetBlkMember(int block) override { m_blkMember = block; }
    void PopulateEqnIterStruct(tEqnIterDataStruct& rec) const override;

protected:
    void ProcessRangeRHS() override;

private:
    int32_t m_index = 0;
    std::string m_name;
    double m_rhs = 0.0;
    double m_rhsLower = 0.0;
    double m_rhsUpper = 0.0;
    double m_range = 0.0;
    int32_t m_numberNZ = 0;
    int16_t m_type = ZEM_EQN_EQ;
    double m_value = 0.0;
    double m_shadowPrice = 0.0;
    double m_baseValue = 0.0;
    double m_residual = ZEM_INFINITY;
    double m_scale = 1.0;
    double m_infeas = 0.0;
    int32_t m_nonlinear = 0;
    int32_t m_modelIndex = 0;
    bool m_diffed = false;
    int32_t m_blkMember = 0;
};
