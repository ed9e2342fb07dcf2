#include "orv/Integers.h"
#include "orv/collections/IntegerHashMap.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/util/Comparator.h"

#include "tests/orv/collections/ChainModel.h"
#include "tests/support/Living.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

// What all the hash maps and the set have in common, held against ChainModel.

namespace orv::collections {
namespace {

using quark::HashMap;
using test::ChainModel;
using test::Living;

using Found = std::optional<std::int32_t>;

template <class Value>
Found tagOf(const Reference<Value>& value)
{
    return value != nullptr ? dynamic_cast<const Living&>(*value).tag() : Found();
}

/// Texts of up to 99 units, some beyond the length from which the hash samples: there, pairs of
/// neighbours differ in a unit that it passes over.
std::u16string textOf(std::int32_t key)
{
    std::u16string text;
    for (auto rest = static_cast<std::uint32_t>(key); rest != 0; rest /= 10) {
        text += static_cast<char16_t>(u'0' + rest % 10);
    }
    if (key % 3 == 0) text.append(static_cast<std::size_t>(64 - text.size()), u'-');
    if (key % 6 == 3) text[61] = u'+';
    if (key % 7 == 0) text.append(35, u'x');
    return text;
}

/// An object, as the one family of maps takes it and as the other.
struct Given {
    Reference<Object> object;
    operator Object*() const { return object.get(); }
    operator IORVUnknown*() const { return toUnknown(object.get()); }
};

/// Numbers for keys: as the objects that key sets hold, and as IntegerHashMap takes them.
struct Numbers {
    using Key = Integer32;
    static Reference<Key> make(std::int32_t key) { return makeReference<Key>(key); }
    static std::int32_t plain(std::int32_t key) { return key; }
    static std::uint32_t hash(std::int32_t key) { return static_cast<std::uint32_t>(key); }
    static std::int32_t numberOf(const Key& key) { return key; }
};

struct Texts {
    using Key = String;
    static Reference<Key> make(std::int32_t key) { return makeReference<Key>(plain(key)); }
    static String plain(std::int32_t key)
    {
        s_names[textOf(key)] = key;
        return test::textOf(textOf(key));
    }
    static std::uint32_t hash(std::int32_t key) { return plain(key).hashCode(); }
    static std::int32_t numberOf(const Key& key)
    {
        return s_names.at(std::u16string(test::units(key)));
    }
    static inline std::map<std::u16string, std::int32_t> s_names;
};

/// A comparator of our own class, which the maps must ask.
struct Asked : util::Comparator {};

/// One face for all: HashMap when there is a comparator, else a map outside the quark family.
template <class Elements, class Map, class Comparator = void>
struct Table : Elements {
    static constexpr bool QUARK = std::is_same_v<Map, HashMap>;
    Reference<Map> map;

