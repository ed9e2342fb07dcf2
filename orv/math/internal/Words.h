#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

/// \file
/// Arithmetic on magnitudes: arrays of 64-bit words, the least significant first. Callers provide
/// all room; counts are numbers of words and, unless told otherwise, may be 0.

namespace orv::math::internal {

using Word = std::uint64_t;
__extension__ typedef unsigned __int128 WideWord;

constexpr std::size_t BYTES_PER_WORD = sizeof(Word);
constexpr std::int32_t BITS_PER_WORD = 64;

/// The place of the highest bit set, counted from 1; 0 for 0.
constexpr std::int32_t bitLength(Word value) noexcept
{
    return BITS_PER_WORD - std::countl_zero(value);
}

constexpr Word highWord(WideWord value) noexcept
{
    return static_cast<Word>(value >> BITS_PER_WORD);
}

constexpr WideWord wideWord(Word high, Word low) noexcept
{
    return WideWord{high} << BITS_PER_WORD | low;
}

/// a + b + carry; `carry`, 0 or 1, becomes the one that goes out.
constexpr Word addWithCarry(Word a, Word b, Word& carry) noexcept
{
    const Word sum = a + b;
    const Word result = sum + carry;
    carry = static_cast<Word>(sum < a) | static_cast<Word>(result < sum);
    return result;
}

/// `count` without the zero words at the top.
constexpr std::size_t significantWords(const Word* words, std::size_t count) noexcept
{
    while (count > 0 && words[count - 1] == 0) --count;
    return count;
}

/// -1, 0 or 1 as `a` is less than, equal to or greater than `b`, both of `count` words.
constexpr int compareWords(const Word* a, const Word* b, std::size_t count) noexcept
{
    while (count-- > 0) {
        if (a[count] != b[count]) return a[count] < b[count] ? -1 : 1;
    }
    return 0;
}

/// target += addend, with `count` not above `targetCount`; returns the carry out of the target.
constexpr Word addInto(Word* target, std::size_t targetCount, const Word* addend,
                       std::size_t count) noexcept
{
    WideWord sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        sum += target[i];
        sum += addend[i];
        target[i] = static_cast<Word>(sum);
        sum >>= BITS_PER_WORD;
    }
    Word carry = static_cast<Word>(sum);
    for (std::size_t i = count; carry != 0 && i < targetCount; ++i) carry = ++target[i] == 0;
    return carry;
}

/// target = minuend - target, both of `count` words; returns the borrow.
constexpr Word subtractFromOther(Word* target, const Word* minuend, std::size_t count) noexcept
{
    Word borrow = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const WideWord difference = WideWord{minuend[i]} - target[i] - borrow;
        target[i] = static_cast<Word>(difference);
        borrow = highWord(difference) & 1;
    }
    return borrow;
}

/// target -= subtrahend, with `count` not above `targetCount`; returns the borrow.
constexpr Word subtractFrom(Word* target, std::size_t targetCount, const Word* subtrahend,
                            std::size_t count) noexcept
{
    Word borrow = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const WideWord difference = WideWord{target[i]} - subtrahend[i] - borrow;
        target[i] = static_cast<Word>(difference);
        borrow = highWord(difference) & 1;
    }
    for (std::size_t i = count; borrow != 0 && i < targetCount; ++i) borrow = target[i]-- == 0;
    return borrow;
}

/// words = words * factor + addend; returns the word that goes out at the top.
constexpr Word scale(Word* words, std::size_t count, Word factor, Word addend) noexcept
{
    for (std::size_t i = 0; i < count; ++i) {
        const WideWord product = WideWord{words[i]} * factor + addend;
        words[i] = static_cast<Word>(product);
        addend = highWord(product);
    }
    return addend;
}

/// A divisor of one word, prepared for many divisions: T. Moeller and T. Granlund, "Improved
/// division by invariant integers", IEEE Transactions on Computers 60 (2011).
class WordDivisor {
public:
    /// `divisor` is not 0.
    constexpr explicit WordDivisor(Word divisor) noexcept
        : m_shift(std::countl_zero(divisor)), m_divisor(divisor << m_shift),
          m_inverse(static_cast<Word>(wideWord(~m_divisor, ~Word{0}) / m_divisor))
    {
    }

    /// The places that the divisor was moved to the left to bring its top bit to the top.
    constexpr int shift() const noexcept { return m_shift; }

    /// The quotient of the moved divisor into high:low, where `high` is less than it; `high`
    /// becomes the remainder.
    constexpr Word divide(Word& high, Word low) const noexcept
    {
        const WideWord estimate = WideWord{m_inverse} * high + wideWord(high, low);
        Word quotient = highWord(estimate) + 1;
        Word remainder = low - quotient * m_divisor;
        if (remainder > static_cast<Word>(estimate)) {
            --quotient;
            remainder += m_divisor;
        }
        if (remainder >= m_divisor) {
            ++quotient;
            remainder -= m_divisor;
        }
        high = remainder;
        return quotient;
    }

    /// words = words / divisor; returns the remainder.
    constexpr Word divideWords(Word* words, std::size_t count) const noexcept
    {
        if (count == 0) return 0;
        Word rest = m_shift == 0 ? 0 : words[count - 1] >> (BITS_PER_WORD - m_shift);
        for (std::size_t i = count; i-- > 0;) {
            const Word below = i == 0 ? 0 : words[i - 1];
            words[i] = divide(rest, joined(words[i], below));
        }
        return rest >> m_shift;
    }

private:
    constexpr Word joined(Word word, Word below) const noexcept
    {
        return m_shift == 0 ? word : word << m_shift | below >> (BITS_PER_WORD - m_shift);
    }

    int m_shift;
    Word m_divisor;
    Word m_inverse;
};

/// Words of room that multiply() wants for itself.
std::size_t multiplyScratch(std::size_t aCount, std::size_t bCount) noexcept;

/// product = a * b, in aCount + bCount words that overlap neither. Neither count is 0. `scratch`
/// has multiplyScratch() words.
void multiply(Word* product, const Word* a, std::size_t aCount, const Word* b, std::size_t bCount,
              Word* scratch) noexcept;

/// target = words << bits, for 0 to 63 bits; `target` may be `words` or lie above it. Returns what
/// goes out at the top.
Word shiftLeft(Word* target, const Word* words, std::size_t count, int bits) noexcept;

/// target = words >> bits, for 0 to 63 bits; `target` may be `words` or lie below it.
void shiftRight(Word* target, const Word* words, std::size_t count, int bits) noexcept;

/// Divides by `divisor`, whose top bit is set and which has two words or more. `dividend` has
/// `count` words, at least as many as the divisor, and the divisor is greater than its top words
/// taken as a number; it becomes the remainder. `quotient` gets count - divisorCount words.
void divideNormalised(Word* quotient, Word* dividend, std::size_t count, const Word* divisor,
                      std::size_t divisorCount) noexcept;

} // namespace orv::math::internal
