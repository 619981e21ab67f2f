#include "lpdata/LPNameIndex.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "lpdata/ZEMException.h"

uint64_t LPNameIndex::Hash(const char* s, size_t n) {
    // Eight bytes at a time (names are mostly short, so this is one or two
    // rounds), the tail zero-padded, then a final mix for the low bits.
    constexpr uint64_t kMul = 0x9e3779b97f4a7c15ull;
    uint64_t h = 0x243f6a8885a308d3ull ^ (static_cast<uint64_t>(n) * kMul);
    for (; n >= 8; s += 8, n -= 8) {
        uint64_t w;
        std::memcpy(&w, s, 8);
        h = (h ^ w) * kMul;
        h ^= h >> 29;
    }
    if (n > 0) {
        uint64_t w = 0;
        std::memcpy(&w, s, n);
        h = (h ^ w) * kMul;
        h ^= h >> 29;
    }
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdull;
    h ^= h >> 33;
    return h;
}

bool LPNameIndex::Equals(const Key& key, const char* s, size_t n) const {
    return key.length == n && std::memcmp(m_arena.data() + key.offset, s, n) == 0;
}

LPNameIndex::Key LPNameIndex::Store(const char* name, void* item) {
    const size_t n = name ? std::strlen(name) : 0;
    if (m_arena.size() + n > std::numeric_limits<uint32_t>::max())
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "Name storage exceeds 4 GB",
                  "LPNameIndex::Store");
    Key key;
    key.offset = static_cast<uint32_t>(m_arena.size());
    key.length = static_cast<uint32_t>(n);
    key.item = item;
    m_arena.append(name ? name : "", n);
    m_liveBytes += n;
    return key;
}

uint64_t LPNameIndex::Head(const char* s, size_t n) {
    uint64_t w = 0;
    std::memcpy(&w, s, n < 8 ? n : 8);
    return w;
}

const LPNameIndex::Slot* LPNameIndex::Lookup(const char* name, const std::vector<Key>& keys) const {
    if (name == nullptr || m_slots.empty()) return nullptr;
    const size_t n = std::strlen(name);
    const uint64_t h = Hash(name, n);
    const uint64_t head = Head(name, n);
    const uint32_t check = Check(h, n);
    const size_t mask = m_slots.size() - 1;
    for (size_t i = static_cast<size_t>(h) & mask;; i = (i + 1) & mask) {
        const Slot& slot = m_slots[i];
        if (slot.position1 == 0) return nullptr;
        if (Holds(slot, head, check, name, n, keys)) return &slot;
    }
}

void* LPNameIndex::FindItem(const char* name, const std::vector<Key>& keys, size_t* pos) const {
    const Slot* slot = Lookup(name, keys);
    if (slot == nullptr) return nullptr;
    if (pos != nullptr) *pos = slot->position1 - 1;
    return slot->item;
}

bool LPNameIndex::Place(size_t pos, uint64_t hash, const std::vector<Key>& keys) {
    const Key& key = keys[pos];
    const char* name = m_arena.data() + key.offset;
    const uint64_t head = Head(name, key.length);
    const uint32_t check = Check(hash, key.length);
    const size_t mask = m_slots.size() - 1;
    for (size_t i = static_cast<size_t>(hash) & mask;; i = (i + 1) & mask) {
        Slot& slot = m_slots[i];
        if (slot.position1 == 0) {
            slot = Slot{head, key.item, static_cast<uint32_t>(pos + 1), check};
            ++m_used;
            return true;
        }
        if (Holds(slot, head, check, name, key.length, keys)) {
            ++m_shadowed;  // the first entity of this name keeps the entry
            return false;
        }
    }
}

