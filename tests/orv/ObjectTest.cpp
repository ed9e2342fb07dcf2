#include "orv/Object.h"

#include "orv/Exceptions.h"
#include "orv/Reference.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Living.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

using test::Living;

TEST(Object, identityIsTheSameThroughEveryInterface)
{
    const auto object = makeReference<Living>();
    void* out = nullptr;
    ASSERT_EQ(object->QueryInterface(IORVComparable::IID, &out), S_OK);
    EXPECT_EQ(object->GetRefCount(), 2u);
    auto* const comparable = static_cast<IORVComparable*>(static_cast<IORVUnknown*>(out));

    void* identity = nullptr;
    ASSERT_EQ(comparable->QueryInterface(IORVUnknown::IID, &identity), S_OK);
    EXPECT_EQ(identity, object->GetUnknown());
    EXPECT_EQ(identity, toUnknown(object.get()));
    EXPECT_EQ(static_cast<IORVUnknown*>(identity)->Release(), 2u);
    EXPECT_EQ(comparable->Release(), 1u);
    EXPECT_EQ(toUnknown(nullptr), nullptr);
}

TEST(ComObject, aReleaseTooManyWrapsAndDestroysNothing)
{
    const int before = Living::count();
    const Living object;
    EXPECT_EQ(object.Release(), 0xFFFFFFFFu);
    EXPECT_EQ(object.GetRefCount(), 0xFFFFFFFFu);
    EXPECT_EQ(Living::count(), before + 1);
    EXPECT_EQ(object.AddRef(), 0u);
}

TEST(Object, comparesAddressesAndStrangersTheOtherWayRound)
{
    const Object objects[2];
    EXPECT_EQ(objects[0].compareTo(objects[1]), -1);
    EXPECT_EQ(objects[1].compareTo(objects[0]), 1);
    EXPECT_EQ(objects[0].compareTo(objects[0]), 0);
    EXPECT_TRUE(objects[0].equals(objects[0]));
    EXPECT_FALSE(objects[0].equals(objects[1]));

    std::int32_t order = 7;
    EXPECT_EQ(objects[0].CompareTo(toUnknown(&objects[1]), &order), S_OK);
    EXPECT_EQ(order, -1);

    struct {
        Object first;
        test::ForeignCharBuffer stranger{u""};
        Object last;
    } row;
    EXPECT_EQ(row.first.CompareTo(&row.stranger, &order), S_OK);
    EXPECT_EQ(order, 1) << "the stranger has the greater address";
    EXPECT_EQ(row.last.CompareTo(&row.stranger, &order), S_OK);
    EXPECT_EQ(order, -1);
    EXPECT_EQ(row.last.CompareTo(nullptr, &order), S_OK);
    EXPECT_EQ(order, -1);
}

} // namespace
} // namespace orv
