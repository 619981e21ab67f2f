// CExpEval: the symbol table, the tokenizer, the unary-sign conversion, the
// checks before parsing and the precedence parser. The evaluation of the
// postfix program is in CExpEvalRun.cpp.
#include "nlpdata/CExpEval.h"

#include <climits>
#include <cmath>
#include <cstring>

#include "nlpdata/CExpEvalOps.h"

namespace {

// Token kinds.
enum : int32_t {
    kSymbolTok = 0, kNumberTok = 1, kBinaryTok = 2, kUnaryMinusTok = 3, kParenTok = 4,
    kFunctionTok = 5, kNotTok = 7, kLogicalTok = 8, kCompareTok = 9, kEndTok = 10,
};

// Character classes of the tokenizer.
enum : uint8_t { kOther = 0, kSpace = 1, kLetter = 2, kDigit = 4, kNameChar = 8, kOperatorChar = 16 };

struct CharClasses {
    uint8_t of[256] = {};
    CharClasses() {
        for (int c = 'a'; c <= 'z'; ++c) of[c] = kLetter;
        for (int c = 'A'; c <= 'Z'; ++c) of[c] = kLetter;
        for (int c = '0'; c <= '9'; ++c) of[c] = kDigit;
        for (int c = 128; c < 256; ++c) of[c] = kLetter;
        for (const char* p = " \t\n\r\v\f"; *p; ++p) of[static_cast<unsigned char>(*p)] = kSpace;
        // The symbol characters; & | < > spell operators and end a name.
        for (const char* p = "~`@#$%_[]\\{}:;'\",?"; *p; ++p) of[static_cast<unsigned char>(*p)] = kNameChar;
        for (const char* p = "&|<>"; *p; ++p) of[static_cast<unsigned char>(*p)] = kOperatorChar;
    }
};
const CharClasses kChars;

bool startsName(unsigned char c) { return (kChars.of[c] & (kLetter | kNameChar)) != 0; }
bool continuesName(unsigned char c) { return (kChars.of[c] & (kLetter | kNameChar | kDigit)) != 0; }
bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }

// Rows: incoming class; columns: class of the stack top.
const signed char kAction[16][16] = {
    {-1, -1, -1, -1, -1, -1, -1, -1, 1, 9, 1, 1, 1, 1, 1, -1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 1, 9, 1, 1, 1, 1, 1, -1},
    {1, 1, -1, -1, -1, -1, -1, -1, 1, 9, 1, 1, 1, 1, 1, -1},
    {1, 1, -1, -1, -1, -1, -1, -1, 1, 9, 1, 1, 1, 1, 1, -1},
    {1, 1, 1, 1, 1, -1, -1, -1, 1, 9, 1, 1, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 9, 9, 1, 9, 1, 1, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 9, 9, 1, 9, 1, 1, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 9, 9, 1, 9, 1, 1, 1, 1, 1, 1},
    {1, 1, 1, 1, 1, 1, 1, 9, 1, 9, 1, 1, 1, 1, 1, 1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 0, 9, 9, -1, -1, -1, -1, -1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 9, 9, 99, -1, -1, -1, -1, -1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 1, 9, 1, -1, 1, -1, -1, -1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 1, 9, 1, -1, -1, -1, -1, -1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 1, 9, 1, 1, 1, -1, 1, -1},
    {-1, -1, -1, -1, -1, -1, -1, -1, 1, 9, 1, 1, 1, -1, -1, -1},
    {1, 1, 1, 1, 1, 1, -1, -1, 1, 9, 1, 1, 1, 1, 1, -1},
};

double absValue(double x) { return std::fabs(x); }
double squareRoot(double x) { return std::sqrt(x); }
double naturalLog(double x) { return std::log(x); }
double log10Of(double x) { return std::log10(x); }
double exponential(double x) { return std::exp(x); }

const ExpFunction kFunctions[] = {
    {"sqrt", squareRoot}, {"abs", absValue}, {"ln", naturalLog}, {"lg", log10Of}, {"exp", exponential},
};
constexpr int kFunctionCount = 5;

