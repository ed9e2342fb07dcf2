#include "orv/util/PathNormalizer.h"

#include "orv/Failure.h"

namespace orv::util {

namespace {

enum State : std::int32_t {
    START,
    IN_NAME,
    SEPARATOR,
    SEPARATOR_DOT,
    SEPARATOR_DOTS,
    DOT,
    DOT_SEPARATOR,
    DOTS,
    DOTS_SEPARATOR,
    DONE,
};

enum Kind : std::int32_t { KIND_DOT, KIND_SEPARATOR, KIND_OTHER, KIND_END, KINDS };

/// The next state by the present one and the kind of the character.
constexpr std::int32_t nextStates[DONE][KINDS] = {
    {DOT, SEPARATOR, IN_NAME, DONE},           {IN_NAME, SEPARATOR, IN_NAME, DONE},
    {SEPARATOR_DOT, SEPARATOR, IN_NAME, DONE}, {SEPARATOR_DOTS, SEPARATOR, IN_NAME, DONE},
    {IN_NAME, SEPARATOR, IN_NAME, DONE},       {DOTS, DOT_SEPARATOR, IN_NAME, DONE},
    {DOT, DOT_SEPARATOR, IN_NAME, DONE},       {IN_NAME, DOTS_SEPARATOR, IN_NAME, DONE},
    {DOT, DOTS_SEPARATOR, IN_NAME, DONE},
};

} // namespace

PathNormalizer::PathNormalizer(SLASH_TYPE type)
{
    setSlashType(type);
}

PathNormalizer::~PathNormalizer() noexcept(false) = default;

void PathNormalizer::setSlashType(SLASH_TYPE type)
{
    switch (type) {
    case SLASH_BACK:
    case SLASH_NATIVE: m_separator = u'\\'; return;
    case SLASH_FORWARD: m_separator = u'/'; return;
    }
    throwException(u"Invalid slash type specified.");
}

String PathNormalizer::normalize(const String& path)
{
    m_input.setTo(path);
    m_input.translate(m_separator == u'/' ? u'\\' : u'/', m_separator);
    m_output = String(m_input.getLength() + 2);
    m_state = START;
    for (std::int32_t i = 0; i < m_input.getLength(); ++i) {
        const char16_t unit = m_input[i];
        step(unit == u'.' ? KIND_DOT : unit == m_separator ? KIND_SEPARATOR : KIND_OTHER);
        if (m_state == IN_NAME) m_output.append(unit);
    }
    step(KIND_END);
    return m_output;
}

void PathNormalizer::step(std::int32_t kind)
{
    m_state = transition(nextStates[m_state][kind]);
}

/// Writes what the way from the present state to `next` asks for; returns the state entered.
std::int32_t PathNormalizer::transition(std::int32_t next)
{
    if (next == IN_NAME) {
        if (m_state >= SEPARATOR && m_state <= SEPARATOR_DOTS) m_output.append(m_separator);
        if (m_state == SEPARATOR_DOT || m_state == DOT) m_output.append(u'.');
        if (m_state == SEPARATOR_DOTS || m_state == DOTS) m_output.append(u'.', 2);
        return next;
    }
    if (next == SEPARATOR && m_state == SEPARATOR_DOTS) {
        cutToSeparator(false);
        return m_output.isEmpty() ? START : SEPARATOR;
    }
    if (next == DOTS_SEPARATOR && m_state == DOTS) {
        m_output.append(u'.', 2).append(m_separator);
        return next;
    }
    if (next != DONE) return next;

    switch (m_state) {
    case SEPARATOR:
    case SEPARATOR_DOT: m_output.append(m_separator); break;
    case SEPARATOR_DOTS: cutToSeparator(true); break;
    case DOT:
        if (m_input.equals(u".")) {
            m_output.append(u'.');
        } else if (m_output.isEmpty()) {
            m_output.append(u'.').append(m_separator);
        }
        break;
    case DOT_SEPARATOR: m_output.append(u'.').append(m_separator); break;
    case DOTS: m_output.append(u'.', 2); break;
    default: break;
    }
    return next;
}

/// Takes the last name off the output, with or without the separator before it.
void PathNormalizer::cutToSeparator(bool keepSeparator)
{
    const std::int32_t separator = m_output.lastIndexOf(m_separator);
    const std::int32_t kept = separator < 0 ? 0 : separator + (keepSeparator ? 1 : 0);
    m_output.resize(kept, u' ');
}

} // namespace orv::util
