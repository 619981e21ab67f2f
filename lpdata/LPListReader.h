// The reading half of the variable and equation list records: n fixed-size
// records, then the name block (see LPRecordIO.h).
#pragma once

#include <algorithm>
#include <cstddef>
#include <istream>
#include <memory>
#include <string>
#include <vector>

#include "lpdata/LPRecordIO.h"
#include "lpdata/ZEMException.h"

namespace lprec {

// Sets a flag for the life of a scope.
class ScopedFlag {
public:
    explicit ScopedFlag(bool& flag) : m_flag(flag) { m_flag = true; }
    ~ScopedFlag() { m_flag = false; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& m_flag;
};

// Appending a list refuses, before any of it is added, an entity whose name
// the list already holds: "Error Safe Append - <kind> of same name already
// exists: <name>", as the set list does for sets.
template <class E, class Known>
void RefuseKnownNames(const std::vector<E*>& batch, const char* kind, const char* routine, Known known) {
    for (E* e : batch)
        if (known(e->GetName()))
            ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error",
                      std::string("Error Safe Append - ") + kind + " of same name already exists: " + e->GetName(),
                      routine);
}

struct ListReadTexts {
    const char* listError;     // short read of the records
    const char* listRoutine;
    const char* countError;    // name block count below 1
    const char* namesError;    // short name block
    const char* namesRoutine;
};

// Reads n records, makes an entity for each with make() and fills it with
// decode(entity, record); then reads the name block and names the entities
// in order, stopping when the block or the n entities are used up, and hands
// the named ones to addAll(entities, name block size) in one batch, which
// takes them over unless it throws. Entities left without a name are
// deleted. Returns the added entities as a new[] table with a terminating
// null. On a read error nothing has been added and nothing is leaked.
template <class E, class Make, class Decode, class AddAll>
E** ReadEntityList(int n, std::istream* is, size_t recordSize, const ListReadTexts& t, Make make,
                   Decode decode, AddAll addAll) {
    if (is == nullptr || n < 0 || !zembin::canHold(is, n, recordSize))
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", t.listError, t.listRoutine);

    std::vector<std::unique_ptr<E>> made;
    made.reserve(ReserveHint(is, n));
    RecordReader reader(is, recordSize, static_cast<uint64_t>(n));
    for (int i = 0; i < n; ++i) {
        const unsigned char* rec = reader.Next();
        if (rec == nullptr)
            ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", t.listError, t.listRoutine);
        std::unique_ptr<E> e(make());
        decode(e.get(), rec);
        made.push_back(std::move(e));
    }

    std::vector<E*> added;
    if (n > 0) {
        int32_t bytes = 0;
        if (!zembin::readI32(is, bytes) || bytes < 1)
            ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", t.countError, t.namesRoutine);
        std::vector<unsigned char> block;
        if (!zembin::canHold(is, bytes, 1) || !ReadBlock(is, static_cast<uint64_t>(bytes), block))
            ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", t.namesError, t.namesRoutine);
        added.reserve(made.size());
        ForEachBlockName(block, made.size(), [&](const std::string& name) {
            E* e = made[added.size()].get();
            e->SetName(name.c_str());
            added.push_back(e);
        });
        addAll(added, block.size());
        for (size_t i = 0; i < added.size(); ++i) made[i].release();
    }
    return MakeTable(added);
}

}  // namespace lprec
