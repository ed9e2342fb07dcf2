#pragma once

#include "orv/Object.h"

#include <array>
#include <cstdint>

namespace orv::text::charset {

/// The root of the decoders: bytes of one encoding in, UTF-16 code units out.
///
///     Reference<ByteToCharConverter> decoder(ByteToCharConverter::getConverter(u"CP1252"));
///     std::int32_t from = 0, to = 0;
///     decoder->convert(bytes, &from, byteCount, units, &to, unitCount);
///
/// A decoder works on the arrays and positions of its caller, so a text may come in pieces of any
/// size: where one call stopped, the next one goes on, with the unconsumed bytes presented again.
///
/// Substitution: while the mode is on, as it is at first, what has no character is replaced by the
/// substitution characters, at first U+FFFD; while it is off, UnmappableCharacterException is
/// thrown. What counts as having no character, and what happens to malformed bytes, differs from
/// encoding to encoding and is told with each decoder.
///
/// Errors: exceptions only. Both positions are brought up to date before: the source stands at the
/// first byte of the offending sequence, the destination behind the last unit written. The decoder
/// stays usable; the same bytes raise the same exception again until the caller skips them.
///
/// Threads: one at a time for each decoder; the factories from any.
class ORV_API ByteToCharConverter : public Object {
public:
    ByteToCharConverter() noexcept = default;
    ByteToCharConverter(const ByteToCharConverter& other) noexcept = default;
    ByteToCharConverter& operator=(const ByteToCharConverter& other) noexcept = default;
    ~ByteToCharConverter() noexcept(false) override;

    /// Decodes `src[*srcPos]` up to `src[srcEnd]` into `dst[*dstPos]` up to `dst[dstEnd]` and moves
    /// both positions; returns the number of units written.
    ///
    /// Returns when the input is exhausted, when the next output does not fit, or when the input
    /// ends inside a sequence. In the last two cases the source position stays at the start of what
    /// could not be finished; only the positions tell the cases apart.
    virtual std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) = 0;

    /// Ends a run of input. Decoders without pending state return 0 and do nothing; bytes that
    /// convert() left are the caller's affair.
    virtual std::int32_t flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) = 0;

    /// Forgets pending state; by default there is none.
    virtual void reset();

    /// The canonical name, owned by the decoder.
    virtual const char16_t* getEncodingName() const = 0;
    virtual std::int32_t getMaxBytesPerChar() const = 0;
    virtual std::int32_t getMaxCharsPerByte() const = 0;

    /// Whether what has no character is replaced (at first it is) or throws
    /// UnmappableCharacterException.
    virtual bool getSubstitutionMode() const;
    virtual void setSubstitutionMode(bool mode);

    /// Copies at most `n` of the substitution characters into `buffer` and returns the number
    /// copied. With a null `buffer` returns how many there are.
    virtual std::int32_t getSubstitutionChars(char16_t* buffer, std::int32_t n) const;

    /// Sets the substitution to `n` characters, 0 to 3; of more, only the first 3 count.
    virtual void setSubstitutionChars(const char16_t* buffer, std::int32_t n);

    /// A new decoder for the named encoding, with count 0: put it into a Reference at once. A null
    /// name means the default encoding. Throws UnknownEncodingException described by the name where
    /// no codec answers to it.
    [[nodiscard]] static ByteToCharConverter* getConverter(const char16_t* name);

    /// A new decoder for the default encoding, with count 0; ASCII where the platform names none.
    /// Throws UnknownEncodingException where no codec answers to the platform's name.
    [[nodiscard]] static ByteToCharConverter* getDefaultConverter();

protected:
    /// What stands for elements without a counterpart, while the mode is on.
    bool m_substitutionMode = true;
    std::array<char16_t, 3> m_substitution{u'\uFFFD'};
    std::int32_t m_substitutionLength = 1; ///< characters of m_substitution in use
};

} // namespace orv::text::charset
