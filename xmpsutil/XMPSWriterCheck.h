// What an extended MPS (XMPS) file carries, and the check that refuses,
// before a byte is written, a model that would not read back the same.
//
// Carried (and compared after a round trip):
// - the title: at most 128 characters, no blanks or control characters
//   (the NAME card keeps only its first token);
// - equations: name, type (objective, =, <=, >=, free), right-hand side and
//   range; every equation needs a coefficient or a term, because the format
//   has no ROWS section and rows are made by the cards that name them; at
//   most one objective, and a free row only beside an objective (the first
//   "N" row read becomes the objective);
// - variables: name, type (continuous, binary, discrete, semi-continuous),
//   bounds, step bound, temporary lower bound, value and basis state
//   (nonbasic, basic, fixed, at upper, at lower, step bounded), the
//   complementarity partner; description left empty;
// - matrix coefficients other than 0 (an entry of exactly 0 is not written
//   and reads back as no entry; its value and the rows' values are the same);
// - terms with a keyword the reader knows, a row and at least one variable;
// - special ordered sets of types 1 to 7; non-empty variable groups with
//   direction in (1), out (-1) or none (0) and type 0; options whose name,
//   value and second value are single tokens (the value present).
// Numbers keep what their printed forms hold: six significant digits for
// coefficients, right-hand sides and ranges, seven for term constants, ten
// for initial values, exact bounds.
//
// Names (of rows, columns, sets, groups, options) are 1 to 128 characters
// without blanks or control characters, and not a lone "\" (which continues
// a card); two rows, or two columns, never share a name (the reader would
// make them one). A variable named on a coefficient or term card must not read as
// a number by the format's lenient number test ("100001", "-Z", ".5",
// "12x"): the reader would take it for a constant.
//
// Not carried, and refused: nonlinear blocks and anything that is a member
// of one, variable descriptions, a term multiplier changed apart from the
// term's first constant. Not carried and not part of the model's
// definition, so reset on reading: the working values of a solve (shadow
// prices, activities, base, persistent, sample and relaxed values, scales,
// model indices).
//
// Example: a model with a variable "1E5X" on a matrix entry is refused with
//   XMPS Write Refused: Variable "1E5X" cannot be written: its name reads
//   as a number in the extended format
#pragma once

class INonLinearity;
class IZEMDataMgr;

namespace xmpscheck {

// Throws ZEM_Exception "XMPS Write Refused" at `routine`, naming the first
// entity of `model` that the format cannot carry. Returns when every part
// can be written.
void CheckWritable(IZEMDataMgr* model, const char* routine);

// Why `name` cannot stand as a name field, or null when it can.
const char* NameFault(const char* name);

// True for a term written on an XLINEAR card: a product of two or more
// variables with just its coefficient. Every other term goes to NONLINEAR.
bool OnXLinearCard(INonLinearity* term);

}  // namespace xmpscheck
