// The XMPS reader's free-format extended sections: INITIAL, TEMPBOUNDS,
// VARGROUPS, COMPLEMENT, XOPTION, XTNDFMT, EXTERNMDLS and the two framing
// lines. Each handler checks its state, reads its cards and returns with the
// next header card read.
#include <cstring>

#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "xmpsutil/XMPSNumericLocale.h"
#include "xmpsutil/XMPSReader.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

namespace {

constexpr const char* kProcessError = "MPS Read/Process Error";

bool KeyIs(const char* key, const char* word) { return std::strcmp(key, word) == 0; }

}  // namespace

// ---- Section headers ----

void XMPSReader::XMLHEADERCard() { m_section = kXMPSXMLHEADER; }
void XMPSReader::XMLSTARTCard() { m_section = kXMPSXMLSTART; }
void XMPSReader::XLINEARCard() {
    m_section = kXMPSXLINEAR;
    m_xlinearSeen = true;
}
void XMPSReader::NONLINEARCard() {
    m_section = kXMPSNONLINEAR;
    m_nonlinearSeen = true;
}
void XMPSReader::INITIALCard() { m_section = kXMPSINITIAL; }
void XMPSReader::XOPTIONCard() { m_section = kXMPSXOPTION; }
void XMPSReader::XTNDFMTCard() {
    m_section = kXMPSXTNDFMT;
    SetExtendedFieldWidth();
}
void XMPSReader::COMPLEMENTCard() { m_section = kXMPSCOMPLEMENT; }
void XMPSReader::TEMPBOUNDSCard() { m_section = kXMPSTEMPBOUNDS; }
void XMPSReader::VARGROUPSCard() { m_section = kXMPSVARGROUPS; }
void XMPSReader::EXTERNMDLSCard() { m_section = kXMPSEXTERNMDLS; }

// ---- Helpers ----

ILPVariableList* XMPSReader::FetchVariableList(const char* failText, const char* routine) {
    if (!m_sink.AttachVariables(m_model)) ProcessError(kProcessError, failText, routine, __LINE__);
    return m_sink.Variables();
}

ILPVariable* XMPSReader::LookupColumnOrSkip(const char* name, const char* invalidText,
                                            const char* routine) {
    ILPVariable* var = m_sink.FindVariable(name);
    if (var != nullptr) return var;
    if (m_emptyColumns.count(name) != 0) return nullptr;
    CardError(invalidText, routine, __LINE__);
}

bool XMPSReader::ProcessExtendedINITIALKeySet(const char*, ILPVariable*) { return false; }

// ---- Framing lines ----

void XMPSReader::XMLHeaderData() {
    RequireSection(kXMPSXMLHEADER, "XMLHeaderData method invoked in wrong state",
                   "XMPSReader::XMLHeaderData");
    ReadMPSCard();
}

void XMPSReader::XMLStartData() {
    RequireSection(kXMPSXMLSTART, "XMLStartData method invoked in wrong state",
                   "XMPSReader::XMLStartData");
    ReadMPSCard();
}

// ---- INITIAL: values and basis states ----

void XMPSReader::INITIALData() {
    static const char* const kRoutine = "XMPSReader::INITIALData";
    // The two incomplete-entry faults name the base reader's place.
    static const char* const kEntryRoutine = "MPSStdReader::INITIALData";
    RequireSection(kXMPSINITIAL, "INITIALData method invoked in wrong state", kRoutine);
    XMPSNumericLocale cLocale;
    FetchVariableList("INITIALData Unable to Retrieve LP Variable data object", kRoutine);
    while (ReadMPSCard() == kMPSCardData) {
        const char* column = Field(kMPSFieldName2);
        if (column[0] == '\0') {
            CardError("MPS INITIAL Section Error - Incomplete Data Entry - no COLUMN NAME",
                      kEntryRoutine, __LINE__);
        }
        if (!HasField(kMPSFieldNumber1)) {
            CardError("MPS INITIAL Section Error - Incomplete Data Entry - no VALUE", kEntryRoutine,
                      __LINE__);
        }
        ILPVariable* var = m_sink.FindVariable(column);
        if (var == nullptr) var = m_sink.NewVariable(column);
        if (var == nullptr) {
            ProcessError(kProcessError, "INITIALData Unable to create new Variable data object",
                         kRoutine, __LINE__);
        }
        const double value = FieldNumber(kMPSFieldNumber1);
        var->SetVarValue(value);
        const char* key = Field(kMPSFieldKey);
        if (key[0] == '\0') continue;
        if (KeyIs(key, "NB")) {
            var->SetVarStatus(ZEM_STATUS_NONBASIC);
        } else if (KeyIs(key, "SB")) {
            var->SetVarStatus(ZEM_STATUS_STEP_BOUNDED);
        } else if (KeyIs(key, "BS")) {
            var->SetVarStatus(ZEM_STATUS_BASIC);
        } else if (KeyIs(key, "FX")) {
            var->SetVarStatus(ZEM_STATUS_FIXED);
            var->SetVarValue(value);
        } else if (KeyIs(key, "UB")) {
            var->SetVarStatus(ZEM_STATUS_NONBASIC_UB);
            var->SetVarValue(value);
        } else if (KeyIs(key, "LB")) {
            var->SetVarStatus(ZEM_STATUS_NONBASIC_LB);
            var->SetVarValue(value);
        } else if (!ProcessExtendedINITIALKeySet(key, var)) {
            CardError("MPS INITIAL Section Error - Unknown Bound Type Key Found", kRoutine, __LINE__);
        }
    }
    m_initialRead = true;
}

