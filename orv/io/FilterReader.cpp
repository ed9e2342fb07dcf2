#include "orv/io/FilterReader.h"

namespace orv::io {

FilterReader::~FilterReader() noexcept(false) = default;

std::int32_t FilterReader::read(char16_t* buffer, std::int32_t n)
{
    return m_in->read(buffer, n);
}

std::int32_t FilterReader::read()
{
    return m_in->read();
}

std::int32_t FilterReader::skip(std::int32_t n)
{
    return m_in->skip(n);
}

std::int32_t FilterReader::available()
{
    return m_in->available();
}

void FilterReader::close()
{
    m_in->close();
}

bool FilterReader::markSupported()
{
    return m_in->markSupported();
}

void FilterReader::mark(std::int32_t limit)
{
    m_in->mark(limit);
}

void FilterReader::reset()
{
    m_in->reset();
}

} // namespace orv::io
