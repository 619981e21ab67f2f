#include "lpdata/LPNameIndex.h"

#include <algorithm>
#include <limits>

#include "lpdata/ZEMException.h"

namespace {

// Entries are placed and re-placed a block at a time, each slot requested
// this many entries before it is written.
constexpr size_t kBlock = 1024;
constexpr size_t kAhead = 8;

}  // namespace

uint64_t LPNameIndex::HashLong(const char* s, size_t n) {
    // Eight bytes at a time, the tail zero-padded, then a final mix for the
    // low bits.
    constexpr uint64_t kMul = 0x9e3779b97f4a7c15ull;
    uint64_t h = 0x243f6a8885a308d3ull ^ (static_cast<uint64_t>(n) * kMul);
    for (; n >= 8; s += 8, n -= 8) {
        uint64_t w;
        std::memcpy(&w, s, 8);
        h = (h ^ w) * kMul;
        h ^= h >> 29;
    }
    if (n > 0) h = (h ^ Head(s, n)) * kMul;
    return Mix(h);
}

bool LPNameIndex::SameName(const Slot& a, const Slot& b) const {
    if (a.tag != b.tag || (a.position1 & kLong) != (b.position1 & kLong)) return false;
    return (a.position1 & kLong) == 0 || std::strcmp(m_arena.data() + a.offset, m_arena.data() + b.offset) == 0;
}

void LPNameIndex::CheckRoom(size_t positions) {
    // Positions are 31 bits in a slot; entity indices are ints anyway.
    if (positions > ~kLong)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "Too many names to index", "LPNameIndex::Insert");
}

void LPNameIndex::CheckArena(size_t bytes) const {
    if (bytes > std::numeric_limits<uint32_t>::max() - m_arena.size())
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "Name storage exceeds 4 GB", "LPNameIndex::Store");
}

LPNameIndex::Slot LPNameIndex::Entry(size_t pos, const Probe& p, void* item) {
    Slot e{p.tag, item, static_cast<uint32_t>(pos + 1) | p.flag, 0};
    if (p.flag != 0) {
        e.offset = static_cast<uint32_t>(m_arena.size());
        m_arena.append(p.s, p.n);
        m_arena.push_back('\0');
        m_liveBytes += p.n + 1;
    }
    return e;
}

void LPNameIndex::Forget(const Slot& e) {
    if (e.position1 & kLong) m_liveBytes -= std::min(m_liveBytes, std::strlen(m_arena.data() + e.offset) + 1);
}

void LPNameIndex::Reserve(size_t entries) {
    size_t capacity = std::max<size_t>(m_slots.size(), 16);
    // Four fifths full at most: a hit then probes three slots on average,
    // mostly within the home slot's cache line.
    while (5 * entries > 4 * capacity) capacity *= 2;
    if (capacity == m_slots.size()) return;
    std::vector<Slot> old(capacity, Slot{});
    old.swap(m_slots);  // m_slots is the fresh table now
    Rehash(old);
}

void LPNameIndex::PlaceNew(const Slot& e, uint64_t hash) {
    const size_t mask = m_slots.size() - 1;
    size_t i = static_cast<size_t>(hash) & mask;
    while (m_slots[i].position1 != 0) i = (i + 1) & mask;
    m_slots[i] = e;
    ++m_used;
}

void LPNameIndex::Place(const Slot& e, uint64_t hash) {
    const size_t mask = m_slots.size() - 1;
    for (size_t i = static_cast<size_t>(hash) & mask;; i = (i + 1) & mask) {
        Slot& slot = m_slots[i];
        if (slot.position1 == 0) {
            slot = e;
            ++m_used;
            return;
        }
        if (SameName(slot, e)) {
            m_shadows.push_back(e);  // the first entity of this name keeps the entry
            return;
        }
    }
}

void LPNameIndex::Rehash(const std::vector<Slot>& old) {
    m_used = 0;
    const size_t mask = m_slots.size() - 1;
    uint64_t hashes[kBlock];
    const Slot* entries[kBlock];
    for (size_t begin = 0; begin < old.size(); begin += kBlock) {
        size_t n = 0;
        for (size_t i = begin; i < std::min(old.size(), begin + kBlock); ++i) {
            if (old[i].position1 == 0) continue;
            entries[n] = &old[i];
            hashes[n++] = HashOf(old[i]);
        }
        for (size_t i = 0; i < n; ++i) {
            if (i + kAhead < n) __builtin_prefetch(&m_slots[hashes[i + kAhead] & mask], 1);
            PlaceNew(*entries[i], hashes[i]);
        }
    }
}

void LPNameIndex::Insert(size_t pos, const char* name, void* item) {
    CheckRoom(pos + 1);
    const char* s = name ? name : "";
    const Probe p = ProbeOf(s, std::strlen(s));
    if (p.flag != 0) CheckArena(p.n + 1);
    Reserve(m_used + 1);
    Place(Entry(pos, p, item), p.hash);
}

