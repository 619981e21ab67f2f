// The concrete column. Fields and defaults:
//   value 1.0 (deliberately not 0), bounds [0, 1e20], step bound 2e20,
//   sample and relaxed bounds [-1e20, 1e20], type 1 (continuous),
//   status 2 (basic), every other number 0, no complementarity partner.
#pragma once

#include <memory>
#include <string>

#include "lpdata/ILPVariable.h"

class LPVariable : public ILPVariable {
public:
    LPVariable() = default;
    LPVariable(const LPVariable& other);
    LPVariable& operator=(const LPVariable& other);
    ~LPVariable() override = default;

    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    void SetName(const char* name) override { m_name = name ? name : ""; }
    const char* GetName() const override { return m_name.c_str(); }
    void SetDescription(const char* text) override;
    const char* GetDescription() const override;
    void SetBoundUpper(double v) override { m_upper = v; }
    double GetBoundUpper() const override { return m_upper; }
    void SetBoundLower(double v) override { m_lower = v; }
    double GetBoundLower() const override { return m_lower; }
    void SetStepBound(double v) override { m_stepBound = v; }
    double GetStepBound() const override { return m_stepBound; }
    void SetTempBoundLower(double v) override { m_tempLower = v; }
    double GetTempBoundLower() const override { return m_tempLower; }
    void SetSampleBoundUpper(double v) override { m_sampleUpper = v; }
    double GetSampleBoundUpper() const override { return m_sampleUpper; }
    void SetSampleBoundLower(double v) override { m_sampleLower = v; }
    double GetSampleBoundLower() const override { return m_sampleLower; }
    void SetRelaxedBoundUpper(double v) override { m_relaxedUpper = v; }
    double GetRelaxedBoundUpper() const override { return m_relaxedUpper; }
    void SetRelaxedBoundLower(double v) override { m_relaxedLower = v; }
    double GetRelaxedBoundLower() const override { return m_relaxedLower; }
    void SetVarType(int16_t type) override { m_type = type; }
    int16_t GetVarType() const override { return m_type; }
    void Display(std::ostream& os) override;
    void SetVarValue(double v) override { m_value = v; }
    double GetVarValue() const override { return m_value; }
    void SetVarShadowPrice(double v) override { m_shadowPrice = v; }
    double GetVarShadowPrice() const override { return m_shadowPrice; }
    void SetBaseValue(double v) override { m_baseValue = v; }
    double GetBaseValue() const override { return m_baseValue; }
    void SetPersistentValue(double v) override { m_persistentValue = v; }
    double GetPersistentValue() const override { return m_persistentValue; }
    void SetVarStatus(int16_t status) override { m_status = status; }
    int16_t GetVarStatus() const override { return m_status; }
    void SetNumberNZ(int n) override { m_numberNZ = n; }
    int GetNumberNZ() const override { return m_numberNZ; }
    void SetModelIndex(int index) override { m_modelIndex = index; }
    int GetModelIndex() const override { return m_modelIndex; }
    void IncrNonlinear() override { ++m_nonlinear; }
    void DecrNonlinear() override { --m_nonlinear; }
    int GetNonlinear() const override { return m_nonlinear; }
    void SetNonlinear(int n) override { m_nonlinear = n; }
    void SetComplementarityTarget(ILPVariable* partner) override { m_complement = partner; }
    ILPVariable* GetComplementarityTarget() const override { return m_complement; }
    int Compare(ILPVariable* other, std::ostream& os, int mode, bool checkValues,
                bool checkPersistent, bool shortForm, double tolerance, int nz1,
                int nz2) override;
    bool BeenDiffed() const override { return m_diffed; }
    void SetDiffed(bool diffed) override { m_diffed = diffed; }
    int GetBlkMember() const override { return m_blkMember; }
    void SetBlkMember(int block) override { m_blkMember = block; }
    void PopulateVarIterStruct(tVarIterDataStruct& rec) const override;

private:
    int32_t m_index = 0;
    std::string m_name;
    std::unique_ptr<std::string> m_description;  // rarely set: kept out of line
    double m_value = 1.0;
    double m_baseValue = 0.0;
    double m_persistentValue = 0.0;
    double m_shadowPrice = 0.0;
    double m_upper = ZEM_INFINITY;
    double m_lower = 0.0;
    double m_stepBound = ZEM_STEP_BOUND_DEFAULT;
    double m_tempLower = 0.0;
    double m_sampleUpper = ZEM_INFINITY;
    double m_sampleLower = -ZEM_INFINITY;
    double m_relaxedUpper = ZEM_INFINITY;
    double m_relaxedLower = -ZEM_INFINITY;
    int32_t m_numberNZ = 0;
    int16_t m_type = ZEM_VAR_CONTINUOUS;
    int16_t m_status = ZEM_STATUS_BASIC;
    int32_t m_modelIndex = 0;
    int32_t m_nonlinear = 0;
    ILPVariable* m_complement = nullptr;
    bool m_diffed = false;
    int32_t m_blkMember = 0;
};
