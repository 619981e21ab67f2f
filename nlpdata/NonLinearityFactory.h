// NonLinearityFactoryBase: the library's factory of nonlinear terms.
//
// It keeps the keyword table (keyword -> type code) and makes a term from a
// code or a keyword:
//   - keywords are matched exactly, case-sensitively, on the part before the
//     first ':' ("SCDEQ:A" resolves like "SCDEQ"); a keyword that is not in
//     the table resolves to 7 ("NLUNKNOWN");
//   - Create(code) makes the class of the code for every type that needs no
//     model context (1-5, 10, 12, 14-21, 91-94); any other code (6, 7, and
//     the model-made equation types 8, 9, 11, 13) gives a NonLinearityUnknown;
//   - Create(name) resolves the name and then creates by code, except that an
//     unknown name gives a NonLinearityUnknown that keeps the name, so that it
//     is written out again unchanged.
// A derived factory may register more keywords with AddNonLinearityName (the
// first registration of a keyword wins) and override Create.
//
// The factory is reference counted: CreateNonLinearityFactoryObject returns
// it with a count of 0; each holder takes a reference with IAddRef and gives
// it back with IRelease, which destroys the factory at 0.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "nlpdata/INonLinearityFactory.h"

class NonLinearityFactoryBase : public INonLinearityFactory {
public:
    NonLinearityFactoryBase();
    NonLinearityFactoryBase(const NonLinearityFactoryBase&) = delete;
    NonLinearityFactoryBase& operator=(const NonLinearityFactoryBase&) = delete;

    // `*out` receives the new term (owned by the caller), or null when it
    // could not be allocated. A null `out` makes nothing.
    void Create(int16_t code, INonLinearity** out) override;
    void Create(const char* name, INonLinearity** out) override;
    // A null name resolves to 7; a null `code` receives nothing.
    void NameToTypeID(const char* name, int16_t* code) override;
    void SetExtCacheEvalRegistry(INLModelExtCachedEvalRegistration* registry) override {
        m_registry = registry;
    }
    INLModelExtCachedEvalRegistration* GetExtCacheEvalRegistry() const { return m_registry; }
    // Prints nothing.
    void Display(std::ostream&) override {}
    int IAddRef() override;
    int IRelease() override;

    // Number of keywords in the table.
    int NumberOfNames() const { return static_cast<int>(m_names.size()); }

protected:
    ~NonLinearityFactoryBase() override = default;
    void Destroy() override { delete this; }
    // Registers the part of `name` before its first ':' with `code`, unless
    // that keyword is registered already. A null name registers nothing.
    void AddNonLinearityName(const char* name, int16_t code) override;

private:
    // Ordered byte by byte; looked up without copying the key.
    std::map<std::string, int16_t, std::less<>> m_names;
    int32_t m_refCount = 0;
    INLModelExtCachedEvalRegistration* m_registry = nullptr;
};