int clampPosition(size_t at) { return at > static_cast<size_t>(INT_MAX) ? INT_MAX : static_cast<int>(at); }

// Thrown inside the stages; Fail records the message first.
struct StageError {
    int code;
};

}  // namespace

CExpEval::CExpEval(bool declareNames, bool exactNames)
    : m_declareNames(declareNames), m_exactNames(exactNames) {}

CExpEval::~CExpEval() = default;

void CExpEval::FunctionTable(const ExpFunction*& table, int& count) const {
    table = kFunctions;
    count = kFunctionCount;
}

// ---- Symbols ----

const std::string& CExpEval::Key(const char* text, size_t n) const {
    m_key.assign(text, n);
    if (!m_exactNames)
        for (char& c : m_key)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return m_key;
}

int CExpEval::FindName(const char* text, size_t n) const {
    const auto it = m_index.find(Key(text, n));
    return it == m_index.end() ? -1 : it->second;
}

int CExpEval::FindSymbol(const char* name) const { return name ? FindName(name, std::strlen(name)) : -1; }

int CExpEval::AddSymbol(const char* name, double value) {
    if (!name || !*name) return -1;
    const size_t n = std::strlen(name);
    const int at = FindName(name, n);
    if (at >= 0) {
        m_values[at] = value;
        return at;
    }
    if (m_values.size() >= static_cast<size_t>(kMaxSymbols)) return -1;
    m_index.emplace(Key(name, n), static_cast<int>(m_values.size()));
    m_names.emplace_back(name, n);
    m_values.push_back(value);
    return static_cast<int>(m_values.size()) - 1;
}

double CExpEval::GetSymbolValue(int index) const {
    return index >= 0 && static_cast<size_t>(index) < m_values.size() ? m_values[index] : 0.0;
}

const char* CExpEval::SymbolName(int index) const {
    return index >= 0 && static_cast<size_t>(index) < m_names.size() ? m_names[index].c_str() : nullptr;
}

