#pragma once

#include "orv/String.h"
#include "orv/io/FilterOutputStream.h"

#include <cstdint>

namespace orv::io {

/// Carries bytes as text over 32 symbols, 5 bits each: 5 bytes become 8 symbols.
///
/// The bits go as in base 32 of RFC 4648, without its padding, line ends or check characters. The
/// default alphabet is "ABCDEFGHJKLMNPQRSTUVWXYZ23456789", the upper-case letters but I and O and
/// the digits but 0 and 1, which are easily taken for one another. Each symbol goes to the inner
/// stream by its write() of one byte, as the low byte of the alphabet's character.
///
/// The reader cannot tell how many bytes there were unless their number is a multiple of 5: see
/// AlphaNumInputStream. close() drops the bits that make no symbol yet: flush first. After a
/// failure of the inner stream the group of 8 symbols is broken and cannot be continued.
class ORV_API AlphaNumOutputStream : public FilterOutputStream {
public:
    /// Writes with the 32 characters of `alphabet`, null for the default one. Another length throws
    /// ResultException with 0x80070057.
    AlphaNumOutputStream(OutputStream* out, const char16_t* alphabet);
    ~AlphaNumOutputStream() noexcept(false) override;

    void write(const char* bytes, std::int32_t n) override;
    void write(const unsigned char* bytes, std::int32_t n) override;
    void write(const signed char* bytes, std::int32_t n) override;
    void write(signed char byte) override;

    /// Writes the bits left over as one more symbol, filled up with zero bits, and flushes the
    /// inner stream. The next byte begins a new group: a flush in mid-stream shows in the text.
    void flush() override;

private:
    void writeSymbol(std::uint32_t bits);
    void encodeGroup(const signed char* bytes);
    void encode(std::uint8_t byte);

    String m_alphabet;
    std::uint8_t m_last = 0;  ///< the byte of which bits are left
    std::int32_t m_phase = 0; ///< symbols of the group begun: 0, 1, 3, 4 or 6
};

} // namespace orv::io
