#include "orv/io/FilterWriter.h"

namespace orv::io {

FilterWriter::~FilterWriter() noexcept(false) = default;

void FilterWriter::write(const String& text)
{
    m_out->write(text);
}

void FilterWriter::write(const char16_t* text)
{
    m_out->write(text);
}

void FilterWriter::write(const char16_t* units, std::int32_t n)
{
    m_out->write(units, n);
}

void FilterWriter::write(char16_t unit)
{
    m_out->write(unit);
}

void FilterWriter::flush()
{
    m_out->flush();
}

void FilterWriter::close()
{
    m_out->close();
}

} // namespace orv::io