// ---- TEMPBOUNDS: temporary bounds ----
//
// A variable has one temporary bound, its temporary lower bound. "LO" and
// "FX" set it to the value, except that "LO" sets 0 for a discrete variable
// and for a variable whose upper bound is not above its lower bound (a fixed
// variable); "FX" always sets the value. "FR", "MI", "BV" and "LI" reset it
// to 0 as their BOUNDS counterparts do; "PL" and "UP" leave it alone, there
// being no temporary upper bound.

void XMPSReader::TEMPBOUNDSData() {
    static const char* const kRoutine = "XMPSReader::TEMPBOUNDSData";
    RequireSection(kXMPSTEMPBOUNDS, "TEMPBOUNDSData method invoked in wrong state", kRoutine);
    XMPSNumericLocale cLocale;
    FetchVariableList("TEMPBOUNDSData Unable to Retrieve LP Variable data object", kRoutine);
    while (ReadMPSCard() == kMPSCardData) {
        const char* key = Field(kMPSFieldKey);
        if (key[0] == '\0') {
            CardError("XMPS TEMPBOUNDS Section Error - Incomplete Data Entry - no KEY", kRoutine,
                      __LINE__);
        }
        const char* column = Field(kMPSFieldName2);
        if (column[0] == '\0') {
            CardError("XMPS TEMPBOUNDS Section Error - Incomplete Data Entry - no COLUMN NAME",
                      kRoutine, __LINE__);
        }
        ILPVariable* var =
            LookupColumnOrSkip(column, "MPS BOUNDS Section Error - Invalid Column Name", kRoutine);
        if (var == nullptr) continue;
        const bool needsValue =
            KeyIs(key, "LO") || KeyIs(key, "UP") || KeyIs(key, "FX") || KeyIs(key, "LI");
        if (needsValue && !HasField(kMPSFieldNumber1)) {
            CardError("XMPS TEMPBOUNDS Section Error - Incomplete Data Entry", kRoutine, __LINE__);
        }
        if (KeyIs(key, "LO")) {
            double value = FieldNumber(kMPSFieldNumber1);
            if (var->GetVarType() == ZEM_VAR_DISCRETE ||
                !(var->GetBoundUpper() > var->GetBoundLower())) {
                value = 0.0;
            }
            var->SetTempBoundLower(value);
        } else if (KeyIs(key, "FX")) {
            var->SetTempBoundLower(FieldNumber(kMPSFieldNumber1));
        } else if (KeyIs(key, "FR") || KeyIs(key, "MI") || KeyIs(key, "BV") || KeyIs(key, "LI")) {
            var->SetTempBoundLower(0.0);
        } else if (KeyIs(key, "UP") || KeyIs(key, "PL")) {
            // No temporary upper bound to set.
        } else if (!ProcessExtendedBOUNDSKeySet(key, var)) {
            CardError("XMPS BOUNDS Section Error - Unknown Bound Type Key Found", kRoutine, __LINE__);
        }
    }
}

// ---- VARGROUPS: named variable collections ----

