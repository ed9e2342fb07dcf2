#pragma once

#include "orv/collections/quark/LinkedList.h"

namespace orv::collections::internal {

/// Walks a LinkedList that is only appended to meanwhile, without taking a count.
///
///     LinkedListCursor cursor(*m_processors);
///     while (cursor.hasNext()) process(cursor.next());
///
/// What was appended during the walk is reached. The list must outlive the cursor. Threads: those
/// of the list.
class LinkedListCursor {
public:
    explicit LinkedListCursor(const quark::LinkedList& list) noexcept
        : m_end(&list.m_sentinel), m_last(m_end)
    {
    }
    LinkedListCursor(const LinkedListCursor&) = delete;
    LinkedListCursor& operator=(const LinkedListCursor&) = delete;

    bool hasNext() const noexcept { return m_last->next != m_end; }

    /// The next element, which must exist, borrowed from the list.
    IORVUnknown* next() noexcept
    {
        m_last = m_last->next;
        return m_last->element;
    }

private:
    const quark::ListNode* const m_end;
    const quark::ListNode* m_last;
};

} // namespace orv::collections::internal
