#include "orv/math/internal/Digits.h"

#include "orv/String.h"
#include "orv/math/internal/Scratch.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

namespace orv::math::internal {

namespace {

constexpr std::int32_t MAX_RADIX = 36;

constexpr auto WORD_RADICES = [] {
    std::array<WordRadix, MAX_RADIX + 1> table{};
    for (std::int32_t radix = 2; radix <= MAX_RADIX; ++radix) {
        table[static_cast<std::size_t>(radix)] = wordRadixOf(radix);
    }
    return table;
}();

/// "00" to "99".
constexpr auto PAIRS = [] {
    std::array<char16_t, 200> table{};
    for (std::size_t i = 0; i < 100; ++i) {
        table[2 * i] = static_cast<char16_t>(u'0' + i / 10);
        table[2 * i + 1] = static_cast<char16_t>(u'0' + i % 10);
    }
    return table;
}();

constexpr std::uint32_t digitOf(char16_t unit) noexcept
{
    if (unit >= u'0' && unit <= u'9') return unit - std::uint32_t{u'0'};
    const std::uint32_t letter = unit | 0x20u;
    return letter >= u'a' && letter <= u'z' ? letter - u'a' + 10 : MAX_RADIX;
}

/// Reads four decimal digits in one go, a unit in each 16 bits; false if there is anything else.
bool readFour(const char16_t* text, Word& value) noexcept
{
    constexpr Word each = 0x0001000100010001;
    Word units;
    std::memcpy(&units, text, sizeof units);
    const Word digits = units - each * u'0';
    if (((digits | (units + each * (0x7F - u'9'))) & each * 0xFF80) != 0) return false;
    constexpr Word places = Word{1000} << 48 | Word{100} << 32 | Word{10} << 16 | 1;
    value = digits * places >> 48;
    return true;
}

bool readDecimal(const char16_t* text, std::int32_t count, Word& value) noexcept
{
    Word result = 0;
    for (; count >= 4; count -= 4, text += 4) {
        Word four;
        if (!readFour(text, four)) return false;
        result = result * 10000 + four;
    }
    for (; count > 0; --count, ++text) {
        const Word digit = *text - Word{u'0'};
        if (digit > 9) return false;
        result = result * 10 + digit;
    }
    value = result;
    return true;
}

void printPair(std::uint32_t value, char16_t* begin) noexcept
{
    std::copy_n(&PAIRS[std::size_t{2} * value], 2, begin);
}

void printEight(std::uint32_t value, char16_t* begin) noexcept
{
    const std::uint32_t high = value / 10000;
    const std::uint32_t low = value % 10000;
    printPair(high / 100, begin);
    printPair(high % 100, begin + 2);
    printPair(low / 100, begin + 4);
    printPair(low % 100, begin + 6);
}

char16_t* printDecimal(Word value, char16_t* end) noexcept
{
    constexpr Word eightDigits = 100'000'000;
    for (; value >= eightDigits; value /= eightDigits) {
        end -= 8;
        printEight(static_cast<std::uint32_t>(value % eightDigits), end);
    }
    auto rest = static_cast<std::uint32_t>(value);
    for (; rest >= 100; rest /= 100) {
        end -= 2;
        printPair(rest % 100, end);
    }
    if (rest >= 10) {
        printPair(rest, end - 2);
        return end - 2;
    }
    *--end = static_cast<char16_t>(u'0' + rest);
    return end;
}

/// Writes the digits of `value`, at least one, so that they end before `end`; returns the first.
char16_t* printWord(Word value, char16_t* end, std::uint32_t radix) noexcept
{
    if (radix == 10) return printDecimal(value, end);
    do {
        *--end = u"0123456789abcdefghijklmnopqrstuvwxyz"[value % radix];
        value /= radix;
    } while (value != 0);
    return end;
}

/// Prints a magnitude of several words: halves it by powers of the radix as long as that pays, then
/// takes off a word's digits at a time. A part is a word's digits; each half has a fixed number of
/// parts, so that its leading zeros are printed too.
class Printer {
public:
    Printer(std::size_t count, std::int32_t radix) noexcept
        : m_radix(static_cast<std::uint32_t>(radix)),
          m_word(WORD_RADICES[static_cast<std::size_t>(radix)]), m_divisor(m_word.power)
    {
        const auto safeBits = static_cast<std::size_t>(bitLength(m_word.power) - 1);
        const std::size_t parts = count * BITS_PER_WORD / safeBits + 1;
        while (parts > LEAF_PARTS << m_levels) ++m_levels;
        m_leafParts = (parts + (std::size_t{1} << m_levels) - 1) >> m_levels;
    }

    /// The digits printed, leading zeros included.
    std::size_t width() const noexcept { return widthOf(m_levels); }

    /// Words of room that print() wants for numbers of `count` words.
    std::size_t scratch(std::size_t count) const noexcept
    {
        return m_levels == 0 ? 0 : 8 * count + 256 + multiplyScratch(count, count);
    }

    /// Writes the width() digits of `words`, which it destroys.
    void print(Word* words, std::size_t count, char16_t* digits, Word* scratch) noexcept
    {
        if (m_levels > 0) scratch = raise(scratch);
        printHalves(words, count, m_levels, digits, scratch);
    }

private:
    static constexpr std::size_t LEAF_PARTS = 12;
    static constexpr int MAX_LEVELS = 32;

