#include "platform/orvcore.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include <locale.h>

namespace {

bool isBlank(char16_t unit) noexcept
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

bool isDecimal(char16_t unit) noexcept
{
    return unit >= u'0' && unit <= u'9';
}

// The value of a digit, 36 for what is none.
std::uint32_t digitOf(char16_t unit) noexcept
{
    if (isDecimal(unit)) return unit - std::uint32_t{u'0'};
    const std::uint32_t letter = unit | 0x20u;
    return letter >= u'a' && letter <= u'z' ? letter - u'a' + 10 : 36;
}

struct Integer {
    std::uint32_t magnitude = 0; ///< clamped to 32 bits
    bool overflow = false;
    bool negative = false;
};

bool hasHexPrefix(const char16_t* place) noexcept
{
    return place[0] == u'0' && (place[1] | 0x20) == u'x' && digitOf(place[2]) < 16;
}

const char16_t* readDigits(const char16_t* place, std::uint32_t radix, Integer& out) noexcept
{
    for (std::uint32_t digit; (digit = digitOf(*place)) < radix; ++place) {
        const std::uint64_t value = std::uint64_t{out.magnitude} * radix + digit;
        out.overflow = out.overflow || value > std::numeric_limits<std::uint32_t>::max();
        out.magnitude = static_cast<std::uint32_t>(value);
    }
    if (out.overflow) out.magnitude = std::numeric_limits<std::uint32_t>::max();
    return place;
}

Integer readInteger(const char16_t* text, const char16_t** end, std::int32_t radix) noexcept
{
    Integer result;
    if (end != nullptr) *end = text;
    if (radix < 0 || radix == 1 || radix > 36) return result;

    const char16_t* place = text;
    while (isBlank(*place)) ++place;
    if (*place == u'-' || *place == u'+') result.negative = *place++ == u'-';

    if ((radix == 0 || radix == 16) && hasHexPrefix(place)) {
        radix = 16;
        place += 2;
    }
    if (radix == 0) radix = *place == u'0' ? 8 : 10;

    const char16_t* behind = readDigits(place, static_cast<std::uint32_t>(radix), result);
    if (end != nullptr && behind != place) *end = behind;
    return result;
}

const char16_t* skipDigits(const char16_t* place, std::uint32_t radix) noexcept
{
    while (digitOf(*place) < radix) ++place;
    return place;
}

// The end of what may be a floating-point number: the grammar of strtod, taken generously.
const char16_t* endOfNumber(const char16_t* place) noexcept
{
    if (*place == u'-' || *place == u'+') ++place;

    std::uint32_t radix = 10;
    char16_t exponent = u'e';
    if (place[0] == u'0' && (place[1] | 0x20) == u'x') {
        radix = 16;
        exponent = u'p';
        place += 2;
    } else if (!isDecimal(*place) && *place != u'.') {
        constexpr int longestWord = 64; // "infinity", or "nan" with its payload
        for (int i = 0; i < longestWord; ++i, ++place) {
            if (digitOf(*place) == 36 && *place != u'(' && *place != u')') break;
        }
        return place;
    }

    place = skipDigits(place, radix);
    if (*place == u'.') place = skipDigits(place + 1, radix);
    if ((*place | 0x20) != exponent) return place;
    ++place;
    if (*place == u'-' || *place == u'+') ++place;
    return skipDigits(place, 10);
}

// The "C" numeric locale; made once, for the life of the process.
locale_t plainLocale() noexcept
{
    static const locale_t s_locale = newlocale(LC_ALL_MASK, "C", locale_t{});
    return s_locale;
}

double readDouble(const char* bytes, char** end) noexcept
{
    const locale_t locale = plainLocale();
    return locale == locale_t{} ? std::strtod(bytes, end) : strtod_l(bytes, end, locale);
}

template <class Unit>
void printInteger(std::int32_t value, Unit* buffer, std::int32_t radix) noexcept
{
    if (radix < 2 || radix > 36) {
        *buffer = 0;
        return;
    }
    auto rest = static_cast<std::uint32_t>(value);
    if (radix == 10 && value < 0) {
        *buffer++ = '-';
        rest = 0u - rest;
    }

    char digits[32];
    int count = 0;
    const auto base = static_cast<std::uint32_t>(radix);
    do {
        digits[count++] = "0123456789abcdefghijklmnopqrstuvwxyz"[rest % base];
        rest /= base;
    } while (rest != 0);
    while (count > 0) *buffer++ = static_cast<Unit>(digits[--count]);
    *buffer = 0;
}

} // namespace

std::int32_t ORVStrToIW(const char16_t* text) noexcept
{
    return ORVStrToLW(text, nullptr, 10);
}

std::int32_t ORVStrToLW(const char16_t* text, const char16_t** end, std::int32_t radix) noexcept
{
    const Integer read = readInteger(text, end, radix);
    constexpr std::uint32_t mostPositive = std::numeric_limits<std::int32_t>::max();
    if (!read.negative) return static_cast<std::int32_t>(std::min(read.magnitude, mostPositive));
    return static_cast<std::int32_t>(0u - std::min(read.magnitude, mostPositive + 1));
}

std::uint32_t ORVStrToULW(const char16_t* text, const char16_t** end, std::int32_t radix) noexcept
{
    const Integer read = readInteger(text, end, radix);
    return read.negative && !read.overflow ? 0u - read.magnitude : read.magnitude;
}

double ORVStrToDW(const char16_t* text, const char16_t** end) noexcept
{
    if (end != nullptr) *end = text;
    const char16_t* start = text;
    while (isBlank(*start)) ++start;
    const auto length = static_cast<std::size_t>(endOfNumber(start) - start);
    if (length == 0) return 0.0;

    char shortNumber[128];
    char* bytes = shortNumber;
    if (length >= sizeof shortNumber) bytes = static_cast<char*>(std::malloc(length + 1));
    if (bytes == nullptr) return 0.0;
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(start[i]);
    bytes[length] = 0;

    char* behind = bytes;
    const double value = readDouble(bytes, &behind);
    if (end != nullptr && behind != bytes) *end = start + (behind - bytes);
    if (bytes != shortNumber) std::free(bytes);
    return value;
}

void ORVLToStrW(std::int32_t value, char16_t* buffer, std::int32_t radix) noexcept
{
    printInteger(value, buffer, radix);
}

void ORVLToStrA(std::int32_t value, char* buffer, std::int32_t radix) noexcept
{
    printInteger(value, buffer, radix);
}
