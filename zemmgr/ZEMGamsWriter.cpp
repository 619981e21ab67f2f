// GAMS model source and the penalty file of the model manager.
//
// GAMS names are case-blind, so every name goes through NameScreen. Range
// rows become two rows, NAME_LE and NAME_GE; the objective row defines the
// free variable NAME_OBJ and each free row the free variable NAME_FR.
//
// Every term is written as the GAMS algebra of its value:
//   XPROD, XPROD2   c1 * x1 * ... * xn          CONST, CONSTPROD  a number
//   EXPX            c1 * exp(c2 + sum)          POW   c1 * rPower(c2, sum)
//   LNX             c1 * ifThen(X >= eps, log(X), log(eps) + (X - eps) / eps)
//   XPOW            c1 * rPower(c3 + sum, c2)   DIV   (k * numerator) / (denominator)
//   EVAP            nested ifThen over T, H = y1 + ... + y(m-1), L = ym
//   FLTQB           ifThen(B <= A, D - E, B*C + A*D - A*C - B*E)
// GAMS has no exponential integral and no form for the curve, distillation
// and external terms: a model holding one (active) is refused before a
// character is written, naming the term, and so is a model whose names do
// not make distinct GAMS symbols of at most 63 characters.
#include <cstdio>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/ZEMFormat.h"
#include "zemmgr/ZEMMgr.h"
#include "zemmgr/ZEMRowLimits.h"

namespace {

std::string num(double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15g", v);
    return buf;
}

std::string screened(const char* name) {
    std::string s = name ? name : "";
    ZEMNameScreen(s);
    return s;
}

struct TermArgs {
    std::vector<std::string> vars;
    std::vector<double> consts;
};

TermArgs argsOf(INonLinearity* t) {
    TermArgs a;
    for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) a.vars.push_back(screened(v->GetName()));
    for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst()) a.consts.push_back(c->GetValue());
    return a;
}

double constAt(const TermArgs& a, size_t i, double absent) {
    return i < a.consts.size() ? a.consts[i] : absent;
}

std::string sumOf(const std::vector<std::string>& vars, size_t from, size_t to) {
    std::string s;
    for (size_t i = from; i < to && i < vars.size(); ++i) s += (s.empty() ? "" : " + ") + vars[i];
    return s.empty() ? "0" : s;
}

