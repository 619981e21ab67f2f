// Name index of an entity list: maps a name to the position of the first
// entity added under it.
//
// The names are copied, as they were when their entities were added, into one
// contiguous arena; a flat open-addressing table (linear probing, at most half
// full) maps each name's hash to a position in the list. Each slot also holds
// the name's first eight bytes, its length and the entity, so a lookup of a
// name of up to eight characters touches one table slot and nothing else
// (one cache miss on a large model); longer names are confirmed against the
// arena on a full match of hash, length and first bytes. Positions change when
// entities are removed: a single removal erases its entry and shifts the
// later positions down in one sequential pass over the table (Erase); a batch
// removal re-indexes from scratch (Rebuild). Both are O(n), as the removal
// itself is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class LPNameIndex {
public:
    static constexpr size_t npos = static_cast<size_t>(-1);

    // Where a name sits in the arena, and the entity it names (handed back
    // by FindItem).
    struct Key {
        uint32_t offset = 0;
        uint32_t length = 0;
        void* item = nullptr;
    };

    // Copies the name into the arena and returns its key for `item` (not
    // yet indexed).
    Key Store(const char* name, void* item);
    // Indexes position `pos` under `key` unless an earlier position already
    // holds that name. `keys` are the keys of all positions, `pos` included.
    void Insert(size_t pos, const std::vector<Key>& keys);
    // Insert for every position from `from` to the end of `keys`, with the
    // table's memory fetched ahead of use.
    void InsertRange(size_t from, const std::vector<Key>& keys);
    // Throws unless `positions` positions can be indexed.
    static void CheckRoom(size_t positions);
    // The item of the first entity added under `name`, or null, and its
    // position in *pos when pos is given. The slot holds both, so a short
    // name is resolved without touching any other memory.
    void* FindItem(const char* name, const std::vector<Key>& keys, size_t* pos = nullptr) const;
    // Asks for the memory a lookup of the name (s, n) will read first.
    void Prefetch(const char* s, size_t n) const {
        if (m_slots.empty()) return;
        const char* slot = reinterpret_cast<const char*>(&m_slots[Hash(s, n) & (m_slots.size() - 1)]);
        __builtin_prefetch(slot);
        // A slot may straddle two cache lines.
        if ((reinterpret_cast<uintptr_t>(slot) & 63) > 64 - sizeof(Slot))
            __builtin_prefetch(slot + sizeof(Slot) - 1);
    }
    // Forgets position `pos`, whose key `gone` the owner has just taken out
    // of `keys`, and moves every later position down by one. When pos held a
    // name that a later position also has, that position becomes the one
    // found. The arena space of `gone` is reclaimed by the next Rebuild.
    void Erase(size_t pos, const Key& gone, const std::vector<Key>& keys);
    // Re-indexes from scratch (first position of each name wins) and drops
    // the arena space of names no longer in `keys`; keys are updated in place.
    void Rebuild(std::vector<Key>& keys);
    void Clear();
    // Makes room for `positions` indexed positions in all and `nameBytes`
    // more bytes of names, so that adding that many costs no regrowth.
    void Reserve(size_t positions, size_t nameBytes, const std::vector<Key>& keys);
    // True when most of the arena holds names of removed entities.
    bool Wasteful() const { return m_arena.size() > 2 * m_liveBytes + 4096; }

private:
    static uint64_t Hash(const char* s, size_t n);
    bool Equals(const Key& key, const char* s, size_t n) const;
    // Re-indexes positions [0, positions) into a table with room for at
    // least `room` positions.
    void Grow(size_t positions, const std::vector<Key>& keys, size_t room = 0);
    // Place for every position in [from, to), the table's memory fetched
    // ahead of use.
    void PlaceRange(size_t from, size_t to, const std::vector<Key>& keys);
    // Indexes pos unless its name is already indexed; false when it was.
    bool Place(size_t pos, uint64_t hash, const std::vector<Key>& keys);
    uint64_t HashOf(const Key& key) const { return Hash(m_arena.data() + key.offset, key.length); }

    // One table entry. `position1` is the position + 1 (0: empty); `check` is
    // the hash's top 24 bits over the length (capped at 255); `head` the first
    // eight bytes of the name, zero-padded; `item` that of the position's key.
    struct Slot {
        uint64_t head;
        void* item;
        uint32_t position1;
        uint32_t check;
    };
    // The slot holding the name, or null.
    const Slot* Lookup(const char* name, const std::vector<Key>& keys) const;
    static uint64_t Head(const char* s, size_t n);
    static uint32_t Check(uint64_t hash, size_t n) {
        return static_cast<uint32_t>((hash >> 40) << 8) | static_cast<uint32_t>(n < 255 ? n : 255);
    }
    // True when slot s holds the name (s, n) whose head and check are given.
    bool Holds(const Slot& slot, uint64_t head, uint32_t check, const char* s, size_t n,
               const std::vector<Key>& keys) const {
        return slot.check == check && slot.head == head &&
               (n <= 8 || Equals(keys[slot.position1 - 1], s, n));
    }

    std::string m_arena;
    std::vector<Slot> m_slots;
    size_t m_liveBytes = 0;
    size_t m_used = 0;
    size_t m_shadowed = 0;  // positions whose name an earlier position holds
};
