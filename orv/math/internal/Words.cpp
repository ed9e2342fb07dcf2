#include "orv/math/internal/Words.h"

#include <algorithm>

namespace orv::math::internal {

namespace {

/// Below this many words the plain procedure is the faster one.
constexpr std::size_t SPLIT_LIMIT = 32;

/// target -= a * factor; returns the word that is still to be taken off above.
Word multiplySubtract(Word* target, const Word* a, std::size_t count, Word factor) noexcept
{
    // Adding to the complement gives the complement of the difference.
    Word carry = 0;
    const auto step = [&](std::size_t i) {
        const WideWord sum = WideWord{a[i]} * factor + ~target[i] + carry;
        target[i] = ~static_cast<Word>(sum);
        carry = highWord(sum);
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        step(i);
        step(i + 1);
        step(i + 2);
        step(i + 3);
    }
    for (; i < count; ++i) step(i);
    return carry;
}

/// Column by column: each word of the product is written once.
void multiplyPlain(Word* product, const Word* a, std::size_t aCount, const Word* b,
                   std::size_t bCount) noexcept
{
    Word low = 0;
    Word high = 0;
    for (std::size_t k = 0; k + 1 < aCount + bCount; ++k) {
        const std::size_t first = k < bCount ? 0 : k - bCount + 1;
        const std::size_t last = k < aCount ? k : aCount - 1;
        WideWord column = wideWord(high, low);
        Word top = 0; // of the column, above its two words
        for (std::size_t i = first; i <= last; ++i) {
            const WideWord term = WideWord{a[i]} * b[k - i];
            column += term;
            top += column < term;
        }
        product[k] = static_cast<Word>(column);
        low = highWord(column);
        high = top;
    }
    product[aCount + bCount - 1] = low;
}

/// target = |a - b|, for `a` of `count` words and `b` of at most as many; whether b was greater.
bool absoluteDifference(Word* target, const Word* a, std::size_t count, const Word* b,
                        std::size_t bCount) noexcept
{
    std::copy_n(a, count, target);
    if (subtractFrom(target, count, b, bCount) == 0) return false;
    Word carry = 1;
    for (std::size_t i = 0; i < count; ++i) target[i] = addWithCarry(~target[i], 0, carry);
    return true;
}

/// Karatsuba's product of two numbers of the same length: three products of half the length.
void multiplySplit(Word* product, const Word* a, const Word* b, std::size_t count,
                   Word* scratch) noexcept
{
    if (count < SPLIT_LIMIT) {
        multiplyPlain(product, a, count, b, count);
        return;
    }
    const std::size_t low = (count + 1) / 2;
    const std::size_t high = count - low;
    Word* const middle = scratch; // 2 * low words, below them the room of the halves
    Word* const below = scratch + 2 * low + 1;

    const bool aTurned = absoluteDifference(product, a, low, a + low, high);
    const bool bTurned = absoluteDifference(product + low, b, low, b + low, high);
    multiplySplit(middle, product, product + low, low, below);
    multiplySplit(product, a, b, low, below);
    multiplySplit(product + 2 * low, a + low, b + low, high, below);

    // The middle part is low + high - (a0 - a1) * (b0 - b1), taken together before it is added.
    Word* const sum = below;
    std::copy_n(product, 2 * low, sum);
    Word top = addInto(sum, 2 * low, product + 2 * low, 2 * high);
    if (aTurned == bTurned) {
        top -= subtractFrom(sum, 2 * low, middle, 2 * low);
    } else {
        top += addInto(sum, 2 * low, middle, 2 * low);
    }
    sum[2 * low] = top;
    const std::size_t room = 2 * count - low;
    addInto(product + low, room, sum, std::min(room, 2 * low + 1));
}

} // namespace

std::size_t multiplyScratch(std::size_t aCount, std::size_t bCount) noexcept
{
    const std::size_t shorter = std::min(aCount, bCount);
    if (shorter < SPLIT_LIMIT) return 0;
    // Twice the length and three words a level for factors of one length; pieces of unlike lengths
    // shrink as in Euclid's algorithm, so their sum stays below eight times the shorter length.
    return (aCount == bCount ? 2 * shorter : 10 * shorter) + 128;
}

void multiply(Word* product, const Word* a, std::size_t aCount, const Word* b, std::size_t bCount,
              Word* scratch) noexcept
{
    if (aCount < bCount) {
        std::swap(a, b);
        std::swap(aCount, bCount);
    }
    if (bCount < SPLIT_LIMIT) {
        multiplyPlain(product, a, aCount, b, bCount);
        return;
    }
    if (aCount == bCount) {
        multiplySplit(product, a, b, aCount, scratch);
        return;
    }

    // Pieces of the longer number, as long as the shorter one, each added in its place.
    Word* const piece = scratch;
    Word* const below = scratch + 2 * bCount;
    std::fill_n(product, aCount + bCount, Word{0});
    for (std::size_t i = 0; i < aCount; i += bCount) {
        const std::size_t length = std::min(bCount, aCount - i);
        multiply(piece, b, bCount, a + i, length, below);
        addInto(product + i, aCount + bCount - i, piece, bCount + length);
    }
}

Word shiftLeft(Word* target, const Word* words, std::size_t count, int bits) noexcept
{
    if (count == 0) return 0;
    if (bits == 0) {
        if (target != words) std::copy_backward(words, words + count, target + count);
        return 0;
    }
    const Word out = words[count - 1] >> (BITS_PER_WORD - bits);
    for (std::size_t i = count; i-- > 1;) {
        target[i] = words[i] << bits | words[i - 1] >> (BITS_PER_WORD - bits);
    }
    target[0] = words[0] << bits;
    return out;
}

void shiftRight(Word* target, const Word* words, std::size_t count, int bits) noexcept
{
    if (count == 0) return;
    if (bits == 0) {
        if (target != words) std::copy_n(words, count, target);
        return;
    }
    for (std::size_t i = 0; i + 1 < count; ++i) {
        target[i] = words[i] >> bits | words[i + 1] << (BITS_PER_WORD - bits);
    }
    target[count - 1] = words[count - 1] >> bits;
}

void divideNormalised(Word* quotient, Word* dividend, std::size_t count, const Word* divisor,
                      std::size_t divisorCount) noexcept
{
    const Word top = divisor[divisorCount - 1];
    const Word second = divisor[divisorCount - 2];
    const WordDivisor byTop(top);

    // D. Knuth, The Art of Computer Programming, volume 2, algorithm D.
    for (std::size_t j = count - divisorCount; j-- > 0;) {
        Word* const part = dividend + j;
        Word digit = ~Word{0};
        Word rest = part[divisorCount];
        bool restFits = true; // in a word; if not, the estimate cannot be too large
        if (rest < top) {
            digit = byTop.divide(rest, part[divisorCount - 1]);
        } else {
            rest = part[divisorCount - 1] + top;
            restFits = rest >= top;
        }
        while (restFits && WideWord{digit} * second > wideWord(rest, part[divisorCount - 2])) {
            --digit;
            rest += top;
            restFits = rest >= top;
        }
        const Word taken = multiplySubtract(part, divisor, divisorCount, digit);
        const bool tooMuch = part[divisorCount] < taken;
        part[divisorCount] -= taken;
        if (tooMuch) {
            --digit;
            part[divisorCount] += addInto(part, divisorCount, divisor, divisorCount);
        }
        quotient[j] = digit;
    }
}

} // namespace orv::math::internal
