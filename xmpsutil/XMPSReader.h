// Reader of the extended MPS dialect (XMPS) into a model data manager.
//
// An XMPS file carries a whole model: the linear model of standard MPS plus
// nonlinear terms, initial values and basis states, temporary bounds,
// variable groups, complementarity pairs and option settings:
//
//   <zemblockpersist type="XMPS" version="7.2">
//   <zemXMPS>
//   NAME REFINERY
//   XTNDFMT
//   XLINEAR
//    N  PROFIT            0.120000E+02  GASOLINE
//    E  BLEND            -.100000E+01  GASOLINE     CRUDE1  CRUDE2
//   NONLINEAR
//    G  QUALITY   LNX  2.000000e+00     CRUDE1     CRUDE2   \  (ends the line)
//                 1.000000e-01
//   RHS
//       RHS1              QUALITY           0.100000E+01
//   BOUNDS
//    UP BND1              CRUDE1            0.5000000000E+03
//   TEMPBOUNDS
//    LO BND2              CRUDE1            0.1000000000E+02
//   INITIAL
//    BS                   CRUDE1            0.2500000000E+03
//   VARGROUPS
//    IN FEEDS             CRUDE1
//   XOPTION
//       ITERLIM  500
//   COMPLEMENT
//       CRUDE1  CRUDE2
//   ENDATA
//   </zemXMPS>
//   </zemblockpersist>
//
// The two framing lines are optional; the file then starts with NAME. After
// NAME, sections come in any order and may repeat. XLINEAR and NONLINEAR
// cards follow the token rule (XMPSTokens.h): key, equation, optional
// function keyword, coefficient, arguments. A keyword-less card with one
// variable is a matrix coefficient, with several a product term; a keyword
// card makes a term of that keyword whose numeric arguments are constants.
// Every other section, the standard ones included, is read by the
// free-format rule. Equations and variables are created as cards name them.
// The coefficient of a term is stored as its first constant.
//
// Failures throw ZEM_Exception with source tag "xmpsutil" (data errors carry
// the message as name and the card's text as reason); the model keeps what
// was read before the failure.
#pragma once

#include <cstdint>
#include <sstream>
#include <vector>

#include "mpsutil/MPSStdReader.h"
#include "xmpsutil/XMPSLineMap.h"
#include "xmpsutil/XMPSTokens.h"

class ILPNonZero;
class INonLinearModel;
class IZEMDataMgr;

// Section codes of the extended headers (the reader's state values).
enum XMPSSectionCode : int16_t {
    kXMPSXLINEAR = 101,
    kXMPSNONLINEAR = 102,
    kXMPSINITIAL = 103,
    kXMPSXOPTION = 104,
    kXMPSXTNDFMT = 105,
    kXMPSCOMPLEMENT = 106,
    kXMPSTEMPBOUNDS = 107,
    kXMPSVARGROUPS = 108,
    kXMPSEXTERNMDLS = 109,
    kXMPSXMLHEADER = 110,
    kXMPSXMLSTART = 111,
};

// Data card codes: free-format cards are kMPSCardData (10).
enum XMPSCardCode : int16_t {
    kXMPSCardFixedXLINEAR = 201,
    kXMPSCardToken = 202,
};

class XMPSReader : public MPSStdReader {
public:
    // With `extendedFormat` every read starts in the extended widths.
    // Without a model the reader makes one on the first read and owns it
    // until TakeZEMDataObject.
    explicit XMPSReader(bool extendedFormat = false);
    XMPSReader(IZEMDataMgr* model, bool extendedFormat = false);
    ~XMPSReader() override;

    // Reads the file into memory and then reads it as a stream.
    void ReadMPSFile(const char* path) override;
    // Hands the model out as the base reader does; the caller then owns it.
    void TakeLPStdDataObject(ILPStdDataMgr** out) override;
    void Destroy() override;

    virtual void ReadMPSStream(std::stringstream* in);
    // Nothing is read from an XML stream.
    virtual void ReadMPSXMLStream(std::stringstream* in);
    // Hands the model to the caller, who then owns it; the reader forgets it.
    virtual void TakeZEMDataObject(IZEMDataMgr** out);

    // The lenient number test and the token copier of the format
    // (XMPSTokens.h).
    static bool IsANumber(const char* token);
    static bool ExtractToken(int& count, const char* source, char* target, int maxLen);

    bool InitialSectionRead() const { return m_initialRead; }
    bool XLinearSeen() const { return m_xlinearSeen; }
    bool NonLinearSeen() const { return m_nonlinearSeen; }

protected:
    void AllocateDataObject() override;
    int16_t ParseDataCard() override;
    void NAMEData() override;
    int16_t ExtendedHeaderCardSet() override;
    void ProcessExtendedSections() override;
    void SetFieldWidth(int16_t nameWidth, int16_t numberWidth, int16_t keyWidth) override;
    // The free-format fields; in the token-rule sections the equation as
    // field 1 and, as field 2, the token where the last card had its first
    // argument (cards written by a program line up).
    void LocateCard(const char* line, size_t len, MPSCardView& card) override;

