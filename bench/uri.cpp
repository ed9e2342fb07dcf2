#include "orv/net/URI.h"

#include "bench/common/Case.h"

#include <memory>
#include <string>
#include <string_view>

#if __has_include(<QUrl>)
#include <QUrl>
#include <QUrlQuery>
#endif
#if __has_include(<Poco/URI.h>)
#include <Poco/URI.h>
#endif

// URIs: taking them apart, putting them together, escaping. Each peer works on the text that it
// keeps itself: UTF-16 units, or bytes in UTF-8.

namespace orv::bench {
namespace {

constexpr std::string_view SHORT = "http://www.example.com/docs/index.html";
constexpr std::string_view FULL = "tcp://user:pw@host:4000/path?k=v&L=2";
constexpr std::string_view LONG =
    "https://www.example.com:8443/shop/items/list?category=books&author=Some%20Body&page=17&"
    "sort=price&order=asc&currency=EUR&language=de&session=8f1e0d2c";

// 64 characters each.
constexpr std::string_view PLAIN =
    "The-quick-brown-fox-jumps-over-the-lazy-dog_0123456789_and-so-on";
constexpr std::string_view BLANKS =
    "The quick brown fox jumps over the lazy dog 0123456789 and so on";
constexpr std::string_view UMLAUTS = "F\xC3\xBCr \xC3\x84rger \xC3\xBC"
                                     "ber \xC3\xB6"
                                     "de Gr\xC3\xBC\xC3\x9F"
                                     "e: 100 P \xE2\x82\xAC "
                                     "und mehr, so l\xC3\xA4uft es eben auf der Stra\xC3\x9F"
                                     "e";

struct Orv {
    static constexpr const char* name = LIBRARY;
    using Text = String;
    using Uri = net::URI;
    static Text make(std::string_view bytes)
    {
        return {bytes.data(), static_cast<std::int32_t>(bytes.size()), u"UTF-8"};
    }
    static Uri parse(const Text& text) { return Uri(text); }
    static Text valueOf(const Text& text, const Text& key)
    {
        return Uri(text).getQueryValue(key, true);
    }
    static Text print(const Uri& uri) { return uri.toString(); }
    static Text host(const Uri& uri) { return uri.getHost(false); }
    static Text build(const Text& path, const Text& value)
    {
        Uri uri;
        uri.setScheme(u"http");
        uri.setHost(u"www.example.com", false);
        uri.setPort(8080);
        uri.setPath(path, true);
        uri.setQueryPair(u"name", value, true);
        uri.setQueryPair(u"page", u"17", true);
        return uri.toString();
    }
    static Text escape(const Text& text)
    {
        Uri uri;
        uri.setPath(text, true);
        return uri.getPath(false);
    }
    static Text unescape(const Text& text)
    {
        Uri uri;
        uri.setPath(text, false);
        return uri.getPath(true);
    }
};

#if __has_include(<QUrl>)
struct Qt {
    static constexpr const char* name = "qt";
    using Text = QString;
    using Uri = QUrl;
    static Text make(std::string_view bytes)
    {
        return QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
    }
    static Uri parse(const Text& text) { return Uri(text, QUrl::TolerantMode); }
    static Text valueOf(const Text& text, const Text& key)
    {
        return QUrlQuery(parse(text)).queryItemValue(key, QUrl::FullyDecoded);
    }
    static Text print(const Uri& uri) { return uri.toString(QUrl::FullyEncoded); }
    static Text host(const Uri& uri) { return uri.host(); }
    static Text build(const Text& path, const Text& value)
    {
        Uri uri;
        uri.setScheme(QStringLiteral("http"));
        uri.setHost(QStringLiteral("www.example.com"));
        uri.setPort(8080);
        uri.setPath(QChar('/') + path);
        QUrlQuery query;
        query.addQueryItem(QStringLiteral("name"), value);
        query.addQueryItem(QStringLiteral("page"), QStringLiteral("17"));
        uri.setQuery(query);
        return uri.toString(QUrl::FullyEncoded);
    }
    static QByteArray escape(const Text& text) { return QUrl::toPercentEncoding(text); }
    static Text unescape(const Text& text) { return QUrl::fromPercentEncoding(text.toUtf8()); }
};
#endif

#if __has_include(<Poco/URI.h>)
struct PocoUri {
    static constexpr const char* name = "poco";
    using Text = std::string;
    using Uri = Poco::URI;
    static Text make(std::string_view bytes) { return Text(bytes); }
    static Uri parse(const Text& text) { return Uri(text); }
    static Text valueOf(const Text& text, const Text& key)
    {
        for (const auto& [name, value] : parse(text).getQueryParameters()) {
            if (name == key) return value;
        }
        return {};
    }
    static Text print(const Uri& uri) { return uri.toString(); }
    static Text host(const Uri& uri) { return uri.getHost(); }
    static Text build(const Text& path, const Text& value)
    {
        Uri uri;
        uri.setScheme("http");
        uri.setHost("www.example.com");
        uri.setPort(8080);
        uri.setPath("/" + path);
        uri.addQueryParameter("name", value);
        uri.addQueryParameter("page", "17");
        return uri.toString();
    }
    static Text escape(const Text& text)
    {
        Text out;
        Uri::encode(text, "/;=?", out);
        return out;
    }
    static Text unescape(const Text& text)
    {
        Text out;
        Uri::decode(text, out);
        return out;
    }
};
#endif

template <class Peer, class Action>
void add(const std::string& testCase, std::string_view bytes, Action action)
{
    addCase(testCase, Peer::name, [=](benchmark::State& state) {
        const auto text = Peer::make(bytes);
        for (auto _ : state) benchmark::DoNotOptimize(action(text));
    });
}

template <class Peer>
void addUri()
{
    using Text = typename Peer::Text;
    for (const auto& [name, text] : {std::pair{"short", SHORT}, {"full", FULL}, {"long", LONG}}) {
        const std::string size = std::string("/") + name;
        add<Peer>("parse" + size, text, [](const Text& in) { return Peer::parse(in); });
        add<Peer>("parse_and_read_host" + size, text,
                  [](const Text& in) { return Peer::host(Peer::parse(in)); });
        if (text != SHORT) {
            // Shared, since a benchmark's body must not throw as it goes, and a String may.
            const auto key =
                std::make_shared<const Text>(Peer::make(text == FULL ? "L" : "session"));
            add<Peer>("parse_and_read_value" + size, text,
                      [key](const Text& in) { return Peer::valueOf(in, *key); });
        }
        addCase("print" + size, Peer::name, [text = text](benchmark::State& state) {
            const auto uri = Peer::parse(Peer::make(text));
            for (auto _ : state) benchmark::DoNotOptimize(Peer::print(uri));
        });
    }
    for (const auto& [name, text] :
         {std::pair{"plain", PLAIN}, {"blanks", BLANKS}, {"umlauts", UMLAUTS}}) {
        const std::string kind = std::string("/") + name;
        add<Peer>("escape" + kind, text, [](const Text& in) { return Peer::escape(in); });
        add<Peer>("build" + kind, text, [](const Text& in) { return Peer::build(in, in); });
    }
    add<Peer>("unescape/blanks", "The%20quick%20brown%20fox%20jumps%20over%20the%20lazy%20dog",
              [](const Text& in) { return Peer::unescape(in); });
    add<Peer>("unescape/umlauts", "%c3%84rger%20%c3%bcber%20%c3%b6de%20Gr%c3%bc%c3%9fe",
              [](const Text& in) { return Peer::unescape(in); });
}

const bool registered = [] {
    addUri<Orv>();
#if __has_include(<QUrl>)
    addUri<Qt>();
#endif
#if __has_include(<Poco/URI.h>)
    addUri<PocoUri>();
#endif
    return true;
}();

} // namespace
} // namespace orv::bench
