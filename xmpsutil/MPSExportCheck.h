// What a standard MPS file written for other tools carries, and the check
// that refuses, before a byte is written, a model that this library's
// standard reader, CoinMpsIO or GLPK would read back differently.
//
// Carried: the title; rows with their type (one objective, =, <=, >=),
// right-hand side and range (<= and >= rows only); columns with their
// coefficients, bounds and type (continuous, binary through BV, discrete
// through LI/UI). Integer columns are never written with MARKER cards,
// which the standard reader refuses.
//
// Refused, naming the entity (ZEM_Exception "MPS Write Refused"):
// - nonlinear terms (the count and the first term are named) and blocks;
//   special ordered sets, variable groups, options, variable descriptions;
// - a row without coefficients, or a column without them (the standard
//   reader drops the first and never makes the second); a coefficient below
//   1e-12 in magnitude (other tools drop it);
// - a free row (other tools drop it), a second objective, a
//   right-hand side on the objective (other
//   tools take it as a constant), a range on an equality or objective row
//   (the tools differ on its sign);
// - semi-continuous columns (SC bounds are read three ways), binary columns
//   with bounds other than [0, 1], discrete columns without a finite lower
//   bound, and an upper bound below 0 over a lower bound of 0 (other tools
//   then drop the lower bound);
// - a column whose value, basis status, step bound or temporary bound is
//   not the one the standard reader gives it (initial values and bases are
//   not part of the format);
// - names (title, rows, columns) that are empty, hold blanks or control
//   characters, are longer than 128 characters or start with "$".
//
// Fixed-field layout when every name fits its 8 columns and every number
// its 12 columns exactly; otherwise (or when free format is asked for) free
// format, one blank between the fields. The standard reader of this
// library reads the fixed layout only. The title stands in columns 15-22 of
// the NAME card, where GLPK requires it; the standard reader takes the
// title from columns 11-18 and so keeps only its first four characters.
//
// Example: a model with a semi-continuous column "SC1" is refused with
//   MPS Write Refused: Variable "SC1" cannot be written: semi-continuous
//   columns are read differently by other tools
#pragma once

class ILPVariable;
class IZEMDataMgr;

namespace mpsexport {

// One BOUNDS card of a column: the key and, when the key takes one, its value.
struct BoundCard {
    const char* key;
    double value;
    bool hasValue;
};

// The bound cards that give `v` its type and bounds, at most two, in the
// order they are to be written; returns their number. A continuous column
// in [0, 1e20] needs none; "FX" is used only for a column whose status is
// fixed at its bound value (which is what the standard reader makes of it).
// Null `why` on return when the column can be written, else the reason.
int BoundCards(const ILPVariable* v, BoundCard out[2], const char** why);

// Throws ZEM_Exception "MPS Write Refused" at `routine`, naming the first
// entity of `model` that the format cannot carry. Returns true when the
// model needs free format (a name or a number does not fit its fixed
// field), false when the fixed layout holds it.
bool CheckExportable(IZEMDataMgr* model, const char* routine);

}  // namespace mpsexport
