// The section handlers of the standard MPS reader: NAME, ROWS, COLUMNS, RHS,
// RANGES, BOUNDS and SETS. Each is entered with its header card read and
// returns with the card after its last data card read.
#include <cstring>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMTypes.h"
#include "mpsutil/MPSStdReader.h"

namespace {

constexpr const char* kProcessError = "MPS Read/Process Error";

// Bound keys of the BOUNDS section and whether they need a value.
enum BoundKey { kLO, kUP, kSB, kFX, kFR, kMI, kPL, kBV, kLI, kUI, kSC, kBoundKeyCount };
struct BoundKeyInfo {
    const char* key;
    bool needsValue;
};
constexpr BoundKeyInfo kBoundKeys[kBoundKeyCount] = {
    {"LO", true},  {"UP", true},  {"SB", true},  {"FX", true}, {"FR", false}, {"MI", false},
    {"PL", false}, {"BV", false}, {"LI", true},  {"UI", true}, {"SC", true},
};

// SETS keys; the set type is the position + 1.
constexpr const char* kSetKeys[] = {"S1", "S2", "S3", "CS", "TB", "T2", "DP"};

}  // namespace

void MPSStdReader::GetEquationTypeFromKey(int16_t& type) {
    const char* key = Field(kMPSFieldKey);
    const char k0 = key[0];
    const char k1 = k0 != '\0' ? key[1] : '\0';
    auto has = [&](char c) { return k0 == c || k1 == c; };
    if (has('N')) {
        if (!m_objectiveSeen) {
            m_objectiveSeen = true;
            if (m_model != nullptr) m_model->IncludeObjectiveInMatrix();
            type = ZEM_EQN_OBJECTIVE;
        } else {
            type = ZEM_EQN_FREE;
        }
    } else if (has('E')) {
        type = ZEM_EQN_EQ;
    } else if (has('G')) {
        type = ZEM_EQN_GE;
    } else if (has('L')) {
        type = ZEM_EQN_LE;
    } else {
        type = ZEM_EQN_UNKNOWN;
    }
}

void MPSStdReader::NAMEData() {
    static const char* const kRoutine = "MPSStdReader::NAMEData";
    CheckSection(kMPSCardNAME, "NAMEData method invoked in wrong state", kRoutine, __LINE__);
    std::string title;
    m_model->GetModelTitle(title);
    if (title.empty()) {
        m_model->SetModelTitle(HasField(kMPSFieldName1) ? Field(kMPSFieldName1) : "NOTITLE");
    }
    ReadMPSCard();
}

void MPSStdReader::ROWSData() {
    static const char* const kRoutine = "MPSStdReader::ROWSData";
    CheckSection(kMPSCardROWS, "ROWSData method invoked in wrong state", kRoutine, __LINE__);
    ReadFirstDataCard("ROWSData section appears empty - no data card following header", kRoutine,
                      __LINE__);
    FetchModelParts("ROWSData Unable to Retrieve an LP data object", kRoutine, __LINE__);
    do {
        PrefetchNextCard(-1, kMPSFieldName1);
        const char* name = Field(kMPSFieldName1);
        if (name[0] == '\0') {
            CardError("MPS ROWS Section Error - Incomplete Data Entry", kRoutine, __LINE__);
        }
        if (m_sink.FindEquation(name) != nullptr) {
            CardError("MPS ROWS Section Error - Row Name Already Used", kRoutine, __LINE__);
        }
        // The type is settled before the row is made, so a refused key
        // leaves nothing behind.
        int16_t type = ZEM_EQN_UNKNOWN;
        GetEquationTypeFromKey(type);
        if (type == ZEM_EQN_UNKNOWN) {
            CardError("MPS ROWS Section Error - Unknown Row Type Key Found", kRoutine, __LINE__);
        }
        if (m_sink.NewEquation(name, type) == nullptr) {
            ProcessError(kProcessError, "ROWSData Unable to create new Equation data object",
                         kRoutine, __LINE__);
        }
    } while (ReadMPSCard() == kMPSCardData);
}

