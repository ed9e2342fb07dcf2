#include "orv/io/FilterInputStream.h"

namespace orv::io {

FilterInputStream::~FilterInputStream() noexcept(false) = default;

std::int32_t FilterInputStream::read(char* buffer, std::int32_t n)
{
    return m_in->read(buffer, n);
}

std::int32_t FilterInputStream::read(unsigned char* buffer, std::int32_t n)
{
    return m_in->read(buffer, n);
}

std::int32_t FilterInputStream::read(signed char* buffer, std::int32_t n)
{
    return m_in->read(buffer, n);
}

std::int32_t FilterInputStream::read()
{
    return m_in->read();
}

std::int32_t FilterInputStream::skip(std::int32_t n)
{
    return m_in->skip(n);
}

std::int32_t FilterInputStream::available()
{
    return m_in->available();
}

void FilterInputStream::close()
{
    m_in->close();
}

bool FilterInputStream::markSupported()
{
    return m_in->markSupported();
}

void FilterInputStream::mark(std::int32_t limit)
{
    m_in->mark(limit);
}

void FilterInputStream::reset()
{
    m_in->reset();
}

} // namespace orv::io
