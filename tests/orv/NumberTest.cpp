#include "orv/Number.h"

#include "orv/Exceptions.h"
#include "orv/Floats.h"
#include "orv/Integers.h"
#include "orv/math/BigDecimal.h"
#include "orv/math/BigInteger.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orv {
namespace {

constexpr std::int32_t LEAST = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t MOST = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t LEAST64 = std::numeric_limits<std::int64_t>::min();

TEST(Number, convertsToEveryWidthByItsLowBits)
{
    const Integer64 number(std::int64_t{0x1122334455667788} - (std::int64_t{1} << 62));
    EXPECT_EQ(number.toInt64(), static_cast<std::int64_t>(0xD122334455667788));
    EXPECT_EQ(number.toInt(), 0x55667788);
    EXPECT_EQ(number.toUInt(), 0x55667788u);
    EXPECT_EQ(number.toShort(), 0x7788);
    EXPECT_EQ(number.toUInt16(), 0x7788);
    EXPECT_EQ(number.toByte(), -0x78);
    EXPECT_EQ(number.toUInt8(), 0x88);

    EXPECT_EQ(Integer32(-1).toUInt32(), 0xFFFFFFFF);
    EXPECT_EQ(UInteger32(0xFFFFFFFF).toInt32(), -1);
    EXPECT_EQ(UInteger32(0xFFFFFFFF).toInt64(), 4294967295);
    EXPECT_EQ(Integer16(Integer32(0x18000)), LEAST >> 16);
    EXPECT_EQ(UInteger8(Double(-1.5)), 255);
}

TEST(Number, cutsFloatingPointValuesTowardZero)
{
    using Row = std::pair<double, std::int64_t>;
    const double limit = 9223372036854775808.0;
    for (const auto& [value, integer] : {Row{2.9, 2},
                                         {-2.9, -2},
                                         {limit, LEAST64},
                                         {-1e300, LEAST64},
                                         {std::nan(""), LEAST64},
                                         {std::nextafter(limit, 0), 9223372036854774784}}) {
        EXPECT_EQ(Double(value).toInt64(), integer) << value;
        EXPECT_EQ(Double(value).toInt32(), static_cast<std::int32_t>(integer));
    }
    EXPECT_EQ(Float(-7.75f).toInt(), -7);
    EXPECT_EQ(Float(Double(0.1)), 0.1f);
    EXPECT_EQ(UInteger64(std::uint64_t{1} << 63).toDouble(), 0.0);
    EXPECT_EQ(UInteger64(~std::uint64_t{0}).toDouble(), 9223372036854775807.0);
}

TEST(Number, comparesInItsOwnType)
{
    EXPECT_EQ(Integer8(1).compareTo(Integer32(257)), 0);
    EXPECT_EQ(Integer32(257).compareTo(Integer8(1)), 256);
    EXPECT_EQ(Integer32(MOST).compareTo(Integer32(LEAST)), -1);
    EXPECT_EQ(UInteger32(0).compareTo(UInteger32(0x80000001)), MOST);
    EXPECT_EQ(UInteger8(1).compareTo(Integer32(-1)), -254);
    EXPECT_EQ(UInteger64(~std::uint64_t{0}).compareTo(Integer8(1)), 1);
    EXPECT_EQ(Integer64(-1).compareTo(UInteger64(1)), -1);
    EXPECT_TRUE(Integer32(5).equals(Double(5.9)));
    EXPECT_FALSE(Double(5.9).equals(Integer32(5)));
    EXPECT_EQ(Double(1).compareTo(Double(2)), -1);

    const Double nan(std::nan(""));
    EXPECT_EQ(nan.compareTo(Double(1)), 1);
    EXPECT_EQ(Float(1).compareTo(nan), 1);
    EXPECT_EQ(nan.compareTo(nan), 0); // the same object
    EXPECT_THROW(Integer8(1).equals(String(u"1")), CastFailedException);
    EXPECT_THROW(static_cast<void>(Integer8(1).clone()), CloneNotSupportedException);
}

TEST(Number, prints)
{
    const Integer8 small(-128);
    const Integer64 largest(LEAST64);
    const UInteger64 longest(~std::uint64_t{0});
    const Double twice(1.0 / 3);
    using Row = std::pair<const Number*, const char16_t*>;
    for (const auto& [number, text] : {Row{&small, u"-128"},
                                       {&largest, u"-9223372036854775808"},
                                       {&longest, u"18446744073709551615"},
                                       {&twice, u"0.333333"}}) {
        EXPECT_EQ(number->toString(), text);
    }
    EXPECT_EQ(longest.toString(36), u"3w5e11264sgsf");
    EXPECT_EQ(longest.toBigInteger().toString(), u"18446744073709551615");
    EXPECT_EQ(Integer32(7).toBigDecimal().toString(), u"7.0");
}

TEST(Number, readsText)
{
    EXPECT_EQ(Number::parseInt(u"99999999999"), MOST);
    EXPECT_EQ(Number::parseByte(u"300"), 44);
    EXPECT_EQ(Number::parseUByte(u"-1"), 255u);
    EXPECT_EQ(Number::parseInt64(u"-9223372036854775807"), LEAST64 + 1);
    EXPECT_EQ(Number::parseUInt64(u"18446744073709551615"), ~std::uint64_t{0} >> 1);
    EXPECT_THROW(static_cast<void>(Number::parseInt64(u"0")), Exception);
    EXPECT_EQ(Number::parseDouble(u"-1.5e3x"), -1500);

    EXPECT_EQ(Integer8(String(u"300")), 44);
    EXPECT_EQ(UInteger16(String(u"65537")), 1);
}

} // namespace
} // namespace orv
