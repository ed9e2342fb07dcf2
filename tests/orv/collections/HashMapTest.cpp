#include "orv/collections/quark/HashMap.h"

#include "orv/Exceptions.h"
#include "orv/Integers.h"
#include "orv/String.h"
#include "orv/collections/quark/HashMapIterator.h"
#include "orv/collections/quark/HashSet.h"
#include "orv/util/Comparator.h"

#include "tests/support/Living.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace orv::collections::quark {
namespace {

using test::Living;

/// A count on an object for one call.
class Box {
public:
    Box(std::int32_t value) : m_object(makeReference<Integer32>(value)) {}
    operator IORVUnknown*() const { return toUnknown(m_object.get()); }

private:
    Reference<Object> m_object;
};

std::int32_t valueOf(const IORVUnknown* element)
{
    return dynamic_cast<const Integer32&>(*element);
}

MapEntry& entryOf(const Reference<IORVUnknown>& element)
{
    return dynamic_cast<MapEntry&>(*element);
}

std::vector<std::int32_t> walk(const Collection& collection)
{
    std::vector<std::int32_t> values;
    for (const IORVUnknown* element : collection) values.push_back(valueOf(element));
    return values;
}

/// The keys 1 and 102, which share a bucket of 101, and 7, each with its negative value.
Reference<HashMap> threeEntries()
{
    auto map = makeReference<HashMap>();
    for (const std::int32_t key : {1, 102, 7}) map->put(Box(key), Box(-key));
    return map;
}

TEST(HashMap, givesViewsInTheOrderOfItsBuckets)
{
    const auto map = threeEntries();
    EXPECT_EQ(walk(*map->createKeySet()), (std::vector<std::int32_t>{7, 102, 1}));
    EXPECT_EQ(walk(*map->createValueCollection()), (std::vector<std::int32_t>{-7, -102, -1}));
    EXPECT_TRUE(map->containsValue(Box(-102)));
    EXPECT_FALSE(map->containsValue(Box(102)));
}

TEST(HashMap, takesNullForAKey)
{
    const auto map = threeEntries();
    EXPECT_EQ(map->put(nullptr, Box(5)), nullptr);
    EXPECT_EQ(valueOf(map->get(nullptr).get()), 5);
    const auto keys = map->createKeySet()->createIterator();
    for (int i = 0; i < 3; ++i) keys->next();
    EXPECT_EQ(keys->next(), nullptr); // in bucket 0, so the last
    EXPECT_NE(map->remove(nullptr), nullptr);
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
    for (std::int32_t key = 0; key < 100; ++key) map->put(Box(key), nullptr);
    EXPECT_EQ(counting->hashes, 100);
    EXPECT_EQ(counting->comparisons, 0);
    EXPECT_TRUE(map->containsKey(Box(50)));
    EXPECT_EQ(counting->hashes, 101);
    EXPECT_EQ(counting->comparisons, 1);

    counting->failing = true;
    try {
        map->put(Box(500), nullptr);
        FAIL();
    } catch (const ResultException& e) {
        EXPECT_EQ(e.getResult(), E_NOT_AVAILABLE);
    }
    EXPECT_EQ(map->getSize(), 100);
}

TEST(HashMap, copiesComparatorsCapacityAndEntries)
{
    const auto map = threeEntries();
    const auto copy = makeReference<HashMap>(*map);
    EXPECT_EQ(walk(*copy->createKeySet()), (std::vector<std::int32_t>{7, 1, 102}));
    EXPECT_TRUE(copy->equals(*map));
    copy->put(Box(7), Box(70));
    EXPECT_EQ(valueOf(map->get(Box(7)).get()), -7);
    EXPECT_NE(copy->compareTo(*map), 0);
    EXPECT_EQ(copy->hashCode(), 0u);

    const HashMap standing(*map); // on the stack, where nothing may count it
    EXPECT_EQ(HashMap(standing).getSize(), 3);
}

TEST(HashMap, sizesItselfByTheMapItIsMadeOf)
{
    // Up to five entries get 11 buckets, more twice their number: the order tells.
    struct Row {
        std::int32_t entries, buckets, thresholdEntries;
    };
    for (const Row& row : {Row{5, 11, 8}, {6, 12, 9}}) {
        const auto source = makeReference<HashMap>();
        for (std::int32_t key = 1; key <= row.entries; ++key) source->put(Box(key), nullptr);
        const auto map = makeReference<HashMap>(static_cast<const Map&>(*source), 0.75F);
        for (std::int32_t key = row.entries + 1; key < row.thresholdEntries; ++key) {
            map->put(Box(key), nullptr);
        }
        map->put(Box(row.buckets), nullptr); // fills bucket 0 and makes the map full
        EXPECT_EQ(walk(*map->createKeySet()).back(), row.buckets);
        map->put(Box(-1), nullptr); // grows
        EXPECT_EQ(walk(*map->createKeySet()).back(), 1);
    }
}

TEST(HashMap, endsWalksAtModifications)
{
    struct Row {
        const char* what;
        std::function<void(HashMap&)> change;
        bool goesOn;
    };
    const Row rows[] = {
        {"new value", [](HashMap& map) { map.put(Box(1), Box(9)); }, true},
        {"no such key", [](HashMap& map) { map.remove(Box(5)); }, true},
        {"new key", [](HashMap& map) { map.put(Box(5), nullptr); }, false},
        {"removal", [](HashMap& map) { map.remove(Box(1)); }, false},
        {"removal from a view", [](HashMap& map) { map.createKeySet()->remove(Box(1)); }, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto map = threeEntries();
        const auto walker = map->createEntrySet()->createIterator();
        walker->next();
        row.change(*map);
        EXPECT_TRUE(walker->hasNext());
        if (row.goesOn) {
            EXPECT_NO_THROW(walker->next());
            EXPECT_NO_THROW(walker->remove());
        } else {
            EXPECT_THROW(walker->next(), Exception);
            EXPECT_THROW(walker->remove(), Exception);
        }
    }
}

TEST(HashMap, removesThroughAnIterator)
{
    const auto map = threeEntries();
    const auto walker = makeReference<HashMapIterator>(map.get(), HashMapIterator::VALUES);
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(valueOf(walker->next().get()), -7);
    EXPECT_TRUE(walker->hasNext()); // stands in the next bucket now
    walker->remove();
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(valueOf(walker->next().get()), -102);
    EXPECT_EQ(valueOf(walker->next().get()), -1);
    walker->remove();
    EXPECT_FALSE(walker->hasNext());
    EXPECT_THROW(walker->next(), Exception);
    EXPECT_EQ(walk(*map->createKeySet()), std::vector<std::int32_t>{102});
    EXPECT_EQ(map->getSize(), 1);
}

TEST(HashMap, clearsBehindTheBackOfIterators)
{
    const auto map = threeEntries();
    const auto walker = map->createEntrySet()->createIterator();
    walker->next();
    const Reference<IORVUnknown> held = walker->next(); // 102, before 1 in its bucket
    map->clear();
    EXPECT_FALSE(walker->hasNext());
    EXPECT_THROW(walker->remove(), IllegalStateException);
    EXPECT_EQ(map->getSize(), 3);
    EXPECT_EQ(valueOf(entryOf(held).getKey().get()), 102);

    const auto early = map->createKeySet()->createConstIterator();
    map->clear();
    EXPECT_FALSE(early->hasNext());
    // clear() of a view counts down.
    const auto full = threeEntries();
    full->createKeySet()->clear();
    EXPECT_EQ(full->getSize(), 0);
}

TEST(HashMap, leavesAnEntryToWhoeverHoldsIt)
{
    const int before = Living::count();
    Reference<IORVUnknown> held;
    {
        const auto map = makeReference<HashMap>();
        map->put(Box(1), toUnknown(makeReference<Living>(1).get()));
        held = map->createEntrySet()->createIterator()->next();
        EXPECT_EQ(entryOf(held).compareTo(*map), 0);
        EXPECT_TRUE(entryOf(held).equals(*map));
        EXPECT_EQ(entryOf(held).hashCode(), 0u);
        const auto old = entryOf(held).setValue(toUnknown(makeReference<Living>(2).get()));
        EXPECT_EQ(dynamic_cast<const Living&>(*map->get(Box(1))).tag(), 2);
        EXPECT_TRUE(map->createEntrySet()->contains(held.get()));
        EXPECT_TRUE(map->createEntrySet()->remove(held.get()));
        EXPECT_FALSE(map->createEntrySet()->contains(held.get()));
        // Its place must not go to another entry while it is held.
        for (std::int32_t key = 1; key < 50; ++key) map->put(Box(key), nullptr);
        EXPECT_THROW(map->createEntrySet()->contains(Box(1)), CastFailedException);
        EXPECT_THROW(map->createEntrySet()->add(held.get()), UnsupportedOperationException);
    }
    EXPECT_EQ(dynamic_cast<const Living&>(*entryOf(held).getValue()).tag(), 2);
    held = nullptr;
    EXPECT_EQ(Living::count(), before);
}

TEST(HashMap, takesEntriesBackFromOtherThreads)
{
    const auto map = makeReference<HashMap>();
    for (int round = 0; round < 200; ++round) {
        for (std::int32_t key = 0; key < 20; ++key) map->put(Box(key), Box(key));
        std::vector<Reference<IORVUnknown>> held;
        const auto walker = map->createEntrySet()->createIterator();
        while (walker->hasNext()) {
            held.push_back(walker->next());
            walker->remove();
        }
        // The entries go while the map takes new ones.
        std::thread other([entries = std::move(held)]() mutable { entries.clear(); });
        for (std::int32_t key = 0; key < 20; ++key) map->put(Box(-key), nullptr);
        other.join();
        map->createKeySet()->clear();
    }
    EXPECT_EQ(map->getSize(), 0);
}

TEST(HashSet, addsWhatIsNotThere)
{
    const auto set = makeReference<HashSet>();
    const auto first = makeReference<String>(u"a");
    EXPECT_TRUE(set->add(toUnknown(first.get())));
    EXPECT_FALSE(set->add(toUnknown(makeReference<String>(u"a").get())));
    EXPECT_EQ(set->createIterator()->next(), toUnknown(first.get()));
    EXPECT_TRUE(set->contains(toUnknown(makeReference<String>(u"a").get())));
    EXPECT_TRUE(set->remove(toUnknown(makeReference<String>(u"a").get())));
    EXPECT_FALSE(set->remove(toUnknown(first.get())));
    EXPECT_EQ(first->GetRefCount(), 1u);

    set->add(toUnknown(first.get()));
    set->clear();
    EXPECT_EQ(set->getSize(), 1);
    EXPECT_FALSE(set->createIterator()->hasNext());
}

TEST(HashSet, comparesWithHashSetsOnly)
{
    const auto set = makeReference<HashSet>();
    for (const std::int32_t element : {1, 102, 7}) set->add(Box(element));
    const auto copy = makeReference<HashSet>(*set);
    const auto filled = makeReference<HashSet>(static_cast<const Collection&>(*set));
    EXPECT_EQ(walk(*set), (std::vector<std::int32_t>{7, 102, 1}));
    EXPECT_EQ(walk(*copy), (std::vector<std::int32_t>{7, 1, 102}));
    EXPECT_TRUE(set->equals(*copy));
    EXPECT_TRUE(filled->equals(*copy));
    EXPECT_EQ(set->hashCode(), 0u);
    filled->remove(Box(7));
    EXPECT_EQ(filled->compareTo(*set), -1);
    EXPECT_EQ(set->compareTo(*set), 0);
    const auto map = makeReference<HashMap>();
    EXPECT_THROW(set->equals(*map), CastFailedException);
    EXPECT_THROW(set->compareTo(*map), CastFailedException);

    const auto walker = set->createIterator();
    walker->next();
    walker->remove();
    EXPECT_EQ(walk(*set), (std::vector<std::int32_t>{102, 1}));
}

} // namespace
} // namespace orv::collections::quark
