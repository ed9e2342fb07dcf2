#include "orv/io/BufferedInputStream.h"

#include "orv/io/internal/ReadBufferBody.h"

namespace orv::io {

template class ReadBuffer<InputStream, signed char>;

BufferedInputStream::~BufferedInputStream() noexcept(false) = default;

std::int32_t BufferedInputStream::read(signed char* buffer, std::int32_t n)
{
    return m_content.read(buffer, n);
}

std::int32_t BufferedInputStream::skip(std::int32_t n)
{
    return m_content.skip(n);
}

std::int32_t BufferedInputStream::available()
{
    return m_content.available();
}

void BufferedInputStream::close()
{
    m_content.close();
}

bool BufferedInputStream::markSupported()
{
    return true;
}

void BufferedInputStream::mark(std::int32_t limit)
{
    m_content.mark(limit);
}

void BufferedInputStream::reset()
{
    m_content.reset();
}

} // namespace orv::io
