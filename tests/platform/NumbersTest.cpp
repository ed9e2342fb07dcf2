#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();

TEST(Numbers, readIntegersAndClampThem)
{
    using Row = std::tuple<const char16_t*, std::int32_t, std::int32_t, std::uint32_t, int>;
    for (const auto& [text, radix, value, unsignedValue, read] :
         {Row{u"0", 10, 0, 0, 1}, Row{u" \t\n\v\f\r+7", 10, 7, 7, 8},
          Row{u"-1", 10, -1, 0xFFFFFFFF, 2}, Row{u"2147483648", 10, most, 0x80000000, 10},
          Row{u"-2147483648", 10, least, 0x80000000, 11},
          Row{u"99999999999999999999999", 10, most, 0xFFFFFFFF, 23}, Row{u"zZ", 36, 1295, 1295, 2},
          Row{u"1012", 2, 5, 5, 3}, Row{u"0x1F", 16, 31, 31, 4}, Row{u"0x", 16, 0, 0, 1},
          Row{u"0x1F", 10, 0, 0, 1}, Row{u"017", 0, 15, 15, 3}, Row{u"", 10, 0, 0, 0},
          Row{u"  -", 10, 0, 0, 0}, Row{u"\u00A05", 10, 0, 0, 0}, Row{u"5", -10, 0, 0, 0}}) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(text)));
        const char16_t* end = nullptr;
        EXPECT_EQ(ORVStrToLW(text, &end, radix), value);
        EXPECT_EQ(end - text, read);
        EXPECT_EQ(ORVStrToULW(text, &end, radix), unsignedValue);
        EXPECT_EQ(end - text, read);
        if (radix == 10) {
            EXPECT_EQ(ORVStrToIW(text), value);
        }
    }
}

TEST(Numbers, readFloatingPointWithAPoint)
{
    using Row = std::tuple<std::u16string, double, int>;
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [text, value, read] :
         {Row{u"1.5", 1.5, 3}, Row{u"1,5", 1.0, 1}, Row{u"  -.25e2x", -25.0, 8}, Row{u"+3", 3.0, 2},
          Row{u"1e+", 1.0, 1}, Row{u"1e308", 1e308, 5}, Row{u"1e999", infinity, 5},
          Row{u"1e-999", 0.0, 6}, Row{u"0x1.8p3", 12.0, 7}, Row{u"0x", 0.0, 1},
          Row{u"infinite", infinity, 3}, Row{u"-Infinity!", -infinity, 9}, Row{u".", 0.0, 0},
          Row{u"", 0.0, 0}, Row{std::u16string(400, u'1') + u"e-399.", 1.1111111111111112, 405},
          Row{u"0." + std::u16string(300, u'0') + u"25", 0.25e-300, 304}}) {
        const char16_t* end = nullptr;
        EXPECT_EQ(ORVStrToDW(text.c_str(), &end), value) << testing::PrintToString(text);
        EXPECT_EQ(end - text.c_str(), read) << testing::PrintToString(text);
    }
    const char16_t* end = nullptr;
    const char16_t text[] = u"nan(1)x";
    EXPECT_TRUE(std::isnan(ORVStrToDW(text, &end)));
    EXPECT_EQ(end, text + 6);
}

TEST(Numbers, printInEveryRadix)
{
    using Row = std::tuple<std::int32_t, std::int32_t, const char*>;
    for (const auto& [value, radix, text] :
         {Row{0, 10, "0"}, Row{-15, 10, "-15"}, Row{least, 10, "-2147483648"},
          Row{most, 10, "2147483647"}, Row{233, 16, "e9"}, Row{-1, 16, "ffffffff"},
          Row{least, 2, "10000000000000000000000000000000"}, Row{most, 36, "zik0zj"},
          Row{8, 8, "10"}, Row{5, 1, ""}, Row{5, 37, ""}}) {
        char narrow[34];
        ORVLToStrA(value, narrow, radix);
        EXPECT_STREQ(narrow, text);
        char16_t wide[34];
        ORVLToStrW(value, wide, radix);
        const std::string expected = text;
        EXPECT_EQ(std::u16string(wide), std::u16string(expected.begin(), expected.end()));
    }
}

} // namespace
