#include "orv/math/BigInteger.h"

#include "fuzz/judges/PlainNumber.h"
#include "orv/Exceptions.h"
#include "tests/orv/math/Printing.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

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
    BigInteger zero(-5), difference(-5), quotient(-5), rest;
    zero.multiply(0);
    difference.subtract(-5);
    quotient.divide(7, rest);
    EXPECT_TRUE(zero.isZero() && zero.isNegative());
    EXPECT_EQ(zero.compareTo(BigInteger(0)), -1);
    EXPECT_EQ(decimal(zero), "0");
    EXPECT_FALSE(difference.isNegative() || quotient.isNegative());
}

TEST(BigInteger, findsRestsDivisorsAndInverses)
{
    constexpr auto mod = &BigInteger::mod, gcd = &BigInteger::gcd;
    using Row = std::tuple<decltype(mod), int, int, int>;
    for (const auto& [operation, a, b, expected] : {Row{mod, -6, 3, 3},
                                                    {mod, -7, 3, 2},
                                                    {mod, 7, 3, 1},
                                                    {mod, 6, 3, 0},
                                                    {mod, -1, 3, 2},
                                                    Row{gcd, 12, 18, 6},
                                                    {gcd, 12, -6, -6},
                                                    {gcd, 12, -18, 6},
                                                    {gcd, 0, 5, 5},
                                                    {gcd, -12, 18, 6}}) {
        BigInteger number(a);
        (number.*operation)(b);
        EXPECT_EQ(number.toInt64(), expected) << a << ", " << b;
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
    const BigInteger modulus = big(u"98765432109876543210987");
    for (const char16_t* base : {u"2", u"-1", u"-12", u"-65535", u"99999", u"1234567890123"}) {
        for (const int exponent : {0, 1, 2, 7, 400}) {
            BigInteger expected = big(base), power(expected), rest(expected);
            for (int i = 1; i < exponent; ++i) expected.multiply(big(base));
            power.pow(exponent);
            EXPECT_EQ(decimal(power), decimal(expected)) << exponent;
            expected.mod(modulus);
            rest.modPow(exponent, modulus);
            EXPECT_EQ(decimal(rest), decimal(expected)) << exponent;
        }
    }
    BigInteger fermat(3); // the power itself would fill the memory
    fermat.modPow(2147483646, 2147483647);
    EXPECT_EQ(decimal(fermat), "1");
}

TEST(BigInteger, takesItselfAsArgument)
{
    const BigInteger start = big(u"123456789012345678901234567890");
    for (const char16_t* divisor : {u"1000", u"1234567890123456789012"}) {
        BigInteger quotient(start), alias(start), rest, other = big(divisor);
        quotient.divide(other, rest);
        alias.divide(other, alias);
        EXPECT_EQ(decimal(alias), decimal(quotient)) << "the quotient is what stays";
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
        {"Divide by zero.",
         [](BigInteger& n) {
             BigInteger cleared(1);
             cleared.clearBit(0); // a zero that has a byte
             n.divide(cleared, n);
         }},
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
    EXPECT_THROW(BigInteger(5).setBit(-1), RangeErrorException);
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
    number.clearBit(200);
    EXPECT_EQ(number.getSize(), 26);
    EXPECT_EQ(number.getBitCount(), 200);
    number.add(BigInteger::ZERO);
    EXPECT_EQ(number.getSize(), 0);
}

// Against the plain model; the fuzzers go on where these rounds end.

class BigIntegerAgainstPlain : public testing::Test {
protected:
    std::size_t below(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }

    /// A number of up to `longest` bytes, of bytes that like to be at the ends of their range.
    PlainNumber number(std::size_t longest)
    {
        PlainNumber result{below(2) == 0, {}};
        const std::size_t size = below(longest + 1);
        const std::size_t kind = below(8);
        while (result.bytes.size() < size) {
            const std::size_t random = below(256);
            const bool filled = kind == 1 || (kind == 2 && result.bytes.size() > size / 2);
            const bool empty = kind == 3 || (kind == 4 && result.bytes.size() < size / 2);
            const bool nearly = kind == 5 && random < 240;
            const std::size_t byte = filled || nearly ? 255 : empty ? 0 : random;
            result.bytes.push_back(static_cast<unsigned char>(byte));
        }
        if (size > 0 && result.bytes.back() == 0) {
            result.bytes.back() = static_cast<unsigned char>(1u << below(8));
        }
        return result;
    }

    template <class Round>
    void rounds(int count, Round round)
    {
        for (int i = 0; i < count && !HasFailure(); ++i) round();
    }

    std::mt19937_64 m_random{20261121};
};

BigInteger made(const PlainNumber& number)
{
    // Zeros on top can only come about by clearing.
    PlainNumber::Bytes bytes = number.bytes;
    std::size_t used = bytes.size();
    while (used > 0 && bytes[used - 1] == 0) bytes[--used] = 1;
    BigInteger result(reinterpret_cast<const signed char*>(bytes.data()),
                      static_cast<std::int32_t>(bytes.size()), number.negative);
    for (std::size_t i = used; i < bytes.size(); ++i) {
        result.clearBit(static_cast<std::int32_t>(8 * i + 7));
    }
    return result;
}

PlainNumber plain(const BigInteger& number)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(number.getData());
    return {number.isNegative(), {bytes, bytes + number.getSize()}};
}

/// `operation` does the same to numbers of both kinds.
template <class Operation>
void expectAlike(const PlainNumber& a, const PlainNumber& b, Operation operation)
{
    PlainNumber expected = a;
    BigInteger actual = made(a);
    operation(expected, b);
    operation(actual, made(b));
    EXPECT_EQ(plain(actual), expected) << a << " and " << b;
}

void expectSumsAndOrder(const PlainNumber& a, const PlainNumber& b)
{
    expectAlike(a, b, [](auto& x, const auto& y) { x.add(y); });
    expectAlike(a, b, [](auto& x, const auto& y) { x.subtract(y); });
    EXPECT_EQ(made(a).compareTo(made(b)), a.compareTo(b)) << a << " and " << b;
    EXPECT_EQ(made(a).getBitCount(), a.bitCount()) << a;
}

void expectProduct(const PlainNumber& a, const PlainNumber& b)
{
    expectAlike(a, b, [](auto& x, const auto& y) { x.multiply(y); });
}

void expectQuotient(const PlainNumber& a, const PlainNumber& b)
{
    PlainNumber expected = a, expectedRest;
    BigInteger quotient = made(a), rest;
    expected.divide(b, expectedRest);
    quotient.divide(made(b), rest);
    EXPECT_EQ(plain(quotient), expected) << a << " by " << b;
    EXPECT_EQ(plain(rest), expectedRest) << a << " by " << b;
}

bool isZero(const PlainNumber& number)
{
    return std::all_of(number.bytes.begin(), number.bytes.end(),
                       [](auto byte) { return byte == 0; });
}

TEST_F(BigIntegerAgainstPlain, addsSubtractsAndCompares)
{
    rounds(4000, [this] {
        const PlainNumber a = number(below(10) == 0 ? 100 : 12);
        PlainNumber b = number(below(10) == 0 ? 100 : 12);
        if (below(4) == 0) b.bytes = a.bytes;
        expectSumsAndOrder(a, b);
    });
}

TEST_F(BigIntegerAgainstPlain, multiplies)
{
    rounds(4000, [this] { expectProduct(number(12), number(12)); });
    rounds(300, [this] { expectProduct(number(80), number(80)); });
    // Carries that hang on the lowest bytes of a row, too rare to wait for.
    for (const auto& [a, b] : {std::pair{"65534", "16843010"},
                               {"4703991516010230251776", "65793"},
                               {"1574122160956548404566", "66305"}}) {
        expectProduct(PlainNumber::read(a, 10), PlainNumber::read(b, 10));
    }
    rounds(20, [this] { expectProduct(number(1000), number(1000)); }); // in halves
}

TEST_F(BigIntegerAgainstPlain, divides)
{
    rounds(1500, [this] {
        const PlainNumber a = number(below(10) == 0 ? 120 : 24);
        const PlainNumber b = number(below(10) == 0 ? 60 : 20);
        if (!isZero(b)) expectQuotient(a, b);
    });
}

TEST_F(BigIntegerAgainstPlain, printsAndReads)
{
    rounds(150, [this] {
        const PlainNumber a = number(below(20) == 0 ? 80 : 18);
        const unsigned radix = below(2) == 0 ? 10 : static_cast<unsigned>(2 + below(35));
        const std::string text = a.toString(radix);
        EXPECT_EQ(narrow(made(a).toString(static_cast<std::int32_t>(radix))), text);
        if (a.bytes.empty()) return;
        EXPECT_EQ(plain(BigInteger(wide(text), static_cast<std::int32_t>(radix))), a) << text;
    });
    rounds(8, [this] {
        const PlainNumber a = number(1000);
        const String text = made(a).toString(10);
        EXPECT_EQ(PlainNumber::read(narrow(text), 10).bytes, a.bytes);
        if (!isZero(a)) {
            EXPECT_EQ(plain(BigInteger(text, 10)), a);
        }
    });
}

TEST_F(BigIntegerAgainstPlain, keepsToTheSizeOfNumbersWithZerosOnTop)
{
    rounds(400, [this] {
        PlainNumber a = number(6), b = number(4);
        a.bytes.resize(a.bytes.size() + below(9));
        b.bytes.resize(b.bytes.size() + below(2));
        expectSumsAndOrder(a, b);
        expectProduct(a, b);
        if (!isZero(b)) expectQuotient(a, b);
        EXPECT_EQ(narrow(made(a).toString(10)), a.toString(10)) << a;
    });
}

} // namespace
} // namespace orv::math