void MPSStdReader::COLUMNSData() {
    static const char* const kRoutine = "MPSStdReader::COLUMNSData";
    static const char* const kIncomplete = "MPS COLUMNS Section Error - Incomplete Data Entry";
    CheckSection(kMPSCardCOLUMNS, "COLUMNSData method invoked in wrong state", kRoutine, __LINE__);
    ReadFirstDataCard("COLUMNSData section appears empty - no data card following header", kRoutine,
                      __LINE__);
    FetchModelParts("COLUMNSData Unable to Retrieve an LP data object", kRoutine, __LINE__);
    m_sink.Forget();
    do {
        PrefetchNextCard(kMPSFieldName1, kMPSFieldName2, kMPSFieldName3);
        const char* column = Field(kMPSFieldName1);
        if (column[0] == '\0') CardError(kIncomplete, kRoutine, __LINE__);
        const bool pair1 = HasField(kMPSFieldName2);
        const bool pair2 = HasField(kMPSFieldName3);
        if ((pair1 && !HasField(kMPSFieldNumber1)) || (pair2 && !HasField(kMPSFieldNumber2))) {
            CardError(kIncomplete, kRoutine, __LINE__);
        }
        ILPVariable* var = m_sink.FindColumn(column);
        if (var == nullptr) {
            if (!pair1 && !pair2) {
                m_emptyColumns.insert(column);
                continue;
            }
            var = m_sink.NewColumn(column);
            if (var == nullptr) {
                ProcessError(kProcessError, "COLUMNSData Unable to create new Variable data object",
                             kRoutine, __LINE__);
            }
        }
        if (pair1) AddColumnEntry(kMPSFieldName2, kMPSFieldNumber1, var);
        if (pair2) AddColumnEntry(kMPSFieldName3, kMPSFieldNumber2, var);
    } while (ReadMPSCard() == kMPSCardData);
}

void MPSStdReader::AddColumnEntry(int rowField, int valueField, ILPVariable* var) {
    static const char* const kRoutine = "MPSStdReader::COLUMNSData";
    int index = 0;
    ILPEquation* row = m_sink.FindEquation(Field(rowField), index);
    if (row == nullptr)
        CardError("MPS COLUMNS Section Error - Invalid Row Name", kRoutine, __LINE__);
    if (!m_sink.AddCoefficient(row, index, var, FieldNumber(valueField))) {
        ProcessError(kProcessError, "COLUMNSData Unable to create new NonZero data object",
                     kRoutine, __LINE__);
    }
}

void MPSStdReader::RHSData() {
    static const char* const kRoutine = "MPSStdReader::RHSData";
    static const char* const kIncomplete = "MPS RHS Section Error - Incomplete Data Entry";
    CheckSection(kMPSCardRHS, "RHSData method invoked in wrong state", kRoutine, __LINE__);
    FetchModelParts("RHSData Unable to Retrieve an LP data object", kRoutine, __LINE__);
    while (ReadMPSCard() == kMPSCardData) {
        PrefetchNextCard(-1, kMPSFieldName2, kMPSFieldName3);
        if (!HasField(kMPSFieldName1)) CardError(kIncomplete, kRoutine, __LINE__);
        // First pair: a row that does not exist is passed over.
        if (HasField(kMPSFieldName2)) {
            if (!HasField(kMPSFieldNumber1)) CardError(kIncomplete, kRoutine, __LINE__);
            if (ILPEquation* row = m_sink.FindEquation(Field(kMPSFieldName2))) {
                row->SetRHS(FieldNumber(kMPSFieldNumber1));
            }
        }
        // Second pair: a row that does not exist is an error unless ignored.
        if (HasField(kMPSFieldName3)) {
            if (!HasField(kMPSFieldNumber2)) CardError(kIncomplete, kRoutine, __LINE__);
            if (ILPEquation* row = m_sink.FindEquation(Field(kMPSFieldName3))) {
                row->SetRHS(FieldNumber(kMPSFieldNumber2));
            } else if (m_ignoredRows.count(Field(kMPSFieldName3)) == 0) {
                CardError("MPS RHS Section Error - Invalid Row Name", kRoutine, __LINE__);
            }
        }
    }
}

