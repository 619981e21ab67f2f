#include "lpdata/LPNonZeroPool.h"

#include <cstdint>
#include <new>

#include "lpdata/LPNonZero.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZEM_POOL_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEM_POOL_ASAN 1
#endif
#endif

#ifdef ZEM_POOL_ASAN
#include <sanitizer/asan_interface.h>
#define ZEM_POISON(p, n) ASAN_POISON_MEMORY_REGION((p), (n))
#define ZEM_UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION((p), (n))
#else
#define ZEM_POISON(p, n) ((void)(p), (void)(n))
#define ZEM_UNPOISON(p, n) ((void)(p), (void)(n))
#endif

LPNonZeroPool* LPNonZeroPool::Create() { return new LPNonZeroPool(); }

void LPNonZeroPool::ChunkFree::operator()(unsigned char* p) const {
    ::operator delete(p, std::align_val_t{kPageBytes});
}

LPNonZeroPool* LPNonZeroPool::PoolOf(const LPNonZero* nz) {
    const uintptr_t page = reinterpret_cast<uintptr_t>(nz) & ~static_cast<uintptr_t>(kPageBytes - 1);
    return *reinterpret_cast<LPNonZeroPool* const*>(page);
}

bool LPNonZeroPool::AddChunk() {
    static_assert(sizeof(LPNonZero) == kSlotBytes, "a nonzero fills a pool slot");
    static_assert(alignof(LPNonZero) <= alignof(Slot), "a pool slot must align a nonzero");
    static_assert(sizeof(Slot) == kSlotBytes, "slots lie back to back");
    const size_t pages = m_nextChunkPages;
    std::unique_ptr<unsigned char[], ChunkFree> chunk(static_cast<unsigned char*>(
        ::operator new(pages * kPageBytes, std::align_val_t{kPageBytes}, std::nothrow)));
    if (!chunk) return false;
    // Thread the slots onto the free list in address order, so that
    // nonzeros made one after another sit side by side.
    Slot* first = nullptr;
    Slot** link = &first;
    for (size_t p = 0; p < pages; ++p) {
        unsigned char* page = chunk.get() + p * kPageBytes;
        *reinterpret_cast<LPNonZeroPool**>(page) = this;
        Slot* slots = reinterpret_cast<Slot*>(page + kHeadBytes);
        for (size_t i = 0; i < kSlotsPerPage; ++i) {
            *link = &slots[i];
            link = &slots[i].next;
        }
    }
    *link = m_free;
    m_free = first;
    for (size_t p = 0; p < pages; ++p)
        ZEM_POISON(chunk.get() + p * kPageBytes + kHeadBytes, kSlotsPerPage * sizeof(Slot));
    m_chunks.push_back(std::move(chunk));
    if (m_nextChunkPages < kLargestChunkPages) m_nextChunkPages *= 2;
    return true;
}

LPNonZero* LPNonZeroPool::Make() {
    if (m_free == nullptr && !AddChunk()) return nullptr;
    Slot* slot = m_free;
    ZEM_UNPOISON(slot, sizeof(Slot));
    m_free = slot->next;
    LPNonZero* nz = new (slot->bytes) LPNonZero();
    nz->m_pooled = true;
    ++m_refs;
    return nz;
}

void LPNonZeroPool::Give(LPNonZero* nz) {
    nz->~LPNonZero();
    Slot* slot = reinterpret_cast<Slot*>(nz);
    slot->next = m_free;
    m_free = slot;
    ZEM_POISON(slot, sizeof(Slot));
    Unref();
}
