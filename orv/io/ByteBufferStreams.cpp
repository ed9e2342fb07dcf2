#include "orv/io/ByteBufferStreams.h"

namespace orv::io {

ByteBufferInputStream::~ByteBufferInputStream() noexcept(false) = default;

std::int32_t ByteBufferInputStream::read(signed char* buffer, std::int32_t n)
{
    if (m_buffer->getPosition() >= m_buffer->getLimit()) return -1;
    if (n < 1) return 0;
    return static_cast<std::int32_t>(m_buffer->get(buffer, static_cast<std::uint32_t>(n)));
}

ByteBufferOutputStream::~ByteBufferOutputStream() noexcept(false) = default;

void ByteBufferOutputStream::write(const signed char* bytes, std::int32_t n)
{
    if (n < 1) return;
    const auto count = static_cast<std::uint32_t>(n);
    if (m_buffer->put(bytes, count) < count) m_overflowed = 1;
}

} // namespace orv::io