    Table(std::int32_t capacity, float load)
    {
        if constexpr (QUARK) {
            const auto comparator = makeReference<Comparator>();
            map = makeReference<Map>(comparator.get(), comparator.get(), capacity, load);
        } else {
            map = makeReference<Map>(capacity, load);
        }
    }
    static auto keyOf(std::int32_t key)
    {
        if constexpr (QUARK) {
            return Given{Elements::make(key)};
        } else {
            return Elements::plain(key);
        }
    }
    Found put(std::int32_t key, const Reference<Living>& value)
    {
        return tagOf(map->put(keyOf(key), Given{value}));
    }
    Found get(std::int32_t key) { return tagOf(map->get(keyOf(key))); }
    Found remove(std::int32_t key) { return tagOf(map->remove(keyOf(key))); }
    std::vector<std::int32_t> order() const
    {
        std::vector<std::int32_t> numbers;
        const auto keys = map->createKeySet();
        for (const auto* key : *keys) {
            numbers.push_back(
                Elements::numberOf(dynamic_cast<const typename Elements::Key&>(*key)));
        }
        return numbers;
    }
    /// Outside the quark family the key set goes through a HashSet.
    static std::vector<std::int32_t> expected(const ChainModel& model)
    {
        if (QUARK) return model.downward();
        ChainModel set(101, 0.75F);
        for (const ChainModel::Entry& entry : model.upward()) set.put(entry.key, entry.hash, 0);
        return set.downward();
    }
};

using Tables = testing::Types<Table<Numbers, HashMap, util::Comparator>,
                              Table<Texts, HashMap, util::Comparator>, Table<Texts, HashMap, Asked>,
                              Table<Numbers, IntegerHashMap>, Table<Texts, StringHashMap>>;

template <class Table>
class HashTables : public testing::Test {
};
TYPED_TEST_SUITE(HashTables, Tables);

TYPED_TEST(HashTables, agreeWithAPlainTableOfLists)
{
    using Row = std::tuple<std::int32_t, float, std::int32_t>;
    const int before = Living::count();
    std::mt19937 random(7);
    for (const auto& [capacity, load, keys] : {Row{101, 0.75F, 9},
                                               {101, 0.75F, 300},
                                               {0, 0.75F, 40},
                                               {-5, 2.5F, 40},
                                               {11, 0.1F, 60},
                                               {2, 9.0F, 25},
                                               {101, 0.0F, 5}}) {
        SCOPED_TRACE(capacity);
        TypeParam table(capacity, load);
        ChainModel model(capacity, load);
        for (int step = 0; step < 1200; ++step) {
            // Numbers that share buckets, and negative ones.
            const auto pick = static_cast<std::int32_t>(random() % static_cast<unsigned>(keys));
            const std::int32_t key = (pick % 5 == 0 ? -1 : 1) * (pick + pick % 3 * 2020);
            const std::uint32_t hash = TypeParam::hash(key);
            switch (load == 0.0F && step > 20 ? 9 : random() % 10) {
            case 0:
                if (random() % 40 != 0) break;
                table.map->clear();
                model.clear();
                break;
            case 1:
            case 2:
            case 3: ASSERT_EQ(table.remove(key), model.remove(key, hash)) << key; break;
            case 9: ASSERT_EQ(table.get(key), model.get(key, hash)) << key; break;
            default: {
                const Found value = step % 9 == 0 ? Found() : step;
                const auto living = value ? makeReference<Living>(*value) : Reference<Living>();
                ASSERT_EQ(table.put(key, living), model.put(key, hash, value)) << key;
            }
            }
            ASSERT_EQ(table.map->getSize(), model.size);
            ASSERT_EQ(table.map->isEmpty(), model.size == 0);
            if (step % 37 != 0) continue;
            ASSERT_EQ(table.order(), TypeParam::expected(model)) << step;
            const auto entries = model.upward();
            ASSERT_EQ(Living::count() - before,
                      std::count_if(entries.begin(), entries.end(),
                                    [](const auto& entry) { return entry.value.has_value(); }));
        }
        ASSERT_EQ(table.order(), TypeParam::expected(model));
    }
    EXPECT_EQ(Living::count(), before);
}

TEST(StringHashMap, looksUpTextsByLength)
{
    StringHashMap map;
    const auto value = makeReference<Living>(4);
    map.put(String(u"alpha"), value.get());
    map.put(String(u"none"), nullptr);
    map.put(String(), value.get());
    using Row = std::tuple<const char16_t*, std::int32_t, Found>;
    for (const auto& [key, length, found] : {Row{u"alpha", -1, 4},
                                             {u"alphabet", 5, 4},
                                             {u"alpha", 4, {}},
                                             {u"Alpha", -1, {}},
                                             {u"none", 4, {}},
                                             {u"", -1, 4},
                                             {nullptr, 0, 4}}) {
        EXPECT_EQ(tagOf(map.get(key, length)), found);
        EXPECT_EQ(map.containsKey(key, length), found.has_value());
    }
    EXPECT_TRUE(map.containsKey(String(u"alpha")));
    EXPECT_FALSE(map.containsKey(String(u"none")));
    map.remove(String(u"none"));
    EXPECT_EQ(map.getSize(), 2);
}

TEST(StringHashMap, itsKeysAndKeySetsAreCopies)
{
    StringHashMap map;
    char16_t units[] = u"alias";
    const String key(AcquireMode::AcquireAlias, units);
    map.put(key, nullptr);
    const auto keys = map.createKeySet();
    units[0] = u'o';
    map.put(String(u"b"), nullptr);
    map.remove(String(u"alias"));
    EXPECT_TRUE(keys->contains(makeReference<String>(u"alias").get()));
    EXPECT_EQ(keys->getSize(), 1);
    EXPECT_EQ(map.getSize(), 1);
    map.clear();
    EXPECT_EQ(map.createKeySet()->getSize(), 0);
}

TEST(StringHashMap, packsAnewWhatLeavesHoles)
{
    // Many more entries in turn than ever at a time, of growing length.
    StringHashMap map;
    for (std::int32_t i = 0; i < 3000; ++i) {
        const auto name = [](std::int32_t n) { return String(u'k', n % 200) + String::valueOf(n); };
        map.put(name(i), makeReference<Living>(i).get());
        ASSERT_EQ(tagOf(map.remove(name(i - 20))), i < 20 ? Found() : Found(i - 20));
    }
    EXPECT_EQ(map.getSize(), 20);
    EXPECT_EQ(map.createKeySet()->getSize(), 20);
}

} // namespace
} // namespace orv::collections
