#pragma once

#include "orv/String.h"
#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"

#include <cstdint>

namespace orv::text::charset {

/// The root of the decoders with a varying number of bytes per character, through one hook.
///
/// A sequence without a character is replaced by the substitution characters while the mode is on.
/// A decoded surrogate throws InvalidCharacterException.
class ORV_API BTCMultiByte : public ByteToCharConverter {
public:
    BTCMultiByte() = default;
    ~BTCMultiByte() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    /// Stores a pending unit and returns 1, with room for two behind `*dstPos`; throws
    /// InvalidCharacterException with less. Leaves position and unit as they are. Without a pending
    /// unit, which convert() never sets, returns 0.
    std::int32_t flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    void reset() override;
    const char16_t* getEncodingName() const override;
    /// -1 until the derived class has set it.
    std::int32_t getMaxBytesPerChar() const override;
    /// -1 until the derived class has set it.
    std::int32_t getMaxCharsPerByte() const override;

protected:
    /// Decodes one character of the `n` bytes at `bytes` and sets `n` to the bytes consumed, 0 when
    /// more of them are needed. Returns the code point, U+FFFD for a sequence without one.
    virtual std::uint32_t convertBytes(const signed char* bytes, std::int32_t& n) = 0;

    char16_t m_pending = 0; ///< a unit for flush(), 0 when none
    /// What the operations above give; for the derived class to set.
    String m_name;
    std::int32_t m_maxBytesPerChar = -1;
    std::int32_t m_maxCharsPerByte = -1;

private:
    friend class BTCCom;

    template <class Plain, class Hook>
    std::int32_t convertBy(Plain plain, Hook hook, const signed char* src, std::int32_t* srcPos,
                           std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                           std::int32_t dstEnd);
};

/// The root of the encoders with a varying number of bytes per character, through one hook.
///
/// A character without bytes is replaced by the substitution bytes while the mode is on. That holds
/// for single units: a lone trailing surrogate throws InvalidCharacterException, and so does the
/// trailing half of a pair that the encoding lacks. A pair that finds no room for its bytes is
/// lost: keep getMaxBytesPerChar() bytes free.
class ORV_API CTBMultiByte : public CharToByteConverter {
public:
    CTBMultiByte() = default;
    ~CTBMultiByte() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    void reset() override;
    const char16_t* getEncodingName() const override;
    /// -1 until the derived class has set it.
    std::int32_t getMaxBytesPerChar() const override;
    /// -1 until the derived class has set it.
    std::int32_t getMaxCharsPerByte() const override;

protected:
    /// Writes the bytes of `codePoint` to `buffer`, which has room for `size`, and returns their
    /// number: 0 where there are none, -1 for a failure. Lone surrogates are asked for too.
    virtual std::int32_t convertChar(std::uint32_t codePoint, signed char* buffer,
                                     std::int32_t size) = 0;

    /// What the operations above give; for the derived class to set.
    String m_name;
    std::int32_t m_maxBytesPerChar = -1;
    std::int32_t m_maxCharsPerByte = -1;

private:
    friend class CTBCom;

    template <class Plain, class Hook>
    std::int32_t convertBy(Plain plain, Hook hook, const char16_t* src, std::int32_t* srcPos,
                           std::int32_t srcEnd, signed char* dst, std::int32_t* dstPos,
                           std::int32_t dstEnd);

    char16_t m_leading = 0; ///< a surrogate that waits for its partner, 0 when none
};

} // namespace orv::text::charset
