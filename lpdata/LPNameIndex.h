// Name index of an entity list: maps a name to the position of the first
// entity added under it.
//
// A flat open-addressing table (linear probing, power-of-two size, at most
// four fifths full) of 24-byte slots holds one entry per distinct name:
//
//   tag (8 bytes) | item | position + 1 (31 bits) and a long-name bit | offset
//
// A name of up to eight bytes is its own tag (the bytes, zero-padded: names
// hold no zero byte, so the tag is the name), so the slot alone is the name's
// copy and a lookup of a short name touches that one slot, which also gives
// the entity and its position. A longer name is copied, zero-terminated, into
// an arena; its tag is its 64-bit hash and the slot gives its offset, so a
// lookup touches the slot and the copy.
//
// Later entities with a name already indexed are kept aside in position
// order (the shadows; a model rarely has any), so that removing the first
// one makes the next one found. Positions change when entities are removed:
// a single removal erases its entry and shifts the later positions down in
// one sequential pass over the table (Erase); a batch removal re-indexes from
// scratch (EraseBatch). Both are O(n), as the removal itself is. Removed long
// names leave garbage in the arena until Rebuild compacts it (Wasteful).
//
// Example: Insert(0, "ROW1", a); Insert(1, "ROW1", b); FindItem("ROW1") is a;
// Erase(0); FindItem("ROW1", &pos) is b, with pos 0.
//
// Memory, on the benchmark read (400,000 columns and 200,000 rows added one
// by one, names of eight characters): 18.9 MB of tables, no arena and no
// keys. With 24-byte slots (eight name bytes, item, position, hash check) at
// most half full, a 16-byte key (offset, length, item) per position and an
// arena of all names it took 37.7 MB of tables, 12.6 MB of keys and 5.9 MB of
// arena; the read's peak went from 378.6 to 345.9 MiB and the read did not
// slow down. Without the item in the slot (16-byte slots, the entity read
// from the owner's array by position) the read took 1.10-1.22 times as long:
// that second touch misses the cache. A table at most half full reads 1-4%
// faster and costs 18.9 MB more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

class LPNameIndex {
public:
    static constexpr size_t npos = static_cast<size_t>(-1);

    // Throws unless `positions` positions can be indexed.
    static void CheckRoom(size_t positions);
    // A name and the entity it names.
    struct Named {
        const char* name;
        void* item;
    };
    // Indexes `item` at position `pos`, the one after all positions indexed
    // so far, under a copy of `name` (null: the empty name). When an earlier
    // position holds that name, that one stays the one found. When it throws
    // nothing was indexed.
    void Insert(size_t pos, const char* name, void* item);
    // Insert for positions from, from + 1, ... of `batch`, the table sized
    // once and its memory fetched ahead of use. When it throws nothing was
    // indexed.
    void InsertRange(size_t from, const std::vector<Named>& batch);
    // The item of the first entity added under `name`, or null, and its
    // position in *pos when pos is given.
    void* FindItem(const char* name, size_t* pos = nullptr) const;
    // Asks for the memory a lookup of the name (s, n) will read first.
    void Prefetch(const char* s, size_t n) const {
        if (m_slots.empty()) return;
        const uintptr_t slot = reinterpret_cast<uintptr_t>(&m_slots[HashOf(s, n) & (m_slots.size() - 1)]);
        // The home slot's line and the next: a slot may straddle two lines,
        // and a four-fifths full table places a name two slots past its home
        // on average. With the home slot's lines alone the benchmark read
        // took 1.06-1.08 times as long.
        __builtin_prefetch(reinterpret_cast<const void*>(slot));
        __builtin_prefetch(reinterpret_cast<const void*>(slot + 64));
    }
    // Forgets position `pos` and moves every later position down by one.
    // When pos held a name that a later position also has, that position
    // becomes the one found.
    void Erase(size_t pos);
    // Forgets every position p with doomed[p] set (doomed has one entry per
    // position) and numbers the others consecutively in their order, the
    // first of each name found; compacts the arena when Wasteful.
    void EraseBatch(const std::vector<char>& doomed);
    // Drops the arena space of names no longer indexed.
    void Rebuild();
    void Clear();
    // True when most of the arena holds names of removed entities.
    bool Wasteful() const { return m_arena.size() > 2 * m_liveBytes + 4096; }

private:
    static constexpr uint32_t kLong = 0x80000000u;  // in position1: the name is in the arena
    // One table entry. `position1` is the position + 1 (0: empty) with kLong
    // set for a name of more than eight bytes; `offset` is that name's place
    // in the arena.
    struct Slot {
        uint64_t tag;
        void* item;
        uint32_t position1;
        uint32_t offset;
    };
    // A name being looked up or added.
    struct Probe {
        uint64_t hash;
        uint64_t tag;
        uint32_t flag;  // kLong or 0
        const char* s;
        size_t n;
    };

