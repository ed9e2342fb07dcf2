#include "orv/io/StringWriter.h"

namespace orv::io {

StringWriter::~StringWriter() noexcept(false) = default;

void StringWriter::write(const char16_t* units, std::int32_t n)
{
    if (n > 0) m_text.append(units, n);
}

String StringWriter::toString() const
{
    return m_text;
}

} // namespace orv::io
