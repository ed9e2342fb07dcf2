#include "orv/util/StringTokenizer.h"

#include "orv/Failure.h"

namespace orv::util {

namespace {

const char16_t* orBlanks(const char16_t* delimiters) noexcept
{
    return delimiters != nullptr ? delimiters : u" \r\n\t\f";
}

} // namespace

StringTokenizer::StringTokenizer(const String& text, const char16_t* delimiters,
                                 bool returnDelimiters)
    : m_text(text), m_delimiters(orBlanks(delimiters)), m_returnDelimiters(returnDelimiters)
{
}

StringTokenizer::~StringTokenizer() noexcept(false) = default;

std::int32_t StringTokenizer::orPastTheEnd(std::int32_t found) const
{
    return found >= 0 ? found : m_text.getLength() + 1;
}

std::int32_t StringTokenizer::skipDelims(std::int32_t position) const
{
    if (m_returnDelimiters) return position;
    return orPastTheEnd(m_text.findFirstNotOf(m_delimiters, position));
}

std::int32_t StringTokenizer::scanToken(std::int32_t position) const
{
    if (position >= m_text.getLength()) return position;
    const std::int32_t end = orPastTheEnd(m_text.findFirstOfCase(m_delimiters, position));
    return m_returnDelimiters && end == position ? end + 1 : end;
}

bool StringTokenizer::hasMoreTokens()
{
    m_newPosition = skipDelims(m_position);
    return m_newPosition < m_text.getLength();
}

String StringTokenizer::nextToken(const char16_t* delimiters)
{
    if (delimiters != nullptr) m_delimiters = String(delimiters);
    const bool known = m_newPosition != UNKNOWN && delimiters == nullptr;
    m_position = known ? m_newPosition : skipDelims(m_position);
    m_newPosition = UNKNOWN;
    if (m_position >= m_text.getLength()) throwException(u"No such element");

    const std::int32_t start = m_position;
    m_position = scanToken(start);
    return m_text.substring(start, m_position);
}

std::int32_t StringTokenizer::getTokenCount() const
{
    std::int32_t count = 0;
    std::int32_t position = skipDelims(m_position);
    while (position < m_text.getLength()) {
        ++count;
        position = skipDelims(scanToken(position));
    }
    return count;
}

} // namespace orv::util
