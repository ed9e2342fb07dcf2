#include "compat/CORVAbstractConnector.h"
#include "compat/CORVCollections.h"

#include "orv/Exceptions.h"
#include "orv/Integers.h"
#include "orv/collections/DefaultComparator.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Living.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

using namespace std::string_view_literals;

/// A host's connector: any address but the empty one leads to a new object.
class Numbers : public CORVAbstractConnector {
public:
    using CORVAbstractConnector::getProperty;
    using CORVAbstractConnector::hasProperty;

protected:
    CORVSmartPtr<IORVUnknown> connect(const String& address) override
    {
        if (address.getLength() == 0) return nullptr;
        return toUnknown(new test::Living(Number::parseInt(getProperty(address))));
    }
};

TEST(CORVAbstractConnector, connectsByItsPropertiesAcrossTheInterface)
{
    const CORVSmartPtr<Numbers> connector(new Numbers);
    void* found = nullptr;
    EXPECT_EQ(connector->QueryInterface(IORVConnector::IID, &found), S_OK);
    const auto face = CORVSmartPtr<IORVConnector>::adopt(static_cast<IORVConnector*>(found));
    test::ForeignCharBuffer text(u""sv);
    EXPECT_EQ(face->SetProperty(u"port", u"1"), S_OK);
    EXPECT_EQ(face->SetProperty(u"port", u"80"), S_OK);
    EXPECT_EQ(face->GetProperty(u"port", &text), S_OK);
    EXPECT_EQ(text.text(), u"80");
    EXPECT_TRUE(connector->hasProperty(u"port"));
    EXPECT_FALSE(connector->hasProperty(u"Port"));

    const int before = test::Living::count();
    EXPECT_EQ(face->Connect(u"port", IORVComparable::IID, &found), S_OK);
    EXPECT_EQ(test::Living::count(), before + 1);
    EXPECT_EQ(static_cast<IORVComparable*>(found)->Release(), 0u);
    for (const auto& [address, iid, result] :
         {std::tuple{u"port", &IORVConnector::IID, E_NOINTERFACE},
          {u"absent", &IORVComparable::IID, E_FAIL},
          {u"", &IORVComparable::IID, E_FAIL},
          {static_cast<const char16_t*>(nullptr), &IORVComparable::IID, E_POINTER}}) {
        found = &text;
        EXPECT_EQ(face->Connect(address, *iid, &found), result);
        EXPECT_EQ(found, nullptr);
    }
    EXPECT_EQ(test::Living::count(), before);
    EXPECT_EQ(face->GetProperty(u"absent", &text), E_FAIL);
    EXPECT_EQ(test::refusalOf([&] { connector->getProperty(u"absent"); }),
              test::Refusal(E_FAIL, "Property Not Found."));
}

TEST(CORVObjectMap, findsByValueAndGivesWhatIsOfItsClass)
{
    const auto key = [](const char16_t* text) { return CORVSmartPtr<String>(new String(text)); };
    const CORVSmartPtr<Integer32> one(new Integer32(1)), two(new Integer32(2));
    CORVObjectMap<String, Integer32> map;
    EXPECT_FALSE(map.put(key(u"a").get(), one.get()));
    const auto shared = map;
    EXPECT_EQ(map.put(key(u"a").get(), two.get()), one);
    EXPECT_EQ(shared.get(key(u"a").get()), two);
    EXPECT_TRUE(map.containsValue(CORVSmartPtr<Integer32>(new Integer32(2)).get()));
    map.getTable()->put(toUnknown(key(u"text").get()), toUnknown(key(u"1").get()));
    EXPECT_EQ(map.getSize(), 2);
    EXPECT_THROW(map.get(key(u"text").get()), CastFailedException);
    EXPECT_EQ(map.remove(key(u"a").get()), two);
    EXPECT_FALSE(map.containsKey(key(u"a").get()));
    EXPECT_EQ(CORVCollections::getDefaultComparator(), collections::GetDefaultComparator().get());
}

} // namespace
} // namespace orv
