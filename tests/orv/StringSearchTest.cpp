#include "orv/Exceptions.h"
#include "orv/String.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>

namespace orv {
namespace {

using namespace std::string_view_literals;
using test::readable;
using test::textOf;

TEST(StringSearch, comparesByUnitThenByLength)
{
    using Row = std::tuple<const char16_t*, const char16_t*, std::int32_t, std::int32_t>;
    for (const auto& [one, other, order, caseBlind] :
         {Row{u"abc", u"abc", 0, 0},
          {u"abc", u"abd", -1, u'c' - u'd'},
          {u"abc", u"abcde", -2, -2},
          {u"ABC", u"abc", -1, 0},
          {u"\uFFFF", u"\U00010000", 1, 0xFFFF - 0xD800},
          {u"\u00C4", u"\u00E4", -1, 0},
          {u"K", u"\u212A", -1, 0},
          {u"_", u"A", 1, u'_' - u'a'}}) {
        const String a(one);
        EXPECT_EQ(a.compare(other), order) << readable(one) << readable(other);
        EXPECT_EQ(a.compare(String(other), true), caseBlind) << readable(other);
        EXPECT_EQ(a.equals(String(other)), order == 0);
        EXPECT_EQ(a.compareTo(String(other)), order);
    }
}

TEST(StringSearch, clipsRegions)
{
    const String text(u"abcdef");
    EXPECT_TRUE(text.regionMatches(-1, -1, u"ef", -1, 99)) << "both are empty";
    EXPECT_FALSE(text.regionMatches(1, 2, u"bcd", -1, 0));
    EXPECT_TRUE(text.regionMatches(0, 2, u"AB", -1, 0, true));
    EXPECT_EQ(text.regionCompare(2, 2, String(u"cdefg"), 0), -3);
    EXPECT_EQ(text.regionCompare(2, -1, u"xCDE", -1, 1, true), 1);

    EXPECT_TRUE(text.startsWith(u"") && text.endsWith(u"") && !text.contains(u""));
    EXPECT_TRUE(text.startsWith(u"ABC", true) && text.endsWith(String(u"EF"), true));
    EXPECT_FALSE(text.startsWith(u"abcdefg") || text.endsWith(u"0abcdef"));
}

TEST(StringSearch, hashesASample)
{
    EXPECT_EQ(String().hashCode(), 0u);
    EXPECT_EQ(String(u"a").hashCode(), 97u);
    EXPECT_EQ(String(u"ab").hashCode(), 3687u);
    EXPECT_EQ(String(u"AB").hashCode(true), 3687u);

    std::u16string text(1000, u'x');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(i * 977);
    text[2] = text[70] = 0xFFFF;
    const std::u16string ascii(text.size(), u'Q');
    for (const std::u16string& units : {text, ascii}) {
        for (std::int32_t length = 1; length < 1000; length += length < 130 ? 1 : 61) {
            std::uint32_t expected = 0;
            std::uint32_t folded = 0;
            const std::int32_t step = (length - 32) / 32 + 1;
            for (std::int32_t i = 0; i < length; i += step) {
                expected = expected * 37 + units[static_cast<std::size_t>(i)];
                folded = folded * 37 + ORVToLowerW(units[static_cast<std::size_t>(i)]);
            }
            const String part(units.data(), length);
            ASSERT_EQ(part.hashCode(), expected) << length;
            ASSERT_EQ(part.hashCode(false), expected) << length;
            ASSERT_EQ(part.hashCode(true), folded) << length;
        }
    }
}

TEST(StringSearch, searchesForSets)
{
    const String text(u"xxbaxx");
    EXPECT_EQ(text.findFirstOf(String(u"AB"), 3, true), 3);
    EXPECT_EQ(text.findFirstOfCase(u"AB", -1), -1);
    EXPECT_EQ(text.findFirstNotOf(String(u"x")), 2);
    EXPECT_EQ(text.findFirstNotOf(u"", -1), -1);
    EXPECT_EQ(text.findLastNotOf(u"", -1), -1);
    EXPECT_EQ(text.findLastOf(u"ab", -1), 3);
    EXPECT_EQ(text.findLastOf(String(u"ab")), -1) << "a String is searched for as a whole";
    EXPECT_EQ(text.findLastNotOf(String(u"ba")), 2);
}

// The definitions as loops over single units, to judge the searches by blocks.

char16_t fold(char16_t unit, bool ignoreCase)
{
    return ignoreCase ? ORVToLowerW(unit) : unit;
}

bool matchesAt(std::u16string_view text, std::size_t place, std::u16string_view pattern, bool blind)
{
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (place + i >= text.size()) return false;
        if (fold(text[place + i], blind) != fold(pattern[i], blind)) return false;
    }
    return true;
}

bool isIn(std::u16string_view set, char16_t unit, bool blind)
{
    return std::any_of(set.begin(), set.end(),
                       [=](char16_t own) { return fold(own, blind) == fold(unit, blind); });
}

/// The first place from `start` on, and the last one up to `start`, that `holds`.
template <class Holds>
std::int32_t firstPlace(std::u16string_view text, std::int32_t start, Holds holds)
{
    for (auto i = static_cast<std::size_t>(start); i < text.size(); ++i) {
        if (holds(i)) return static_cast<std::int32_t>(i);
    }
    return -1;
}
template <class Holds>
std::int32_t lastPlace(std::u16string_view text, std::int32_t start, Holds holds)
{
    std::int32_t i = std::min(start, static_cast<std::int32_t>(text.size()) - 1);
    while (i >= 0 && !holds(static_cast<std::size_t>(i))) --i;
    return i;
}

std::int32_t plainCompare(std::u16string_view a, std::u16string_view b)
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
    }
    return static_cast<std::int32_t>(a.size()) - static_cast<std::int32_t>(b.size());
}

