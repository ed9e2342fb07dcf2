#include "Sweep.h"

#include "orv/math/BigDecimal.h"
#include "orv/math/BigInteger.h"

namespace orv::test {

namespace {

using math::BigDecimal;
using math::BigInteger;

BigInteger powerOf(std::int32_t base, std::int32_t exponent)
{
    BigInteger power(base);
    power.pow(exponent);
    return power;
}

/// Beyond what fits into the object, and beyond what the fast multiplication starts from.
BigInteger large()
{
    static const BigInteger s_value = powerOf(3, 500);
    return s_value;
}
BigInteger huge()
{
    static const BigInteger s_value = powerOf(7, 20000);
    return s_value;
}

struct Division {
    BigInteger value;
    BigInteger remainder;
    std::string state() const { return stateOf(value) + " rest " + stateOf(remainder); }
};

void addIntegers(std::vector<Row>& rows)
{
    const auto edit = [&](const char* name, auto apply) {
        rows.push_back(row(std::string("BigInteger, ") + name, &large, apply));
    };
    edit("assign", [](BigInteger& value) { value = huge(); });
    edit("add", [](BigInteger& value) { value.add(huge()); });
    edit("multiply by itself", [](BigInteger& value) { value.multiply(value); });
    edit("multiply by a huge one", [](BigInteger& value) { value.multiply(huge()); });
    edit("mod", [](BigInteger& value) { value.mod(powerOf(5, 100)); });
    edit("gcd", [](BigInteger& value) { value.gcd(powerOf(15, 80)); });
    edit("modInverse", [](BigInteger& value) { value.modInverse(powerOf(5, 60)); });
    edit("modPow", [](BigInteger& value) { value.modPow(77, powerOf(5, 100)); });
    edit("setBit", [](BigInteger& value) { value.setBit(5000); });
    rows.push_back(row(
        "BigInteger, divide",
        [] {
            return Division{large(), BigInteger(1)};
        },
        [](Division& it) { it.value.divide(powerOf(5, 90), it.remainder); }));
    static const String s_digits(u'7', 300);
    rows.push_back(product("BigInteger of text", [] { return BigInteger(s_digits, 10); }));
    rows.push_back(product("BigInteger, toString", [] { return large().toString(); }));
    rows.push_back(product("huge BigInteger, toString", [] { return huge().toString(); }));
}

void addDecimals(std::vector<Row>& rows)
{
    const auto edit = [&](const char* name, auto apply) {
        const auto make = [] { return BigDecimal(large(), 40); };
        rows.push_back(row(std::string("BigDecimal, ") + name, make, apply));
    };
    edit("assign", [](BigDecimal& value) { value = BigDecimal(huge(), 3); });
    edit("add", [](BigDecimal& value) { value.add(BigDecimal(large(), 90)); });
    edit("subtract", [](BigDecimal& value) { value.subtract(BigDecimal(huge(), 2)); });
    edit("multiply", [](BigDecimal& value) { value.multiply(BigDecimal(large(), 2)); });
    edit("divide", [](BigDecimal& value) { value.divide(BigDecimal(powerOf(5, 90), 2), 70); });
    edit("setScale up", [](BigDecimal& value) { value.setScale(300); });
    static const String s_text(u"-1234567890123456789012345678901234567890.0012345678901234567");
    rows.push_back(product("BigDecimal of text", [] { return BigDecimal(s_text); }));
    rows.push_back(
        product("BigDecimal, toString", [] { return BigDecimal(large(), 40).toString(); }));
}

} // namespace

std::vector<Row> numberRows()
{
    std::vector<Row> rows;
    addIntegers(rows);
    addDecimals(rows);
    return rows;
}

} // namespace orv::test