void LPNameIndex::Erase(size_t pos, const Key& gone, const std::vector<Key>& keys) {
    m_liveBytes -= std::min<size_t>(m_liveBytes, gone.length);
    if (m_slots.empty()) return;
    const size_t mask = m_slots.size() - 1;
    // Key of a slot whose stored position is still the one before the removal.
    const auto keyOf = [&](const Slot& s) -> const Key& {
        const size_t p = static_cast<size_t>(s.position1) - 1;
        return keys[p > pos ? p - 1 : p];
    };
    size_t hole = npos;
    for (size_t i = static_cast<size_t>(HashOf(gone)) & mask; m_slots[i].position1 != 0; i = (i + 1) & mask) {
        if (static_cast<size_t>(m_slots[i].position1) == pos + 1) {
            hole = i;
            break;
        }
    }
    if (hole == npos) {
        if (m_shadowed > 0) --m_shadowed;  // pos was not indexed: its name is held earlier
    } else {
        // Backward-shift deletion keeps every probe chain unbroken.
        m_slots[hole] = Slot{};
        --m_used;
        for (size_t j = (hole + 1) & mask; m_slots[j].position1 != 0; j = (j + 1) & mask) {
            const size_t home = static_cast<size_t>(HashOf(keyOf(m_slots[j]))) & mask;
            // The entry at j may fill the hole unless its home lies cyclically in (hole, j].
            if (((j - home) & mask) >= ((j - hole) & mask)) {
                m_slots[hole] = m_slots[j];
                m_slots[j] = Slot{};
                hole = j;
            }
        }
    }
    for (Slot& s : m_slots)
        if (s.position1 > pos + 1) --s.position1;
    if (hole != npos && m_shadowed > 0) {
        // A later entity of the same name now takes the entry.
        for (size_t p = pos; p < keys.size(); ++p) {
            if (Equals(keys[p], m_arena.data() + gone.offset, gone.length)) {
                --m_shadowed;
                Place(p, HashOf(keys[p]), keys);
                break;
            }
        }
    }
}

void LPNameIndex::Grow(size_t positions, const std::vector<Key>& keys, size_t room) {
    size_t capacity = 16;
    while (capacity < 2 * (std::max(positions, room) + 1)) capacity *= 2;
    m_slots.assign(capacity, Slot{});
    m_used = 0;
    m_shadowed = 0;
    PlaceRange(0, positions, keys);
}

void LPNameIndex::PlaceRange(size_t from, size_t to, const std::vector<Key>& keys) {
    // Hashing walks the names in order; placing touches random slots, so
    // the names are hashed a block at a time and each slot is requested a
    // few entries before it is needed.
    constexpr size_t kBlock = 4096;
    constexpr size_t kAhead = 8;
    uint64_t hashes[kBlock];
    const size_t mask = m_slots.size() - 1;
    for (size_t begin = from; begin < to; begin += kBlock) {
        const size_t n = std::min(kBlock, to - begin);
        for (size_t i = 0; i < n; ++i) hashes[i] = HashOf(keys[begin + i]);
        for (size_t i = 0; i < n; ++i) {
            if (i + kAhead < n) __builtin_prefetch(&m_slots[hashes[i + kAhead] & mask], 1);
            Place(begin + i, hashes[i], keys);
        }
    }
}

void LPNameIndex::CheckRoom(size_t positions) {
    if (positions > 0xffffffffu)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "Too many names to index", "LPNameIndex::Insert");
}

void LPNameIndex::InsertRange(size_t from, const std::vector<Key>& keys) {
    const size_t to = keys.size();
    if (from >= to) return;
    CheckRoom(to);
    if (2 * (m_used + (to - from) + 1) > m_slots.size()) Grow(from, keys, m_used + (to - from));
    PlaceRange(from, to, keys);
}

void LPNameIndex::Insert(size_t pos, const std::vector<Key>& keys) {
    CheckRoom(pos + 1);
    if (2 * (m_used + 1) > m_slots.size()) Grow(pos, keys);
    Place(pos, HashOf(keys[pos]), keys);
}

void LPNameIndex::Rebuild(std::vector<Key>& keys) {
    size_t live = 0;
    for (const Key& k : keys) live += k.length;
    if (m_arena.size() > 2 * live + 4096) {  // mostly garbage: compact the arena
        std::string fresh;
        fresh.reserve(live);
        for (Key& k : keys) {
            const uint32_t off = static_cast<uint32_t>(fresh.size());
            fresh.append(m_arena, k.offset, k.length);
            k.offset = off;
        }
        m_arena.swap(fresh);
    }
    m_liveBytes = live;
    Grow(keys.size(), keys);
}

void LPNameIndex::Reserve(size_t positions, size_t nameBytes, const std::vector<Key>& keys) {
    if (m_arena.size() + nameBytes <= std::numeric_limits<uint32_t>::max())
        m_arena.reserve(m_arena.size() + nameBytes);
    if (2 * (positions + 1) > m_slots.size()) Grow(keys.size(), keys, positions);
}

void LPNameIndex::Clear() {
    std::string().swap(m_arena);
    std::vector<Slot>().swap(m_slots);
    m_used = 0;
    m_shadowed = 0;
    m_liveBytes = 0;
}