    // Names of up to eight bytes: a bijective mix of the zero-padded bytes,
    // so that distinct short names never share a hash.
    static uint64_t Mix(uint64_t w) {
        w ^= w >> 33;
        w *= 0xff51afd7ed558ccdull;
        w ^= w >> 33;
        w *= 0xc4ceb9fe1a85ec53ull;
        w ^= w >> 33;
        return w;
    }
    static uint64_t Head(const char* s, size_t n) {
        uint64_t w = 0;
        std::memcpy(&w, s, n < 8 ? n : 8);
        return w;
    }
    static uint64_t HashLong(const char* s, size_t n);
    static uint64_t HashOf(const char* s, size_t n) { return n <= 8 ? Mix(Head(s, n)) : HashLong(s, n); }
    static Probe ProbeOf(const char* s, size_t n) {
        if (n > 8) {
            const uint64_t h = HashLong(s, n);
            return Probe{h, h, kLong, s, n};
        }
        const uint64_t tag = Head(s, n);
        return Probe{Mix(tag), tag, 0, s, n};
    }
    // The hash that placed slot `s`, recomputed without reading the name.
    static uint64_t HashOf(const Slot& s) { return (s.position1 & kLong) ? s.tag : Mix(s.tag); }
    static size_t PositionOf(const Slot& s) { return static_cast<size_t>(s.position1 & ~kLong) - 1; }

    bool Matches(const Slot& slot, const Probe& p) const {
        return slot.tag == p.tag && (slot.position1 & kLong) == p.flag &&
               (p.flag == 0 || SameLong(slot.offset, p.s, p.n));
    }
    bool SameLong(uint32_t offset, const char* s, size_t n) const {
        return std::strncmp(m_arena.data() + offset, s, n) == 0 && m_arena[offset + n] == '\0';
    }
    // True when a and b were added under the same name.
    bool SameName(const Slot& a, const Slot& b) const;
    // The entry for `item` at position `pos` under the name p, its long name
    // copied.
    Slot Entry(size_t pos, const Probe& p, void* item);
    // Counts the arena copy of a removed entry's name as garbage.
    void Forget(const Slot& e);
    // Throws unless `bytes` more arena bytes fit the 32-bit offsets.
    void CheckArena(size_t bytes) const;
    // Makes the table hold `entries` entries within its load limit.
    void Reserve(size_t entries);
    // Puts `e` in the table, or among the shadows when its name is indexed.
    void Place(const Slot& e, uint64_t hash);
    // Puts `e` in the table's first free slot from its home (name not indexed).
    void PlaceNew(const Slot& e, uint64_t hash);
    // Re-places every entry of `old` into the current (fresh) table.
    void Rehash(const std::vector<Slot>& old);
    // Takes the table entry at `hole` out, keeping probe chains unbroken.
    void RemoveAt(size_t hole);

    std::vector<Slot> m_slots;
    std::vector<Slot> m_shadows;  // later positions of indexed names, in position order
    std::string m_arena;          // names of more than eight bytes, each zero-terminated
    size_t m_liveBytes = 0;       // arena bytes of indexed positions' names
    size_t m_used = 0;            // table entries
};
