// The model builder companion of ZEMMgr. See IZEMModelBuilder.h.
#pragma once

#include "zemmgr/IZEMModelBuilder.h"

class ILPEquationList;
class ILPMatrix;
class ILPSpOrdSetList;
class ILPVariableList;
class INonLinearModel;
class IZEMDataMgr;

class ZEMModelBuilder : public IZEMModelBuilder {
public:
    explicit ZEMModelBuilder(IZEMDataMgr* mgr);
    ~ZEMModelBuilder() override = default;

    void MakeAddVariable(const char* name) override;
    void MakeAddReturnVariable(const char* name, ILPVariable** out) override;
    void MakeAddVariableNew(const char* name, double lower, double upper, double value,
                            int16_t type) override;
    void MakeAddReturnVariableNew(const char* name, double lower, double upper, double value,
                                  int16_t type, ILPVariable** out) override;
    void MakeAddEquation(const char* name) override;
    void MakeAddReturnEquation(const char* name, ILPEquation** out) override;
    void MakeAddEquationNew(const char* name, int16_t type, double rhs, double range) override;
    void MakeAddReturnEquationNew(const char* name, int16_t type, double rhs, double range,
                                  ILPEquation** out) override;
    void MakeAddLinearNonZero(const char* eqnName, const char* varName, double coef) override;
    void MakeAddReturnLinearNonZero(const char* eqnName, const char* varName, double coef,
                                    ILPNonZero** out) override;
    void MakeAddLinearNonZeroNew(ILPEquation* eqn, ILPVariable* var, double coef) override;
    void MakeAddReturnLinearNonZeroNew(ILPEquation* eqn, ILPVariable* var, double coef,
                                       ILPNonZero** out) override;
    void MakeNonLinearityByName(const char* name, ILPEquation* eqn, INonLinearity** out) override;
    void MakeNonLinearityByCode(int16_t code, ILPEquation* eqn, INonLinearity** out) override;
    int AddNonLinearity(INonLinearity* term) override;
    void MakeNonLinearityFast(int16_t code, ILPEquation* eqn, int nVars, ILPVariable** vars,
                              int nConsts, const double* consts, INonLinearity** out) override;
    void MakeNonLinearityLog(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                             const double* consts, INonLinearity** out) override;
    void MakeNonLinearityExp(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                             const double* consts, INonLinearity** out) override;
    void MakeNonLinearityPow(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                             const double* consts, INonLinearity** out) override;
    void MakeNonLinearityDivision(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                                  const double* consts, INonLinearity** out) override;
    void MakeNonLinearityEVAPGDOT(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                                  const double* consts, INonLinearity** out) override;
    void MakeNonLinearityXPow(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                              const double* consts, INonLinearity** out) override;
    void MakeNonLinearityEI(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                            const double* consts, INonLinearity** out) override;
    void MakeNonLinearityTPercent(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                                  const double* consts, INonLinearity** out) override;
    void MakeNonLinearityFastQCL(const char* id, ILPEquation* eqn, int nVars, ILPVariable** vars,
                                 int nConsts, const double* consts, INonLinearity** out) override;
    void MakeNonLinearityFastNLE(const char* id, const char* text1, const char* text2,
                                 ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                                 const double* consts, INonLinearity** out) override;
    void MakeNonLinearityFastSCD(const char* id, ILPEquation* eqn, int nVars, ILPVariable** vars,
                                 int nConsts, const double* consts, INonLinearity** out) override;
    void MakeNonLinearityFLTQB(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                               const double* consts, INonLinearity** out) override;
    void MakeSpecialOrderedSet(const char* name, int16_t type, int nVars, ILPVariable** vars,
                               ILPSpOrdSet** out) override;
    void MakeNonLinearityFastWRAP(const char* id, ILPEquation* eqn, int nVars, ILPVariable** vars,
                                  int nConsts, const double* consts,
                                  INonLinearity** out) override;
    void EliminateVariable(ILPVariable* var) override;
    bool EliminateVariableByName(const char* name) override;
    void EliminateEquation(ILPEquation* eqn) override;
    bool EliminateEquationByName(const char* name) override;
    void AddSoftBounds(ILPVariable* var, double relaxedLower, double relaxedUpper) override;
    int AddSpecialOrderedSetVariable(ILPSpOrdSet* set, ILPVariable* var) override;
    int AddSpecialOrderedSetVariableByName(ILPSpOrdSet* set, const char* varName) override;
    void FindSpecialOrderedSet(const char* name, ILPSpOrdSet** out) override;
    int AddNonLinearityValue(INonLinearity* term, double value) override;
    int AddNonLinearityVariable(INonLinearity* term, ILPVariable* var) override;
    int AddNonLinearityVariableByName(INonLinearity* term, const char* varName) override;
    void TrashNonLinearity(INonLinearity* term) override;
    void EmptyNonLinearityTrash() override;

private:
    // The texts one maker reports when it fails.
    struct MakerTexts {
        const char* maker;    // begins the message
        const char* routine;  // the function text
    };
    // Gives a new term its row, arguments and constants and puts it in the
    // pool; a term that cannot be made or placed is destroyed and reported.
    void Complete(const MakerTexts& texts, INonLinearity* term, ILPEquation* eqn, int nVars,
                  ILPVariable** vars, int nConsts, const double* consts, INonLinearity** out);
    void MakeByCode(const MakerTexts& texts, int16_t code, ILPEquation* eqn, int nVars,
                    ILPVariable** vars, int nConsts, const double* consts, INonLinearity** out);

    IZEMDataMgr* m_mgr;
    ILPVariableList* m_vars = nullptr;
    ILPEquationList* m_eqns = nullptr;
    ILPMatrix* m_matrix = nullptr;
    ILPSpOrdSetList* m_sets = nullptr;
    INonLinearModel* m_nonlinear = nullptr;
};
