#pragma once

#include "orv/Object.h"

#include <array>
#include <cstdint>

namespace orv::text::charset {

/// The root of the encoders: UTF-16 code units in, bytes of one encoding out.
///
///     Reference<CharToByteConverter> encoder(CharToByteConverter::getConverter(u"UTF-8"));
///     std::int32_t from = 0, to = 0;
///     encoder->convert(units, &from, unitCount, bytes, &to, byteCount);
///     encoder->flush(bytes, &to, byteCount);
///
/// An encoder works on the arrays and positions of its caller, so a text may come in pieces of any
/// size. Most encoders keep a leading surrogate that ends a piece until its partner comes with the
/// next one; flush() reports one that is left over, reset() forgets it.
///
/// Substitution: while the mode is on, as it is at first, what the encoding lacks is replaced by
/// the substitution bytes, at first one "?"; while it is off, UnmappableCharacterException is
/// thrown. How much room a substitution needs differs from encoding to encoding.
///
/// Errors: exceptions only. Both positions are brought up to date before: the source stands at the
/// offending unit, the destination behind the last byte written. The encoder stays usable.
///
/// Threads: one at a time for each encoder; the factories from any.
class ORV_API CharToByteConverter : public Object {
public:
    CharToByteConverter() noexcept = default;
    CharToByteConverter(const CharToByteConverter& other) noexcept = default;
    CharToByteConverter& operator=(const CharToByteConverter& other) noexcept = default;
    ~CharToByteConverter() noexcept(false) override;

    /// Encodes `src[*srcPos]` up to `src[srcEnd]` into `dst[*dstPos]` up to `dst[dstEnd]` and moves
    /// both positions; returns the number of bytes written (the UTF-16 encoders: of units).
    ///
    /// Returns when the input is exhausted or when the next output does not fit; then the source
    /// position stays at what did not fit.
    virtual std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) = 0;

    /// Ends a run of input and returns the number of bytes written. Throws
    /// InvalidCharacterException for a leading surrogate that still waits for its partner, and
    /// leaves it waiting: only reset() forgets it.
    virtual std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) = 0;

    /// Forgets pending state; by default there is none.
    virtual void reset();

    /// The canonical name, owned by the encoder.
    virtual const char16_t* getEncodingName() const = 0;
    virtual std::int32_t getMaxBytesPerChar() const = 0;
    virtual std::int32_t getMaxCharsPerByte() const = 0;

    /// Whether what has no bytes is replaced (at first it is) or throws
    /// UnmappableCharacterException.
    virtual bool getSubstitutionMode() const;
    virtual void setSubstitutionMode(bool mode);

    /// Copies at most `n` of the substitution bytes into `buffer` and returns the number copied.
    /// With a null `buffer` returns how many there are.
    virtual std::int32_t getSubstitutionBytes(signed char* buffer, std::int32_t n) const;

    /// Sets the substitution to `n` bytes, 0 to 6; of more, only the first 6 count.
    virtual void setSubstitutionBytes(const signed char* buffer, std::int32_t n);

    /// A new encoder for the named encoding, with count 0: put it into a Reference at once. A null
    /// name means the default encoding. Throws UnknownEncodingException described by the name where
    /// no codec answers to it.
    [[nodiscard]] static CharToByteConverter* getConverter(const char16_t* name);

    /// A new encoder for the default encoding, with count 0; ASCII where the platform names none.
    /// Throws UnknownEncodingException where no codec answers to the platform's name.
    [[nodiscard]] static CharToByteConverter* getDefaultConverter();

protected:
    /// What stands for elements without a counterpart, while the mode is on.
    bool m_substitutionMode = true;
    std::array<signed char, 6> m_substitution{'?'};
    std::int32_t m_substitutionLength = 1; ///< bytes of m_substitution in use
};

} // namespace orv::text::charset
