#pragma once

#include "orv/Number.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace orv::math {

/// An integer without bounds, sign and magnitude, whose arithmetic changes the object in place.
///
///     BigInteger stamp(2026);
///     stamp.multiply(100);
///     stamp.add(11);                          // 202611
///     String text = stamp.toString(10);
///
/// Read this before using it for mathematics:
///
/// - multiply() is exact where this number has one byte or the factor at most two. With a longer
///   factor it may lose carries; see there.
/// - Zero has a sign: negate() and multiply() can make a negative zero, which isNegative(), orders
///   before zero and prints as 0.
/// - pow(0) leaves the number as it is; mod() of a negative multiple of the modulus is the modulus.
/// - clearBit() also clears the lower bits of the same byte, and keeps getSize(). Zero bytes that
///   this leaves on top count in getBitCount(), and so in compareTo(), divide() and toString().
///   Adding ZERO takes them off.
/// - The text of a zero does not parse, and leading zeros can cost digits at the end; see the
///   constructor.
///
/// Numbers up to 24 bytes need no memory but their own.
///
/// Bounds: 2^28 - 8 bytes of magnitude. What would be larger throws OutOfMemoryException, as does
/// a lack of memory. After any exception the number is what it was before.
/// Threads: one at a time; any number may read.
class ORV_API BigInteger : public Number {
public:
    /// The numbers 0 and 1, for reading.
    static const BigInteger ZERO;
    static const BigInteger ONE;

    BigInteger() noexcept {}
    BigInteger(const BigInteger& other);
    BigInteger(std::int32_t value) noexcept { setWord(magnitudeOf(value), value < 0); }
    BigInteger(std::uint32_t value) noexcept { setWord(value, false); }
    BigInteger(long value) noexcept { setWord(magnitudeOf(value), value < 0); }
    BigInteger(unsigned long value) noexcept { setWord(value, false); }
    BigInteger(long long value) noexcept { setWord(magnitudeOf(value), value < 0); }
    BigInteger(unsigned long long value) noexcept { setWord(value, false); }

    /// The magnitude from `length` bytes, the least significant first.
    BigInteger(const signed char* bytes, std::int32_t length, bool negative);

    /// Reads `text` in `radix`, 2 to 36; any other radix gives zero.
    ///
    /// A "-" may only stand in front. Leading zeros are skipped, and a text without anything behind
    /// them, such as 0, 000 or -0, throws Exception("Number Format Exception"), as does a "-" in
    /// another place. Three or more skipped characters, sign included, cost the last digits: three
    /// for each three of them, so that 000123456 reads as 123. The rest is read in groups of three
    /// from its end, and in a group whatever follows the first unit that is no digit does not
    /// count: 12a456 reads as 12456.
    BigInteger(const String& text, std::int32_t radix);

    BigInteger& operator=(const BigInteger& other);
    BigInteger& operator=(std::int32_t value) noexcept;
    BigInteger& operator=(std::uint32_t value) noexcept;

    ~BigInteger() noexcept(false) override
    {
        if (m_words != m_local) freeWords(m_words);
    }

    /// -1, 0 or 1; `other` is taken as its toBigInteger(). Throws CastFailedException where `other`
    /// is no Number.
    std::int32_t compareTo(const Object& other) const override;
    /// toString(10).
    String toString() const override;
    /// The low 63 bits with the sign: larger values do not survive.
    std::int64_t toInt64() const override;
    /// toInt64() as a floating-point number: values from 2^63 on do not survive.
    double toDouble() const override;
    BigInteger toBigInteger() const override;
    /// This number at scale 0.
    BigDecimal toBigDecimal() const override;

    /// Adds or subtracts `other` in place.
    void add(const BigInteger& other);
    void subtract(const BigInteger& other);

    /// Multiplies, row by row: one row for each byte of `other`, from the lowest, each as long as
    /// this number. A carry out of the end of a row is added at the first place of the next row
    /// instead of its own. The second row is the first that can have one, and the last row puts it
    /// right, so the product is exact where `other` has at most two bytes or this number at most
    /// one, and else depends on the order of the factors: 25024 times 504211453 is 12613092498112
    /// here, 504211453 times 25024 is 12617387399872. For exact products of longer numbers, split
    /// the factor.
    void multiply(const BigInteger& other);

    /// Divides, rounding toward zero. `remainder` gets the rest of the magnitudes, which is never
    /// negative: -7 by 2 gives -3 and 1. A quotient of 0 has no sign. Throws
    /// Exception("Divide by zero.").
    void divide(const BigInteger& other, BigInteger& remainder);

    /// The rest by `modulus`; for a negative number the modulus less the rest of its magnitude,
    /// which makes -6 mod 3 equal 3. Throws Exception("Divide by zero.") or
    /// Exception("Modulus can't be negative.").
    void mod(const BigInteger& modulus);

    /// The greatest common divisor by Euclid's algorithm, with the sign of the last divisor.
    /// An `other` of zero throws Exception("Divide by zero.").
    void gcd(const BigInteger& other);

    /// The inverse modulo `modulus`. Throws Exception("Not invertible."), or what mod() throws. Its
    /// products are those of multiply(), so for moduli of three bytes or more check the result.
    void modInverse(const BigInteger& modulus);

