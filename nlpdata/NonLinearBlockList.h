// The nonlinear block list of a model that has no nonlinear blocks.
//
// The block machinery (blocks of rows computed by an external evaluator) is a
// separate component; this list is the one the nonlinear model holds when
// that component is absent. It is always empty.
//
// Its binary section is a single int32 block count, 0. Reading accepts only
// that: a short read, or any other count, throws, since blocks cannot be
// restored without the component that made them.
#pragma once

#include "nlpdata/INonLinearBlockList.h"

class NonLinearBlockList : public INonLinearBlockList {
public:
    void Destroy() override { delete this; }
    int NumberOfBlocks() override { return 0; }
    void StreamWrite(std::ostream* os) override;
    void StreamRead(std::istream* is) override;
    // Nothing to compute: true.
    bool PreEvaluateBlocks() override { return true; }
    // Prints nothing: there are no blocks.
    void Display(std::ostream&) override {}
};
