// The factory of nonlinear terms: makes a term from its type code or its
// keyword, and resolves keywords to codes.
//
// Keywords are matched exactly (case-sensitive) on the part before the first
// ':' ("SCDEQ:A" resolves like "SCDEQ"); an unknown keyword or code yields a
// term of type 7 ("NLUNKNOWN") that keeps the given name. The factory is
// reference counted: IRelease destroys it when the count returns to 0.
#pragma once

#include <cstdint>
#include <ostream>

class INonLinearity;
class INLModelExtCachedEvalRegistration;

class INonLinearityFactory {
public:
    virtual ~INonLinearityFactory() = default;
    // The new term is returned through `out` and belongs to the caller (it is
    // normally handed to the model's pool); null when it could not be made.
    virtual void Create(int16_t code, INonLinearity** out) = 0;
    virtual void Create(const char* name, INonLinearity** out) = 0;
    virtual void NameToTypeID(const char* name, int16_t* code) = 0;
    virtual void SetExtCacheEvalRegistry(INLModelExtCachedEvalRegistration* registry) = 0;
    virtual void Display(std::ostream& os) = 0;
    // Both return the reference count after the change.
    virtual int IAddRef() = 0;
    virtual int IRelease() = 0;

protected:
    virtual void Destroy() = 0;
    virtual void AddNonLinearityName(const char* name, int16_t code) = 0;
};

// Makes the library's standard factory, with a reference count of 0: the
// holder takes its reference with IAddRef and gives it back with IRelease.
INonLinearityFactory* CreateNonLinearityFactoryObject();
