// The rarely-set fields of an entity, kept out of line.
//
// `Cold` is a struct whose member initialisers are the fields' defaults. No
// block exists until a setter writes a value that differs from the current
// one (bit for bit for doubles, so -0.0 and NaN are kept exactly); until
// then every getter returns the default. Copies are deep.
//
//   struct Cold { double step = 2e20; };
//   LPColdBlock<Cold> c;
//   c.Get(&Cold::step);        // 2e20, no block
//   c.Set(&Cold::step, 2e20);  // same value: still no block
//   c.Set(&Cold::step, 5.0);   // block made
//
// `Cold` must be constant-initialisable (constexpr default constructor), so
// that the shared defaults exist before any other static initialiser runs.
// An entity pays one pointer for all these fields; in the benchmark read,
// which sets none of them, that saves 76 bytes per column and 36 per row
// (with the 16 of LPName and 4 of padding: 184 -> 88 and 152 -> 96).
#pragma once

#include <cstring>
#include <memory>

template <class Cold>
class LPColdBlock {
public:
    LPColdBlock() = default;
    LPColdBlock(const LPColdBlock& other) : m_block(other.Copy()) {}
    LPColdBlock& operator=(const LPColdBlock& other) {
        if (this != &other) m_block = other.Copy();
        return *this;
    }

    const Cold& Read() const { return m_block ? *m_block : kDefaults; }

    template <class T>
    T Get(T Cold::*field) const {
        return Read().*field;
    }

    template <class T>
    void Set(T Cold::*field, T value) {
        if (!m_block) {
            if (Same(kDefaults.*field, value)) return;
            m_block = std::make_unique<Cold>();
        }
        (*m_block).*field = value;
    }

    // The block, made if there is none yet.
    Cold& Write() {
        if (!m_block) m_block = std::make_unique<Cold>();
        return *m_block;
    }

    bool Made() const { return m_block != nullptr; }

private:
    static bool Same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
    template <class T>
    static bool Same(const T& a, const T& b) {
        return a == b;
    }
    std::unique_ptr<Cold> Copy() const {
        return m_block ? std::make_unique<Cold>(*m_block) : nullptr;
    }

    static inline const Cold kDefaults{};
    std::unique_ptr<Cold> m_block;
};
