#include "Sweep.h"

#include "orv/Integers.h"
#include "orv/math/BigDecimal.h"
#include "orv/math/BigInteger.h"

#include <array>

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

struct Edit {
    const char* name;
    void (*apply)(BigInteger& value);
};

const std::array EDITS{
    Edit{"assign", [](BigInteger& value) { value = huge(); }},
    Edit{"add", [](BigInteger& value) { value.add(huge()); }},
    Edit{"multiply by itself", [](BigInteger& value) { value.multiply(value); }},
    Edit{"multiply by a huge one", [](BigInteger& value) { value.multiply(huge()); }},
    Edit{"mod", [](BigInteger& value) { value.mod(powerOf(5, 100)); }},
    Edit{"gcd", [](BigInteger& value) { value.gcd(powerOf(15, 80)); }},
    Edit{"modInverse", [](BigInteger& value) { value.modInverse(powerOf(5, 60)); }},
    Edit{"modPow", [](BigInteger& value) { value.modPow(77, powerOf(5, 100)); }},
    Edit{"setBit", [](BigInteger& value) { value.setBit(5000); }},
};

void addIntegers(std::vector<Row>& rows)
{
    for (const Edit& edit : EDITS) {
        rows.push_back(row(std::string("BigInteger, ") + edit.name, &large, edit.apply));
    }
    rows.push_back(row(
        "BigInteger, divide",
        [] {
            return Division{large(), BigInteger(1)};
        },
        [](Division& it) { it.value.divide(powerOf(5, 90), it.remainder); }));
    static const String s_digits(u'7', 300);
    static const std::vector<signed char> s_bytes(100, 5);
    rows.insert(
        rows.end(),
        {
            product("BigInteger of text", [] { return BigInteger(s_digits, 10); }),
            product("BigInteger of bytes", [] { return BigInteger(s_bytes.data(), 100, false); }),
            product("BigInteger, toString", [] { return large().toString(); }),
            product("huge BigInteger, toString", [] { return huge().toString(); }),
        });
}

BigDecimal decimal()
{
    return BigDecimal(large(), 40);
}

struct DecimalEdit {
    const char* name;
    void (*apply)(BigDecimal& value);
};

const std::array DECIMAL_EDITS{
    DecimalEdit{"assign", [](BigDecimal& value) { value = BigDecimal(huge(), 3); }},
    DecimalEdit{"add", [](BigDecimal& value) { value.add(BigDecimal(large(), 90)); }},
    DecimalEdit{"subtract", [](BigDecimal& value) { value.subtract(BigDecimal(huge(), 2)); }},
    DecimalEdit{"multiply", [](BigDecimal& value) { value.multiply(BigDecimal(large(), 2)); }},
    DecimalEdit{"divide",
                [](BigDecimal& value) { value.divide(BigDecimal(powerOf(5, 90), 2), 70); }},
    DecimalEdit{"setScale up", [](BigDecimal& value) { value.setScale(300); }},
};

void addDecimals(std::vector<Row>& rows)
{
    for (const DecimalEdit& edit : DECIMAL_EDITS) {
        rows.push_back(row(std::string("BigDecimal, ") + edit.name, &decimal, edit.apply));
    }
    static const String s_text(
        u"-1234567890123456789012345678901234567890.00123456789012345678901234567");
    rows.insert(
        rows.end(),
        {
            product("BigDecimal of text", [] { return BigDecimal(s_text); }),
            product("BigDecimal, toString", [] { return decimal().toString(); }),
            product("BigDecimal, compareTo",
                    [] { return decimal().compareTo(BigDecimal(large(), 90)); }),
            product("parseBigDecimal", [] { return Number::parseBigDecimal(s_text); }),
            product("Integer32 of text", [] { return Integer32(String(u"77")).toString(); }),
        });
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
