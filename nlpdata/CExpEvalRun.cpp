// CExpEval: the stack machine over the postfix program, for the value alone
// (EvaluatePostfix, the fast path) and for the value with its derivatives
// by every symbol (EvaluateGradient: one forward pass that keeps each
// step's value and operands, one backward pass of adjoints).
#include <cmath>

#include "nlpdata/CExpEval.h"
#include "nlpdata/CExpEvalOps.h"

using namespace expops;

namespace {

constexpr const char* kNoOperand = "Error: Expected an operand.";

bool isBinary(uint8_t code) { return (code >= kAddOp && code <= kPowOp) || (code >= kAndOp && code <= kNeOp); }
bool isUnary(uint8_t code) { return code >= kNegOp && code <= kNotOp; }

double applyFunction(int index, double x) {
    switch (index) {
        case 0: return std::sqrt(x);
        case 1: return std::fabs(x);
        case 2: return std::log(x);
        case 3: return std::log10(x);
        default: return std::exp(x);
    }
}

double functionDerivative(int index, double x, double fx) {
    switch (index) {
        case 0: return 0.5 / fx;
        case 1: return x > 0.0 ? 1.0 : x < 0.0 ? -1.0 : 0.0;
        case 2: return 1.0 / x;
        case 3: return 1.0 / (x * std::log(10.0));
        default: return fx;
    }
}

double applyBinary(uint8_t code, double a, double b) {
    switch (code) {
        case kAddOp: return a + b;
        case kSubOp: return a - b;
        case kMulOp: return a * b;
        case kDivOp: return a / b;
        case kPowOp: return std::pow(a, b);
        case kAndOp: return a != 0.0 && b != 0.0 ? 1.0 : 0.0;
        case kOrOp: return a != 0.0 || b != 0.0 ? 1.0 : 0.0;
        case kGtOp: return a > b ? 1.0 : 0.0;
        case kLtOp: return a < b ? 1.0 : 0.0;
        case kGeOp: return a >= b ? 1.0 : 0.0;
        case kLeOp: return a <= b ? 1.0 : 0.0;
        case kEqOp: return a == b ? 1.0 : 0.0;
        case kNeOp: return a != b ? 1.0 : 0.0;
        default: return 1e30;  // an unknown operator character
    }
}

}  // namespace

int CExpEval::EvaluatePostfix(double& result) {
    if (!m_parsed) return kNotParsed;
    double* st = m_stack.data();
    size_t sp = 0;
    const double* values = m_values.data();
    for (const Op& op : m_postfix) {
        switch (op.code) {
            case kNumberOp: st[sp++] = op.number; break;
            case kSymbolOp: st[sp++] = values[op.index]; break;
            case kAddOp:
            case kSubOp:
            case kMulOp:
            case kPowOp:
            case kAndOp:
            case kOrOp:
            case kGtOp:
            case kLtOp:
            case kGeOp:
            case kLeOp:
            case kEqOp:
            case kNeOp:
                if (sp < 2) return Report(kSyntax, kNoOperand, op.pos);
                --sp;
                st[sp - 1] = applyBinary(op.code, st[sp - 1], st[sp]);
                break;
            case kDivOp:
                if (sp < 2) return Report(kSyntax, kNoOperand, op.pos);
                if (st[sp - 1] == 0.0) return Report(kDivideByZero, "Error: Divide by zero error.", op.pos);
                --sp;
                st[sp - 1] /= st[sp];
                break;
            case kNegOp:
                if (sp < 1) return Report(kSyntax, kNoOperand, op.pos);
                st[sp - 1] = -st[sp - 1];
                break;
            case kFunctionOp:
                if (sp < 1) return Report(kSyntax, kNoOperand, op.pos);
                st[sp - 1] = applyFunction(op.index, st[sp - 1]);
                break;
            case kNotOp:
                if (sp < 1) return Report(kSyntax, kNoOperand, op.pos);
                st[sp - 1] = st[sp - 1] == 0.0 ? 1.0 : 0.0;
                break;
            case kEndOp: return Report(kSyntax, "Error: Found symbols after end of expression.", op.pos);
            default: return Report(kSystem, "Error: System error.", -1);
        }
    }
    if (sp < 1) return Report(kSyntax, kNoOperand, -1);
    result = st[sp - 1];
    return kOk;
}

int CExpEval::EvaluateGradient(double& result, double* grad) {
    const int code = EvaluatePostfix(result);
    if (code != kOk) return code;
    // The value check above also proved that every step finds its operands.
    const size_t n = m_postfix.size();
    std::vector<double>& val = m_adjoint;  // first the step values, then reused below
    val.assign(2 * n, 0.0);
    m_children.assign(2 * n, -1);
    std::vector<int32_t>& at = m_at;  // the steps whose values are on the stack
    at.clear();
    for (size_t i = 0; i < n; ++i) {
        const Op& op = m_postfix[i];
        double v = 0.0;
        if (op.code == kNumberOp) {
            v = op.number;
        } else if (op.code == kSymbolOp) {
            v = m_values[op.index];
        } else if (isBinary(op.code)) {
            const int32_t b = at.back();
            at.pop_back();
            const int32_t a = at.back();
            at.pop_back();
            m_children[2 * i] = a;
            m_children[2 * i + 1] = b;
            v = applyBinary(op.code, val[a], val[b]);
        } else if (isUnary(op.code)) {
            const int32_t a = at.back();
            at.pop_back();
            m_children[2 * i] = a;
            v = op.code == kNegOp ? -val[a] : op.code == kNotOp ? (val[a] == 0.0 ? 1.0 : 0.0)
                                                                : applyFunction(op.index, val[a]);
        }
        val[i] = v;
        at.push_back(static_cast<int32_t>(i));
    }
    for (int i = 0; i < NumberOfSymbols(); ++i) grad[i] = 0.0;
    double* adj = val.data() + n;
    adj[at.back()] = 1.0;
    for (size_t k = n; k-- > 0;) {
        const Op& op = m_postfix[k];
        const double g = adj[k];
        if (g == 0.0) continue;
        const int32_t a = m_children[2 * k], b = m_children[2 * k + 1];
        switch (op.code) {
            case kSymbolOp: grad[op.index] += g; break;
            case kAddOp: adj[a] += g; adj[b] += g; break;
            case kSubOp: adj[a] += g; adj[b] -= g; break;
            case kMulOp: adj[a] += g * val[b]; adj[b] += g * val[a]; break;
            case kDivOp: adj[a] += g / val[b]; adj[b] -= g * val[k] / val[b]; break;
            case kPowOp:
                if (val[b] != 0.0) adj[a] += g * val[b] * std::pow(val[a], val[b] - 1.0);
                if (val[a] > 0.0) adj[b] += g * val[k] * std::log(val[a]);
                break;
            case kNegOp: adj[a] -= g; break;
            case kFunctionOp: adj[a] += g * functionDerivative(op.index, val[a], val[k]); break;
            default: break;  // numbers, logical and comparison steps are flat
        }
    }
    return kOk;
}
