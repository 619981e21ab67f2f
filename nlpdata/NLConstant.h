// One numeric constant of a nonlinear term.
#pragma once

#include "nlpdata/INonLinearity.h"

class NLConstant : public INLConstant {
public:
    NLConstant() = default;
    explicit NLConstant(double v) : m_value(v) {}
    ~NLConstant() override = default;

    void Destroy() override { delete this; }
    void SetValue(double v) override { m_value = v; }
    double GetValue() const override { return m_value; }
    // "NLConstant = " value, end of line.
    void Display(std::ostream& os) override;

private:
    double m_value = 0.0;
};
