// The XMPS writer's sections after RANGES: BOUNDS, SETS, TEMPBOUNDS,
// INITIAL, VARGROUPS, XOPTION, COMPLEMENT and EXTERNMDLS.
#include <map>
#include <string>
#include <vector>

#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearBlockList.h"
#include "nlpdata/INonLinearModel.h"
#include "xmpsutil/XMPSNumericLocale.h"
#include "xmpsutil/XMPSWriter.h"
#include "xmpsutil/XMPSWriterLine.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

namespace {

const char* const kSetKeys[] = {"S1", "S2", "S3", "CS", "TB", "T2", "DP"};

// The INITIAL key of a basis state, or a blank key for a state that has
// none (the card then sets the value only).
const char* StatusKey(int16_t status) {
    switch (status) {
        case ZEM_STATUS_NONBASIC: return "NB";
        case ZEM_STATUS_BASIC: return "BS";
        case ZEM_STATUS_FIXED: return "FX";
        case ZEM_STATUS_NONBASIC_UB: return "UB";
        case ZEM_STATUS_NONBASIC_LB: return "LB";
        case ZEM_STATUS_STEP_BOUNDED: return "SB";
        default: return "  ";
    }
}

}  // namespace

// " %s BND1              %-16s  %17s", or without the value. Bounds are
// printed exactly (the shortest text that reads back as the same double).
void XMPSWriter::BoundCard(const char* key, const char* column, const double* value) {
    Line line(*this);
    line.ch(' ').text(key).ch(' ').text("BND1").blanks(14).left(column, 16);
    if (value != nullptr) line.blanks(2).number(xmpsnum::ExactForm, *value, 17);
    line.put();
}

// ---- BOUNDS ----

void XMPSWriter::WriteBOUNDSData() {
    XMPSNumericLocale cLocale;
    BOUNDSCard();
    ILPVariableList* vars = nullptr;
    m_zem->GetVariableCollectionIntf(&vars);
    if (vars == nullptr) return;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        const char* name = v->GetName();
        const double lower = v->GetBoundLower();
        const double upper = v->GetBoundUpper();
        const double step = v->GetStepBound();
        // The value and basis state that the reader leaves after the cards.
        int16_t status = ZEM_STATUS_BASIC;
        double value = 1.0;
        bool wrote = false;
        auto card = [&](const char* key, const double* val) {
            BoundCard(key, name, val);
            wrote = true;
        };
        switch (v->GetVarType()) {
            case ZEM_VAR_BINARY:  // BV: [0, 1]
                card("BV", nullptr);
                if (lower == -ZEM_INFINITY) {
                    card("MI", nullptr);
                } else if (lower != 0.0) {
                    card("LO", &lower);
                }
                if (upper == ZEM_INFINITY) {
                    card("PL", nullptr);
                } else if (upper != 1.0) {
                    card("UP", &upper);
                }
                break;
            case ZEM_VAR_DISCRETE:
                card("LI", &lower);
                if (upper != ZEM_INFINITY) card("UI", &upper);
                break;
            case ZEM_VAR_SEMICONTINUOUS:
                card("SC", &lower);
                if (upper != ZEM_INFINITY) card("UP", &upper);
                break;
            default:
                if (lower == -ZEM_INFINITY && upper == ZEM_INFINITY) {
                    card("FR", nullptr);
                } else if (lower == upper) {
                    card("FX", &lower);
                    status = ZEM_STATUS_FIXED;
                    value = lower;
                } else {
                    if (lower == -ZEM_INFINITY) {
                        card("MI", nullptr);
                    } else if (lower != 0.0) {
                        card("LO", &lower);
                    }
                    if (upper != ZEM_INFINITY) card("UP", &upper);
                }
                break;
        }
        if (step != ZEM_STEP_BOUND_DEFAULT) {
            card("SB", &step);
            status = ZEM_STATUS_STEP_BOUNDED;
        }
        // A variable that no card names yet must exist before the sections
        // that refer to existing columns.
        if (!wrote && !IsNamed(v)) card("PL", nullptr);
        const int i = v->GetIndex();
        if (i > 0 && static_cast<size_t>(i) < m_valueAfterBounds.size()) {
            m_valueAfterBounds[static_cast<size_t>(i)] = value;
            m_statusAfterBounds[static_cast<size_t>(i)] = status;
        }
    }
}

// ---- SETS ----

void XMPSWriter::WriteSETSData() {
    ILPSpOrdSetList* sets = nullptr;
    m_zem->GetSpOrdSetCollectionIntf(&sets);
    if (sets == nullptr || sets->NumberOfSpOrdSets() == 0) return;
    SETSCard();
    for (ILPSpOrdSet* s = sets->FrstSpOrdSetObject(); s != nullptr; s = sets->NextSpOrdSetObject()) {
        // The check in front of the writer let only types 1 to 7 through.
        const char* key = kSetKeys[s->GetType() - 1];
        ILPVariable* member = s->FrstSetVar();
        if (member == nullptr) {
            Line(*this).ch(' ').text(key).ch(' ').text(s->GetName()).put();
            continue;
        }
        for (; member != nullptr; member = s->NextSetVar()) {
            Line(*this)
                .ch(' ')
                .text(key)
                .ch(' ')
                .text(s->GetName())
                .blanks(3)
                .text(member->GetName())
                .put();
        }
    }
}