class Randomised : public testing::TestWithParam<std::u16string_view> {
protected:
    std::size_t below(std::size_t bound) { return m_random() % bound; }

    /// A text over the alphabet, in which the first unit is frequent so that much nearly matches.
    std::u16string any(std::size_t longest)
    {
        std::u16string text(below(longest + 1), GetParam()[0]);
        for (char16_t& unit : text) {
            if (below(3) == 0) unit = GetParam()[below(GetParam().size())];
        }
        return text;
    }

private:
    std::mt19937 m_random{20};
};

TEST_P(Randomised, searchesFindWhatPlainLoopsFind)
{
    for (int round = 0; round < 4000; ++round) {
        const std::u16string hay = any(70);
        std::u16string needle = any(below(4) == 0 ? 20 : 3) + GetParam()[0];
        const String text = textOf(hay);
        const auto start = static_cast<std::int32_t>(below(hay.size() + 2));
        const auto length = static_cast<std::int32_t>(needle.size());
        for (const bool blind : {false, true}) {
            SCOPED_TRACE(readable(hay) + " / " + readable(needle) + " from " +
                         std::to_string(start) + (blind ? ", case ignored" : ""));
            const auto isAt = [&](std::size_t i) { return matchesAt(hay, i, needle, blind); };
            const auto endsAt = [&](std::size_t i) {
                return i + 1 >= needle.size() && isAt(i + 1 - needle.size());
            };
            const auto isUnit = [&](std::size_t i) { return isIn({&needle[0], 1}, hay[i], blind); };
            const auto isOf = [&](std::size_t i) { return isIn(needle, hay[i], blind); };
            const auto isNotOf = [&](std::size_t i) { return !isOf(i); };
            const auto last = lastPlace(hay, start, endsAt);
            const char16_t* const set = needle.data();
            ASSERT_EQ(text.indexOf(set, length, start, blind), firstPlace(hay, start, isAt));
            ASSERT_EQ(text.lastIndexOf(set, length, start, blind),
                      last < 0 ? -1 : last + 1 - length);
            ASSERT_EQ(text.indexOf(needle[0], start, blind), firstPlace(hay, start, isUnit));
            ASSERT_EQ(text.lastIndexOf(needle[0], start, blind), lastPlace(hay, start, isUnit));
            ASSERT_EQ(text.findFirstOf(set, length, start, blind), firstPlace(hay, start, isOf));
            ASSERT_EQ(text.findFirstNotOf(set, length, start, blind),
                      firstPlace(hay, start, isNotOf));
            ASSERT_EQ(text.findLastOf(set, length, start, blind), lastPlace(hay, start, isOf));
            ASSERT_EQ(text.findLastNotOf(set, length, start, blind),
                      lastPlace(hay, start, isNotOf));
        }
    }
}

TEST_P(Randomised, comparisonsOrderAsPlainLoopsOrder)
{
    for (int round = 0; round < 4000; ++round) {
        const std::u16string a = any(40);
        std::u16string b = a;
        for (std::size_t i = below(3); i > 0 && !b.empty(); --i) {
            b[below(b.size())] = GetParam()[below(GetParam().size())];
        }
        if (below(2) == 0) b += any(3);
        SCOPED_TRACE(readable(a) + " / " + readable(b));
        const String left = textOf(a);
        const String right = textOf(b);
        ASSERT_EQ(left.compare(right), plainCompare(a, b));
        ASSERT_EQ(left.equals(right), a == b);
        const auto common = static_cast<std::int32_t>(std::min(a.size(), b.size()));
        const std::int32_t folded = ORVStrNICmpW(a.data(), b.data(), common);
        const std::int32_t longer = left.getLength() - right.getLength();
        ASSERT_EQ(left.compare(right, true), folded != 0 ? folded : longer);
        ASSERT_EQ(left.equals(right, true), folded == 0 && longer == 0);
    }
}

// With U+212A and U+0130, which fold into ASCII, and units just outside the blocks of letters.
INSTANTIATE_TEST_SUITE_P(StringSearch, Randomised,
                         testing::Values(u"aAbB"sv, u"aA@[`{zZ\u007F\u0080"sv,
                                         u"kK\u212AiI\u0130\0"sv, u"\u0439\u0419\u00E4\u00C4a"sv,
                                         u"\xD83D\xDE00\xFFFF\x8041z"sv));

} // namespace
} // namespace orv
