// The reader of other tools' MPS files: free format, markers, the sign rule
// of equality ranges, continuations, negative upper bounds, OBJSENSE.
#include <sstream>

#include "mpsutil/MPSTestUtil.h"
#include "mpsutil/MPSToolsReader.h"

using namespace mpstest;

namespace {

ModelPtr ReadTools(const std::string& text) {
    ModelPtr model = NewModel();
    model->SetModelTitle("");
    MPSToolsReader reader(model.get());
    std::istringstream in(text);
    reader.ReadMPSFromStream(in);
    return model;
}

const std::string kFree = Lines({
    "NAME TOOLS", "OBJSENSE", "    MIN", "ROWS", " N COST", " E UP2", " E DOWN2", " L LIM", " N SPARE",
    "COLUMNS", " MARKER 'MARKER' 'INTORG'", " I1 COST 1 UP2 1", " I2 DOWN2 1 SPARE 3",
    " MARKER 'MARKER' 'INTEND'", " X COST 2", " LIM 5", " Y LIM 1 UP2 1",
    "RHS", " UP2 3 DOWN2 1", "RANGES", " UP2 2 DOWN2 -2", "BOUNDS", " UP BND I2 7", " UP Y -4", "ENDATA"});

TEST(MPSToolsReader, FreeFormatMarkersRangesContinuationsAndNegativeUpperBounds) {
    ModelPtr m = ReadTools(kFree);
    std::string title;
    m->GetModelTitle(title);
    EXPECT_EQ(title, "TOOLS");
    // The second N row is dropped; equality ranges follow their sign.
    EXPECT_EQ(EqnNames(m.get()), (std::vector<std::string>{"COST", "UP2", "DOWN2", "LIM"}));
    ILPEquation* up = Eqn(m.get(), "UP2");
    ILPEquation* down = Eqn(m.get(), "DOWN2");
    EXPECT_EQ(std::vector<double>({up->GetRHSLo(), up->GetRHSUp()}), std::vector<double>({3, 5}));
    EXPECT_EQ(std::vector<double>({down->GetRHSLo(), down->GetRHSUp()}), std::vector<double>({-1, 1}));
    // Marker columns are discrete in [0, 1] unless a bound says otherwise.
    EXPECT_EQ(Var(m.get(), "I1")->GetVarType(), ZEM_VAR_DISCRETE);
    EXPECT_EQ(Var(m.get(), "I1")->GetBoundUpper(), 1.0);
    EXPECT_EQ(Var(m.get(), "I2")->GetBoundUpper(), 7.0);
    EXPECT_EQ(Var(m.get(), "X")->GetVarType(), ZEM_VAR_CONTINUOUS);
    EXPECT_EQ(Coef(m.get(), "LIM", "X"), 5.0);  // the continuation card
    EXPECT_EQ(Var(m.get(), "Y")->GetBoundLower(), -ZEM_INFINITY);
    EXPECT_EQ(Var(m.get(), "Y")->GetBoundUpper(), -4.0);
}

TEST(MPSToolsReader, WhatTheModelCannotHoldIsRefused) {
    auto refused = [](const std::string& from, const std::string& to) {
        std::string text = kFree;
        text.replace(text.find(from), from.size(), to);
        return Raised([&] { ReadTools(text); }).Name();
    };
    EXPECT_EQ(refused("    MIN", "    MAXIMIZE"), "MPS OBJSENSE Error - Maximisation Is Not Carried");
    EXPECT_EQ(refused(" UP Y -4", " LO Y 0\n UP Y -4"),
              "MPS BOUNDS Section Error - Negative Upper Bound Over An Explicit Lower Bound Of 0");
    EXPECT_EQ(refused(" L LIM", " L LIM\n G EMPTY"), "MPS COLUMNS Section Error - Row Without Coefficients");
    EXPECT_EQ(refused(" I1 COST 1 UP2 1", " I1 COST 1 UP2 1 7"), "MPS Free Format Error - Wrong Number Of Fields");
    // The standard reader keeps refusing integer markers.
    EXPECT_EQ(ReadError(Lines({"NAME", "ROWS", " N  COST", "COLUMNS",
                               Card("", "MARKER", "'MARKER'", "", "'INTORG'"), "ENDATA"}))
                  .Name(),
              "MPS COLUMNS Section Error - Incomplete Data Entry");
}

}  // namespace