void MPSStdReader::RANGESData() {
    static const char* const kRoutine = "MPSStdReader::RANGESData";
    CheckSection(kMPSCardRANGES, "RANGESData method invoked in wrong state", kRoutine, __LINE__);
    FetchModelParts("RANGESData Unable to Retrieve an LP data object", kRoutine, __LINE__);
    const int pairs[2][2] = {{kMPSFieldName2, kMPSFieldNumber1}, {kMPSFieldName3, kMPSFieldNumber2}};
    while (ReadMPSCard() == kMPSCardData) {
        PrefetchNextCard(-1, kMPSFieldName2, kMPSFieldName3);
        for (const auto& pair : pairs) {
            if (!HasField(pair[0])) continue;
            if (!HasField(pair[1])) {
                CardError("MPS RANGES Section Error - Incomplete Data Entry", kRoutine, __LINE__);
            }
            ILPEquation* row = m_sink.FindEquation(Field(pair[0]));
            if (row == nullptr) {
                if (m_ignoredRows.count(Field(pair[0])) != 0) continue;
                CardError("MPS RANGES Section Error - Invalid Row Name", kRoutine, __LINE__);
            }
            const double range = FieldNumber(pair[1]);
            if (range == 0.0) row->SetType(ZEM_EQN_EQ);
            row->SetRange(range);
        }
    }
}

void MPSStdReader::BOUNDSData() {
    static const char* const kRoutine = "MPSStdReader::BOUNDSData";
    CheckSection(kMPSCardBOUNDS, "BOUNDSData method invoked in wrong state", kRoutine, __LINE__);
    FetchModelParts("BOUNDSData Unable to Retrieve an LP data object", kRoutine, __LINE__);
    while (ReadMPSCard() == kMPSCardData) {
        PrefetchNextCard(kMPSFieldName2, -1);
        if (!HasField(kMPSFieldKey)) {
            CardError("MPS BOUNDS Section Error - Incomplete Data Entry - no KEY", kRoutine,
                      __LINE__);
        }
        const char* column = Field(kMPSFieldName2);
        if (column[0] == '\0') {
            CardError("MPS BOUNDS Section Error - Incomplete Data Entry - no COLUMN NAME",
                           kRoutine, __LINE__);
        }
        ILPVariable* var = m_sink.FindVariable(column);
        if (var == nullptr) {
            if (m_emptyColumns.count(column) != 0) continue;
            var = m_sink.NewVariable(column);
            // The wording is shared with the extended reader.
            if (var == nullptr) {
                ProcessError(kProcessError,
                             "NONLINEARData Unable to create new Variable data object",
                             "XMPSReader::NONLINEARData", __LINE__);
            }
        }
        ApplyBound(var);
    }
}

