#pragma once

#include "orv/String.h"
#include "orv/io/FilterInputStream.h"

#include <array>
#include <cstdint>

namespace orv::io {

/// Reads the bytes that AlphaNumOutputStream wrote as text.
///
/// The text must be the symbols and nothing else: lower-case letters of the default alphabet,
/// blanks and line ends are no symbols. A text of whole groups of 8 symbols gives 5 bytes each. A
/// group that the end cuts off gives one byte more than was written, made of the bits left over,
/// which are 0: bytes whose number is not a multiple of 5 come back with a 0 behind them.
///
/// Each symbol comes by the inner stream's read() of one byte: of a BufferedInputStream, which
/// gives the bytes 0x80 and above as negative numbers, these are the end. mark(), reset() and
/// close() are the inner stream's. Errors: InvalidCharacterException "Invalid AlphaNum character";
/// the byte that is no symbol has then been read, the next read goes on behind it, and bytes that
/// the failed read had decoded before are lost to the caller.
class ORV_API AlphaNumInputStream : public FilterInputStream {
public:
    /// Reads by the 32 characters of `alphabet`, null for the default one; where a character occurs
    /// twice the first one counts. Another length throws ResultException with 0x80070057.
    AlphaNumInputStream(InputStream* in, const char16_t* alphabet);
    ~AlphaNumInputStream() noexcept(false) override;

    std::int32_t read(char* buffer, std::int32_t n) override;
    std::int32_t read(unsigned char* buffer, std::int32_t n) override;
    /// Reads `n` bytes, or those up to the end of the stream; -1 where there are none, and for an
    /// `n` below 1.
    std::int32_t read(signed char* buffer, std::int32_t n) override;
    std::int32_t read() override;
    std::int32_t skip(std::int32_t n) override;

    /// Five eighths of what the inner stream has.
    std::int32_t available() override;

private:
    /// The symbols read of a group that is not complete.
    struct Group {
        std::uint8_t bits = 0; ///< those of the next byte, at the top
        signed char phase = 0; ///< how many symbols, 0 to 7
    };
    class Working;

    signed char getValue(signed char symbol) const;

    String m_alphabet;
    Group m_group;
    std::array<signed char, 256> m_values; ///< each byte's index in the alphabet, or -1
};

} // namespace orv::io
