#include "orv/collections/Map.h"
#include "orv/Exceptions.h"
#include "orv/collections/IntegerHashMap.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/AbstractMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/HashMapIterator.h"
#include "orv/collections/quark/HashSet.h"
#include "orv/util/Comparator.h"
#include "platform/orvcore.h"

#include "tests/orv/collections/ChainModel.h"
#include "tests/orv/collections/Elements.h"
#include "tests/support/Living.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <thread>

namespace orv::collections {
namespace {

using quark::HashMap;
using quark::HashSet;
using namespace test;

using Numbers = std::vector<int>;
using Found = ChainModel::Value;

template <class Value>
Found tagOf(const Reference<Value>& value)
{
    return value != nullptr ? dynamic_cast<const Living&>(*value).tag() : Found();
}

// What all the hash maps and the set have in common, held against ChainModel.

/// An object, as the one family of maps takes it and as the other.
struct Given {
    Reference<Object> object;
    operator Object*() const { return object.get(); }
    operator IORVUnknown*() const { return toUnknown(object.get()); }
};

struct NumberKeys {
    using Key = Integer32;
    static std::int32_t plain(std::int32_t key) { return key; }
    static std::uint32_t hash(std::int32_t key) { return static_cast<std::uint32_t>(key); }
    static std::int32_t numberOf(const Key& key) { return key; }
};

/// Texts that begin with a number, of up to 99 units, some beyond the length from which the hash
/// samples: there, pairs of neighbours differ in a unit that it passes over.
struct TextKeys {
    using Key = String;
    static String plain(std::int32_t key)
    {
        String text = String::valueOf(static_cast<std::uint32_t>(key));
        if (key % 3 == 0) text.append(String(u'-', 64 - text.getLength()));
        if (key % 6 == 3) text.setCharAt(61, u'+');
        if (key % 7 == 0) text.append(String(u'x', 35));
        return text;
    }
    static std::uint32_t hash(std::int32_t key) { return plain(key).hashCode(); }
    static std::int32_t numberOf(const Key& key)
    {
        return static_cast<std::int32_t>(ORVStrToULW(key.getData(), nullptr, 10));
    }
};

/// A comparator of our own class, which the maps must ask; counts what it is asked.
struct Asked : util::Comparator {
    Result Hash(const IORVUnknown* a, std::uint32_t* result) const override
    {
        ++hashes;
        return Comparator::Hash(a, result);
    }
    Result Compare(const IORVUnknown* a, const IORVUnknown* b, std::int32_t* result) const override
    {
        ++comparisons;
        return Comparator::Compare(a, b, result);
    }
    mutable int hashes = 0, comparisons = 0;
};

/// One face for all: HashMap when there is a comparator, else a map outside the quark family.
template <class Keys, class Map, class... Comparator>
struct Table : Keys {
    static constexpr bool QUARK = sizeof...(Comparator) != 0;
    Reference<Map> map;