void MPSStdReader::ApplyBound(ILPVariable* var) {
    static const char* const kRoutine = "MPSStdReader::BOUNDSData";
    const char* key = Field(kMPSFieldKey);
    int which = 0;
    while (which < kBoundKeyCount && std::strcmp(key, kBoundKeys[which].key) != 0) ++which;
    if (which == kBoundKeyCount) {
        if (!ProcessExtendedBOUNDSKeySet(key, var)) {
            CardError("MPS BOUNDS Section Error - Unknown Bound Type Key Found", kRoutine,
                      __LINE__);
        }
        return;
    }
    if (kBoundKeys[which].needsValue && !HasField(kMPSFieldNumber1)) {
        CardError("MPS BOUNDS Section Error - Incomplete Data Entry", kRoutine, __LINE__);
    }
    const double v = kBoundKeys[which].needsValue ? FieldNumber(kMPSFieldNumber1) : 0.0;
    switch (which) {
        case kLO:
            var->SetBoundLower(v);
            var->SetTempBoundLower(0.0);
            break;
        case kUP: var->SetBoundUpper(v); break;
        case kSB:
            var->SetVarStatus(ZEM_STATUS_STEP_BOUNDED);
            var->SetStepBound(v);
            break;
        case kFX:
            var->SetVarStatus(ZEM_STATUS_FIXED);
            var->SetVarValue(v);
            var->SetBoundLower(v);
            var->SetBoundUpper(v);
            var->SetTempBoundLower(0.0);
            break;
        case kFR:
            var->SetBoundLower(-ZEM_INFINITY);
            var->SetBoundUpper(ZEM_INFINITY);
            var->SetTempBoundLower(0.0);
            break;
        case kMI:
            var->SetBoundLower(-ZEM_INFINITY);
            var->SetTempBoundLower(0.0);
            break;
        case kPL: var->SetBoundUpper(ZEM_INFINITY); break;
        case kBV:
            var->SetVarType(ZEM_VAR_BINARY);
            var->SetBoundUpper(1.0);
            var->SetBoundLower(0.0);
            var->SetTempBoundLower(0.0);
            break;
        case kLI:
            var->SetVarType(ZEM_VAR_DISCRETE);
            var->SetBoundLower(v);
            var->SetTempBoundLower(0.0);
            break;
        case kUI:
            var->SetVarType(ZEM_VAR_DISCRETE);
            var->SetBoundUpper(v);
            break;
        default:  // SC: the semi-continuous threshold is kept as the lower bound
            var->SetVarType(ZEM_VAR_SEMICONTINUOUS);
            var->SetBoundLower(v);
            break;
    }
}

void MPSStdReader::SETSData() {
    static const char* const kRoutine = "MPSStdReader::SETSData";
    CheckSection(kMPSCardSETS, "SETSData method invoked in wrong state", kRoutine, __LINE__);
    ILPSpOrdSetList* sets = nullptr;
    m_model->GetSpOrdSetCollectionIntf(&sets);
    if (sets == nullptr)
        ProcessError(kProcessError, "SETSData Unable to Retrieve LP SOS data object", kRoutine,
                     __LINE__);
    if (!m_sink.AttachVariables(m_model)) {
        ProcessError(kProcessError, "SETSData Unable to Retrieve LP Variable data object", kRoutine,
                     __LINE__);
    }
    while (ReadMPSCard() == kMPSCardData) {
        const char* key = Field(kMPSFieldKey);
        int16_t type = 0;
        for (size_t i = 0; i < sizeof kSetKeys / sizeof kSetKeys[0]; ++i) {
            if (std::strcmp(key, kSetKeys[i]) == 0) type = static_cast<int16_t>(i + 1);
        }
        if (type == 0)
            CardError("MPS SETS Section Error - Unrecognized SOS Type Key", kRoutine, __LINE__);
        const char* name = Field(kMPSFieldName1);
        if (name[0] == '\0')
            CardError("MPS SETS Section Error - Incomplete Data Entry", kRoutine, __LINE__);
        ILPSpOrdSet* set = sets->SOSNameLookup(name);
        if (set == nullptr) {
            sets->CreateNewSpOrdSetObject(&set);
            if (set == nullptr)
                ProcessError(kProcessError, "SETSData Unable to Retrieve LP SOS data object",
                             kRoutine, __LINE__);
            set->SetName(name);
            set->SetType(type);
            sets->AddSpOrdSetObject(set);
        }
        // Member weights (fields 4 and 6) have no place in the set.
        for (int field : {kMPSFieldName2, kMPSFieldName3}) {
            if (!HasField(field)) continue;
            ILPVariable* var = m_sink.FindVariable(Field(field));
            if (var == nullptr)
                CardError("MPS SETS Section Error - Invalid Column Name", kRoutine, __LINE__);
            set->AddVariableObject(var);
        }
    }
}
