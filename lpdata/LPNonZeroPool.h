// Storage of the nonzeros a matrix creates.
//
// A large model has millions of nonzeros; allocating each on the heap costs
// an allocator call, a header and scattered memory. The pool hands out
// nonzeros from chunks of contiguous slots (64, 128, ... up to 16,384 slots a
// chunk), so consecutive nonzeros sit side by side, and takes their slots
// back on a free list when they are destroyed.
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

private:
    union Slot {
        Slot* next;
        alignas(alignof(std::max_align_t)) unsigned char bytes[64];
    };

    LPNonZeroPool() = default;
    ~LPNonZeroPool() = default;
    bool AddChunk();
    void Unref() {
        if (--m_refs == 0) delete this;
    }

    std::vector<std::unique_ptr<Slot[]>> m_chunks;
    size_t m_nextChunk = 64;
    Slot* m_free = nullptr;
    size_t m_refs = 1;
};
