#include "orv/math/BigInteger.h"

#include "fuzz/judges/PlainNumber.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// \file
/// Sums, differences, products and quotients of two numbers, byte by byte the same as those of a
/// plain number. The first byte tells where the second number begins and both signs.

namespace {

using orv::math::BigInteger;
using orv::math::PlainNumber;

void require(bool holds)
{
    if (!holds) std::abort();
}

BigInteger made(const PlainNumber& number)
{
    return {reinterpret_cast<const signed char*>(number.bytes.data()),
            static_cast<std::int32_t>(number.bytes.size()), number.negative};
}

void requireEqual(const BigInteger& number, const PlainNumber& expected)
{
    require(number.isNegative() == expected.negative);
    require(number.getSize() == static_cast<std::int32_t>(expected.bytes.size()));
    const auto* const bytes = reinterpret_cast<const unsigned char*>(number.getData());
    require(std::equal(expected.bytes.begin(), expected.bytes.end(), bytes));
}

void check(const PlainNumber& a, const PlainNumber& b)
{
    const auto compare = [&](auto operation) {
        PlainNumber expected = a;
        BigInteger actual = made(a);
        operation(expected, b);
        operation(actual, made(b));
        requireEqual(actual, expected);
    };
    compare([](auto& number, const auto& other) { number.add(other); });
    compare([](auto& number, const auto& other) { number.subtract(other); });
    compare([](auto& number, const auto& other) { number.multiply(other); });
    require(made(a).compareTo(made(b)) == a.compareTo(b));
    if (b.bytes.empty()) return;

    PlainNumber expected = a;
    PlainNumber expectedRest;
    BigInteger actual = made(a);
    BigInteger rest;
    expected.divide(b, expectedRest);
    actual.divide(made(b), rest);
    requireEqual(actual, expected);
    requireEqual(rest, expectedRest);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 200) return -1;
    const std::uint8_t* const begin = data + 1;
    const std::uint8_t* const end = data + size;
    const std::uint8_t* const middle = begin + std::min<std::size_t>(data[0] / 4, size - 1);
    PlainNumber a{(data[0] & 1) != 0, {begin, middle}};
    PlainNumber b{(data[0] & 2) != 0, {middle, end}};
    a.trim();
    b.trim();
    check(a, b);
    return 0;
}
