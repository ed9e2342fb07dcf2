#pragma once

#include "orv/CoreAllocated.h"
#include "orv/Reference.h"
#include "orv/log/ILogEntry.h"

#include <cstddef>
#include <memory>
#include <utility>

namespace orv::log::internal {

/// Entries that wait, oldest first, each held by a count. A list of small blocks: 8 bytes an entry,
/// and an allocation for every 126. Not locked.
class EntryQueue {
public:
    EntryQueue() noexcept = default;
    ~EntryQueue() noexcept(false) { clear(); }
    EntryQueue(const EntryQueue&) = delete;
    EntryQueue& operator=(const EntryQueue&) = delete;

    /// Adds `entry` at the end. Throws OutOfMemoryException and adds nothing.
    void append(const ILogEntry* entry)
    {
        if (m_last == nullptr || m_end == BLOCK_SIZE) addBlock();
        entry->AddRef();
        m_last->entries[m_end++] = entry;
    }

    /// Takes the oldest entry out; null where there is none.
    Reference<const ILogEntry> removeFirst()
    {
        if (isEmpty()) return nullptr;
        const ILogEntry* const entry = m_first->entries[m_begin++];
        if (m_begin == BLOCK_SIZE) {
            dropFirstBlock();
        } else if (isEmpty()) {
            m_begin = 0;
            m_end = 0;
        }
        return Reference<const ILogEntry>::adopt(entry);
    }

    /// Calls `visit` with each entry in turn, with those too that it adds.
    template <class Visit>
    void forEach(Visit visit) const
    {
        const Block* block = m_first;
        for (std::size_t i = m_begin; block != nullptr;) {
            if (block == m_last && i == m_end) return;
            visit(block->entries[i++]);
            if (i < BLOCK_SIZE) continue;
            if (block == m_last) return;
            block = block->next;
            i = 0;
        }
    }

private:
    static constexpr std::size_t BLOCK_SIZE = 126;

    struct Block : CoreAllocated {
        Block* next = nullptr;
        const ILogEntry* entries[BLOCK_SIZE];
    };

    bool isEmpty() const noexcept
    {
        return m_first == nullptr || (m_first == m_last && m_begin == m_end);
    }
    void addBlock();
    void dropFirstBlock();
    void clear();

    Block* m_first = nullptr;
    Block* m_last = nullptr;
    Block* m_spare = nullptr; ///< one that has been emptied, to be used again
    std::size_t m_begin = 0;  ///< of the entries in the first block
    std::size_t m_end = 0;    ///< behind the entries in the last block
};

} // namespace orv::log::internal