// The GAMS expression of a term; empty when the type has no closed form.
std::string gamsTerm(INonLinearity* t) {
    const TermArgs a = argsOf(t);
    const size_t nv = a.vars.size();
    const std::string c1 = num(constAt(a, 0, 0.0));
    switch (t->GetType()) {
    case 1:
    case 19: {
        std::string s = c1;
        for (const std::string& v : a.vars) s += " * " + v;
        return s;
    }
    case 2: {
        const std::string eps = num(a.consts.size() == 3 ? a.consts[2] : 1e-6);
        const std::string x = "(" + num(constAt(a, 1, 0.0)) + " + " + sumOf(a.vars, 0, nv) + ")";
        return c1 + " * ifThen(" + x + " >= " + eps + ", log(" + x + "), log(" + eps + ") + (" + x +
               " - " + eps + ") / " + eps + ")";
    }
    case 3:
        return c1 + " * exp(" + num(constAt(a, 1, 0.0)) + " + " + sumOf(a.vars, 0, nv) + ")";
    case 4: {
        double s = 0.0;
        for (double c : a.consts) s += c;
        return num(s);
    }
    case 5: {
        double p = 1.0;
        for (double c : a.consts) p *= c;
        return num(p);
    }
    case 14:
        return c1 + " * rPower(" + num(constAt(a, 1, 0.0)) + ", " + sumOf(a.vars, 0, nv) + ")";
    case 15: {
        const double shift = a.consts.size() == 3 ? a.consts[2] : 0.0;
        return c1 + " * rPower(" + num(shift) + " + " + sumOf(a.vars, 0, nv) + ", " +
               num(constAt(a, 1, 0.0)) + ")";
    }
    case 16: {
        // T is the first constant; H the sum of all variables but the last,
        // L the last.
        if (nv == 0) return "";
        const std::string t = num(constAt(a, 0, 0.0));
        const std::string high = nv > 1 ? "(" + sumOf(a.vars, 0, nv - 1) + ")" : "0";
        const std::string& low = a.vars[nv - 1];
        return "ifThen(" + t + " < " + low + ", 0, ifThen(" + t + " > " + high + ", 100, ifThen(" +
               high + " = " + low + ", 0, 100 * (" + t + " - " + low + ") / (" + high + " - " + low +
               "))))";
    }
    case 20:
        if (nv != 5) return "0";  // the term is 0 without its five variables
        return "ifThen(" + a.vars[1] + " <= " + a.vars[0] + ", " + a.vars[3] + " - " + a.vars[4] +
               ", " + a.vars[1] + " * " + a.vars[2] + " + " + a.vars[0] + " * " + a.vars[3] +
               " - " + a.vars[0] + " * " + a.vars[2] + " - " + a.vars[1] + " * " + a.vars[4] + ")";
    case 21: {
        if (a.consts.size() < 3) return "";
        const size_t n = static_cast<size_t>(a.consts[0]);
        const size_t m = static_cast<size_t>(a.consts[1]);
        if (n + m != nv || a.consts.size() != 3 + n + m) return "";
        std::string num_, den;
        for (size_t i = 0; i < m; ++i)
            num_ += (i ? " + " : "") + num(a.consts[2] * a.consts[3 + n + i]) + " * " + a.vars[n + i];
        for (size_t i = 0; i < n; ++i)
            den += (i ? " + " : "") + num(a.consts[3 + i]) + " * " + a.vars[i];
        return "(" + (num_.empty() ? std::string("0") : num_) + ") / (" +
               (den.empty() ? std::string("1") : den) + ")";
    }
    default:
        return "";
    }
}

constexpr size_t kGamsNameMax = 63;

[[noreturn]] void refuseGams(const std::string& what, const std::string& why) {
    ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error", what + " cannot be written as GAMS: " + why,
              "ZEMMgr::GAMSModelInput");
}

// Records a GAMS symbol; refuses one that is too long or already taken.
void claimSymbol(std::set<std::string>& symbols, const std::string& symbol, const char* kind,
                 const char* name) {
    const std::string what = std::string(kind) + " \"" + name + "\"";
    if (symbol.size() > kGamsNameMax)
        refuseGams(what, "its GAMS name " + symbol + " is longer than 63 characters");
    if (!symbols.insert(symbol).second) refuseGams(what, "its GAMS name " + symbol + " is taken");
}

}  // namespace

void ZEMMgr::CheckGAMSWritable() {
    int position = 0;
    for (INonLinearity* t = m_nonlinear->FrstNonLinearityObject(); t;
         t = m_nonlinear->NextNonLinearityObject()) {
        ++position;
        if (t->Active() != 0 && gamsTerm(t).empty()) {
            const char* id = t->GetNonLinearityID();
            ILPEquation* row = t->GetEquationPtr();
            refuseGams("Term " + std::string(id ? id : "") + " #" + std::to_string(position) + " on row " +
                           (row ? row->GetName() : ""),
                       "GAMS has no form for it");
        }
    }
    std::set<std::string> symbols;
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        claimSymbol(symbols, screened(v->GetName()), "Variable", v->GetName());
    std::vector<ILPEquation*> ranged;
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject()) {
        const std::string base = screened(e->GetName());
        if (e->GetType() == ZEM_EQN_OBJECTIVE) claimSymbol(symbols, base + "_OBJ", "Equation", e->GetName());
        if (e->GetType() == ZEM_EQN_FREE) claimSymbol(symbols, base + "_FR", "Equation", e->GetName());
        if (ZEMGetRowLimits(e).ranged)
            ranged.push_back(e);
        else
            claimSymbol(symbols, base, "Equation", e->GetName());
    }
    // A range row's halves must not meet another row's name.
    for (ILPEquation* e : ranged) {
        const std::string base = screened(e->GetName());
        if (symbols.count(base + "_LE") != 0 || symbols.count(base + "_GE") != 0)
            ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error", "Error processing Range Rows in GAMS input generation",
                      "ZEMMgr::GAMSModelInput");
        claimSymbol(symbols, base + "_LE", "Equation", e->GetName());
        claimSymbol(symbols, base + "_GE", "Equation", e->GetName());
    }
    claimSymbol(symbols, screened(m_title.empty() ? "ZEMMODEL" : m_title.c_str()), "Model", m_title.c_str());
}

