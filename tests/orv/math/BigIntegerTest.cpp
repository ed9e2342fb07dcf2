#include "orv/math/BigInteger.h"

#include "orv/Exceptions.h"
#include "tests/orv/math/Printing.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace orv::math {
namespace {

BigInteger big(const char16_t* text)
{
    return BigInteger(text, 10);
}

std::string decimal(const BigInteger& number)
{
    return narrow(number.toString(10));
}

TEST(BigInteger, givesZeroASign)
{
    BigInteger zero(-5);
    zero.multiply(0);
    EXPECT_TRUE(zero.isZero());
    EXPECT_TRUE(zero.isNegative());
    EXPECT_EQ(decimal(zero), "0");
    EXPECT_EQ(zero.compareTo(BigInteger(0)), -1);
    EXPECT_EQ(BigInteger(0).compareTo(zero), 1);

    BigInteger difference(-5);
    difference.subtract(-5);
    EXPECT_FALSE(difference.isNegative());
    BigInteger rest;
    BigInteger quotient(-5);
    quotient.divide(7, rest);
    EXPECT_FALSE(quotient.isNegative());
    EXPECT_EQ(decimal(rest), "5");
}

TEST(BigInteger, reducesNegativeNumbersFromTheModulusDown)
{
    using Row = std::tuple<int, int, int>;
    for (const auto& [a, m, rest] : {Row{-6, 3, 3}, {-7, 3, 2}, {7, 3, 1}, {6, 3, 0}, {-1, 3, 2}}) {
        BigInteger number(a);
        number.mod(m);
        EXPECT_EQ(number.toInt64(), rest) << a << " mod " << m;
    }
}

TEST(BigInteger, findsDivisorsAndInverses)
{
    using Row = std::tuple<int, int, int>;
    for (const auto& [a, b, divisor] :
         {Row{12, 18, 6}, {12, -6, -6}, {12, -18, 6}, {0, 5, 5}, {-12, 18, 6}}) {
        BigInteger number(a);
        number.gcd(b);
        EXPECT_EQ(number.toInt64(), divisor) << a << ", " << b;
    }
    for (int m = 2; m < 200; ++m) {
        for (int a = 1; a < m; ++a) {
            BigInteger inverse(a), divisor(a);
            divisor.gcd(m);
            if (divisor.toInt() != 1) {
                EXPECT_EQ(thrownBy([&] { inverse.modInverse(m); }), "Not invertible.");
                EXPECT_EQ(inverse.toInt(), a);
                continue;
            }
            inverse.modInverse(m);
            EXPECT_EQ(inverse.toInt() * a % m, 1) << a << " mod " << m;
        }
    }
}

TEST(BigInteger, raisesByMultiplyingWithItsFirstValue)
{
    const auto power = [](const char16_t* base, int exponent) {
        BigInteger number = big(base);
        number.pow(exponent);
        return decimal(number);
    };
    EXPECT_EQ(power(u"2", 0), "2");
    EXPECT_EQ(power(u"-2", 1), "-2");
    EXPECT_EQ(power(u"2", 3), "8");
    EXPECT_EQ(power(u"-10", 21), "-1000000000000000000000");
    EXPECT_EQ(power(u"65535", 4), "18445618199572250625");

    // Long bases lose the carries of each single product.
    for (const char16_t* base : {u"99999", u"16777215", u"1234567890123"}) {
        BigInteger expected = big(base);
        for (int i = 1; i < 7; ++i) expected.multiply(big(base));
        EXPECT_EQ(power(base, 7), decimal(expected));
    }
    BigInteger threeTimes(3), once(3);
    threeTimes.pow(2000);
    for (int i = 1; i < 2000; ++i) once.multiply(3);
    EXPECT_EQ(threeTimes.compareTo(once), 0);
}

TEST(BigInteger, raisesShortBasesByAModulusWithoutBuildingThePower)
{
    for (const char16_t* base : {u"-12", u"1", u"-65535", u"99999"}) {
        for (const int exponent : {0, 1, 2, 5, 40}) {
            BigInteger expected = big(base), actual(expected);
            expected.pow(exponent);
            expected.mod(big(u"98765432109876543210987"));
            actual.modPow(exponent, big(u"98765432109876543210987"));
            EXPECT_EQ(decimal(actual), decimal(expected)) << exponent;
        }
    }
    BigInteger fermat(3);
    fermat.modPow(2147483646, 2147483647);
    EXPECT_EQ(decimal(fermat), "1");
}

TEST(BigInteger, takesItselfAsArgument)
{
    const BigInteger start = big(u"123456789012345678901234567890");
    for (const char16_t* divisor : {u"1000", u"1234567890123456789012"}) {
        BigInteger quotient(start), alias(start), rest, other = big(divisor);
        quotient.divide(other, rest);
        alias.divide(other, alias); // the quotient is what stays
        EXPECT_EQ(decimal(alias), decimal(quotient));
        BigInteger(start).divide(other, other);
        EXPECT_EQ(decimal(other), decimal(rest));
    }
    BigInteger square(start), product(start);
    square.multiply(square);
    product.multiply(start);
    EXPECT_EQ(decimal(square), decimal(product));
}

TEST(BigInteger, refusesWhatHasNoResult)
{
    const std::pair<const char*, void (*)(BigInteger&)> rows[] = {
        {"Divide by zero.", [](BigInteger& n) { n.divide(0, n); }},
        {"Divide by zero.", [](BigInteger& n) { n.mod(0); }},
        {"Divide by zero.", [](BigInteger& n) { n.gcd(0); }},
        {"Modulus can't be negative.", [](BigInteger& n) { n.mod(-3); }},
        {"Modulus can't be negative.", [](BigInteger& n) { n.modPow(3, -3); }},
        {"Not invertible.", [](BigInteger& n) { n.modInverse(2); }},
        {"Negative Exponent", [](BigInteger& n) { n.pow(-1); }},
        {"Negative Exponent",
         [](BigInteger& n) { n.modPow(std::numeric_limits<std::int32_t>::min(), 7); }},
        {"Number Format Exception", [](BigInteger& n) { static_cast<void>(n.toString(37)); }},
    };
    for (const auto& row : rows) {
        BigInteger number(12);
        EXPECT_EQ(thrownBy([&] { row.second(number); }), row.first);
        EXPECT_EQ(number.toInt(), 12) << row.first;
    }
    BigInteger cleared(1), number(5), rest;
    cleared.clearBit(0); // a zero that has a byte
    EXPECT_EQ(thrownBy([&] { number.divide(cleared, rest); }), "Divide by zero.");
    EXPECT_THROW(number.setBit(-1), RangeErrorException);
}

TEST(BigInteger, readsTextInGroupsFromItsEnd)
{
    using Row = std::tuple<const char16_t*, std::int32_t, const char*>;
    for (const auto& [text, radix, value] :
         {Row{u"-12", 10, "-12"},
          {u"-00012345", 10, "-12"},
          {u"000123456", 10, "123"},
          {u"000123", 10, "0"},
          {u"12a", 10, "12"},
          {u"12a456", 10, "12456"},
          {u"--5", 10, "-5"},
          {u"-12-34", 10, "-11966"},
          {u"+7", 10, "7"},
          {u" 12", 10, "12"},
          {u"1\u0664", 10, "1"},
          {u"-x", 10, "0"},
          {u"fF", 16, "255"},
          {u"10x1", 16, "4097"},
          {u"10x1f", 16, "65536"},
          {u"102", 2, "2"},
          {u"12", 37, "0"},
          {u"12", 0, "0"},
          {u"18446744073709551616", 10, "18446744073709551616"},
          {u"10000000000000000000000000000000000000000000000000000000001", 10,
           "10000000000000000000000000000000000000000000000000000000001"}}) {
        EXPECT_EQ(decimal(BigInteger(text, radix)), value);
    }
    EXPECT_TRUE(BigInteger(u"-x", 10).isNegative());
    for (const char16_t* text : {u"", u"-", u"0", u"000", u"-0", u"1-2", u"0-", u"12-", u"x-1",
                                 u"123456789012345678901-"}) {
        EXPECT_EQ(thrownBy([&] { BigInteger(text, 10); }), "Number Format Exception");
    }
}

TEST(BigInteger, setsSingleBitsAndClearsThemDownToTheByte)
{
    using Row = std::pair<int, const char*>;
    for (const auto& [bit, left] : {Row{0, "65534"},
                                    {3, "65520"},
                                    {7, "65280"},
                                    {8, "65279"},
                                    {11, "61695"},
                                    {16, "65535"},
                                    {-1, "65535"}}) {
        BigInteger number(0xFFFF);
        number.clearBit(bit);
        EXPECT_EQ(decimal(number), left) << bit;
    }
    BigInteger number;
    number.setBit(200);
    EXPECT_EQ(number.getBitCount(), 201);
    EXPECT_EQ(number.getSize(), 26);
    number.clearBit(200);
    EXPECT_EQ(number.getSize(), 26);
    EXPECT_EQ(number.getBitCount(), 200);
    EXPECT_EQ(number.compareTo(BigInteger(5)), 1);
    number.add(BigInteger::ZERO);
    EXPECT_EQ(number.getSize(), 0);
    EXPECT_EQ(BigInteger(255).getBitCount(), 8);
    EXPECT_EQ(BigInteger(256).getBitCount(), 9);
}

} // namespace
} // namespace orv::math
