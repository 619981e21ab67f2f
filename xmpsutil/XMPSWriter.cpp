#include "xmpsutil/XMPSWriter.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearBlockList.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "xmpsutil/XMPSNumberFormat.h"
#include "xmpsutil/XMPSNumericLocale.h"
#include "xmpsutil/XMPSWriterCheck.h"
#include "xmpsutil/XMPSWriterLine.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"
#include "zemmgr/ZEMOptionTable.h"

namespace {

// A product line is continued with "\" before it reaches this length, well
// inside the 1,023 characters a line may hold.
constexpr int kContinueAt = 900;

double FirstConstant(INonLinearity* term) {
    INLConstant* c = term->FrstNLConst();
    return c != nullptr ? c->GetValue() : 0.0;
}

}  // namespace

XMPSWriter::XMPSWriter() = default;

XMPSWriter::XMPSWriter(IZEMDataMgr* model) : MPSStdWriter(model), m_zem(model) {}

XMPSWriter::~XMPSWriter() = default;

void XMPSWriter::Destroy() { delete this; }

// ---- Entry points ----

void XMPSWriter::WriteMPSFile(const char* path) {
    static const char* const kRoutine = "XMPSWriter::WriteMPSFile";
    if (m_zem == nullptr) {
        throw ZEM_Exception("MPS File Write Error", "No LP Data Object Available", kRoutine,
                            zemsrc::kXmpsUtil, __LINE__);
    }
    // A model the format cannot carry is refused before the file is made.
    xmpscheck::CheckWritable(m_zem, kRoutine);
    OpenMPSFile(path);
    try {
        WriteBody(kRoutine);
        FlushOutput();
        CloseMPSFile();
    } catch (...) {
        // No partial file stays behind.
        CloseMPSFile(true);
        std::remove(path);
        throw;
    }
}

void XMPSWriter::WriteMPSStream(std::stringstream* out) {
    WriteToStream(out, "XMPSWriter::WriteMPSStream");
}

void XMPSWriter::WriteZEMMPSStream(std::stringstream* out) {
    WriteToStream(out, "XMPSWriter::WriteZEMMPSStream");
}

void XMPSWriter::WriteMPSXMLStream(std::stringstream*) {}

void XMPSWriter::WriteToStream(std::stringstream* out, const char* routine) {
    if (m_zem == nullptr) {
        throw ZEM_Exception("MPS Stream Write Error", "No ZEM Object Available", routine,
                            zemsrc::kXmpsUtil, __LINE__);
    }
    if (out == nullptr) {
        throw ZEM_Exception("MPS Stream Write Error", "No stream provided", routine,
                            zemsrc::kXmpsUtil, __LINE__);
    }
    xmpscheck::CheckWritable(m_zem, routine);
    AttachOutput(out);
    try {
        WriteBody(routine);
        FlushOutput();
    } catch (...) {
        FlushOutput();
        AttachOutput(nullptr);
        throw;
    }
    const bool failed = m_writeFailed;
    AttachOutput(nullptr);
    if (failed) {
        throw ZEM_ExcpFileError(eFileWriteError, " ", "", routine, zemsrc::kXmpsUtil, __LINE__);
    }
}

void XMPSWriter::WriteBody(const char*) {
    m_rowLetter = 'E';
    m_xlinearHeaderWritten = false;
    m_nonlinearHeaderWritten = false;
    ILPVariableList* vars = nullptr;
    m_zem->GetVariableCollectionIntf(&vars);
    const size_t slots = static_cast<size_t>(vars != nullptr ? vars->NumberOfVariables() : 0) + 1;
    m_named.assign(slots, 0);
    m_valueAfterBounds.assign(slots, 1.0);
    m_statusAfterBounds.assign(slots, ZEM_STATUS_BASIC);

    WriteXMPSHeader();
    WriteXLINEARData();
    WriteNONLINEARData();
    WriteRHSData();
    WriteRANGESData();
    WriteBOUNDSData();
    WriteSETSData();
    WriteTEMPBOUNDSData();
    WriteINITIALData();
    WriteVARGROUPSData();
    WriteXOPTIONData();
    WriteCOMPLEMENTData();
    WriteEXTERNMDLSData();
    ENDATACard();
    WriteXMPSFooter();
}

