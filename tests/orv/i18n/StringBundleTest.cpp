#include "orv/Exceptions.h"
#include "orv/collections/List.h"
#include "orv/collections/StringHashMap.h"
#include "orv/i18n/ComStringBundle.h"
#include "orv/i18n/StringMapBundle.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace orv::i18n {
namespace {

using namespace std::string_view_literals;
using collections::StringHashMap;

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
std::string textOf(StringBundle& bundle, const char16_t* key)
{
    String text;
    const auto refusal = test::refusalOf([&] { text = bundle.getString(key); });
    return text.isEmpty() ? refusal.second : text.getBytes(u"UTF-8");
}

/// A component that has keys and does not give them.
class Broken : public StringMapBundle {
public:
    using StringMapBundle::StringMapBundle;
    Result GetResource(std::int32_t, util::ICharBuffer*, util::ICharBuffer*) const override
    {
        return E_NOT_AVAILABLE;
    }
};

TEST(ComStringBundle, takesTextsAndKeysFromItsComponent)
{
    const auto map = mapOf({{u"a", u"A"}, {u"empty", u""}});
    const auto component = makeReference<StringMapBundle>(map.get(), nullptr);
    const auto bundle = makeReference<ComStringBundle>(component.get(), nullptr);
    EXPECT_EQ(textOf(*bundle, u"a"), "A");
    EXPECT_EQ(textOf(*bundle, u"c"), "Resource not found");
    EXPECT_EQ(textOf(*bundle, u"empty"), "Resource not found") << "counts as missing";
    EXPECT_EQ(keysOf(*bundle).size(), 8u);
    EXPECT_EQ(bundle->getKeys(), bundle->getKeys()) << "read once";

    std::int32_t count = 7;
    EXPECT_EQ(bundle->GetCount(&count), E_NOTIMPL);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(bundle->GetResource(0, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(resultOf([&] { ComStringBundle(bundle.get(), nullptr).getKeys(); }), E_NOTIMPL);
    const auto broken = makeReference<Broken>(map.get(), nullptr);
    EXPECT_EQ(resultOf([&] { ComStringBundle(broken.get(), nullptr).getKeys(); }), E_NOT_AVAILABLE);
}

TEST(StringMapBundle, addsWhatItsParentHas)
{
    const auto parent = makeReference<StringMapBundle>(
        mapOf({{u"a", u"parent's"}, {u"p", u"P"}, {u"e", u"E"}}).get(), nullptr);
    const auto map = mapOf({{u"a", u"A"}, {u"e", u""}});
    const auto bundle = makeReference<MapBundle>(map.get(), parent.get());
    for (const auto& [key, text] :
         {std::pair{u"a", "A"}, {u"p", "P"}, {u"e", "E"}, {u"x", "Resource not found"}}) {
        EXPECT_EQ(textOf(*bundle, key), text);
    }
    EXPECT_EQ(keysOf(*bundle).find('p'), 4u) << "behind its own";
    map->put(u"n", makeReference<Object>().get());
    EXPECT_EQ(bundle->getKeys()->getSize(), 3) << "read once";
    EXPECT_THROW(bundle->getString(u"n"), CastFailedException);
}

TEST(StringMapBundle, answersThroughItsInterface)
{
    const auto bundle = makeReference<StringMapBundle>(mapOf({{u"k", u"0123456789"}}).get(),
                                                       makeReference<Locale>(u"de_AT").get());
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
        const std::u16string copied(u"0123456789\0"sv.substr(0, length));
        EXPECT_EQ(buffer, copied + std::u16string(20 - length, u'#'));
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
