#include "orv/internal/UnitScan.h"

#include "orv/internal/UnitBlock.h"

#include <algorithm>
#include <cstring>

namespace orv::internal {

namespace {

constexpr std::int32_t WIDTH = BLOCK_WIDTH;

#if defined(__SSE2__)

constexpr unsigned FULL = 0xFFFF;

int firstOf(unsigned mask) noexcept
{
    return __builtin_ctz(mask) / 2;
}

int lastOf(unsigned mask) noexcept
{
    return (31 - __builtin_clz(mask)) / 2;
}

unsigned without(unsigned mask, int unit) noexcept
{
    return mask & ~(3u << (unit * 2));
}

#endif

struct PlainRule {
    static char16_t fold(char16_t unit) noexcept { return unit; }
    static bool equal(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
    {
        return equalUnits(a, b, count);
    }
#if defined(__SSE2__)
    /// The units of `block` that may be `unit`, which is folded.
    static Block candidates(Block block, Block unit) noexcept
    {
        return block == unit;
    }
#endif
};

struct FoldedRule {
    static char16_t fold(char16_t unit) noexcept { return foldedUnit(unit); }
    static bool equal(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
    {
        for (std::int32_t i = 0; i < count; ++i) {
            if (a[i] != b[i] && foldedUnit(a[i]) != foldedUnit(b[i])) return false;
        }
        return true;
    }
#if defined(__SSE2__)
    static Block candidates(Block block, Block unit) noexcept
    {
        return (block.lowerAscii() == unit) | block.beyondAscii();
    }
#endif
};

template <class Rule>
std::int32_t firstUnit(Units text, char16_t unit) noexcept
{
    const char16_t wanted = Rule::fold(unit);
    std::int32_t i = 0;
#if defined(__SSE2__)
    const Block sought = Block::filledWith(wanted);
    const auto candidatesAt = [&](std::int32_t at) {
        return Rule::candidates(Block::at(text.data + at), sought);
    };
    for (; i + WIDTH <= text.length; i += WIDTH) {
        // Twice the width while there is nothing to see.
        while (i + 2 * WIDTH <= text.length &&
               (candidatesAt(i) | candidatesAt(i + WIDTH)).mask() == 0) {
            i += 2 * WIDTH;
        }
        if (i + WIDTH > text.length) break;
        for (unsigned mask = candidatesAt(i).mask(); mask != 0;) {
            const int place = firstOf(mask);
            if (Rule::fold(text.data[i + place]) == wanted) return i + place;
            mask = without(mask, place);
        }
    }
#endif
    for (; i < text.length; ++i) {
        if (Rule::fold(text.data[i]) == wanted) return i;
    }
    return -1;
}

template <class Rule>
std::int32_t lastUnit(Units text, char16_t unit) noexcept
{
    const char16_t wanted = Rule::fold(unit);
    std::int32_t end = text.length;
#if defined(__SSE2__)
    const Block sought = Block::filledWith(wanted);
    for (; end >= WIDTH; end -= WIDTH) {
        const char16_t* const block = text.data + end - WIDTH;
        for (unsigned mask = Rule::candidates(Block::at(block), sought).mask(); mask != 0;) {
            const int place = lastOf(mask);
            if (Rule::fold(block[place]) == wanted) return end - WIDTH + place;
            mask = without(mask, place);
        }
    }
#endif
    while (end > 0) {
        if (Rule::fold(text.data[--end]) == wanted) return end;
    }
    return -1;
}

template <class Rule>
std::int32_t firstUnits(Units text, Units pattern) noexcept
{
    if (pattern.length == 1) return firstUnit<Rule>(text, pattern.data[0]);
    const std::int32_t places = text.length - pattern.length + 1;
    std::int32_t i = 0;
#if defined(__SSE2__)
    // A place is worth a look where the first and the last unit are right.
    const std::int32_t behind = pattern.length - 1;
    const Block first = Block::filledWith(Rule::fold(pattern.data[0]));
    const Block last = Block::filledWith(Rule::fold(pattern.data[behind]));
    for (; i + WIDTH <= places; i += WIDTH) {
        const char16_t* const block = text.data + i;
        unsigned mask = (Rule::candidates(Block::at(block), first) &
                         Rule::candidates(Block::at(block + behind), last))
                            .mask();
        for (; mask != 0; mask = without(mask, firstOf(mask))) {
            const int place = firstOf(mask);
            if (Rule::equal(block + place, pattern.data, pattern.length)) return i + place;
        }
    }
#endif
    for (; i < places; ++i) {
        if (Rule::equal(text.data + i, pattern.data, pattern.length)) return i;
    }
    return -1;
}

template <class Rule>
std::int32_t lastUnits(Units text, Units pattern) noexcept
{
    if (pattern.length == 1) return lastUnit<Rule>(text, pattern.data[0]);
    std::int32_t end = text.length - pattern.length + 1; // of the places left
#if defined(__SSE2__)
    const std::int32_t behind = pattern.length - 1;
    const Block first = Block::filledWith(Rule::fold(pattern.data[0]));
    const Block last = Block::filledWith(Rule::fold(pattern.data[behind]));
    for (; end >= WIDTH; end -= WIDTH) {
        const char16_t* const block = text.data + end - WIDTH;
        unsigned mask = (Rule::candidates(Block::at(block), first) &
                         Rule::candidates(Block::at(block + behind), last))
                            .mask();
        for (; mask != 0; mask = without(mask, lastOf(mask))) {
            const int place = lastOf(mask);
            if (Rule::equal(block + place, pattern.data, pattern.length)) {
                return end - WIDTH + place;
            }
        }
    }
#endif
    while (end > 0) {
        if (Rule::equal(text.data + --end, pattern.data, pattern.length)) return end;
    }
    return -1;
}

} // namespace

bool equalUnits(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
{
    return count < 1 || std::memcmp(a, b, static_cast<std::size_t>(count) * sizeof(char16_t)) == 0;
}

namespace {

std::int32_t orderOneByOne(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
{
    for (std::int32_t i = 0; i < count; ++i) {
        if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    }
    return 0;
}

std::int32_t orderFoldedOneByOne(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
{
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t difference = foldedUnit(a[i]) - foldedUnit(b[i]);
        if (difference != 0) return difference;
        if (a[i] == 0) return 0;
    }
    return 0;
}

#if defined(__SSE2__)

bool sameBlocks(const char16_t* a, const char16_t* b) noexcept
{
    return ((Block::at(a) == Block::at(b)) & (Block::at(a + WIDTH) == Block::at(b + WIDTH)))
               .mask() == FULL;
}

/// Whether a block has units that may decide the folded order: they differ, or both texts end.
bool mayDecide(const char16_t* a, const char16_t* b) noexcept
{
    const Block left = Block::at(a);
    const unsigned same = (left.lowerAscii() == Block::at(b).lowerAscii()).mask();
    return same != FULL || (left == Block::filledWith(0)).mask() != 0;
}

#endif

} // namespace

std::int32_t orderOfUnits(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
{
    std::int32_t i = 0;
#if defined(__SSE2__)
    while (i + 2 * WIDTH <= count && sameBlocks(a + i, b + i)) i += 2 * WIDTH;
    for (; i + WIDTH <= count; i += WIDTH) {
        const unsigned same = (Block::at(a + i) == Block::at(b + i)).mask();
        if (same == FULL) continue;
        i += firstOf(~same);
        return a[i] < b[i] ? -1 : 1;
    }
#endif
    return orderOneByOne(a + i, b + i, count - i);
}

std::int32_t orderOfFoldedUnits(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
{
    std::int32_t i = 0;
#if defined(__SSE2__)
    for (; i + WIDTH <= count; i += WIDTH) {
        if (!mayDecide(a + i, b + i)) continue;
        // Units outside ASCII that differ may still fold to the same.
        const std::int32_t difference = orderFoldedOneByOne(a + i, b + i, WIDTH);
        if (difference != 0) return difference;
        if (findUnit({a + i, WIDTH}, 0) >= 0) return 0;
    }
#endif
    return orderFoldedOneByOne(a + i, b + i, count - i);
}

std::int32_t findUnit(Units text, char16_t unit) noexcept
{
    return firstUnit<PlainRule>(text, unit);
}

std::int32_t findLastUnit(Units text, char16_t unit) noexcept
{
    return lastUnit<PlainRule>(text, unit);
}

std::int32_t findFoldedUnit(Units text, char16_t unit) noexcept
{
    return firstUnit<FoldedRule>(text, unit);
}

std::int32_t findLastFoldedUnit(Units text, char16_t unit) noexcept
{
    return lastUnit<FoldedRule>(text, unit);
}

std::int32_t findUnits(Units text, Units pattern) noexcept
{
    return firstUnits<PlainRule>(text, pattern);
}

std::int32_t findLastUnits(Units text, Units pattern) noexcept
{
    return lastUnits<PlainRule>(text, pattern);
}

std::int32_t findFoldedUnits(Units text, Units pattern) noexcept
{
    return firstUnits<FoldedRule>(text, pattern);
}

std::int32_t findLastFoldedUnits(Units text, Units pattern) noexcept
{
    return lastUnits<FoldedRule>(text, pattern);
}

UnitSet::UnitSet(Units members, bool isFolded) noexcept : m_members(members), m_folded(isFolded)
{
    for (std::int32_t i = 0; i < members.length; ++i) {
        const char16_t unit = isFolded ? foldedUnit(members.data[i]) : members.data[i];
        if (unit < 0x80) m_ascii[unit / 64] |= std::uint64_t{1} << (unit % 64);
    }
}

bool UnitSet::hasOther(char16_t unit) const noexcept
{
    const char16_t* const end = m_members.data + m_members.length;
    return std::any_of(m_members.data, end, [&](char16_t member) {
        return (m_folded ? foldedUnit(member) : member) == unit;
    });
}

} // namespace orv::internal