// ---- Output ----
//
// Lines are gathered in a large buffer and handed to the file or stream in
// blocks, which costs far less than one write per line.

void XMPSWriter::EmitLine(const char* text, size_t n) {
    ++m_lineCount;
    m_output.append(text, n);
    m_output.push_back('\n');
    if (m_output.size() >= kOutputBlock) FlushOutput();
}

void XMPSWriter::FlushOutput() {
    if (m_output.empty()) return;
    if (m_file != nullptr) {
        if (std::fwrite(m_output.data(), 1, m_output.size(), m_file) != m_output.size()) {
            m_writeFailed = true;
        }
    } else if (m_stream != nullptr) {
        m_stream->write(m_output.data(), static_cast<std::streamsize>(m_output.size()));
        if (!*m_stream) m_writeFailed = true;
    }
    m_output.clear();
}

// The sections are written by WriteBody, in their fixed order.
void XMPSWriter::ProcessExtendedSections() {}

// ---- Helpers ----

char XMPSWriter::RowLetter(const ILPEquation* eqn) {
    switch (eqn != nullptr ? eqn->GetType() : 0) {
        case ZEM_EQN_OBJECTIVE:
        case ZEM_EQN_FREE: m_rowLetter = 'N'; break;
        case ZEM_EQN_EQ: m_rowLetter = 'E'; break;
        case ZEM_EQN_LE: m_rowLetter = 'L'; break;
        case ZEM_EQN_GE: m_rowLetter = 'G'; break;
        default: break;
    }
    return m_rowLetter;
}

void XMPSWriter::MarkNamed(const ILPVariable* var) {
    const int i = var->GetIndex();
    if (i > 0 && static_cast<size_t>(i) < m_named.size()) m_named[static_cast<size_t>(i)] = 1;
}

bool XMPSWriter::IsNamed(const ILPVariable* var) const {
    const int i = var->GetIndex();
    return i > 0 && static_cast<size_t>(i) < m_named.size() && m_named[static_cast<size_t>(i)] != 0;
}

// ---- Header and footer ----

void XMPSWriter::WriteXMPSHeader() {
    Line(*this).text("<zemblockpersist").text(" type=\"XMPS\" version=\"7.2\">").put();
    HeaderLine("<zemXMPS>");
    std::string title;
    m_zem->GetModelTitle(title);
    Line(*this).text("NAME").ch(' ').text(title.c_str(), title.size()).put();
    HeaderLine("XTNDFMT");
}

void XMPSWriter::WriteXMPSFooter() {
    HeaderLine("</zemXMPS>");
    HeaderLine("</zemblockpersist>");
}

void XMPSWriter::HeaderLine(const char* keyword) { Line(*this).text(keyword).put(); }

void XMPSWriter::RHSCard() { HeaderLine("RHS"); }
void XMPSWriter::RANGESCard() { HeaderLine("RANGES"); }
void XMPSWriter::BOUNDSCard() { HeaderLine("BOUNDS"); }
void XMPSWriter::SETSCard() { HeaderLine("SETS"); }
void XMPSWriter::ENDATACard() { HeaderLine("ENDATA"); }

void XMPSWriter::XLINEARCard() { HeaderLine("XLINEAR"); }
void XMPSWriter::NONLINEARCard() { HeaderLine("NONLINEAR"); }
void XMPSWriter::TEMPBOUNDSCard() { HeaderLine("TEMPBOUNDS"); }
void XMPSWriter::INITIALCard() { HeaderLine("INITIAL"); }
void XMPSWriter::VARGROUPSCard() { HeaderLine("VARGROUPS"); }
void XMPSWriter::EXTERNMDLSCard() { HeaderLine("EXTERNMDLS"); }

// ---- XLINEAR and NONLINEAR ----
//
// The reader refuses an XLINEAR or NONLINEAR header without cards, so each
// header is written just before the section's first card.

