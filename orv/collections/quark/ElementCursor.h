#pragma once

#include "orv/Reference.h"
#include "orv/collections/quark/Iterators.h"

#include <cstddef>
#include <iterator>

namespace orv::collections::quark {

class Collection;

/// What a range-based `for` walks a collection with; an input iterator.
///
///     for (IORVUnknown* element : *list) { ... }
///
/// The walk goes as a ConstIterator goes, exceptions included, but takes linear time over every
/// kind of list and no counts on its elements: an element is borrowed, until the next step or until
/// it leaves the collection. Take a Reference where the body may remove it.
///
/// Ownership: keeps a collection on the heap alive. Threads: one at a time, with the collection.
class ORV_API ElementCursor {
public:
    using value_type = IORVUnknown*;
    using difference_type = std::ptrdiff_t;

    /// Stands on the first element.
    explicit ElementCursor(const Collection& collection);

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

private:
    void step();

    Reference<ConstIterator> m_iterator;
    Reference<IORVUnknown> m_held;
    IORVUnknown* m_element = nullptr;
    bool m_atEnd = false;
};

} // namespace orv::collections::quark
