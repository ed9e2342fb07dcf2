#include "orv/io/ByteArrayInputStream.h"

#include <algorithm>
#include <cstddef>
#include <typeinfo>

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

std::int32_t ByteArrayInputStream::read()
{
    // A derived class may have its own read() of blocks, which then gives single bytes too.
    if (m_pos >= m_length || &typeid(*this) != &typeid(ByteArrayInputStream)) {
        return InputStream::read();
    }
    return static_cast<unsigned char>(m_buffer[static_cast<std::size_t>(m_pos++)]);
}

} // namespace orv::io
