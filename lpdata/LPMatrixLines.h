// The row and column structures of LPMatrix (private to it). Within a row
// or column the entries are always in insertion order, so "the p-th entry
// of line s" does not depend on the layout and cursors survive a re-layout.
//
// Rows are derived from the matrix's insertion-ordered nonzero list when a
// row is first walked: one pass counts the entries of each row and one
// places them (compressed lines, LPMatrixLineStore: line s holds
// data[start[s] .. start[s+1]) followed by a small overflow line). Entries
// added after that go to the overflow lines, and when those hold half as
// many entries as the compressed form the lines are laid out again, so
// filing an entry costs O(1) amortized. Asking only how many entries rows
// have (as finishing a read does) runs the counting alone, kept up to date
// as entries are appended, and leaves the placing to the first walk.
//
// Columns start as runs: while entries arrive column by column (as every
// COLUMNS section delivers them) each column is one contiguous run of the
// nonzero list (its first entry may sit apart), kept as its start there,
// its length and its first entry
// (16 bytes per column: 6.4 MB at the benchmark read's peak, where one
// vector per column held 46.6 MB; the read peaks at 338.8 MiB resident
// instead of 378.7 MiB, and is as fast). The first entry
// for a column whose run does not end the list (entries that come row by
// row, as an XMPS XLINEAR section delivers them), or a removal, gives each
// column its own line, sized to its run; lines take entries in any order.
// Adding an entry looks for an entry of the same row in its column: a
// column of 16 entries or more answers that from a hash index from equation
// to live nonzero, built when the column is first searched.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lpdata/LPNonZeroList.h"

class ILPEquation;
class ILPEquationList;
class ILPNonZero;
class ILPVariable;

// "NonZero : <row> : <column>", the subject of the matrix's error messages.
std::string DescribeNonZero(const ILPNonZero* nz);

class LPMatrixLineStore {
public:
    static constexpr size_t kNone = static_cast<size_t>(-1);
    size_t Slots() const { return m_start.empty() ? 0 : m_start.size() - 1; }
    // Entries in all lines.
    size_t Entries() const { return m_data.size() + m_extraCount; }
    size_t Size(size_t s) const {
        if (s >= Slots()) return 0;
        const size_t base = m_start[s + 1] - m_start[s];
        return m_extraOf[s] ? base + m_extra[m_extraOf[s] - 1].size() : base;
    }
    ILPNonZero* At(size_t s, size_t p) const {
        if (s >= Slots()) return nullptr;
        const size_t base = m_start[s + 1] - m_start[s];
        if (p < base) return m_data[m_start[s] + p];
        if (!m_extraOf[s]) return nullptr;
        const std::vector<ILPNonZero*>& extra = m_extra[m_extraOf[s] - 1];
        return p - base < extra.size() ? extra[p - base] : nullptr;
    }
    // Takes a layout: start has one more element than there are lines.
    void Adopt(std::vector<uint32_t>&& start, std::vector<ILPNonZero*>&& data);
    // At least `slots` lines (new lines are empty).
    void Grow(size_t slots);
    // Files nz at the end of line s (s < Slots()), laying the lines out
    // again when the overflow has grown large.
    void Push(size_t s, ILPNonZero* nz);
    // Line r of the result is line oldOf[r] (kNone: empty): every non-empty
    // line is named once, in increasing order, so only the starts move,
    // O(lines).
    void Move(const std::vector<size_t>& oldOf);
    void Clear();

private:
    void Relayout();

    std::vector<uint32_t> m_start;
    std::vector<ILPNonZero*> m_data;
    std::vector<uint32_t> m_extraOf;  // 0: no overflow line, else 1 + its index in m_extra
    std::vector<std::vector<ILPNonZero*>> m_extra;
    size_t m_extraCount = 0;
};

