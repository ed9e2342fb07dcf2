#pragma once

#include "orv/collections/quark/LinkedList.h"

#include <cstdint>

namespace orv::collections::internal {

/// Walks a LinkedList as get(0), get(1) ... would, in constant time a step.
///
///     LinkedListCursor cursor(*m_queue);
///     while (cursor.hasNext()) process(cursor.next());
///
/// The list may change during the walk: what was appended is reached, and after any other change
/// the walk goes on with the next index, found anew from the first node. The list must outlive the
/// cursor. Threads: those of the list.
class LinkedListCursor {
public:
    explicit LinkedListCursor(const quark::LinkedList& list) : m_list(list) { rewind(); }
    LinkedListCursor(const LinkedListCursor&) = delete;
    LinkedListCursor& operator=(const LinkedListCursor&) = delete;

    /// Whether the list has an element at the next index.
    bool hasNext() const noexcept { return m_index < m_list.m_size; }

    /// The element at the next index, which must exist, borrowed from the list: take a Reference
    /// where the list may lose it.
    IORVUnknown* next()
    {
        if (m_modCount != m_list.m_modCount) rewind();
        m_last = m_last->next;
        ++m_index;
        return m_last->element;
    }

private:
    /// Finds the node before the next index.
    void rewind()
    {
        m_modCount = m_list.m_modCount;
        m_last = &m_list.m_sentinel;
        for (std::int32_t i = 0; i < m_index; ++i) m_last = m_last->next;
    }

    const quark::LinkedList& m_list;
    const quark::ListNode* m_last = nullptr; ///< valid while no modification is counted
    std::int32_t m_modCount = 0;
    std::int32_t m_index = 0;
};

} // namespace orv::collections::internal
