#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/internal/StringAccess.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

namespace orv {

namespace {

constexpr const char16_t* WHITE_SPACE = u" \t\r\n";

/// A text in one block with its object saves an allocation; a longer one that grows gets a block
/// of its own, which can often be extended in place.
constexpr std::int32_t LONGEST_COMPACT_GROWTH = 256;

bool liesWithin(const char16_t* place, const char16_t* text, std::int32_t length)
{
    return std::less_equal<>()(text, place) && std::less_equal<>()(place, text + length);
}

/// std::memmove() that takes null for no units.
void moveUnits(char16_t* to, const char16_t* from, std::int32_t count)
{
    if (count > 0) std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(char16_t));
}

util::RWCharBuffer* newGrowingText(std::int32_t length)
{
    auto* const buffer = new util::RWCharBuffer;
    try {
        buffer->reserve(internal::withTerminator(length));
    } catch (...) {
        delete buffer;
        throw;
    }
    buffer->InternalTakeFirst();
    return buffer;
}

} // namespace

/// What replace() does to a text, with start and count brought into it.
struct String::Splice {
    Splice(std::int32_t length, std::int32_t first, std::int32_t replaced, std::int32_t put)
        : start(first == -1 || first > length ? length : std::max(first, 0)), added(put)
    {
        const std::int32_t rest = length - start;
        count = replaced == -1 || replaced > rest ? rest : std::max(replaced, 0);
        tail = rest - count;
        const std::int64_t total = std::int64_t{length} - count + added;
        if (total > std::numeric_limits<std::int32_t>::max() - 1) throwOutOfMemory();
        newLength = static_cast<std::int32_t>(total);
    }

    std::int32_t start;
    std::int32_t added;
    std::int32_t count;
    std::int32_t tail; ///< units behind those replaced
    std::int32_t newLength;
};

template <class Put>
void String::splicePlain(const Splice& splice, const char16_t* source, Put put)
{
    const char16_t* const old = m_plain->plainData();
    const std::int32_t room = internal::withTerminator(splice.newLength);
    const bool readsItself = splice.added > 0 && liesWithin(source, old, textLength());
    auto* const own = isPrivate() ? static_cast<util::RWCharBuffer*>(m_plain) : nullptr;
    const bool growsItself = own != nullptr && !readsItself;

    if (growsItself && (room <= own->plainCapacity() || !own->isCompact())) {
        char16_t* const units = own->reserve(room);
        char16_t* const gap = units + splice.start;
        if (splice.added != splice.count) {
            moveUnits(gap + splice.added, gap + splice.count, splice.tail);
        }
        put(gap);
        endText(units + splice.newLength);
        return;
    }

    // The old buffer stays until the new one is complete: others may share it, the source may lie
    // in it, and without memory for the new one nothing has changed.
    util::RWCharBuffer* const fresh =
        growsItself && room > LONGEST_COMPACT_GROWTH
            ? newGrowingText(splice.newLength)
            : internal::newText(splice.newLength, own != nullptr ? own->plainCapacity() : 0);
    char16_t* const units = fresh->plainUnits();
    moveUnits(units, old, splice.start);
    put(units + splice.start);
    moveUnits(units + splice.start + splice.added, old + splice.start + splice.count, splice.tail);
    takePlain(fresh);
    endText(units + splice.newLength);
}

template <class Put>
void String::splice(std::int32_t start, std::int32_t count, std::int32_t added,
                    const char16_t* source, Put put)
{
    if (m_plain == nullptr) copyOnWrite(0);
    if (m_plain != nullptr) {
        dropBytes();
        splicePlain(Splice(textLength(), start, count, added), source, put);
        return;
    }
    Writing writing(*this, 0);
    const Splice splice(writing.length(), start, count, added);
    char16_t* const gap = writing.grow(splice.newLength) + splice.start;
    if (added != splice.count) moveUnits(gap + added, gap + splice.count, splice.tail);
    put(gap);
    writing.close(splice.newLength);
}

String& String::replace(std::int32_t start, std::int32_t count, const char16_t* text,
                        std::int32_t length, std::int32_t sourceOffset)
{
    length = internal::measured(text, length);
    sourceOffset = std::clamp(sourceOffset, 0, length);
    const std::int32_t added = length - sourceOffset;
    const char16_t* const source = added > 0 ? text + sourceOffset : text;

    if (m_plain == nullptr && added > 0 && liesWithin(source, getData(), textLength())) {
        const String copy(source, added); // the text moves or is overwritten
        return replace(start, count, copy.getData(), added, 0);
    }
    splice(start, count, added, source, [=](char16_t* gap) { moveUnits(gap, source, added); });
    return *this;
}

String& String::replace(std::int32_t start, std::int32_t count, const String& text,
                        std::int32_t sourceOffset)
{
    // The bracket of a foreign buffer that both share would not nest.
    if (m_plain == nullptr) copyOnWrite(0);
    if (&text == this && m_plain == nullptr) {
        const String copy(AcquireMode::AcquireCopy, text);
        return replace(start, count, copy, sourceOffset);
    }
    const Reading source(text);
    return replace(start, count, source.data(), source.length(), sourceOffset);
}

String& String::replace(std::int32_t start, std::int32_t count, char16_t unit, std::int32_t repeat)
{
    const std::int32_t added = std::max(repeat, 0);
    splice(start, count, added, nullptr, [=](char16_t* gap) { std::fill_n(gap, added, unit); });
    return *this;
}

// Assignment

String& String::operator=(const String& other)
{
    return setTo(other);
}

String& String::operator=(const char16_t* text)
{
    return setTo(text, -1);
}

