#include "orv/io/Reader.h"

#include "orv/io/IoExceptions.h"

#include <algorithm>

namespace orv::io {

Reader::~Reader() noexcept(false) = default;

std::int32_t Reader::read()
{
    char16_t unit = 0;
    return read(&unit, 1) < 1 ? -1 : unit;
}

std::int32_t Reader::skip(std::int32_t n)
{
    constexpr std::int32_t atOnce = 256;
    char16_t dropped[atOnce];
    std::int32_t skipped = 0;
    while (skipped < n) {
        const std::int32_t got = read(dropped, std::min(n - skipped, atOnce));
        if (got < 0) break;
        skipped += got;
    }
    return skipped;
}

std::int32_t Reader::available()
{
    return 0;
}

void Reader::close() {}

bool Reader::markSupported()
{
    return false;
}

void Reader::mark(std::int32_t) {}

void Reader::reset()
{
    throw IoException(u"mark/reset not supported");
}

} // namespace orv::io
