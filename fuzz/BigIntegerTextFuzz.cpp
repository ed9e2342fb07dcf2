#include "orv/Exception.h"
#include "orv/String.h"
#include "orv/math/BigInteger.h"
#include "platform/orvcore.h"

#include "fuzz/judges/PlainNumber.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// \file
/// Numbers as text, in the radix of the first byte, judged by reading group by group into a plain
/// number. What is read must print as digits that stand for it, and these must read as it again.

namespace {

using orv::String;
using orv::math::BigInteger;
using orv::math::PlainNumber;

void require(bool holds)
{
    if (!holds) std::abort();
}

PlainNumber groupOf(const std::u16string& text, std::size_t start, std::size_t count, int radix)
{
    const std::u16string group = text.substr(start, count);
    const std::int32_t value = ORVStrToLW(group.c_str(), nullptr, radix);
    PlainNumber result = PlainNumber::of(static_cast<std::uint32_t>(std::abs(value)));
    result.negative = value < 0;
    return result;
}

/// False where the text is refused.
bool readPlainly(const std::u16string& text, int radix, PlainNumber& number)
{
    const std::size_t minus = text.find(u'-');
    if (minus != std::u16string::npos && minus != 0) return false;
    std::size_t start = minus == 0 ? 1 : 0;
    while (start < text.size() && text[start] == u'0') ++start;
    if (start == text.size()) return false;

    const std::size_t count = text.size() - start;
    if (radix >= 2 && radix <= 36) {
        number = groupOf(text, start, count % 3, radix);
        for (std::size_t place = start + count % 3; place < count; place += 3) {
            number.multiply(PlainNumber::of(static_cast<std::uint32_t>(radix * radix * radix)));
            number.add(groupOf(text, place, 3, radix));
        }
    }
    number.negative = minus == 0;
    return true;
}

PlainNumber plain(const BigInteger& number)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(number.getData());
    return {number.isNegative(), {bytes, bytes + number.getSize()}};
}

void checkPrinting(const BigInteger& number, int radix)
{
    const String text = number.toString(radix);
    if (number.isZero()) {
        require(text.equals(u"0"));
        return;
    }
    const std::u16string units(text.getData(), static_cast<std::size_t>(text.getLength()));
    require(PlainNumber::read(std::string(units.begin(), units.end()),
                              static_cast<unsigned>(radix)) == plain(number));
    require(BigInteger(text, radix).compareTo(number) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 2000) return -1;
    const int radix = data[0] % 40;
    const std::u16string units(data + 1, data + size);
    const String text(units.data(), static_cast<std::int32_t>(units.size()));
    PlainNumber expected;
    const bool readable = readPlainly(units, radix, expected);
    try {
        const BigInteger number(text, radix);
        require(readable);
        require(plain(number) == expected);
        checkPrinting(number, radix >= 2 && radix <= 36 ? radix : 10);
    } catch (const orv::Exception& exception) {
        require(!readable);
        require(exception.getDescription().equals(u"Number Format Exception"));
    }
    return 0;
}
