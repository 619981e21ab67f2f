// The list of nonlinear blocks of a model: groups of rows and variables that
// an external evaluator computes as a whole. The block machinery itself is a
// separate component; the nonlinear model only needs to write, read and
// pre-evaluate the list.
#pragma once

#include <istream>
#include <ostream>

class INonLinearBlockList {
public:
    virtual ~INonLinearBlockList() = default;
    virtual void Destroy() = 0;
    virtual int NumberOfBlocks() = 0;
    // Own binary section, written after the term arrays of the model file.
    virtual void StreamWrite(std::ostream* os) = 0;
    virtual void StreamRead(std::istream* is) = 0;
    // Lets every block compute its residuals and sensitivities at the current
    // point; false when a block failed.
    virtual bool PreEvaluateBlocks() = 0;
    virtual void Display(std::ostream& os) = 0;
};
