#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/net/URI.h"
#include "orv/net/internal/EscapedText.h"

#include <algorithm>
#include <limits>

namespace orv::net {

namespace {

/// Counts the units that are printed.
struct Counted {
    void put(std::u16string_view text) noexcept { units += text.size(); }
    void putStored(std::u16string_view text) noexcept { put(text); }

    std::size_t units = 0;
};

/// Writes them where there is room.
struct Written {
    void put(std::u16string_view text) noexcept { end = std::copy(text.begin(), text.end(), end); }
    void putStored(std::u16string_view text) noexcept { put(text); }

    char16_t* end;
};

/// Appends them, with what is stored in plain text.
struct Plain {
    void put(std::u16string_view units)
    {
        text.append(units.data(), static_cast<std::int32_t>(units.size()));
    }
    void putStored(std::u16string_view units) { text.append(internal::unescaped(units)); }

    String text;
};

} // namespace

/// Prints parts of a URI to one of these.
template <class Out>
class URI::Printer {
public:
    Printer(const URI& uri, Out& out) : m_uri(uri), m_out(out) {}

    void all()
    {
        if (m_uri.hasScheme()) {
            m_out.put(m_uri.textOf(m_uri.m_scheme));
            m_out.put(u":");
        }
        schemeSpecificPart();
    }

    void schemeSpecificPart()
    {
        if (m_uri.isOpaque()) return m_out.put(m_uri.textOf(m_uri.m_opaque));
        if (m_uri.hasAuthority()) {
            m_out.put(u"//");
            authority();
        }
        if (m_uri.hasPath()) {
            m_out.put(u"/");
            m_out.putStored(m_uri.textOf(m_uri.m_path));
        }
        if (m_uri.hasQuery()) {
            m_out.put(u"?");
            query();
        }
    }

    void authority()
    {
        if (!m_uri.hasAuthority()) throw Exception();
        if (m_uri.hasUser()) {
            userInfo();
            m_out.put(u"@");
        }
        if (m_uri.hasHost()) m_out.putStored(m_uri.textOf(m_uri.m_host));
        if (m_uri.hasPort()) port();
    }

    void userInfo()
    {
        m_out.putStored(m_uri.textOf(m_uri.m_user));
        if (!m_uri.hasPassword()) return;
        m_out.put(u":");
        m_out.put(m_uri.textOf(m_uri.m_password));
    }

    void query()
    {
        bool first = true;
        m_uri.pairs().forEach([&](View key, View value) {
            if (!first) m_out.put(u"&");
            first = false;
            m_out.put(key);
            m_out.put(u"=");
            m_out.putStored(value);
        });
    }

private:
    void port()
    {
        char16_t digits[34];
        ORVLToStrW(m_uri.m_port, digits, 10);
        m_out.put(u":");
        m_out.put(digits);
    }

    const URI& m_uri;
    Out& m_out;
};

template <class Print>
String URI::printed(bool unescape, Print print) const
{
    if (unescape) {
        Plain plain;
        print(Printer<Plain>(*this, plain));
        return plain.text;
    }
    Counted counted;
    print(Printer<Counted>(*this, counted));
    if (counted.units >= std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();
    const auto length = static_cast<std::int32_t>(counted.units);
    String text(length + 1);
    Written written{text.getWriteLock(length + 1)};
    print(Printer<Written>(*this, written));
    text.releaseWriteLock(length);
    return text;
}

String URI::toString() const
{
    return printed(false, [](auto printer) { printer.all(); });
}

String URI::getSchemeSpecificPart(bool unescape) const
{
    return printed(unescape, [](auto printer) { printer.schemeSpecificPart(); });
}

String URI::getAuthority(bool unescape) const
{
    return printed(unescape, [](auto printer) { printer.authority(); });
}

String URI::getUserInfo(bool unescape) const
{
    return printed(unescape, [](auto printer) { printer.userInfo(); });
}

String URI::getQuery(bool unescape) const
{
    return printed(unescape, [](auto printer) { printer.query(); });
}

} // namespace orv::net
