// The container of one linear model: title, variable list, equation list,
// matrix over the two lists, and special-ordered-set list, created in that
// order by the constructor and released by the destructor.
//
// InsertMatrixEntry refuses a row or column name that is not in its list.
// The model file operations (PersistAs*, RestoreFrom*) are served by the
// model manager; this container refuses them.
#pragma once

#include <string>

#include "lpdata/ILPStdDataMgr.h"

class LPEquationList;
class LPMatrix;
class LPSpOrdSetList;
class LPVariableList;

class LPStdDataMgr : public ILPStdDataMgr {
public:
    LPStdDataMgr();
    LPStdDataMgr(const LPStdDataMgr&) = delete;
    LPStdDataMgr& operator=(const LPStdDataMgr&) = delete;
    ~LPStdDataMgr() override;

    void SetModelTitle(const char* title) override { m_title = title ? title : ""; }
    void GetModelTitle(std::string& title) override { title = m_title; }
    void ModelDimension(int& n, int& m, int& nz) override;
    void GetVariableCollectionIntf(ILPVariableList** out) override;
    void GetEquationCollectionIntf(ILPEquationList** out) override;
    void GetMatrixIntf(ILPMatrix** out) override;
    void GetSpOrdSetCollectionIntf(ILPSpOrdSetList** out) override;
    void IncludeObjectiveInMatrix() override { m_objectiveInMatrix = true; }
    bool MatrixIncludesObjective() override { return m_objectiveInMatrix; }
    // Remove the entity's nonzeros, its set memberships (variables) and the
    // entity itself; an unknown name or null changes nothing.
    void RemoveVariable(const char* name) override;
    void RemoveVariable(ILPVariable* var) override;
    void RemoveEquation(const char* name) override;
    void RemoveEquation(ILPEquation* eqn) override;
    void ProcessFullCollection() override;
    // Gives every equation its current index as its model index.
    void ReIndexConnectionEqn() override;
    void Destroy() override { delete this; }
    void Display(std::ostream& os) override;
    void DisplayHeading(std::ostream& os) override;
    void DisplayByRow(std::ostream& os) override;
    void DisplayByColumn(std::ostream& os) override;
    void AlgebraicDisplay(std::ostream& os) override;
    void AlgebraicDisplayXLR(std::ostream& os) override;
    void SetValuesInitialized(bool v) override { m_valuesInitialized = v; }
    bool GetValuesInitialized() override { return m_valuesInitialized; }
    void PersistAsFile(const char* path) override;
    void PersistAsFile(const char* path, double version) override;
    void PersistAsStream(std::stringstream* ss) override;
    void PersistAsStream(std::stringstream* ss, double version) override;
    bool RestoreFromFile(const char* path) override;
    void RestoreFromStream(std::istream* is) override;
    void InsertMatrixEntry(const char* row, const char* col, double value,
                           ILPNonZero** result) override;

protected:
    // Removes every equation without nonzeros (the objective included) in
    // one batch, renumbering the rest once.
    void RemoveEmptyEquations() override;

private:
    // The model file is written and read through the same frame as the model
    // manager's; this container has no nonlinear terms, options or named
    // collections, so its files carry none (and collections read are dropped).
    void WriteModelFile(std::ostream* os, double version, const char* routine);
    // Empties the model, keeping the title: a restore replaces the content.
    void Clear();

    std::string m_title = "ZEMMODEL";
    LPVariableList* m_vars;
    LPEquationList* m_eqns;
    LPMatrix* m_matrix;
    LPSpOrdSetList* m_sets;
    bool m_objectiveInMatrix = false;
    bool m_valuesInitialized = true;
};
