#include "orv/math/BigInteger.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/math/internal/Scratch.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

namespace orv::math {

using namespace internal;

namespace {

/// In whole words, so that the bits can be counted in 32 bits with a sign.
constexpr std::int32_t MAX_SIZE = std::numeric_limits<std::int32_t>::max() / 64 * 8;

std::size_t wordsFor(std::int32_t bytes) noexcept
{
    return (static_cast<std::size_t>(bytes) + BYTES_PER_WORD - 1) / BYTES_PER_WORD;
}

std::int32_t bytesOf(Word word) noexcept
{
    return (bitLength(word) + 7) / 8;
}

void checkSize(std::int32_t bytes)
{
    if (bytes > MAX_SIZE) throwOutOfMemory();
}

} // namespace

BigInteger::BigInteger(const BigInteger& other) : Number(other)
{
    const std::size_t count = other.wordCount();
    reserveWords(count);
    std::copy_n(other.m_words, count, m_words);
    m_size = other.m_size;
    m_negative = other.m_negative;
}

BigInteger::BigInteger(const signed char* bytes, std::int32_t length, bool negative)
{
    setByteArray(bytes, length, negative);
}

BigInteger& BigInteger::operator=(const BigInteger& other)
{
    if (this == &other) return *this;
    const std::size_t count = other.wordCount();
    reserveWords(count);
    std::copy_n(other.m_words, count, m_words);
    m_size = other.m_size;
    m_negative = other.m_negative;
    return *this;
}

BigInteger& BigInteger::operator=(std::int32_t value) noexcept
{
    setWord(magnitudeOf(value), value < 0);
    return *this;
}

BigInteger& BigInteger::operator=(std::uint32_t value) noexcept
{
    setWord(value, false);
    return *this;
}

// As a Number

std::int32_t BigInteger::compareTo(const Object& other) const
{
    if (this == &other) return 0;
    if (const BigInteger* const number = dynamic_cast<const BigInteger*>(&other)) {
        return compareTo(*number);
    }
    const Number* const number = dynamic_cast<const Number*>(&other);
    if (number == nullptr) throwCastFailed();
    return compareTo(number->toBigInteger());
}

String BigInteger::toString() const
{
    return toString(10);
}

std::int64_t BigInteger::toInt64() const
{
    if (m_size == 0) return 0;
    const auto value = static_cast<std::int64_t>(m_words[0] & ~(Word{1} << 63));
    return m_negative ? -value : value;
}

double BigInteger::toDouble() const
{
    return static_cast<double>(toInt64());
}

BigInteger BigInteger::toBigInteger() const
{
    return *this;
}

// Arithmetic

void BigInteger::add(const BigInteger& other)
{
    if (m_negative == other.m_negative) {
        addMagnitude(other);
    } else {
        subtractMagnitude(other);
    }
}

void BigInteger::subtract(const BigInteger& other)
{
    if (m_negative == other.m_negative) {
        subtractMagnitude(other);
    } else {
        addMagnitude(other);
    }
}

void BigInteger::addMagnitude(const BigInteger& other)
{
    const std::size_t own = wordCount();
    const std::size_t others = other.wordCount();
    const std::size_t count = std::max(own, others);
    if (count <= 1) {
        const Word sum = lowWord() + other.lowWord();
        if (sum >= other.lowWord()) {
            setWord(sum, m_negative);
            return;
        }
    }

    const Word top = own == count ? m_words[count - 1] : 0;
    const Word otherTop = others == count ? other.m_words[count - 1] : 0;
    const bool mayCarry = otherTop >= ~top;
    reserveWords(count + mayCarry);

    std::fill(m_words + own, m_words + count, Word{0});
    const Word carry = addInto(m_words, count, other.m_words, others);
    if (mayCarry) m_words[count] = carry;
    m_size = static_cast<std::int32_t>((count + mayCarry) * BYTES_PER_WORD);
    truncateZeroBytes();
}

void BigInteger::subtractMagnitude(const BigInteger& other)
{
    const std::int32_t order = compareMagnitude(other);
    if (order == 0) {
        clear();
        return;
    }
    // The one that counts as greater gives the length. Zero bytes on its top can make it the
    // smaller one all the same; then the difference wraps within that length.
    const std::size_t own = wordCount();
    const std::size_t others = other.wordCount();
    if (order > 0) {
        subtractFrom(m_words, own, other.m_words, std::min(own, others));
    } else {
        reserveWords(others);
        std::fill(m_words + std::min(own, others), m_words + others, Word{0});
        subtractFromOther(m_words, other.m_words, others);
        m_negative = !m_negative;
        m_size = other.m_size;
    }
    const std::int32_t unused = static_cast<std::int32_t>(wordCount() * BYTES_PER_WORD) - m_size;
    if (m_size > 0) m_words[wordCount() - 1] &= ~Word{0} >> (unused * 8);
    truncateZeroBytes();
}

// Bits

void BigInteger::setBit(std::int32_t n)
{
    if (n < 0) throwRange();
    if (n / 8 >= m_size) setSize(n / 8 + 1);
    m_words[n / BITS_PER_WORD] |= Word{1} << (n % BITS_PER_WORD);
}

void BigInteger::clearBit(std::int32_t n) noexcept
{
    if (n < 0 || n / 8 >= m_size) return;
    const int place = n % BITS_PER_WORD;
    const Word bits = (Word{2} << (place % 8)) - 1;
    m_words[n / BITS_PER_WORD] &= ~(bits << (place - place % 8));
}

void BigInteger::setBit(signed char* bytes, std::int32_t length, std::int32_t n) noexcept
{
    if (n < 0 || n / 8 >= length) return;
    bytes[n / 8] = static_cast<signed char>(static_cast<unsigned char>(bytes[n / 8]) | 1u << n % 8);
}

void BigInteger::clearBit(signed char* bytes, std::int32_t length, std::int32_t n) noexcept
{
    if (n < 0 || n / 8 >= length) return;
    bytes[n / 8] =
        static_cast<signed char>(static_cast<unsigned char>(bytes[n / 8]) & 0xFEu << n % 8);
}

std::int32_t BigInteger::getBitCount() const noexcept
{
    if (m_size == 0) return 0;
    const auto top = static_cast<unsigned char>(getData()[m_size - 1]);
    return 8 * (m_size - 1) + bitLength(top);
}

// Order

std::int32_t BigInteger::compareTo(const BigInteger& other) const noexcept
{
    if (m_negative != other.m_negative) return m_negative ? -1 : 1;
    const std::int32_t order = compareMagnitude(other);
    return m_negative ? -order : order;
}

std::int32_t BigInteger::compareMagnitude(const BigInteger& other) const noexcept
{
    const std::int32_t bits = getBitCount();
    const std::int32_t otherBits = other.getBitCount();
    if (bits != otherBits) return bits < otherBits ? -1 : 1;
    // A zero byte on top may stand beside a full one below the top of the other.
    const std::size_t own = significantWords(m_words, wordCount());
    const std::size_t others = significantWords(other.m_words, other.wordCount());
    if (own != others) return own < others ? -1 : 1;
    return compareWords(m_words, other.m_words, own);
}

/// hasPlainSize() of a number with a zero byte on top.
bool BigInteger::hasPlainSizeBelow() const noexcept
{
    const std::size_t count = significantWords(m_words, wordCount());
    const std::int32_t bits = count == 0 ? 0
                                         : static_cast<std::int32_t>(count - 1) * BITS_PER_WORD +
                                               bitLength(m_words[count - 1]);
    return bits == getBitCount();
}

// Storage

void BigInteger::ensureCapacity(std::int32_t capacity)
{
    if (capacity < 0) return;
    checkSize(capacity);
    reserveWords(wordsFor(capacity));
}

void BigInteger::setSize(std::int32_t size)
{
    size = std::max(size, 0);
    checkSize(size);
    const std::size_t before = wordCount();
    const std::size_t after = wordsFor(size);
    reserveWords(after);
    if (after > before) std::fill(m_words + before, m_words + after, Word{0});
    if (size < m_size && size % 8 != 0) m_words[after - 1] &= ~Word{0} >> (64 - size % 8 * 8);
    m_size = size;
}

void BigInteger::setByteArray(const signed char* bytes, std::int32_t length, bool negative)
{
    length = bytes == nullptr ? 0 : std::max(length, 0);
    checkSize(length);
    const std::size_t count = wordsFor(length);
    reserveWords(count);
    if (length > 0) {
        m_words[count - 1] = 0;
        std::memmove(m_words, bytes, static_cast<std::size_t>(length));
    }
    m_size = length;
    m_negative = negative;
    truncateZeroBytes();
}

void BigInteger::truncateZeroBytes() noexcept
{
    setWords(m_words, wordCount(), m_negative);
}

void BigInteger::freeWords(Word* words) noexcept
{
    orvcore::deallocateRaw(words);
}

/// Makes room for `count` words; the value stays.
void BigInteger::reserveWords(std::size_t count)
{
    if (count <= static_cast<std::size_t>(m_capacity)) return;
    if (count > wordsFor(MAX_SIZE)) throwOutOfMemory();
    Word* const words = allocateWords(count);
    std::copy_n(m_words, wordCount(), words);
    if (m_words != m_local) freeWords(m_words);
    m_words = words;
    m_capacity = static_cast<std::int32_t>(count);
}

/// The magnitude from words that there is room for; they may be the own ones.
void BigInteger::setWords(const Word* words, std::size_t count, bool negative) noexcept
{
    count = significantWords(words, count);
    if (words != m_words) std::copy_n(words, count, m_words);
    m_size = count == 0 ? 0
                        : static_cast<std::int32_t>((count - 1) * BYTES_PER_WORD) +
                              bytesOf(words[count - 1]);
    m_negative = negative;
}

void BigInteger::clear() noexcept
{
    m_size = 0;
    m_negative = false;
}

void BigInteger::swap(BigInteger& other) noexcept
{
    const bool ownLocal = m_words == m_local;
    const bool otherLocal = other.m_words == other.m_local;
    std::swap(m_local, other.m_local);
    std::swap(m_words, other.m_words);
    if (ownLocal) other.m_words = other.m_local;
    if (otherLocal) m_words = m_local;
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_size, other.m_size);
    std::swap(m_negative, other.m_negative);
}

} // namespace orv::math
