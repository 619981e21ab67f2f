// The row and column structures of LPMatrix (private to it).
//
// Columns are built as entries arrive, because adding a nonzero looks for an
// entry of the same row in its column: one contiguous line per column, kept
// in an array indexed by the variable's index. A column that grows past a few
// entries also keeps a hash index from equation to nonzero.
//
// Rows are derived from the matrix's insertion-ordered nonzero list when a
// row is first walked: one pass counts the entries of each row and one
// places them (compressed row storage). Entries added after that are filed
// into small per-row overflow lines until they are many, when the rows are
// derived again. Asking only how many entries rows have (as finishing a read
// does) runs the counting alone, kept up to date as entries are appended,
// and leaves the placing to the first walk. Within a row the entries are always in insertion order, so
// "the p-th entry of row r" does not depend on the layout and row cursors
// survive a re-derivation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class ILPEquation;
class ILPEquationList;
class ILPNonZero;
class ILPVariable;

class LPMatrixColumns {
public:
    using RowIndex = std::unordered_map<const void*, ILPNonZero*>;
    struct Line {
        std::vector<ILPNonZero*> entries;
        const void* owner = nullptr;     // its variable, while entries is not empty
        std::unique_ptr<RowIndex> index;  // equation -> live nonzero, long columns only
    };

    size_t Slots() const { return m_lines.size(); }
    Line* At(int idx);
    // The line of nz's variable, created when absent. `limit` bounds the
    // index (-1: no bound). A slot held by another variable means the keys
    // are out of date: the lines are re-keyed once before giving up.
    Line& For(ILPNonZero* nz, int limit, const char* routine);
    // The live (not trashed) entry of `eqn` in the column, or null.
    ILPNonZero* Find(const Line& line, const ILPEquation* eqn) const;
    void Append(Line& line, ILPNonZero* nz);
    // Makes room for `extra` more entries in the line of index idx (>= 0),
    // so that a batch of known size is appended without regrowth.
    void Reserve(size_t idx, size_t extra);
    // Removes nz from its column; false when it is not there.
    bool Erase(ILPNonZero* nz);
    // Drops nz from its column's row index (it was trashed).
    void Unindex(ILPNonZero* nz);
    // Removes the doomed nonzeros from the columns they sit in.
    void Compact(const std::vector<ILPNonZero*>& doomed,
                 const std::unordered_set<const ILPNonZero*>& set);
    // Re-keys every line from its variable's current index.
    void Rekey();
    void TrimTail();

private:
    void Reindex(Line& line);
    std::vector<Line> m_lines;
};

class LPMatrixRows {
public:
    // Brings the rows up to date with all[0..all.size()). `limit` bounds the
    // row index (-1: no bound).
    void Settle(const std::deque<ILPNonZero*>& all, int limit);
    // Brings the per-row entry counts up to date with all without deriving
    // the rows, checking that every entry's equation is the one the list
    // holds at its row (without a list the rows are derived instead).
    void Count(const std::deque<ILPNonZero*>& all, int limit, ILPEquationList* list);
    // Entries of row r as of the last Settle or Count.
    size_t Counted(size_t r) const;
    // Counts all[i], just appended, into row r when the counts are up to
    // date to i; otherwise the next Count takes it. The caller vouches that
    // the entry's equation is the list's equation at index r (a reader that
    // found it by name): Count's visit to the equation and its check are
    // spared.
    void NoteAppended(size_t i, size_t r);
    // The rows are derived from scratch at the next Settle.
    void Invalidate() {
        m_built = false;
        m_counted = kNotCounted;
    }
    // Follows a renumbering of the equations (removed rows are empty): the
    // surviving rows keep their order, so only the row starts move, O(rows).
    // Falls back to a fresh derivation when the new indices do not keep the
    // order.
    void Rekey(int limit);
    size_t Slots() const { return m_start.empty() ? 0 : m_start.size() - 1; }
    size_t Size(size_t r) const;
    ILPNonZero* At(size_t r, size_t p) const;
    // The equation of row r, or null when the row has no entries.
    const ILPEquation* Owner(size_t r) const { return r < m_owner.size() ? m_owner[r] : nullptr; }

private:
    void Rebuild(const std::deque<ILPNonZero*>& all, int limit);
    // Row index of nz, whose equation is eqn (checked against limit).
    size_t KeyOf(ILPNonZero* nz, const ILPEquation* eqn, int limit) const;
    // Row r belongs to owner; another equation there is a structure error.
    void Claim(size_t r, ILPNonZero* nz, const ILPEquation* owner);
    void CountRoom(size_t r);

    std::vector<size_t> m_start;  // row r holds m_data[m_start[r] .. m_start[r+1])
    std::vector<ILPNonZero*> m_data;
    std::vector<std::vector<ILPNonZero*>> m_extra;  // filed after the last derivation
    std::vector<const ILPEquation*> m_owner;
    static constexpr size_t kNotCounted = static_cast<size_t>(-1);
    std::vector<uint32_t> m_count;  // entries per row while not laid out
    size_t m_counted = 0;           // entries of the list in m_count
    size_t m_extraCount = 0;
    size_t m_settled = 0;  // entries of the nonzero list already in the rows
    bool m_built = false;
};