    Table(std::int32_t capacity, float load)
        : map(makeReference<Map>(makeReference<Comparator>().get()...,
                                 makeReference<Comparator>().get()..., capacity, load))
    {
    }
    static auto keyOf(std::int32_t key)
    {
        if constexpr (QUARK) {
            return Given{makeReference<typename Keys::Key>(Keys::plain(key))};
        } else {
            return Keys::plain(key);
        }
    }
    Found put(std::int32_t key, const Reference<Living>& value)
    {
        return tagOf(map->put(keyOf(key), Given{value}));
    }
    Found get(std::int32_t key) { return tagOf(map->get(keyOf(key))); }
    Found remove(std::int32_t key) { return tagOf(map->remove(keyOf(key))); }
    Numbers order() const
    {
        Numbers numbers;
        for (const auto* key : map->createKeySet()) {
            numbers.push_back(Keys::numberOf(dynamic_cast<const typename Keys::Key&>(*key)));
        }
        return numbers;
    }
    /// Outside the quark family the key set goes through a HashSet.
    static Numbers expected(const ChainModel& model)
    {
        if (QUARK) return model.keys();
        ChainModel set(101, 0.75F);
        for (const int key : model.keys(false)) set.put(key, Keys::hash(key), 0);
        return set.keys();
    }
};

using Tables =
    testing::Types<Table<NumberKeys, HashMap, util::Comparator>,
                   Table<TextKeys, HashMap, util::Comparator>, Table<TextKeys, HashMap, Asked>,
                   Table<NumberKeys, IntegerHashMap>, Table<TextKeys, StringHashMap>>;

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
            const std::int32_t key = (pick % 5 == 0 ? -1 : 1) * (pick / 2 + pick % 2 * 2020);
            const std::uint32_t hash = TypeParam::hash(key);
            const auto choice = load == 0.0F && step > 20 ? 130 : random() % 400;
            if (choice == 0) {
                table.map->clear();
                model.clear();
            } else if (choice < 120) {
                ASSERT_EQ(table.remove(key), model.remove(key, hash)) << key;
            } else if (choice < 160) {
                ASSERT_EQ(table.get(key), model.get(key, hash)) << key;
            } else {
                const Found value = step % 9 == 0 ? Found() : step;
                const auto living = value ? makeReference<Living>(*value) : Reference<Living>();
                ASSERT_EQ(table.put(key, living), model.put(key, hash, value)) << key;
            }
            ASSERT_EQ(table.map->getSize(), model.size);
            ASSERT_EQ(table.map->isEmpty(), model.size == 0);
            if (step % 37 != 0) continue;
            const Numbers all = model.keys();
            ASSERT_EQ(table.order(), TypeParam::expected(model)) << step;
            ASSERT_EQ(Living::count() - before,
                      std::count_if(all.begin(), all.end(), [&](int each) {
                          return model.get(each, TypeParam::hash(each)).has_value();
                      }));
        }
        ASSERT_EQ(table.order(), TypeParam::expected(model));
    }
    EXPECT_EQ(Living::count(), before);
}

TEST(StringHashMap, looksUpTextsByLengthAndGivesKeySetsThatStay)
{
    StringHashMap map;
    const auto value = makeReference<Living>(4);
    map.put(String(u"alpha"), value.get());
    map.put(String(u"none"), nullptr);
    const auto keys = map.createKeySet();
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
        EXPECT_EQ(map.containsKey(String(key, length)), found.has_value());
    }
    map.remove(String(u"none"));
    EXPECT_EQ(keys->getSize(), 2);
    EXPECT_TRUE(keys->contains(makeReference<String>(u"none").get()));
}

TEST(IntegerHashMap, usesThePlacesAgainOfWhatIsTakenOut)
{
    IntegerHashMap map;
    static_cast<void>(orvcore::failAllocation(UINT32_MAX, false));
    for (int key = 0; key < 3000; ++key) {
        map.put(key, nullptr);
        map.remove(key - 20);
    }
    EXPECT_GT(orvcore::failAllocation(0, false), 50u) << "few blocks are long ones";
}

/// The keys 1 and 102, which share a bucket of 101, and 7, each with its negative value.
Reference<HashMap> threeEntries()
{
    auto map = makeReference<HashMap>();
    for (const int key : {1, 102, 7}) map->put(boxed(key).get(), boxed(-key).get());
    return map;
}

quark::MapEntry& entryOf(const Reference<IORVUnknown>& element)
{
    return dynamic_cast<quark::MapEntry&>(*element);
}

TEST(HashMap, givesViewsInTheOrderOfItsBucketsAndTakesNullForAKey)
{
    const auto map = threeEntries();
    EXPECT_EQ(map->put(nullptr, boxed(5).get()), nullptr);
    EXPECT_EQ(numbersOf(*map->createValueCollection()), (Numbers{-7, -102, -1, 5}))
        << "null in bucket 0";
    EXPECT_TRUE(map->containsValue(boxed(-102).get()));
    EXPECT_FALSE(map->containsValue(boxed(102).get()));
    EXPECT_EQ(unboxed(map->remove(nullptr)), 5);
    EXPECT_FALSE(map->containsKey(nullptr));
}

TEST(HashMap, chargesOneHashForALookUpAndNoneForGrowth)
{
    const auto asked = makeReference<Asked>();
    const auto map = makeReference<HashMap>(asked.get(), asked.get(), 3, 0.75F);
    for (int key = 0; key < 100; ++key) map->put(boxed(key).get(), nullptr);
    EXPECT_EQ(std::pair(asked->hashes, asked->comparisons), std::pair(100, 0));
    EXPECT_TRUE(map->containsKey(boxed(50).get()));
    EXPECT_EQ(std::pair(asked->hashes, asked->comparisons), std::pair(101, 1));
}

