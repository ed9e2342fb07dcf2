#include "orv/Integers.h"
#include "orv/collections/IntegerHashMap.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/util/Comparator.h"

#include "tests/orv/collections/ChainModel.h"
#include "tests/support/Living.h"
#include "tests/support/OutOfMemory.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

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

Found tagOf(const Reference<Object>& value)
{
    if (value == nullptr) return {};
    return dynamic_cast<const Living&>(*value).tag();
}

Found tagOf(const Reference<IORVUnknown>& value)
{
    if (value == nullptr) return {};
    return dynamic_cast<const Living&>(*value).tag();
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

/// A key in an object, and the number that it stands for.
struct Numbers {
    using Key = Integer32;
    static Reference<Key> make(std::int32_t key) { return makeReference<Key>(key); }
    static std::uint32_t hash(std::int32_t key) { return static_cast<std::uint32_t>(key); }
    static std::int32_t numberOf(const Key& key) { return key; }
};

struct Texts {
    using Key = String;
    static Reference<Key> make(std::int32_t key)
    {
        names()[textOf(key)] = key;
        return makeReference<Key>(test::textOf(textOf(key)));
    }
    static std::uint32_t hash(std::int32_t key) { return test::sampledHash(textOf(key)); }
    static std::int32_t numberOf(const Key& key)
    {
        return names().at(std::u16string(test::units(key)));
    }
    static std::map<std::u16string, std::int32_t>& names()
    {
        static std::map<std::u16string, std::int32_t> all;
        return all;
    }
};

/// A comparator of our own class, which the maps must ask.
class Asked : public util::Comparator {
public:
    Result Compare(const IORVUnknown* a, const IORVUnknown* b, std::int32_t* result) const override
    {
        return Comparator::Compare(a, b, result);
    }
};

template <class Elements>
std::vector<std::int32_t> numbersOf(const quark::Collection& elements)
{
    std::vector<std::int32_t> numbers;
    for (const IORVUnknown* element : elements) {
        numbers.push_back(
            Elements::numberOf(dynamic_cast<const typename Elements::Key&>(*element)));
    }
    return numbers;
}

/// HashMap behind the face of the tests.
template <class Elements, class Comparator>
struct QuarkMap : Elements {
    static constexpr bool SETS_VALUES = true;
    Reference<HashMap> map;

    QuarkMap(std::int32_t capacity, float load)
    {
        const auto comparator = makeReference<Comparator>();
        map = makeReference<HashMap>(comparator.get(), comparator.get(), capacity, load);
    }
    Found put(std::int32_t key, Object* value)
    {
        return tagOf(map->put(toUnknown(Elements::make(key).get()), toUnknown(value)));
    }
    Found get(std::int32_t key) { return tagOf(map->get(toUnknown(Elements::make(key).get()))); }
    Found remove(std::int32_t key)
    {
        return tagOf(map->remove(toUnknown(Elements::make(key).get())));
    }
    std::int32_t size() const { return map->getSize(); }
    void clear() { map->clear(); }
    std::vector<std::int32_t> order() const { return numbersOf<Elements>(*map->createKeySet()); }
    static std::vector<std::int32_t> expected(const ChainModel& model) { return model.downward(); }
};

/// The maps outside the quark family, whose key set goes through a HashSet.
template <class Elements, class Plain>
struct PlainMap : Elements {
    static constexpr bool SETS_VALUES = true;
    Plain map;

    PlainMap(std::int32_t capacity, float load) : map(capacity, load) {}
    decltype(auto) keyOf(std::int32_t key)
    {
        if constexpr (std::is_same_v<Elements, Numbers>) {
            return key;
        } else {
            return String(*Elements::make(key));
        }
    }
    Found put(std::int32_t key, Object* value) { return tagOf(map.put(keyOf(key), value)); }
    Found get(std::int32_t key) { return tagOf(map.get(keyOf(key))); }
    Found remove(std::int32_t key) { return tagOf(map.remove(keyOf(key))); }
    std::int32_t size() const
    {
        EXPECT_EQ(map.isEmpty(), map.getSize() == 0);
        return map.getSize();
    }
    void clear() { map.clear(); }
    std::vector<std::int32_t> order() const
    {
        std::vector<std::int32_t> numbers;
        const auto keys = map.createKeySet();
        for (const typename Elements::Key* key : *keys) numbers.push_back(Elements::numberOf(*key));
        return numbers;
    }
    static std::vector<std::int32_t> expected(const ChainModel& model)
    {
        ChainModel set(101, 0.75F);
        for (const ChainModel::Entry& entry : model.upward()) set.put(entry.key, entry.hash, 0);
        return set.downward();
    }
};

using Tables = testing::Types<QuarkMap<Numbers, util::Comparator>,
                              QuarkMap<Texts, util::Comparator>, QuarkMap<Texts, Asked>,
                              PlainMap<Numbers, IntegerHashMap>, PlainMap<Texts, StringHashMap>>;

template <class Table>
class HashTables : public testing::Test {
};
TYPED_TEST_SUITE(HashTables, Tables);

TYPED_TEST(HashTables, agreeWithAPlainTableOfLists)
{
    struct Row {
        std::int32_t capacity;
        float load;
        std::int32_t keys; ///< different ones
    };
    const int before = Living::count();
    std::mt19937 random(7);
    for (const Row& row : {Row{101, 0.75F, 9},
                           {101, 0.75F, 300},
                           {0, 0.75F, 40},
                           {-5, 2.5F, 40},
                           {11, 0.1F, 60},
                           {2, 9.0F, 25},
                           {101, 0.0F, 5}}) {
        SCOPED_TRACE(row.capacity);
        TypeParam table(row.capacity, row.load);
        ChainModel model(row.capacity, row.load);
        for (int step = 0; step < 1200; ++step) {
            // Numbers that share buckets, and negative ones.
            const auto pick = static_cast<std::int32_t>(random() % static_cast<unsigned>(row.keys));
            const std::int32_t key = (pick % 5 == 0 ? -1 : 1) * (pick + pick % 3 * 2020);
            const std::uint32_t hash = TypeParam::hash(key);
            switch (row.load == 0.0F && step > 20 ? 9 : random() % 10) {
            case 0:
                if (random() % 40 == 0) {
                    table.clear();
                    model.clear();
                }
                break;
            case 1:
            case 2:
            case 3: ASSERT_EQ(table.remove(key), model.remove(key, hash)) << key; break;
            case 9: ASSERT_EQ(table.get(key), model.get(key, hash)) << key; break;
            default:
                ASSERT_EQ(table.put(key, makeReference<Living>(step).get()),
                          model.put(key, hash, step))
                    << key;
            }
            ASSERT_EQ(table.size(), model.size);
            if (step % 37 == 0) {
                ASSERT_EQ(table.order(), TypeParam::expected(model)) << step;
            }
        }
        ASSERT_EQ(table.order(), TypeParam::expected(model));
    }
    EXPECT_EQ(Living::count(), before);
}

TYPED_TEST(HashTables, replaceTheValueOfAKeyThatIsThere)
{
    const int before = Living::count();
    {
        TypeParam table(101, 0.75F);
        EXPECT_EQ(table.put(5, makeReference<Living>(1).get()), Found());
        EXPECT_EQ(table.put(5, makeReference<Living>(2).get()), 1);
        EXPECT_EQ(table.put(5, nullptr), 2);
        EXPECT_EQ(Living::count(), before);
        EXPECT_EQ(table.size(), 1);
        EXPECT_EQ(table.get(5), Found());
        EXPECT_EQ(table.remove(5), Found());
        EXPECT_EQ(table.size(), 0);
        table.put(6, makeReference<Living>(3).get());
    }
    EXPECT_EQ(Living::count(), before);
}

TYPED_TEST(HashTables, stayAsTheyWereWithoutMemory)
{
    test::OutOfMemory memory;
    // The key that is put comes to a table without memory, to one that opens its buckets, and to
    // one that grows.
    for (const std::int32_t keys : {0, 8, 16, 75}) {
        const auto make = [&] {
            auto table = std::make_unique<TypeParam>(101, 0.75F);
            for (std::int32_t key = 1; key <= keys; ++key) table->put(key, nullptr);
            return table;
        };
        const std::vector<std::int32_t> order = make()->order();
        memory.check(
            "put beside " + std::to_string(keys), make,
            [](std::unique_ptr<TypeParam>& table) { table->put(1000, nullptr); },
            [&](const std::unique_ptr<TypeParam>& table, bool done) {
                EXPECT_EQ(table->size(), keys + (done ? 1 : 0));
                EXPECT_TRUE(done || table->order() == order);
            });
    }
}

TEST(StringHashMap, givesTheNamesOfALogEntryInTheirOrder)
{
    struct Row {
        std::vector<const char16_t*> put, given;
    };
    const Row rows[] = {
        {{u"level", u"text"}, {u"level", u"text"}},
        {{u"level", u"text", u"name"}, {u"level", u"text", u"name"}},
        {{u"sequence", u"level", u"text", u"name", u"thread", u"timestamp"},
         {u"sequence", u"level", u"text", u"name", u"thread", u"timestamp"}},
        {{u"timestamp", u"thread", u"name", u"text", u"level", u"sequence"},
         {u"sequence", u"level", u"text", u"name", u"thread", u"timestamp"}},
    };
    for (const Row& row : rows) {
        StringHashMap fields;
        for (const char16_t* name : row.put) fields.put(String(name), nullptr);
        std::vector<String> names;
        const auto keys = fields.createKeySet();
        for (const String* name : *keys) names.push_back(*name);
        ASSERT_EQ(names.size(), row.given.size());
        for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(names[i], row.given[i]);
    }
}

TEST(StringHashMap, looksUpTextsByLength)
{
    StringHashMap map;
    const auto value = makeReference<Living>(4);
    map.put(String(u"alpha"), value.get());
    map.put(String(u"none"), nullptr);
    map.put(String(), value.get());
    struct Row {
        const char16_t* key;
        std::int32_t length;
        bool there;
    };
    for (const Row& row : {Row{u"alpha", -1, true},
                           {u"alphabet", 5, true},
                           {u"alpha", 4, false},
                           {u"Alpha", -1, false},
                           {u"none", 4, false},
                           {u"", -1, true},
                           {nullptr, 0, true}}) {
        EXPECT_EQ(map.containsKey(row.key, row.length), row.there);
        EXPECT_EQ(tagOf(map.get(row.key, row.length)), row.there ? Found(4) : Found());
    }
    EXPECT_TRUE(map.containsKey(String(u"alpha")));
    EXPECT_FALSE(map.containsKey(String(u"none")));
    map.remove(String(u"none"));
    EXPECT_EQ(map.getSize(), 2);
}

TEST(StringHashMap, keepsACopyOfTheKey)
{
    StringHashMap map;
    char16_t units[] = u"alias";
    String key(AcquireMode::AcquireAlias, units);
    map.put(key, makeReference<Living>(1).get());
    units[0] = u'o';
    EXPECT_FALSE(map.containsKey(u"olias", -1));
    EXPECT_TRUE(map.containsKey(u"alias", -1));
}

TEST(StringHashMap, givesASetThatDoesNotChangeWithTheMap)
{
    StringHashMap map;
    map.put(String(u"a"), nullptr);
    const auto keys = map.createKeySet();
    map.put(String(u"b"), nullptr);
    map.remove(String(u"a"));
    EXPECT_EQ(keys->getSize(), 1);
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
