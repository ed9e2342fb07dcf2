#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/math/BigInteger.h"
#include "orv/math/internal/Digits.h"
#include "orv/math/internal/Scratch.h"

#include <algorithm>

namespace orv::math {

using namespace internal;

namespace {

/// Text is read in groups of this many units.
constexpr std::int32_t GROUP = 3;

constexpr bool isRadix(std::int32_t radix) noexcept
{
    return radix >= 2 && radix <= 36;
}

/// The number in the `length` units at `text`, at most a group of them.
std::int32_t readGroup(const char16_t* text, std::int32_t length, std::int32_t radix) noexcept
{
    char16_t group[GROUP + 1] = {};
    std::copy_n(text, length, group);
    return ORVStrToLW(group, nullptr, radix);
}

} // namespace

BigInteger::BigInteger(const String& text, std::int32_t radix) : BigInteger()
{
    parse(text.getData(), text.getLength(), radix);
}

void BigInteger::parse(const char16_t* text, std::int32_t length, std::int32_t radix)
{
    const bool negative = length > 0 && text[0] == u'-';
    std::int32_t start = negative ? 1 : 0;
    while (start < length && text[start] == u'0') ++start;

    const std::int32_t count = length - start;
    if (count < 1) throwException(u"Number Format Exception");
    // The groups behind the first one are counted off up to `count`, not up to the end.
    const std::int32_t first = count % GROUP;
    const std::int32_t groups = std::max(count / GROUP - start / GROUP, 0);
    if (!isRadix(radix) || !parseDigits(text + start, count, first + groups * GROUP, radix)) {
        if (!negative && std::find(text, text + length, u'-') != text + length) {
            throwException(u"Number Format Exception");
        }
        if (isRadix(radix)) parseGroups(text + start, first, groups, radix);
    }
    m_negative = negative;
}

/// Reads `first` units and `groups` groups behind them, whatever they are.
void BigInteger::parseGroups(const char16_t* text, std::int32_t first, std::int32_t groups,
                             std::int32_t radix)
{
    const BigInteger factor(radix * radix * radix);
    *this = readGroup(text, first, radix);
    for (std::int32_t i = 0; i < groups; ++i) {
        multiply(factor);
        add(readGroup(text + first + i * GROUP, GROUP, radix));
    }
}

/// Reads the first `used` of `count` digits; false if there is anything else among the `count`.
bool BigInteger::parseDigits(const char16_t* digits, std::int32_t count, std::int32_t used,
                             std::int32_t radix)
{
    const DigitReader reader(radix);
    if (used < count && !reader.areDigits(digits + used, count - used)) return false;

    const std::int32_t perWord = reader.digitsPerWord();
    reserveWords((static_cast<std::size_t>(used) + static_cast<std::size_t>(perWord) - 1) /
                 static_cast<std::size_t>(perWord));
    std::size_t words = 0;
    std::int32_t place = used % perWord;
    Word value = 0;
    if (place > 0) {
        if (!reader.read(digits, place, value)) return false;
        m_words[words++] = value;
    }
    for (; place < used; place += perWord) {
        if (!reader.read(digits + place, perWord, value)) return false;
        const Word top = scale(m_words, words, reader.wordRadix(), value);
        if (top != 0) m_words[words++] = top;
    }
    setWords(m_words, words, false);
    return true;
}

String BigInteger::toString(std::int32_t radix) const
{
    if (m_size == 0) return String(u"0", 1);
    if (!isRadix(radix)) throwException(u"Number Format Exception");
    if (hasPlainSize()) return printed(m_words, wordCount(), m_negative, radix);

    // The first group of digits is divided off by size, the rest is in order.
    BigInteger rest(*this);
    BigInteger group;
    rest.m_negative = false;
    rest.divide(radix * radix * radix, group);
    String text = printed(group.m_words, group.wordCount(), false, radix);
    if (!rest.isZero()) {
        text.insert(0, String(u'0', std::max(GROUP - text.getLength(), 0)));
        text.insert(0, printed(rest.m_words, rest.wordCount(), false, radix));
    }
    if (m_negative) text.insert(0, u"-");
    return text;
}

} // namespace orv::math
