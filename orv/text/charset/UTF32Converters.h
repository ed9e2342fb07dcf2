#pragma once

#include "orv/text/charset/UTFConverters.h"

#include <bit>
#include <cstdint>

namespace orv::text::charset {

namespace internal {
template <class In, class Out>
class Run;
} // namespace internal

/// UTF-32 in an order of bytes that a derived class decides. Byte-order marks are characters like
/// any other.
///
/// A surrogate throws InvalidCharacterException. A value above U+10FFFF is replaced by the
/// substitution characters, for which one unit more than their number must be free, or throws
/// UnmappableCharacterException while the mode is off.
///
/// One to three last bytes count as a word, with zeros for the bytes that are missing, and the
/// source position then moves past the end: present whole words.
class ORV_API BTCUTF32 : public ByteToCharUTF {
public:
    ~BTCUTF32() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;

protected:
    /// Stores one value of a run. False where the output has no room for it.
    bool store(internal::Run<signed char, char16_t>& run, std::uint32_t value);

    /// convert() with `order` in place of the hook.
    template <class Order>
    std::int32_t convertWords(internal::Run<signed char, char16_t>&& run, Order order);
};

extern template class InByteOrder<BTCUTF32, std::endian::little>;
extern template class InByteOrder<BTCUTF32, std::endian::big>;

/// UTF-32, low byte first. For another order derive from BTCUTF32, whose convert() asks the hook.
class ORV_API BTCUTF32LE : public InByteOrder<BTCUTF32, std::endian::little> {
public:
    ~BTCUTF32LE() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

/// UTF-32, high byte first. For another order derive from BTCUTF32, whose convert() asks the hook.
class ORV_API BTCUTF32BE : public InByteOrder<BTCUTF32, std::endian::big> {
public:
    ~BTCUTF32BE() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

/// UTF-32 in an order of bytes that a derived class decides. No byte-order mark is written.
///
/// A leading surrogate waits for its partner, also across calls; anything else behind it throws
/// InvalidCharacterException. A lone trailing surrogate becomes a word of its own, which no decoder
/// takes back. Nothing is consumed with fewer than four bytes free.
class ORV_API CTBUTF32 : public CharToByteUTF {
public:
    ~CTBUTF32() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    void reset() override;

protected:
    /// convert() with `order` in place of the hook.
    template <class Order>
    std::int32_t convertWords(internal::Run<char16_t, signed char>&& run, Order order);

private:
    char16_t m_leading = 0; ///< a surrogate that waits for its partner, 0 when none
};

extern template class InByteOrder<CTBUTF32, std::endian::little>;
extern template class InByteOrder<CTBUTF32, std::endian::big>;

/// UTF-32, low byte first. For another order derive from CTBUTF32, whose convert() asks the hook.
class ORV_API CTBUTF32LE : public InByteOrder<CTBUTF32, std::endian::little> {
public:
    CTBUTF32LE() noexcept;
    ~CTBUTF32LE() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

/// UTF-32, high byte first. For another order derive from CTBUTF32, whose convert() asks the hook.
///
/// Its substitution bytes, which no character ever needs, read low byte first.
class ORV_API CTBUTF32BE : public InByteOrder<CTBUTF32, std::endian::big> {
public:
    CTBUTF32BE() noexcept;
    ~CTBUTF32BE() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

} // namespace orv::text::charset
