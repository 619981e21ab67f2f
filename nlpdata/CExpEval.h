// CExpEval: evaluates a one-line arithmetic and logical expression over named
// symbols to a double.
//
//   CExpEval ev;                       // unknown names refused, names compare case-insensitively
//   int x = ev.AddSymbol("x", 2.0);
//   ev.SetExpression("x^3^2 + sqrt(abs(-16)) - (x >= 2 && !0)");
//   double r;
//   if (ev.Evaluate(r)) ...            // r == 512 + 4 - 1
//   else ev.GetErrorMessage(), ev.GetErrorPosition()
//
// Parse once, evaluate many times:
//   ev.Parse("x*x + 1");                       // 0 when accepted
//   for (...) { ev.SetSymbolValue(x, v); ev.EvaluatePostfix(r); }
//   ev.EvaluateGradient(r, grad);              // grad[i] = d r / d symbol i
//
// Stages: a tokenizer makes at most 500 tokens (the end marker included),
// the unary signs are converted ("+" or "-" first, or after "(" or "^", is
// unary; a unary "+" is dropped), three checks run (operands and operators
// alternate; a function name is followed by "("; the text does not end in
// an operator), a table-driven operator-precedence parser makes the postfix
// sequence, and a stack machine evaluates it. So -2^2 is 4, 2^3^2 is 512,
// 2*-3 is refused ("Error: Expected an operand.") while 2^-3 and (-3) read.
//
// Operators, loosest first: "||", "&&", "==" "!=", "<" ">" "<=" ">=", "+" "-",
// "*" "/", unary minus, "^" (right-associative); "!" and the functions
// sqrt, abs, ln, lg (base 10), exp apply to what follows them. Comparisons
// and logical operators give 1 or 0.
//
// Names: a name starts with a letter, a byte of code 128 or above, or one of
// the symbol characters ~`@#$%_[]\{}:;'",? and continues with those and
// digits. The characters & | < > also count as symbol characters but, since
// they spell operators, they always end a name ("x<2" is a comparison; a
// lone "&" is "Error: Expected a logical operator."). Function names match
// like symbol names (case-insensitively unless exact names are set).
//
// Choices of this evaluator:
// - An identifier that is neither a function nor a known symbol is refused
//   with "Error: Unknown symbol." (code 2) at its position, so that a typing
//   mistake never reads as 0 - unless the evaluator was made with
//   `declareNames`, which adds every new name to the table (value 0); the
//   user-equation term parses its formula that way and then binds the names
//   to its variables.
// - Numbers: digits, an optional "." fraction, an optional exponent "e" or
//   "E" with an optional sign ("1e-3", "2.5E+4", ".5", "5."). A "." or an
//   exponent without digits is "Error: Expected a digit." at the place of the
//   missing digit; a number run into a letter, digit or "." ("2x", "1.2.3")
//   is "Error: Invalid number." at the number's start. Tokenizer errors all
//   have code 1.
// - Limits: a text of more than 500 tokens is "Error: Too many tokens."
//   (code 4) at the first token that does not fit; a 501st symbol is
//   "Error: Too many symbols." (code 4) when it is declared by the text, and
//   AddSymbol returns -1.
// - "Error: Empty Expression." has code 5.
//
// Codes: 0 success; 1 tokenizer error; 2 unknown symbol; 3 divide by zero;
// 4 a table limit; 5 syntax error, unexpected end, an operand missing during
// evaluation, an invalid logical or comparison operator, symbols after the
// end; 6 system error; 7 evaluation asked for without an accepted parse;
// 8 expected an operand; 9 expected an operator; 10 expected "(".
// Positions are 0-based character offsets into the text, -1 when none.
//
// No recursion and no growth past the fixed limits, so any text (any length,
// any bytes but NUL) ends in a value or in one of the messages above.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

struct ExpFunction {
    const char* name;
    double (*fn)(double);
};

class CExpEval {
public:
    static constexpr int kMaxTokens = 500;
    static constexpr int kMaxSymbols = 500;

