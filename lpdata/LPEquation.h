// The concrete row. Defaults: equality (type 2), RHS, limits and range 0,
// scale 1.0, residual 1e20. Changing RHS or range re-derives the row limits:
//   >= row: [RHS, RHS + |range|];  <= row: [RHS - |range|, RHS];
//   other types keep their limits.
//
// Layout: the object holds what a read or an evaluation sets for every row
// (name, index, RHS and limits, value, residual, type, counts); the range and
// the rarely-set values live in an LPColdBlock made on the first write that
// changes one of them. 96 bytes on x86-64 instead of 152 (a 112-byte heap
// block instead of 160); see LPVariable.h for the measured peak. The residual
// stays here because every evaluation writes it for every row; the range,
// set by RANGES cards only, went out of line in its place.
#pragma once

#include "lpdata/ILPEquation.h"
#include "lpdata/LPColdBlock.h"
#include "lpdata/LPName.h"

class LPEquation : public ILPEquation {
public:
    LPEquation() = default;
    LPEquation(const LPEquation& other) = default;
    LPEquation& operator=(const LPEquation& other) = default;
    ~LPEquation() override = default;

    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    void SetName(const char* name) override { m_name.Assign(name); }
    const char* GetName() const override { return m_name.c_str(); }
    void SetRange(double v) override;
    double GetRange() const override { return m_cold.Get(&Cold::range); }
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
    void SetEqnScale(double v) override { m_cold.Set(&Cold::scale, v); }
    double GetEqnScale() const override { return m_cold.Get(&Cold::scale); }
    void SetBaseValue(double v) override { m_cold.Set(&Cold::baseValue, v); }
    double GetBaseValue() const override { return m_cold.Get(&Cold::baseValue); }
    void SetResidualValue(double v) override { m_residual = v; }
    double GetResidualValue() const override { return m_residual; }
    void SetShadowPrice(double v) override { m_cold.Set(&Cold::shadowPrice, v); }
    double GetShadowPrice() const override { return m_cold.Get(&Cold::shadowPrice); }
    void SetInfeasValue(double v) override { m_cold.Set(&Cold::infeas, v); }
    double GetInfeasValue() const override { return m_cold.Get(&Cold::infeas); }
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
    int GetBlkMember() const override { return m_cold.Get(&Cold::blkMember); }
    void SetBlkMember(int block) override { m_cold.Set(&Cold::blkMember, block); }
    void PopulateEqnIterStruct(tEqnIterDataStruct& rec) const override;

protected:
    void ProcessRangeRHS() override;

private:
    struct Cold {
        double range = 0.0;
        double shadowPrice = 0.0;
        double baseValue = 0.0;
        double scale = 1.0;
        double infeas = 0.0;
        int32_t blkMember = 0;
    };

    LPName m_name;
    double m_rhs = 0.0;
    double m_rhsLower = 0.0;
    double m_rhsUpper = 0.0;
    double m_value = 0.0;
    double m_residual = ZEM_INFINITY;
    LPColdBlock<Cold> m_cold;
    int32_t m_index = 0;
    int32_t m_numberNZ = 0;
    int32_t m_nonlinear = 0;
    int32_t m_modelIndex = 0;
    int16_t m_type = ZEM_EQN_EQ;
    bool m_diffed = false;
};
