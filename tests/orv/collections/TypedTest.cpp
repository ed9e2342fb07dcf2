#include "orv/Exceptions.h"
#include "orv/collections/List.h"
#include "orv/collections/Map.h"
#include "orv/collections/quark/AbstractMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/LinkedList.h"
#include "tests/orv/collections/Elements.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace orv::collections {
namespace {

Reference<String> text(const char16_t* units)
{
    return makeReference<String>(units);
}

template <class Texts>
String joined(const Texts& texts)
{
    String all;
    for (const String* part : texts) all.append(part != nullptr ? *part : String(u"-"));
    return all;
}

TEST(TypedList, givesItsElementsInTheirClass)
{
    List<String> list(makeReference<quark::LinkedList>().get());
    EXPECT_TRUE(list.isEmpty());
    list.add(text(u"b").get());
    list.add(0, text(u"a").get());
    list.add(nullptr);
    list.add(text(u"a").get());
    EXPECT_EQ(joined(list), u"ab-a");
    EXPECT_EQ(*list.get(1), u"b");
    EXPECT_EQ(list.get(2), nullptr);
    EXPECT_EQ(list.indexOf(text(u"a").get()), 0);
    EXPECT_EQ(list.lastIndexOf(text(u"a").get()), 3);
    EXPECT_TRUE(list.contains(text(u"b").get()));
    EXPECT_EQ(joined(std::as_const(list).createSubList(1, 3)), u"b-");

    EXPECT_EQ(*list.set(1, text(u"c").get()), u"b");
    EXPECT_EQ(list.remove(2), nullptr);
    EXPECT_TRUE(list.remove(text(u"a").get()));
    EXPECT_EQ(joined(list), u"ca");

    const auto iterator = list.createListIterator(2);
    EXPECT_EQ(*iterator->previous(), u"a");
    iterator->set(text(u"e").get());
    iterator->add(text(u"d").get());
    EXPECT_EQ(*iterator->next(), u"e");
    EXPECT_FALSE(iterator->hasNext());
    iterator->remove();
    EXPECT_EQ(joined(list), u"cd");
}

TEST(TypedList, goesByWhatIsWithin)
{
    const auto inner = makeReference<quark::ArrayList>();
    const auto first = makeReference<quark::ArrayList>();
    List<String> a(first.get());
    Collection<String> b(inner.get());
    b.add(text(u"x").get());
    EXPECT_EQ(a.compareTo(b), -1);
    EXPECT_TRUE(a.addAll(b));
    EXPECT_EQ(a.compareTo(b), 0);
    EXPECT_TRUE(a.equals(*inner));
    EXPECT_EQ(a.hashCode(), inner->hashCode());
    EXPECT_THROW(static_cast<void>(a.compareTo(Integer32(1))), CastFailedException);

    List<Object> objects(first.get());
    objects.add(0, makeReference<Integer32>(7).get());
    EXPECT_EQ(objects.get(0)->toString(), u"7");
    EXPECT_THROW(a.get(0), CastFailedException) << "an element of another class";
    EXPECT_THROW(a.createConstIterator()->next(), CastFailedException);
    EXPECT_THROW(joined(a), CastFailedException);
}

/// A map on a list of entries, which may hold a key twice.
class ListMap : public quark::AbstractMap {
public:
    class Entry : public ::orv::quark::ImplementsVirtual<ComObject, quark::MapEntry> {
    public:
        Entry(IORVUnknown* key, IORVUnknown* value) : m_key(key), m_value(value) {}
        std::int32_t compareTo(const Object&) const override { return 0; }
        bool equals(const Object&) const override { return true; }
        Reference<IORVUnknown> getKey() override { return m_key; }
        Reference<IORVUnknown> getValue() override { return m_value; }
        std::uint32_t hashCode() const override { return 0x90000000u; }
        Reference<IORVUnknown> setValue(IORVUnknown*) override { return m_value; }

    private:
        Reference<IORVUnknown> m_key;
        Reference<IORVUnknown> m_value;
    };

    Reference<const quark::Set> createEntrySet() const override { return m_entries; }
    Reference<quark::Set> createEntrySet() override { return m_entries; }

    void append(const char16_t* key, const char16_t* value)
    {
        const auto valueText = value != nullptr ? text(value) : Reference<String>();
        const auto entry =
            makeReference<Entry>(toUnknown(text(key).get()), toUnknown(valueText.get()));
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
    EXPECT_TRUE(typed.containsKey(text(u"b").get()));
    EXPECT_EQ(typed.get(text(u"b").get()), nullptr);
    EXPECT_TRUE(typed.containsValue(nullptr));
    EXPECT_FALSE(typed.containsValue(text(u"a").get()));
    EXPECT_EQ(typed.hashCode(), 0x40000000u) << "the sum wraps";
    EXPECT_THROW(typed.put(text(u"x").get(), nullptr), UnsupportedOperationException);
    EXPECT_THROW(keys->add(text(u"x").get()), UnsupportedOperationException);
    EXPECT_EQ(joined(keys), u"abac") << "views are live";
    EXPECT_EQ(joined(*values), u"1-23");
    String pairs;
    for (const auto& [key, value] : typed) {
        pairs.append(*key).append(value == nullptr ? String(u"-") : *value);
    }
    EXPECT_EQ(pairs, u"a1b-a2c3");

    EXPECT_EQ(*typed.remove(text(u"a").get()), u"2") << "all that are equal, the last one's value";
    EXPECT_TRUE(values->contains(text(u"3").get()));
    EXPECT_TRUE(values->remove(text(u"3").get()));
    EXPECT_FALSE(keys->contains(text(u"c").get()));
    EXPECT_TRUE(keys->contains(text(u"b").get()));
    EXPECT_TRUE(keys->remove(text(u"b").get()));
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

TEST(AbstractCollection, throwsTheResultOfAFailingComparator)
{
    struct Failing : ::orv::quark::Implements<Object, IORVComparator> {
        Result Compare(const IORVUnknown*, const IORVUnknown*, std::int32_t*) const override
        {
            return E_NOT_FOUND;
        }
        Result Hash(const IORVUnknown*, std::uint32_t*) const override { return E_NOT_FOUND; }
    };
    const auto comparator = makeReference<Failing>();
    for (Failing* const failing : {comparator.get(), static_cast<Failing*>(nullptr)}) {
        const auto list = makeReference<quark::ArrayList>(failing);
        list->add(nullptr);
        const Result expected = failing == nullptr ? E_POINTER : E_NOT_FOUND;
        EXPECT_EQ(resultOf([&] { static_cast<void>(list->contains(nullptr)); }), expected);
        EXPECT_EQ(resultOf([&] { static_cast<void>(list->hashCode()); }), expected);
        EXPECT_EQ(resultOf([&] { list->remove(nullptr); }), expected);
    }
    EXPECT_EQ(comparator->GetRefCount(), 1u);
}

} // namespace
} // namespace orv::collections