    enum Code {
        kOk = 0,
        kLexical = 1,
        kUnknownSymbol = 2,
        kDivideByZero = 3,
        kLimit = 4,
        kSyntax = 5,
        kSystem = 6,
        kNotParsed = 7,
        kExpectedOperand = 8,
        kExpectedOperator = 9,
        kExpectedParen = 10,
    };

    explicit CExpEval(bool declareNames = false, bool exactNames = false);
    virtual ~CExpEval();

    // The whole run over the text set by SetExpression: parse, then
    // evaluate. False on any error; the message and position stay readable.
    virtual bool Evaluate(double& result);
    // Evaluates the accepted postfix sequence at the symbols' current values;
    // returns 0 or an error code (7 when no parse was accepted).
    virtual int EvaluatePostfix(double& result);
    // The function table: sqrt, abs, ln, lg, exp (count 5).
    virtual void FunctionTable(const ExpFunction*& table, int& count) const;
    // Tokenizes and parses `text` (which becomes the expression; not owned,
    // it must outlive the call); returns 0 or an error code.
    virtual int Parse(const char* text);

    // Value and derivatives of the accepted expression: grad (one slot per
    // symbol, at least NumberOfSymbols()) receives d result / d symbol.
    // Comparisons, logical operators and abs at 0 have derivative 0; in a^b
    // the derivative by b is a^b ln a for a > 0 and 0 otherwise.
    int EvaluateGradient(double& result, double* grad);

    void SetExpression(const char* text) { m_text = text; }
    const char* GetExpression() const { return m_text; }

    // Adds a symbol (or finds it when the name is known) and returns its
    // index; -1 when the table is full or the name is empty.
    int AddSymbol(const char* name, double value = 0.0);
    // The index of a symbol, -1 when unknown.
    int FindSymbol(const char* name) const;
    void SetSymbolValue(int index, double value) {
        if (index >= 0 && static_cast<size_t>(index) < m_values.size()) m_values[index] = value;
    }
    double GetSymbolValue(int index) const;
    int NumberOfSymbols() const { return static_cast<int>(m_values.size()); }
    const char* SymbolName(int index) const;

    bool IsParsed() const { return m_parsed; }
    const char* GetErrorMessage() const { return m_message; }
    int GetErrorPosition() const { return m_position; }
    int GetErrorCode() const { return m_code; }
    // Number of tokens of the last tokenized text, end marker included.
    int NumberOfTokens() const { return static_cast<int>(m_tokens.size()); }

private:
    struct Token {
        int32_t kind;
        int32_t cls;
        int32_t pos;
        char op;         // operator character; comparisons: < > l(<=) g(>=) e(==) n(!=)
        int32_t index;   // symbol or function index
        double number;
    };
    // One step of the postfix program.
    struct Op {
        uint8_t code;
        int32_t pos;
        int32_t index;
        double number;
    };

    [[noreturn]] void Fail(int code, const char* message, int position);
    void Tokenize();
    void ConvertUnarySigns();
    void Check();
    void BuildPostfix();
    void Emit(const Token& t);
    void AddToken(const Token& t);
    int FindName(const char* text, size_t n) const;
    int FunctionIndex(const char* text, size_t n) const;
    const std::string& Key(const char* text, size_t n) const;
    int Report(int code, const char* message, int position);

    bool m_declareNames;
    bool m_exactNames;
    const char* m_text = nullptr;
    int m_textLength = 0;

    std::vector<std::string> m_names;
    std::vector<double> m_values;
    std::unordered_map<std::string, int> m_index;
    mutable std::string m_key;

    std::vector<Token> m_tokens;
    std::vector<Op> m_postfix;
    std::vector<double> m_stack;
    std::vector<int32_t> m_children;  // per op: left and right operand op
    std::vector<double> m_adjoint;
    std::vector<int32_t> m_at;
    bool m_parsed = false;

    const char* m_message = "";
    int m_position = -1;
    int m_code = 0;
};
