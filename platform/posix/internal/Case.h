#pragma once

#include "platform/unicode/CaseTable.h"

#include <cstdint>

/// \file
/// The case mapping of one unit, for loops.

namespace orvcore {

inline char16_t mapCase(char16_t unit, const std::uint8_t* blocks) noexcept
{
    constexpr unsigned low = (1u << unicode::caseBlockBits) - 1;
    const unsigned block = blocks[unit >> unicode::caseBlockBits];
    const unsigned delta = unicode::caseDeltas[(block << unicode::caseBlockBits) | (unit & low)];
    return static_cast<char16_t>(unit + delta);
}

/// ORVToLowerW().
inline char16_t lowerUnit(char16_t unit) noexcept
{
    if (unit < 0x80)
        return static_cast<char16_t>(unit >= u'A' && unit <= u'Z' ? unit + 0x20 : unit);
    return mapCase(unit, unicode::lowerBlocks);
}

/// ORVToUpperW().
inline char16_t upperUnit(char16_t unit) noexcept
{
    if (unit < 0x80)
        return static_cast<char16_t>(unit >= u'a' && unit <= u'z' ? unit - 0x20 : unit);
    return mapCase(unit, unicode::upperBlocks);
}

} // namespace orvcore
