#include "orv/Exceptions.h"
#include "orv/collections/List.h"
#include "orv/collections/StringHashMap.h"
#include "orv/i18n/ComStringBundle.h"
#include "orv/i18n/StringMapBundle.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <vector>

namespace orv::i18n {
namespace {

using namespace std::string_view_literals;
using collections::StringHashMap;

/// A component with the texts of its map.
class Component : public ::orv::quark::Implements<Object, IORVResourceBundle> {
public:
    std::map<std::u16string, std::u16string> texts{{u"a", u"A"}, {u"b", u"B"}};
    Result countFailsWith = S_OK;
    Result resourceFailsWith = S_OK;

    Result LoadCharBuffer(const char16_t* key, util::ICharBuffer* text) const override
    {
        const auto found = texts.find(key);
        return found == texts.end() ? E_NOT_FOUND : copy(found->second, text);
    }
    Result LoadStringW(const char16_t*, char16_t*, std::uint32_t*) const override
    {
        return E_NOTIMPL;
    }
    Result GetCount(std::int32_t* count) const override
    {
        *count = static_cast<std::int32_t>(texts.size());
        return countFailsWith;
    }
    Result GetResource(std::int32_t index, util::ICharBuffer* key,
                       util::ICharBuffer* text) const override
    {
        EXPECT_EQ(text, nullptr);
        return failed(resourceFailsWith) ? resourceFailsWith
                                         : copy(std::next(texts.begin(), index)->first, key);
    }
    Result GetLocale(IORVLocale**) const override { return E_NOTIMPL; }

private:
    static Result copy(const std::u16string& from, util::ICharBuffer* to)
    {
        String text(from.c_str());
        return ORVCopyCharBuffer(to, &text);
    }
};

constexpr GUID REGISTERED{1, 2, 3, {4}};
std::vector<std::string> s_asked;
std::u16string s_registered;
Result s_createResult = S_OK;

Reference<Locale> locale(const char16_t* text)
{
    return makeReference<Locale>(text);
}

Reference<StringHashMap>
mapOf(std::initializer_list<std::pair<const char16_t*, const char16_t*>> rows)
{
    auto map = makeReference<StringHashMap>();
    for (const auto& [key, text] : rows) map->put(key, makeReference<String>(text).get());
    return map;
}

class MapBundle : public StringMapBundle {
public:
    MapBundle(StringHashMap* map, StringBundle* parent) : StringMapBundle(map, nullptr)
    {
        m_parent = parent;
    }
};

std::string keysOf(StringBundle& bundle)
{
    std::string joined;
    const auto keys = bundle.getKeys();
    for (const String* key : *keys) joined.append(key->getBytes(u"UTF-8")).append(" ");
    return joined;
}

/// The text of a key, or what is said where it has none.
String textOf(StringBundle& bundle, const char16_t* key)
{
    try {
        return bundle.getString(key);
    } catch (const Exception& exception) {
        return exception.getDescription();
    }
}

} // namespace
} // namespace orv::i18n

// These stand before those of the platform, and play a registry with one component.

ORVResult ORVComClassIDFromProgID(const char16_t* progId, GUID* out) noexcept
{
    using namespace orv::i18n;
    s_asked.push_back(orv::test::readable(progId));
    *out = REGISTERED;
    return s_registered == progId ? S_OK : E_NOTIMPL;
}

ORVResult ORVModuleComCreateObject(const void* token, const GUID& classId, void* outer,
                                   const GUID& iid, void** out)
{
    using namespace orv;
    EXPECT_NE(token, nullptr);
    EXPECT_EQ(outer, nullptr);
    EXPECT_TRUE(equalGuid(classId, i18n::REGISTERED));
    EXPECT_TRUE(equalGuid(iid, i18n::IORVResourceBundle::IID));
    *out = nullptr;
    if (failed(i18n::s_createResult)) return i18n::s_createResult;
    *out = static_cast<i18n::IORVResourceBundle*>(makeReference<i18n::Component>().detach());
    return S_OK;
}

