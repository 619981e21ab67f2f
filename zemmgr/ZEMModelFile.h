// The model file ("ZEM file"): the binary image of a whole model.
//
// Layout (little-endian; integers 32-bit signed, reals IEEE doubles, flags
// one byte 0/1):
//
//   header, 144 bytes    0: version (double)   8: title, NUL-terminated,
//                        at most 128 characters   137: 7 bytes padding
//   counts, 28 bytes     0: variables   4: equations   8: nonzeros
//                        12: sets   16: set members   20: persisted terms
//                        24: matrix-includes-objective flag   25: padding
//   values-initialized flag (1 byte), hybrid-model flag (1 byte)
//   variables, equations, nonzeros, sets, nonlinear terms: each written by
//     its owner (the lists, matrix, set list and nonlinear model)
//   option table section
//   number of named variable collections (int32), then each collection
//
// There is no magic number: the version double is the only identification.
// A reader accepts 2020.1 and anything not below 1.05 (the test is written
// so that a NaN version passes too); values-initialized is read from 1.03
// on, the hybrid flag from 2020.0 on, and the collections from 1.04 on. The
// writer always writes both flag bytes, so a file written with version 1.05
// is read one byte out of step from the variable section on; that is how the
// format has always behaved.
//
// The frame works on the components through their interfaces, so any model
// container can use it: a container without nonlinear terms or options
// passes null for them (its files then hold no terms and an empty table).
#pragma once

#include <fstream>
#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

class ILPEquationList;
class ILPMatrix;
class ILPSpOrdSetList;
class ILPVariableCollection;
class ILPVariableList;
class INonLinearModel;
class IZEMOptionTable;

// The components one model file is made of. Only the four LP parts are
// required.
struct ZEMModelContent {
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    ILPSpOrdSetList* sets = nullptr;
    INonLinearModel* nonlinear = nullptr;
    IZEMOptionTable* options = nullptr;
};

// The scalar state of a model that the file carries.
struct ZEMModelState {
    std::string title;
    bool matrixIncludesObjective = false;
    bool valuesInitialized = true;
    bool hybrid = false;
};

// How the reader hands over the named collections: `make` gives an empty
// collection, `add` takes it (returning false when it refuses it, in which
// case the reader destroys it).
struct ZEMCollectionSink {
    std::function<ILPVariableCollection*()> make;
    std::function<bool(ILPVariableCollection*)> add;
};

namespace ZEMModelFile {

constexpr double kCurrentVersion = 2020.1;
constexpr size_t kHeaderSize = 144;
constexpr size_t kCountsSize = 28;
constexpr size_t kMaxTitle = 128;

// The messages of the frame's read errors.
extern const char* const kHeaderReadError;
extern const char* const kVersionError;
extern const char* const kElementReadError;

// What the file carries, at the current version, and what the writer
// refuses before writing a byte (ZEM_Exception of `category`, naming the
// entity):
// - a title over 128 characters ("Model title longer than 128 characters
//   does not fit the ZEMFile header");
// - names of variables, equations, sets and collections over 60 characters
//   (the name blocks and fields keep 60), term identifiers over 499;
// - equations without matrix entries: the end-of-read processing of every
//   model that restores a file drops them;
// - what no record has a place for: complementarity partners, variable
//   descriptions, a term multiplier changed apart from its first constant;
// - members of nonlinear blocks (rows, variables, terms): the sections skip
//   them, leaving them to the blocks' own section, and this build has no
//   block component to write them.
// The working values of a solve that no record holds (relaxed bounds,
// equation residuals and infeasibilities, model indices) are not part of
// the model's definition and are not saved. Files of older versions hold what their layouts hold.
void CheckWritable(const ZEMModelState& state, const ZEMModelContent& content,
                   const std::vector<ILPVariableCollection*>& collections, const char* routine,
                   const char* category = "ZEMMgr Error", const char* src = "zemmgr");

// Writes the whole file, after CheckWritable: a refused model writes
// nothing.
void Write(std::ostream* os, double version, const ZEMModelState& state,
           const ZEMModelContent& content,
           const std::vector<ILPVariableCollection*>& collections,
           const char* routine = "ZEMMgr::PersistAsFile");

// Opens `path` for binary writing (an existing file is truncated) and lets
// `write` fill it. A path that cannot be opened throws ZEM_ExcpFileError of
// type 2, a failed write or close one of type 4 (routine `routine`, source
// tag `src`). When `write` or the close fails, the file is removed: no
// partial file stays behind. Callers check the model before calling.
void WriteToPath(const char* path, const char* routine, const char* src,
                 const std::function<void(std::ofstream*)>& write);

enum class Mode { Replace, Append };

// Reads a whole file into the components. Replace takes the file's title and
// matrix-includes-objective flag into `state`; Append keeps them and lets
// every section add to what is there. Both take the values-initialized and
// hybrid flags. The caller runs its end-of-read processing afterwards. Read
// errors of the frame throw ZEM_Exception ("ZEMMgr Error", routine
// "ZEMMgr::RestoreFromFile"); what was read before an error stays.
void Read(std::istream* is, Mode mode, const ZEMModelContent& content, ZEMModelState& state,
          const std::string& modelDir, const ZEMCollectionSink& sink);

}  // namespace ZEMModelFile