namespace {

// The first objective row, or null.
const ILPEquation* ObjectiveRow(IZEMDataMgr* zem) {
    ILPEquationList* eqns = nullptr;
    zem->GetEquationCollectionIntf(&eqns);
    if (eqns == nullptr) return nullptr;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        if (e->GetType() == ZEM_EQN_OBJECTIVE) return e;
    }
    return nullptr;
}

}  // namespace

void XMPSWriter::WriteCoefficientCard(ILPNonZero* nz) {
    if (!m_xlinearHeaderWritten) {
        XLINEARCard();
        m_xlinearHeaderWritten = true;
    }
    ILPEquation* eqn = nz->GetEquationPtr();
    ILPVariable* var = nz->GetVariablePtr();
    Line(*this)
        .ch(' ')
        .ch(RowLetter(eqn))
        .blanks(2)
        .left(eqn->GetName(), 16)
        .blanks(2)
        .number(xmpsnum::ShortForm, nz->GetCoefficient(), 13)
        .blanks(2)
        .left(var->GetName(), 16)
        .put();
    MarkNamed(var);
}

void XMPSWriter::WriteProductTerm(INonLinearity* term) {
    if (!m_xlinearHeaderWritten) {
        XLINEARCard();
        m_xlinearHeaderWritten = true;
    }
    ILPEquation* eqn = term->GetEquationPtr();
    Line line(*this);
    line.ch(' ')
        .ch(RowLetter(eqn))
        .blanks(2)
        .left(eqn->GetName(), 16)
        .blanks(2)
        .number(xmpsnum::ShortForm, FirstConstant(term), 13);
    for (ILPVariable* v = term->FrstVar(); v != nullptr; v = term->NextVar()) {
        const int len = static_cast<int>(std::strlen(v->GetName()));
        if (line.length() + 2 + (len > 16 ? len : 16) > kContinueAt) {
            line.text("  \\").put();
            line.blanks(10);
        }
        line.blanks(2).left(v->GetName(), 16);
        MarkNamed(v);
    }
    line.put();
}

void XMPSWriter::WriteXLINEARData() {
    XMPSNumericLocale cLocale;
    ILPMatrix* matrix = nullptr;
    INonLinearModel* nl = nullptr;
    m_zem->GetMatrixIntf(&matrix);
    m_zem->GetNonLinearModelIntf(&nl);
    // The objective first: the first "N" row read becomes the objective.
    const ILPEquation* objective = ObjectiveRow(m_zem);
    if (matrix != nullptr) {
        if (objective != nullptr) {
            // Its entries in row order, which is their order in the matrix:
            // one pass over the entries, without deriving the rows.
            for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz != nullptr; nz = matrix->NextNonZeroObject()) {
                if (nz->GetEquationPtr() == objective && nz->GetCoefficient() != 0.0) WriteCoefficientCard(nz);
            }
        }
        // Column by column, so that the reader adds each column's entries
        // together, as it does for the COLUMNS section of standard MPS. The
        // entries and their rows lie in no particular memory order: they are
        // taken in batches and fetched into the cache ahead of formatting,
        // since waiting on each one would dominate the write.
        constexpr int kBatch = 256;
        ILPNonZero* batch[kBatch];
        ILPNonZero* nz = matrix->FrstNonZeroObjectByColumn();
        while (nz != nullptr) {
            int n = 0;
            for (; nz != nullptr && n < kBatch; nz = matrix->NextNonZeroObjectByColumn()) {
                __builtin_prefetch(nz);
                batch[n++] = nz;
            }
            for (int k = 0; k < n; ++k) {
                // A row object spans a few cache lines (name, type).
                const char* eqn = reinterpret_cast<const char*>(batch[k]->GetEquationPtr());
                __builtin_prefetch(eqn);
                __builtin_prefetch(eqn + 64);
                __builtin_prefetch(eqn + 128);
            }
            for (int k = 0; k < n; ++k) {
                ILPNonZero* entry = batch[k];
                if (entry->GetCoefficient() == 0.0) continue;
                if (entry->GetEquationPtr() == objective) continue;
                WriteCoefficientCard(entry);
            }
        }
    }
    if (nl == nullptr) return;
    for (int pass = 0; pass < 2; ++pass) {
        for (INonLinearity* t = nl->FrstNonLinearityObject(); t != nullptr;
             t = nl->NextNonLinearityObject()) {
            if (!xmpscheck::OnXLinearCard(t)) continue;
            const bool onObjective = t->GetEquationPtr() == objective;
            if (onObjective == (pass == 0)) WriteProductTerm(t);
        }
    }
}

