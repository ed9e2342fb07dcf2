#pragma once

#include "orv/collections/ElementCast.h"
#include "orv/collections/quark/ElementCursor.h"

#include <cstddef>
#include <iterator>

namespace orv::collections {

/// What a range-based `for` walks a typed collection with. The elements are borrowed; see
/// quark::ElementCursor.
template <class T>
class TypedCursor {
public:
    using value_type = T*;
    using difference_type = std::ptrdiff_t;

    explicit TypedCursor(const quark::Collection& collection) : m_cursor(collection) {}
    TypedCursor(const TypedCursor&) = delete;
    TypedCursor& operator=(const TypedCursor&) = delete;
    [[gnu::always_inline]] ~TypedCursor() noexcept(false) {} // as the cursor within

    /// The element, which may be null. Throws CastFailedException where it is no `T`.
    T* operator*() const { return elementCast<T>(*m_cursor); }

    TypedCursor& operator++()
    {
        ++m_cursor;
        return *this;
    }
    void operator++(int) { ++m_cursor; }

    friend bool operator==(const TypedCursor& cursor, std::default_sentinel_t end) noexcept
    {
        return cursor.m_cursor == end;
    }

private:
    quark::ElementCursor m_cursor;
};

} // namespace orv::collections
