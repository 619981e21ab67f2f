// Helpers shared by the flat functions: the handle casts and the status
// rules that many of them follow.
#pragma once

#include <cstdint>
#include <algorithm>
#include <cstring>

namespace flat {

// The C++ interface behind an opaque handle (no check: a wrong handle is
// the caller's undefined behaviour).
template <typename T>
T* As(void* handle) {
    return static_cast<T*>(handle);
}

// A list of handles seen as the interface pointers they are.
template <typename T>
T** AsArray(void** handles) {
    return reinterpret_cast<T**>(handles);
}

// 0 and *out = p when p is set; 1 and *out unchanged when it is null.
template <typename T>
int32_t StoreFound(void** out, T* p) {
    if (p == nullptr) return 1;
    *out = p;
    return 0;
}

// Asks `obj` for a component or an entity through an out-parameter
// operation and applies the StoreFound rule to the answer.
template <typename T, typename Obj, typename Cls>
int32_t AskFound(Obj* obj, void (Cls::*ask)(T**), void** out) {
    T* p = nullptr;
    (obj->*ask)(&p);
    return StoreFound(out, p);
}
template <typename T, typename Obj, typename Cls>
int32_t AskFound(Obj* obj, void (Cls::*ask)(const char*, T**), const char* name, void** out) {
    T* p = nullptr;
    (obj->*ask)(name, &p);
    return StoreFound(out, p);
}

// Copies the whole text with its NUL (the direct getters).
inline void CopyWhole(char* buf, const char* text) {
    const char* t = text ? text : "";
    std::memcpy(buf, t, std::strlen(t) + 1);
}

// Longest name the walks and packed lists copy whole.
constexpr size_t kWalkNameMax = 127;

// Copies at most 127 characters and the NUL; returns the bytes written.
inline size_t CopyCut(char* buf, const char* text) {
    const char* t = text ? text : "";
    const size_t n = std::min(std::strlen(t), kWalkNameMax);
    std::memcpy(buf, t, n);
    buf[n] = '\0';
    return n + 1;
}

// The walk-by-name rule: the cut name and 0, or "" and 1 at the end.
template <typename T>
int32_t WalkName(char* buf, T* entity) {
    if (entity == nullptr) {
        buf[0] = '\0';
        return 1;
    }
    CopyCut(buf, entity->GetName());
    return 0;
}

}  // namespace flat

namespace flat {

// Holds an object released with its Destroy operation, also when an
// exception passes through the flat function.
template <typename T>
class Destroying {
public:
    explicit Destroying(T* p) : m_p(p) {}
    ~Destroying() {
        if (m_p) m_p->Destroy();
    }
    Destroying(const Destroying&) = delete;
    Destroying& operator=(const Destroying&) = delete;
    T* operator->() const { return m_p; }
    T* get() const { return m_p; }

private:
    T* m_p;
};

}  // namespace flat

// One flat getter or setter forwarding to one operation of the handle's
// interface (the Get and Set shapes of the field families).
#define ZEM_FLAT_GET(fn, Iface, Type, getter)      \
    int32_t fn(void* h, Type* out) {               \
        *out = flat::As<Iface>(h)->getter();       \
        return 0;                                  \
    }
#define ZEM_FLAT_SET(fn, Iface, Type, setter)      \
    int32_t fn(void* h, Type value) {              \
        flat::As<Iface>(h)->setter(value);         \
        return 0;                                  \
    }
