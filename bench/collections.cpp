#include "orv/Object.h"
#include "orv/String.h"
#include "orv/collections/IntegerHashMap.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/HashSet.h"
#include "orv/collections/quark/LinkedList.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#if __has_include(<QHash>)
#include <QHash>
#include <QList>
#include <QSet>
#include <QSharedPointer>
#include <QString>
#endif
#if __has_include(<absl/container/flat_hash_map.h>)
#include <absl/container/flat_hash_map.h>
#include <absl/container/flat_hash_set.h>
#include <absl/hash/hash.h>
#endif
#if __has_include(<Poco/HashMap.h>)
#include <Poco/AutoPtr.h>
#include <Poco/HashMap.h>
#include <Poco/RefCountedObject.h>
#endif

// Maps and sets of 100,000 heap objects, small records, lists and queues. Every look-up hands out a
// counted pointer, as the library's do. Keys to look up equal those in the map and are others.
// The process has had a second thread, as servers have: until then std::shared_ptr counts without
// locked operations, which the other pointers here never do.

namespace orv::bench {
namespace {

using collections::IntegerHashMap;
using collections::StringHashMap;
using collections::quark::ArrayList;
using collections::quark::HashMap;
using collections::quark::HashSet;
using collections::quark::LinkedList;

constexpr int COUNT = 100000;

/// The value in the library's maps.
struct Counted : Object {
    explicit Counted(int n) : number(n) {}
    int number;
};

int numberOf(const IORVUnknown* element)
{
    return static_cast<const Counted*>(static_cast<const ComObject*>(element))->number;
}

/// The value in the maps of peers with shared pointers.
struct Value {
    explicit Value(int n) : number(n) {}
    virtual ~Value() = default;
    int number;
};

std::u16string keyText(int i)
{
    const std::string text = "session." + std::to_string((i * 2654435761U) % 1000003U) + ".node" +
                             std::to_string(i % 17) + "." + std::to_string(i);
    return {text.begin(), text.end()};
}

std::vector<int> shuffled(int count, std::uint64_t seed = 9)
{
    std::vector<int> numbers(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) numbers[static_cast<std::size_t>(i)] = i;
    Random random(seed);
    for (std::size_t i = numbers.size(); i > 1; --i) {
        std::swap(numbers[i - 1], numbers[random.below(static_cast<std::uint32_t>(i))]);
    }
    return numbers;
}

// Maps from texts

/// Keys and values of the library.
struct OrvObjects {
    static constexpr const char* name = LIBRARY;
    using Key = Reference<String>;
    using Val = Reference<Object>;
    static Key key(const std::u16string& text)
    {
        return makeReference<String>(text.data(), static_cast<std::int32_t>(text.size()));
    }
    static Val value(int number) { return makeReference<Counted>(number); }
};

struct OrvMap : OrvObjects {
    struct Map {
        Reference<HashMap> object = makeReference<HashMap>();
        std::int32_t size() const { return object->getSize(); }
    };
    static void put(Map& map, const Key& key, const Val& value)
    {
        map.object->put(toUnknown(key.get()), toUnknown(value.get()));
    }
    static int get(const Map& map, const Key& key)
    {
        const Reference<IORVUnknown> value = map.object->get(toUnknown(key.get()));
        return value != nullptr ? numberOf(value.get()) : -1;
    }
    static long sum(const Map& map)
    {
        long sum = 0;
        const auto values = map.object->createValueCollection();
        for (const IORVUnknown* value : *values) sum += numberOf(value);
        return sum;
    }
    static void remove(Map& map, const Key& key) { map.object->remove(toUnknown(key.get())); }
};

struct OrvStringMap : OrvObjects {
    struct Map {
        StringHashMap object;
        std::int32_t size() const { return object.getSize(); }
    };
    static void put(Map& map, const Key& key, const Val& value)
    {
        map.object.put(*key, value.get());
    }
    static int get(Map& map, const Key& key)
    {
        const Reference<Object> value = map.object.get(*key);
        return value != nullptr ? static_cast<const Counted&>(*value).number : -1;
    }
    static void remove(Map& map, const Key& key) { map.object.remove(*key); }
};

struct OrvSet : OrvObjects {
    struct Map {
        Reference<HashSet> object = makeReference<HashSet>();
        std::int32_t size() const { return object->getSize(); }
    };
    static void put(Map& map, const Key& key, const Val&) { map.object->add(toUnknown(key.get())); }
    static int get(const Map& map, const Key& key)
    {
        return map.object->contains(toUnknown(key.get())) ? 1 : -1;
    }
    static long sum(const Map& map)
    {
        long count = 0;
        for (const IORVUnknown* element : *map.object) count += element != nullptr;
        return count;
    }
    static void remove(Map& map, const Key& key) { map.object->remove(toUnknown(key.get())); }
};

using SharedText = std::shared_ptr<const std::u16string>;
using SharedValue = std::shared_ptr<Value>;

struct StdHash {
    std::size_t operator()(const SharedText& text) const
    {
        return std::hash<std::u16string>()(*text);
    }
};

struct ContentEqual {
    bool operator()(const SharedText& a, const SharedText& b) const { return *a == *b; }
};

struct SharedObjects {
    using Key = SharedText;
    using Val = SharedValue;
    static Key key(const std::u16string& text)
    {
        return std::make_shared<const std::u16string>(text);
    }
    static Val value(int number) { return std::make_shared<Value>(number); }
};

template <class M>
struct SharedMap : SharedObjects {
    using Map = M;
    static void put(Map& map, const Key& key, const Val& value)
    {
        map.insert_or_assign(key, value);
    }
    static int get(const Map& map, const Key& key)
    {
        const auto found = map.find(key);
        if (found == map.end()) return -1;
        const Val value = found->second;
        return value->number;
    }
    static long sum(const Map& map)
    {
        long sum = 0;
        for (const auto& entry : map) sum += entry.second->number;
        return sum;
    }
    static void remove(Map& map, const Key& key) { map.erase(key); }
};

template <class S>
struct SharedSet : SharedObjects {
    using Map = S;
    static void put(Map& set, const Key& key, const Val&) { set.insert(key); }
    static int get(const Map& set, const Key& key) { return set.contains(key) ? 1 : -1; }
    static long sum(const Map& set)
    {
        long count = 0;
        for (const auto& element : set) count += element != nullptr;
        return count;
    }
    static void remove(Map& set, const Key& key) { set.erase(key); }
};

struct StdMap : SharedMap<std::unordered_map<SharedText, SharedValue, StdHash, ContentEqual>> {
    static constexpr const char* name = "std_unordered_map";
};

struct StdSet : SharedSet<std::unordered_set<SharedText, StdHash, ContentEqual>> {
    static constexpr const char* name = "std_unordered_set";
};

#if __has_include(<absl/container/flat_hash_map.h>)
struct AbslHash {
    std::size_t operator()(const SharedText& text) const
    {
        return absl::Hash<std::string_view>()(
            std::string_view(reinterpret_cast<const char*>(text->data()), text->size() * 2));
    }
};

struct AbslMap : SharedMap<absl::flat_hash_map<SharedText, SharedValue, AbslHash, ContentEqual>> {
    static constexpr const char* name = "absl_flat_hash_map";
};

struct AbslSet : SharedSet<absl::flat_hash_set<SharedText, AbslHash, ContentEqual>> {
    static constexpr const char* name = "absl_flat_hash_set";
};
#endif

#if __has_include(<QHash>)
struct QtObjects {
    using Key = QString;
    using Val = QSharedPointer<Value>;
    static Key key(const std::u16string& text) { return QString::fromStdU16String(text); }
    static Val value(int number) { return Val::create(number); }
};

struct QtMap : QtObjects {
    static constexpr const char* name = "qt_qhash";
    using Map = QHash<QString, QSharedPointer<Value>>;
    static void put(Map& map, const Key& key, const Val& value) { map.insert(key, value); }
    static int get(const Map& map, const Key& key)
    {
        const Val value = map.value(key);
        return value ? value->number : -1;
    }
    static long sum(const Map& map)
    {
        long sum = 0;
        for (const auto& value : map) sum += value->number;
        return sum;
    }
    static void remove(Map& map, const Key& key) { map.remove(key); }
};

struct QtSet : QtObjects {
    static constexpr const char* name = "qt_qset";
    using Map = QSet<QString>;
    static void put(Map& set, const Key& key, const Val&) { set.insert(key); }
    static int get(const Map& set, const Key& key) { return set.contains(key) ? 1 : -1; }
    static long sum(const Map& set)
    {
        long count = 0;
        for (const QString& element : set) count += !element.isNull();
        return count;
    }
    static void remove(Map& set, const Key& key) { set.remove(key); }
};
#endif

#if __has_include(<Poco/HashMap.h>)
struct PocoValue : Poco::RefCountedObject {
    explicit PocoValue(int n) : number(n) {}
    int number;
};

/// There is no text class of its own: std::string holding UTF-8, half the bytes of the others.
struct PocoMap {
    static constexpr const char* name = "poco_hashmap_utf8";
    using Map = Poco::HashMap<std::string, Poco::AutoPtr<PocoValue>>;
    using Key = std::string;
    using Val = Poco::AutoPtr<PocoValue>;
    static Key key(const std::u16string& text) { return {text.begin(), text.end()}; }
    static Val value(int number) { return new PocoValue(number); }
    static void put(Map& map, const Key& key, const Val& value) { map[key] = value; }
    static int get(const Map& map, const Key& key)
    {
        const auto found = map.find(key);
        if (found == map.end()) return -1;
        const Val value = found->second;
        return value->number;
    }
    static long sum(const Map& map)
    {
        long sum = 0;
        for (const auto& entry : map) sum += entry.second->number;
        return sum;
    }
    static void remove(Map& map, const Key& key) { map.erase(key); }
};
#endif

/// The objects of a peer, made once.
template <class Peer>
struct Objects {
    using Map = typename Peer::Map;

