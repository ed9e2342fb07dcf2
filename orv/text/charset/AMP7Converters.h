#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"

#include <cstdint>

namespace orv::text::charset {

namespace internal {
template <class In, class Out>
class Run;
} // namespace internal

/// AMP-7: text in seven bits, with escapes that begin with "&" for all that is not printable ASCII.
///
/// | Form | Character |
/// |---|---|
/// | a byte below 0x80 other than "&" | itself |
/// | AMP, APOS or QUOT between "&" and ";" | "&", "'" and the double quotation mark |
/// | `&_` 0 to 5 hexadecimal digits `;` | the code point; U+0000 without digits |
///
/// An escape that is not complete at the end of the input waits there for the rest. The names are
/// upper case only.
///
/// Anything else is malformed, and so are bytes from 0x80 up and U+FFFD, however it is written.
/// While the mode is on, one byte is consumed and replaced by the substitution characters with
/// U+FFFD behind them: two of it, as the settings stand at first. They need one unit more than the
/// number of substitution characters to be free. With the mode off UnmappableCharacterException is
/// thrown. An escape for a surrogate throws InvalidCharacterException.
class ORV_API BTCAMP7 : public ByteToCharConverter {
public:
    ~BTCAMP7() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    /// Returns 0.
    std::int32_t flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

private:
    bool convertOne(internal::Run<signed char, char16_t>& run);
    bool substitute(internal::Run<signed char, char16_t>& run);
};

/// AMP-7; BTCAMP7 has the forms.
///
/// Printable ASCII, tab, line feed and carriage return stand for themselves, "&" is written by its
/// name AMP, everything else by its code point; a lone trailing surrogate too. The last code
/// points, U+FFFFF and above, are replaced by the substitution bytes, which need one byte more than
/// their number to be free, or throw UnmappableCharacterException while the mode is off.
///
/// No state is kept: a leading surrogate at the end of the input stays there until its partner
/// follows. One with anything else behind it throws InvalidCharacterException.
class ORV_API CTBAMP7 : public CharToByteConverter {
public:
    ~CTBAMP7() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    /// Returns 0; a leading surrogate that convert() left is the caller's affair.
    std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

private:
    bool convertOne(internal::Run<char16_t, signed char>& run);
};

} // namespace orv::text::charset
