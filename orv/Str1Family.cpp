#include "orv/Str1Family.h"

#include "orv/String.h"
#include "orv/internal/UnitScan.h"

namespace orv {

using internal::measured;

Str1Copy::Str1Copy(const char16_t* text, std::int32_t length)
{
    copy(text, length);
}

Str1Copy::Str1Copy(const Str1& other)
{
    copy(other);
}

Str1Copy::Str1Copy(const String& text)
{
    copy(text);
}

Str1Copy::Str1Copy(const Str1Copy& other) : Str1()
{
    copy(other);
}

Str1Copy::~Str1Copy() = default;

Str1Wrap::Str1Wrap(const char16_t* text, std::int32_t length, std::uint32_t capacity)
{
    use(new StrBuf1Wrap(text, capacity), measured(text, length));
}

Str1Wrap::~Str1Wrap() = default;

Str1Static::Str1Static(const char16_t* text, std::int32_t length)
    : m_static(const_cast<char16_t*>(text), 0)
{
    use(&m_static, measured(text, length));
}

// A base lets its buffer go after the members are gone, so those who embed it let go before.

Str1Static::~Str1Static()
{
    reset();
}

Str1Static& Str1Static::operator=(const Str1Static& other)
{
    Str1::operator=(other);
    return *this;
}

Str1Embedded::~Str1Embedded() = default;

Str1Embedded& Str1Embedded::operator=(const Str1Embedded& other)
{
    Str1::operator=(other);
    return *this;
}

StrBuf1* Str1Embedded::fastAllocBuffer(std::uint32_t capacity)
{
    const std::int32_t room = m_embedded->isPrivatelyHeld(1);
    return room != 0 && capacity <= static_cast<std::uint32_t>(room) ? m_embedded : nullptr;
}

Str1Local::Str1Local(const char16_t* array, std::int32_t length, std::uint32_t capacity)
    : Str1Embedded(&m_local), m_local(const_cast<char16_t*>(array), capacity)
{
    m_local.initStaticInstance(0);
    use(&m_local, measured(array, length));
}

Str1Local::~Str1Local()
{
    reset();
}

Str1Local& Str1Local::operator=(const Str1Local& other)
{
    Str1::operator=(other);
    return *this;
}

template class Str1Fixed<128>;

} // namespace orv
