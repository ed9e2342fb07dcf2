#include "orv/Failure.h"
#include "orv/math/BigInteger.h"
#include "orv/math/internal/RowCarries.h"
#include "orv/math/internal/Scratch.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace orv::math {

using namespace internal;

void BigInteger::multiply(const BigInteger& other)
{
    const bool negative = m_negative != other.m_negative;
    const std::size_t own = wordCount();
    const std::size_t others = other.wordCount();
    if (own == 1 && others == 1 && (other.m_size <= 2 || m_size == 1)) {
        const WideWord product = WideWord{m_words[0]} * other.m_words[0];
        const Word words[] = {static_cast<Word>(product), highWord(product)};
        if (words[1] == 0) {
            setWord(words[0], negative);
        } else {
            setWords(words, 2, negative);
        }
        return;
    }
    if (m_size == 0 || other.m_size == 0) {
        m_size = 0;
    } else if (other.m_size <= 2) {
        const Word factor = other.m_words[0];
        const bool grows = bitLength(m_words[own - 1]) + bitLength(factor) > BITS_PER_WORD;
        reserveWords(own + grows);
        const Word carry = scale(m_words, own, factor, 0);
        if (grows) m_words[own] = carry;
        setWords(m_words, own + grows, m_negative);
    } else {
        multiplyWords(other);
    }
    m_negative = negative;
}

void BigInteger::multiplyWords(const BigInteger& other)
{
    const std::size_t own = wordCount();
    const std::size_t others = other.wordCount();
    const std::size_t count = own + others;
    const std::size_t room =
        std::max(multiplyScratch(own, others), rowCarryScratch(m_size, other.m_size));
    Scratch scratch(count + room);
    Word* const product = scratch.words();
    Word* const below = product + count;
    internal::multiply(product, m_words, own, other.m_words, others, below);
    loseRowCarries(product, m_words, m_size, other.m_words, other.m_size, below);

    reserveWords(significantWords(product, count));
    setWords(product, count, m_negative);
}

void BigInteger::pow(std::int32_t exponent)
{
    if (exponent < 0) throwException(u"Negative Exponent");
    if (exponent <= 1) return;
    if (m_size <= 2) {
        powerOfShortBase(exponent);
        return;
    }
    BigInteger power(*this);
    for (std::int32_t i = 1; i < exponent; ++i) power.multiply(*this);
    swap(power);
}

void BigInteger::modPow(std::int32_t exponent, const BigInteger& modulus)
{
    BigInteger result(*this);
    if (exponent < 0) {
        result.modInverse(modulus);
        // The least integer has no counterpart: it stays negative, which pow() refuses.
        result.pow(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(exponent)));
    } else if (exponent > 1 && m_size <= 2 && modulus.m_size > 0 && modulus.hasPlainSize()) {
        result.powerOfShortBase(exponent, modulus);
    } else {
        result.pow(exponent);
        result.mod(modulus);
    }
    swap(result);
}

namespace {

/// Squares and multiplies from the top bit of an exponent of 2 or more. `square` and `multiply`
/// change the power that was begun with one factor.
template <class Square, class Multiply>
void raise(std::int32_t exponent, Square square, Multiply multiply)
{
    for (int bit = bitLength(static_cast<Word>(exponent)) - 2; bit >= 0; --bit) {
        square();
        if ((exponent >> bit & 1) != 0) multiply();
    }
}

} // namespace

/// The power of a base of at most two bytes. All its products by the base are exact, so squaring
/// gives the same.
void BigInteger::powerOfShortBase(std::int32_t exponent)
{
    const Word base = m_size == 0 ? 0 : m_words[0];
    const bool negative = m_negative && exponent % 2 != 0;
    if (base <= 1) {
        setWord(base, negative);
        return;
    }
    const std::int64_t bits = std::int64_t{bitLength(base)} * exponent;
    if (bits - exponent > std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();

    const std::size_t room = static_cast<std::size_t>(bits) / BITS_PER_WORD + 2;
    const std::size_t half = room / 2 + 1;
    Scratch scratch(2 * room + 2 + multiplyScratch(half, half));
    Word* power = scratch.words();
    Word* square = power + room + 1;
    Word* const below = square + room + 1;
    std::size_t count = 1;
    power[0] = base;
    raise(
        exponent,
        [&] {
            internal::multiply(square, power, count, power, count, below);
            std::swap(power, square);
            count = significantWords(power, 2 * count);
        },
        [&] {
            power[count] = scale(power, count, base, 0);
            count = significantWords(power, count + 1);
        });
    reserveWords(count);
    setWords(power, count, negative);
}

/// The same by a modulus, without building the power.
void BigInteger::powerOfShortBase(std::int32_t exponent, const BigInteger& modulus)
{
    if (modulus.m_negative) throwException(u"Modulus can't be negative.");
    const Word base = m_size == 0 ? 0 : m_words[0];
    const bool negative = m_negative && exponent % 2 != 0;
    const std::size_t room = modulus.wordCount();
    Scratch scratch(2 * room + 1 + multiplyScratch(room, room));
    Word* const product = scratch.words();
    Word* const below = product + 2 * room + 1;

    m_negative = false;
    truncateZeroBytes();
    reduce(modulus);
    const auto reduceProduct = [&](std::size_t count) {
        reserveWords(count);
        setWords(product, count, false);
        reduce(modulus);
    };
    raise(
        exponent,
        [&] {
            const std::size_t count = wordCount();
            if (count == 0) return;
            internal::multiply(product, m_words, count, m_words, count, below);
            reduceProduct(2 * count);
        },
        [&] {
            const std::size_t count = wordCount();
            std::copy_n(m_words, count, product);
            product[count] = scale(product, count, base, 0);
            reduceProduct(count + 1);
        });
    m_negative = negative;
    mod(modulus);
}

} // namespace orv::math
