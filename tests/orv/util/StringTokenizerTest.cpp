#include "orv/util/StringTokenizer.h"

#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::util {
namespace {

/// The tokens that are left, each in brackets.
String rest(StringTokenizer& tokens)
{
    String all;
    while (tokens.hasMoreTokens()) all.append(u"[").append(tokens.nextToken()).append(u"]");
    return all;
}

TEST(StringTokenizer, cutsAtDelimiters)
{
    using Row = std::tuple<const char16_t*, const char16_t*, bool, const char16_t*, int>;
    for (const auto& [text, delimiters, returned, expected, count] :
         {Row{u"a,,b", u",", true, u"[a][,][,][b]", 4},
          {u"a,,b", u",", false, u"[a][b]", 2},
          {u",a,b,,", u",", false, u"[a][b]", 2},
          {u",a,", u",", true, u"[,][a][,]", 3},
          {u"", u",", false, u"", 0},
          {u"", u",", true, u"", 0},
          {u",,", u",", false, u"", 0},
          {u" a\tb\r\nc\fd\ve ", nullptr, false, u"[a][b][c][d\ve]", 4},
          {u"aXbxc", u"x", false, u"[aXb][c]", 2},
          {u"abc", u"", false, u"", 0},
          {u"abc", u"", true, u"[abc]", 1}}) {
        StringTokenizer tokens(text, delimiters, returned);
        EXPECT_EQ(tokens.getTokenCount(), count) << test::readable(text);
        EXPECT_EQ(rest(tokens), expected) << test::readable(text);
        EXPECT_EQ(tokens.getTokenCount(), 0);
        EXPECT_EQ(test::refusalOf([&] { tokens.nextToken(); }).second, "No such element");
    }
}

TEST(StringTokenizer, newDelimitersHoldFromTheOnesInFront)
{
    StringTokenizer tokens(u"a b;c;d e", u" ", false);
    EXPECT_EQ(tokens.getTokenCount(), 3);
    EXPECT_EQ(tokens.nextToken(), u"a");
    EXPECT_TRUE(tokens.hasMoreTokens());
    EXPECT_TRUE(tokens.hasMoreTokens()) << "looking ahead moves nothing";
    EXPECT_EQ(tokens.getTokenCount(), 2);
    EXPECT_EQ(tokens.nextToken(u";"), u" b") << "the blank that was looked over is back";
    EXPECT_EQ(rest(tokens), u"[c][d e]");
}

} // namespace
} // namespace orv::util
