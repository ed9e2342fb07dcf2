#include "orv/math/BigInteger.h"

#include "fuzz/judges/PlainNumber.h"
#include "tests/orv/math/Printing.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>

namespace orv::math {
namespace {

/// ORV_TEST_SEED and ORV_TEST_ROUNDS (a factor) make other and longer runs.
unsigned setting(const char* name, unsigned standard)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? standard : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

class BigIntegerAgainstPlain : public testing::Test {
protected:
    BigIntegerAgainstPlain() : m_seed(setting("ORV_TEST_SEED", 20261121)), m_random(m_seed)
    {
        std::cout << "seed " << m_seed << '\n';
    }

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

    void rounds(unsigned count, const std::function<void()>& round)
    {
        const unsigned factor = setting("ORV_TEST_ROUNDS", 1);
        for (unsigned i = 0; i < count * factor && !HasFailure(); ++i) {
            SCOPED_TRACE(testing::Message() << "seed " << m_seed << ", round " << i);
            round();
        }
    }

    unsigned m_seed;
    std::mt19937_64 m_random;
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
    expectAlike(a, b, [](auto& x, const auto& y) {
        std::decay_t<decltype(x)> left;
        x.divide(y, left);
    });
    expectAlike(a, b, [](auto& x, const auto& y) {
        std::decay_t<decltype(x)> left;
        x.divide(y, left);
        x = left;
    });
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