// A copy of a map has its number of buckets; one made of a map has 11, or twice as many as entries.
TEST(HashMap, sizesItselfByTheMapItIsMadeOf)
{
    using Row = std::tuple<int, bool, std::int32_t>;
    for (const auto& [entries, copies, capacity] :
         {Row{5, true, 101}, {5, false, 11}, {6, false, 12}, {40, false, 80}}) {
        const auto source = makeReference<HashMap>();
        for (int key = 1; key <= entries; ++key) source->put(boxed(key * 50).get(), nullptr);
        const quark::Map& entriesOnly = *source;
        const auto map = copies ? makeReference<HashMap>(*source)
                                : makeReference<HashMap>(entriesOnly, HashMap::DEFAULT_LOAD);
        EXPECT_TRUE(map->equals(*source));
        ChainModel model(capacity, 0.75F);
        for (const int key : numbersOf(*source->createKeySet())) {
            model.put(key, NumberKeys::hash(key), {});
        }
        for (int key = 1000; model.size < 100; key += 7) {
            map->put(boxed(key).get(), nullptr);
            model.put(key, NumberKeys::hash(key), {});
        }
        EXPECT_EQ(numbersOf(*map->createKeySet()), model.keys()) << entries;
    }
    const HashMap standing(*threeEntries()); // on the stack, where nothing may count it
    EXPECT_EQ(HashMap(standing).getSize(), 3);
}

TEST(HashMap, endsWalksAtModifications)
{
    using Row = std::tuple<const char*, std::function<void(HashMap&)>, bool>;
    const auto one = boxed(1);
    const auto five = boxed(5);
    const Row rows[] = {
        {"new value", [&](HashMap& map) { map.put(one.get(), five.get()); }, true},
        {"no such key", [&](HashMap& map) { map.remove(five.get()); }, true},
        {"new key", [&](HashMap& map) { map.put(five.get(), nullptr); }, false},
        {"removal", [&](HashMap& map) { map.createKeySet()->remove(one.get()); }, false},
    };
    for (const auto& [what, change, goesOn] : rows) {
        const auto map = threeEntries();
        const auto walker = map->createEntrySet()->createIterator();
        walker->next();
        change(*map);
        EXPECT_TRUE(walker->hasNext()) << what;
        EXPECT_EQ(resultOf([&] { walker->next(); }), goesOn ? S_OK : E_FAIL) << what;
        EXPECT_EQ(resultOf([&] { walker->remove(); }), goesOn ? S_OK : E_FAIL) << what;
    }
}

TEST(HashMap, removesThroughAnIteratorAndClearsBehindItsBack)
{
    const auto map = threeEntries();
    const auto early = map->createKeySet()->createConstIterator();
    const auto walker = map->createEntrySet()->createIterator();
    walker->next();
    const Reference<IORVUnknown> held = walker->next(); // 102, before 1 in its bucket
    map->clear();
    EXPECT_FALSE(walker->hasNext() || early->hasNext());
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(map->getSize(), 3);
    EXPECT_EQ(unboxed(entryOf(held).getKey()), 102);

    const auto other = threeEntries();
    const auto remover =
        makeReference<quark::HashMapIterator>(other.get(), quark::HashMapIterator::VALUES);
    EXPECT_THROW(remover->remove(), IllegalStateException);
    EXPECT_EQ(unboxed(remover->next()), -7);
    EXPECT_TRUE(remover->hasNext()); // stands in the next bucket now
    remover->remove();
    EXPECT_THROW(remover->remove(), IllegalStateException);
    EXPECT_EQ(unboxed(remover->next()), -102);
    EXPECT_EQ(unboxed(remover->next()), -1);
    remover->remove();
    EXPECT_FALSE(remover->hasNext());
    EXPECT_THROW(remover->next(), Exception);
    EXPECT_EQ(numbersOf(*other->createKeySet()), Numbers{102});
    other->createKeySet()->clear();
    EXPECT_EQ(other->getSize(), 0) << "a view counts down";
}

