// Storage of the nonzeros a matrix creates.
//
// A large model has millions of nonzeros; allocating each on the heap costs
// an allocator call, a header and scattered memory. The pool hands out
// nonzeros from chunks of contiguous slots, so consecutive nonzeros sit side
// by side, and takes their slots back on a free list when they are destroyed.
//
// A chunk is 1, 2, 4, ... up to 256 pages of 4,096 bytes, aligned to a page.
// Every page starts with a pointer to the pool, followed by as many slots as
// fit (73 nonzeros of 56 bytes: the page is used to the byte):
//
//   page:  [pool*][slot 0][slot 1] ... [slot 72]
//
// so a nonzero finds its pool from its own address (PoolOf) and needs no
// pointer of its own. That keeps a nonzero at 56 bytes instead of 64: 19 MB
// less on the 2.4-million-entry benchmark read.
//
// Lifetime: the pool counts its owner (the matrix) and every nonzero it has
// handed out and not taken back; the memory goes when the count reaches zero.
// A nonzero may therefore outlive the matrix that created it (added to
// another matrix, or simply kept), and its Destroy always finds its pool.
//
// Under AddressSanitizer a free slot is poisoned, so touching a destroyed
// nonzero is reported as it would be for a heap object.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

class LPNonZero;

class LPNonZeroPool {
public:
    // A new pool counted once for its owner.
    static LPNonZeroPool* Create();
    LPNonZeroPool(const LPNonZeroPool&) = delete;
    LPNonZeroPool& operator=(const LPNonZeroPool&) = delete;

    // A default nonzero in a free slot, or null when memory runs out.
    LPNonZero* Make();
    // Destroys nz, which this pool made, and takes its slot back.
    void Give(LPNonZero* nz);
    // The owner lets go of the pool.
    void Drop() { Unref(); }
    // The pool whose slot holds nz (which a pool made).
    static LPNonZeroPool* PoolOf(const LPNonZero* nz);
    // The address of slot s, counting every slot of every chunk in the order
    // a fresh pool hands them out (chunk by chunk, page by page, in address
    // order), or null when the pool has no slot s yet. The slot may be free:
    // only its address is computed, nothing is read from it.
    void* SlotAt(size_t s) const;

private:
    static constexpr size_t kPageBytes = 4096;
    // The per-page pointer to the pool, then the slots.
    static constexpr size_t kHeadBytes = sizeof(void*);
    static constexpr size_t kSlotBytes = 56;
    static constexpr size_t kSlotsPerPage = (kPageBytes - kHeadBytes) / kSlotBytes;
    static constexpr size_t kLargestChunkPages = 256;

    union Slot {
        Slot* next;
        alignas(8) unsigned char bytes[kSlotBytes];
    };
    struct ChunkFree {
        void operator()(unsigned char* p) const;
    };

    LPNonZeroPool() = default;
    ~LPNonZeroPool() = default;
    bool AddChunk();
    void Unref() {
        if (--m_refs == 0) delete this;
    }

    std::vector<std::unique_ptr<unsigned char[], ChunkFree>> m_chunks;
    size_t m_nextChunkPages = 1;
    Slot* m_free = nullptr;
    size_t m_refs = 1;
};

inline void* LPNonZeroPool::SlotAt(size_t s) const {
    // Chunks double from 1 page to 256, then stay at 256: chunk c of the
    // nine doubling ones starts at page 2^c - 1, and the 256-page chunks
    // follow from page 511 on.
    static_assert(kLargestChunkPages == 256, "the chunk arithmetic assumes chunks of 1 to 256 pages");
    constexpr size_t kDoublingChunks = 9;
    constexpr size_t kDoublingPages = 2 * kLargestChunkPages - 1;
    const size_t page = s / kSlotsPerPage;
    size_t chunk, first;
    if (page < kDoublingPages) {
        chunk = static_cast<size_t>(63 - __builtin_clzll(static_cast<unsigned long long>(page) + 1));
        first = (size_t(1) << chunk) - 1;
    } else {
        chunk = kDoublingChunks + (page - kDoublingPages) / kLargestChunkPages;
        first = kDoublingPages + (chunk - kDoublingChunks) * kLargestChunkPages;
    }
    if (chunk >= m_chunks.size()) return nullptr;
    return m_chunks[chunk].get() + (page - first) * kPageBytes + kHeadBytes +
           (s % kSlotsPerPage) * kSlotBytes;
}