class LPMatrixRows {
public:
    // Brings the rows up to date with all[0..all.size()). `limit` bounds the
    // row index (-1: no bound).
    void Settle(const LPNonZeroList& all, int limit);
    // Brings the per-row entry counts up to date with all without deriving
    // the rows, checking that every entry's equation is the one the list
    // holds at its row (without a list the rows are derived instead).
    void Count(const LPNonZeroList& all, int limit, ILPEquationList* list);
    // Entries of row r as of the last Settle or Count.
    size_t Counted(size_t r) const;
    // Counts all[i], just appended, into row r when the counts are up to
    // date to i; otherwise the next Count takes it. The caller vouches that
    // the entry's equation is the list's equation at index r (a reader that
    // found it by name): Count's visit to the equation and its check are
    // spared. `limit` sizes the counts at once.
    void NoteAppended(size_t i, size_t r, int limit);
    // The rows are derived from scratch at the next Settle.
    void Invalidate() {
        m_built = false;
        m_counted = kNotCounted;
        m_lateCount = m_lateOldest = 0;
    }
    // Follows a renumbering of the equations (removed rows are empty): the
    // surviving rows keep their order, so only the row starts move, O(rows).
    // Falls back to a fresh derivation when the new indices do not keep the
    // order.
    void Rekey(int limit);
    size_t Slots() const { return m_lines.Slots(); }
    size_t Size(size_t r) const { return m_lines.Size(r); }
    ILPNonZero* At(size_t r, size_t p) const { return m_lines.At(r, p); }
    // The equation of row r, or null when the row has no entries.
    const ILPEquation* Owner(size_t r) const { return r < m_owner.size() ? m_owner[r] : nullptr; }

private:
    void Rebuild(const LPNonZeroList& all, int limit);
    // Row index of nz, whose equation is eqn (checked against limit).
    size_t KeyOf(ILPNonZero* nz, const ILPEquation* eqn, int limit) const;
    // Row r belongs to owner; another equation there is a structure error.
    void Claim(size_t r, ILPNonZero* nz, const ILPEquation* owner);
    void CountRoom(size_t r, int limit);
    // Adds the late counts to m_count.
    void ApplyLate();

    LPMatrixLineStore m_lines;
    std::vector<const ILPEquation*> m_owner;
    static constexpr size_t kNotCounted = static_cast<size_t>(-1);
    std::vector<uint32_t> m_count;  // entries per row while not laid out
    size_t m_counted = 0;           // entries of the list in m_count and the late counts
    // The rows of the last entries noted, counted kLate entries late: a row's
    // counter is requested when its entry is noted and incremented once the
    // reader has moved on, so the read does not wait for it (the counters of
    // a large model's rows are rarely in cache). With it the standard read of
    // the benchmark model takes 0.82-0.83 times as long and the XMPS read
    // 0.86-0.89 (bench_reader_ab, medians of 6, both orders). Ring of
    // m_lateCount rows, the oldest at m_lateOldest once full.
    static constexpr size_t kLate = 8;
    size_t m_late[kLate] = {};
    size_t m_lateCount = 0;
    size_t m_lateOldest = 0;
    size_t m_settled = 0;           // entries of the nonzero list already in the rows
    bool m_built = false;
};

// A table of T grown in fixed blocks of 4096 (a model's columns arrive one
// by one, and a doubling array held 8.4 MB at the benchmark read's peak for
// 6.4 MB of runs); new elements are value-initialized.
template <class T>
class LPBlockTable {
public:
    size_t size() const { return m_size; }
    T& operator[](size_t i) { return m_blocks[i >> kShift][i & (kBlock - 1)]; }
    const T& operator[](size_t i) const { return m_blocks[i >> kShift][i & (kBlock - 1)]; }
    void resize(size_t n) {
        for (size_t i = n; i < m_size && (i & (kBlock - 1)) != 0; ++i) (*this)[i] = T();
        const size_t blocks = (n + kBlock - 1) >> kShift;
        if (blocks > m_blocks.capacity()) m_blocks.reserve(std::max(blocks, m_blocks.size() * 2));
        while (m_blocks.size() < blocks) m_blocks.emplace_back(new T[kBlock]());
        m_blocks.resize(blocks);
        m_size = n;
    }

private:
    static constexpr size_t kShift = 12, kBlock = size_t{1} << kShift;
    std::vector<std::unique_ptr<T[]>> m_blocks;
    size_t m_size = 0;
};

