#include "orv/net/URI.h"

#include "orv/Exception.h"
#include "orv/net/internal/EscapedText.h"
#include "orv/net/internal/UnitsOf.h"

namespace orv::net {

using internal::EscapedText;
using internal::UnitsOf;

namespace {

void require(bool present)
{
    if (!present) throw Exception();
}

} // namespace

URI::URI() = default;

URI::URI(const String& uri)
{
    setUri(uri, false);
}

URI::URI(const URI& other) = default;

URI& URI::operator=(const URI& other) = default;

URI::~URI() noexcept(false) = default;

// Components in general

URI::View URI::textOf(const Component& component) const
{
    require(component.present);
    return m_texts.get(component.place);
}

String URI::get(const Component& component, bool unescape) const
{
    const View text = textOf(component);
    if (unescape) return internal::unescaped(text);
    return String(text.data(), static_cast<std::int32_t>(text.size()));
}

void URI::set(Component& component, View text, ESCAPE_PART part, bool escape)
{
    if (escape) {
        const EscapedText stored(text, part, true);
        makeRoom(stored.length());
        component = {m_texts.add(stored), true};
        return;
    }
    if (m_texts.holds(text)) {
        component = {m_texts.placeOf(text), true};
        return;
    }
    makeRoom(text.size());
    component = {m_texts.add(text), true};
}

void URI::makeRoom(std::size_t units)
{
    m_texts.makeRoom(units, [this](auto visit) {
        for (Component* component :
             {&m_scheme, &m_user, &m_password, &m_host, &m_path, &m_opaque, &m_unread}) {
            visit(component->place);
        }
    });
}

String URI::getEscapedString(const String& text, ESCAPE_PART part)
{
    const UnitsOf units(text);
    const EscapedText escaped(units.get(), part, true);
    const auto length = static_cast<std::int32_t>(escaped.length());
    String result(length + 1);
    escaped.write(result.getWriteLock(length + 1));
    result.releaseWriteLock(length);
    return result;
}

String URI::getUnescapedString(const String& text)
{
    return internal::unescaped(UnitsOf(text).get());
}

void URI::removeAll()
{
    removeScheme();
    removeSchemeSpecificPart();
}

// Scheme and all behind it

String URI::getScheme() const
{
    return get(m_scheme, false);
}

void URI::setScheme(const String& scheme)
{
    set(m_scheme, UnitsOf(scheme).get(), PART_PATH, false);
}

void URI::removeScheme()
{
    m_scheme = {};
}

bool URI::hasSchemeSpecificPart() const noexcept
{
    return hasAuthority() || hasPath() || hasQuery() || isOpaque();
}

void URI::removeSchemeSpecificPart()
{
    removeAuthority();
    removePath();
    removeQuery();
    m_opaque = {};
}

// Authority

void URI::removeAuthority()
{
    removeUserInfo();
    removeHost();
    removePort();
}

void URI::removeUserInfo()
{
    removeUser();
    removePassword();
}

String URI::getUser(bool unescape) const
{
    return get(m_user, unescape);
}

void URI::setUser(const String& user, bool escape)
{
    set(m_user, UnitsOf(user).get(), PART_AUTHORITY, escape);
}

void URI::removeUser()
{
    m_user = {};
}

String URI::getPassword(bool unescape) const
{
    return get(m_password, unescape);
}

void URI::setPassword(const String& password, bool escape)
{
    set(m_password, UnitsOf(password).get(), PART_AUTHORITY, escape);
}

void URI::removePassword()
{
    m_password = {};
}

String URI::getHost(bool unescape) const
{
    return get(m_host, unescape);
}

void URI::setHost(const String& host, bool escape)
{
    set(m_host, UnitsOf(host).get(), PART_AUTHORITY, escape);
}

void URI::removeHost()
{
    m_host = {};
}

std::int32_t URI::getPort() const
{
    require(m_hasPort);
    return m_port;
}

void URI::setPort(std::int32_t port)
{
    m_port = port;
    m_hasPort = true;
}

void URI::removePort()
{
    m_port = -1;
    m_hasPort = false;
}

// Path

String URI::getPath(bool unescape) const
{
    return get(m_path, unescape);
}

void URI::setPath(const String& path, bool escape)
{
    set(m_path, UnitsOf(path).get(), PART_PATH, escape);
}

void URI::removePath()
{
    m_path = {};
}

// Query

void URI::removeQuery()
{
    m_unread = {};
    m_query.clear();
    m_hasQuery = false;
}

String URI::getQueryValue(const String& key, bool unescape) const
{
    String value;
    pairs().get(UnitsOf(key).get(), value);
    return unescape ? getUnescapedString(value) : value;
}

void URI::setQueryPair(const String& key, const String& value, bool escape)
{
    const UnitsOf keyUnits(key);
    const UnitsOf valueUnits(value);
    pairs().put(EscapedText(keyUnits.get(), PART_QUERY, escape),
                EscapedText(valueUnits.get(), PART_QUERY, escape));
    m_hasQuery = true;
}

void URI::removeQueryPair(const String& key)
{
    pairs().remove(UnitsOf(key).get());
    if (pairs().isEmpty()) m_hasQuery = false;
}

bool URI::hasQueryValue(const String& key) const
{
    return pairs().has(UnitsOf(key).get());
}

// Fragment

String URI::getFragment() const
{
    return String();
}

void URI::setFragment(const String&) {}

} // namespace orv::net
