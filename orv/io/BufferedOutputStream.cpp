#include "orv/io/BufferedOutputStream.h"

#include "orv/io/internal/WriteBufferBody.h"

namespace orv::io {

template class WriteBuffer<OutputStream, signed char>;

BufferedOutputStream::~BufferedOutputStream() noexcept(false) = default;

void BufferedOutputStream::write(const signed char* bytes, std::int32_t n)
{
    m_content.write(bytes, n);
}

void BufferedOutputStream::flush()
{
    m_content.flush();
}

void BufferedOutputStream::close()
{
    m_content.close();
}

} // namespace orv::io
