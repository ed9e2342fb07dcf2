#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/internal/StringAccess.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>

namespace orv {

using internal::Units;
using internal::UnitSet;

namespace {

Units unitsOf(const char16_t* text, std::int32_t length)
{
    return {text, internal::measured(text, length)};
}

/// The two sides of a region operation, brought into their texts.
struct Region {
    Region(Units text, std::int32_t start, std::int32_t count, Units with, std::int32_t offset)
        : other(with.from(std::clamp(offset, 0, with.length)))
    {
        start = start == -1 || start > text.length ? text.length : std::max(start, 0);
        own = text.from(start);
        if (count != -1 && count <= own.length) own.length = count;
    }

    bool matches(bool ignoreCase) const
    {
        if (own.length != other.length) return false;
        if (ignoreCase) {
            return internal::orderOfFoldedUnits(own.data, other.data, own.length) == 0;
        }
        return internal::equalUnits(own.data, other.data, own.length);
    }

    Units own{};
    Units other;
};

std::int32_t orderOf(Units a, Units b, bool ignoreCase)
{
    const std::int32_t common = std::min(a.length, b.length);
    const std::int32_t result = ignoreCase ? internal::orderOfFoldedUnits(a.data, b.data, common)
                                           : internal::orderOfUnits(a.data, b.data, common);
    return result != 0 ? result : a.length - b.length;
}

/// The part of `text` that a forward search from `start` looks at.
Units partFrom(Units text, std::int32_t start)
{
    return text.from(std::clamp(start, 0, text.length));
}

/// A place in such a part as one of the whole text.
std::int32_t placeFrom(std::int32_t start, std::int32_t place)
{
    return place < 0 ? -1 : std::max(start, 0) + place;
}

/// The part of `text` that a backward search from `start` looks at.
Units partUpTo(Units text, std::int32_t start)
{
    if (start != -1 && start < text.length) text.length = std::max(start + 1, 0);
    return text;
}

std::int32_t findMember(Units text, const UnitSet& set, std::int32_t start, bool wanted)
{
    for (std::int32_t i = std::max(start, 0); i < text.length; ++i) {
        if (set.has(text.data[i]) == wanted) return i;
    }
    return -1;
}

std::int32_t findLastMember(Units text, const UnitSet& set, bool wanted)
{
    for (std::int32_t i = text.length - 1; i >= 0; --i) {
        if (set.has(text.data[i]) == wanted) return i;
    }
    return -1;
}

} // namespace

// Comparing

bool String::regionMatches(std::int32_t start, std::int32_t count, const char16_t* text,
                           std::int32_t length, std::int32_t offset, bool ignoreCase) const
{
    const Units other = unitsOf(text, length);
    const Reading own(*this);
    return Region({own.data(), own.length()}, start, count, other, offset).matches(ignoreCase);
}

bool String::regionMatches(std::int32_t start, std::int32_t count, const String& text,
                           std::int32_t offset, bool ignoreCase) const
{
    const Reading other(text);
    return regionMatches(start, count, other.data(), other.length(), offset, ignoreCase);
}

std::int32_t String::regionCompare(std::int32_t start, std::int32_t count, const char16_t* text,
                                   std::int32_t length, std::int32_t offset, bool ignoreCase) const
{
    const Units other = unitsOf(text, length);
    const Reading own(*this);
    const Region region({own.data(), own.length()}, start, count, other, offset);
    return orderOf(region.own, region.other, ignoreCase);
}

std::int32_t String::regionCompare(std::int32_t start, std::int32_t count, const String& text,
                                   std::int32_t offset, bool ignoreCase) const
{
    const Reading other(text);
    return regionCompare(start, count, other.data(), other.length(), offset, ignoreCase);
}

bool String::equals(const char16_t* text, std::int32_t length, bool ignoreCase) const
{
    return regionMatches(0, -1, text, length, 0, ignoreCase);
}

bool String::equals(const Object& other) const
{
    if (&other == this) return true;
    const auto* const text = dynamic_cast<const String*>(&other);
    return text != nullptr && equals(*text, false);
}

std::int32_t String::compare(const char16_t* text, std::int32_t length, bool ignoreCase) const
{
    return regionCompare(0, -1, text, length, 0, ignoreCase);
}

std::int32_t String::compare(const String& text, bool ignoreCase) const
{
    if (m_plain != nullptr && text.m_plain != nullptr) {
        return orderOf({m_plain->plainData(), textLength()},
                       {text.m_plain->plainData(), text.textLength()}, ignoreCase);
    }
    const Reading other(text);
    const Reading own(*this);
    return orderOf({own.data(), own.length()}, {other.data(), other.length()}, ignoreCase);
}

std::int32_t String::compareTo(const Object& other) const
{
    if (&other == this) return 0;
    const auto* const text = dynamic_cast<const String*>(&other);
    if (text == nullptr) throwCastFailed();
    return compare(*text, false);
}

bool String::startsWith(const char16_t* text, std::int32_t length, bool ignoreCase) const
{
    const Units other = unitsOf(text, length);
    return regionMatches(0, other.length, text, other.length, 0, ignoreCase);
}

bool String::startsWith(const String& text, bool ignoreCase) const
{
    const Reading other(text);
    return startsWith(other.data(), other.length(), ignoreCase);
}

bool String::endsWith(const char16_t* text, std::int32_t length, bool ignoreCase) const
{
    const Units other = unitsOf(text, length);
    const Reading own(*this);
    if (own.length() < other.length) return false;
    const std::int32_t start = own.length() - other.length;
    return Region({own.data(), own.length()}, start, other.length, other, 0).matches(ignoreCase);
}

bool String::endsWith(const String& text, bool ignoreCase) const
{
    const Reading other(text);
    return endsWith(other.data(), other.length(), ignoreCase);
}

bool String::contains(const char16_t* text, std::int32_t length, bool ignoreCase) const
{
    return indexOf(text, length, 0, ignoreCase) >= 0;
}

bool String::contains(const String& text, bool ignoreCase) const
{
    return indexOf(text, 0, ignoreCase) >= 0;
}

// Hashing

std::uint32_t String::hashCode() const
{
    if (m_plain == nullptr) return hashCode(false);
    return internal::hashOfUnits({m_plain->plainData(), textLength()});
}

std::uint32_t String::hashCode(bool ignoreCase) const
{
    const Reading own(*this);
    const Units text{own.data(), own.length()};
    return ignoreCase ? internal::hashOfFoldedUnits(text) : internal::hashOfUnits(text);
}

// Searching

std::int32_t String::indexOf(char16_t unit, std::int32_t start, bool ignoreCase) const
{
    const Reading own(*this);
    const Units part = partFrom({own.data(), own.length()}, start);
    return placeFrom(start, ignoreCase ? internal::findFoldedUnit(part, unit)
                                       : internal::findUnit(part, unit));
}

std::int32_t String::indexOf(const char16_t* text, std::int32_t length, std::int32_t start,
                             bool ignoreCase) const
{
    const Units pattern = unitsOf(text, length);
    if (pattern.length < 1) return -1;
    const Reading own(*this);
    const Units part = partFrom({own.data(), own.length()}, start);
    return placeFrom(start, ignoreCase ? internal::findFoldedUnits(part, pattern)
                                       : internal::findUnits(part, pattern));
}

std::int32_t String::indexOf(const String& text, std::int32_t start, bool ignoreCase) const
{
    const Reading other(text);
    return indexOf(other.data(), other.length(), start, ignoreCase);
}

std::int32_t String::lastIndexOf(char16_t unit, std::int32_t start, bool ignoreCase) const
{
    const Reading own(*this);
    const Units part = partUpTo({own.data(), own.length()}, start);
    return ignoreCase ? internal::findLastFoldedUnit(part, unit)
                      : internal::findLastUnit(part, unit);
}

std::int32_t String::lastIndexOf(const char16_t* text, std::int32_t length, std::int32_t start,
                                 bool ignoreCase) const
{
    const Units pattern = unitsOf(text, length);
    if (pattern.length < 1) return -1;
    const Reading own(*this);
    const Units part = partUpTo({own.data(), own.length()}, start);
    return ignoreCase ? internal::findLastFoldedUnits(part, pattern)
                      : internal::findLastUnits(part, pattern);
}

std::int32_t String::lastIndexOf(const String& text, std::int32_t start, bool ignoreCase) const
{
    const Reading other(text);
    return lastIndexOf(other.data(), other.length(), start, ignoreCase);
}

std::int32_t String::findFirstOf(const char16_t* units, std::int32_t length, std::int32_t start,
                                 bool ignoreCase) const
{
    const Units set = unitsOf(units, length);
    if (set.length < 1) return -1;
    const Reading own(*this);
    return findMember({own.data(), own.length()}, UnitSet(set, ignoreCase), start, true);
}

std::int32_t String::findFirstOf(const String& units, std::int32_t start, bool ignoreCase) const
{
    const Reading set(units);
    return findFirstOf(set.data(), set.length(), start, ignoreCase);
}

std::int32_t String::findFirstOfCase(const char16_t* units, std::int32_t length,
                                     std::int32_t start) const
{
    return findFirstOf(units, length, start, false);
}

std::int32_t String::findFirstOfCase(const String& units, std::int32_t start) const
{
    return findFirstOf(units, start, false);
}

std::int32_t String::findFirstNotOf(const char16_t* units, std::int32_t length, std::int32_t start,
                                    bool ignoreCase) const
{
    const Units set = unitsOf(units, length);
    if (set.length < 1) return -1;
    const Reading own(*this);
    return findMember({own.data(), own.length()}, UnitSet(set, ignoreCase), start, false);
}

std::int32_t String::findFirstNotOf(const String& units, std::int32_t start, bool ignoreCase) const
{
    const Reading set(units);
    return findFirstNotOf(set.data(), set.length(), start, ignoreCase);
}

std::int32_t String::findLastOf(const char16_t* units, std::int32_t length, std::int32_t start,
                                bool ignoreCase) const
{
    const Units set = unitsOf(units, length);
    if (set.length < 1) return -1;
    const Reading own(*this);
    return findLastMember(partUpTo({own.data(), own.length()}, start), UnitSet(set, ignoreCase),
                          true);
}

std::int32_t String::findLastNotOf(const char16_t* units, std::int32_t length, std::int32_t start,
                                   bool ignoreCase) const
{
    const Units set = unitsOf(units, length);
    if (set.length < 1) return -1;
    const Reading own(*this);
    return findLastMember(partUpTo({own.data(), own.length()}, start), UnitSet(set, ignoreCase),
                          false);
}

std::int32_t String::findLastOf(const String& text, std::int32_t start, bool ignoreCase) const
{
    return lastIndexOf(text, start, ignoreCase);
}

std::int32_t String::findLastNotOf(const String& text, std::int32_t start, bool ignoreCase) const
{
    return lastIndexOf(text, start, ignoreCase);
}

} // namespace orv
