#include "cli/CaseJson.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <limits>
#include <set>
#include <stdexcept>
#include <vector>

#include "cases/ZEMCaseCollection.h"
#include "cases/ZEMCaseMgr.h"
#include "cases/ZEMEdit.h"
#include "cases/ZEMEditRecord.h"
#include "cli/Json.h"
#include "lpdata/ZEMException.h"

using nlohmann::json;

namespace {

enum class FieldType { Text, Number, Integer };

struct Field {
    const char* name;
    FieldType type;
    void (*write)(JsonWriter& w, const ZEMEditFields& f);
};

struct BoundWord {
    const char* word;
    int16_t selector;
};
const BoundWord kBoundWords[] = {{"lower", -1}, {"upper", 1}, {"fix", 0}};

void writeBound(JsonWriter& w, const ZEMEditFields& f) {
    for (const BoundWord& b : kBoundWords)
        if (b.selector == f.selector) return w.String(b.word);
    w.Integer(f.selector);  // a selector that changes nothing, as stored
}

const Field kVariable{"variable", FieldType::Text,
                      [](JsonWriter& w, const ZEMEditFields& f) { w.String(f.var->GetName()); }};
const Field kEquation{"equation", FieldType::Text,
                      [](JsonWriter& w, const ZEMEditFields& f) { w.String(f.eqn->GetName()); }};
const Field kValue{"value", FieldType::Number,
                   [](JsonWriter& w, const ZEMEditFields& f) { w.Number(f.value); }};
const Field kType{"type", FieldType::Integer, [](JsonWriter& w, const ZEMEditFields& f) {
                      w.Integer(static_cast<int64_t>(f.value));
                  }};
const Field kBound{"bound", FieldType::Text, writeBound};
const Field kTerm{"term", FieldType::Integer,
                  [](JsonWriter& w, const ZEMEditFields& f) { w.Integer(f.term->GetIndex()); }};
const Field kOptionName{"name", FieldType::Text,
                        [](JsonWriter& w, const ZEMEditFields& f) { w.String(f.optionName); }};
const Field kOptionValue{"value", FieldType::Text,
                         [](JsonWriter& w, const ZEMEditFields& f) { w.String(f.optionValue); }};

// An edit's fields as read, checked against its kind.
struct EditInput {
    const json& e;
    const ZEMEditTargets& targets;
    std::string Text(const char* k) const { return e.at(k).get<std::string>(); }
    double Number(const char* k) const { return e.at(k).get<double>(); }
    int16_t Short(const char* k) const {
        const int64_t v = e.at(k).get<int64_t>();
        if (v < INT16_MIN || v > INT16_MAX) throw std::runtime_error(std::string("'") + k + "' out of range");
        return static_cast<int16_t>(v);
    }
};

struct Kind {
    const char* name;
    int16_t code;
    std::vector<const Field*> fields;
    void (*add)(IZEMCaseMgr& c, const EditInput& in);
};

const std::vector<Kind>& Kinds() {
    static const std::vector<Kind> kinds = {
        {"value", eEditVarValue, {&kVariable, &kValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddVarValueEdit(in.Text("variable").c_str(), in.Number("value"));
         }},
        {"bound", eEditVarBoundValue, {&kVariable, &kBound, &kValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             const std::string word = in.Text("bound");
             for (const BoundWord& b : kBoundWords)
                 if (word == b.word)
                     return c.AddVarBoundEdit(in.Text("variable").c_str(), b.selector, in.Number("value"));
             throw std::runtime_error("'bound' is \"" + word + "\", not lower, upper or fix");
         }},
        {"variable_type", eEditVarType, {&kVariable, &kType},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddVarTypeEdit(in.Text("variable").c_str(), in.Short("type"));
         }},
        {"rhs", eEditEqnRHS, {&kEquation, &kValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddEqnRHSEdit(in.Text("equation").c_str(), in.Number("value"));
         }},
        {"range", eEditEqnRange, {&kEquation, &kValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddEqnRangeEdit(in.Text("equation").c_str(), in.Number("value"));
         }},
        {"coefficient", eEditNZCoeff, {&kEquation, &kVariable, &kValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddMatrixCoeffEdit(in.Text("equation").c_str(), in.Text("variable").c_str(),
                                  in.Number("value"));
         }},
        {"equation_type", eEditEqnType, {&kEquation, &kType},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddEqnTypeEdit(in.Text("equation").c_str(), in.Short("type"));
         }},
        {"term_coefficient", eEditNonLinearityCoeff, {&kTerm, &kValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             const int64_t index = in.e.at("term").get<int64_t>();
             const auto& terms = in.targets.terms;
             if (index <= 0 || static_cast<uint64_t>(index) >= terms.size() || !terms[index])
                 throw std::runtime_error("no term of index " + std::to_string(index));
             c.AddMatrixNonLinearityCoeffEdit(terms[index], in.Number("value"));
         }},
        {"option", eEditOptionTable, {&kOptionName, &kOptionValue},
         [](IZEMCaseMgr& c, const EditInput& in) {
             c.AddOptionTableEdit(in.Text("name").c_str(), in.Text("value").c_str());
         }},
    };
    return kinds;
}

bool hasType(const json& v, FieldType t) {
    switch (t) {
        case FieldType::Text: return v.is_string();
        case FieldType::Number: return v.is_number();
        case FieldType::Integer: return v.is_number_integer();
    }
    return false;
}

