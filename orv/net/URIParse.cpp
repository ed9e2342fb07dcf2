#include "orv/Number.h"
#include "orv/net/URI.h"
#include "orv/net/internal/EscapedText.h"
#include "orv/net/internal/UnitsOf.h"

#include <algorithm>
#include <iterator>

namespace orv::net {

using internal::EscapedText;
using internal::UnitsOf;

namespace {

constexpr std::size_t NOT_FOUND = std::u16string_view::npos;

/// The units from `start` up to `end`; empty where they cross.
std::u16string_view between(std::u16string_view text, std::size_t start, std::size_t end)
{
    return start < end ? text.substr(start, end - start) : text.substr(0, 0);
}

/// What stands before the first `unit` and behind it; without one, all and nothing.
struct Split {
    Split(std::u16string_view text, char16_t unit)
        : place(text.find(unit)), before(text.substr(0, place)),
          behind(text.substr(found() ? place + 1 : text.size()))
    {
    }
    bool found() const noexcept { return place != NOT_FOUND; }

    std::size_t place;
    std::u16string_view before;
    std::u16string_view behind;
};

std::int32_t numberIn(std::u16string_view text)
{
    char16_t digits[24];
    if (text.size() < std::size(digits)) {
        *std::copy(text.begin(), text.end(), digits) = 0;
        return ORVStrToIW(digits);
    }
    return Number::parseInt(String(text.data(), static_cast<std::int32_t>(text.size())));
}

} // namespace

/// The text to be parsed. One that is stored as it stands is copied once, and its components are
/// places in the copy.
URI::View URI::hold(View text, bool escape)
{
    if (escape) return text;
    makeRoom(text.size());
    return m_texts.get(m_texts.add(text));
}

void URI::setUri(const String& uri, bool escape)
{
    const UnitsOf units(uri);
    parse(hold(units.get(), escape), escape);
}

void URI::setSchemeSpecificPart(const String& text, bool escape)
{
    const UnitsOf units(text);
    parseSchemeSpecificPart(hold(units.get(), escape), escape);
}

void URI::setAuthority(const String& text, bool escape)
{
    const UnitsOf units(text);
    parseAuthority(hold(units.get(), escape), escape);
}

void URI::setUserInfo(const String& text, bool escape)
{
    const UnitsOf units(text);
    parseUserInfo(hold(units.get(), escape), escape);
}

void URI::setQuery(const String& text, bool escape)
{
    const UnitsOf units(text);
    parseQuery(hold(units.get(), escape), escape);
}

void URI::parse(View text, bool escape)
{
    const Split colon(text, u':');
    if (!colon.found()) return parseSchemeSpecificPart(text, escape);
    set(m_scheme, colon.before, PART_PATH, false);
    parseSchemeSpecificPart(colon.behind, escape);
}

void URI::parseSchemeSpecificPart(View text, bool escape)
{
    if (hasScheme() && !text.starts_with(u'/')) {
        set(m_opaque, text, PART_PATH, false);
        return;
    }

    const bool hasAuthority = text.starts_with(u"//");
    const std::size_t question = text.find(u'?', hasAuthority ? 2 : 0);
    std::size_t pathStart = text.starts_with(u'/') ? 1 : 0;
    bool hasPath = question != 0;
    if (hasAuthority) {
        // A slash counts behind a question mark too, and then the authority has that mark in it.
        const std::size_t slash = text.find(u'/', 2);
        hasPath = slash != NOT_FOUND;
        const std::size_t end = std::min(hasPath ? slash : question, text.size());
        parseAuthority(between(text, 2, end), escape);
        pathStart = end + 1;
    }
    if (hasPath) {
        const std::size_t end = std::min(question, text.size());
        set(m_path, between(text, pathStart, end), PART_PATH, escape);
    }
    if (question == NOT_FOUND) return;
    // A query with nothing before it keeps its question mark.
    parseQuery(text.substr(question == 0 ? 0 : question + 1), escape);
}

void URI::parseAuthority(View text, bool escape)
{
    const Split user(text, u'@');
    if (user.found()) {
        parseUserInfo(user.before, escape);
        text = user.behind;
    }
    const Split port(text, u':');
    if (port.found()) setPort(numberIn(port.behind));
    if (!port.before.empty()) set(m_host, port.before, PART_AUTHORITY, escape);
}

void URI::parseUserInfo(View text, bool escape)
{
    const Split password(text, u':');
    set(m_user, password.before, PART_AUTHORITY, escape);
    if (password.found()) set(m_password, password.behind, PART_AUTHORITY, escape);
}

void URI::parseQuery(View text, bool escape)
{
    if (!escape && !m_unread.present && m_query.isEmpty()) {
        set(m_unread, text, PART_QUERY, false);
    } else {
        static_cast<void>(pairs());
        parsePairs(text, escape);
    }
    m_hasQuery = true;
}

/// Most URIs are taken apart without a look at the pairs of their query: those are read when they
/// are asked for.
QueryPairs& URI::pairs() const
{
    if (m_unread.present) {
        parsePairs(textOf(m_unread), false);
        m_unread = {};
    }
    return m_query;
}

void URI::parsePairs(View text, bool escape) const
{
    const auto separators = std::count(text.begin(), text.end(), u'&');
    m_query.reserve(static_cast<std::size_t>(separators) + 1, text.size());
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(u'&', start), text.size());
        const View item = text.substr(start, end - start);
        const Split pair(item, u'=');
        m_query.put(EscapedText(pair.before, PART_QUERY, escape),
                    EscapedText(pair.found() ? pair.behind : item, PART_QUERY, escape));
        start = end + 1;
    }
}

} // namespace orv::net
