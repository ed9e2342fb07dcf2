#pragma once

#include "orv/Str1.h"

/// \file
/// The Str1 classes, which differ in where their buffer comes from. A length of -1 says that a text
/// is terminated. Their assignments are those of Str1.
///
/// A Str1 that shares the buffer of a Str1Static, Str1Local or Str1Fixed must not outlive it.

namespace orv {

/// Begins as a private copy on the heap.
class ORV_API Str1Copy : public Str1 {
public:
    explicit Str1Copy(const char16_t* text, std::int32_t length = -1);
    explicit Str1Copy(const Str1& other);
    explicit Str1Copy(const String& text);
    Str1Copy(const Str1Copy& other);
    ~Str1Copy() override;

    using Str1::operator=;
    Str1Copy& operator=(const Str1Copy& other) = default;
};

/// Begins over the caller's memory, which is written while nobody shares it and the text fits.
class ORV_API Str1Wrap : public Str1 {
public:
    /// `capacity` units are writable; 0 makes the text read-only.
    Str1Wrap(const char16_t* text, std::int32_t length, std::uint32_t capacity);
    Str1Wrap(const Str1Wrap& other) = default;
    ~Str1Wrap() override;

    using Str1::operator=;
    Str1Wrap& operator=(const Str1Wrap& other) = default;
};

/// Begins over a constant text, without any allocation.
class ORV_API Str1Static : public Str1 {
public:
    Str1Static(const char16_t* text, std::int32_t length);
    Str1Static(const Str1Static&) = delete;
    ~Str1Static() override;

    using Str1::operator=;
    Str1Static& operator=(const Str1Static& other);

private:
    StrBuf1Static m_static;
};

/// Prefers a buffer inside the object to one from the heap, whenever nobody else holds it and the
/// text fits.
class ORV_API Str1Embedded : public Str1 {
public:
    Str1Embedded(const Str1Embedded&) = delete;
    ~Str1Embedded() override;

    using Str1::operator=;
    Str1Embedded& operator=(const Str1Embedded& other);

protected:
    /// `embedded` is a member of the derived class, which makes it a static instance and lets go of
    /// it by reset() in its destructor.
    explicit Str1Embedded(StrBuf1* embedded) noexcept : m_embedded(embedded) {}

    StrBuf1* fastAllocBuffer(std::uint32_t capacity) override;

private:
    StrBuf1* m_embedded;
};

/// Begins over an array of the caller's, usually on the stack, and moves to the heap when the text
/// outgrows it.
class ORV_API Str1Local : public Str1Embedded {
public:
    /// The first `length` units of the array are the text.
    Str1Local(const char16_t* array, std::int32_t length, std::uint32_t capacity);
    Str1Local(const Str1Local&) = delete;
    ~Str1Local() override;

    using Str1Embedded::operator=;
    Str1Local& operator=(const Str1Local& other);

private:
    StrBuf1 m_local;
};

/// Begins empty, with room for `N` units inside the object.
template <std::uint32_t N>
class ORV_API Str1Fixed : public Str1Embedded {
public:
    Str1Fixed() noexcept : Str1Embedded(&m_fixed) { m_fixed.initStaticInstance(0); }
    Str1Fixed(const Str1Fixed&) = delete;
    ~Str1Fixed() override;

    using Str1Embedded::operator=;
    Str1Fixed& operator=(const Str1Fixed& other)
    {
        Str1::operator=(other);
        return *this;
    }

private:
    StrBuf1Fixed<N> m_fixed;
};

template <std::uint32_t N>
Str1Fixed<N>::~Str1Fixed()
{
    reset();
}

extern template class Str1Fixed<128>;

} // namespace orv
