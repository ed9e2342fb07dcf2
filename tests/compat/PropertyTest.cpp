#include "compat/CORVProperty.h"
#include "compat/CORVPropertySet.h"

#include "orv/Integers.h"
#include "orv/Reference.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orv {
namespace {

using namespace std::string_view_literals;
using test::ForeignCharBuffer;

/// An interface of `object`, as a component asks for it.
template <class Interface>
Reference<Interface> faceOf(IORVUnknown* object)
{
    void* found = nullptr;
    EXPECT_EQ(object->QueryInterface(Interface::IID, &found), S_OK);
    return Reference<Interface>::adopt(static_cast<Interface*>(found));
}

/// What a host makes of the base: properties in a map.
class Settings : public CORVPropertySet {
public:
    CORVSmartPtr<const CORVProperty> getProperty(const String& name) const override
    {
        const auto place = m_all.find(name.getData());
        return place == m_all.end() ? nullptr : place->second;
    }
    CORVSmartPtr<CORVProperty> makeProperty(const String& name) override
    {
        auto& property = m_all[name.getData()];
        if (!property) property = new CORVProperty(name, u"");
        return property;
    }

private:
    std::map<std::u16string, CORVSmartPtr<CORVProperty>> m_all;
};

TEST(CORVProperty, keepsNumbersAsTheirText)
{
    struct Row {
        CORVSmartPtr<CORVProperty> property;
        String text;
        std::int32_t number;
        double fraction;
    };
    const auto boxed = makeReference<Integer64>(0x100000007);
    const Row rows[] = {
        {new CORVProperty(u"k", -8080), u"-8080", -8080, -8080},
        {new CORVProperty(u"k", 2.5), String::valueOf(2.5), 2, 2.5},
        {new CORVProperty(u"k", u" 12x"), u" 12x", 12, 12},
        {new CORVProperty(u"k", u"word"), u"word", 0, 0},
        {new CORVProperty(u"k", boxed.get()), u"4294967303", 7, 4294967303.0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.property->getKey(), u"k");
        EXPECT_EQ(row.property->getValueString(), row.text);
        EXPECT_EQ(row.property->getValueLong(), row.number)
            << test::readable(test::units(row.text));
        EXPECT_EQ(row.property->getValueDouble(), row.fraction);
    }
    EXPECT_EQ(rows[4].property->getValue(), boxed.get());
    char16_t passing[] = u"old";
    rows[0].property->set(String(String::AcquireAlias, passing));
    passing[0] = u'c';
    EXPECT_EQ(rows[0].property->getValueString(), u"old");
}

// What is written to one is read from the other.
TEST(CORVPropertySet, andItsPropertiesServeComponentsByResults)
{
    const auto set = makeReference<Settings>();
    const auto face = faceOf<IORVPropertySet2>(set->GetUnknown());
    EXPECT_EQ(faceOf<IORVPropertySet>(face.get()), face.get());
    EXPECT_EQ(face->SetString(u"key", u"17 and more"), S_OK);
    const auto property = set->makeProperty(u"key");
    const auto one = faceOf<IORVProperty2>(property->GetUnknown());
    EXPECT_EQ(faceOf<IORVProperty>(one.get()), one.get());

    ForeignCharBuffer text(u"longer than the key"sv);
    std::int32_t number = -1;
    double fraction = -1;
    void* found = nullptr;
    EXPECT_EQ(one->GetKey(&text), S_OK);
    EXPECT_EQ(text.text(), u"key");
    EXPECT_EQ(one->GetValueString(&text), S_OK);
    EXPECT_EQ(text.text(), u"17 and more");
    EXPECT_EQ(one->SetValueString(u"abc"), S_OK);
    EXPECT_EQ(face->GetString(u"key", &text), S_OK);
    EXPECT_EQ(text.text(), u"abc");
    EXPECT_EQ(text.openLocks(), 0);
    EXPECT_EQ(face->SetLong(u"key", -70000), S_OK);
    EXPECT_EQ(one->GetValueLong(&number), S_OK);
    EXPECT_EQ(number, -70000);
    EXPECT_EQ(one->SetValueLong(-3), S_OK);
    EXPECT_EQ(face->GetLong(u"key", &number), S_OK);
    EXPECT_EQ(number, -3);
    EXPECT_EQ(face->SetDouble(u"key", -0.25), S_OK);
    EXPECT_EQ(one->GetValueDouble(&fraction), S_OK);
    EXPECT_EQ(fraction, -0.25);
    EXPECT_EQ(one->SetValueDouble(0.5), S_OK);
    EXPECT_EQ(face->GetDouble(u"key", &fraction), S_OK);
    EXPECT_EQ(fraction, 0.5);
    const auto boxed = makeReference<Integer32>(9);
    EXPECT_EQ(face->Set(u"key", boxed->GetUnknown()), S_OK);
    EXPECT_EQ(one->GetValue(IORVComparable::IID, &found), S_OK);
    EXPECT_EQ(static_cast<IORVComparable*>(found)->Release(), 2u) << "the property's and ours";
    EXPECT_EQ(one->SetValue(boxed->GetUnknown()), S_OK);
    EXPECT_EQ(face->Get(u"key", IORVComparable::IID, &found), S_OK);
    EXPECT_EQ(faceOf<IORVUnknown>(static_cast<IORVComparable*>(found)), boxed->GetUnknown());
    EXPECT_EQ(static_cast<IORVComparable*>(found)->Release(), 2u);

    EXPECT_EQ(one->GetValue(util::IORVCharBuffer::IID, &found), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
    for (IORVUnknown* const none : {static_cast<IORVUnknown*>(&text), {}}) {
        EXPECT_EQ(one->SetValue(none), E_NOINTERFACE);
        EXPECT_EQ(face->Set(u"key", none), E_NOINTERFACE);
    }
    text.failWith = E_NOT_FOUND;
    EXPECT_EQ(one->GetKey(&text), E_NOT_FOUND);
    for (const Result result :
         {one->GetKey(nullptr), one->GetValueLong(nullptr), one->SetValueString(nullptr),
          one->GetValue(IORVComparable::IID, nullptr), face->SetLong(nullptr, 1)}) {
        EXPECT_EQ(result, E_POINTER);
    }
    EXPECT_EQ(property->getValueLong(), 9) << "what was refused changed nothing";
    property->set(static_cast<Object*>(nullptr));
    EXPECT_EQ(one->GetValueLong(&number), E_POINTER);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(one->GetValue(IORVComparable::IID, &found), E_FAIL);
    EXPECT_EQ(face->GetLong(u"absent", &number), E_NOT_FOUND);
    IORVProperty2* inner = nullptr;
    IORVPropertySet* parent = set.get();
    EXPECT_EQ(face->GetCount(&number), E_NOTIMPL);
    EXPECT_EQ(face->GetProperty2(u"text", &inner), E_NOTIMPL);
    EXPECT_EQ(face->GetParent(&parent), E_NOTIMPL);
    EXPECT_EQ(parent, nullptr);
}

} // namespace
} // namespace orv
