#include "orv/ComObject.h"

#include "tests/support/Living.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(ComObject, theLastReleaseDestroys)
{
    const int before = test::Living::count();
    auto* const object = new test::Living;
    EXPECT_EQ(object->GetRefCount(), 0u);
    EXPECT_EQ(object->AddRef(), 1u);
    EXPECT_EQ(object->AddRef(), 2u);
    EXPECT_EQ(object->Release(), 1u);
    EXPECT_EQ(test::Living::count(), before + 1);
    EXPECT_EQ(object->Release(), 0u);
    EXPECT_EQ(test::Living::count(), before);
}

TEST(ComObject, aReleaseTooManyWrapsAndDestroysNothing)
{
    const int before = test::Living::count();
    const test::Living object;
    EXPECT_EQ(object.Release(), 0xFFFFFFFFu);
    EXPECT_EQ(object.GetRefCount(), 0xFFFFFFFFu);
    EXPECT_EQ(test::Living::count(), before + 1);
    EXPECT_EQ(object.AddRef(), 0u);
}

} // namespace
} // namespace orv
