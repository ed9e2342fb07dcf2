#pragma once

#include "orv/Reference.h"
#include "orv/io/ByteBuffer.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"

namespace orv::io {

/// Reads the bytes of a ByteBuffer from its position to its limit, and moves its position.
class ORV_API ByteBufferInputStream : public InputStream {
public:
    /// Holds a count on `buffer`, which therefore lives on the heap.
    explicit ByteBufferInputStream(ByteBuffer* buffer) : m_buffer(buffer) {}
    ~ByteBufferInputStream() noexcept(false) override;

    using InputStream::read;
    /// -1 at the limit, whatever `n` is.
    std::int32_t read(signed char* buffer, std::int32_t n) override;

private:
    Reference<ByteBuffer> m_buffer;
};

/// Writes into a ByteBuffer at its position, up to its limit.
///
/// What does not fit is dropped without an error; Overflowed() tells of it. Errors:
/// ReadOnlyException.
class ORV_API ByteBufferOutputStream : public OutputStream {
public:
    /// Holds a count on `buffer`, which therefore lives on the heap.
    explicit ByteBufferOutputStream(ByteBuffer* buffer) : m_buffer(buffer) {}
    ~ByteBufferOutputStream() noexcept(false) override;

    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override;

    /// 1 once bytes have been dropped, else 0.
    std::int16_t Overflowed() const noexcept { return m_overflowed; }

private:
    Reference<ByteBuffer> m_buffer;
    std::int16_t m_overflowed = 0;
};

} // namespace orv::io
