// A compact hash index from names to entities, used by the MPS readers to
// find rows and columns by name while a file is read: one probe into a flat
// table instead of a walk through allocated nodes. Names of up to 8 bytes
// are kept in the table itself, longer ones in an arena.
//
//   MPSNameIndex<ILPEquation> rows;
//   rows.Insert("R1", 2, eqn);
//   ILPEquation* e = rows.Find("R1", 2);  // null when absent
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
    }

    T* Find(const char* name, size_t length) const {
        if (m_slots.empty()) return nullptr;
        const uint64_t h = Hash(name, length);
        const uint32_t tag = static_cast<uint32_t>(h >> 32);
        for (size_t i = h & m_mask;; i = (i + 1) & m_mask) {
            const Slot& s = m_slots[i];
            if (s.value == nullptr) return nullptr;
            if (s.tag == tag && s.length == length && Equal(s, name, length)) return s.value;
        }
    }

    // Adds an entry; the name must not be in the index yet.
    void Insert(const char* name, size_t length, T* value) {
        if (value == nullptr || length > UINT32_MAX) return;
        if ((m_size + 1) * 5 > m_slots.size() * 4) Grow();
        const uint64_t h = Hash(name, length);
        Slot s;
        s.tag = static_cast<uint32_t>(h >> 32);
        s.length = static_cast<uint32_t>(length);
        s.value = value;
        if (length <= sizeof s.key.bytes) {
            std::memcpy(s.key.bytes, name, length);
        } else {
            s.key.offset = m_arena.size();
            m_arena.insert(m_arena.end(), name, name + length);
        }
        Place(s, h);
        ++m_size;
    }

private:
    struct Slot {
        uint32_t tag = 0;  // high half of the hash
        uint32_t length = 0;
        T* value = nullptr;  // null marks a free slot
        union Key {
            char bytes[8];
            uint64_t offset;  // into the arena, for longer names
        } key{};
    };

    static uint64_t Hash(const char* p, size_t n) {
        uint64_t h = 0x9E3779B97F4A7C15ull ^ n;
        while (n >= 8) {
            uint64_t w;
            std::memcpy(&w, p, 8);
            h = (h ^ w) * 0xBF58476D1CE4E5B9ull;
            h ^= h >> 29;
            p += 8;
            n -= 8;
        }
        if (n > 0) {
            uint64_t w = 0;
            std::memcpy(&w, p, n);
            h = (h ^ w) * 0xBF58476D1CE4E5B9ull;
        }
        h ^= h >> 31;
        h *= 0x94D049BB133111EBull;
        h ^= h >> 32;
        return h;
    }

    bool Equal(const Slot& s, const char* name, size_t length) const {
        const char* stored = length <= sizeof s.key.bytes ? s.key.bytes : m_arena.data() + s.key.offset;
        return std::memcmp(stored, name, length) == 0;
    }

    // Stores `s` in the first free slot from the position of hash h.
    void Place(const Slot& s, uint64_t h) {
        size_t i = h & m_mask;
        while (m_slots[i].value != nullptr) i = (i + 1) & m_mask;
        m_slots[i] = s;
    }

    void Grow() {
        std::vector<Slot> old;
        old.swap(m_slots);
        const size_t capacity = old.empty() ? 1024 : old.size() * 2;
        m_slots.assign(capacity, Slot());
        m_mask = capacity - 1;
        for (const Slot& s : old) {
            if (s.value == nullptr) continue;
            const char* name = s.length <= sizeof s.key.bytes ? s.key.bytes : m_arena.data() + s.key.offset;
            Place(s, Hash(name, s.length));
        }
    }

    std::vector<Slot> m_slots;
    std::vector<char> m_arena;
    size_t m_mask = 0;
    size_t m_size = 0;
};
