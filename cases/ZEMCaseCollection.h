// CZEMCaseCollection: every case of one model, found by number or by name,
// applied and taken back by the collection, and saved to and read from the
// XLM case file.
//
//   CZEMCaseCollection cases(mgr);                 // takes a model reference
//   IZEMCaseMgr* c = cases.CreateNewCaseMgr(1, "HIGHDEMAND", "demand +10%");
//   c->AddEqnRHSEdit("DEMAND", 110.0);
//   cases.AddCaseMgr(c);                           // the collection owns it
//   cases.ApplyCase("HIGHDEMAND");                 // 0; -1 for an unknown case
//   cases.UnApplyCaseNumber(1);                    // undo, then reset values
//   cases.PersistXLMAsFile("plant.xlm");
//
// Made from a model, the collection takes the model's dimension and title
// (its name) and saves every variable's value; after each undo it puts those
// values back (ResetInitialValues), each clamped into the variable's current
// bounds when the bounds are ordered.
//
// Case file (little-endian): a 160-byte header
//   0 version (double, always 2008.1)   8 number of cases (int32)
//   12 variables  16 equations  20 nonzeros (int32 each: the dimension held)
//   24 collection name (129 bytes, NUL-terminated)   153 padding (7)
// then each case's record and its edits' records (ZEMCaseMgr.h, ZEMEdit.h).
//
// Reading: a header shorter than 160 bytes throws ZEM_Exception ("CZEMCaseCollection
// Error", "Error during read of XLMFile Header from binary stream",
// "CZEMCaseCollection::RestoreFromStream"); a version other than 2008.1
// returns -1 and reads nothing more. A header whose dimension differs from
// the model's, a negative case count or a name without its terminator throw
// too. Cases are added as each is read whole, so after a fault in a case the
// collection keeps the cases read before it.
#pragma once

#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "cases/IZEMCaseMgr.h"

class CZEMCaseCollection {
public:
    static constexpr double kVersion = 2008.1;
    static constexpr size_t kHeaderSize = 160;
    static constexpr size_t kNameField = 129;

    CZEMCaseCollection();
    explicit CZEMCaseCollection(IZEMMgr* mgr);
    CZEMCaseCollection(IZEMMgr* mgr, IORVA_Control* control);
    virtual ~CZEMCaseCollection();
    CZEMCaseCollection(const CZEMCaseCollection&) = delete;
    CZEMCaseCollection& operator=(const CZEMCaseCollection&) = delete;

    // A new case for this collection's model (not added); null without a model.
    IZEMCaseMgr* CreateNewCaseMgr(int number, const char* name, const char* description);
    // Takes ownership and enters the case in both maps; a number or a name
    // already entered keeps pointing at the case entered first.
    void AddCaseMgr(IZEMCaseMgr* c);
    IZEMCaseMgr* GetCaseByIndex(int number);
    IZEMCaseMgr* GetCaseByName(const char* name);
    const std::vector<IZEMCaseMgr*>* CaseListPtr() const { return &m_cases; }
    int NumberOfCases() const { return static_cast<int>(m_cases.size()); }

    // -1 when there is no such case, else 0 after the case's operation.
    int ApplyCase(const char* name);
    int ApplyCaseNumber(int number);
    int UnApplyCase(const char* name);
    int UnApplyCaseNumber(int number);
    int ApplyCaseNumberSettings(int number);

    int PersistXLMAsFile(const char* path);
    int PersistXLMAsStream(std::stringstream* ss);
    int RestoreXLMFile(const char* path);
    int RestoreXLMStream(std::stringstream* ss);

    void Display(std::ostream& os);
    void ResetInitialValues();
    // True when the collection has a model whose dimension is still the one
    // held (so the saved values and the file's indices fit it).
    bool VerifyZEMObject();
    void Destroy() { delete this; }

    const std::string& GetName() const { return m_name; }
    void GetModelDimension(int& n, int& m, int& nz) const;
    IZEMMgr* GetZEMMgr() const { return m_mgr; }

protected:
    virtual int PreApplyOperations() { return 0; }
    virtual int PostApplyOperations() { return 0; }
    virtual int PreUnApplyOperations() { return 0; }
    virtual int PostUnApplyOperations();

private:
    // The case's Apply / UnApply between their hooks; -1 for a null case.
    int ApplyOne(IZEMCaseMgr* c);
    int UnApplyOne(IZEMCaseMgr* c);

    IZEMMgr* m_mgr = nullptr;
    IORVA_Control* m_control = nullptr;
    std::vector<IZEMCaseMgr*> m_cases;
    std::map<int, IZEMCaseMgr*> m_byNumber;
    std::unordered_map<std::string, IZEMCaseMgr*> m_byName;
    std::string m_name;
    int m_dimension[3] = {0, 0, 0};
    std::vector<double> m_initialValues;
    bool m_resetAfterUndo = false;
};
