#include "orv/io/BufferedReader.h"

#include "orv/String.h"
#include "orv/io/internal/ReadBufferBody.h"

#include <bit>
#include <cstring>

namespace orv::io {

template class ReadBuffer<Reader, char16_t>;

namespace {

constexpr bool endsLine(char16_t unit) noexcept
{
    return unit == u'\n' || unit == u'\r';
}

/// Eight units, compared at once.
using Units = std::uint16_t __attribute__((vector_size(16)));
using Halves = std::uint64_t __attribute__((vector_size(16)));
constexpr std::int32_t unitsAtOnce = 8;

/// How many units stand before the first end of a line, or before the end.
std::int32_t lengthOfLine(const char16_t* units, std::int32_t n) noexcept
{
    std::int32_t at = 0;
    for (; n - at >= unitsAtOnce; at += unitsAtOnce) {
        Units block;
        std::memcpy(&block, units + at, sizeof block);
        const auto ends = reinterpret_cast<Halves>((block == std::uint16_t{u'\n'}) |
                                                   (block == std::uint16_t{u'\r'}));
        if ((ends[0] | ends[1]) == 0) continue;
        return at +
               (ends[0] != 0 ? std::countr_zero(ends[0]) / 16 : 4 + std::countr_zero(ends[1]) / 16);
    }
    while (at < n && !endsLine(units[at])) ++at;
    return at;
}

} // namespace

BufferedReader::~BufferedReader() noexcept(false) = default;

std::int32_t BufferedReader::read(char16_t* buffer, std::int32_t n)
{
    return m_content.read(buffer, n);
}

std::int32_t BufferedReader::skip(std::int32_t n)
{
    return m_content.skip(n);
}

std::int32_t BufferedReader::available()
{
    return m_content.available();
}

void BufferedReader::close()
{
    m_content.close();
}

bool BufferedReader::markSupported()
{
    return true;
}

void BufferedReader::mark(std::int32_t limit)
{
    m_content.mark(limit);
}

void BufferedReader::reset()
{
    m_content.reset();
}

std::int32_t BufferedReader::readLine(String& line)
{
    m_content.requireOpen();
    if (m_content.length() == 0) line.resize(0, u'\0');
    for (bool first = true; m_content.hasMore(); first = false) {
        const char16_t* const units = m_content.data();
        const std::int32_t n = lengthOfLine(units, m_content.length());
        if (first) {
            line.setTo(units, n);
        } else {
            line.append(units, n);
        }
        const bool ended = n < m_content.length();
        const bool mayGoOn = ended && units[n] == u'\r';
        m_content.consume(ended ? n + 1 : n);
        if (mayGoOn) skipLineFeed();
        if (ended) return line.getLength();
    }
    const std::int32_t length = line.getLength();
    return length > 0 ? length : -1;
}

void BufferedReader::skipLineFeed()
{
    if (m_content.hasMore() && *m_content.data() == u'\n') m_content.consume(1);
}

} // namespace orv::io
