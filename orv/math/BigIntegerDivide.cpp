#include "orv/Failure.h"
#include "orv/math/BigInteger.h"
#include "orv/math/internal/Scratch.h"

#include <algorithm>
#include <bit>

namespace orv::math {

using namespace internal;

void BigInteger::divide(const BigInteger& other, BigInteger& remainder)
{
    if (significantWords(other.m_words, other.wordCount()) == 0) throwException(u"Divide by zero.");
    if (hasPlainSize() && other.hasPlainSize()) {
        divideMagnitude(other, remainder);
    } else {
        divideBySize(other, remainder);
    }
}

/// Divides numbers whose bit counts are those of their values.
void BigInteger::divideMagnitude(const BigInteger& other, BigInteger& remainder)
{
    const bool negative = m_negative != other.m_negative;
    if (compareMagnitude(other) < 0) {
        remainder = *this;
        remainder.m_negative = false;
        clear();
        return;
    }
    const std::size_t count = significantWords(m_words, wordCount());
    const std::size_t divisorCount = significantWords(other.m_words, other.wordCount());
    if (count == 1) {
        const Word value = m_words[0];
        const Word divisor = other.m_words[0];
        remainder.setWord(value % divisor, false);
        setWord(value / divisor, negative);
        return;
    }
    if (divisorCount == 1) {
        const Word rest = WordDivisor(other.m_words[0]).divideWords(m_words, count);
        setWords(m_words, count, negative);
        if (&remainder != this) remainder.setWord(rest, false);
        return;
    }

    // The dividend with a word more, the divisor, the quotient.
    Scratch scratch(2 * count + 2);
    Word* const rest = scratch.words();
    Word* const divisor = rest + count + 1;
    Word* const quotient = divisor + divisorCount;
    const int shift = std::countl_zero(other.m_words[divisorCount - 1]);
    rest[count] = shiftLeft(rest, m_words, count, shift);
    shiftLeft(divisor, other.m_words, divisorCount, shift);
    divideNormalised(quotient, rest, count + 1, divisor, divisorCount);
    shiftRight(rest, rest, divisorCount, shift);

    remainder.reserveWords(divisorCount);
    remainder.setWords(rest, divisorCount, false);
    setWords(quotient, count + 1 - divisorCount, negative);
}

/// Long division by bit counts, for numbers with zero bytes on top. As long as a bit count claims
/// more than the value has, a step takes off more or less than it should.
void BigInteger::divideBySize(const BigInteger& other, BigInteger& remainder)
{
    const bool negative = m_negative != other.m_negative;
    BigInteger rest(*this);
    BigInteger divisor(other);
    rest.m_negative = false;
    divisor.m_negative = false;
    const bool plainDivisor = divisor.hasPlainSize();
    BigInteger quotient;
    if (rest.compareMagnitude(divisor) == 0) {
        rest.clear();
        quotient.setWord(1, false);
    }
    while (rest.compareMagnitude(divisor) >= 0) {
        if (!rest.hasPlainSize()) {
            rest.takeOffBySize(divisor, quotient);
        } else if (plainDivisor) {
            BigInteger last;
            rest.divideMagnitude(divisor, last);
            quotient.setSize(std::max(quotient.m_size, rest.m_size));
            for (std::size_t i = 0; i < rest.wordCount(); ++i) {
                quotient.m_words[i] |= rest.m_words[i];
            }
            rest.swap(last);
        } else {
            rest.takeOffTopBit(divisor, quotient);
        }
    }
    quotient.m_negative = negative && !quotient.isZero();
    remainder.swap(rest);
    swap(quotient);
}

/// One step: takes off the greatest multiple of `divisor` by a power of two that does not count as
/// greater than this number.
void BigInteger::takeOffBySize(const BigInteger& divisor, BigInteger& quotient)
{
    std::int32_t shift = getBitCount() - divisor.getBitCount();
    BigInteger difference;
    for (;; --shift) {
        BigInteger part;
        part.setBit(shift);
        part.multiply(divisor);
        difference = *this;
        difference.subtractMagnitude(part);
        if (!difference.m_negative) break;
    }
    quotient.setBit(shift);
    swap(difference);
}

/// The divisor is less than its bit count says, so that one and the same step repeats until this
/// number has lost its top bit. Takes off as many at once.
void BigInteger::takeOffTopBit(const BigInteger& divisor, BigInteger& quotient)
{
    const std::int32_t bits = getBitCount();
    const std::int32_t shift = bits - divisor.getBitCount();
    BigInteger part;
    part.setBit(shift);
    part.multiply(divisor);
    BigInteger topBit;
    topBit.setBit(bits - 1);

    BigInteger rest;
    subtractMagnitude(topBit);
    divideMagnitude(part, rest);
    topBit.addMagnitude(rest);
    topBit.subtractMagnitude(part);
    quotient.setBit(shift);
    swap(topBit);
}

/// The rest of the magnitude, without a sign.
void BigInteger::reduce(const BigInteger& modulus)
{
    BigInteger rest;
    divide(modulus, rest);
    swap(rest);
}

void BigInteger::mod(const BigInteger& modulus)
{
    if (modulus.isZero()) throwException(u"Divide by zero.");
    if (modulus.isNegative()) throwException(u"Modulus can't be negative.");
    BigInteger rest(*this);
    rest.reduce(modulus);
    if (m_negative) {
        BigInteger complement(modulus);
        complement.subtract(rest);
        swap(complement);
    } else {
        swap(rest);
    }
}

void BigInteger::gcd(const BigInteger& other)
{
    BigInteger dividend(*this);
    BigInteger divisor(other);
    BigInteger rest;
    dividend.divide(divisor, rest);
    while (!rest.isZero()) {
        dividend.swap(divisor);
        divisor.swap(rest);
        dividend.divide(divisor, rest);
    }
    swap(divisor);
}

void BigInteger::modInverse(const BigInteger& modulus)
{
    const BigInteger zero;
    BigInteger last(modulus);
    BigInteger current(*this);
    BigInteger lastFactor;
    BigInteger factor(1);
    BigInteger rest;
    last.divide(current, rest);
    while (rest.compareTo(zero) > 0) {
        BigInteger& quotient = last;
        quotient.multiply(factor);
        lastFactor.subtract(quotient);
        if (lastFactor.isNegative()) {
            lastFactor.abs();
            lastFactor.mod(modulus);
            BigInteger complement(modulus);
            complement.subtract(lastFactor);
            lastFactor.swap(complement);
        } else {
            lastFactor.mod(modulus);
        }
        lastFactor.swap(factor);
        last.swap(current);
        current.swap(rest);
        last.divide(current, rest);
    }
    if (current.compareTo(BigInteger(1)) != 0) throwException(u"Not invertible.");
    factor.mod(modulus);
    swap(factor);
}

} // namespace orv::math
