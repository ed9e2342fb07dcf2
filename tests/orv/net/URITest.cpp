#include "orv/net/URI.h"

#include "orv/Exceptions.h"
#include "orv/collections/Map.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/net/QueryKey.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::net {
namespace {

using namespace std::string_view_literals;

/// The components as stored, each behind a letter; what is absent is left out.
String componentsOf(const URI& uri)
{
    String text;
    const auto add = [&](const char16_t* letter, bool present, auto value) {
        if (present) text.append(text.isEmpty() ? u"" : u" ").append(letter).append(value());
    };
    add(u"s:", uri.hasScheme(), [&] { return uri.getScheme(); });
    add(u"u:", uri.hasUser(), [&] { return uri.getUser(false); });
    add(u"w:", uri.hasPassword(), [&] { return uri.getPassword(false); });
    add(u"h:", uri.hasHost(), [&] { return uri.getHost(false); });
    add(u"n:", uri.hasPort(), [&] { return String::valueOf(uri.getPort()); });
    add(u"p:", uri.hasPath(), [&] { return uri.getPath(false); });
    add(u"q:", uri.hasQuery(), [&] { return uri.getQuery(false); });
    add(u"o:", uri.isOpaque(), [&] { return uri.getSchemeSpecificPart(false); });
    return text;
}

/// An Exception without description.
const test::Refusal bareException{E_FAIL, ""};

TEST(URI, anyTextParses)
{
    using Row = std::tuple<const char16_t*, const char16_t*, const char16_t*>;
    for (const auto& [text, components, printed] : {
             Row{u"tcp://user:pw@host:4000/path?k=v",
                 u"s:tcp u:user w:pw h:host n:4000 p:path q:k=v",
                 u"tcp://user:pw@host:4000/path?k=v"},
             {u"//host", u"h:host", u"//host"},
             {u"//host:80/x", u"s://host o:80/x", u"//host:80/x"},
             {u"file:/a/b", u"s:file p:a/b", u"file:/a/b"},
             {u"news:x?y", u"s:news o:x?y", u"news:x?y"},
             {u"s:", u"s:s o:", u"s:"},
             {u"", u"p:", u"/"},
             {u"a/b:c", u"s:a/b o:c", u"a/b:c"},
             {u"?a=1", u"q:?a=1", u"??a=1"},
             {u"a?y", u"p:a q:y=y", u"/a?y=y"},
             {u"a?=v=w", u"p:a q:=v=w", u"/a?=v=w"},
             {u"s://h?q=/1", u"s:s h:h?q= p: q:q=/1", u"s://h?q=/?q=/1"},
             {u"x://h#frag", u"s:x h:h#frag", u"x://h#frag"},
             {u"s://u:w:x@h@i", u"s:s u:u w:w:x h:h@i", u"s://u:w:x@h@i"},
             {u"s://h:", u"s:s h:h n:0", u"s://h:0"},
             {u"s://h: -7x", u"s:s h:h n:-7", u"s://h:-7"},
             {u"s://:80/", u"s:s n:80 p:", u"s:/"},
             {u"s://[::1]:80", u"s:s h:[ n:0", u"s://[:0"},
             {u"s://u%2@h%/%zz?%=%1", u"s:s u:u%2 h:h% p:%zz q:%=%1", u"s://u%2@h%/%zz?%=%1"},
         }) {
        const URI uri(text);
        EXPECT_EQ(componentsOf(uri), components) << test::readable(text);
        EXPECT_EQ(uri.toString(), printed);
    }
}

TEST(URI, whatIsAbsentIsRefusedAndWhatIsEmptyIsNot)
{
    const URI uri;
    for (String (URI::*const get)(bool) const :
         {&URI::getUser, &URI::getPassword, &URI::getHost, &URI::getPath, &URI::getAuthority,
          &URI::getUserInfo}) {
        EXPECT_EQ(test::refusalOf([&] { (uri.*get)(false); }), bareException);
    }
    EXPECT_EQ(test::refusalOf([&] { uri.getScheme(); }), bareException);
    EXPECT_EQ(test::refusalOf([&] { uri.getPort(); }), bareException);
    const URI portOnly(u"s://:80");
    EXPECT_EQ(test::refusalOf([&] { portOnly.getAuthority(false); }), bareException);
    EXPECT_EQ(portOnly.getQueryValue(u"k", true), u"");
    EXPECT_FALSE(portOnly.hasSchemeSpecificPart());

    URI empties;
    empties.setScheme(u"");
    empties.setUserInfo(u":", false);
    empties.setHost(u"", false);
    empties.setPath(u"", true);
    empties.setQuery(u"", true);
    EXPECT_EQ(componentsOf(empties), u"s: u: w: h: p: q:");
    EXPECT_EQ(empties.toString(), u"://:@/?");
}

TEST(URI, aParseLeavesWhatTheTextLacks)
{
    URI uri(u"s://u:w@h:1/p?a=1");
    uri.setUri(u"t://i?B=2", false);
    EXPECT_EQ(componentsOf(uri).substring(0, 26), u"s:t u:u w:w h:i n:1 p:p q:");
    EXPECT_TRUE(uri.hasQueryValue(u"A") && uri.hasQueryValue(u"b"));
    uri.setUri(u"u:x", false);
    uri.setUri(u"v://j", false);
    EXPECT_EQ(uri.toString(), u"v:x") << "opaque until that is removed";
    uri.removeSchemeSpecificPart();
    EXPECT_EQ(componentsOf(uri), u"s:v");
    uri.setSchemeSpecificPart(u"//u@k:5/q", false);
    uri.removeUserInfo();
    uri.removePath();
    EXPECT_EQ(componentsOf(uri), u"s:v h:k n:5");
    uri.removeAuthority();
    EXPECT_FALSE(uri.hasPort());
    uri.setPort(9);
    uri.removeAll();
    EXPECT_EQ(componentsOf(uri), u"");
    EXPECT_EQ(uri.toString(), u"");
}

/// The query that a map of keys and values makes.
String queryOf(const collections::Map<QueryKey, String>& pairs)
{
    String text;
    for (const auto& [key, value] : pairs) {
        if (!text.isEmpty()) text.append(u'&');
        text.append(*key).append(u'=').append(*value);
    }
    return text;
}

TEST(URI, pairsComeInTheOrderOfAHashMap)
{
    URI uri;
    collections::Map<QueryKey, String> map(makeReference<collections::quark::HashMap>().get());
    std::uint32_t state = 1;
    for (std::uint32_t i = 0; i < 1500; ++i) {
        state = state * 1664525 + 1013904223;
        String key = (state >> 8 & 1) != 0 ? u"K\u00C4" : u"k\u00E4";
        key.append(String::valueOf((state >> 16) % (i < 500 ? 40 : 400)));
        const auto object = makeReference<QueryKey>(key);
        const bool removes = (state >> 9) % 4 == 0;
        if (removes) {
            uri.removeQueryPair(key);
            map.remove(object.get());
        } else {
            uri.setQueryPair(key, String::valueOf(i), false);
            map.put(object.get(), makeReference<String>(String::valueOf(i)).get());
        }
        ASSERT_EQ(uri.hasQueryValue(key), !removes);
        ASSERT_EQ(uri.getQuery(false), queryOf(map)) << i;
    }
    EXPECT_GT(map.getSize(), 200);
    const String query = queryOf(map);
    URI copy(uri), assigned(u"s://h/p?a=1");
    assigned = copy;
    copy.setQueryPair(u"x", u"1", false);
    EXPECT_EQ(assigned.toString(), u"?" + query);
    assigned.removeAll();
    EXPECT_EQ(uri.getQuery(false), query) << "copies are on their own";

    for (const auto& [key, value] : map) {
        ASSERT_EQ(copy.getQueryValue(*key, true), *value);
        uri.removeQueryPair(*key);
    }
    EXPECT_FALSE(uri.hasQuery()) << "with the last pair";
    copy.removeQuery();
    copy.setQueryPair(u"a", u"1", false);
    EXPECT_EQ(copy.getQuery(false), u"a=1") << "nothing is left of earlier pairs";
}

TEST(URI, eachPartHasItsOwnEscapes)
{
    const String ascii(u" !\"#$%&'()*+,-./0:;<=>?@A[\\]^_`a{|}~\x7F");
    URI uri;
    uri.setUser(ascii, true);
    uri.setPath(ascii, true);
    uri.setQueryPair(u"", ascii, true);
    EXPECT_EQ(uri.getUser(false), u"%20!%22%23$%25&'()*+,-.%2F0%3A%3B%3C=%3E%3F%40"
                                  u"A%5B%5C%5D%5E_%60a%7B%7C%7D~%7F");
    EXPECT_EQ(uri.getPath(false), u"%20!%22%23$%25&'()*+,-.%2F0:%3B%3C%3D%3E%3F@"
                                  u"A%5B%5C%5D%5E_%60a%7B%7C%7D~%7F");
    EXPECT_EQ(uri.getQueryValue(u"", false),
              u"%20!%22%23%24%25%26'()*%2B%2C-.%2F0%3A%3B%3C%3D%3E%3F%40"
              u"A%5B%5C%5D%5E_%60a%7B%7C%7D~%7F");
    for (const String& plain :
         {uri.getUser(true), uri.getPath(true), uri.getQueryValue(u"", true)}) {
        EXPECT_EQ(plain, ascii);
    }

    const String all = test::textOf(u"\0\n\x1F\u00E9\u20AC\U0001F600\xDC00"
                                    u"x"sv);
    uri.setHost(all, true);
    EXPECT_EQ(uri.getHost(false), u"%00%0A%1F%c3%a9%e2%82%ac%f0%9f%98%80%ed%b0%80x");
    uri.setPassword(u"a:b\u00E9", true);
    EXPECT_EQ(uri.getPassword(true), u"a:b\u00E9");
    EXPECT_EQ(uri.getUserInfo(true).substring(ascii.getLength()), u":a%3Ab%c3%a9")
        << "the password stays escaped";
    const String longText(u'\u20AC', 1000);
    uri.setPath(longText, true);
    EXPECT_EQ(uri.getPath(true), longText);

    EXPECT_THROW(uri.setHost(test::textOf(u"x\xD800"sv), true),
                 text::charset::InvalidCharacterException);
    EXPECT_TRUE(uri.getHost(false).startsWith(u"%00")) << "and changes nothing";
    EXPECT_THROW(uri.getHost(true), text::charset::InvalidCharacterException) << "half a pair";
}

TEST(URI, aParseThatEscapesCutsFirst)
{
    URI uri;
    uri.setUri(u"s p://u s:w@h o:8/a/b?k k=v=", true);
    EXPECT_EQ(componentsOf(uri), u"s:s p u:u%20s w:w h:h%20o n:8 p:a%2Fb q:k%20k=v%3D");
    EXPECT_EQ(uri.getSchemeSpecificPart(true), u"//u s:w@h o:8/a/b?k%20k=v=");
    uri.setUri(u"s:a b", true);
    EXPECT_EQ(uri.getSchemeSpecificPart(true), u"a b");
}

TEST(URI, escapesAreReadAsNumbers)
{
    using Row = std::pair<const char16_t*, std::u16string_view>;
    URI uri;
    for (const auto& [escaped, plain] : {
             Row{u"a b", u"a b"sv},
             {u"%41%6a%6A", u"Ajj"sv},
             {u"%zz|%z1|%1z|% 1|%+2|%0x|%\u00E9|", u"\0|\0|\1|\1|\2|\0|\0|"sv},
             {u"%-1", u"\uFFFD"sv},
             {u"%c3%A9%f0%9f%98%80%00", u"\u00E9\U0001F600\0"sv},
             {u"\u00E9%e9xyz", u"\u00E9\uFFFDxyz"sv},
             {u"a%e2%82", u"a"sv}, // what is cut at the end is dropped
             {u"%25%32%35", u"%25"sv},
         }) {
        uri.setHost(escaped, false);
        EXPECT_EQ(test::readable(test::units(uri.getHost(true))), test::readable(plain));
    }
    for (const char16_t* const cut : {u"%", u"a%4", u"%41%", u"\u00E9%\u007F"}) {
        uri.setHost(cut, false);
        EXPECT_EQ(test::refusalOf([&] { uri.getHost(true); }), bareException);
        EXPECT_EQ(uri.getHost(false), cut);
    }
}

TEST(URI, aTextThatCannotBeLockedIsReported)
{
    test::ForeignCharBuffer buffer(u"s://h\0"sv);
    const String text(String::AcquireAddRef, &buffer);
    buffer.failWith = E_NOT_AVAILABLE;
    URI uri(u"t:");
    EXPECT_EQ(resultOf([&] { uri.setUri(text, false); }), E_NOT_AVAILABLE);
    EXPECT_EQ(uri.toString(), u"t:");
    EXPECT_EQ(buffer.openLocks(), 0);
}

TEST(QueryKey, isBlindToCaseAsAnObjectOnly)
{
    const QueryKey key(u"\u00C4b"), same(u"\u00E4B"), other(u"c");
    EXPECT_FALSE(key.equals(other));
    EXPECT_EQ(key.compareTo(same), 0);
    EXPECT_GT(key.compareTo(other), 0);
    EXPECT_EQ(key.hashCode(), String(u"\u00E4b").hashCode());
    EXPECT_FALSE(key.equals(Exception()));
    EXPECT_THROW(key.compareTo(Exception()), CastFailedException);
    EXPECT_EQ(key, u"\u00C4b") << "the spelling stays";
    EXPECT_FALSE(key == same);
    QueryKey copy(other);
    copy.hashCode();
    copy = key;
    EXPECT_TRUE(copy.equals(same)) << "and forgets the lower case of before";
}

} // namespace
} // namespace orv::net
