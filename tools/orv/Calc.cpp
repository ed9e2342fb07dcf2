#include "tools/orv/Command.h"

#include "orv/Exceptions.h"
#include "orv/math/BigDecimal.h"
#include "orv/math/BigInteger.h"

#include <algorithm>

namespace tool {
namespace {

using orv::String;
using orv::io::PrintWriter;
using orv::math::BigDecimal;
using orv::math::BigInteger;

constexpr std::int32_t MOST_DECIMALS = 100'000;

[[noreturn]] void notANumber(const char16_t* option, const String& text)
{
    throw UsageError{String(u"-") + option + u"=" + text + u" is not a number"};
}

/// Digits of `text` behind its sign, without the zeros that lead.
struct Digits {
    String text;
    bool negative = false;
    std::int32_t scale = -1; ///< digits behind the point, -1 without one
};

bool isDigit(char16_t unit, std::int32_t radix)
{
    const char16_t lower = ORVToLowerW(unit);
    const std::int32_t value = lower >= u'0' && lower <= u'9'   ? lower - u'0'
                               : lower >= u'a' && lower <= u'z' ? lower - u'a' + 10
                                                                : radix;
    return value < radix;
}

/// Reads what the classes themselves take without looking: BigInteger stops silently at what is
/// no digit, takes no zero, and miscounts zeros that lead.
Digits readDigits(const Arguments& arguments, const char16_t* option, std::int32_t radix)
{
    const String text = arguments.text(option);
    Digits digits;
    digits.negative = text.startsWith(u"-");
    String rest = text.substring(digits.negative || text.startsWith(u"+") ? 1 : 0, -1);
    const std::int32_t point = rest.indexOf(u'.');
    if (point >= 0) {
        rest.remove(point, 1);
        digits.scale = rest.getLength() - point;
    }
    if (rest.getLength() == 0) notANumber(option, text);
    for (std::int32_t i = 0; i < rest.getLength(); ++i) {
        if (!isDigit(rest[i], radix)) notANumber(option, text);
    }
    const std::int32_t first = rest.findFirstNotOf(u"0", 1);
    digits.text = first < 0 ? String() : rest.substring(first, -1);
    return digits;
}

BigInteger toInteger(const Digits& digits, std::int32_t radix)
{
    if (digits.text.getLength() == 0) return BigInteger();
    BigInteger value(digits.text, radix);
    if (digits.negative) value.negate();
    return value;
}

/// The operands and settings of one calculation.
struct Operands {
    const Arguments& arguments;
    std::int32_t radix;

    BigInteger integer(const char16_t* option) const
    {
        const Digits digits = readDigits(arguments, option, radix);
        if (digits.scale >= 0) throw UsageError{String(u"-") + option + u" must be a whole number"};
        return toInteger(digits, radix);
    }

