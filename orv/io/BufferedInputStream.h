#pragma once

#include "orv/io/InputStream.h"
#include "orv/io/ReadBuffer.h"

namespace orv::io {

/// Reads ahead from another stream into a block of memory, and can return to a mark.
///
///     BufferedInputStream in(makeReference<FileInputStream>(path).get(), 0x4000);
///     in.mark(4);
///     if (!startsWithMagic(in)) in.reset();
///
/// Once read() has something to give it does not wait for more: where the inner stream tells of
/// nothing available, it returns what there is. Requests of at least the size go past the block,
/// unless there is a mark.
///
/// The mark holds until `limit` bytes behind it are read and the block is refilled; a limit above
/// the size enlarges the block. Errors: IoException "stream closed" after close(), but for close()
/// itself, which closes the inner stream again. Without memory, or where the inner stream fails,
/// the bytes that the same call had read before are lost.
class ORV_API BufferedInputStream : public InputStream {
public:
    /// Holds `size` bytes, at least 16.
    BufferedInputStream(InputStream* in, std::int32_t size) : m_content(in, size) {}
    ~BufferedInputStream() noexcept(false) override;

    using InputStream::read;
    std::int32_t read(signed char* buffer, std::int32_t n) override;

    /// The next byte as a signed value, -128 to 127, so that 0xFF reads as the end of the stream.
    /// read(buffer, 1) tells them apart, and the other streams give 0 to 255.
    ORV_API std::int32_t read() override { return m_content.read(); }

    std::int32_t skip(std::int32_t n) override;
    /// What is read ahead, and what the inner stream tells.
    std::int32_t available() override;
    void close() override;
    /// True.
    bool markSupported() override;
    void mark(std::int32_t limit) override;
    /// Throws IoException "stream not marked" without mark(), "mark invalid" when too much was read
    /// since.
    void reset() override;

private:
    ReadBuffer<InputStream, signed char> m_content;
};

} // namespace orv::io