void LPNameIndex::InsertRange(size_t from, const std::vector<Named>& batch) {
    if (batch.empty()) return;
    CheckRoom(from + batch.size());
    size_t longBytes = 0;
    for (const Named& e : batch) {
        const size_t n = e.name ? std::strlen(e.name) : 0;
        if (n > 8) longBytes += n + 1;
    }
    CheckArena(longBytes);
    m_arena.reserve(m_arena.size() + longBytes);
    Reserve(m_used + batch.size());
    // Hashing walks the names in order; placing touches random slots, so
    // the names are hashed a block at a time and each slot is requested a
    // few entries before it is needed.
    const size_t mask = m_slots.size() - 1;
    uint64_t hashes[kBlock];
    Slot entries[kBlock];
    for (size_t begin = 0; begin < batch.size(); begin += kBlock) {
        const size_t n = std::min(kBlock, batch.size() - begin);
        for (size_t i = 0; i < n; ++i) {
            const Named& e = batch[begin + i];
            const char* s = e.name ? e.name : "";
            const Probe p = ProbeOf(s, std::strlen(s));
            hashes[i] = p.hash;
            entries[i] = Entry(from + begin + i, p, e.item);
        }
        for (size_t i = 0; i < n; ++i) {
            if (i + kAhead < n) __builtin_prefetch(&m_slots[hashes[i + kAhead] & mask], 1);
            Place(entries[i], hashes[i]);
        }
    }
}

void* LPNameIndex::FindItem(const char* name, size_t* pos) const {
    if (name == nullptr || m_slots.empty()) return nullptr;
    const Probe p = ProbeOf(name, std::strlen(name));
    const size_t mask = m_slots.size() - 1;
    for (size_t i = static_cast<size_t>(p.hash) & mask;; i = (i + 1) & mask) {
        const Slot& slot = m_slots[i];
        if (slot.position1 == 0) return nullptr;
        if (Matches(slot, p)) {
            if (pos != nullptr) *pos = PositionOf(slot);
            return slot.item;
        }
    }
}

void LPNameIndex::RemoveAt(size_t hole) {
    // Backward-shift deletion: a later entry of the chain moves into the
    // hole unless its home lies cyclically in (hole, j].
    const size_t mask = m_slots.size() - 1;
    m_slots[hole] = Slot{};
    --m_used;
    for (size_t j = (hole + 1) & mask; m_slots[j].position1 != 0; j = (j + 1) & mask) {
        const size_t home = static_cast<size_t>(HashOf(m_slots[j])) & mask;
        if (((j - home) & mask) >= ((j - hole) & mask)) {
            m_slots[hole] = m_slots[j];
            m_slots[j] = Slot{};
            hole = j;
        }
    }
}

void LPNameIndex::Erase(size_t pos) {
    const uint32_t target = static_cast<uint32_t>(pos + 1);
    size_t hole = npos;
    for (size_t i = 0; i < m_slots.size(); ++i) {
        Slot& s = m_slots[i];
        const uint32_t p1 = s.position1 & ~kLong;
        if (p1 == target)
            hole = i;
        else if (p1 > target)
            --s.position1;
    }
    Slot gone{};
    if (hole != npos) {
        gone = m_slots[hole];
        RemoveAt(hole);
    }
    size_t out = 0;
    for (Slot& s : m_shadows) {
        const uint32_t p1 = s.position1 & ~kLong;
        if (p1 == target) {
            gone = s;
            continue;
        }
        if (p1 > target) --s.position1;
        m_shadows[out++] = s;
    }
    m_shadows.resize(out);
    Forget(gone);
    if (hole == npos) return;
    // The next entity of the same name, if any, takes the entry.
    for (size_t i = 0; i < m_shadows.size(); ++i) {
        if (SameName(m_shadows[i], gone)) {
            const Slot next = m_shadows[i];
            m_shadows.erase(m_shadows.begin() + static_cast<std::ptrdiff_t>(i));
            PlaceNew(next, HashOf(next));
            break;
        }
    }
}

void LPNameIndex::EraseBatch(const std::vector<char>& doomed) {
    // Every entry by its old position, then re-placed in position order so
    // that the first of each name is the one indexed.
    std::vector<Slot> byPosition(doomed.size(), Slot{});
    for (const std::vector<Slot>* from : {&m_slots, &m_shadows})
        for (const Slot& s : *from)
            if (s.position1 != 0 && PositionOf(s) < doomed.size()) byPosition[PositionOf(s)] = s;
    std::vector<Slot>().swap(m_slots);
    m_shadows.clear();
    m_used = 0;
    size_t live = 0;
    for (size_t p = 0; p < doomed.size(); ++p)
        if (!doomed[p] && byPosition[p].position1 != 0) ++live;
    Reserve(live);
    size_t next = 0;
    for (size_t p = 0; p < doomed.size(); ++p) {
        Slot e = byPosition[p];
        if (e.position1 == 0) continue;
        if (doomed[p]) {
            Forget(e);
            continue;
        }
        e.position1 = static_cast<uint32_t>(++next) | (e.position1 & kLong);
        Place(e, HashOf(e));
    }
    if (Wasteful()) Rebuild();
}

void LPNameIndex::Rebuild() {
    std::string fresh;
    fresh.reserve(m_liveBytes);
    for (std::vector<Slot>* in : {&m_slots, &m_shadows}) {
        for (Slot& s : *in) {
            if ((s.position1 & kLong) == 0) continue;
            const char* name = m_arena.data() + s.offset;
            s.offset = static_cast<uint32_t>(fresh.size());
            fresh.append(name, std::strlen(name) + 1);
        }
    }
    m_arena.swap(fresh);
    m_liveBytes = m_arena.size();
}

void LPNameIndex::Clear() {
    std::string().swap(m_arena);
    std::vector<Slot>().swap(m_slots);
    std::vector<Slot>().swap(m_shadows);
    m_used = 0;
    m_liveBytes = 0;
}
