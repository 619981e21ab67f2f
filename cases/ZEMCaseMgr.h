// CZEMCaseMgr: the case of IZEMCaseMgr.h, with its record in the case file.
//
// Case record (268 bytes, little-endian), followed by its edits' records in
// list order (see ZEMEdit.h):
//   0 case number (int32)   4 name (129 bytes, NUL-terminated, at most 128
//   characters)   133 description (129 bytes, likewise)   262 padding (2)
//   264 number of edits (int32)
#pragma once

#include <deque>
#include <istream>
#include <vector>

#include "cases/IZEMCaseMgr.h"

struct ZEMEditTargets;

class CZEMCaseMgr : public IZEMCaseMgr {
public:
    static constexpr size_t kTextField = 129;
    static constexpr size_t kRecordSize = 268;

    CZEMCaseMgr(int number, const char* name, const char* description, IZEMMgr* mgr);
    CZEMCaseMgr(int number, const char* name, const char* description, IZEMMgr* mgr,
                IORVA_Control* control);
    ~CZEMCaseMgr() override;
    CZEMCaseMgr(const CZEMCaseMgr&) = delete;
    CZEMCaseMgr& operator=(const CZEMCaseMgr&) = delete;

    int GetCaseNumber() override { return m_number; }
    void SetCaseNumber(int number) override { m_number = number; }
    void SetCaseName(const char* name) override;
    const char* GetCaseName() override { return m_name; }
    void SetCaseDescription(const char* text) override;
    const char* GetCaseDescription() override { return m_description; }
    IZEMMgr* GetZEMMgr() override { return m_mgr; }
    IORVA_Control* GetSolverControl() override { return m_control; }
    const std::vector<IZEMEdit*>* CaseEditListPtr() override { return &m_edits; }

    void AddEqnRHSEdit(ILPEquation* eqn, double value) override;
    void AddEqnRHSEdit(const char* eqn, double value) override;
    void AddEqnRangeEdit(ILPEquation* eqn, double value) override;
    void AddEqnRangeEdit(const char* eqn, double value) override;
    void AddEqnTypeEdit(ILPEquation* eqn, int16_t type) override;
    void AddEqnTypeEdit(const char* eqn, int16_t type) override;
    void AddVarValueEdit(ILPVariable* var, double value) override;
    void AddVarValueEdit(const char* var, double value) override;
    void AddVarBoundEdit(ILPVariable* var, int16_t selector, double value) override;
    void AddVarBoundEdit(const char* var, int16_t selector, double value) override;
    void AddVarTypeEdit(ILPVariable* var, int16_t type) override;
    void AddVarTypeEdit(const char* var, int16_t type) override;
    void AddMatrixCoeffEdit(ILPEquation* eqn, ILPVariable* var, double value) override;
    void AddMatrixCoeffEdit(ILPNonZero* nz, double value) override;
    void AddMatrixCoeffEdit(const char* eqn, const char* var, double value) override;
    void AddMatrixNonLinearityCoeffEdit(INonLinearity* term, double value) override;
    void AddOptionTableEdit(const char* name, const char* value) override;
    void AddInitialVectorEdits(const double* values) override;
    void AddZEMEditOp(IZEMEdit* edit) override;

    void Apply() override;
    void UnApply() override;
    void ApplySettings() override;
    void Display(std::ostream& os) override;
    int PersistAsStream(std::stringstream* ss) override;
    void Destroy() override { delete this; }

    bool Applied() const { return m_applied; }
    size_t AppliedCount() const { return m_appliedStack.size(); }

    // Reads one case record and its edits, resolving the edits' indices
    // through `targets`, and stores the new case in *out; returns 0. A short
    // or malformed record throws ZEM_Exception (category "CZEMCaseMgr
    // Error"); nothing is made then.
    static int RestoreFromStream(std::istream* is, IZEMMgr* mgr, IORVA_Control* control,
                                 const ZEMEditTargets& targets, IZEMCaseMgr** out);

private:
    ILPVariable* Var(const char* name);
    ILPEquation* Eqn(const char* name);
    // Appends a new edit, or throws for a null target.
    template <class E, class T, class... A>
    void Add(T* target, const char* what, A... args);

    int m_number;
    char m_name[kTextField] = {};
    char m_description[kTextField] = {};
    IZEMMgr* m_mgr;
    IORVA_Control* m_control;
    std::vector<IZEMEdit*> m_edits;
    // Edits given by AddZEMEditOp that are not the library's own kinds.
    size_t m_foreign = 0;
    std::deque<IZEMEdit*> m_appliedStack;
    bool m_applied = false;
};