    /// Multiplies the number by its first value until that counts `exponent` times: 0 and 1 leave
    /// it as it is. Throws Exception("Negative Exponent"). The products are those of multiply():
    /// exact for a base of at most two bytes, and for longer ones as slow as that many of them.
    void pow(std::int32_t exponent);

    /// pow(), then mod(). A negative `exponent` takes modInverse() first, then the power, which is
    /// not reduced.
    void modPow(std::int32_t exponent, const BigInteger& modulus);

    /// Turns the sign, that of zero too.
    void negate() noexcept { m_negative = !m_negative; }
    void abs() noexcept { m_negative = false; }

    /// Sets bit `n` of the magnitude. Throws RangeErrorException for a negative `n`.
    void setBit(std::int32_t n);

    /// Clears bit `n` of the magnitude and the lower bits of the same byte: clearBit(3) clears bits
    /// 0 to 3. Nothing happens where the number has no such byte. getSize() stays.
    void clearBit(std::int32_t n) noexcept;

    /// Whether the value is 0, and whether the sign is minus, which a zero can have too.
    bool isZero() const noexcept { return m_size == 0; }
    bool isNegative() const noexcept { return m_negative; }

    /// 0 for zero, else eight for each byte below the top one and the bits up to the highest one
    /// set in that.
    std::int32_t getBitCount() const noexcept;

    /// The getSize() bytes of the magnitude, the least significant first; valid until the next
    /// change.
    const signed char* getData() const noexcept
    {
        return reinterpret_cast<const signed char*>(m_words);
    }
    std::int32_t getSize() const noexcept { return m_size; }

    /// -1, 0 or 1. A negative zero is less than zero. Of two numbers of one sign the one with the
    /// greater getBitCount() has the greater magnitude.
    std::int32_t compareTo(const BigInteger& other) const noexcept;

    /// The digits in `radix`, 2 to 36, in lower case, with a "-" in front of negative numbers; a
    /// zero of either sign is 0. Throws Exception("Number Format Exception") for another radix.
    String toString(std::int32_t radix) const;

protected:
    /// Makes room for `capacity` bytes.
    void ensureCapacity(std::int32_t capacity);
    /// Cuts the magnitude to `size` bytes or fills it up with zero bytes.
    void setSize(std::int32_t size);
    void setByteArray(const signed char* bytes, std::int32_t length, bool negative);
    /// Takes the zero bytes on top off the size.
    void truncateZeroBytes() noexcept;
    /// What setBit() and clearBit() do, in an array of `length` bytes and never outside it.
    static void setBit(signed char* bytes, std::int32_t length, std::int32_t n) noexcept;
    static void clearBit(signed char* bytes, std::int32_t length, std::int32_t n) noexcept;

private:
    using Word = std::uint64_t;
    static constexpr std::int32_t LOCAL_WORDS = 3;

    static Word magnitudeOf(std::int64_t value) noexcept
    {
        return value < 0 ? Word{0} - static_cast<Word>(value) : static_cast<Word>(value);
    }
    Word lowWord() const noexcept { return m_size == 0 ? 0 : m_words[0]; }
    void setWord(Word magnitude, bool negative) noexcept
    {
        m_words[0] = magnitude;
        m_size = (71 - std::countl_zero(magnitude)) / 8;
        m_negative = negative;
    }
    static void freeWords(Word* words) noexcept;
    void reserveWords(std::size_t count);
    void setWords(const Word* words, std::size_t count, bool negative) noexcept;
    void clear() noexcept;
    void swap(BigInteger& other) noexcept;
    std::size_t wordCount() const noexcept { return (static_cast<std::size_t>(m_size) + 7) / 8; }
    /// Whether the bit count is that of the value, which zero bytes on top can falsify.
    bool hasPlainSize() const noexcept
    {
        return m_size == 0 || getData()[m_size - 1] != 0 || hasPlainSizeBelow();
    }
    bool hasPlainSizeBelow() const noexcept;
    std::int32_t compareMagnitude(const BigInteger& other) const noexcept;
    void addMagnitude(const BigInteger& other);
    void subtractMagnitude(const BigInteger& other);
    void multiplyWords(const BigInteger& other);
    void divideMagnitude(const BigInteger& other, BigInteger& remainder);
    void divideBySize(const BigInteger& other, BigInteger& remainder);
    void takeOffBySize(const BigInteger& divisor, BigInteger& quotient);
    void takeOffTopBit(const BigInteger& divisor, BigInteger& quotient);
    void reduce(const BigInteger& modulus);
    void powerOfShortBase(std::int32_t exponent);
    void powerOfShortBase(std::int32_t exponent, const BigInteger& modulus);
    void parse(const char16_t* text, std::int32_t length, std::int32_t radix);
    void parseGroups(const char16_t* text, std::int32_t first, std::int32_t groups,
                     std::int32_t radix);
    bool parseDigits(const char16_t* digits, std::int32_t count, std::int32_t used,
                     std::int32_t radix);

    bool m_negative = false;
    std::int32_t m_size = 0;               ///< bytes in use
    std::int32_t m_capacity = LOCAL_WORDS; ///< words behind m_words
    Word* m_words = m_local;               ///< the last word in use is filled up with zero bytes
    Word m_local[LOCAL_WORDS] = {};
};

} // namespace orv::math
