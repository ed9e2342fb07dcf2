#pragma once

#include "orv/io/FilterInputStream.h"

#include <cstdint>

namespace orv::io {

/// Reads numbers of any width out of bytes, the most significant bit first, as BitOutputStream
/// packs them.
///
/// Each byte comes by the inner stream's read() of one byte, which must give 0 to 255: that of
/// BufferedInputStream has a sign, and its bytes of 0x80 and above read as the end.
///
/// available(), mark(), reset() and close() are the inner stream's, and so is skip(): they know
/// nothing of the bits that are left of the byte last read, which the next read gives out first.
class ORV_API BitInputStream : public FilterInputStream {
public:
    explicit BitInputStream(InputStream* in) : FilterInputStream(in) {}
    ~BitInputStream() noexcept(false) override;

    std::int32_t read(char* buffer, std::int32_t n) override;
    std::int32_t read(unsigned char* buffer, std::int32_t n) override;
    /// Reads up to `n` bytes by read(); returns how many, or -1 where there are none. An `n` below
    /// 1 gives -1.
    std::int32_t read(signed char* buffer, std::int32_t n) override;
    /// The next 8 bits, or -1 where the stream ends before the last of them.
    std::int32_t read() override;

    /// The next `bits` bits as a number, by readBit(); 0 for a width below 1. A stream that ends
    /// before the last of them gives -1, and the bits that were left are lost. So do 32 ones;
    /// beyond that width the first bits fall out at the top.
    virtual std::int32_t read(std::int32_t bits);

    /// The next bit, or -1 at the end of the stream.
    virtual std::int32_t readBit();

private:
    std::int32_t inPieces(std::int32_t bits);
    bool nextByte();

    std::int32_t m_byte = 0; ///< what read() gave last
    std::uint8_t m_left = 0; ///< bits of it not yet given, 0 to 8
};

} // namespace orv::io