    /// A power of the radix, moved to the left until its top bit is set.
    struct Power {
        Word* words;
        std::size_t count;
        int shift;
    };

    std::size_t widthOf(int level) const noexcept
    {
        return (m_leafParts << level) * static_cast<std::size_t>(m_word.digits);
    }

    /// Builds the powers that separate the halves; returns what is left of the room.
    Word* raise(Word* scratch) noexcept
    {
        Word* first = scratch;
        std::size_t count = 1;
        first[0] = m_word.power;
        for (std::size_t i = 1; i < m_leafParts; ++i) {
            const Word top = scale(first, count, m_word.power, 0);
            if (top != 0) first[count++] = top;
        }
        m_powers[0] = {first, count, 0};
        for (int level = 1; level < m_levels; ++level) {
            const Power& root = m_powers[level - 1];
            Word* const square = root.words + root.count;
            multiply(square, root.words, root.count, root.words, root.count,
                     square + 2 * root.count);
            m_powers[level] = {square, significantWords(square, 2 * root.count), 0};
        }
        for (int level = 0; level < m_levels; ++level) {
            Power& power = m_powers[level];
            power.shift = std::countl_zero(power.words[power.count - 1]);
            shiftLeft(power.words, power.words, power.count, power.shift);
        }
        const Power& last = m_powers[m_levels - 1];
        return last.words + last.count;
    }

    void printHalves(Word* words, std::size_t count, int level, char16_t* digits,
                     Word* scratch) noexcept
    {
        count = significantWords(words, count);
        if (level == 0) {
            printParts(words, count, digits);
            return;
        }
        const Power& power = m_powers[level - 1];
        char16_t* const lowDigits = digits + widthOf(level - 1);
        if (count < power.count) {
            std::fill(digits, lowDigits, u'0');
            printHalves(words, count, level - 1, lowDigits, scratch);
            return;
        }
        Word* const rest = scratch;
        Word* const quotient = rest + count + 1;
        const std::size_t quotientCount = count + 1 - power.count;
        Word* const below = quotient + quotientCount;
        rest[count] = shiftLeft(rest, words, count, power.shift);
        divideNormalised(quotient, rest, count + 1, power.words, power.count);
        shiftRight(rest, rest, power.count, power.shift);
        printHalves(quotient, quotientCount, level - 1, digits, below);
        printHalves(rest, power.count, level - 1, lowDigits, below);
    }

    void printParts(Word* words, std::size_t count, char16_t* digits) const noexcept
    {
        char16_t* end = digits + widthOf(0);
        while (count > 0) {
            const Word part = count == 1 && words[0] < m_word.power
                                  ? std::exchange(words[0], 0)
                                  : m_divisor.divideWords(words, count);
            count = significantWords(words, count);
            char16_t* const begin = end - m_word.digits;
            std::fill(begin, printWord(part, end, m_radix), u'0');
            end = begin;
        }
        std::fill(digits, end, u'0');
    }

    std::uint32_t m_radix;
    WordRadix m_word;
    WordDivisor m_divisor;
    int m_levels = 0;
    std::size_t m_leafParts;
    std::array<Power, MAX_LEVELS> m_powers;
};

std::int32_t lengthOf(const char16_t* begin, const char16_t* end)
{
    if (end - begin > std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();
    return static_cast<std::int32_t>(end - begin);
}

} // namespace

DigitReader::DigitReader(std::int32_t radix) noexcept
    : m_radix(radix), m_word(WORD_RADICES[static_cast<std::size_t>(radix)])
{
}

bool DigitReader::areDigits(const char16_t* text, std::int32_t count) const noexcept
{
    return std::all_of(text, text + count, [this](char16_t unit) {
        return digitOf(unit) < static_cast<std::uint32_t>(m_radix);
    });
}

bool DigitReader::read(const char16_t* text, std::int32_t count, Word& value) const noexcept
{
    if (m_radix == 10) return readDecimal(text, count, value);
    const auto radix = static_cast<std::uint32_t>(m_radix);
    Word result = 0;
    for (; count > 0; --count, ++text) {
        const std::uint32_t digit = digitOf(*text);
        if (digit >= radix) return false;
        result = result * radix + digit;
    }
    value = result;
    return true;
}

String printed(const Word* words, std::size_t count, bool negative, std::int32_t radix)
{
    count = significantWords(words, count);
    if (count <= 1) {
        char16_t units[BITS_PER_WORD + 1];
        char16_t* const end = std::end(units);
        char16_t* begin =
            printWord(count == 0 ? 0 : words[0], end, static_cast<std::uint32_t>(radix));
        if (negative) *--begin = u'-';
        return String(begin, lengthOf(begin, end));
    }
    Printer printer(count, radix);
    const std::size_t width = printer.width();
    const std::size_t unitWords = (width + 1) * sizeof(char16_t) / BYTES_PER_WORD + 1;
    Scratch scratch(count + printer.scratch(count) + unitWords);
    Word* const copy = scratch.words();
    auto* const units = reinterpret_cast<char16_t*>(copy + count);
    std::copy_n(words, count, copy);
    printer.print(copy, count, units + 1, copy + count + unitWords);

    char16_t* const end = units + 1 + width;
    char16_t* begin = std::find_if(units + 1, end, [](char16_t unit) { return unit != u'0'; });
    if (negative) *--begin = u'-';
    return String(begin, lengthOf(begin, end));
}

} // namespace orv::math::internal
