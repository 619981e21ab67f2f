// Saving and restoring a linear model through the model file.
#include <fstream>

#include "lpdata/LPEquationList.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPSpOrdSet.h"
#include "lpdata/LPStdDataMgr.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/ZEMModelFile.h"

namespace {

ZEMModelContent Content(ILPVariableList* vars, ILPEquationList* eqns, ILPMatrix* matrix,
                        ILPSpOrdSetList* sets) {
    ZEMModelContent content;
    content.vars = vars;
    content.eqns = eqns;
    content.matrix = matrix;
    content.sets = sets;
    return content;
}

}  // namespace

void LPStdDataMgr::WriteModelFile(std::ostream* os, double version, const char* routine) {
    ZEMModelState state;
    state.title = m_title;
    state.matrixIncludesObjective = m_objectiveInMatrix;
    state.valuesInitialized = m_valuesInitialized;
    ZEMModelFile::Write(os, version, state, Content(m_vars, m_eqns, m_matrix, m_sets), {},
                        routine);
}

void LPStdDataMgr::PersistAsFile(const char* path) {
    PersistAsFile(path, ZEMModelFile::kCurrentVersion);
}

void LPStdDataMgr::PersistAsFile(const char* path, double version) {
    static const char* const kRoutine = "LPStdDataMgr::PersistAsFile";
    // Refuse before the file is created, so a refused save writes nothing.
    ZEMModelState state;
    state.title = m_title;
    ZEMModelFile::CheckWritable(state, Content(m_vars, m_eqns, m_matrix, m_sets), {}, kRoutine,
                                "LPStdDataMgr Error", zemsrc::kLpData);
    ZEMModelFile::WriteToPath(path, kRoutine, zemsrc::kLpData, [&](std::ofstream* os) {
        WriteModelFile(os, version, kRoutine);
    });
}

void LPStdDataMgr::PersistAsStream(std::stringstream* ss) {
    PersistAsStream(ss, ZEMModelFile::kCurrentVersion);
}

void LPStdDataMgr::PersistAsStream(std::stringstream* ss, double version) {
    WriteModelFile(ss, version, "LPStdDataMgr::PersistAsStream");
}

bool LPStdDataMgr::RestoreFromFile(const char* path) {
    std::ifstream in(path ? path : "", std::ios::in | std::ios::binary);
    if (in.fail() || in.bad()) return false;
    RestoreFromStream(&in);
    return true;
}

void LPStdDataMgr::Clear() {
    delete m_sets;
    m_matrix->Destroy();
    m_eqns->Destroy();
    m_vars->Destroy();
    m_vars = new LPVariableList();
    m_eqns = new LPEquationList();
    m_matrix = new LPMatrix(m_vars, m_eqns);
    m_sets = new LPSpOrdSetList();
    m_objectiveInMatrix = false;
    m_valuesInitialized = true;
}

void LPStdDataMgr::RestoreFromStream(std::istream* is) {
    int n = 0, m = 0, nz = 0;
    ModelDimension(n, m, nz);
    if (n > 0 || m > 0 || nz > 0) Clear();
    ZEMModelState state;
    state.title = m_title;
    ZEMModelFile::Read(is, ZEMModelFile::Mode::Replace, Content(m_vars, m_eqns, m_matrix, m_sets),
                       state, "", {});
    m_title = state.title;
    m_objectiveInMatrix = state.matrixIncludesObjective;
    m_valuesInitialized = state.valuesInitialized;
    ProcessFullCollection();
}
