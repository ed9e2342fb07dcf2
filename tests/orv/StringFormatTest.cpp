#include "orv/String.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>

namespace orv {
namespace {

TEST(StringValueOf, printsFractionsAsTheCLibraryDoes)
{
    EXPECT_EQ(String::valueOf(3.5f), u"3.5");
    EXPECT_EQ(String::valueOf(0.1f), u"0.1");
    for (const double value : {0.0, -0.0, 1.0 / 3, 123456.5, 999999.5, 1e-5, 1.5e-4, -2e300, 5e-324,
                               HUGE_VAL, -HUGE_VAL}) {
        char expected[32];
        std::snprintf(expected, sizeof expected, "%g", value);
        EXPECT_EQ(String::valueOf(value), String(expected)) << value;
    }
    EXPECT_EQ(String::valueOf(std::numeric_limits<double>::quiet_NaN()), u"nan");
}

template <class... Arguments>
String formatted(const char16_t* pattern, Arguments... arguments)
{
    String text;
    text.format(pattern, -1, arguments...);
    return text;
}

TEST(StringFormat, putsArgumentsInPlaceOfTheirNumbers)
{
    EXPECT_EQ(formatted(u"{0} and {0}, {1}", u"a", u"b"), u"a and a, b");
    EXPECT_EQ(formatted(u"{1}", u"a"), u"{1}");
    EXPECT_EQ(formatted(u"{0}", u"{1}", u"b"), u"{1}"); // never looked at again
    EXPECT_EQ(formatted(u"{0}{1}{3}", u"a", u"b", u"c", u"d"), u"ab{3}");
    EXPECT_EQ(formatted(u"{{0}} {00} { 0} {0", u"a"), u"{a} {00} { 0} {0");
    EXPECT_EQ(formatted(u"{-0}{}{4294967296}{0}", u""), u"{-0}{}{4294967296}");
    EXPECT_EQ(formatted(u"{10}{9}{8}{7}{6}{5}{4}{3}{2}{1}{0}", u"a", u"b", u"c", u"d", u"e", u"f",
                        u"g", u"h", u"i", u"j", u"k"),
              u"kjihgfedcba");
}

} // namespace
} // namespace orv
