#pragma once

#include "platform/orvcore.h"

#include <cstddef>
#include <type_traits>
#include <utility>

namespace orv {

/// Owns an array that an operation hands to its caller; null owns nothing. Moves, does not copy.
///
///     OwningArray<char> name = text.getBytesAZ(u"UTF-8");
///     if (name) std::puts(name.get());
template <class T>
requires std::is_trivial_v<T>
class OwningArray {
public:
    OwningArray() noexcept = default;
    /// An array of `length` elements without values. Throws as orvcore::allocate() does.
    explicit OwningArray(std::size_t length)
        // NOLINTNEXTLINE(bugprone-sizeof-expression): T may well be a pointer
        : m_elements(static_cast<T*>(orvcore::allocate(length * sizeof(T))))
    {
    }
    OwningArray(OwningArray&& other) noexcept : m_elements(other.detach()) {}
    OwningArray& operator=(OwningArray&& other) noexcept
    {
        std::swap(m_elements, other.m_elements);
        return *this;
    }
    ~OwningArray() { orvcore::deallocate(m_elements); }

    /// The first element, or null.
    T* get() const noexcept { return m_elements; }
    T& operator[](std::size_t index) const noexcept { return m_elements[index]; }
    explicit operator bool() const noexcept { return m_elements != nullptr; }

    /// Gives the array away; it goes to orvcore::deallocate().
    [[nodiscard]] T* detach() noexcept { return std::exchange(m_elements, nullptr); }

private:
    T* m_elements = nullptr;
};

} // namespace orv
