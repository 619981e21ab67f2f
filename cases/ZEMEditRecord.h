// Reading edit records back: the tables that turn the records' indices into
// the model's objects, and the reader of one record.
//
//   ZEMEditTargets targets = ZEMEditTargets::FromModel(mgr);
//   IZEMEdit* e = ReadEditRecord(&stream, targets);   // code, then its fields
//
// A record that is short, has an unknown code, names an index the model does
// not have, a matrix entry that does not exist or a term whose multiplier
// cannot be edited throws ZEM_Exception (category "CZEMCaseMgr Error",
// routine "CZEMCaseMgr::RestoreFromStream"); nothing is made then.
#pragma once

#include <istream>
#include <string>
#include <vector>

class IZEMEdit;
class IZEMMgr;
class ILPEquation;
class ILPMatrix;
class ILPNonZero;
class ILPVariable;
class INonLinearity;

struct ZEMEditTargets {
    IZEMMgr* mgr = nullptr;
    ILPMatrix* matrix = nullptr;
    // Each object at its own index; entries without an object are null.
    std::vector<ILPVariable*> vars;
    std::vector<ILPEquation*> eqns;
    std::vector<INonLinearity*> terms;

    static ZEMEditTargets FromModel(IZEMMgr* mgr);
};

// The matrix entry of the row and the column, or null. Short columns are
// walked comparing the entries' row pointers, which spares a visit to every
// row object; long ones use the matrix's own index.
ILPNonZero* FindMatrixEntry(ILPMatrix* matrix, ILPEquation* row, ILPVariable* col);

IZEMEdit* ReadEditRecord(std::istream* is, const ZEMEditTargets& targets);

// The error every case-record and edit-record reader raises.
[[noreturn]] void CaseReadError(const std::string& message);