// ---- TEMPBOUNDS ----

void XMPSWriter::WriteTEMPBOUNDSData() {
    XMPSNumericLocale cLocale;
    TEMPBOUNDSCard();
    ILPVariableList* vars = nullptr;
    m_zem->GetVariableCollectionIntf(&vars);
    if (vars == nullptr) return;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        const double temp = v->GetTempBoundLower();
        // BOUNDS leaves every temporary lower bound at 0.
        if (temp == 0.0) continue;
        // The reader sets 0 for "LO" on a discrete or fixed variable; "FX"
        // sets the value whatever the variable.
        const bool loKept =
            v->GetVarType() != ZEM_VAR_DISCRETE && v->GetBoundUpper() > v->GetBoundLower();
        Line(*this)
            .ch(' ')
            .text(loKept ? "LO" : "FX")
            .ch(' ')
            .text("BND2")
            .blanks(14)
            .left(v->GetName(), 16)
            .blanks(2)
            .number(xmpsnum::ExactForm, temp, 17)
            .put();
    }
}

// ---- INITIAL ----

void XMPSWriter::WriteINITIALData() {
    XMPSNumericLocale cLocale;
    INITIALCard();
    ILPVariableList* vars = nullptr;
    m_zem->GetVariableCollectionIntf(&vars);
    if (vars == nullptr) return;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        const int i = v->GetIndex();
        const bool known = i > 0 && static_cast<size_t>(i) < m_valueAfterBounds.size();
        const double value = v->GetVarValue();
        const int16_t status = v->GetVarStatus();
        if (known && value == m_valueAfterBounds[static_cast<size_t>(i)] &&
            status == m_statusAfterBounds[static_cast<size_t>(i)]) {
            continue;
        }
        Line(*this)
            .ch(' ')
            .text(StatusKey(status))
            .blanks(19)
            .left(v->GetName(), 16)
            .blanks(2)
            .number(xmpsnum::LongForm, value, 17)
            .put();
    }
}

// ---- VARGROUPS ----

void XMPSWriter::WriteVARGROUPSData() {
    VARGROUPSCard();
    ILPVariableCollection* group = nullptr;
    for (m_zem->FrstNamedVarCollection(&group); group != nullptr;
         m_zem->NextNamedVarCollection(&group)) {
        const int16_t direction = group->GetDirection();
        const char* key = direction == 1 ? "IN" : direction == -1 ? "OT" : "UN";
        for (ILPVariable* v = group->FrstVariableObject(); v != nullptr;
             v = group->NextVariableObject()) {
            Line(*this).ch(' ').text(key).ch(' ').left(group->Name(), 16).blanks(2).text(
                v->GetName()).put();
        }
    }
}

// ---- XOPTION ----
//
// "    name  value  second": the reader gives the option table the first
// name, the second name and the first value of each card.

void XMPSWriter::WriteXOPTIONData() {
    IZEMOptionTable* table = nullptr;
    m_zem->GetOptionTableIntf(&table);
    if (table == nullptr) return;
    std::vector<std::string> names;
    table->OptionNames(names);
    bool header = false;
    for (const std::string& name : names) {
        const char* value = table->GetOptionValue(name.c_str());
        const char* second = table->GetOptionSecondValue(name.c_str());
        const bool withSecond = second != nullptr && second[0] != '\0';
        if (!header) {
            HeaderLine("XOPTION");
            header = true;
        }
        Line line(*this);
        line.blanks(4).text(name.c_str()).blanks(2).text(value);
        if (withSecond) line.blanks(2).text(second);
        line.put();
    }
}

// ---- COMPLEMENT ----
//
// "    source  target": the source must start in column 5.

void XMPSWriter::WriteCOMPLEMENTData() {
    ILPVariableList* vars = nullptr;
    m_zem->GetVariableCollectionIntf(&vars);
    if (vars == nullptr) return;
    bool header = false;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        ILPVariable* target = v->GetComplementarityTarget();
        if (target == nullptr) continue;
        if (!header) {
            HeaderLine("COMPLEMENT");
            header = true;
        }
        Line(*this).blanks(4).text(v->GetName()).blanks(2).text(target->GetName()).put();
    }
}

// ---- EXTERNMDLS ----

void XMPSWriter::WriteEXTERNMDLSData() {
    INonLinearModel* nl = nullptr;
    m_zem->GetNonLinearModelIntf(&nl);
    INonLinearBlockList* blocks = nl != nullptr ? nl->NLBlockList() : nullptr;
    if (blocks == nullptr || blocks->NumberOfBlocks() == 0) return;
    // The block list offers no text form of its blocks, so the section
    // holds the header only; the reader skips any lines under it.
    EXTERNMDLSCard();
}