void XMPSReader::VARGROUPSData() {
    static const char* const kRoutine = "XMPSReader::VARGROUPSData";
    RequireSection(kXMPSVARGROUPS, "VARGROUPSData method invoked in wrong state", kRoutine);
    FetchVariableList("VARGROUPSData Unable to Retrieve LP Variable data object", kRoutine);
    if (m_zem == nullptr) {
        ProcessError(kProcessError, "VARGROUPSData Unable to Retrieve LP Variable data object",
                     kRoutine, __LINE__);
    }
    while (ReadMPSCard() == kMPSCardData) {
        const char* key = Field(kMPSFieldKey);
        const char* group = Field(kMPSFieldName1);
        const char* column = Field(kMPSFieldName2);
        if (key[0] == '\0') {
            CardError("XMPS VARGROUPS Section Error - Incomplete Data Entry - no KEY", kRoutine,
                      __LINE__);
        }
        if (group[0] == '\0') {
            CardError("XMPS VARGROUPS Section Error - Incomplete Data Entry - no GROUP NAME",
                      kRoutine, __LINE__);
        }
        if (column[0] == '\0') {
            CardError("XMPS VARGROUPS Section Error - Incomplete Data Entry - no COLUMN NAME",
                      kRoutine, __LINE__);
        }
        ILPVariable* var =
            LookupColumnOrSkip(column, "MPS VARGROUPS Section Error - Invalid Column Name", kRoutine);
        if (var == nullptr) continue;
        ILPVariableCollection* collection = nullptr;
        m_zem->FindNamedVarCollection(group, &collection);
        if (collection == nullptr) {
            m_zem->NewNamedVarCollection(group, &collection);
            if (collection == nullptr) {
                ProcessError(kProcessError, "VARGROUPSData Unable to create new Variable Collection",
                             kRoutine, __LINE__);
            }
            // Only a new group takes its direction from the key.
            const int16_t direction = KeyIs(key, "IN") ? 1 : KeyIs(key, "OT") ? -1 : 0;
            collection->SetDirection(direction);
        }
        collection->AddVariableObject(var);
    }
}

// ---- COMPLEMENT: complementarity pairs ----

void XMPSReader::COMPLEMENTData() {
    static const char* const kRoutine = "XMPSReader::COMPLEMENTData";
    static const char* const kInvalid = "MPS COMPLEMENT Section Error - Invalid Column Name";
    RequireSection(kXMPSCOMPLEMENT, "COMPLEMENTData method invoked in wrong state", kRoutine);
    FetchVariableList("COMPLEMENTData Unable to Retrieve LP Variable data object list", kRoutine);
    while (ReadMPSCard() == kMPSCardData) {
        const char* source = Field(kMPSFieldName1);
        const char* target = Field(kMPSFieldName2);
        if (source[0] == '\0') {
            CardError("MPS COMPLEMENT Section Error - Incomplete Data Entry - no SOURCE VARIABLE NAME",
                      kRoutine, __LINE__);
        }
        if (target[0] == '\0') {
            CardError("MPS COMPLEMENT Section Error - Incomplete Data Entry - no TARGET VARIABLE NAME",
                      kRoutine, __LINE__);
        }
        ILPVariable* from = LookupColumnOrSkip(source, kInvalid, kRoutine);
        if (from == nullptr) continue;
        ILPVariable* to = LookupColumnOrSkip(target, kInvalid, kRoutine);
        if (to == nullptr) continue;
        from->SetComplementarityTarget(to);
    }
}

// ---- XOPTION: option table ----

void XMPSReader::XOPTIONData() {
    static const char* const kRoutine = "XMPSReader::XOPTIONData";
    RequireSection(kXMPSXOPTION, "XOPTIONData method invoked in wrong state", kRoutine);
    IZEMOptionTable* table = nullptr;
    if (m_zem != nullptr) m_zem->GetOptionTableIntf(&table);
    if (table == nullptr) {
        ProcessError(kProcessError, "XOPTIONData Unable to Retrieve ZEM Option Table data object",
                     kRoutine, __LINE__);
    }
    while (ReadMPSCard() == kMPSCardData) {
        table->SetOption(Field(kMPSFieldName1), Field(kMPSFieldName2), Field(kMPSFieldNumber1));
    }
}

// ---- XTNDFMT and EXTERNMDLS: headers without data ----

void XMPSReader::XTNDFMTData() {
    static const char* const kRoutine = "XMPSReader::XTNDFMTData";
    RequireSection(kXMPSXTNDFMT, "XTNDFMTData method invoked in wrong state", kRoutine);
    if (ReadMPSCard() == kMPSCardData) {
        ProcessError(kProcessError,
                     "XTNDFMTData data cards entered - no data should accompany this header card",
                     kRoutine, __LINE__);
    }
}

void XMPSReader::EXTERNMDLSData() {
    RequireSection(kXMPSEXTERNMDLS, "EXTERNMDLSData method invoked in wrong state",
                   "XMPSReader::EXTERNMDLSData");
    // The external models write their own lines, which this reader does not
    // interpret: they are skipped up to the next header.
    while (ReadMPSCard() == kMPSCardData) {
    }
}
