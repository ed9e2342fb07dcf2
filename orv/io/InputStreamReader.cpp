#include "orv/io/InputStreamReader.h"

#include "orv/io/IoExceptions.h"

#include <algorithm>
#include <utility>

namespace orv::io {

namespace {

constexpr char16_t replacement = u'\uFFFD';

// No encoding has a sequence of that many bytes.
constexpr std::int32_t longestSequence = 0x1000;

} // namespace

InputStreamReader::InputStreamReader(InputStream* in, const char16_t* encoding, std::int32_t size)
    : m_in(in), m_converter(text::charset::ByteToCharConverter::getConverter(encoding)),
      m_size(std::max(size, 6)), m_buffer(allocateBlock<signed char>(m_size))
{
}

InputStreamReader::~InputStreamReader() noexcept(false) = default;

void InputStreamReader::requireOpen() const
{
    if (!m_converter) throw IoException(u"stream closed");
}

std::int32_t InputStreamReader::read(char16_t* buffer, std::int32_t n)
{
    requireOpen();
    if (n < 1) return 0;
    std::int32_t done = takeAhead(buffer, n);
    bool stuck = false;
    while (done < n) {
        if (!hasBytes() || stuck) {
            if (!m_atEnd) {
                // Once there is something to give, the reader does not wait for more.
                if (done > 0 && m_in->available() == 0) return done;
                fill();
            }
            if (m_atEnd && !hasBytes()) return atEnd(buffer, n, done);
            if (m_atEnd && stuck) {
                buffer[done++] = replacement;
                ++m_pos;
                stuck = false;
                continue;
            }
        }
        m_converter->convert(m_buffer.get(), &m_pos, m_count, buffer, &done, n);
        if (hasBytes() && done < n) done += convertTail(buffer + done, n - done);
        stuck = hasBytes();
    }
    return n;
}

/// Gives of the units decoded ahead.
std::int32_t InputStreamReader::takeAhead(char16_t* buffer, std::int32_t n) noexcept
{
    const std::int32_t taken = std::min(n, m_aheadCount - m_aheadPos);
    std::copy_n(m_ahead.data() + m_aheadPos, taken, buffer);
    m_aheadPos += taken;
    return taken;
}

/// Decodes a sequence that may only lack room: what does not fit is kept for the next read.
std::int32_t InputStreamReader::convertTail(char16_t* buffer, std::int32_t n)
{
    const auto room = static_cast<std::int32_t>(m_ahead.size());
    if (n >= room) return 0; // it lacks bytes
    m_aheadPos = m_aheadCount = 0;
    try {
        m_converter->convert(m_buffer.get(), &m_pos, m_count, m_ahead.data(), &m_aheadCount, room);
    } catch (const Exception&) {
        // The next read meets the same bytes, when the units before them have been given.
        if (m_aheadCount == 0) throw;
    }
    return takeAhead(buffer, n);
}

std::int32_t InputStreamReader::atEnd(char16_t* buffer, std::int32_t n, std::int32_t done)
{
    m_converter->flush(buffer, &done, n);
    return done > 0 ? done : -1;
}

/// Reads on behind the bytes that are left.
void InputStreamReader::fill()
{
    makeRoom();
    const std::int32_t got = m_in->read(m_buffer.get() + m_count, m_size - m_count);
    if (got < 0) {
        m_atEnd = true;
    } else {
        m_count += got;
    }
}

void InputStreamReader::makeRoom()
{
    const std::int32_t left = std::max(m_count - m_pos, 0);
    if (left >= m_size) {
        if (m_size >= longestSequence) throw IoException(u"stream read error");
        Block<signed char> grown = allocateBlock<signed char>(m_size * 2);
        std::copy_n(m_buffer.get() + m_pos, left, grown.get());
        m_buffer = std::move(grown);
        m_size *= 2;
    } else {
        std::copy_n(m_buffer.get() + m_pos, left, m_buffer.get()); // downward
    }
    m_pos = 0;
    m_count = left;
}

std::int32_t InputStreamReader::available()
{
    requireOpen();
    std::int64_t bytes = m_in->available();
    if (m_count > 0) bytes += m_count - m_pos;
    const std::int64_t units = bytes / std::max(m_converter->getMaxBytesPerChar(), 1);
    const std::int64_t ahead = m_aheadCount - m_aheadPos;
    return static_cast<std::int32_t>(std::min<std::int64_t>(units + ahead, INT32_MAX));
}

void InputStreamReader::close()
{
    m_converter = nullptr;
    m_buffer = nullptr;
    m_pos = m_count = m_aheadPos = m_aheadCount = 0;
    m_in->close();
}

const char16_t* InputStreamReader::getEncodingName()
{
    requireOpen();
    return m_converter->getEncodingName();
}

} // namespace orv::io
