#include "orv/util/PropertySet.h"
#include "orv/util/quark/QuarkPropertySet.h"

#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace orv::util {
namespace {

using namespace std::string_view_literals;
using collections::Set;
using quark::QuarkPropertySet;

/// A component with the properties of a set of ours, which walks over its names by itself.
class Component final : public ::orv::quark::Implements<Object, quark::IPropertySet> {
public:
    Result Set(const char16_t* name, IORVUnknown* value) override { return set->Set(name, value); }
    Result Get(const char16_t* name, const GUID& iid, void** value) const override
    {
        return set->hasProperty(name) ? set->Get(name, iid, value) : E_NOT_FOUND;
    }
    Result Remove(const char16_t* name, const GUID& iid, void** value) override
    {
        return set->hasProperty(name) ? set->Remove(name, iid, value) : E_NOT_FOUND;
    }
    Result GetKeyIterator(const GUID& iid, void** iterator) const override
    {
        EXPECT_TRUE(equalGuid(iid, quark::IKeyIterator::IID));
        *iterator =
            static_cast<quark::IKeyIterator*>(makeReference<Keys>(set->getKeys().get()).detach());
        return S_OK;
    }

    Reference<PropertySet> set = makeReference<PropertySet>();

private:
    struct Keys final : ::orv::quark::Implements<Object, quark::IKeyIterator> {
        explicit Keys(const collections::Set<String>* keys) : left(keys->createConstIterator()) {}
        Result Next(const GUID& iid, void** key) override
        {
            if (!left->hasNext()) return E_NOT_FOUND;
            return makeReference<String>(*left->next())->QueryInterface(iid, key);
        }
        Reference<collections::ConstIterator<String>> left;
    };
};

/// The names in order, a blank behind each.
std::u16string namesOf(PropertySet& set)
{
    std::multiset<std::u16string> names;
    const Reference<const Set<String>> keys = set.getKeys();
    for (const String* key : *keys) names.insert(key->getData());
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
    const auto shared = PropertySet::getQuark(*set); // over the same names
    quark::IPropertySet* const face = set.get();
    void* found = nullptr;
    test::ForeignCharBuffer value(u"text"sv);
    EXPECT_EQ(face->Set(u"name", &value), S_OK);
    EXPECT_EQ(value.count(), 1u);
    EXPECT_EQ(face->Set(u"name", nullptr), E_NOINTERFACE);
    value.failWith = E_NOT_FOUND;
    EXPECT_EQ(face->Set(u"name", &value), E_NOT_FOUND);
    EXPECT_EQ(shared->Get(u"name", quark::IPropertySet::IID, &found), E_NOINTERFACE);
    EXPECT_EQ(shared->Get(u"absent", IORVCharBuffer::IID, &found), E_FAIL);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(face->GetKeyIterator(quark::IKeyIterator::IID, &found), E_NOTIMPL);
    EXPECT_EQ(shared->Get(u"name", IORVCharBuffer::IID, &found), S_OK);
    static_cast<IORVCharBuffer*>(found)->Release();
    EXPECT_EQ(face->Remove(u"name", IORVCharBuffer::IID, &found), S_OK);
    const auto text = Reference<IORVCharBuffer>::adopt(static_cast<IORVCharBuffer*>(found));
    EXPECT_EQ(String(text.get()), u"text");
}

TEST(QuarkPropertySet, showsAComponentAsASet)
{
    const auto component = makeReference<Component>();
    {
        const auto parent = makeReference<PropertySet>();
        parent->set(u"parent", u"1");
        const auto set = makeReference<QuarkPropertySet>(component.get(), parent.get());
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
        EXPECT_EQ(namesOf(*component->set), u"");
        EXPECT_EQ(resultOf([&] { QuarkPropertySet(parent.get(), nullptr).getKeys(); }), E_NOTIMPL);
    }
    EXPECT_EQ(component->GetRefCount(), 1u);
}

} // namespace
} // namespace orv::util
