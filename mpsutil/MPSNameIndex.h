// A compact hash index from names to entities, used by the MPS readers to
// find rows and columns by name while a file is read: one probe into a flat
// table of 16-byte slots instead of a walk through allocated nodes. A name
// of up to 8 bytes is kept in its slot as one 64-bit word (names hold no NUL
// byte, so zero padding keeps them distinct); longer names are kept in an
// arena, and their slots are marked by the low bit of the entity pointer.
//
//   MPSNameIndex<ILPEquation> rows;
//   rows.Insert("R1", eqn);
//   ILPEquation* e = rows.Find("R1");  // null when absent
//
// The index holds plain pointers and never owns them; the reader clears it
// whenever the model may have dropped entities.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

template <typename T>
class MPSNameIndex {
public:
    size_t Size() const { return m_size; }

    // Forgets every entry and releases the memory.
    void Clear() {
        std::vector<Slot>().swap(m_slots);
        std::vector<char>().swap(m_arena);
        m_size = 0;
        m_mask = 0;
    }

    T* Find(const char* name) const {
        if (m_slots.empty()) return nullptr;
        const Key k = MakeKey(name);
        for (size_t i = k.hash & m_mask;; i = (i + 1) & m_mask) {
            const Slot& s = m_slots[i];
            if (s.value == 0) return nullptr;
            if (Matches(s, k, name)) return reinterpret_cast<T*>(s.value & ~kLong);
        }
    }

    // Starts loading the slot where `name` would be found, so that a
    // following Find does not wait for memory.
    void Prefetch(const char* name) const {
        if (m_slots.empty()) return;
        __builtin_prefetch(&m_slots[MakeKey(name).hash & m_mask]);
    }

    // Adds an entry; the name must not be in the index yet.
    void Insert(const char* name, T* value) {
        static_assert(alignof(T) >= 2, "the low bit of an entity pointer marks long names");
        if (value == nullptr) return;
        if ((m_size + 1) * 2 > m_slots.size()) Grow();
        const Key k = MakeKey(name);
        Slot s;
        s.value = reinterpret_cast<uintptr_t>(value);
        if (k.isShort) {
            s.word = k.word;
        } else {
            // Arena entry: the hash and the length as 8 bytes each, then
            // the name.
            s.word = m_arena.size();
            s.value |= kLong;
            const uint64_t header[2] = {k.hash, k.length};
            const char* headerBytes = reinterpret_cast<const char*>(header);
            m_arena.insert(m_arena.end(), headerBytes, headerBytes + sizeof header);
            m_arena.insert(m_arena.end(), name, name + k.length);
        }
        Place(s, k.hash);
        ++m_size;
    }

private:
    static constexpr uintptr_t kLong = 1;  // entity pointers are at least 2-aligned

    struct Slot {
        uint64_t word = 0;    // the short name, or the arena offset of a long one
        uintptr_t value = 0;  // the entity (| kLong for a long name); 0 is a free slot
    };

    struct Key {
        uint64_t word = 0;
        uint64_t hash = 0;
        size_t length = 0;
        bool isShort = true;
    };

    static uint64_t Mix(uint64_t h) {
        h ^= h >> 31;
        h *= 0x94D049BB133111EBull;
        h ^= h >> 29;
        return h;
    }

    static Key MakeKey(const char* name) {
        Key k;
        size_t i = 0;
        for (; i < 8 && name[i] != '\0'; ++i) {
            k.word |= static_cast<uint64_t>(static_cast<unsigned char>(name[i])) << (8 * i);
        }
        if (i < 8 || name[8] == '\0') {
            k.length = i;
            k.hash = Mix(k.word * 0xBF58476D1CE4E5B9ull);
            return k;
        }
        k.isShort = false;
        k.length = std::strlen(name);
        uint64_t h = 0x9E3779B97F4A7C15ull ^ k.length;
        const char* p = name;
        size_t n = k.length;
        for (; n >= 8; p += 8, n -= 8) {
            uint64_t w;
            std::memcpy(&w, p, 8);
            h = Mix((h ^ w) * 0xBF58476D1CE4E5B9ull);
        }
        uint64_t w = 0;
        std::memcpy(&w, p, n);
        k.hash = Mix((h ^ w) * 0xBF58476D1CE4E5B9ull);
        return k;
    }

    bool Matches(const Slot& s, const Key& k, const char* name) const {
        if (k.isShort) return (s.value & kLong) == 0 && s.word == k.word;
        if ((s.value & kLong) == 0) return false;
        uint64_t header[2];
        std::memcpy(header, m_arena.data() + s.word, sizeof header);
        return header[0] == k.hash && header[1] == k.length &&
               std::memcmp(m_arena.data() + s.word + sizeof header, name, k.length) == 0;
    }

    uint64_t SlotHash(const Slot& s) const {
        if ((s.value & kLong) == 0) return Mix(s.word * 0xBF58476D1CE4E5B9ull);
        uint64_t hash;
        std::memcpy(&hash, m_arena.data() + s.word, sizeof hash);
        return hash;
    }

    // Stores `s` in the first free slot from the position of hash h.
    void Place(const Slot& s, uint64_t h) {
        size_t i = h & m_mask;
        while (m_slots[i].value != 0) i = (i + 1) & m_mask;
        m_slots[i] = s;
    }

    void Grow() {
        std::vector<Slot> old;
        old.swap(m_slots);
        const size_t capacity = old.empty() ? 1024 : old.size() * 2;
        m_slots.assign(capacity, Slot());
        m_mask = capacity - 1;
        for (const Slot& s : old) {
            if (s.value != 0) Place(s, SlotHash(s));
        }
    }

    std::vector<Slot> m_slots;
    std::vector<char> m_arena;
    size_t m_mask = 0;
    size_t m_size = 0;
};