TEST(HashMap, leavesAnEntryToWhoeverHoldsIt)
{
    const int before = Living::count();
    Reference<IORVUnknown> held;
    {
        const auto map = makeReference<HashMap>();
        const auto entries = map->createEntrySet();
        map->put(boxed(1).get(), toUnknown(makeReference<Living>(1).get()));
        held = entries->createIterator()->next();
        EXPECT_TRUE(entryOf(held).equals(*map) && entryOf(held).compareTo(*map) == 0);
        EXPECT_EQ(map->hashCode(), 0u);
        EXPECT_EQ(tagOf(entryOf(held).setValue(toUnknown(makeReference<Living>(2).get()))), 1);
        EXPECT_EQ(tagOf(map->get(boxed(1).get())), 2);
        EXPECT_TRUE(entries->contains(held.get()));
        EXPECT_TRUE(entries->remove(held.get()));
        EXPECT_FALSE(entries->contains(held.get()));
        // Its place must not go to another entry while it is held.
        for (int key = 1; key < 50; ++key) map->put(boxed(key).get(), nullptr);
        EXPECT_THROW(entries->contains(boxed(1).get()), CastFailedException);
        EXPECT_THROW(entries->add(held.get()), UnsupportedOperationException);
    }
    EXPECT_EQ(tagOf(entryOf(held).getValue()), 2);
    held = nullptr;
    EXPECT_EQ(Living::count(), before);
}

TEST(HashMap, takesEntriesBackFromOtherThreads)
{
    const auto map = makeReference<HashMap>();
    const auto allocationsIn = [&](int rounds) {
        static_cast<void>(orvcore::failAllocation(UINT32_MAX, false));
        for (int round = 0; round < rounds; ++round) {
            map->put(nullptr, nullptr);
            const auto held = map->createEntrySet()->createIterator()->next();
            map->remove(nullptr);
        }
        return orvcore::failAllocation(0, false);
    };
    EXPECT_GT(allocationsIn(1), 2u);
    EXPECT_EQ(allocationsIn(100), 200u) << "the set and the iterator, but no place for an entry";

    for (int round = 0; round < 200; ++round) {
        for (int key = 0; key < 20; ++key) map->put(boxed(key).get(), boxed(key).get());
        std::vector<Reference<IORVUnknown>> held;
        for (IORVUnknown* entry : map->createEntrySet()) held.emplace_back(entry);
        map->createKeySet()->clear();
        // The entries go while the map takes new ones.
        std::thread other([entries = std::move(held)]() mutable { entries.clear(); });
        for (int key = 0; key < 20; ++key) map->put(boxed(-key).get(), nullptr);
        other.join();
        map->createKeySet()->clear();
    }
    EXPECT_EQ(map->getSize(), 0);
}

TEST(HashSet, addsWhatIsNotThereAndComparesWithHashSetsOnly)
{
    const auto set = makeReference<HashSet>();
    const auto first = boxed(7);
    EXPECT_TRUE(set->add(first.get()));
    EXPECT_FALSE(set->add(boxed(7).get()));
    EXPECT_EQ(set->createIterator()->next(), first) << "the first one stays";
    fill(*set, {1, 102});
    const auto copy = makeReference<HashSet>(*set);
    const auto filled = makeReference<HashSet>(static_cast<const quark::Collection&>(*set));
    EXPECT_EQ(numbersOf(*set), (Numbers{7, 102, 1}));
    EXPECT_EQ(numbersOf(*copy), (Numbers{7, 1, 102}));
    EXPECT_TRUE(set->equals(*copy) && filled->equals(*copy));
    EXPECT_TRUE(filled->remove(boxed(7).get()));
    EXPECT_FALSE(filled->remove(boxed(7).get()));
    EXPECT_EQ(filled->compareTo(*set), -1);
    EXPECT_THROW(set->equals(*makeReference<HashMap>()), CastFailedException);

    const auto walker = copy->createIterator();
    walker->next();
    walker->remove();
    EXPECT_EQ(numbersOf(*copy), (Numbers{1, 102}));
    set->clear();
    EXPECT_EQ(set->getSize(), 3);
    EXPECT_FALSE(set->contains(first.get()) || set->createIterator()->hasNext());
}

