#include "orv/io/BufferedWriter.h"

#include "orv/io/internal/WriteBufferBody.h"

namespace orv::io {

template class WriteBuffer<Writer, char16_t>;

BufferedWriter::~BufferedWriter() noexcept(false) = default;

void BufferedWriter::write(const char16_t* units, std::int32_t n)
{
    m_content.write(units, n);
}

void BufferedWriter::flush()
{
    m_content.flush();
}

void BufferedWriter::close()
{
    m_content.close();
}

} // namespace orv::io
