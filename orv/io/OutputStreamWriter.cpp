#include "orv/io/OutputStreamWriter.h"

#include "orv/io/IoExceptions.h"
#include "orv/text/charset/CharsetExceptions.h"

#include <algorithm>
#include <utility>

namespace orv::io {

namespace {

// No encoding needs that many bytes for a character.
constexpr std::int32_t longestSequence = 0x1000;

constexpr bool isLead(char16_t unit) noexcept
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool isTrail(char16_t unit) noexcept
{
    return (unit & 0xFC00) == 0xDC00;
}

} // namespace

OutputStreamWriter::OutputStreamWriter(OutputStream* out, const char16_t* encoding,
                                       std::int32_t size)
    : m_out(out), m_converter(text::charset::CharToByteConverter::getConverter(encoding)),
      m_size(std::max({size, 6, m_converter->getMaxBytesPerChar()})),
      m_buffer(allocateBlock<signed char>(m_size))
{
}

OutputStreamWriter::~OutputStreamWriter() noexcept(false) = default;

void OutputStreamWriter::requireOpen() const
{
    if (!m_converter) throw IoException(u"stream closed");
}

void OutputStreamWriter::write(const char16_t* units, std::int32_t n)
{
    requireOpen();
    if (n < 1) return;
    if (m_keepsLead) {
        const char16_t pair[] = {m_lead, units[0]};
        encode(pair, 2);
        ++units;
        --n;
    }
    if (n > 0) encode(units, n);
}

void OutputStreamWriter::encode(const char16_t* units, std::int32_t n)
{
    std::int32_t pos = 0;
    try {
        encodeFrom(&pos, units, n);
    } catch (...) {
        if (pos > 0) noteEnd(units, pos);
        throw;
    }
    if (pos == n) {
        noteEnd(units, n);
    } else {
        m_lead = units[pos];
        m_keepsLead = true;
    }
}

/// Remembers what the encoder consumed last.
void OutputStreamWriter::noteEnd(const char16_t* units, std::int32_t pos) noexcept
{
    const char16_t last = units[pos - 1];
    m_lead = isLead(last) ? last : u'\0';
    m_keepsLead = false;
}

/// Encodes all but a leading surrogate at the end that the encoder wants to see with its partner.
void OutputStreamWriter::encodeFrom(std::int32_t* pos, const char16_t* units, std::int32_t n)
{
    while (*pos < n) {
        const std::int32_t start = *pos;
        const bool wasEmpty = m_count == 0;
        const std::int32_t produced =
            m_converter->convert(units, pos, n, m_buffer.get(), &m_count, m_size);
        if (*pos == n) {
            if (m_count >= m_size || produced == 0) writeOut();
            return;
        }
        if (wasEmpty && *pos == start) {
            if (*pos == n - 1 && isLead(units[*pos])) return;
            grow();
            continue;
        }
        writeOut();
        if (!isTrail(units[*pos])) continue;
        const char16_t before = *pos > 0 ? units[*pos - 1] : m_lead;
        if (isLead(before)) encodeLeadAgain(before);
    }
}

/// Brings the encoder back into the middle of a pair. When the trailing half finds no room, some
/// encoders have forgotten the leading one by then.
void OutputStreamWriter::encodeLeadAgain(char16_t lead)
{
    signed char dropped[16]; // what an encoder without memory writes has been written already
    std::int32_t from = 0;
    std::int32_t to = 0;
    m_converter->reset();
    m_converter->convert(&lead, &from, 1, dropped, &to, sizeof dropped);
}

void OutputStreamWriter::writeOut()
{
    if (m_count == 0) return;
    m_out->write(m_buffer.get(), m_count);
    m_count = 0;
}

void OutputStreamWriter::grow()
{
    if (m_size >= longestSequence) throw IoException(u"stream write error");
    Block<signed char> grown = allocateBlock<signed char>(m_size * 2);
    std::copy_n(m_buffer.get(), m_count, grown.get());
    m_buffer = std::move(grown);
    m_size *= 2;
}

void OutputStreamWriter::flush()
{
    requireOpen();
    if (m_keepsLead) {
        throw text::charset::InvalidCharacterException(u"leading surrogate without trailing");
    }
    m_converter->flush(m_buffer.get(), &m_count, m_size);
    while (m_count > 0) {
        writeOut();
        m_converter->flush(m_buffer.get(), &m_count, m_size);
    }
    m_out->flush();
}

void OutputStreamWriter::close()
{
    m_converter = nullptr;
    m_buffer = nullptr;
    m_count = 0;
    m_out->close();
}

const char16_t* OutputStreamWriter::getEncodingName()
{
    requireOpen();
    return m_converter->getEncodingName();
}

} // namespace orv::io
