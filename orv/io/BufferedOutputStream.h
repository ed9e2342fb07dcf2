#pragma once

#include "orv/io/OutputStream.h"
#include "orv/io/WriteBuffer.h"

namespace orv::io {

/// Collects written bytes in a block of memory and passes them on in one piece when it is full.
///
/// Writes of at least the size go past the block, behind what is in it. Errors: IoException "stream
/// closed" after close(), but for close() itself, which closes the inner stream again.
/// Where the inner stream fails, what is held stays and is offered to it whole again by the next
/// flush; of what a write passes on directly nothing is kept.
class ORV_API BufferedOutputStream : public OutputStream {
public:
    /// Holds `size` bytes, at least 16.
    BufferedOutputStream(OutputStream* out, std::int32_t size) : m_content(out, size) {}
    /// Drops bytes not yet flushed.
    ~BufferedOutputStream() noexcept(false) override;

    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override;
    ORV_API void write(signed char byte) override { m_content.write(byte); }

    /// Writes out what is held, and flushes the inner stream.
    void flush() override;
    /// Drops bytes not yet flushed, and closes the inner stream: flush first.
    void close() override;

private:
    WriteBuffer<OutputStream, signed char> m_content;
};

} // namespace orv::io
