#include "orv/Str1.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/internal/ReadBracket.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>
#include <cstring>

namespace orv {

using internal::measured;

namespace {

/// The largest capacity that is a multiple of 16.
constexpr std::int64_t MOST_UNITS = StrBuf1::MAX_CAPACITY & ~15u;

void moveUnits(char16_t* to, const char16_t* from, std::int32_t count)
{
    std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(char16_t));
}

} // namespace

/// The units that a change of the buffer has to keep, relative to the offset.
struct Str1::Kept {
    std::int32_t start;
    std::int32_t length;
};

Str1::Str1(std::uint32_t capacity)
{
    if (capacity == 0) return;
    m_buffer = StrBuf1Wrap::newStrBuf1Cap(capacity);
    m_buffer->AddRef();
}

Str1::Str1(const Str1& other)
    : m_buffer(other.m_buffer), m_offset(other.m_offset), m_length(other.m_length)
{
    if (m_buffer != nullptr) m_buffer->AddRef();
}

Str1::Str1(const Str1& other, std::int32_t start, std::int32_t end)
{
    share(other, start, end);
}

Str1::Str1(const signed char* bytes, std::int32_t length, const char16_t* encoding)
{
    static_cast<void>(copyA(bytes, length, encoding));
}

void Str1::use(StrBuf1* buffer, std::int32_t length)
{
    moveTo(buffer, {0, 0});
    m_length = length;
}

Str1::~Str1()
{
    reset();
}

void Str1::share(const Str1& other, std::int32_t start, std::int32_t end)
{
    if (end == -1 || end > other.m_length) end = other.m_length;
    if (start < 0 || start >= end) return;
    m_buffer = other.m_buffer;
    m_buffer->AddRef();
    m_offset = other.m_offset + start;
    m_length = end - start;
}

void Str1::clear() noexcept
{
    m_offset = 0;
    m_length = 0;
}

void Str1::reset()
{
    clear();
    if (m_buffer != nullptr) m_buffer->Release();
    m_buffer = nullptr;
}

// The buffer

StrBuf1* Str1::fastAllocBuffer(std::uint32_t)
{
    return nullptr;
}

void Str1::moveTo(StrBuf1* buffer, const Kept& kept)
{
    if (kept.length > 0) {
        moveUnits(buffer->getData() + kept.start, getData1() + kept.start, kept.length);
    }
    buffer->AddRef();
    if (m_buffer != nullptr) m_buffer->Release();
    m_buffer = buffer;
    m_offset = 0;
}

std::int32_t Str1::ensureCapacity1(std::int64_t capacity, std::int32_t keepStart,
                                   std::int32_t keepEnd)
{
    if (keepEnd == -1) keepEnd = m_length;
    const Kept kept{keepStart, std::max(keepEnd - keepStart, 0)};
    const std::int32_t room = m_buffer == nullptr ? 0 : m_buffer->isPrivatelyHeld(0);
    if (room != 0) {
        const std::int32_t offset = kept.length == 0 ? 0 : m_offset;
        if (offset + capacity <= room) {
            m_offset = offset;
            return room - offset;
        }
        if (offset > 0 && capacity <= room) {
            moveUnits(m_buffer->getData() + kept.start, getData1() + kept.start, kept.length);
            m_offset = 0;
            return room;
        }
    } else if (capacity == 0) {
        return -m_offset;
    }

    if (capacity > MOST_UNITS) throwOutOfMemory();
    StrBuf1* buffer = fastAllocBuffer(static_cast<std::uint32_t>(capacity));
    if (buffer == nullptr) {
        const std::int64_t grown = std::min<std::int64_t>(capacity * 5 / 4, MOST_UNITS);
        buffer = StrBuf1Wrap::newStrBuf1Cap(kept.length > 0 ? grown : capacity);
    }
    moveTo(buffer, kept);
    return m_buffer->getBufCapacity();
}

bool Str1::liesWithin(const char16_t* text) const noexcept
{
    if (m_buffer == nullptr) return false;
    const char16_t* const start = m_buffer->getData();
    return text >= start && text < start + m_buffer->getBufCapacity();
}

// Assignment

Result Str1::setTo(const Str1& other)
{
    if (other.m_buffer != nullptr) other.m_buffer->AddRef();
    StrBuf1* const old = m_buffer;
    m_buffer = other.m_buffer;
    m_offset = other.m_offset;
    m_length = other.m_length;
    if (old != nullptr) old->Release();
    return S_OK;
}

Str1& Str1::operator=(const Str1& other)
{
    setTo(other);
    return *this;
}

Str1& Str1::operator=(const char16_t* text)
{
    copy(text);
    return *this;
}

Str1& Str1::operator=(const String& text)
{
    copy(text);
    return *this;
}

Result Str1::copy(const Str1& other)
{
    return copy(other.getData0(), other.m_length);
}

Result Str1::copy(const char16_t* text, std::int32_t length)
{
    const Str1 guard = liesWithin(text) ? *this : Str1(); // keeps the source alive and unwritten
    length = measured(text, length);
    if (length > 0) {
        ensureCapacity1(length, 0, 0);
        moveUnits(m_buffer->getData(), text, length);
    }
    m_offset = 0;
    m_length = length;
    return S_OK;
}

