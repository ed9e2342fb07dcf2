#include "orv/io/InputStream.h"

#include "orv/io/IoExceptions.h"

#include <algorithm>

namespace orv::io {

InputStream::~InputStream() noexcept(false) = default;

std::int32_t InputStream::read(char* buffer, std::int32_t n)
{
    return read(reinterpret_cast<signed char*>(buffer), n);
}

std::int32_t InputStream::read(unsigned char* buffer, std::int32_t n)
{
    return read(reinterpret_cast<signed char*>(buffer), n);
}

std::int32_t InputStream::read()
{
    signed char byte = 0;
    return read(&byte, 1) < 1 ? -1 : static_cast<unsigned char>(byte);
}

std::int32_t InputStream::skip(std::int32_t n)
{
    constexpr std::int32_t atOnce = 256;
    signed char dropped[atOnce];
    std::int32_t skipped = 0;
    while (skipped < n) {
        const std::int32_t got = read(dropped, std::min(n - skipped, atOnce));
        if (got < 0) break;
        skipped += got;
    }
    return skipped;
}

std::int32_t InputStream::available()
{
    return 0;
}

void InputStream::close() {}

bool InputStream::markSupported()
{
    return false;
}

void InputStream::mark(std::int32_t) {}

void InputStream::reset()
{
    throw IoException(u"mark/reset not supported");
}

} // namespace orv::io