namespace orv::i18n {
namespace {

std::string askedFor(const char16_t* text, const char16_t* registered, String* found)
{
    s_asked.clear();
    s_registered = registered;
    try {
        const Reference<Locale> wanted = text == nullptr ? nullptr : locale(text);
        const auto bundle = StringBundle::getBundle(u"Msg", wanted.get());
        *found = bundle->getLocale()->toString();
        EXPECT_EQ(bundle->getString(u"a"), u"A");
    } catch (const Exception& exception) {
        *found = exception.getDescription();
    }
    std::string joined;
    for (const std::string& each : s_asked) {
        EXPECT_EQ(each.rfind("Tessaly.Msg.StringBundle.", 0), 0u) << each;
        joined.append(each.substr(25)).append(" ");
    }
    return joined;
}

TEST(StringBundle, isLookedUpFromTheWholeLocaleToTheLanguage)
{
    const test::ScopedVariable variable("LC_ALL", "de_AT.UTF-8@x");
    String found;
    using Row = std::tuple<const char16_t*, std::u16string, std::string_view, const char16_t*>;
    for (const auto& [wanted, registered, asked, expected] : {
             Row{u"en_GB@euro", u"", "en_GB@euro en_GB en de_AT@x de_AT de en_US en ",
                 u"Resource not found"},
             {u"en_GB@euro", u"en_GB", "en_GB@euro en_GB ", u"en_GB"},
             {u"fr", u"de", "fr de_AT@x de_AT de ", u"de"},
             {nullptr, u"en_US", "de_AT@x de_AT de en_US ", u"en_US"},
         }) {
        const std::u16string name = u"Tessaly.Msg.StringBundle." + registered;
        EXPECT_EQ(askedFor(wanted, name.c_str(), &found), asked);
        EXPECT_EQ(found, expected);
    }
    s_createResult = E_FAIL;
    EXPECT_EQ(askedFor(u"de", u"Tessaly.Msg.StringBundle.de", &found),
              "de de_AT@x de_AT de en_US en ");
    EXPECT_EQ(found, u"Resource not found");
    s_createResult = S_OK;
}

TEST(ComStringBundle, takesTextsAndKeysFromItsComponent)
{
    const auto component = makeReference<Component>();
    const auto bundle = makeReference<ComStringBundle>(component.get(), locale(u"de").get());
    component->texts[u"empty"] = u"";
    EXPECT_EQ(bundle->getString(u"b"), u"B");
    EXPECT_EQ(textOf(*bundle, u"c"), u"Resource not found");
    EXPECT_EQ(textOf(*bundle, u"empty"), u"Resource not found")
        << "an empty text counts as missing";

    component->resourceFailsWith = E_NOT_AVAILABLE;
    EXPECT_THROW(bundle->getKeys(), ResultException);
    component->resourceFailsWith = S_OK;
    EXPECT_EQ(keysOf(*bundle), "a b empty ");
    component->texts.erase(u"a");
    EXPECT_EQ(keysOf(*bundle), "a b empty ") << "read once";
    component->countFailsWith = E_NOT_AVAILABLE;
    EXPECT_THROW(bundle->getKeys(), ResultException);
    std::int32_t count = 7;
    EXPECT_EQ(bundle->GetCount(&count), E_NOTIMPL);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(bundle->GetResource(0, nullptr, nullptr), E_NOTIMPL);
}

TEST(StringMapBundle, addsWhatItsParentHas)
{
    const auto parent = makeReference<StringMapBundle>(
        mapOf({{u"a", u"parent's"}, {u"p", u"P"}, {u"e", u"E"}}).get(), nullptr);
    const auto map = mapOf({{u"a", u"A"}, {u"e", u""}});
    const auto bundle = makeReference<MapBundle>(map.get(), parent.get());
    for (const auto& [key, text] :
         {std::pair{u"a", u"A"}, {u"p", u"P"}, {u"e", u"E"}, {u"x", u"Resource not found"}}) {
        EXPECT_EQ(textOf(*bundle, key), text);
    }
    EXPECT_EQ(bundle->getKeys()->getSize(), 3);
    EXPECT_EQ(keysOf(*bundle).find('p'), 4u) << "behind its own";

    map->put(u"n", makeReference<String>(u"N").get());
    EXPECT_EQ(bundle->getKeys()->getSize(), 3) << "read once";
    map->put(u"o", makeReference<Object>().get());
    EXPECT_THROW(bundle->getString(u"o"), CastFailedException);
    EXPECT_TRUE(StringMapBundle(mapOf({}).get(), nullptr).getKeys()->isEmpty());
}

TEST(StringMapBundle, answersThroughItsInterface)
{
    const auto bundle = makeReference<StringMapBundle>(mapOf({{u"k", u"0123456789"}}).get(),
                                                       locale(u"de_AT").get());
    IORVResourceBundle* const face = bundle.get();
    test::ForeignCharBuffer key(u""sv), text(u""sv);
    EXPECT_EQ(face->LoadCharBuffer(u"k", &text), S_OK);
    EXPECT_EQ(text.text(), u"0123456789"sv);
    EXPECT_EQ(face->LoadCharBuffer(u"x", &text), E_FAIL);
    EXPECT_EQ(face->LoadCharBuffer(nullptr, &text), E_POINTER);

    for (const auto& [room, length] : {std::pair{4u, 4u}, {10u, 10u}, {11u, 11u}, {20u, 11u}}) {
        std::u16string buffer(20, u'#');
        std::uint32_t units = room;
        EXPECT_EQ(face->LoadStringW(u"k", buffer.data(), &units), S_OK);
        EXPECT_EQ(units, length);
        EXPECT_EQ(buffer.substr(0, length), std::u16string(u"0123456789\0"sv).substr(0, length));
        EXPECT_EQ(buffer.find_first_not_of(u'#', length), std::u16string::npos);
    }

    std::int32_t count = 0;
    EXPECT_EQ(face->GetCount(&count), S_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(face->GetResource(0, &key, &text), S_OK);
    EXPECT_EQ(key.text(), u"k"sv);
    EXPECT_EQ(face->GetResource(0, &key, nullptr), S_OK);
    EXPECT_EQ(face->GetResource(1, &key, nullptr), E_FAIL);

    IORVLocale* found = nullptr;
    ASSERT_EQ(face->GetLocale(&found), S_OK);
    const auto held = Reference<IORVLocale>::adopt(found);
    EXPECT_EQ(held->ToString(&text), S_OK);
    EXPECT_EQ(text.text(), u"de_AT"sv);
}

TEST(StringMapBundle, manyThreadsReadTheKeysOnce)
{
    const auto bundle = makeReference<StringMapBundle>(mapOf({{u"a", u"A"}}).get(), nullptr);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { EXPECT_EQ(bundle->getKeys()->getSize(), 1); });
    }
}

} // namespace
} // namespace orv::i18n
