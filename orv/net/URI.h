#pragma once

#include "orv/String.h"
#include "orv/net/QueryPairs.h"
#include "orv/net/TextPool.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orv::net {

/// A URI, taken apart and put together: scheme, user, password, host, port, path and the pairs of
/// the query.
///
///     URI uri(u"tcp://ann@host:4000/data?Mode=fast");
///     uri.getHost(false);                  // host
///     uri.getQueryValue(u"mode", true);    // fast
///     uri.setPath(u"a b", true);
///     uri.toString();                      // tcp://ann@host:4000/a%20b?Mode=fast
///
/// A component is there or not; an empty one can be there. Components are held escaped. Where an
/// operation that sets one takes a bool, true says that the text is plain and gets escaped; where
/// one that reads takes a bool, true asks for plain text. Asking for a component that is not there
/// throws an Exception without description.
///
/// An escape is "%" and two bytes of the text in UTF-8, which are read as ORVStrToULW() reads a
/// number to the base 16: `%zz` is 0. The bytes that come out are decoded as UTF-8; a sequence that
/// the end cuts off is dropped. Plain text cannot be had, but escaped text can, where fewer than
/// two bytes follow a "%" (Exception without description) and where half a surrogate pair comes out
/// (InvalidCharacterException).
///
/// Any text parses; nothing is validated or normalised, and there are no relative references:
/// - The first colon ends the scheme wherever it stands: `a/b:c` has the scheme `a/b`.
/// - Behind a scheme, what does not begin with a slash is one opaque text: `news:x?y` has no query.
/// - The slash before a path is not part of it: `a/b` and `/a/b` are the same and print as `/a/b`.
/// - The first colon behind the user begins the port, in an IPv6 address too. A port that is no
///   number is 0.
/// - There are no fragments: a "#" and what follows it stay in the path or wherever they are.
/// - A query without anything before it keeps its question mark: `?a=1` has the key `?a` and
///   prints as `??a=1`.
///
/// Query keys are found without regard to case. Pairs come in the order of a HashMap.
///
/// Errors: without memory the component at hand stays as it was; those set before in the same call
/// keep their new text. Threads: one at a time.
class ORV_API URI : public Object {
public:
    /// The kinds of components, which differ in what is escaped in them.
    enum ESCAPE_PART : std::int32_t {
        PART_AUTHORITY = 0, ///< user, password and host
        PART_PATH = 1,
        PART_QUERY = 2, ///< keys and values
    };

    /// No component.
    URI();
    /// The components of `uri`, which is escaped.
    URI(const String& uri);
    URI(const URI& other);
    URI& operator=(const URI& other);
    ~URI() noexcept(false) override;

    /// Sets the components that `uri` has. Others stay as they are, and so does the opaque text:
    /// for a fresh start call removeAll() before. A component whose text ends in half a surrogate
    /// pair cannot be escaped and throws InvalidCharacterException.
    void setUri(const String& uri, bool escape);
    /// The URI as text.
    String toString() const override;

    /// The text before the first colon, as it stands.
    String getScheme() const;
    /// Takes the text as it stands.
    void setScheme(const String& scheme);
    void removeScheme();
    bool hasScheme() const noexcept { return m_scheme.present; }

    /// All behind the colon of the scheme. An opaque text is given as it stands.
    String getSchemeSpecificPart(bool unescape) const;
    /// Parses all behind the colon, as setUri() does.
    void setSchemeSpecificPart(const String& text, bool escape);
    /// Removes all but the scheme.
    void removeSchemeSpecificPart();
    /// Whether there is any of host, user, path, query and opaque text.
    bool hasSchemeSpecificPart() const noexcept;

    /// User, password, host and port as they stand between "//" and the path. A port alone is no
    /// authority.
    String getAuthority(bool unescape) const;
    void setAuthority(const String& text, bool escape);
    void removeAuthority();
    /// Whether there is a host or a user.
    bool hasAuthority() const noexcept { return m_host.present || m_user.present; }

    /// The user, and behind a colon the password if there is one. The password stays escaped.
    String getUserInfo(bool unescape) const;
    void setUserInfo(const String& text, bool escape);
    void removeUserInfo();
    bool hasUserInfo() const noexcept { return m_user.present; }

    /// The user alone: to set or remove it leaves the password.
    String getUser(bool unescape) const;
    void setUser(const String& user, bool escape);
    void removeUser();
    bool hasUser() const noexcept { return m_user.present; }

    /// The password.
    String getPassword(bool unescape) const;
    void setPassword(const String& password, bool escape);
    void removePassword();
    bool hasPassword() const noexcept { return m_password.present; }

    /// The host.
    String getHost(bool unescape) const;
    void setHost(const String& host, bool escape);
    void removeHost();
    bool hasHost() const noexcept { return m_host.present; }

    /// The port.
    std::int32_t getPort() const;
    /// Any number is taken.
    void setPort(std::int32_t port);
    void removePort();
    bool hasPort() const noexcept { return m_hasPort; }

    /// Without the slash that begins it.
    String getPath(bool unescape) const;
    /// Plain text is one segment: its slashes are escaped. Give several segments escaped.
    void setPath(const String& path, bool escape);
    void removePath();
    bool hasPath() const noexcept { return m_path.present; }

    /// The pairs, joined by "&"; empty without a query. Keys stay escaped.
    String getQuery(bool unescape) const;
    /// Adds the pairs of `text` to those that are there. An item without "=" is key and value both.
    void setQuery(const String& text, bool escape);
    void removeQuery();
    bool hasQuery() const noexcept { return m_hasQuery; }

    /// The value for `key`; empty where there is none, see hasQueryValue().
    String getQueryValue(const String& key, bool unescape) const;
    /// Sets the value for `key`, whose first spelling stays.
    void setQueryPair(const String& key, const String& value, bool escape);
    /// Removes the pair, and with the last one the query.
    void removeQueryPair(const String& key);
    bool hasQueryValue(const String& key) const;

    /// There are no fragments: always empty.
    String getFragment() const;
    /// Does nothing.
    void setFragment(const String& fragment);
    /// False.
    bool hasFragment() const noexcept { return false; }

    /// Whether the part behind the scheme is one opaque text.
    bool isOpaque() const noexcept { return m_opaque.present; }
    void removeAll();

private:
    using View = std::u16string_view;
    template <class Out>
    class Printer;

    /// A text, or none.
    struct Component {
        TextPool::Place place;
        bool present = false;
    };

    static String getEscapedString(const String& text, ESCAPE_PART part);
    static String getUnescapedString(const String& text);

    View textOf(const Component& component) const;
    String get(const Component& component, bool unescape) const;
    void set(Component& component, View text, ESCAPE_PART part, bool escape);
    void makeRoom(std::size_t units);
    template <class Print>
    String printed(bool unescape, Print print) const;

    View hold(View text, bool escape);
    void parse(View text, bool escape);
    void parseSchemeSpecificPart(View text, bool escape);
    void parseAuthority(View text, bool escape);
    void parseUserInfo(View text, bool escape);
    void parseQuery(View text, bool escape);
    void parsePairs(View text, bool escape) const;
    QueryPairs& pairs() const;

    TextPool m_texts; ///< of the components
    Component m_scheme;
    Component m_user;
    Component m_password;
    Component m_host;
    Component m_path;
    Component m_opaque;
    std::int32_t m_port = -1;
    bool m_hasPort = false;
    bool m_hasQuery = false;
    mutable Component m_unread; ///< the query as long as nobody has asked for its pairs
    mutable QueryPairs m_query;
};

} // namespace orv::net