    // The fixed-column XLINEAR rule: key, equation and coefficient in fixed
    // fields, variable names from the name-list column, each name-width
    // wide with two blanks between. Returns kXMPSCardFixedXLINEAR.
    virtual int16_t ParseXLINEARDataCard();
    // The token rule. Returns kXMPSCardToken.
    virtual int16_t ParseNONLINEARDataCard();

    virtual void XMLHEADERCard();
    virtual void XMLHeaderData();
    virtual void XMLSTARTCard();
    virtual void XMLStartData();
    virtual void XLINEARCard();
    // Reads cards by the fixed-column XLINEAR rule (not used by the section
    // loop, which reads XLINEAR sections with NONLINEARData).
    virtual void XLINEARData();
    virtual void NONLINEARCard();
    virtual void NONLINEARData();
    virtual void INITIALCard();
    virtual void INITIALData();
    virtual void XOPTIONCard();
    virtual void XOPTIONData();
    virtual void XTNDFMTCard();
    virtual void XTNDFMTData();
    virtual void COMPLEMENTCard();
    virtual void COMPLEMENTData();
    virtual void TEMPBOUNDSCard();
    virtual void TEMPBOUNDSData();
    virtual void VARGROUPSCard();
    virtual void VARGROUPSData();
    virtual void EXTERNMDLSCard();
    virtual void EXTERNMDLSData();
    virtual void ParseMPSStdDataCardFreeFormat();
    // INITIAL keys beyond NB SB BS FX UB LB; none are known here.
    virtual bool ProcessExtendedINITIALKeySet(const char* key, ILPVariable* var);

    // Reads the next line that is neither empty nor a comment; false at the
    // end of input.
    bool ReadContinuedXMPSLine();

    // ---- Parse results of the token and fixed XLINEAR rules ----
    // Equation name in Field(kMPSFieldName1), key in Field(kMPSFieldKey).
    char m_keyword[xmpstok::kTokenMax + 1] = {};
    char m_coefficient[xmpstok::kTokenMax + 1] = {};
    // Argument tokens of the current card, NUL-terminated one after another
    // in m_argText, starting at the offsets in m_argStart. Both keep their
    // capacity from card to card.
    std::vector<char> m_argText;
    std::vector<size_t> m_argStart;
    // Offset of the last token-rule card's first argument on its first line
    // (-1: none). Cards written by a program line up, so the look-ahead
    // expects the next card's first argument at the same offset.
    int m_argColumn = -1;
    // Blank maps of card lines: m_nextMap of the line the look-ahead located
    // into m_next, m_map of a card in hand that it did not locate.
    xmpstok::LineMap m_map;
    xmpstok::LineMap m_nextMap;
    // The map of the line in hand.
    const xmpstok::LineMap& CardMap();
    int ArgumentCount() const { return static_cast<int>(m_argStart.size()); }
    const char* Argument(int i) const { return m_argText.data() + m_argStart[i]; }
    size_t ArgumentLength(int i) const {
        const size_t end = i + 1 < ArgumentCount() ? m_argStart[i + 1] : m_argText.size();
        return end - m_argStart[i] - 1;
    }

    IZEMDataMgr* m_zem = nullptr;
    bool m_ownsZem = false;
    bool m_extendedFormat = false;
    bool m_xlinearSeen = false;
    bool m_nonlinearSeen = false;
    bool m_initialRead = false;
    bool m_readingFirstCard = false;
    int m_thirdFieldColumn = 14;
    int m_nameListColumn = 28;

    // The section loop's step: ROWS, and the numeric sections under the "C"
    // numeric locale; the rest as the base reader does.
    void ReadSection(int16_t code) override;
    [[noreturn]] void SectionReadNoCard(int16_t code) override;

private:
    struct TermTexts;
    void CommonCtor();
    void ReadXMPSInput(std::istream* in);
    void ApplyTermCard(const TermTexts& texts, INonLinearModel* nlModel);
    void ApplyTermCards(const TermTexts& texts, INonLinearModel* nlModel, bool byColumns);
    // The variable named by the n characters at name (NUL-terminated).
    ILPVariable* FindOrCreateVariable(const char* name, size_t n, const char* failText, const char* routine);
    void AppendArgument(const char* text);
    void AppendArgument(const char* text, size_t n);
    void FetchTermModel(const char* failText, const char* routine, INonLinearModel** nl);
    void RequireSection(int16_t code, const char* wrongStateText, const char* routine) const;
    bool SectionHasKey() const;
    // The variable of that name; null (skip the card) when the name is one
    // of the empty COLUMNS columns; otherwise a card fault with invalidText.
    ILPVariable* LookupColumnOrSkip(const char* name, const char* invalidText,
                                    const char* routine);
    ILPVariableList* FetchVariableList(const char* failText, const char* routine);

    // Length of the card's equation name (Field(kMPSFieldName1)).
    size_t m_equationLength = 0;
};

// Stores a new reader of `model` (null: the reader makes its own) in *out,
// or null when it cannot be made. Release it with Destroy.
void CreateXMPSReaderObject(XMPSReader** out, IZEMDataMgr* model);