void ZEMMgr::GAMSModelInput(std::ostream& os) {
    // Everything is checked before the first character is written.
    CheckGAMSWritable();
    os << "$OFFSYMLIST\n$OFFSYMXREF\n";
    os << "$EOLCOM # \n\n";

    // Variables: declarations, then bounds and levels.
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject()) {
        const char* kind = " VARIABLE           ";
        if (v->GetVarType() == ZEM_VAR_BINARY)
            kind = " BINARY VARIABLE    ";
        else if (v->GetVarType() == ZEM_VAR_DISCRETE)
            kind = " DISCRETE VARIABLE  ";
        else if (v->GetBoundLower() == 0.0)
            kind = " POSITIVE VARIABLE  ";
        os << kind << screened(v->GetName()) << " ;\n";
    }
    std::string objective;
    std::vector<ILPEquation*> rows;
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject()) {
        rows.push_back(e);
        if (e->GetType() == ZEM_EQN_OBJECTIVE) {
            if (objective.empty()) objective = screened(e->GetName());
            os << "FREE VARIABLE " << screened(e->GetName()) << "_OBJ ;\n";
        } else if (e->GetType() == ZEM_EQN_FREE) {
            os << "FREE VARIABLE " << screened(e->GetName()) << "_FR ;\n";
        }
    }
    os << "\n";
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject()) {
        const std::string name = screened(v->GetName());
        const double lo = v->GetBoundLower(), up = v->GetBoundUpper();
        const bool defaultZeroLower = v->GetVarType() == ZEM_VAR_BINARY ||
                                      v->GetVarType() == ZEM_VAR_DISCRETE || lo == 0.0;
        if (lo == up) {
            os << ZEMFormat("  %s.FX = % #12.6e ;", name.c_str(), lo) << "\n";
        } else {
            if (lo > -ZEM_INFINITY && !(defaultZeroLower && lo == 0.0))
                os << ZEMFormat("  %s.LO = % #12.6e ;", name.c_str(), lo) << "\n";
            if (up < ZEM_INFINITY) os << ZEMFormat("  %s.UP = % #12.6e ;", name.c_str(), up) << "\n";
        }
        os << ZEMFormat("  %s.L = % #12.6e ;", name.c_str(), v->GetVarValue()) << "\n";
    }

    // Equation names; a range row is declared as its two halves.
    os << "\nEQUATIONS\n";
    std::vector<ILPEquation*> ranged;
    for (ILPEquation* e : rows) {
        if (ZEMGetRowLimits(e).ranged)
            ranged.push_back(e);
        else
            os << "  " << screened(e->GetName()) << "\n";
    }
    if (!ranged.empty()) {
        os << "* Expanded Range Rows\n\n";
        for (ILPEquation* e : ranged) {
            const std::string base = screened(e->GetName());
            os << "  " << base << "_LE\n  " << base << "_GE\n";
        }
    }
    os << "  ;\n\n";

    // Equation bodies.
    ILPMatrix* matrix = Matrix();
    for (ILPEquation* e : rows) {
        const int row = e->GetIndex();
        std::ostringstream body;
        for (ILPNonZero* nz = matrix->RowFrstNonZeroObject(row); nz;
             nz = matrix->RowNextNonZeroObject()) {
            const double c = nz->GetCoefficient();
            if (c == 0.0) continue;
            body << "\n   " << (c < 0 ? "- " : "+ ") << num(c < 0 ? -c : c) << " * "
                 << screened(nz->GetVariablePtr()->GetName());
        }
        for (INonLinearity* t = m_nonlinear->RowFrstNonLinearityObject(row); t;
             t = m_nonlinear->RowNextNonLinearityObject()) {
            if (t->Active() == 0) continue;
            body << "\n   + " << gamsTerm(t);
        }
        std::string lhs = body.str();
        if (lhs.empty()) lhs = "\n   0";
        const std::string name = screened(e->GetName());
        const ZEMRowLimits lim = ZEMGetRowLimits(e);
        switch (e->GetType()) {
        case ZEM_EQN_OBJECTIVE:
            os << name << " .. " << name << "_OBJ =E= " << lhs;
            if (e->GetRHS() != 0.0) os << "\n   - " << num(e->GetRHS());
            os << " ;\n";
            break;
        case ZEM_EQN_FREE:
            os << name << " .. " << name << "_FR =E= " << lhs << " ;\n";
            break;
        default:
            if (lim.ranged) {
                os << name << "_LE .. " << lhs << " =L= " << num(lim.upper) << " ;\n";
                os << name << "_GE .. " << lhs << " =G= " << num(lim.lower) << " ;\n";
            } else {
                const char* rel = e->GetType() == ZEM_EQN_LE   ? " =L= "
                                  : e->GetType() == ZEM_EQN_GE ? " =G= "
                                                               : " =E= ";
                os << name << " .. " << lhs << rel << num(e->GetRHS()) << " ;\n";
            }
        }
    }

    const std::string model = screened(m_title.empty() ? "ZEMMODEL" : m_title.c_str());
    os << "\nMODEL " << model << " /ALL/;\n";
    os << "OPTION ITERLIM = 10000; \n";
    os << "OPTION NLP = CONOPT3; \n";
    os << model << ".RESLIM = 10000; \n";
    os << model << ".WORKSPACE = 100; \n";
    if (objective.empty())
        os << "* No objective row: nothing to solve\n";
    else
        os << "SOLVE " << model << " MAXIMIZING " << objective << "_OBJ USING NLP;\n";
}