void XMPSWriter::WriteKeywordTerm(INonLinearity* term) {
    if (!m_nonlinearHeaderWritten) {
        NONLINEARCard();
        m_nonlinearHeaderWritten = true;
    }
    ILPEquation* eqn = term->GetEquationPtr();
    const char* keyword = term->GetNonLinearityID();
    char num[xmpsnum::kNumberBufSize];
    Line line(*this);
    line.ch(' ').ch(RowLetter(eqn)).blanks(2).text(eqn->GetName()).blanks(3).text(keyword).ch(' ');
    line.text(num, static_cast<size_t>(xmpsnum::ConstantForm(num, FirstConstant(term))));
    int i = 0;
    for (ILPVariable* v = term->FrstVar(); v != nullptr; v = term->NextVar(), ++i) {
        // Three variables to a line.
        if (i > 0 && i % 3 == 0) {
            line.text("   \\").put();
            line.blanks(10);
        }
        line.blanks(5).text(v->GetName());
        MarkNamed(v);
    }
    // The first constant is the coefficient; the others follow one to a line.
    const int constants = term->NumberOfNLConstants() - 1;
    if (constants <= 0) {
        line.put();
        return;
    }
    line.text("   \\").put();
    INLConstant* c = term->FrstNLConst();
    for (int k = 1; k <= constants; ++k) {
        c = term->NextNLConst();
        const double value = c != nullptr ? c->GetValue() : 0.0;
        line.blanks(14).text(num, static_cast<size_t>(xmpsnum::ConstantForm(num, value)));
        if (k < constants) line.text(" \\");
        line.put();
    }
}

void XMPSWriter::WriteNONLINEARData() {
    XMPSNumericLocale cLocale;
    INonLinearModel* nl = nullptr;
    m_zem->GetNonLinearModelIntf(&nl);
    if (nl == nullptr) return;
    const ILPEquation* objective = ObjectiveRow(m_zem);
    for (int pass = 0; pass < 2; ++pass) {
        for (INonLinearity* t = nl->FrstNonLinearityObject(); t != nullptr;
             t = nl->NextNonLinearityObject()) {
            if (xmpscheck::OnXLinearCard(t)) continue;
            const bool onObjective = t->GetEquationPtr() == objective;
            if (onObjective == (pass == 0)) WriteKeywordTerm(t);
        }
    }
}

// ---- RHS and RANGES ----

void XMPSWriter::WriteRHSData() {
    XMPSNumericLocale cLocale;
    RHSCard();
    ILPEquationList* eqns = nullptr;
    m_zem->GetEquationCollectionIntf(&eqns);
    if (eqns == nullptr) return;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        if (e->GetRHS() == 0.0) continue;
        Line(*this)
            .blanks(4)
            .text("RHS1")
            .blanks(14)
            .left(e->GetName(), 16)
            .blanks(2)
            .number(xmpsnum::ShortForm, e->GetRHS(), 17)
            .put();
    }
}

void XMPSWriter::WriteRANGESData() {
    XMPSNumericLocale cLocale;
    RANGESCard();
    ILPEquationList* eqns = nullptr;
    m_zem->GetEquationCollectionIntf(&eqns);
    if (eqns == nullptr) return;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        if (e->GetRange() == 0.0) continue;
        Line(*this)
            .blanks(4)
            .text("RNG1")
            .blanks(14)
            .left(e->GetName(), 16)
            .blanks(2)
            .number(xmpsnum::ShortForm, e->GetRange(), 17)
            .put();
    }
}

void CreateXMPSWriterObject(XMPSWriter** out, IZEMDataMgr* model) {
    if (out == nullptr) return;
    *out = new (std::nothrow) XMPSWriter(model);
}
