// zem eval: every row's value at the variables' current values, and the
// Jacobian (each matrix entry's partial derivative) at that point.
#include <string>

#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"

namespace {

int runEval(const ParsedArgs& args, std::ostream& out) {
    CliModel model;
    IZEMMgr* zem = model.Zem();
    LoadInput(args, model);
    INonLinearModel* nl = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    zem->GetNonLinearModelIntf(&nl);
    zem->GetEquationCollectionIntf(&eqns);
    zem->GetMatrixIntf(&matrix);
    if (nl == nullptr || eqns == nullptr || matrix == nullptr) {
        throw ZEM_Exception("ZEMMgr Error", "The model has no nonlinear model to evaluate", "zem eval");
    }
    if (!nl->EvaluateModel() || !nl->EvaluateJacobian()) {
        throw ZEM_Exception("ZEMMgr Error", "Evaluation of the model failed", "zem eval");
    }
    const bool json = args.Has("--json");
    JsonWriter writer(out);
    std::string line;
    if (json) {
        writer.BeginObject();
        writer.Key("rows");
        writer.BeginArray();
    }
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        if (json) {
            writer.BeginObject();
            writer.Key("name");
            writer.String(e->GetName());
            writer.Key("value");
            writer.Number(e->GetEqnValue());
            writer.EndObject();
        } else {
            line.assign(e->GetName()).append(" ").append(JsonWriter::NumberText(e->GetEqnValue()));
            out << line << '\n';
        }
    }
    if (json) {
        writer.EndArray();
        writer.Key("jacobian");
        writer.BeginArray();
    }
    for (ILPNonZero* nz = matrix->FrstNonZeroObjectByRow(); nz != nullptr;
         nz = matrix->NextNonZeroObjectByRow()) {
        const char* row = nz->GetEquationPtr()->GetName();
        const char* column = nz->GetVariablePtr()->GetName();
        if (json) {
            writer.BeginObject();
            writer.Key("equation");
            writer.String(row);
            writer.Key("variable");
            writer.String(column);
            writer.Key("derivative");
            writer.Number(nz->GetPartialDeriv());
            writer.EndObject();
        } else {
            line.assign(row).append(" ").append(column).append(" ").append(
                JsonWriter::NumberText(nz->GetPartialDeriv()));
            out << line << '\n';
        }
    }
    if (json) {
        writer.EndArray();
        writer.EndObject();
        writer.Finish();
    }
    out.flush();
    return 0;
}

}  // namespace

Command EvalCommand() {
    return {"eval", "row values and the Jacobian at the variables' current values",
            "FILE [--json] [--format NAME]",
            "Evaluates every row at the variables' current values (its linear part plus\n"
            "its nonlinear terms, without the right-hand side) and the Jacobian at that\n"
            "point. Prints one line per row, in row order: the row's name and value;\n"
            "then one line per matrix entry, row by row: the equation, the variable and\n"
            "the partial derivative. Numbers are the shortest text that reads back to\n"
            "the same value. With --json, one object with the keys \"rows\" (objects with\n"
            "\"name\" and \"value\") and \"jacobian\" (objects with \"equation\", \"variable\"\n"
            "and \"derivative\").",
            InputOptions({{"--json", nullptr, "write one JSON object"}}), runEval};
}