    std::vector<typename Peer::Key> keys, probes, misses;
    std::vector<typename Peer::Val> values;

    static const Objects& get()
    {
        static const Objects made;
        return made;
    }

    std::unique_ptr<Map> filled() const
    {
        auto map = std::make_unique<Map>();
        for (std::size_t i = 0; i < keys.size(); ++i) Peer::put(*map, keys[i], values[i]);
        return map;
    }

private:
    Objects()
    {
        for (const int i : shuffled(COUNT)) {
            keys.push_back(Peer::key(keyText(i)));
            values.push_back(Peer::value(i));
        }
        for (const int i : shuffled(COUNT, 31)) {
            probes.push_back(Peer::key(keyText(i)));
            misses.push_back(Peer::key(keyText(i + COUNT)));
        }
    }
};

/// Times `operation()`, which works on COUNT elements.
template <class Operation>
void timeOnAll(benchmark::State& state, Operation operation)
{
    for (auto _ : state) {
        auto result = operation();
        benchmark::DoNotOptimize(result);
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}

/// Times `operation(map)` on maps made by `make()`; neither that nor their end is timed.
template <class Make, class Operation>
void timeOnEach(benchmark::State& state, Make make, Operation operation)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto map = make();
        state.ResumeTiming();
        operation(*map);
        benchmark::DoNotOptimize(*map);
        state.PauseTiming();
        map = nullptr;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}

template <class Peer>
void addChanging(const std::string& kind)
{
    using Map = typename Peer::Map;
    addCase(kind + "_put_1e5/per_key", Peer::name, [](benchmark::State& state) {
        const auto& objects = Objects<Peer>::get();
        timeOnEach(
            state, [] { return std::make_unique<Map>(); },
            [&](Map& map) {
                for (std::size_t i = 0; i < objects.keys.size(); ++i) {
                    Peer::put(map, objects.keys[i], objects.values[i]);
                }
            });
    });
    addCase(kind + "_put_1e5_with_objects/per_key", Peer::name, [](benchmark::State& state) {
        std::vector<std::u16string> texts;
        for (const int i : shuffled(COUNT)) texts.push_back(keyText(i));
        timeOnAll(state, [&] {
            Map map;
            int number = 0;
            for (const auto& text : texts) Peer::put(map, Peer::key(text), Peer::value(number++));
            return map.size();
        });
    });
    addCase(kind + "_remove_1e5/per_key", Peer::name, [](benchmark::State& state) {
        const auto& objects = Objects<Peer>::get();
        timeOnEach(
            state, [&] { return objects.filled(); },
            [&](Map& map) {
                for (const auto& key : objects.probes) Peer::remove(map, key);
                if (map.size() != 0) state.SkipWithError("wrong result");
            });
    });
}

template <class Peer>
void addLooking(const std::string& kind)
{
    addCase(kind + "_hit_1e5/per_key", Peer::name, [](benchmark::State& state) {
        const auto& objects = Objects<Peer>::get();
        const auto map = objects.filled();
        timeOnAll(state, [&] {
            long sum = 0;
            for (const auto& key : objects.probes) sum += Peer::get(*map, key);
            if (sum < COUNT) state.SkipWithError("wrong result");
            return sum;
        });
    });
    addCase(kind + "_miss_1e5/per_key", Peer::name, [](benchmark::State& state) {
        const auto& objects = Objects<Peer>::get();
        const auto map = objects.filled();
        timeOnAll(state, [&] {
            long sum = 0;
            for (const auto& key : objects.misses) sum += Peer::get(*map, key);
            if (sum != -COUNT) state.SkipWithError("wrong result");
            return sum;
        });
    });
    addCase(kind + "_hit_1000/per_key", Peer::name, [](benchmark::State& state) {
        const auto& objects = Objects<Peer>::get();
        typename Peer::Map map;
        std::vector<typename Peer::Key> probes;
        const std::vector<int> numbers = shuffled(COUNT);
        for (std::size_t i = 0; i < 1000; ++i) Peer::put(map, objects.keys[i], objects.values[i]);
        for (const int i : shuffled(1000, 31)) {
            probes.push_back(Peer::key(keyText(numbers[static_cast<std::size_t>(i)])));
        }
        for (auto _ : state) {
            long sum = 0;
            for (const auto& key : probes) sum += Peer::get(map, key);
            benchmark::DoNotOptimize(sum);
        }
        state.SetItemsProcessed(state.iterations() * 1000);
    });
    if constexpr (requires(const typename Peer::Map& map) { Peer::sum(map); }) {
        addCase(kind + "_iterate_1e5/per_entry", Peer::name, [](benchmark::State& state) {
            const auto map = Objects<Peer>::get().filled();
            timeOnAll(state, [&] { return Peer::sum(*map); });
        });
    }
}

/// The life of a record of named fields: made, filled, asked for each field, dropped.
template <class Peer>
void addRecord()
{
    for (const std::size_t fields : {std::size_t{0}, std::size_t{2}, std::size_t{6}}) {
        addCase("record_of_" + std::to_string(fields) + "_fields/whole", Peer::name,
                [fields](benchmark::State& state) {
                    std::vector<typename Peer::Key> names;
                    std::vector<typename Peer::Val> values;
                    for (const char16_t* name :
                         {u"level", u"text", u"sequence", u"thread", u"timestamp", u"name"}) {
                        names.push_back(Peer::key(name));
                        values.push_back(Peer::value(1));
                    }
                    for (auto _ : state) {
                        typename Peer::Map map;
                        for (std::size_t i = 0; i < fields; ++i) {
                            Peer::put(map, names[i], values[i]);
                        }
                        long sum = 0;
                        for (std::size_t i = 0; i < fields; ++i) sum += Peer::get(map, names[i]);
                        benchmark::DoNotOptimize(sum);
                        benchmark::DoNotOptimize(map);
                    }
                });
    }
}

template <class Peer>
void addMap(const std::string& kind)
{
    addChanging<Peer>(kind);
    addLooking<Peer>(kind);
}

/// What the peers of both of the library's maps of texts share.
template <class Peer>
void addTextMaps()
{
    addMap<Peer>("map");
    addMap<Peer>("string_map");
    addRecord<Peer>();
}

void addKeySet()
{
    for (const int fields : {2, 6}) {
        addCase("record_key_set_of_" + std::to_string(fields) + "/whole", LIBRARY,
                [fields](benchmark::State& state) {
                    StringHashMap map;
                    int left = fields;
                    for (const char16_t* name :
                         {u"level", u"text", u"sequence", u"thread", u"timestamp", u"name"}) {
                        if (left-- > 0) map.put(String(name), nullptr);
                    }
                    for (auto _ : state) {
                        auto keys = map.createKeySet();
                        benchmark::DoNotOptimize(keys);
                    }
                });
    }
}

// Maps from numbers

struct OrvIntegers {
    static constexpr const char* name = LIBRARY;
    using Map = IntegerHashMap;
    using Val = Reference<Object>;
    static Val value(int number) { return makeReference<Counted>(number); }
    static void put(Map& map, int key, const Val& value) { map.put(key, value.get()); }
    static int get(Map& map, int key)
    {
        const Reference<Object> value = map.get(key);
        return value != nullptr ? static_cast<const Counted&>(*value).number : -1;
    }
    static void remove(Map& map, int key) { map.remove(key); }
};

template <class M>
struct SharedIntegers {
    using Map = M;
    using Val = SharedValue;
    static Val value(int number) { return std::make_shared<Value>(number); }
    static void put(Map& map, int key, const Val& value) { map.insert_or_assign(key, value); }
    static int get(const Map& map, int key)
    {
        const auto found = map.find(key);
        if (found == map.end()) return -1;
        const Val value = found->second;
        return value->number;
    }
    static void remove(Map& map, int key) { map.erase(key); }
};

struct StdIntegers : SharedIntegers<std::unordered_map<int, SharedValue>> {
    static constexpr const char* name = "std_unordered_map";
};

#if __has_include(<absl/container/flat_hash_map.h>)
struct AbslIntegers : SharedIntegers<absl::flat_hash_map<int, SharedValue>> {
    static constexpr const char* name = "absl_flat_hash_map";
};
#endif

#if __has_include(<QHash>)
struct QtIntegers {
    static constexpr const char* name = "qt_qhash";
    using Map = QHash<int, QSharedPointer<Value>>;
    using Val = QSharedPointer<Value>;
    static Val value(int number) { return Val::create(number); }
    static void put(Map& map, int key, const Val& value) { map.insert(key, value); }
    static int get(const Map& map, int key)
    {
        const Val value = map.value(key);
        return value ? value->number : -1;
    }
    static void remove(Map& map, int key) { map.remove(key); }
};
#endif

template <class Peer>
void addIntegers()
{
    using Map = typename Peer::Map;
    static const auto keys = shuffled(COUNT);
    static const auto probes = shuffled(COUNT, 31);
    const auto filled = [] {
        auto map = std::make_unique<Map>();
        const auto value = Peer::value(7);
        for (const int key : keys) Peer::put(*map, key * 8, value);
        return map;
    };
    addCase("int_map_put_1e5/per_key", Peer::name, [](benchmark::State& state) {
        const auto value = Peer::value(7);
        timeOnEach(
            state, [] { return std::make_unique<Map>(); },
            [&](Map& map) {
                for (const int key : keys) Peer::put(map, key * 8, value);
            });
    });
    addCase("int_map_remove_1e5/per_key", Peer::name, [filled](benchmark::State& state) {
        timeOnEach(state, filled, [](Map& map) {
            for (const int key : probes) Peer::remove(map, key * 8);
        });
    });
    for (const int offset : {0, 3}) {
        addCase(offset == 0 ? "int_map_hit_1e5/per_key" : "int_map_miss_1e5/per_key", Peer::name,
                [filled, offset](benchmark::State& state) {
                    const auto map = filled();
                    timeOnAll(state, [&] {
                        long sum = 0;
                        for (const int key : probes) sum += Peer::get(*map, key * 8 + offset);
                        return sum;
                    });
                });
    }
}

// Lists

template <class List>
struct OrvList {
    static constexpr const char* name = LIBRARY;
    struct Held {
        Reference<List> object = makeReference<List>();
    };
    using Val = Reference<Object>;
    static Val value(int number) { return makeReference<Counted>(number); }
    static void append(Held& list, const Val& value) { list.object->add(toUnknown(value.get())); }
    static int get(const Held& list, int index)
    {
        const Reference<IORVUnknown> value = list.object->get(index);
        return numberOf(value.get());
    }
    static long sum(const Held& list)
    {
        long sum = 0;
        for (const IORVUnknown* value : *list.object) sum += numberOf(value);
        return sum;
    }
    static Reference<IORVUnknown> takeFirst(Held& list) { return list.object->remove(0); }
};

template <class L>
struct PointerList {
    using Held = L;
    using Val = typename L::value_type;
    static Val value(int number) { return Val(new typename Val::element_type(number)); }
    static void append(Held& list, const Val& value) { list.push_back(value); }
    static int get(const Held& list, int index) requires requires { list.at(0); }
    {
        const Val value = list.at(static_cast<std::size_t>(index));
        return value->number;
    }
    static long sum(const Held& list)
    {
        long sum = 0;
        for (const Val& value : list) sum += value->number;
        return sum;
    }
    static Val takeFirst(Held& list) requires requires { list.pop_front(); }
    {
        Val value = list.front();
        list.pop_front();
        return value;
    }
};

struct StdVector : PointerList<std::vector<SharedValue>> {
    static constexpr const char* name = "std_vector";
};
struct StdList : PointerList<std::list<SharedValue>> {
    static constexpr const char* name = "std_list";
};
struct StdDeque : PointerList<std::deque<SharedValue>> {
    static constexpr const char* name = "std_deque";
};

#if __has_include(<QHash>)
struct QtList {
    static constexpr const char* name = "qt_qlist";
    using Held = QList<QSharedPointer<Value>>;
    using Val = QSharedPointer<Value>;
    static Val value(int number) { return Val::create(number); }
    static void append(Held& list, const Val& value) { list.push_back(value); }
    static int get(const Held& list, int index)
    {
        const Val value = list.at(index);
        return value->number;
    }
    static long sum(const Held& list)
    {
        long sum = 0;
        for (const Val& value : list) sum += value->number;
        return sum;
    }
    static Val takeFirst(Held& list) { return list.takeFirst(); }
};
#endif

template <class Peer>
void addList(const std::string& kind)
{
    using Held = typename Peer::Held;
    const auto filled = [] {
        auto list = std::make_unique<Held>();
        for (int i = 0; i < COUNT; ++i) Peer::append(*list, Peer::value(i));
        return list;
    };
    addCase(kind + "_append_1e5/per_element", Peer::name, [](benchmark::State& state) {
        const auto value = Peer::value(3);
        timeOnEach(
            state, [] { return std::make_unique<Held>(); },
            [&](Held& list) {
                for (int i = 0; i < COUNT; ++i) Peer::append(list, value);
            });
    });
    addCase(kind + "_iterate_1e5/per_element", Peer::name, [filled](benchmark::State& state) {
        const auto list = filled();
        timeOnAll(state, [&] { return Peer::sum(*list); });
    });
}

/// By index: for lists on arrays.
template <class Peer>
void addGet()
{
    addCase("array_get_1e5/per_element", Peer::name, [](benchmark::State& state) {
        typename Peer::Held list;
        for (int i = 0; i < COUNT; ++i) Peer::append(list, Peer::value(i));
        timeOnAll(state, [&] {
            long sum = 0;
            for (int i = 0; i < COUNT; ++i) sum += Peer::get(list, i);
            return sum;
        });
    });
}

/// A queue that never holds more than a few elements.
template <class Peer>
void addQueue()
{
    addCase("queue_append_remove_first/per_pair", Peer::name, [](benchmark::State& state) {
        typename Peer::Held list;
        const auto value = Peer::value(3);
        for (int i = 0; i < 8; ++i) Peer::append(list, value);
        for (auto _ : state) {
            Peer::append(list, value);
            auto first = Peer::takeFirst(list);
            benchmark::DoNotOptimize(first);
        }
    });
}

void addMaps()
{
    addMap<OrvMap>("map");
    addMap<OrvStringMap>("string_map");
    addRecord<OrvStringMap>();
    addKeySet();
    addMap<OrvSet>("set");
    addIntegers<OrvIntegers>();
    addTextMaps<StdMap>();
    addMap<StdSet>("set");
    addIntegers<StdIntegers>();
#if __has_include(<absl/container/flat_hash_map.h>)
    addTextMaps<AbslMap>();
    addMap<AbslSet>("set");
    addIntegers<AbslIntegers>();
#endif
#if __has_include(<QHash>)
    addTextMaps<QtMap>();
    addMap<QtSet>("set");
    addIntegers<QtIntegers>();
#endif
#if __has_include(<Poco/HashMap.h>)
    addTextMaps<PocoMap>();
#endif
}

void addLists()
{
    addList<OrvList<ArrayList>>("array");
    addGet<OrvList<ArrayList>>();
    addList<OrvList<LinkedList>>("linked");
    addQueue<OrvList<LinkedList>>();
    addList<StdVector>("array");
    addGet<StdVector>();
    addList<StdDeque>("array");
    addGet<StdDeque>();
    addQueue<StdDeque>();
    addList<StdList>("linked");
    addQueue<StdList>();
#if __has_include(<QHash>)
    addList<QtList>("array");
    addGet<QtList>();
    addQueue<QtList>();
#endif
}

const bool registered = [] {
    std::thread([] {}).join();
    addMaps();
    addLists();
    return true;
}();

} // namespace
} // namespace orv::bench
