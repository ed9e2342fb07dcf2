#pragma once

#include <concepts>
#include <cstddef>
#include <utility>

/// Owns one count of a counted object or interface, as orv::Reference does; null owns nothing.
///
///     CORVSmartPtr<CORVByteBuffer> rest = buffer->slice();
///
/// `T` needs AddRef() and Release() and may be const. Only heap objects may get into one.
/// Dereferencing null is not checked. Threads: a plain pointer; one object may have several on
/// several threads.
template <class T>
class CORVSmartPtr {
public:
    constexpr CORVSmartPtr(std::nullptr_t = nullptr) noexcept {}

    /// Takes a count on `object`, unless it is null.
    CORVSmartPtr(T* object) : m_object(object)
    {
        if (m_object != nullptr) m_object->AddRef();
    }
    CORVSmartPtr(const CORVSmartPtr& other) : CORVSmartPtr(other.m_object) {}
    CORVSmartPtr(CORVSmartPtr&& other) noexcept : m_object(other.detach()) {}
    template <class U>
    requires std::convertible_to<U*, T*> CORVSmartPtr(const CORVSmartPtr<U>& other)
        : CORVSmartPtr(other.get())
    {
    }
    template <class U>
    requires std::convertible_to<U*, T*> CORVSmartPtr(CORVSmartPtr<U>&& other)
    noexcept : m_object(other.detach()) {}

    ~CORVSmartPtr() noexcept(false)
    {
        if (m_object != nullptr) m_object->Release();
    }

    /// Takes the new count before it gives the old one back.
    CORVSmartPtr& operator=(CORVSmartPtr other)
    {
        std::swap(m_object, other.m_object);
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
    [[nodiscard]] static CORVSmartPtr adopt(T* object) noexcept
    {
        CORVSmartPtr pointer;
        pointer.m_object = object;
        return pointer;
    }

    friend bool operator==(const CORVSmartPtr& a, const CORVSmartPtr& b) noexcept
    {
        return a.m_object == b.m_object;
    }
    friend bool operator==(const CORVSmartPtr& a, const T* b) noexcept { return a.m_object == b; }
    friend bool operator==(const CORVSmartPtr& a, std::nullptr_t) noexcept
    {
        return a.m_object == nullptr;
    }

private:
    T* m_object = nullptr;
};
