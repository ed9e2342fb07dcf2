#pragma once

#include "orv/io/FilterOutputStream.h"

#include <cstdint>

namespace orv::io {

/// Packs numbers of 1 to 32 bits into bytes without gaps, the most significant bit first.
///
///     auto bits = makeReference<BitOutputStream>(bytes);
///     bits->write(5, 3);
///     bits->writeBit(true);
///     bits->flush();             // the byte 0xB0
///
/// Each full byte goes to the inner stream by its write() of one byte. close() drops the bits of
/// the last, open byte: flush first. Where the inner stream fails, the byte that it refused stays
/// open, without the bits that would have filled it.
class ORV_API BitOutputStream : public FilterOutputStream {
public:
    explicit BitOutputStream(OutputStream* out) : FilterOutputStream(out) {}
    ~BitOutputStream() noexcept(false) override;

    void write(const char* bytes, std::int32_t n) override;
    void write(const unsigned char* bytes, std::int32_t n) override;
    /// Writes each byte as write() of one does; those before one that is refused are written.
    void write(const signed char* bytes, std::int32_t n) override;
    /// Writes 8 bits. A byte of 0x80 or above is a negative number and refused: RangeErrorException
    /// "Number out of range". For such bytes use `write(value, 8)` with a value up to 255.
    void write(signed char byte) override;

    /// Fills the open byte up with zero bits and writes it, then flushes the inner stream. The
    /// next bit begins a new byte.
    void flush() override;

    /// Writes the lowest `bits` bits, by writeBit(). A width outside 1 to 32 throws ResultException
    /// with 0x80070057; a value that does not fit, RangeErrorException "Number out of range".
    /// Nothing is written then. At the width of 32 only 0 fits: write such numbers in two halves.
    virtual void write(std::uint32_t value, std::int32_t bits);
    /// The same; a negative value fits nowhere.
    void write(std::int32_t value, std::int32_t bits)
    {
        write(static_cast<std::uint32_t>(value), bits);
    }

    /// Writes one bit.
    virtual void writeBit(bool bit);

private:
    void append(std::uint32_t value, std::int32_t bits);

    std::uint8_t m_bits = 0;  ///< the open byte, its bits at the bottom
    std::int32_t m_count = 0; ///< bits in it, 0 to 7
};

} // namespace orv::io
