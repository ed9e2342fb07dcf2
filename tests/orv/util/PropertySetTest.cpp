#include "orv/util/PropertySet.h"
#include "orv/util/quark/QuarkPropertySet.h"

#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace orv::util {
namespace {

using namespace std::string_view_literals;
using collections::Set;
using quark::QuarkPropertySet;

/// What a component that knows nothing of the library's classes begins with. Lives on the stack.
template <class Interface>
class Foreign : public Interface {
public:
    Result QueryInterface(const GUID&, void** out) override
    {
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() const override { return ++count; }
    std::uint32_t Release() const override { return --count; }

    mutable std::uint32_t count = 1;

protected:
    ~Foreign() = default;
};

class ForeignSet final : public Foreign<quark::IPropertySet> {
public:
    using Values = std::map<std::u16string, Reference<IORVUnknown>>;

    Result Set(const char16_t* name, IORVUnknown* value) override
    {
        values[name] = value;
        return S_OK;
    }
    Result Get(const char16_t* name, const GUID& iid, void** value) const override
    {
        const auto place = values.find(name);
        return place == values.end() ? E_NOT_FOUND : place->second->QueryInterface(iid, value);
    }
    Result Remove(const char16_t* name, const GUID& iid, void** value) override
    {
        const Result result = Get(name, iid, value);
        values.erase(name);
        return result;
    }
    Result GetKeyIterator(const GUID& iid, void** iterator) const override
    {
        keys.left = values;
        EXPECT_TRUE(equalGuid(iid, quark::IKeyIterator::IID));
        return keys.QueryInterface(iid, iterator);
    }

    Values values;

    struct Keys final : Foreign<quark::IKeyIterator> {
        Result Next(const GUID& iid, void** key) override
        {
            if (left.empty()) return E_NOT_FOUND;
            const auto next = left.extract(left.begin());
            return makeReference<String>(next.key().c_str())->QueryInterface(iid, key);
        }
        Values left;
    };
    mutable Keys keys;
};

/// The names in order, a blank behind each.
std::u16string namesOf(PropertySet& set)
{
    std::set<std::u16string> names;
    const Reference<const Set<String>> keys = set.getKeys();
    for (const String* key : *keys) EXPECT_TRUE(names.insert(key->getData()).second);
    std::u16string all;
    for (const auto& name : names) all += name + u" ";
    return all;
}

TEST(PropertySet, shadowsItsParentsAndChangesItselfOnly)
{
    const auto top = makeReference<PropertySet>();
    const auto middle = makeReference<PropertySet>(top.get());
    const auto set = makeReference<PropertySet>(middle.get());
    char16_t passing[] = u"old";
    top->set(u"a", String(String::AcquireAlias, passing));
    passing[0] = u'c';
    middle->set(u"b", u"2");
    set->set(u"a", u"new");
    EXPECT_EQ(set->get(u"a"), u"new");
    EXPECT_EQ(namesOf(*set), u"a ");
    EXPECT_EQ(set->remove(u"a"), u"new");
    EXPECT_EQ(set->remove(u"a"), u"");
    EXPECT_EQ(set->get(u"a"), u"old");
    EXPECT_TRUE(set->hasProperty(u"a") && set->hasProperty(u"b"));
    EXPECT_FALSE(set->hasProperty(u"c") || top->hasProperty(u"b"));
    EXPECT_EQ(resultOf([&] { set->get(u"c"); }), E_FAIL);

    for (const char16_t* name : {u"x", u"", u"z"}) set->set(name, name);
    EXPECT_EQ(namesOf(*set), u" x z ");
    set->clear();
    EXPECT_EQ(namesOf(*set), u"");
    EXPECT_EQ(set->get(u"b"), u"2");
}

TEST(PropertySet, servesComponentsByResults)
{
    const auto set = makeReference<PropertySet>();
    quark::IPropertySet* const face = set.get();
    void* found = nullptr;
    test::ForeignCharBuffer value(u"text"sv);
    EXPECT_EQ(face->Set(u"name", &value), S_OK);
    EXPECT_EQ(value.count(), 1u);
    EXPECT_EQ(set->get(u"name"), u"text");
    EXPECT_EQ(face->Set(u"name", nullptr), E_NOINTERFACE);
    value.failWith = E_NOT_FOUND;
    EXPECT_EQ(face->Set(u"name", &value), E_NOT_FOUND);

    EXPECT_EQ(face->Get(u"name", quark::IPropertySet::IID, &found), E_NOINTERFACE);
    EXPECT_EQ(face->Get(u"absent", IORVCharBuffer::IID, &found), E_FAIL);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(face->GetKeyIterator(quark::IKeyIterator::IID, &found), E_NOTIMPL);
    EXPECT_EQ(face->Remove(u"name", IORVCharBuffer::IID, &found), S_OK);
    const auto text = Reference<IORVCharBuffer>::adopt(static_cast<IORVCharBuffer*>(found));
    EXPECT_EQ(String(text.get()), u"text");

    // Another object over the same names.
    const auto shared = PropertySet::getQuark(*set);
    set->set(u"later", u"1");
    EXPECT_EQ(shared->Get(u"later", IORVCharBuffer::IID, &found), S_OK);
    static_cast<IORVCharBuffer*>(found)->Release();
}

TEST(QuarkPropertySet, showsAComponentAsASet)
{
    ForeignSet component;
    {
        const auto parent = makeReference<PropertySet>();
        parent->set(u"parent", u"1");
        const auto set = makeReference<QuarkPropertySet>(&component, parent.get());
        set->set(u"b", u"2");
        set->set(u"a", u"1");
        EXPECT_EQ(set->get(u"b"), u"2");
        EXPECT_TRUE(set->hasProperty(u"a"));
        EXPECT_FALSE(set->hasProperty(u"parent"));
        EXPECT_EQ(resultOf([&] { set->get(u"parent"); }), E_NOT_FOUND);
        EXPECT_EQ(namesOf(*set), u"a b ");
        EXPECT_EQ(set->remove(u"b"), u"2");
        EXPECT_EQ(set->remove(u"b"), u"");
        set->clear();
        EXPECT_TRUE(component.values.empty());

        const auto inner = makeReference<PropertySet>();
        const auto around = makeReference<QuarkPropertySet>(inner.get(), nullptr);
        around->set(u"name", u"text");
        EXPECT_EQ(inner->get(u"name"), u"text");
        EXPECT_EQ(resultOf([&] { around->getKeys(); }), E_NOTIMPL);
    }
    EXPECT_EQ(component.count + component.keys.count, 2u);
}

} // namespace
} // namespace orv::util
