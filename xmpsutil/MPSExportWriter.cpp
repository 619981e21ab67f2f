#include "xmpsutil/MPSExportWriter.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMTypes.h"
#include "xmpsutil/MPSExportCheck.h"
#include "xmpsutil/XMPSNumberFormat.h"
#include "zemmgr/IZEMMgr.h"

namespace {

// ROWS keys by equation type; the check lets no other type through.
const char* RowKey(int16_t type) {
    switch (type) {
        case ZEM_EQN_OBJECTIVE: return "N";
        case ZEM_EQN_LE: return "L";
        case ZEM_EQN_GE: return "G";
        default: return "E";
    }
}

bool IsNumberField(int field) { return field == kMPSFieldNumber1 || field == kMPSFieldNumber2; }

}  // namespace

MPSExportWriter::MPSExportWriter(IZEMDataMgr* model, bool freeFormat)
    : MPSStdWriter(model), m_zem(model), m_askedFree(freeFormat) {}

void MPSExportWriter::WriteMPSFile(const char* path) {
    if (m_zem != nullptr) {
        m_free = mpsexport::CheckExportable(m_zem, "MPSExportWriter::WriteMPSFile") || m_askedFree;
    }
    MPSStdWriter::WriteMPSFile(path);
}

void MPSExportWriter::WriteMPSToStream(std::ostream& os) {
    if (m_zem != nullptr) {
        m_free = mpsexport::CheckExportable(m_zem, "MPSExportWriter::WriteMPSToStream") || m_askedFree;
    }
    MPSStdWriter::WriteMPSToStream(os);
}

void MPSExportWriter::WriteMPSDataCard() {
    std::string line = " ";
    for (int f = 0; f < kMPSFieldCount; ++f) {
        const char* text = m_fields[f];
        if (text[0] == '\0') continue;
        if (m_free) {
            if (line.size() > 1) line += ' ';
            line += text;
            continue;
        }
        // Fixed layout: names start at their column, numbers end at their
        // field's last column.
        const size_t start = static_cast<size_t>(m_geometry.start[f]);
        const size_t width = static_cast<size_t>(m_geometry.Width(f));
        const size_t len = std::strlen(text);
        const size_t at = IsNumberField(f) ? start + width - std::min(len, width) : start;
        if (line.size() < at) line.append(at - line.size(), ' ');
        line += text;
    }
    std::snprintf(m_lineBuffer, sizeof m_lineBuffer, "%s", line.c_str());
    PutMPSLine();
    ClearFields();
}

void MPSExportWriter::SetNumber(int field, double value) {
    char text[xmpsnum::kNumberBufSize];
    xmpsnum::ExactForm(text, value);
    SetField(field, text);
}

void MPSExportWriter::AddPair(const char* row, double value) {
    const int nameField = m_pairPending ? kMPSFieldName3 : kMPSFieldName2;
    SetField(nameField, row);
    SetNumber(nameField + 1, value);
    if (m_pairPending) {
        WriteMPSDataCard();
        m_pairPending = false;
    } else {
        m_pairPending = true;
    }
}

void MPSExportWriter::FlushPair() {
    if (m_pairPending) WriteMPSDataCard();
    m_pairPending = false;
}

void MPSExportWriter::ROWSData() {
    ROWSCard();
    ILPEquationList* eqns = nullptr;
    m_model->GetEquationCollectionIntf(&eqns);
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        SetField(kMPSFieldKey, RowKey(e->GetType()));
        SetField(kMPSFieldName1, e->GetName());
        WriteMPSDataCard();
    }
}

void MPSExportWriter::COLUMNSData() {
    COLUMNSCard();
    ILPVariableList* vars = nullptr;
    m_model->GetVariableCollectionIntf(&vars);
    ILPMatrix* matrix = nullptr;
    m_model->GetMatrixIntf(&matrix);
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        for (ILPNonZero* nz = matrix->ColFrstNonZeroObject(v->GetIndex()); nz != nullptr;
             nz = matrix->ColNextNonZeroObject()) {
            SetField(kMPSFieldName1, v->GetName());
            AddPair(nz->GetEquationPtr()->GetName(), nz->GetCoefficient());
        }
        FlushPair();
    }
}

void MPSExportWriter::RHSData() { RowValues(&MPSExportWriter::RHSCard, "RHS", &ILPEquation::GetRHS); }

void MPSExportWriter::RANGESData() { RowValues(&MPSExportWriter::RANGESCard, "RNG", &ILPEquation::GetRange); }

void MPSExportWriter::RowValues(void (MPSExportWriter::*header)(), const char* set,
                                double (ILPEquation::*value)() const) {
    ILPEquationList* eqns = nullptr;
    m_model->GetEquationCollectionIntf(&eqns);
    bool any = false;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        const double v = (e->*value)();
        if (v == 0.0) continue;
        if (!any) (this->*header)();
        any = true;
        SetField(kMPSFieldName1, set);
        AddPair(e->GetName(), v);
    }
    FlushPair();
}

void MPSExportWriter::BOUNDSData() {
    ILPVariableList* vars = nullptr;
    m_model->GetVariableCollectionIntf(&vars);
    bool header = false;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        mpsexport::BoundCard cards[2];
        const char* why = nullptr;
        const int n = mpsexport::BoundCards(v, cards, &why);
        for (int i = 0; i < n; ++i) {
            if (!header) BOUNDSCard();
            header = true;
            SetField(kMPSFieldKey, cards[i].key);
            SetField(kMPSFieldName1, "BND");
            SetField(kMPSFieldName2, v->GetName());
            if (cards[i].hasValue) SetNumber(kMPSFieldNumber1, cards[i].value);
            WriteMPSDataCard();
        }
    }
}