/// A map on a list of entries, which may hold a key twice.
class ListMap : public quark::AbstractMap {
public:
    struct Entry : ::orv::quark::ImplementsVirtual<ComObject, quark::MapEntry> {
        std::int32_t compareTo(const Object&) const override { return 0; }
        bool equals(const Object&) const override { return true; }
        Reference<IORVUnknown> getKey() override { return toUnknown(key.get()); }
        Reference<IORVUnknown> getValue() override { return toUnknown(value.get()); }
        std::uint32_t hashCode() const override { return 0x90000000u; }
        Reference<IORVUnknown> setValue(IORVUnknown*) override { return nullptr; }
        Reference<String> key, value;
    };

    Reference<const quark::Set> createEntrySet() const override { return m_entries; }
    Reference<quark::Set> createEntrySet() override { return m_entries; }

    void append(const char16_t* key, const char16_t* value)
    {
        const auto entry = makeReference<Entry>();
        entry->key = text(key);
        if (value != nullptr) entry->value = text(value);
        m_entries->add(entry->GetUnknown());
    }

private:
    using Entries = ::orv::quark::ImplementsVirtual<quark::ArrayList, quark::Set>;
    Reference<Entries> m_entries = makeReference<Entries>();
};

Reference<ListMap> mapOf(std::initializer_list<std::pair<const char16_t*, const char16_t*>> rows)
{
    auto map = makeReference<ListMap>();
    for (const auto& [key, value] : rows) map->append(key, value);
    return map;
}

TEST(AbstractMap, answersEverythingOutOfItsEntries)
{
    const auto map = mapOf({{u"a", u"1"}, {u"b", nullptr}, {u"a", u"2"}});
    Map<String, String> typed(map.get());
    const auto keys = typed.createKeySet();
    const auto values = typed.createValueCollection();
    map->append(u"c", u"3");
    EXPECT_EQ(typed.getSize(), 4);
    EXPECT_EQ(*typed.get(text(u"a").get()), u"1");
    EXPECT_EQ(typed.get(text(u"b").get()), nullptr);
    EXPECT_TRUE(keys->contains(text(u"b").get()) && values->contains(nullptr));
    EXPECT_FALSE(values->contains(text(u"a").get()) || keys->contains(text(u"1").get()));
    EXPECT_EQ(typed.hashCode(), 0x40000000u) << "the sum wraps";
    EXPECT_THROW(typed.put(text(u"x").get(), nullptr), UnsupportedOperationException);
    EXPECT_THROW(keys->add(text(u"x").get()), UnsupportedOperationException);
    EXPECT_EQ(joined(keys), u"abac") << "views are live";
    EXPECT_EQ(joined(values), u"1-23");
    String pairs;
    for (const auto& [key, value] : typed) {
        pairs.append(*key).append(value == nullptr ? String(u"-") : *value);
    }
    EXPECT_EQ(pairs, u"a1b-a2c3");

    EXPECT_EQ(*typed.remove(text(u"a").get()), u"2") << "all that are equal, the last one's value";
    EXPECT_TRUE(values->remove(text(u"3").get()) && keys->remove(text(u"b").get()));
    EXPECT_TRUE(map->isEmpty());
    map->append(u"d", u"4");
    values->clear();
    EXPECT_EQ(keys->getSize(), 0);
    map->append(u"d", u"4");
    typed.clear();
    EXPECT_TRUE(map->isEmpty());
}

TEST(AbstractMap, ordersByValuesThenBySize)
{
    using Row = std::pair<Reference<ListMap>, std::int32_t>;
    const auto map = mapOf({{u"a", u"1"}, {u"n", nullptr}});
    for (const auto& [other, order] : {Row{mapOf({{u"n", nullptr}, {u"a", u"1"}}), 0},
                                       {mapOf({{u"n", nullptr}, {u"a", u"1"}, {u"b", u"2"}}), -1},
                                       {mapOf({{u"n", nullptr}, {u"a", u"0"}}), 1},
                                       {mapOf({{u"a", u"1"}}), 1},
                                       {mapOf({{u"a", u"1"}, {u"n", u"0"}}), -1}}) {
        EXPECT_EQ(map->compareTo(*other), order);
        EXPECT_EQ(map->equals(*other), order == 0);
    }
    const Map<String, String> typed(map.get());
    EXPECT_EQ(typed.compareTo(*map), 0);
    EXPECT_THROW(static_cast<void>(map->compareTo(String())), CastFailedException);
    EXPECT_FALSE(map->equals(String()));
}

} // namespace
} // namespace orv::collections
