#include "orv/math/BigDecimal.h"

#include "orv/Exceptions.h"
#include "orv/Floats.h"
#include "orv/Integers.h"
#include "tests/orv/math/Printing.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace orv::math {
namespace {

BigDecimal number(const char16_t* unscaled, std::int32_t scale)
{
    return {BigInteger(unscaled, 10), scale};
}

std::string unscaled(const BigDecimal& value)
{
    return (value.isNegative() ? "-" : "") + narrow(value.abs().toString());
}

TEST(BigDecimal, readsTextWithOnePoint)
{
    using Row = std::tuple<const char16_t*, const char*, std::int32_t>;
    for (const auto& [text, digits, scale] : {Row{u"12.500", "125", 1},
                                              {u".5", "5", 1},
                                              {u"1.000", "10", 1},
                                              {u"-0.05", "-5", 2},
                                              {u"7", "7", 0},
                                              {u"1.2.3", "1002", 3},
                                              {u"0.00012", "12", 5},
                                              {u"0.000123", "0", 6},
                                              {u"1.5e3", "1005", 3}}) {
        const BigDecimal value{String(text)};
        EXPECT_EQ(unscaled(value), digits) << narrow(text);
        EXPECT_EQ(value.getScale(), scale) << narrow(text);
    }
    for (const char16_t* text : {u"0", u"0.0", u"", u".", u"1.-5"}) {
        EXPECT_EQ(thrownBy([&] { BigDecimal{String(text)}; }), "Number Format Exception");
    }
}

TEST(BigDecimal, readsFloatingPointValuesWithSixPlaces)
{
    using Row = std::tuple<double, const char*, std::int32_t>;
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [number, digits, scale] : {Row{1.5, "15", 1},
                                                {-2.25, "-225", 2},
                                                {0.1234567, "123457", 6},
                                                {1e21, "10000000000000000000000", 1},
                                                {infinity, "0", 0},
                                                {0.000123, "0", 6}}) {
        const BigDecimal value(number);
        EXPECT_EQ(unscaled(value), digits) << number;
        EXPECT_EQ(value.getScale(), scale) << number;
    }
    EXPECT_EQ(thrownBy([] { BigDecimal(0.0); }), "Number Format Exception");
    EXPECT_EQ(thrownBy([] { static_cast<void>(Integer32(0).toBigDecimal()); }),
              "Number Format Exception");
    BigDecimal assigned(5, 3);
    assigned = infinity;
    EXPECT_EQ(assigned.getScale(), 3);
    assigned = 2.5f;
    EXPECT_EQ(narrow(assigned.toString()), "2.5");
}

TEST(BigDecimal, countsTheSignAsADigitWhenItPrints)
{
    using Row = std::tuple<const char16_t*, std::int32_t, const char*>;
    for (const auto& [unscaled, scale, text] : {Row{u"1234", 2, "12.34"},
                                                {u"5", 1, "0.5"},
                                                {u"5", 3, "0.005"},
                                                {u"1200", 2, "12.00"},
                                                {u"-1234", 2, "-12.34"},
                                                {u"-15", 2, "-.15"},
                                                {u"-5", 2, "0.-5"},
                                                {u"-5", 3, "0.0-5"},
                                                {u"12", -3, "12"}}) {
        EXPECT_EQ(narrow(number(unscaled, scale).toString()), text);
    }
    EXPECT_EQ(narrow(BigDecimal(BigInteger(0), 2).toString()), "0.00");
}

TEST(BigDecimal, addsComparesAndMultipliesWhatIsUnscaled)
{
    BigDecimal sum = number(u"15", 1), difference(sum), product(sum);
    sum.add(number(u"225", 2));
    difference.subtract(number(u"225", 2));
    product.multiply(product);
    EXPECT_EQ(narrow(sum.toString()), "2.40");
    EXPECT_EQ(narrow(difference.toString()), "-2.10");
    EXPECT_EQ(narrow(product.toString()), "2.25");

    EXPECT_EQ(number(u"15", 1).compareTo(number(u"15", 7)), 0);
    EXPECT_EQ(number(u"2", 0).compareTo(number(u"15", 1)), -1);
    EXPECT_EQ(number(u"-1", 0).compareTo(number(u"-2", 0)), 1);
    EXPECT_TRUE(number(u"50", 1).equals(Integer32(5))); // which converts to 50 at scale 1
    EXPECT_EQ(number(u"5", 0).compareTo(Integer32(5)), -1);
    EXPECT_THROW(number(u"5", 0).equals(String(u"5")), CastFailedException);
}

TEST(BigDecimal, roundsQuotientsHalfAwayFromZero)
{
    using Row = std::tuple<const char16_t*, int, const char16_t*, int, int, const char*>;
    for (const auto& [a, aScale, b, bScale, scale, expected] :
         {Row{u"1", 0, u"3", 0, 5, "0.33333"},
          {u"2", 0, u"3", 0, 5, "0.66667"},
          {u"1", 0, u"8", 0, 2, "0.13"},
          {u"-1", 0, u"8", 0, 1, "-.1"},
          {u"-100", 0, u"800", 0, 2, "-.13"},
          {u"7", 0, u"-3", 0, 0, "-3"},
          {u"75", 1, u"25", 1, 0, "3"},
          // The divisor is 400, and the test of the rest, 3, takes 4.
          {u"803", 3, u"4", 1, 0, "3"},
          {u"803", 0, u"4", -2, 0, "3"}}) {
        BigDecimal quotient = number(a, aScale);
        quotient.divide(number(b, bScale), scale);
        EXPECT_EQ(narrow(quotient.toString()), expected) << narrow(a) << narrow(b);
    }
    BigDecimal value = number(u"15", 1);
    EXPECT_EQ(thrownBy([&] { value.divide(BigDecimal(), 9); }), "Divide by zero.");
    EXPECT_EQ(narrow(value.toString()), "1.5");
    value.divide(value, 2);
    EXPECT_EQ(narrow(value.toString()), "1.00");
}

TEST(BigDecimal, cutsPlacesWhenItRescales)
{
    const int least = std::numeric_limits<std::int32_t>::min();
    using Row = std::tuple<const char16_t*, int, int, const char*>;
    for (const auto& [digits, scale, newScale, left] : {Row{u"1999", 3, 1, "19"},
                                                        {u"19", 1, 4, "19000"},
                                                        {u"8", 0, -1, "0"},
                                                        {u"15", 0, -1, "1"},
                                                        {u"-19", 1, 0, "-1"},
                                                        {u"5", 0, least, "0"}}) {
        BigDecimal value = number(digits, scale);
        value.setScale(newScale);
        EXPECT_EQ(unscaled(value), left) << narrow(digits) << " at " << newScale;
        EXPECT_EQ(value.getScale(), newScale);
    }
    // Five places are a factor of three bytes, whose product may lose carries.
    BigDecimal longer(BigInteger(504211453), 0);
    BigInteger product(504211453);
    product.multiply(100000);
    longer.setScale(5);
    EXPECT_EQ(unscaled(longer), narrow(product.toString()));

    BigDecimal huge = number(u"5", 0);
    EXPECT_THROW(huge.setScale(std::numeric_limits<std::int32_t>::max()), OutOfMemoryException);
    EXPECT_EQ(huge.getScale(), 0);
}

} // namespace
} // namespace orv::math
