// The JSON form of a case collection, read by 'zem cases build' and written
// by 'zem cases show --json':
//
//   {"cases": [{"number": 1, "name": "HIGHDEMAND", "description": "...",
//               "edits": [{"kind": "rhs", "equation": "DEMAND", "value": 110}, ...]}]}
//
// Edit kinds and their fields (besides "kind"):
//   value            variable, value          bound   variable, bound, value
//   variable_type    variable, type           rhs     equation, value
//   range            equation, value          coefficient  equation, variable, value
//   equation_type    equation, type           term_coefficient  term, value
//   option           name, value (text)
// "bound" is "lower", "upper" or "fix"; "type" the numeric type code;
// "term" the term's index. Reading refuses unknown or missing fields, kinds
// and names, a repeated case number or name and a text longer than its
// field, naming the case and the edit.
#pragma once

#include <ostream>
#include <string>

class CZEMCaseCollection;

// Adds the cases of the JSON text to the collection (whose model resolves
// the names); throws std::runtime_error on anything it refuses.
void AddCasesFromJson(const std::string& text, CZEMCaseCollection& cases);

// Writes the collection as one JSON object: name, dimension and cases.
void WriteCasesJson(CZEMCaseCollection& cases, std::ostream& os);
