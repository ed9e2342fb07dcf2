#include "orv/io/FilterOutputStream.h"

namespace orv::io {

FilterOutputStream::~FilterOutputStream() noexcept(false) = default;

void FilterOutputStream::write(const char* bytes, std::int32_t n)
{
    m_out->write(bytes, n);
}

void FilterOutputStream::write(const unsigned char* bytes, std::int32_t n)
{
    m_out->write(bytes, n);
}

void FilterOutputStream::write(const signed char* bytes, std::int32_t n)
{
    m_out->write(bytes, n);
}

void FilterOutputStream::write(signed char byte)
{
    m_out->write(byte);
}

void FilterOutputStream::flush()
{
    m_out->flush();
}

void FilterOutputStream::close()
{
    m_out->close();
}

} // namespace orv::io
