// Reading edit records back: the tables that turn the records' indices into
// the model's objects, and the reader of one record.
//
//   ZEMEditTargets targets = ZEMEditTargets::FromModel(mgr);
//   EditRecordSource source(&stream);
//   IZEMEdit* e = ReadEditRecord(source, targets);   // code, then its fields
//
// A record that is short, has an unknown code, names an index the model does
// not have, a matrix entry that does not exist or a term whose multiplier
// cannot be edited throws ZEM_Exception (category "CZEMCaseMgr Error",
// routine "CZEMCaseMgr::RestoreFromStream"); nothing is made then.
#pragma once

#include <cstddef>
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

// Hands out the bytes of edit records from a stream. On a stream that can
// seek it reads ahead a block at a time and gives back, when it goes, what
// it read beyond the last record taken; on any other stream it reads just
// what each record needs. The stream's state flags are left alone.
class EditRecordSource {
public:
    explicit EditRecordSource(std::istream* is);
    ~EditRecordSource();
    EditRecordSource(const EditRecordSource&) = delete;
    EditRecordSource& operator=(const EditRecordSource&) = delete;
    // The next n bytes, or null when the stream holds fewer.
    const unsigned char* Take(size_t n);

private:
    static constexpr size_t kBlock = 1 << 16;
    std::istream* m_is;
    bool m_seekable = false;
    std::vector<unsigned char> m_buf;
    size_t m_pos = 0;
    size_t m_end = 0;
};

// Reads one record: the code, then its fields.
IZEMEdit* ReadEditRecord(EditRecordSource& source, const ZEMEditTargets& targets);

// The error every case-record and edit-record reader raises.
[[noreturn]] void CaseReadError(const std::string& message);
