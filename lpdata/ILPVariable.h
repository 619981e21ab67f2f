// A column of the model: bounds, type, value and basis status.
#pragma once

#include <cstdint>
#include <ostream>

#include "lpdata/ZEMTypes.h"

class ILPVariable {
public:
    virtual ~ILPVariable() = default;
    virtual void SetIndex(int index) = 0;
    virtual int GetIndex() const = 0;
    virtual void SetName(const char* name) = 0;
    virtual const char* GetName() const = 0;
    virtual void SetDescription(const char* text) = 0;
    virtual const char* GetDescription() const = 0;
    virtual void SetBoundUpper(double v) = 0;
    virtual double GetBoundUpper() const = 0;
    virtual void SetBoundLower(double v) = 0;
    virtual double GetBoundLower() const = 0;
    virtual void SetStepBound(double v) = 0;
    virtual double GetStepBound() const = 0;
    virtual void SetTempBoundLower(double v) = 0;
    virtual double GetTempBoundLower() const = 0;
    virtual void SetSampleBoundUpper(double v) = 0;
    virtual double GetSampleBoundUpper() const = 0;
    virtual void SetSampleBoundLower(double v) = 0;
    virtual double GetSampleBoundLower() const = 0;
    virtual void SetRelaxedBoundUpper(double v) = 0;
    virtual double GetRelaxedBoundUpper() const = 0;
    virtual void SetRelaxedBoundLower(double v) = 0;
    virtual double GetRelaxedBoundLower() const = 0;
    virtual void SetVarType(int16_t type) = 0;
    virtual int16_t GetVarType() const = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void SetVarValue(double v) = 0;
    virtual double GetVarValue() const = 0;
    virtual void SetVarShadowPrice(double v) = 0;
    virtual double GetVarShadowPrice() const = 0;
    virtual void SetBaseValue(double v) = 0;
    virtual double GetBaseValue() const = 0;
    virtual void SetPersistentValue(double v) = 0;
    virtual double GetPersistentValue() const = 0;
    virtual void SetVarStatus(int16_t status) = 0;
    virtual int16_t GetVarStatus() const = 0;
    virtual void SetNumberNZ(int n) = 0;
    virtual int GetNumberNZ() const = 0;
    virtual void SetModelIndex(int index) = 0;
    virtual int GetModelIndex() const = 0;
    virtual void IncrNonlinear() = 0;
    virtual void DecrNonlinear() = 0;
    virtual int GetNonlinear() const = 0;
    virtual void SetNonlinear(int n) = 0;
    virtual void SetComplementarityTarget(ILPVariable* partner) = 0;
    virtual ILPVariable* GetComplementarityTarget() const = 0;
    // Writes one line per differing field to `os` and returns -1 when any
    // difference was found, else 0. mode 3 labels the sides "old MG" and
    // "zem MG" and applies that mode's exemptions; checkValues compares the
    // values and base values, checkPersistent the persistent values,
    // shortForm selects the short "VIOLATED" endings; nz1 and nz2 are the
    // column counts of the two models.
    virtual int Compare(ILPVariable* other, std::ostream& os, int mode, bool checkValues,
                        bool checkPersistent, bool shortForm, double tolerance, int nz1,
                        int nz2) = 0;
    virtual bool BeenDiffed() const = 0;
    virtual void SetDiffed(bool diffed) = 0;
    virtual int GetBlkMember() const = 0;
    virtual void SetBlkMember(int block) = 0;
    virtual void PopulateVarIterStruct(tVarIterDataStruct& rec) const = 0;
};
