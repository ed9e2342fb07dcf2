#pragma once

#include <concepts>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace orv {

/// Owns one count of a counted object or interface; null owns nothing.
///
///     Reference<Reader> reader = makeReference<InputStreamReader>(stream, u"UTF-8");
///
/// `T` needs AddRef() and Release() and may be const. Only heap objects may get into a Reference.
/// Dereferencing null is not checked. Threads: a Reference is a plain pointer; one object may have
/// References on several threads.
template <class T>
class Reference {
public:
    constexpr Reference() noexcept = default;
    constexpr Reference(std::nullptr_t) noexcept {}

    /// Takes a count on `object`, unless it is null.
    Reference(T* object) : m_object(object) { acquire(); }

    Reference(const Reference& other) : m_object(other.m_object) { acquire(); }
    Reference(Reference&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}

    template <class U>
    requires std::convertible_to<U*, T*> Reference(const Reference<U>& other)
        : m_object(other.get())
    {
        acquire();
    }
    template <class U>
    requires std::convertible_to<U*, T*> Reference(Reference<U>&& other)
    noexcept : m_object(other.detach()) {}

    ~Reference() noexcept(false)
    {
        if (m_object != nullptr) m_object->Release();
    }

    /// Takes the new count before it gives the old one back.
    Reference& operator=(const Reference& other)
    {
        reset(other.m_object);
        return *this;
    }
    Reference& operator=(Reference&& other)
    {
        if (this == &other) return *this;
        const Reference old(std::move(*this));
        m_object = std::exchange(other.m_object, nullptr);
        return *this;
    }
    Reference& operator=(T* object)
    {
        reset(object);
        return *this;
    }
    Reference& operator=(std::nullptr_t)
    {
        reset(nullptr);
        return *this;
    }

    /// The object, or null.
    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// Gives the pointer away together with its count.
    [[nodiscard]] T* detach() noexcept { return std::exchange(m_object, nullptr); }

    /// Owns a count that the caller has taken already, as one from QueryInterface().
    [[nodiscard]] static Reference adopt(T* object) noexcept
    {
        Reference reference;
        reference.m_object = object;
        return reference;
    }

    friend bool operator==(const Reference& a, const Reference& b) noexcept
    {
        return a.m_object == b.m_object;
    }
    friend bool operator==(const Reference& a, const T* b) noexcept { return a.m_object == b; }
    friend bool operator==(const Reference& a, std::nullptr_t) noexcept
    {
        return a.m_object == nullptr;
    }

private:
    void acquire() const
    {
        if (m_object != nullptr) m_object->AddRef();
    }

    void reset(T* object)
    {
        if (object != nullptr) object->AddRef();
        T* const old = std::exchange(m_object, object);
        if (old != nullptr) old->Release();
    }

    T* m_object = nullptr;
};

/// Makes an object on the heap with one count.
template <class T, class... Arguments>
[[nodiscard]] Reference<T> makeReference(Arguments&&... arguments)
{
    return Reference<T>(new T(std::forward<Arguments>(arguments)...));
}

} // namespace orv
