#pragma once

#include "orv/String.h"
#include "orv/io/Block.h"
#include "orv/io/OutputStream.h"

namespace orv::io {

/// Collects written bytes in one growing block of memory.
///
/// For content of a size not known beforehand: write it, then take it out whole.
///
///     auto packet = makeReference<ByteArrayOutputStream>(64);
///     packet->write("PING", 4);
///     packet->writeTo(connection);
///
/// Ownership: the block belongs to the stream; what is written is copied into it. Bounds:
/// 2^31 - 1 bytes; a write past them throws OutOfMemoryException and changes nothing.
///
/// flush() and close() do nothing: a closed stream can still be read and written.
class ORV_API ByteArrayOutputStream : public OutputStream {
public:
    /// Holds `capacity` bytes before its first growth; 0 is allowed.
    explicit ByteArrayOutputStream(std::int32_t capacity);
    ~ByteArrayOutputStream() noexcept(false) override;

    using OutputStream::write;

    /// Appends `n` bytes, growing as ensureCapacity() does. An `n` below 1 writes nothing.
    void write(const signed char* bytes, std::int32_t n) override;
    void write(signed char byte) override;

    /// Writes the content in one call to `out`, which must not be this stream.
    void writeTo(OutputStream* out) const;

    /// Forgets the content and keeps the block.
    void reset() noexcept { m_count = 0; }

    /// Copies the first `n` bytes, or all where there are fewer; returns the number copied.
    std::int32_t getBytes(signed char* bytes, std::int32_t n) const;

    /// The content as text: in the default encoding, or in the one named, null being the default.
    /// Throws UnknownEncodingException for a name that no codec answers to.
    String toString() const override;
    String toString(const char16_t* encoding) const;

protected:
    /// Makes room for `needed` bytes in all. A block that is too small grows to five quarters of
    /// `needed`, rounded down: up to three bytes there is no spare room, at four there is one.
    void ensureCapacity(std::int32_t needed);

    /// Moves to a block of exactly `capacity` bytes, cutting off content that no longer fits.
    void reallocBuffer(std::int32_t capacity);

    /// Bytes that fit without growing.
    std::int32_t capacity() const noexcept { return m_capacity; }

private:
    Block<signed char> m_buffer;
    std::int32_t m_count = 0; ///< bytes of content, at most m_capacity
    std::int32_t m_capacity = 0;
};

} // namespace orv::io
