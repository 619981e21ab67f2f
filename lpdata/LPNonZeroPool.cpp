#include "lpdata/LPNonZeroPool.h"

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

namespace {
constexpr size_t kLargestChunk = 16384;
}

LPNonZeroPool* LPNonZeroPool::Create() { return new LPNonZeroPool(); }

bool LPNonZeroPool::AddChunk() {
    static_assert(sizeof(LPNonZero) <= sizeof(Slot), "a nonzero must fit a pool slot");
    static_assert(alignof(LPNonZero) <= alignof(Slot), "a pool slot must align a nonzero");
    const size_t n = m_nextChunk;
    std::unique_ptr<Slot[]> chunk(new (std::nothrow) Slot[n]);
    if (!chunk) return false;
    // Thread the slots onto the free list in address order, so that
    // nonzeros made one after another sit side by side.
    for (size_t i = 0; i + 1 < n; ++i) chunk[i].next = &chunk[i + 1];
    chunk[n - 1].next = m_free;
    m_free = &chunk[0];
    ZEM_POISON(chunk.get(), n * sizeof(Slot));
    m_chunks.push_back(std::move(chunk));
    if (m_nextChunk < kLargestChunk) m_nextChunk *= 2;
    return true;
}

LPNonZero* LPNonZeroPool::Make() {
    if (m_free == nullptr && !AddChunk()) return nullptr;
    Slot* slot = m_free;
    ZEM_UNPOISON(slot, sizeof(Slot));
    m_free = slot->next;
    LPNonZero* nz = new (slot->bytes) LPNonZero();
    nz->m_pool = this;
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