int CExpEval::FunctionIndex(const char* text, size_t n) const {
    for (int i = 0; i < kFunctionCount; ++i) {
        const char* f = kFunctions[i].name;
        if (std::strlen(f) != n) continue;
        size_t k = 0;
        for (; k < n; ++k) {
            char c = text[k];
            if (!m_exactNames && c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
            if (c != f[k]) break;
        }
        if (k == n) return i;
    }
    return -1;
}

// ---- Errors ----

void CExpEval::Fail(int code, const char* message, int position) {
    Report(code, message, position);
    throw StageError{code};
}

int CExpEval::Report(int code, const char* message, int position) {
    m_code = code;
    m_message = message;
    m_position = position;
    return code;
}

// ---- Run ----

bool CExpEval::Evaluate(double& result) {
    result = 0.0;
    if (Parse(m_text) != kOk) return false;
    return EvaluatePostfix(result) == kOk;
}

int CExpEval::Parse(const char* text) {
    m_text = text;
    m_tokens.clear();
    m_postfix.clear();
    m_parsed = false;
    Report(kOk, "", -1);
    if (!text || !*text) return Report(kSyntax, "Error: Empty Expression.", -1);
    m_textLength = clampPosition(std::strlen(text));
    try {
        Tokenize();
        ConvertUnarySigns();
        Check();
        BuildPostfix();
    } catch (const StageError& e) {
        m_postfix.clear();
        return e.code;
    }
    m_stack.resize(m_postfix.size() + 1);
    return kOk;
}

// ---- Tokenizer ----

void CExpEval::AddToken(const Token& t) {
    if (m_tokens.size() >= static_cast<size_t>(kMaxTokens)) Fail(kLimit, "Error: Too many tokens.", t.pos);
    m_tokens.push_back(t);
}

void CExpEval::Tokenize() {
    const unsigned char* s = reinterpret_cast<const unsigned char*>(m_text);
    size_t i = 0;
    const auto token = [](int32_t kind, int32_t cls, size_t at, char op) {
        return Token{kind, cls, clampPosition(at), op, -1, 0.0};
    };
    while (s[i]) {
        const unsigned char c = s[i];
        const size_t at = i;
        if (kChars.of[c] == kSpace) {
            ++i;
        } else if (startsName(c)) {
            while (s[i] && continuesName(s[i])) ++i;
            const char* name = m_text + at;
            const size_t n = i - at;
            Token t = token(kSymbolTok, 7, at, 0);
            const int f = FunctionIndex(name, n);
            if (f >= 0) {
                t.kind = kFunctionTok;
                t.cls = 6;
                t.index = f;
            } else {
                t.index = FindName(name, n);
                if (t.index < 0 && !m_declareNames) Fail(kUnknownSymbol, "Error: Unknown symbol.", t.pos);
                if (t.index < 0) {
                    if (m_values.size() >= static_cast<size_t>(kMaxSymbols))
                        Fail(kLimit, "Error: Too many symbols.", t.pos);
                    t.index = AddSymbol(std::string(name, n).c_str());
                }
            }
            AddToken(t);
        } else if (c == '!') {
            if (s[i + 1] == '=') {
                AddToken(token(kCompareTok, 14, at, 'n'));
                i += 2;
            } else {
                AddToken(token(kNotTok, 15, at, '!'));
                ++i;
            }
        } else if (isDigit(c) || c == '.') {
            bool digits = false;
            while (isDigit(s[i])) ++i, digits = true;
            if (s[i] == '.') {
                ++i;
                while (isDigit(s[i])) ++i, digits = true;
            }
            if (!digits) Fail(kLexical, "Error: Expected a digit.", clampPosition(i));
            if (s[i] == 'e' || s[i] == 'E') {
                ++i;
                if (s[i] == '+' || s[i] == '-') ++i;
                if (!isDigit(s[i])) Fail(kLexical, "Error: Expected a digit.", clampPosition(i));
                while (isDigit(s[i])) ++i;
            }
            if (s[i] == '.' || continuesName(s[i])) Fail(kLexical, "Error: Invalid number.", clampPosition(at));
            Token t = token(kNumberTok, 1, at, 0);
            t.number = std::strtod(m_text + at, nullptr);
            AddToken(t);
        } else if (std::strchr("+-*/^", c)) {
            const int32_t cls = c == '+' ? 0 : c == '-' ? 1 : c == '*' ? 2 : c == '/' ? 3 : 4;
            AddToken(token(kBinaryTok, cls, at, static_cast<char>(c)));
            ++i;
        } else if (c == '(' || c == ')') {
            AddToken(token(kParenTok, c == '(' ? 8 : 9, at, static_cast<char>(c)));
            ++i;
        } else if (c == '&' || c == '|') {
            if (s[i + 1] != c) Fail(kLexical, "Error: Expected a logical operator.", clampPosition(at));
            AddToken(token(kLogicalTok, c == '&' ? 11 : 12, at, static_cast<char>(c)));
            i += 2;
        } else if (c == '=' || c == '<' || c == '>') {
            const bool withEq = s[i + 1] == '=';
            if (c == '=' && !withEq)
                Fail(kLexical, "Error: Expected a comparison or relational operator.", clampPosition(at));
            const char op = c == '=' ? 'e' : c == '<' ? (withEq ? 'l' : '<') : (withEq ? 'g' : '>');
            AddToken(token(kCompareTok, c == '=' ? 14 : 13, at, op));
            i += withEq ? 2 : 1;
        } else {
            Fail(kLexical, "Error: Illegal character.", clampPosition(at));
        }
    }
    AddToken(token(kEndTok, 10, i, 0));
}

// ---- Unary signs ----

void CExpEval::ConvertUnarySigns() {
    size_t out = 0;
    for (size_t i = 0; i < m_tokens.size(); ++i) {
        Token t = m_tokens[i];
        if (t.kind == kBinaryTok && (t.op == '+' || t.op == '-')) {
            const Token* prev = out ? &m_tokens[out - 1] : nullptr;
            const bool unary = !prev || (prev->kind == kParenTok && prev->op == '(') ||
                               (prev->kind == kBinaryTok && prev->op == '^');
            if (unary && t.op == '+') continue;
            if (unary) {
                t.kind = kUnaryMinusTok;
                t.cls = 5;
            }
        }
        m_tokens[out++] = t;
    }
    m_tokens.resize(out);
}

// ---- Checks ----

void CExpEval::Check() {
    bool operandDue = true;
    for (const Token& t : m_tokens) {
        switch (t.kind) {
            case kSymbolTok:
            case kNumberTok:
                if (!operandDue) Fail(kExpectedOperator, "Error: Expected an operator.", t.pos);
                operandDue = false;
                break;
            case kParenTok:
                if (t.op == '(' && !operandDue) Fail(kExpectedOperator, "Error: Expected an operator.", t.pos);
                if (t.op == ')' && operandDue) Fail(kExpectedOperand, "Error: Expected an operand.", t.pos);
                break;
            case kFunctionTok:
            case kUnaryMinusTok:
            case kNotTok:
                if (!operandDue) Fail(kExpectedOperator, "Error: Expected an operator.", t.pos);
                break;
            case kEndTok:
                break;
            default:  // binary arithmetic, logical and comparison operators
                if (operandDue) Fail(kExpectedOperand, "Error: Expected an operand.", t.pos);
                operandDue = true;
                break;
        }
    }
    for (size_t i = 0; i + 1 < m_tokens.size(); ++i) {
        if (m_tokens[i].kind != kFunctionTok) continue;
        const Token& next = m_tokens[i + 1];
        if (next.kind != kParenTok || next.op != '(')
            Fail(kExpectedParen, "Error: Expected '('.", next.kind == kEndTok ? m_textLength : next.pos);
    }
    if (operandDue) Fail(kSyntax, "Unexpected end of expression.", m_textLength);
}

// ---- Parser ----

void CExpEval::Emit(const Token& t) {
    using namespace expops;
    Op op{kEndOp, t.pos, t.index, t.number};
    switch (t.kind) {
        case kSymbolTok: op.code = kSymbolOp; break;
        case kNumberTok: op.code = kNumberOp; break;
        case kUnaryMinusTok: op.code = kNegOp; break;
        case kFunctionTok: op.code = kFunctionOp; break;
        case kNotTok: op.code = kNotOp; break;
        case kBinaryTok:
            op.code = t.op == '+' ? kAddOp : t.op == '-' ? kSubOp : t.op == '*' ? kMulOp : t.op == '/' ? kDivOp : kPowOp;
            break;
        case kLogicalTok: op.code = t.op == '&' ? kAndOp : kOrOp; break;
        case kCompareTok: {
            static const char kOps[] = "><glen";
            op.code = static_cast<uint8_t>(kGtOp + (std::strchr(kOps, t.op) - kOps));
            break;
        }
        case kEndTok: op.code = kEndOp; break;
        default: op.code = kBadOp; break;
    }
    m_postfix.push_back(op);
}

void CExpEval::BuildPostfix() {
    std::vector<int> stack;  // token indices; -1 is the bottom end marker
    stack.reserve(m_tokens.size() + 1);
    stack.push_back(-1);
    for (size_t i = 0; i < m_tokens.size(); ++i) {
        const Token& t = m_tokens[i];
        if (t.kind == kNumberTok) {
            Emit(t);
            continue;
        }
        for (;;) {
            const int top = stack.back();
            const int topClass = top < 0 ? 10 : m_tokens[top].cls;
            const int action = kAction[t.cls][topClass];
            if (action == 1) {
                stack.push_back(static_cast<int>(i));
                break;
            }
            if (action == -1) {
                Emit(m_tokens[top]);
                stack.pop_back();
                continue;
            }
            if (action == 0) {
                stack.pop_back();
                break;
            }
            if (action == 99) {
                m_parsed = true;
                return;
            }
            Fail(kSyntax, "Error: Syntax error.", t.pos);
        }
    }
    Fail(kSyntax, "Error: Syntax error.", m_textLength);
}
