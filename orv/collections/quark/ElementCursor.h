#pragma once

#include "orv/collections/quark/Iterators.h"
#include "orv/collections/quark/ListNode.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace orv::collections::quark {

class Collection;

/// What a range-based `for` walks a collection with.
///
///     for (IORVUnknown* element : *list) { ... }
///
/// The walk goes as one with a ConstIterator does, exceptions included, but takes linear time over
/// every kind of list and no counts on the elements of an ArrayList or a LinkedList. An element is
/// borrowed, until the next step or until it leaves the collection: take a Reference where the
/// body may remove it.
///
/// Ownership: keeps a collection on the heap alive. Threads: one at a time, with the collection.
class ORV_API ElementCursor {
public:
    using value_type = IORVUnknown*;
    using difference_type = std::ptrdiff_t;

    /// Stands on the first element.
    explicit ElementCursor(const Collection& collection) : ElementCursor(startOf(collection))
    {
        step();
    }
    ElementCursor(const ElementCursor&) = delete;
    ElementCursor& operator=(const ElementCursor&) = delete;
    [[gnu::always_inline]] ~ElementCursor() noexcept(false)
    {
        if (m_held != nullptr) release(m_held);
        if (m_owned != nullptr) release(m_owned);
    }

    /// The element, which may be null.
    IORVUnknown* operator*() const noexcept { return m_element; }

    /// Moves on. Throws Exception where there are more elements but the collection was modified.
    ElementCursor& operator++()
    {
        step();
        return *this;
    }
    void operator++(int) { step(); }

    /// Whether the walk is over.
    friend bool operator==(const ElementCursor& cursor, std::default_sentinel_t) noexcept
    {
        return cursor.m_atEnd;
    }

    /// Whether `collection` is walked without an iterator, being exactly an ArrayList or a
    /// LinkedList.
    static bool walksDirectly(const Collection& collection) noexcept;

private:
    /// Where a walk begins: an iterator, or the insides of a list.
    struct Start {
        const IORVUnknown* owned = nullptr; ///< iterator or list, with a count
        ConstIterator* iterator = nullptr;
        const std::int32_t* size = nullptr;
        const std::int32_t* modCount = nullptr;
        IORVUnknown* const* const* items = nullptr;
        const ListNode* sentinel = nullptr;
    };

    explicit ElementCursor(const Start& start) noexcept
        : m_owned(start.owned), m_iterator(start.iterator), m_size(start.size),
          m_modCount(start.modCount), m_items(start.items), m_node(start.sentinel),
          m_expectedModCount(m_modCount != nullptr ? *m_modCount : 0)
    {
    }

    static Start startOf(const Collection& collection);
    template <class ConcreteList>
    static Start startOn(const ConcreteList& list);
    static void release(const IORVUnknown* object);
    [[noreturn]] static void throwModified();

    // All of a step is inline, the end too, and what is called never gets at the cursor, as the
    // destructor of a Reference would: so the compiler keeps a walk in registers.

    void step()
    {
        if (m_size == nullptr) {
            stepIterator();
        } else if (m_index < *m_size) {
            stepDirectly();
        } else {
            m_element = nullptr;
            m_atEnd = true;
        }
    }

    void stepDirectly()
    {
        if (*m_modCount != m_expectedModCount) throwModified();
        if (m_node != nullptr) {
            m_node = m_node->next;
            m_element = m_node->element;
        } else {
            m_element = (*m_items)[m_index];
        }
        ++m_index;
    }

    void stepIterator()
    {
        m_atEnd = !m_iterator->hasNext();
        m_element = m_atEnd ? nullptr : nextOf(m_iterator);
        if (m_held != nullptr) release(m_held);
        m_held = m_element;
    }

    static IORVUnknown* nextOf(ConstIterator* iterator);

    const IORVUnknown* m_owned;          ///< with a count, or null
    const IORVUnknown* m_held = nullptr; ///< what an iterator gave, with a count, or null
    ConstIterator* m_iterator;           ///< of a collection that is walked by it
    const std::int32_t* m_size;          ///< of a list that is walked directly
    const std::int32_t* m_modCount;      ///< of that list
    IORVUnknown* const* const* m_items;  ///< of an ArrayList
    const ListNode* m_node;              ///< of a LinkedList, the one given last
    std::int32_t m_expectedModCount;
    std::int32_t m_index = 0;

    IORVUnknown* m_element = nullptr;
    bool m_atEnd = false;
};

} // namespace orv::collections::quark
