// The container of one linear model: title, variables, equations, matrix and
// special ordered sets. Readers fill it; writers and the model manager read
// it. Made by CreateLPStdDataObject and released with Destroy.
#pragma once

#include <istream>
#include <ostream>
#include <sstream>
#include <string>

class ILPEquation;
class ILPEquationList;
class ILPMatrix;
class ILPNonZero;
class ILPSpOrdSetList;
class ILPVariable;
class ILPVariableList;

class ILPStdDataMgr {
public:
    virtual ~ILPStdDataMgr() = default;
    virtual void SetModelTitle(const char* title) = 0;
    virtual void GetModelTitle(std::string& title) = 0;
    virtual void ModelDimension(int& n, int& m, int& nz) = 0;
    virtual void GetVariableCollectionIntf(ILPVariableList** out) = 0;
    virtual void GetEquationCollectionIntf(ILPEquationList** out) = 0;
    virtual void GetMatrixIntf(ILPMatrix** out) = 0;
    virtual void GetSpOrdSetCollectionIntf(ILPSpOrdSetList** out) = 0;
    virtual void IncludeObjectiveInMatrix() = 0;
    virtual bool MatrixIncludesObjective() = 0;
    virtual void RemoveVariable(const char* name) = 0;
    virtual void RemoveVariable(ILPVariable* var) = 0;
    virtual void RemoveEquation(const char* name) = 0;
    virtual void RemoveEquation(ILPEquation* eqn) = 0;
    // End-of-read processing: counts, matrix processing, removal of rows
    // without entries, type counts.
    virtual void ProcessFullCollection() = 0;
    virtual void ReIndexConnectionEqn() = 0;
    virtual void Destroy() = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void DisplayHeading(std::ostream& os) = 0;
    virtual void DisplayByRow(std::ostream& os) = 0;
    virtual void DisplayByColumn(std::ostream& os) = 0;
    virtual void AlgebraicDisplay(std::ostream& os) = 0;
    virtual void AlgebraicDisplayXLR(std::ostream& os) = 0;
    virtual void SetValuesInitialized(bool v) = 0;
    virtual bool GetValuesInitialized() = 0;
    virtual void PersistAsFile(const char* path) = 0;
    virtual void PersistAsFile(const char* path, double version) = 0;
    virtual void PersistAsStream(std::stringstream* ss) = 0;
    virtual void PersistAsStream(std::stringstream* ss, double version) = 0;
    virtual bool RestoreFromFile(const char* path) = 0;
    virtual void RestoreFromStream(std::istream* is) = 0;
    virtual void InsertMatrixEntry(const char* row, const char* col, double value,
                                   ILPNonZero** result) = 0;

protected:
    virtual void RemoveEmptyEquations() = 0;
};

// Stores a new, empty linear model in *out (null when it cannot be made).
void CreateLPStdDataObject(ILPStdDataMgr** out);
