#pragma once

#include "orv/Units.h"
#include "platform/orvcore.h"

#include <algorithm>
#include <cstdint>

/// \file
/// Comparing, hashing and searching runs of code units, a block of eight at a time where the
/// processor has vectors. Results are those of the plain loops over single units. "Folded" means
/// after ORVToLowerW(). Lengths count units and are not negative; nothing outside the runs is read.

namespace orv::internal {

/// ORVToLowerW(), without a call for ASCII.
inline char16_t foldedUnit(char16_t unit) noexcept
{
    if (unit >= 0x80) return ORVToLowerW(unit);
    return static_cast<char16_t>(unit >= u'A' && unit <= u'Z' ? unit + 0x20 : unit);
}

/// `length`, at least 0, or where it is -1 the length of the terminated `text`, 0 for null.
inline std::int32_t measured(const char16_t* text, std::int32_t length) noexcept
{
    if (length != -1) return std::max(length, 0);
    return text == nullptr ? 0 : ORVStrLenW(text);
}

/// Whether `count` units are the same.
bool equalUnits(const char16_t* a, const char16_t* b, std::int32_t count) noexcept;

/// -1, 0 or 1: the order of the first units that differ.
std::int32_t orderOfUnits(const char16_t* a, const char16_t* b, std::int32_t count) noexcept;

/// ORVStrNICmpW(): the difference of the first folded units that differ, 0 where both texts end
/// in a zero unit before.
std::int32_t orderOfFoldedUnits(const char16_t* a, const char16_t* b, std::int32_t count) noexcept;

/// The hash h = h * 37 + unit over a sample: with a step of (length - 32) / 32 + 1, every unit of
/// up to 63, every second one of up to 95 and so on.
std::uint32_t hashOfUnits(Units text) noexcept;
std::uint32_t hashOfFoldedUnits(Units text) noexcept;

// Searches give the first or the last place in `text`, or -1.

std::int32_t findUnit(Units text, char16_t unit) noexcept;
std::int32_t findLastUnit(Units text, char16_t unit) noexcept;
std::int32_t findFoldedUnit(Units text, char16_t unit) noexcept;
std::int32_t findLastFoldedUnit(Units text, char16_t unit) noexcept;

/// The pattern has at least one unit.
std::int32_t findUnits(Units text, Units pattern) noexcept;
std::int32_t findLastUnits(Units text, Units pattern) noexcept;
std::int32_t findFoldedUnits(Units text, Units pattern) noexcept;
std::int32_t findLastFoldedUnits(Units text, Units pattern) noexcept;

/// A set of units, with ASCII at hand in a map of bits.
class UnitSet {
public:
    /// Views `members`. A folded set has a unit where it has its lower case.
    UnitSet(Units members, bool folded) noexcept;

    bool has(char16_t unit) const noexcept
    {
        if (m_folded) unit = foldedUnit(unit);
        if (unit < 0x80) return (m_ascii[unit / 64] >> (unit % 64) & 1) != 0;
        return hasOther(unit);
    }

private:
    bool hasOther(char16_t unit) const noexcept;

    Units m_members;
    std::uint64_t m_ascii[2] = {0, 0};
    bool m_folded;
};

} // namespace orv::internal