String& String::operator=(char16_t unit)
{
    return setTo(unit, 1);
}

String& String::setAddRef(const String& other)
{
    useBuffer(other.m_buffer, other.m_plain);
    return *this;
}

String& String::setTo(const String& other)
{
    if (&other == this) return *this;
    return replace(0, -1, other, 0);
}

String& String::setTo(const char16_t* text, std::int32_t length)
{
    return replace(0, -1, text, length, 0);
}

String& String::setTo(char16_t unit, std::int32_t count)
{
    return replace(0, -1, unit, count);
}

String& String::setTo(AcquireMode mode, const char16_t* text, std::int32_t length)
{
    if (mode == AcquireMode::AcquireAlias) {
        takePlain(viewOf(text, internal::measured(text, length)));
        return *this;
    }
    setTo(text, length);
    if (mode == AcquireMode::AcquireCopyUpper) toUpper();
    return *this;
}

String& String::setTo(AcquireMode mode, const String& source, std::int32_t start, std::int32_t end)
{
    if (mode == AcquireMode::AcquireAddRef) return setAddRef(source);
    const Reading reading(source);
    if (end < 0 || end > reading.length()) end = reading.length();
    start = std::clamp(start, 0, end);
    return setTo(mode, reading.data() + start, end - start);
}

void String::clear()
{
    resize(0, u' ');
}

// Editing

String& String::append(const char16_t* text, std::int32_t length)
{
    length = internal::measured(text, length);
    char16_t* const end = length > 0 ? roomBehind(length) : nullptr;
    if (end == nullptr) return replace(-1, 0, text, length, 0);
    moveUnits(end, text, length);
    endText(end + length);
    return *this;
}

String& String::append(char16_t unit, std::int32_t count)
{
    return replace(-1, 0, unit, count);
}

String& String::append(const String& text)
{
    if (text.m_plain == nullptr) return replace(-1, 0, text, 0);
    return append(text.m_plain->plainData(), text.m_plain->plainLength() - 1);
}

String& String::prepend(const char16_t* text, std::int32_t length)
{
    return replace(0, 0, text, length, 0);
}

String& String::prepend(char16_t unit, std::int32_t count)
{
    return replace(0, 0, unit, count);
}

String& String::prepend(const String& text)
{
    return replace(0, 0, text, 0);
}

String& String::insert(std::int32_t position, const char16_t* text, std::int32_t length)
{
    return replace(position, 0, text, length, 0);
}

String& String::insert(std::int32_t position, const String& text)
{
    return replace(position, 0, text, 0);
}

String& String::remove(std::int32_t start, std::int32_t count)
{
    return replace(start, count, static_cast<const char16_t*>(nullptr), 0, 0);
}

void String::resize(std::int32_t length, char16_t fill)
{
    length = std::max(length, 0);
    if (m_plain == nullptr) copyOnWrite(0);
    if (m_plain == nullptr) {
        Writing writing(*this, length);
        const std::int32_t present = writing.length();
        if (present < length) std::fill_n(writing.data() + present, length - present, fill);
        writing.close(length);
        return;
    }
    const std::int32_t present = textLength();
    if (length <= present) {
        remove(length, present - length);
    } else {
        append(fill, length - present);
    }
}

void String::toLower()
{
    Writing writing(*this, 0);
    ORVStrToLowerW(writing.data());
    writing.close(writing.length());
}

void String::toUpper()
{
    Writing writing(*this, 0);
    ORVStrToUpperW(writing.data());
    writing.close(writing.length());
}

void String::translate(char16_t from, char16_t to)
{
    Writing writing(*this, 0);
    std::replace(writing.data(), writing.data() + writing.length(), from, to);
    writing.close(writing.length());
}

void String::translate(const char16_t*, std::int32_t, const char16_t*, std::int32_t) {}

void String::translate(const char16_t*, const char16_t*) {}

void String::translate(const String& from, const String& to)
{
    const Reading fromReading(from);
    const Reading toReading(to);
    translate(fromReading.data(), fromReading.length(), toReading.data(), toReading.length());
}

void String::trim(TrimType type)
{
    trimSet(WHITE_SPACE, type);
}

void String::trim(char16_t unit, TrimType type)
{
    const char16_t set[] = {unit, u'\0'};
    trimSet(set, type);
}

void String::trim(const char16_t* units, std::int32_t, TrimType type)
{
    trimSet(units, type);
}

void String::trim(const String& units, TrimType type)
{
    const String set(units); // may be this String
    const Reading reading(set);
    trimSet(reading.data(), type);
}

void String::trimSet(const char16_t* set, TrimType type)
{
    const auto has = [type](TrimType end) {
        return (static_cast<std::int32_t>(type) & static_cast<std::int32_t>(end)) != 0;
    };
    // The terminator is found in every set, so a zero unit is asked about apart.
    const auto isIn = [set](char16_t unit) {
        return unit != u'\0' && ORVStrChrW(set, unit) != nullptr;
    };

    Writing writing(*this, 0);
    char16_t* const units = writing.data();
    std::int32_t length = writing.length();
    if (has(TrimType::TrimLeading)) {
        std::int32_t kept = 0;
        while (kept < length && isIn(units[kept])) ++kept;
        std::copy(units + kept, units + length, units);
        length -= kept;
    }
    if (has(TrimType::TrimTrailing)) {
        while (length > 0 && isIn(units[length - 1])) --length;
    }
    writing.close(length);
}

void String::setCharAt(std::int32_t index, char16_t unit)
{
    Writing writing(*this, 0);
    writing.data()[index] = unit;
    writing.close(writing.length());
}

} // namespace orv