    std::int32_t exponent() const { return arguments.number(u"b", INT32_MIN, INT32_MAX); }
};

using IntegerOperation = void (*)(const Operands&, PrintWriter&);

template <void (BigInteger::*operation)(const BigInteger&)>
void binary(const Operands& operands, PrintWriter& out)
{
    BigInteger value = operands.integer(u"a");
    (value.*operation)(operands.integer(u"b"));
    out.println(value.toString(operands.radix));
}

void divideIntegers(const Operands& operands, PrintWriter& out)
{
    BigInteger quotient = operands.integer(u"a");
    BigInteger remainder;
    quotient.divide(operands.integer(u"b"), remainder);
    out.println(quotient.toString(operands.radix));
    out.println(remainder.toString(operands.radix));
}

void modInverse(const Operands& operands, PrintWriter& out)
{
    BigInteger value = operands.integer(u"a");
    value.modInverse(operands.integer(u"m"));
    out.println(value.toString(operands.radix));
}

void power(const Operands& operands, PrintWriter& out)
{
    BigInteger value = operands.integer(u"a");
    value.pow(operands.exponent());
    out.println(value.toString(operands.radix));
}

void modPower(const Operands& operands, PrintWriter& out)
{
    BigInteger value = operands.integer(u"a");
    value.modPow(operands.exponent(), operands.integer(u"m"));
    out.println(value.toString(operands.radix));
}

struct IntegerRow {
    const char16_t* name;
    IntegerOperation run;
};

constexpr IntegerRow integerRows[] = {
    {u"add", &binary<&BigInteger::add>},
    {u"subtract", &binary<&BigInteger::subtract>},
    {u"multiply", &binary<&BigInteger::multiply>},
    {u"divide", &divideIntegers},
    {u"mod", &binary<&BigInteger::mod>},
    {u"gcd", &binary<&BigInteger::gcd>},
    {u"modinverse", &modInverse},
    {u"pow", &power},
    {u"modpow", &modPower},
};

BigDecimal decimal(const Arguments& arguments, const char16_t* option)
{
    const Digits digits = readDigits(arguments, option, 10);
    return {toInteger(digits, 10), std::max(digits.scale, 0)};
}

void calculateDecimals(const String& operation, const Arguments& arguments, PrintWriter& out)
{
    if (arguments.has(u"radix")) throw UsageError{u"-radix goes with whole numbers only"};
    BigDecimal a = decimal(arguments, u"a");
    BigDecimal b = decimal(arguments, u"b");
    const bool hasScale = arguments.has(u"scale");
    const std::int32_t scale = hasScale ? arguments.number(u"scale", 0, MOST_DECIMALS) : 0;

    if (operation == u"add" || operation == u"subtract") {
        const std::int32_t common = std::max(a.getScale(), b.getScale());
        a.setScale(common);
        b.setScale(common);
        if (operation == u"add") {
            a.add(b);
        } else {
            a.subtract(b);
        }
    } else if (operation == u"multiply") {
        a.multiply(b);
    } else if (operation == u"divide") {
        a.divide(b, hasScale ? scale : std::max(a.getScale(), b.getScale()));
    } else {
        throw UsageError{operation + u" takes whole numbers only"};
    }
    if (hasScale) a.setScale(scale);
    out.println(a.toString());
}

bool wantsDecimals(const Arguments& arguments)
{
    if (arguments.has(u"scale")) return true;
    return arguments.text(u"a").indexOf(u'.') >= 0 ||
           (arguments.has(u"b") && arguments.text(u"b").indexOf(u'.') >= 0);
}

void runCalc(const Arguments& arguments, PrintWriter& out)
{
    const String operation = arguments.word(0, u"the operation");
    const auto row = std::find_if(std::begin(integerRows), std::end(integerRows),
                                  [&](const IntegerRow& each) { return operation == each.name; });
    if (row == std::end(integerRows))
        throw UsageError{u"there is no operation \"" + operation + u"\""};
    if (wantsDecimals(arguments)) return calculateDecimals(operation, arguments, out);

    const std::int32_t radix = arguments.has(u"radix") ? arguments.number(u"radix", 2, 36) : 10;
    row->run(Operands{arguments, radix}, out);
}

constexpr const char16_t* options[] = {u"a", u"b", u"m", u"radix", u"scale"};

} // namespace

const Command calc = {
    u"calc",
    u"arithmetic on numbers of any size",
    u" OPERATION -a=N -b=N [-m=N] [-radix=R] [-scale=S]\n\n"
    u"Operations: add, subtract, multiply, divide (quotient and remainder on two lines), mod, "
    u"gcd,\n"
    u"modinverse (-a, -m), pow (-b is the exponent), modpow (-b, -m). The results are those of\n"
    u"BigInteger, or of BigDecimal when a number has a point or -scale is given; see there for "
    u"the\n"
    u"edges where they differ from the usual ones.\n\n"
    u"  -radix  2 to 36, of whole numbers read and printed\n"
    u"  -scale  decimal places of the result",
    options,
    1,
    &runCalc};

} // namespace tool
