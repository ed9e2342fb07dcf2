#pragma once

#include "orv/math/internal/Words.h"

namespace orv {
class String;
}

namespace orv::math::internal {

/// As many digits as always fit in a word, and the power of the radix that they count up to.
struct WordRadix {
    std::int32_t digits;
    Word power;
};

/// For a radix of 2 to 36.
constexpr WordRadix wordRadixOf(std::int32_t radix) noexcept
{
    WordRadix result{0, 1};
    const auto factor = static_cast<Word>(radix);
    while (result.power <= ~Word{0} / factor) {
        result.power *= factor;
        ++result.digits;
    }
    return result;
}

/// Reads digits of a radix of 2 to 36 into words.
class DigitReader {
public:
    explicit DigitReader(std::int32_t radix) noexcept;

    std::int32_t digitsPerWord() const noexcept { return m_word.digits; }
    Word wordRadix() const noexcept { return m_word.power; }

    bool areDigits(const char16_t* text, std::int32_t count) const noexcept;

    /// Reads at most digitsPerWord() digits into `value`; false if there is anything else.
    bool read(const char16_t* text, std::int32_t count, Word& value) const noexcept;

private:
    std::int32_t m_radix;
    WordRadix m_word;
};

/// The digits of a magnitude without zero words on top, in a radix of 2 to 36, with a "-" in front
/// if `negative`.
String printed(const Word* words, std::size_t count, bool negative, std::int32_t radix);

} // namespace orv::math::internal
