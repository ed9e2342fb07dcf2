#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"

#include <cstdint>

namespace orv::text::charset {

namespace internal {
template <class In, class Out>
class Run;
} // namespace internal

/// UTF-8, read with tolerance. Byte-order marks are characters like any other.
///
/// - A malformed sequence gives U+FFFD whatever the substitution settings say, and one byte of it
///   is consumed; decoding goes on at the very next byte.
/// - Malformed are the first bytes 0x80 to 0xC1 and 0xF5 to 0xFF, continuation bytes outside of
///   0x80 to 0xBF, and a second byte above 0xAF in a sequence of four: of the planes above U+FFFF
///   that leaves the lower three quarters of each sequence's range.
/// - Forms that are longer than need be are accepted: 0xE0 0x80 0x80 is U+0000.
/// - A surrogate in any form throws InvalidCharacterException.
/// - A value above U+10FFFF (0xF4 with a second byte from 0x90) is replaced by the substitution
///   characters, for which one unit more than their number must be free, or throws
///   UnmappableCharacterException while the mode is off.
/// - A sequence that the end of the input cuts waits for the rest, by its first byte alone: also
///   when its second byte is wrong already.
class ORV_API BTCUTF8 : public ByteToCharConverter {
public:
    ~BTCUTF8() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    /// Returns 0.
    std::int32_t flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

private:
    bool convertOne(internal::Run<signed char, char16_t>& run);
    void convertRest(internal::Run<signed char, char16_t>&& run);
};

/// UTF-8. No byte-order mark is written.
///
/// A leading surrogate waits for its partner, also across calls; anything else behind it throws
/// InvalidCharacterException. A lone trailing surrogate is encoded by itself in three bytes, which
/// BTCUTF8 refuses. Keep four bytes of room: when a pair finds less, its leading half is forgotten
/// and the next call encodes the trailing one alone.
class ORV_API CTBUTF8 : public CharToByteConverter {
public:
    ~CTBUTF8() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    void reset() override;
    const char16_t* getEncodingName() const override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

private:
    bool convertOne(internal::Run<char16_t, signed char>& run);
    void convertRest(internal::Run<char16_t, signed char>&& run);

    char16_t m_leading = 0; ///< a surrogate that waits for its partner, 0 when none
};

} // namespace orv::text::charset
