#include "orv/collections/quark/HashMap.h"

#include "orv/Exceptions.h"
#include "orv/String.h"
#include "orv/collections/quark/HashMapIterator.h"
#include "orv/collections/quark/HashSet.h"
#include "orv/util/Comparator.h"

#include "tests/orv/collections/ChainModel.h"
#include "tests/orv/collections/Elements.h"
#include "tests/support/Living.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace orv::collections::quark {
namespace {

using test::boxed;
using test::Living;
using test::numbersOf;
using test::unboxed;
using Numbers = std::vector<int>;

MapEntry& entryOf(const Reference<IORVUnknown>& element)
{
    return dynamic_cast<MapEntry&>(*element);
}

/// The keys 1 and 102, which share a bucket of 101, and 7, each with its negative value.
Reference<HashMap> threeEntries()
{
    auto map = makeReference<HashMap>();
    for (const int key : {1, 102, 7}) map->put(boxed(key).get(), boxed(-key).get());
    return map;
}

TEST(HashMap, givesViewsInTheOrderOfItsBucketsAndTakesNullForAKey)
{
    const auto map = threeEntries();
    EXPECT_EQ(map->put(nullptr, boxed(5).get()), nullptr);
    EXPECT_EQ(numbersOf(*map->createKeySet()), (Numbers{7, 102, 1, -1})) << "null in bucket 0";
    EXPECT_EQ(numbersOf(*map->createValueCollection()), (Numbers{-7, -102, -1, 5}));
    EXPECT_TRUE(map->containsValue(boxed(-102).get()));
    EXPECT_FALSE(map->containsValue(boxed(102).get()));
    EXPECT_EQ(unboxed(map->get(nullptr)), 5);
    EXPECT_EQ(unboxed(map->remove(nullptr)), 5);
    EXPECT_FALSE(map->containsKey(nullptr));
}

TEST(HashMap, chargesOneHashForALookUpAndNoneForGrowth)
{
    struct Counting : util::Comparator {
        Result Hash(const IORVUnknown* a, std::uint32_t* result) const override
        {
            ++hashes;
            return failing ? E_NOT_AVAILABLE : Comparator::Hash(a, result);
        }
        Result Compare(const IORVUnknown* a, const IORVUnknown* b,
                       std::int32_t* result) const override
        {
            ++comparisons;
            return Comparator::Compare(a, b, result);
        }
        mutable int hashes = 0;
        mutable int comparisons = 0;
        bool failing = false;
    };
    const auto counting = makeReference<Counting>();
    const auto map = makeReference<HashMap>(counting.get(), counting.get(), 3, 0.75F);
    for (int key = 0; key < 100; ++key) map->put(boxed(key).get(), nullptr);
    EXPECT_EQ(std::pair(counting->hashes, counting->comparisons), std::pair(100, 0));
    EXPECT_TRUE(map->containsKey(boxed(50).get()));
    EXPECT_EQ(std::pair(counting->hashes, counting->comparisons), std::pair(101, 1));
    counting->failing = true;
    EXPECT_EQ(resultOf([&] { map->put(boxed(500).get(), nullptr); }), E_NOT_AVAILABLE);
    EXPECT_EQ(map->getSize(), 100);
}

// A copy of a map has its number of buckets; one made of a map has 11, or twice as many as entries.
TEST(HashMap, sizesItselfByTheMapItIsMadeOf)
{
    for (const int entries : {3, 5, 6, 7, 40}) {
        const auto source = makeReference<HashMap>();
        for (int key = 1; key <= entries; ++key) source->put(boxed(key * 50).get(), nullptr);
        for (const bool copies : {true, false}) {
            const auto map = copies
                                 ? makeReference<HashMap>(*source)
                                 : makeReference<HashMap>(static_cast<const Map&>(*source), 0.75F);
            EXPECT_TRUE(map->equals(*source));
            test::ChainModel model(copies ? 101 : std::max(11, 2 * entries), 0.75F);
            for (const int key : numbersOf(*source->createKeySet())) {
                model.put(key, static_cast<std::uint32_t>(key), {});
            }
            for (int key = 1000; model.size < 100; key += 7) {
                EXPECT_EQ(numbersOf(*map->createKeySet()), model.downward());
                map->put(boxed(key).get(), nullptr);
                model.put(key, static_cast<std::uint32_t>(key), {});
            }
            EXPECT_EQ(source->getSize(), entries);
        }
    }
    const auto three = threeEntries();
    EXPECT_NE(three->compareTo(*makeReference<HashMap>()), 0);
    EXPECT_EQ(three->hashCode(), 0u);
    const HashMap standing(*three); // on the stack, where nothing may count it
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
        {"removal", [&](HashMap& map) { map.remove(one.get()); }, false},
        {"by a view", [&](HashMap& map) { map.createKeySet()->remove(one.get()); }, false},
    };
    for (const auto& [what, change, goesOn] : rows) {
        SCOPED_TRACE(what);
        const auto map = threeEntries();
        const auto walker = map->createEntrySet()->createIterator();
        walker->next();
        change(*map);
        EXPECT_TRUE(walker->hasNext());
        EXPECT_EQ(resultOf([&] { walker->next(); }), goesOn ? S_OK : E_FAIL);
        EXPECT_EQ(resultOf([&] { walker->remove(); }), goesOn ? S_OK : E_FAIL);
    }
}

