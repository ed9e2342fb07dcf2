#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"

#include <cstdint>

namespace orv::text::charset {

namespace internal {
template <class In, class Out>
class Run;
} // namespace internal

/// The root of the decoders with one byte per character.
///
/// A byte without a character is replaced by the substitution character while the mode is on. This
/// family substitutes exactly one character: with a substitution of any other length the byte is
/// dropped and nothing takes its place.
class ORV_API BTCSingleByte : public ByteToCharConverter {
public:
    ~BTCSingleByte() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    /// Returns 0.
    std::int32_t flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

protected:
    /// The character of `byte`, U+FFFD for none.
    virtual char16_t convertByte(signed char byte) = 0;

    /// Converts one byte of a run that is not exhausted. False where the output has no room for it.
    bool convertOne(internal::Run<signed char, char16_t>& run);
};

/// The root of the encoders with one byte per character.
///
/// A character without a byte is replaced by the substitution byte while the mode is on; a
/// surrogate pair counts as one character. This family substitutes exactly one byte: with a
/// substitution of any other length the character is dropped and nothing takes its place.
///
/// A lone trailing surrogate throws InvalidCharacterException, as does a leading one with anything
/// else behind it. Keep one byte of room: when a pair finds none, its leading half is forgotten and
/// the next call refuses the trailing one.
class ORV_API CTBSingleByte : public CharToByteConverter {
public:
    ~CTBSingleByte() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    void reset() override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

protected:
    /// The byte of `unit`, 0 for none.
    virtual signed char convertChar(char16_t unit) = 0;

    /// Converts one unit of a run that is not exhausted. False where the output has no room for it.
    bool convertOne(internal::Run<char16_t, signed char>& run);

    /// Whether a leading surrogate waits for its partner.
    bool isPending() const noexcept { return m_leading != 0; }

private:
    bool substitute(internal::Run<char16_t, signed char>& run);

    char16_t m_leading = 0; ///< a surrogate that waits for its partner, 0 when none
};

/// US-ASCII: 0x80 and above are no characters.
class ORV_API BTCASCII : public BTCSingleByte {
public:
    ~BTCASCII() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;

protected:
    char16_t convertByte(signed char byte) override;
};

/// US-ASCII.
class ORV_API CTBASCII : public CTBSingleByte {
public:
    ~CTBASCII() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;

protected:
    signed char convertChar(char16_t unit) override;
};

/// ISO 8859-1, with bytes extended by their sign.
///
/// convert() stores 0x80 to 0xFF as U+FF80 to U+FFFF: a caller that wants the Latin-1 characters
/// masks each unit with 0xFF, or decodes "CP1252". convertByte() gives the character itself.
class ORV_API BTCISO8859_1 : public BTCSingleByte {
public:
    ~BTCISO8859_1() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;

protected:
    char16_t convertByte(signed char byte) override;
};

/// ISO 8859-1: the characters up to U+00FF.
class ORV_API CTBISO8859_1 : public CTBSingleByte {
public:
    ~CTBISO8859_1() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;

protected:
    signed char convertChar(char16_t unit) override;
};

} // namespace orv::text::charset
