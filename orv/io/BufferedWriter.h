#pragma once

#include "orv/io/WriteBuffer.h"
#include "orv/io/Writer.h"

namespace orv::io {

/// Collects written units in a block of memory and passes them on in one piece when it is full.
///
/// Writes of at least the size go past the block, behind what is in it. Errors: IoException "stream
/// closed" after close(), but for close() itself, which closes the inner writer again.
/// Where the inner writer fails, what is held stays and is offered to it whole again by the next
/// flush; of what a write passes on directly nothing is kept.
class ORV_API BufferedWriter : public Writer {
public:
    /// Holds `size` units, at least 16.
    BufferedWriter(Writer* out, std::int32_t size) : m_content(out, size) {}
    /// Drops units not yet flushed.
    ~BufferedWriter() noexcept(false) override;

    using Writer::write;
    void write(const char16_t* units, std::int32_t n) override;
    ORV_API void write(char16_t unit) override { m_content.write(unit); }

    /// Writes out what is held, and flushes the inner writer.
    void flush() override;
    /// Drops units not yet flushed, and closes the inner writer: flush first.
    void close() override;

private:
    WriteBuffer<Writer, char16_t> m_content;
};

} // namespace orv::io