const Kind& kindOf(const json& e) {
    if (!e.is_object() || !e.contains("kind") || !e["kind"].is_string())
        throw std::runtime_error("an edit must be an object with a text 'kind'");
    const std::string name = e["kind"].get<std::string>();
    for (const Kind& k : Kinds())
        if (name == k.name) return k;
    throw std::runtime_error("unknown kind '" + name + "'");
}

// Every key known and of its type, every field present.
void checkFields(const json& e, const Kind& kind) {
    for (const auto& item : e.items()) {
        if (item.key() == "kind") continue;
        const Field* field = nullptr;
        for (const Field* f : kind.fields)
            if (item.key() == f->name) field = f;
        if (field == nullptr) throw std::runtime_error("unknown field '" + item.key() + "'");
        if (!hasType(item.value(), field->type))
            throw std::runtime_error("field '" + item.key() + "' has the wrong type");
    }
    for (const Field* f : kind.fields)
        if (!e.contains(f->name)) throw std::runtime_error(std::string("missing field '") + f->name + "'");
}

void checkKeys(const json& object, const std::set<std::string>& allowed, const std::string& where) {
    if (!object.is_object()) throw std::runtime_error(where + " must be an object");
    for (const auto& item : object.items())
        if (allowed.count(item.key()) == 0)
            throw std::runtime_error(where + ": unknown field '" + item.key() + "'");
}

std::string caseText(const json& c, const char* key, const std::string& where) {
    if (!c.contains(key)) return "";
    if (!c[key].is_string()) throw std::runtime_error(where + ": '" + key + "' must be text");
    const std::string text = c[key].get<std::string>();
    if (text.size() >= CZEMCaseMgr::kTextField)
        throw std::runtime_error(where + ": '" + key + "' longer than 128 characters");
    return text;
}

}  // namespace

void AddCasesFromJson(const std::string& text, CZEMCaseCollection& cases) {
    json doc;
    try {
        doc = json::parse(text);
    } catch (const json::exception& e) {
        throw std::runtime_error(std::string("not valid JSON: ") + e.what());
    }
    checkKeys(doc, {"cases"}, "the document");
    if (!doc.contains("cases") || !doc["cases"].is_array())
        throw std::runtime_error("the document needs a 'cases' array");
    const ZEMEditTargets targets = ZEMEditTargets::FromModel(cases.GetZEMMgr());
    size_t position = 0;
    for (const json& c : doc["cases"]) {
        std::string where = "case #" + std::to_string(++position);
        checkKeys(c, {"number", "name", "description", "edits"}, where);
        if (!c.contains("number") || !c["number"].is_number_integer() ||
            c["number"].get<int64_t>() < INT32_MIN || c["number"].get<int64_t>() > INT32_MAX)
            throw std::runtime_error(where + ": needs an integer 'number'");
        const int number = c["number"].get<int>();
        const std::string name = caseText(c, "name", where);
        if (!name.empty()) where = "case '" + name + "'";
        const std::string description = caseText(c, "description", where);
        if (cases.GetCaseByIndex(number) != nullptr || cases.GetCaseByName(name.c_str()) != nullptr)
            throw std::runtime_error(where + ": number or name used twice");
        IZEMCaseMgr* made = cases.CreateNewCaseMgr(number, name.c_str(), description.c_str());
        cases.AddCaseMgr(made);
        if (!c.contains("edits")) continue;
        if (!c["edits"].is_array()) throw std::runtime_error(where + ": 'edits' must be an array");
        size_t i = 0;
        for (const json& e : c["edits"]) {
            ++i;
            try {
                const Kind& kind = kindOf(e);
                checkFields(e, kind);
                kind.add(*made, EditInput{e, targets});
            } catch (const std::runtime_error& ex) {
                throw std::runtime_error(where + ", edit " + std::to_string(i) + ": " + ex.what());
            } catch (ZEM_Exception& ex) {
                throw std::runtime_error(where + ", edit " + std::to_string(i) + ": " + ex.Reason());
            }
        }
    }
}

void WriteCasesJson(CZEMCaseCollection& cases, std::ostream& os) {
    JsonWriter w(os);
    w.BeginObject();
    w.Key("name");
    w.String(cases.GetName());
    int dim[3];
    cases.GetModelDimension(dim[0], dim[1], dim[2]);
    w.Key("dimension");
    w.BeginArray();
    for (int d : dim) w.Integer(d);
    w.EndArray();
    w.Key("cases");
    w.BeginArray();
    for (IZEMCaseMgr* c : *cases.CaseListPtr()) {
        w.BeginObject();
        w.Key("number");
        w.Integer(c->GetCaseNumber());
        w.Key("name");
        w.String(c->GetCaseName());
        w.Key("description");
        w.String(c->GetCaseDescription());
        w.Key("edits");
        w.BeginArray();
        for (IZEMEdit* e : *c->CaseEditListPtr()) {
            const auto* edit = dynamic_cast<ZEMEditBase*>(e);
            if (edit == nullptr) throw std::runtime_error("an edit of a kind zem does not know");
            const ZEMEditFields f = edit->Fields();
            for (const Kind& k : Kinds()) {
                if (k.code != f.code) continue;
                w.BeginObject();
                w.Key("kind");
                w.String(k.name);
                for (const Field* field : k.fields) {
                    w.Key(field->name);
                    field->write(w, f);
                }
                w.EndObject();
            }
        }
        w.EndArray();
        w.EndObject();
    }
    w.EndArray();
    w.EndObject();
    w.Finish();
}
