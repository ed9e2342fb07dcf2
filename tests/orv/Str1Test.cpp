#include "orv/Str1Family.h"

#include "orv/String.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>

namespace orv {
namespace {

using namespace std::string_view_literals;

std::u16string_view units(const Str1& text)
{
    return {text.getData0(), static_cast<std::size_t>(text.getLength())};
}

/// A Str1 of some kind whose protected operations can be called.
template <class Base>
struct Probe : Base {
    using Base::Base;
    using Base::operator=;
    using Base::ensureCapacity1;

    /// Units that fit behind the beginning of the text without moving it.
    std::int32_t room() { return ensureCapacity1(0, 0, -1); }
};

TEST(Str1, sharesSlicesUntilSomebodyWrites)
{
    const std::tuple<std::int32_t, std::int32_t, std::u16string_view> rows[] = {
        {0, -1, u"abcdef"}, {2, 4, u"cd"}, {4, 99, u"ef"}, {3, 1, u""},
        {2, 2, u""},        {-1, 3, u""},  {6, -1, u""}};
    const Str1Copy text(u"abcdef");
    for (const auto& [start, end, expected] : rows) {
        Str1 slice = text.substring(start, end);
        EXPECT_EQ(units(slice), expected);
        if (slice.isEmpty()) continue;
        EXPECT_EQ(slice.getData0(), text.getData0() + start);
        const Str1 inner(slice, 1, -1);
        EXPECT_EQ(units(inner), expected.substr(1));

        slice += u'!';
        EXPECT_EQ(units(slice), std::u16string(expected) + u'!');
        EXPECT_EQ(units(inner), expected.substr(1));
        EXPECT_EQ(units(text), u"abcdef"sv);
    }
}

TEST(Str1, growsByAQuarterRoundedUpTo16)
{
    using Row = std::tuple<std::int32_t, std::int32_t, std::int32_t>;
    // With nothing to keep there is no slack.
    for (const auto& [length, added, room] :
         {Row{0, 1, 16}, {0, 100, 112}, {100, 20, 160}, {112, 1, 144}}) {
        Probe<Str1> text;
        text.append(u'a', length);
        text.append(u'b', added);
        EXPECT_EQ(text.room(), room) << length << " and " << added;
        EXPECT_EQ(text.indexOf(u'b'), length);
    }
}

TEST(Str1, movesTextToTheFrontBeforeItAllocates)
{
    Probe<Str1> text(32u);
    text.append(u"0123456789", -1);
    const char16_t* const front = text.getData1();
    Probe<Str1> tail;
    tail.setTo(text.substring(8, -1));
    text.reset();
    tail.append(u'x', 22);
    EXPECT_EQ(tail.getData1(), front + 8);
    tail.append(u'y', 3);
    EXPECT_EQ(tail.getData1(), front);
    EXPECT_EQ(units(tail), u"89" + std::u16string(22, u'x') + u"yyy");
    tail.clear();
    tail.append(u'z', 32);
    EXPECT_EQ(tail.getData1(), front);
}

TEST(Str1, appendsPartsOfItself)
{
    for (const std::int32_t length : {3, 16, 100}) {
        Str1 text;
        text.append(u'a', length);
        text.append(u'b', 1);
        const std::u16string before(units(text));
        text += text;
        EXPECT_EQ(units(text), before + before);
        text.append(text, length, length + 1);
        EXPECT_EQ(units(text), before + before + u'b');
        text.copy(text.getData0() + length, 2);
        EXPECT_EQ(units(text), u"ba"sv);

        Str1::Appendor appendor(text, 0, 0);
        appendor.fastAppend(text.getData0(), 2);
        EXPECT_EQ(units(text), u"baba"sv);
    }
}

// The family

TEST(Str1Family, staysInsideUntilTheRoomEnds)
{
    std::array<char16_t, 16> array{};
    std::memcpy(array.data(), u"begin", 10);
    Str1Local local(array.data(), -1, 16);
    EXPECT_EQ(units(local), u"begin"sv);
    local.append(u'.', 11);
    EXPECT_EQ(local.getData0(), array.data());
    local += u'!';
    EXPECT_NE(local.getData0(), array.data());
    EXPECT_EQ(units(local), u"begin...........!"sv);
    EXPECT_EQ(array[15], u'.');
    local.reset();
    local.copy(u"back", 4);
    EXPECT_EQ(local.getData0(), array.data());

    Str1Fixed<128> fixed;
    fixed.append(u'f', 128);
    const char16_t* const inside = fixed.getData0();
    fixed.reset();
    fixed = u"again";
    EXPECT_EQ(fixed.getData0(), inside);
    Str1Fixed<128> other;
    other = fixed;
    EXPECT_EQ(other.getData0(), inside);
    other += u'!';
    EXPECT_EQ(units(other), u"again!"sv);
    EXPECT_EQ(units(fixed), u"again"sv);
}

} // namespace
} // namespace orv