// The penalty file lists the soft (relaxed) bounds of the variables that
// have any: name, bounds and relaxed bounds, one line each, after a count.
int ZEMMgr::WritePenaltyFile(const char* path) {
    auto fail = []() {
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMDataMgr Error", "Error during writing of Penalty.dat file",
                  "ZEMMgr::WritePenaltyFile");
    };
    std::FILE* fp = std::fopen(path ? path : "", "w+");
    if (fp == nullptr) fail();
    std::vector<ILPVariable*> soft;
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        if (v->GetRelaxedBoundLower() > -ZEM_INFINITY || v->GetRelaxedBoundUpper() < ZEM_INFINITY)
            soft.push_back(v);
    bool ok = std::fprintf(fp, "* Penalty data : %s\n%d\n", m_title.c_str(),
                           static_cast<int>(soft.size())) >= 0;
    for (ILPVariable* v : soft) {
        if (!ok) break;
        ok = std::fprintf(fp, "%-20s % #14.6e % #14.6e % #14.6e % #14.6e\n", v->GetName(),
                          v->GetBoundLower(), v->GetBoundUpper(), v->GetRelaxedBoundLower(),
                          v->GetRelaxedBoundUpper()) >= 0;
    }
    if (std::fclose(fp) != 0) ok = false;
    if (!ok) fail();
    return 0;
}
