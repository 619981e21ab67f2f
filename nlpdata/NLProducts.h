// Products of variables: NonLinearityProduct ("XPROD", code 1) and
// NonLinearityProduct2 ("XPROD2", code 19).
//
// Inputs: the first constant c1 (the multiplier) and the arguments x1..xn,
// repeats allowed. Value: c1 * x1 * x2 * ... * xn (c1 with no arguments).
//
// Derivatives: argument occurrence i contributes c1 times the product of all
// other occurrences, so an argument that occurs k times receives
// k * c1 * x^(k-1) * (the other factors). This is exact also where the
// product is 0: an argument at 0 receives c1 times the product of the others,
// and an argument away from 0 receives nothing when another one is 0.
//
// A term made of one variable occurring twice (c1 * x * x, the common square)
// takes a short path: on its first derivative it caches that variable and its
// single entry, and from then on adds 2 * c1 * x to that entry directly.
//
// By default the derivatives go to the entries walked in step with the
// distinct arguments (the order in which the pool stores them);
// SetNonZeroWalkInStep(false) makes the term search its entries for each
// argument instead, for entries stored in another order.
//
// The two keywords differ only in where a model file lists them: XPROD terms
// stand beside the linear coefficients, XPROD2 terms with the other
// nonlinear terms.
#pragma once

#include <cstdint>

#include "nlpdata/NLGradientTerm.h"

class NonLinearityProduct : public NLGradientTerm {
public:
    NonLinearityProduct();

    double EvaluateTerm() override;
    void TermJacobian() override;
    // "c1 * X1 * X2 * ... * Xn"
    void TermString(std::string& out) override;

    void SetNonZeroWalkInStep(bool inStep) { m_walkInStep = inStep ? 1 : 0; }
    bool GetNonZeroWalkInStep() const { return m_walkInStep != 0; }

protected:
    NonLinearityProduct(int16_t code, const char* keyword);

    // The product of the current values of all argument occurrences.
    virtual double VarProduct();
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;

private:
    // The variable and entry of a square term, filled on its first derivative.
    struct SquareCache {
        ILPVariable* var = nullptr;
        ILPNonZero* nz = nullptr;
    };
    SquareCache m_cache;
    // Number of argument occurrences when the cache was filled; 0 = empty.
    int32_t m_cacheArgs = 0;
    // 1: walk the entries in step with the arguments; 0: search them.
    uint8_t m_walkInStep = 1;
    // Prefix products of the argument values, reused between calls.
    std::vector<double> m_prefix;
};

class NonLinearityProduct2 : public NonLinearityProduct {
public:
    NonLinearityProduct2();

protected:
    void WriteHeader(std::ostream& os) override;
};
