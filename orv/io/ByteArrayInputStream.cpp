#include "orv/io/ByteArrayInputStream.h"

#include <algorithm>

namespace orv::io {

ByteArrayInputStream::ByteArrayInputStream(const signed char* data, std::int32_t n)
    : m_buffer(allocateBlock<signed char>(n)), m_length(std::max(n, 0))
{
    std::copy_n(data, m_length, m_buffer.get());
}

ByteArrayInputStream::~ByteArrayInputStream() noexcept(false) = default;

std::int32_t ByteArrayInputStream::read(signed char* buffer, std::int32_t n)
{
    if (m_pos >= m_length) return -1;
    const std::int32_t taken = std::min(n, m_length - m_pos);
    if (taken < 1) return 0;
    std::copy_n(m_buffer.get() + m_pos, taken, buffer);
    m_pos += taken;
    return taken;
}

} // namespace orv::io
