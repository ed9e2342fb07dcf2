// Counts the ways to shuffle a pack of cards, and divides with a fixed number of decimals.

#include <orv/String>
#include <orv/math/BigDecimal>
#include <orv/math/BigInteger>

#include <cstdio>

using namespace orv;
using math::BigDecimal;
using math::BigInteger;

int main()
{
    BigInteger ways(1);
    for (std::int32_t cards = 2; cards <= 52; ++cards) ways.multiply(BigInteger(cards));
    std::printf("52! = %s\n", ways.toString().getBytes());

    BigDecimal share(2);
    share.divide(BigDecimal(3), 5); // arithmetic changes the object itself
    std::printf("2 / 3 = %s\n", share.toString().getBytes());
    return 0;
}