class LPMatrixColumns {
public:
    using RowIndex = std::unordered_map<const void*, ILPNonZero*>;
    static constexpr size_t kNone = LPMatrixLineStore::kNone;

    // `all` is the matrix's insertion-ordered nonzero list, which the runs
    // point into.
    explicit LPMatrixColumns(const LPNonZeroList& all) : m_all(all) {}

    size_t Slots() const { return m_runs ? m_run.size() : m_line.size(); }
    size_t Size(size_t c) const {
        if (!m_runs) return c < m_line.size() ? m_line[c].size() : 0;
        return c < m_run.size() ? m_run[c].count : 0;
    }
    ILPNonZero* At(size_t c, size_t p) const {
        if (!m_runs) return c < m_line.size() && p < m_line[c].size() ? m_line[c][p] : nullptr;
        if (c >= m_run.size() || p >= m_run[c].count) return nullptr;
        const Run& run = m_run[c];
        if (p > 0) return m_all[run.pos + p];
        // A walk or search of the column starts here: its next entries are
        // fetched while the caller reads the first.
        if (run.count > 1) m_all.Prefetch(run.pos + 1);
        return run.first;
    }
    // The variable of column c, or null when the column is empty.
    const ILPVariable* Owner(size_t c) const;
    // The column of nz's variable (made when absent). `limit` bounds the
    // index (-1: no bound). A column held by another variable means the keys
    // are out of date: the columns are re-keyed once before giving up.
    size_t For(ILPNonZero* nz, int limit, const char* routine);
    // The live (not trashed) entry of `eqn` in column c, or null.
    ILPNonZero* Find(size_t c, const ILPEquation* eqn);
    // The hash index of column c when it is long (built on demand), else null.
    const RowIndex* IndexOf(size_t c);
    // Files nz, just appended to the nonzero list, at the end of column c.
    void Append(size_t c, ILPNonZero* nz);
    // Whether nz is in its column.
    bool Holds(ILPNonZero* nz) const;
    // Removes nz from its column; false when it is not there.
    bool Erase(ILPNonZero* nz);
    // Drops nz from its column's row index (it was trashed).
    void Unindex(ILPNonZero* nz);
    // Removes the doomed nonzeros from the columns they sit in.
    void Compact(const std::vector<ILPNonZero*>& doomed,
                 const std::unordered_set<const ILPNonZero*>& set);
    // Re-keys every column from its variable's current index.
    void Rekey();
    void TrimTail();

private:
    // Ends the runs: each column gets its own line, sized to its entries.
    void ToLines();

    const LPNonZeroList& m_all;
    // Column c is `first`, then m_all[pos + 1 .. pos + count) of m_run[c]
    // while m_runs. The first entry is held on its own, so that finding an
    // entry in a short column costs no more memory loads than it did with
    // one vector per column (without it, entry lookups by case edits took
    // 1.5 times as long), and so that it may sit apart from the rest: an
    // XMPS XLINEAR section gives the objective row's entries first and then
    // the rest column by column. Keeping such columns as runs instead of
    // giving every column its own vector made the benchmark XMPS read take
    // 0.94-0.97 times as long (bench_reader_ab, medians of 8, both orders).
    struct Run {
        ILPNonZero* first = nullptr;
        uint32_t pos = 0, count = 0;
    };
    bool m_runs = true;
    LPBlockTable<Run> m_run;
    std::vector<std::vector<ILPNonZero*>> m_line;  // after the runs: one line per column
    std::unordered_map<size_t, RowIndex> m_index;  // long columns searched
    size_t m_open = kNone;          // column of the latest entry
    const ILPVariable* m_openVar = nullptr;
};
