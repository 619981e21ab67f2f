// zem dump: the whole model as one JSON object.
#include "cli/CliModel.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/ModelParts.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearity.h"

namespace {

void dumpVariables(JsonWriter& json, ILPVariableList* vars) {
    json.BeginArray();
    for (ILPVariable* v = vars ? vars->FrstVariableObject() : nullptr; v != nullptr;
         v = vars->NextVariableObject()) {
        json.BeginObject();
        json.Key("name");
        json.String(v->GetName());
        json.Key("type");
        json.Integer(v->GetVarType());
        json.Key("status");
        json.Integer(v->GetVarStatus());
        json.Key("lower");
        json.Number(v->GetBoundLower());
        json.Key("upper");
        json.Number(v->GetBoundUpper());
        json.Key("value");
        json.Number(v->GetVarValue());
        json.Key("temp_lower");
        json.Number(v->GetTempBoundLower());
        json.Key("step");
        json.Number(v->GetStepBound());
        json.EndObject();
    }
    json.EndArray();
}

void dumpEquations(JsonWriter& json, ILPEquationList* eqns) {
    json.BeginArray();
    for (ILPEquation* e = eqns ? eqns->FrstEquationObject() : nullptr; e != nullptr;
         e = eqns->NextEquationObject()) {
        json.BeginObject();
        json.Key("name");
        json.String(e->GetName());
        json.Key("type");
        json.Integer(e->GetType());
        json.Key("rhs");
        json.Number(e->GetRHS());
        json.Key("range");
        json.Number(e->GetRange());
        json.Key("rhs_lower");
        json.Number(e->GetRHSLo());
        json.Key("rhs_upper");
        json.Number(e->GetRHSUp());
        json.Key("scale");
        json.Number(e->GetEqnScale());
        json.EndObject();
    }
    json.EndArray();
}

void dumpNonzeros(JsonWriter& json, ILPMatrix* matrix) {
    json.BeginArray();
    for (ILPNonZero* nz = matrix ? matrix->FrstNonZeroObject() : nullptr; nz != nullptr;
         nz = matrix->NextNonZeroObject()) {
        json.BeginObject();
        json.Key("equation");
        json.String(nz->GetEquationPtr() ? nz->GetEquationPtr()->GetName() : "");
        json.Key("variable");
        json.String(nz->GetVariablePtr() ? nz->GetVariablePtr()->GetName() : "");
        json.Key("coefficient");
        json.Number(nz->GetCoefficient());
        json.EndObject();
    }
    json.EndArray();
}

void dumpSets(JsonWriter& json, ILPSpOrdSetList* sets) {
    json.BeginArray();
    for (ILPSpOrdSet* s = sets ? sets->FrstSpOrdSetObject() : nullptr; s != nullptr;
         s = sets->NextSpOrdSetObject()) {
        json.BeginObject();
        json.Key("name");
        json.String(s->GetName());
        json.Key("type");
        json.Integer(s->GetType());
        json.Key("variables");
        json.BeginArray();
        for (ILPVariable* v = s->FrstSetVar(); v != nullptr; v = s->NextSetVar()) {
            json.String(v->GetName());
        }
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
}

void dumpTerms(JsonWriter& json, IZEMMgr* zem) {
    json.BeginArray();
    ForEachTerm(zem, [&json](INonLinearity* t) {
        json.BeginObject();
        json.Key("keyword");
        const char* id = t->GetNonLinearityID();
        json.String(id != nullptr ? id : "");
        json.Key("equation");
        json.String(t->GetEquationPtr() != nullptr ? t->GetEquationPtr()->GetName() : "");
        json.Key("variables");
        json.BeginArray();
        for (ILPVariable* v = t->FrstVar(); v != nullptr; v = t->NextVar()) json.String(v->GetName());
        json.EndArray();
        json.Key("constants");
        json.BeginArray();
        for (INLConstant* c = t->FrstNLConst(); c != nullptr; c = t->NextNLConst()) {
            json.Number(c->GetValue());
        }
        json.EndArray();
        json.EndObject();
    });
    json.EndArray();
}

void dumpCollections(JsonWriter& json, IZEMMgr* zem) {
    json.BeginArray();
    ForEachCollection(zem, [&json](ILPVariableCollection* c) {
        json.BeginObject();
        json.Key("name");
        json.String(c->Name() != nullptr ? c->Name() : "");
        json.Key("direction");
        json.Integer(c->GetDirection());
        json.Key("variables");
        json.BeginArray();
        for (ILPVariable* v = c->FrstVariableObject(); v != nullptr; v = c->NextVariableObject()) {
            json.String(v->GetName());
        }
        json.EndArray();
        json.EndObject();
    });
    json.EndArray();
}

// An absent value is written as null.
void optionalString(JsonWriter& json, const std::optional<std::string>& text) {
    if (text) {
        json.String(*text);
    } else {
        json.Null();
    }
}

void dumpOptions(JsonWriter& json, IZEMMgr* zem) {
    json.BeginArray();
    for (const OptionEntry& o : ListOptions(zem)) {
        json.BeginObject();
        json.Key("name");
        json.String(o.name);
        json.Key("value");
        optionalString(json, o.value);
        json.Key("second");
        optionalString(json, o.second);
        json.EndObject();
    }
    json.EndArray();
}

int runDump(const ParsedArgs& args, std::ostream& out) {
    CliModel model;
    LoadInput(args, model);
    ILPStdDataMgr* data = model.Data();
    std::string title;
    data->GetModelTitle(title);
    const auto [vars, eqns, matrix, sets] = LinearPartsOf(data);

    JsonWriter json(out);
    json.BeginObject();
    json.Key("title");
    json.String(title);
    json.Key("variables");
    dumpVariables(json, vars);
    json.Key("equations");
    dumpEquations(json, eqns);
    json.Key("nonzeros");
    dumpNonzeros(json, matrix);
    json.Key("sets");
    dumpSets(json, sets);
    json.Key("terms");
    dumpTerms(json, model.ZemIfAny());
    json.Key("collections");
    dumpCollections(json, model.ZemIfAny());
    json.Key("options");
    dumpOptions(json, model.ZemIfAny());
    json.EndObject();
    json.Finish();
    return 0;
}

}  // namespace

Command DumpCommand() {
    return {"dump", "the whole model as one JSON object", "FILE [--format NAME]",
            "Prints the model as one JSON object with the keys:\n"
            "  title      the model's title\n"
            "  variables  in list order: name, type, status, lower, upper, value,\n"
            "             temp_lower, step\n"
            "  equations  in list order: name, type, rhs, range, rhs_lower, rhs_upper, scale\n"
            "  nonzeros   in matrix insertion order: equation, variable (names), coefficient\n"
            "  sets       name, type, variables (names)\n"
            "  terms      nonlinear terms in pool order: keyword, equation (name),\n"
            "             variables (names, in argument order), constants (in order)\n"
            "  collections  named variable collections: name, direction (1 input,\n"
            "             -1 output), variables (names)\n"
            "  options    by name: name, value, second (a column without a value: null)\n"
            "A standard MPS file has no terms, collections or options: those arrays are\n"
            "empty. Types and statuses are the numeric codes. Numbers read back to the\n"
            "same double; infinite or NaN values are written as null.",
            InputOptions({}), runDump};
}
