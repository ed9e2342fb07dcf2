#include "orv/io/OutputStream.h"

namespace orv::io {

OutputStream::~OutputStream() noexcept(false) = default;

void OutputStream::write(const char* bytes, std::int32_t n)
{
    write(reinterpret_cast<const signed char*>(bytes), n);
}

void OutputStream::write(const unsigned char* bytes, std::int32_t n)
{
    write(reinterpret_cast<const signed char*>(bytes), n);
}

void OutputStream::write(signed char byte)
{
    write(&byte, 1);
}

void OutputStream::flush() {}

void OutputStream::close() {}

} // namespace orv::io
