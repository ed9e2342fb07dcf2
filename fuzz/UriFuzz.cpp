#include "orv/Exceptions.h"
#include "orv/net/URI.h"
#include "orv/text/charset/CharsetExceptions.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// \file
/// Any text parses, into what a plain second reading of it gives, and prints as text of the same
/// components. What is set as plain text comes back as it was.

namespace {

using orv::String;
using orv::net::URI;
using Text = std::u16string;

void require(bool holds)
{
    if (!holds) std::abort();
}

Text unitsOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

String stringOf(const Text& text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

Text lowerOf(Text text)
{
    for (char16_t& unit : text) unit = ORVToLowerW(unit);
    return text;
}

/// The components of a URI, read plainly. Keys are in lower case.
struct Components {
    std::optional<Text> scheme, user, password, host, path, opaque;
    std::optional<std::int32_t> port;
    std::optional<std::map<Text, Text>> query;

    bool operator==(const Components&) const = default;
};

void readQuery(const Text& text, Components& out)
{
    if (!out.query) out.query.emplace();
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find(u'&', start), text.size());
        const Text item = text.substr(start, end - start);
        const std::size_t sign = item.find(u'=');
        const bool isPair = sign != Text::npos;
        (*out.query)[lowerOf(item.substr(0, sign))] = isPair ? item.substr(sign + 1) : item;
        start = end + 1;
    }
}

void readAuthority(Text text, Components& out)
{
    if (const std::size_t at = text.find(u'@'); at != Text::npos) {
        const Text info = text.substr(0, at);
        const std::size_t colon = info.find(u':');
        out.user = info.substr(0, colon);
        if (colon != Text::npos) out.password = info.substr(colon + 1);
        text = text.substr(at + 1);
    }
    if (const std::size_t colon = text.find(u':'); colon != Text::npos) {
        out.port = ORVStrToIW(text.c_str() + colon + 1);
        text.resize(colon);
    }
    if (!text.empty()) out.host = text;
}

Components readPlainly(Text text)
{
    Components out;
    if (const std::size_t colon = text.find(u':'); colon != Text::npos) {
        out.scheme = text.substr(0, colon);
        text = text.substr(colon + 1);
        if (text.empty() || text[0] != u'/') {
            out.opaque = text;
            return out;
        }
    }
    const auto length = static_cast<std::ptrdiff_t>(text.size());
    const auto find = [&](char16_t unit, std::size_t start) {
        return static_cast<std::ptrdiff_t>(text.find(unit, start));
    };
    const auto part = [&](std::ptrdiff_t from, std::ptrdiff_t to) {
        return from < to ? text.substr(static_cast<std::size_t>(from),
                                       static_cast<std::size_t>(to - from))
                         : Text();
    };
    std::ptrdiff_t slash = text.starts_with(u'/') ? 0 : -1;
    std::ptrdiff_t question = find(u'?', 0);
    if (text.starts_with(u"//")) {
        question = find(u'?', 2);
        slash = find(u'/', 2);
        if (slash < 0) slash = question < 0 ? length : question;
        readAuthority(part(2, slash), out);
    }
    std::ptrdiff_t end = slash;
    if (question != 0 && slash != length && slash != (question < 0 ? -2 : question)) {
        end = question < 0 ? length : question;
        out.path = part(slash + 1, end);
    }
    if (question >= 0) readQuery(part(end + 1, length), out);
    return out;
}

Components componentsOf(const URI& uri)
{
    Components out;
    if (uri.hasScheme()) out.scheme = unitsOf(uri.getScheme());
    if (uri.hasUser()) out.user = unitsOf(uri.getUser(false));
    if (uri.hasPassword()) out.password = unitsOf(uri.getPassword(false));
    if (uri.hasHost()) out.host = unitsOf(uri.getHost(false));
    if (uri.hasPort()) out.port = uri.getPort();
    if (uri.hasPath()) out.path = unitsOf(uri.getPath(false));
    if (uri.hasQuery()) readQuery(unitsOf(uri.getQuery(false)), out);
    if (uri.isOpaque()) out.opaque = unitsOf(uri.getSchemeSpecificPart(false));
    return out;
}

/// Whether the text made of these components says all of them: not where a port stands alone, where
/// nothing or no authority keeps the rest from being read otherwise, or where the authority
/// swallowed the question mark of the query.
bool printsWhole(const Components& parts)
{
    if (parts.opaque) return true;
    if (!parts.user && !parts.host) {
        return !parts.port && parts.path && !parts.path->starts_with(u'/');
    }
    for (const auto& part : {parts.user, parts.password, parts.host}) {
        if (part && part->find(u'?') != Text::npos) return false;
    }
    return true;
}

/// A lone surrogate has no bytes that would lead back to it, and a character of four bytes only
/// where BTCUTF8 takes the second of them, up to 0xAF.
bool isWellFormed(const Text& text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((text[i] & 0xF800) != 0xD800) continue;
        if (text[i] >= 0xDC00 || i + 1 == text.size() || (text[i + 1] & 0xFC00) != 0xDC00) {
            return false;
        }
        const unsigned character = ((text[i] & 0x3FFu) << 10 | (text[i + 1] & 0x3FFu)) + 0x10000;
        if ((character >> 12 & 0x3F) > 0x2F) return false;
        ++i;
    }
    return true;
}

void checkParsing(const Text& text)
{
    const URI uri(stringOf(text));
    const Components parts = componentsOf(uri);
    require(parts == readPlainly(text));
    if (parts.query) {
        for (const auto& [key, value] : *parts.query) {
            require(uri.hasQueryValue(stringOf(key)));
            require(unitsOf(uri.getQueryValue(stringOf(key), false)) == value);
        }
    }
    if (printsWhole(parts)) require(componentsOf(URI(uri.toString())) == parts);

    // Escapes may be cut or stand for half a pair of surrogates; nothing else fails.
    try {
        static_cast<void>(uri.getSchemeSpecificPart(true));
    } catch (const orv::text::charset::InvalidCharacterException&) {
        require(text.find(u'%') != Text::npos || !isWellFormed(text));
    } catch (const orv::Exception& exception) {
        require(text.find(u'%') != Text::npos && exception.getDescription().isEmpty());
    }
}

void checkEscaping(const Text& text)
{
    if (text.empty()) return; // an empty host is not read back
    const String plain = stringOf(text);
    URI uri;
    uri.setScheme(u"s");
    uri.setUser(plain, true);
    uri.setHost(plain, true);
    uri.setPath(plain, true);
    uri.setQueryPair(u"k", plain, true);
    require(uri.getUser(true).equals(plain));
    require(uri.getPath(true).equals(plain));

    const URI again(uri.toString());
    require(again.getHost(true).equals(plain));
    require(again.getPath(true).equals(plain));
    require(again.getQueryValue(u"K", true).equals(plain));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Text text;
    for (std::size_t i = 0; i < size; ++i) {
        // Two bytes behind 0xFF make any unit; all other units are the bytes.
        const bool wide = data[i] == 0xFF && i + 2 < size;
        text += static_cast<char16_t>(wide ? data[i + 1] << 8 | data[i + 2] : data[i]);
        if (wide) i += 2;
    }
    if (isWellFormed(text)) checkEscaping(text);
    // Comparing without regard to case stops at a zero unit, and key order is not told for it.
    if (text.find(u'\0') == Text::npos) checkParsing(text);
    return 0;
}