TEST(HashMap, removesThroughAnIterator)
{
    const auto map = threeEntries();
    const auto walker = makeReference<HashMapIterator>(map.get(), HashMapIterator::VALUES);
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(unboxed(walker->next()), -7);
    EXPECT_TRUE(walker->hasNext()); // stands in the next bucket now
    walker->remove();
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(unboxed(walker->next()), -102);
    EXPECT_EQ(unboxed(walker->next()), -1);
    walker->remove();
    EXPECT_FALSE(walker->hasNext());
    EXPECT_THROW(walker->next(), Exception);
    EXPECT_EQ(numbersOf(*map->createKeySet()), Numbers{102});
    EXPECT_EQ(map->getSize(), 1);
}

TEST(HashMap, clearsBehindTheBackOfIterators)
{
    const auto map = threeEntries();
    const auto early = map->createKeySet()->createConstIterator();
    const auto walker = map->createEntrySet()->createIterator();
    walker->next();
    const Reference<IORVUnknown> held = walker->next(); // 102, before 1 in its bucket
    map->clear();
    EXPECT_FALSE(walker->hasNext());
    EXPECT_FALSE(early->hasNext());
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(map->getSize(), 3);
    EXPECT_EQ(unboxed(entryOf(held).getKey()), 102);

    const auto full = threeEntries();
    full->createKeySet()->clear();
    EXPECT_EQ(full->getSize(), 0) << "a view counts down";
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
        EXPECT_EQ(entryOf(held).compareTo(*map), 0);
        EXPECT_TRUE(entryOf(held).equals(*map));
        EXPECT_EQ(entryOf(held).hashCode(), 0u);
        const auto old = entryOf(held).setValue(toUnknown(makeReference<Living>(2).get()));
        EXPECT_EQ(dynamic_cast<const Living&>(*map->get(boxed(1).get())).tag(), 2);
        EXPECT_TRUE(entries->contains(held.get()));
        EXPECT_TRUE(entries->remove(held.get()));
        EXPECT_FALSE(entries->contains(held.get()));
        // Its place must not go to another entry while it is held.
        for (int key = 1; key < 50; ++key) map->put(boxed(key).get(), nullptr);
        EXPECT_THROW(entries->contains(boxed(1).get()), CastFailedException);
        EXPECT_THROW(entries->add(held.get()), UnsupportedOperationException);
    }
    EXPECT_EQ(dynamic_cast<const Living&>(*entryOf(held).getValue()).tag(), 2);
    held = nullptr;
    EXPECT_EQ(Living::count(), before);
}

TEST(HashMap, takesEntriesBackFromOtherThreads)
{
    const auto map = makeReference<HashMap>();
    for (int round = 0; round < 200; ++round) {
        for (int key = 0; key < 20; ++key) map->put(boxed(key).get(), boxed(key).get());
        std::vector<Reference<IORVUnknown>> held;
        const auto walker = map->createEntrySet()->createIterator();
        while (walker->hasNext()) {
            held.push_back(walker->next());
            walker->remove();
        }
        // The entries go while the map takes new ones.
        std::thread other([entries = std::move(held)]() mutable { entries.clear(); });
        for (int key = 0; key < 20; ++key) map->put(boxed(-key).get(), nullptr);
        other.join();
        map->createKeySet()->clear();
    }
    EXPECT_EQ(map->getSize(), 0);
}

TEST(HashSet, addsWhatIsNotThere)
{
    const auto set = makeReference<HashSet>();
    const auto first = makeReference<String>(u"a");
    const auto same = makeReference<String>(u"a");
    EXPECT_TRUE(set->add(toUnknown(first.get())));
    EXPECT_FALSE(set->add(toUnknown(same.get())));
    EXPECT_EQ(set->createIterator()->next(), toUnknown(first.get()));
    EXPECT_TRUE(set->contains(toUnknown(same.get())));
    EXPECT_TRUE(set->remove(toUnknown(same.get())));
    EXPECT_FALSE(set->remove(toUnknown(first.get())));
    EXPECT_EQ(first->GetRefCount(), 1u);

    test::fill(*set, {1, 102, 7});
    const auto walker = set->createIterator();
    EXPECT_EQ(unboxed(walker->next()), 7);
    walker->remove();
    EXPECT_EQ(numbersOf(*set), (Numbers{102, 1}));
    set->clear();
    EXPECT_EQ(set->getSize(), 2);
    EXPECT_FALSE(set->createIterator()->hasNext());
}

TEST(HashSet, comparesWithHashSetsOnly)
{
    const auto set = makeReference<HashSet>();
    test::fill(*set, {1, 102, 7});
    const auto copy = makeReference<HashSet>(*set);
    const auto filled = makeReference<HashSet>(static_cast<const Collection&>(*set));
    EXPECT_EQ(numbersOf(*copy), (Numbers{7, 1, 102}));
    EXPECT_TRUE(set->equals(*copy));
    EXPECT_TRUE(filled->equals(*copy));
    EXPECT_EQ(set->hashCode(), 0u);
    filled->remove(boxed(7).get());
    EXPECT_EQ(filled->compareTo(*set), -1);
    EXPECT_EQ(set->compareTo(*set), 0);
    EXPECT_THROW(set->equals(*makeReference<HashMap>()), CastFailedException);
    EXPECT_THROW(set->compareTo(*makeReference<HashMap>()), CastFailedException);
}

} // namespace
} // namespace orv::collections::quark
