// Common layer of the concrete term types: the derivative protocol.
//
// A concrete type computes its partial derivatives once, into one slot per
// distinct argument (UniqueVars() order), in Gradient(). This layer then
//   - adds them into the term's matrix entries (TermJacobian()), walking the
//     entries in step with the distinct arguments, which is the order in
//     which the pool stores them;
//   - or writes them as a listing (TermJacobian(std::ostream&)).
// A type whose value is a function of the sum of its arguments uses
// AddToEveryOccurrence, so an argument that occurs k times receives k times
// the derivative with respect to the sum.
//
// Display writes the type's header line (WriteHeader) before the common
// listing of the base.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "nlpdata/NonLinearity.h"

class NLGradientTerm : public NonLinearity {
public:
    // Adds Gradient() into the entries, entry i receiving the derivative of
    // distinct argument i. An argument without an entry receives nothing.
    void TermJacobian() override;
    // "Jacobian of NonLinearity [i] EqnIdx = r : ID", then one line per
    // distinct argument, "   NAME = value", or "   no derivatives".
    void TermJacobian(std::ostream& os) override;
    void Display(std::ostream& os) override;

    // The derivatives at the current point, one per distinct argument;
    // empty when the term adds none there.
    std::vector<double> Derivatives();

protected:
    NLGradientTerm(int16_t code, const char* keyword);

    // The header line of Display, with its line end.
    virtual void WriteHeader(std::ostream& os) = 0;
    // Fills `grad` (sized to the distinct arguments and zeroed) with the
    // partial derivatives at the current point; false when the term adds no
    // derivatives at this point.
    virtual bool Gradient(std::vector<double>& grad) = 0;

    // For each argument occurrence (Vars() order), the position of its
    // variable among the distinct arguments. Rebuilt when arguments are added.
    const std::vector<int>& OccurrencePositions();
    // Sum of the current values of all argument occurrences.
    double ArgumentSum() const;
    // Value of argument occurrence i (0-based), 0 when there is none.
    double ArgumentValue(size_t i) const;
    // Adds `g` to the slot of every argument occurrence.
    void AddToEveryOccurrence(std::vector<double>& grad, double g);
    // Adds `g` to the slot of argument occurrence i (ignored when out of range).
    void AddToOccurrence(std::vector<double>& grad, size_t i, double g);
    // Adds the derivatives into the entries found by searching the entries
    // for each distinct argument (for types that cannot rely on the order).
    void AddBySearch(const std::vector<double>& grad);
    // Adds the derivatives into the entries walked in step.
    void AddInStep(const std::vector<double>& grad);

    // Names of the arguments joined by `sep` (argument order).
    std::string JoinArgumentNames(const char* sep) const;
    // Name of argument occurrence i, "" when there is none.
    std::string ArgumentName(size_t i) const;

    // Replaces an infinite result by the largest finite double of its sign, so
    // that a result too large to represent stays usable by a solver.
    static double Finite(double v);

    // Scratch space for the derivatives, reused from call to call.
    std::vector<double> m_grad;

private:
    std::vector<int> m_positions;
};
