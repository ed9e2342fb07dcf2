#include "orv/Str1HashMap.h"

#include "orv/Str1Family.h"
#include "orv/String.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>

namespace orv {
namespace {

Str1Copy keyOf(std::int32_t number)
{
    return Str1Copy(String::valueOf(number));
}

void* pointer(std::int32_t number)
{
    static char places[100000];
    return &places[number];
}

/// The keys in the order of an iteration.
template <class Map>
std::vector<std::u16string> keysOf(const Map& map)
{
    std::vector<std::u16string> keys;
    typename Map::KeyValueIterator i;
    for (map.iteratorInit(i); map.iteratorHasNext(i);) {
        const Str1* key = nullptr;
        map.iteratorNext(i, &key, nullptr);
        keys.emplace_back(key->getData0(), static_cast<std::size_t>(key->getLength()));
    }
    return keys;
}

TEST(Str1HashMap, agreesWithAnOrderedMap)
{
    // A model, over as many keys as make the table grow four times.
    Str1HashMap<void*> map(3, 0.75F);
    std::map<std::int32_t, void*> model;
    std::mt19937 random(1);
    for (std::int32_t step = 0; step < 4000; ++step) {
        const auto number = static_cast<std::int32_t>(random() % 60);
        void* const value = pointer(static_cast<std::int32_t>(random() % 1000));
        void* previous = nullptr;
        if (random() % 3 != 0) {
            map.put(keyOf(number), value, &previous);
            EXPECT_EQ(previous, model.contains(number) ? model[number] : nullptr);
            model[number] = value;
        } else {
            map.remove(keyOf(number), &previous);
            EXPECT_EQ(previous, model.contains(number) ? model[number] : nullptr);
            model.erase(number);
        }
        ASSERT_EQ(map.getSize(), static_cast<std::int32_t>(model.size()));
    }
    for (const auto& [number, value] : model) {
        void* found = nullptr;
        EXPECT_TRUE(map.get(keyOf(number), found));
        EXPECT_EQ(found, value);
    }
    const auto keys = keysOf(map);
    EXPECT_EQ(std::set<std::u16string>(keys.begin(), keys.end()).size(), model.size());
    EXPECT_EQ(keys.size(), model.size());
}

TEST(Str1HashMap, growsAtTheThresholdToTwiceAndOne)
{
    // With one unit a key hashes to that unit, so the order of iteration tells the buckets.
    Str1HashMap<void*> map(101, 0.75F);
    for (char16_t unit = 200; unit < 275; ++unit) map.put(Str1Copy(&unit, 1), nullptr, nullptr);
    EXPECT_EQ(keysOf(map).front(), std::u16string(1, 202)); // bucket 0 of 101
    const char16_t next = 275;
    map.put(Str1Copy(&next, 1), nullptr, nullptr);
    EXPECT_EQ(keysOf(map).front(), std::u16string(1, 203)); // bucket 0 of 203
    EXPECT_EQ(map.getSize(), 76);
}

TEST(Str1HashMap, keepsItsSizeWhenCleared)
{
    Str1HashMap<Reference<ComObject>> map(5, 0.75F);
    const auto text = makeReference<String>(u"value");
    for (std::int32_t i = 0; i < 3; ++i) map.put(keyOf(i), Reference<ComObject>(text), nullptr);
    EXPECT_EQ(text->GetRefCount(), 4u);
    map.clear();
    EXPECT_EQ(text->GetRefCount(), 1u);
    EXPECT_EQ(map.getSize(), 3);
    EXPECT_FALSE(map.isEmpty());
    EXPECT_FALSE(map.containsKey(keyOf(0)));
    EXPECT_TRUE(keysOf(map).empty());
    map.put(keyOf(7), Reference<ComObject>(text), nullptr);
    EXPECT_EQ(map.getSize(), 4);
}

TEST(Str1HashMap, endsAnIterationWhenItChanges)
{
    Str1HashMap<void*> map;
    for (std::int32_t i = 0; i < 4; ++i) map.put(keyOf(i), pointer(i), nullptr);
    int step = 0;
    const std::pair<void (*)(Str1HashMap<void*>&), bool> rows[] = {
        {[](Str1HashMap<void*>& m) { m.put(keyOf(1), pointer(9), nullptr); }, true},
        {[](Str1HashMap<void*>& m) { m.remove(keyOf(99), nullptr); }, true},
        {[](Str1HashMap<void*>& m) { m.put(keyOf(50), nullptr, nullptr); }, false},
        {[](Str1HashMap<void*>& m) { m.remove(keyOf(50), nullptr); }, false},
        {[](Str1HashMap<void*>& m) { m.clear(); }, false},
    };
    for (const auto& [change, goesOn] : rows) {
        Str1HashMap<void*>::KeyValueIterator i;
        map.iteratorInit(i);
        const Str1* key = nullptr;
        void* const* value = nullptr;
        map.iteratorNext(i, &key, &value);
        ASSERT_NE(value, nullptr);
        change(map);
        EXPECT_EQ(map.iteratorHasNext(i), goesOn) << step;
        key = nullptr;
        map.iteratorNext(i, &key, nullptr);
        EXPECT_EQ(key != nullptr, goesOn) << step++;
    }
}

TEST(Str1HashMapLC, findsKeysInAnyCase)
{
    Str1HashMapLC<void*> map;
    map.put(Str1Copy(u"AB\u00C4"), pointer(1), nullptr);
    void* found = nullptr;
    EXPECT_TRUE(map.get(Str1Copy(u"ab\u00E4"), found));
    void* previous = nullptr;
    map.put(Str1Copy(u"aB\u00C4"), pointer(2), &previous);
    EXPECT_EQ(previous, pointer(1));
    EXPECT_EQ(keysOf(map), std::vector<std::u16string>{u"ab\u00E4"});
    map.remove(Str1Copy(u"Ab\u00E4"), nullptr);
    EXPECT_EQ(map.getSize(), 0);
}

} // namespace
} // namespace orv