Result Str1::copy(const String& text)
{
    const internal::ReadBracket source(text);
    return copy(source.units(), source.length());
}

// Appending

Result Str1::append(const char16_t* text, std::int32_t length)
{
    length = measured(text, length);
    if (length < 1) return S_OK;
    const Str1 guard = liesWithin(text) ? *this : Str1();
    ensureCapacity1(std::int64_t{m_length} + length, 0, -1);
    moveUnits(writableData() + m_length, text, length);
    m_length += length;
    return S_OK;
}

Result Str1::append(char16_t unit, std::int32_t count)
{
    if (count < 1) return S_OK;
    ensureCapacity1(std::int64_t{m_length} + count, 0, -1);
    std::fill_n(writableData() + m_length, count, unit);
    m_length += count;
    return S_OK;
}

Result Str1::append(const String& text)
{
    const internal::ReadBracket source(text);
    return append(source.units(), source.length());
}

Result Str1::append(const Str1& text, std::int32_t start, std::int32_t end)
{
    if (end == -1 || end > text.m_length) end = text.m_length;
    if (start < 0 || start >= end) return S_OK;
    return append(text.getData1() + start, end - start);
}

Str1& Str1::operator+=(const char16_t* text)
{
    append(text, -1);
    return *this;
}

Str1& Str1::operator+=(char16_t unit)
{
    append(unit, 1);
    return *this;
}

Str1& Str1::operator+=(const String& text)
{
    append(text);
    return *this;
}

Str1& Str1::operator+=(const Str1& text)
{
    append(text);
    return *this;
}

// Reading

Str1 Str1::substring(std::int32_t start, std::int32_t end) const
{
    return Str1(*this, start, end);
}

std::int32_t Str1::indexOf(char16_t unit, std::int32_t start, bool ignoreCase) const
{
    if (start < 0 || start >= m_length) return -1;
    const internal::Units rest{getData1() + start, m_length - start};
    const std::int32_t place =
        ignoreCase ? internal::findFoldedUnit(rest, unit) : internal::findUnit(rest, unit);
    return place < 0 ? -1 : start + place;
}

bool Str1::operator==(const Str1& other) const noexcept
{
    if (m_length != other.m_length) return false;
    return m_length == 0 || internal::equalUnits(getData1(), other.getData1(), m_length);
}

bool Str1::operator==(const char16_t* text) const noexcept
{
    if (ORVStrLenW(text) != m_length) return false;
    return m_length == 0 || internal::equalUnits(getData1(), text, m_length);
}

bool Str1::startsWith(const char16_t* text, std::int32_t length, bool ignoreCase) const
{
    length = measured(text, length);
    if (length > m_length) return false;
    if (length == 0) return true;
    if (!ignoreCase) return internal::equalUnits(getData1(), text, length);
    return std::equal(text, text + length, getData1(), [](char16_t a, char16_t b) {
        return internal::foldedUnit(a) == internal::foldedUnit(b);
    });
}

bool Str1::startsWith(const Str1& text, bool ignoreCase) const
{
    return startsWith(text.getData0(), text.m_length, ignoreCase);
}

String Str1::toORVString() const
{
    return m_length == 0 ? String() : String(getData1(), m_length);
}

// Case

template <class Map>
Result Str1::mapUnits(Map map)
{
    const char16_t* const units = getData0();
    std::int32_t i = 0;
    while (i < m_length && map(units[i]) == units[i]) ++i;
    if (i == m_length) return S_OK;

    ensureCapacity1(m_length, 0, -1);
    char16_t* const own = writableData();
    std::transform(own + i, own + m_length, own + i, map);
    return S_OK;
}

Result Str1::toLower()
{
    return mapUnits(internal::foldedUnit);
}

Result Str1::toUpper()
{
    return mapUnits([](char16_t unit) {
        if (unit >= 0x80) return ORVToUpperW(unit);
        return static_cast<char16_t>(unit >= u'a' && unit <= u'z' ? unit - 0x20 : unit);
    });
}

// Appending in a row

void Str1::Appendor::setRemCap(std::int32_t n)
{
    const std::int32_t reservation = m_first != 0 ? m_first : m_later;
    const std::int64_t capacity =
        std::int64_t{m_text.m_length} + std::max(n, 0) + std::max(reservation, 0);
    m_room = m_text.ensureCapacity1(capacity, 0, -1) - m_text.m_length;
    m_first = 0;
}

Result Str1::Appendor::fastAppend(const char16_t* text, std::int32_t n)
{
    if (n < 1) return S_OK;
    const bool mayMove = n > m_room;
    const Str1 guard = mayMove && m_text.liesWithin(text) ? m_text : Str1();
    moveUnits(checkAvailable(n), text, n);
    return S_OK;
}

Result Str1::Appendor::firstAppend(const char16_t* text, std::int32_t n)
{
    if (n >= 1) return fastAppend(text, n);
    setRemCap(n);
    return S_OK;
}

} // namespace orv
