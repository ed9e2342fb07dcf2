#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>

namespace {

struct Exhausted {};
int s_calls = 0;

void throwAtThirdCall()
{
    if (++s_calls == 3) throw Exhausted{};
}

class Memory : public testing::Test {
protected:
    void SetUp() override { s_calls = 0; }
    void TearDown() override
    {
        (void)orvcore::failAllocation(0, false);
        ORVSetNewHandler(nullptr);
    }
};

TEST_F(Memory, callsTheHandlerUntilItThrows)
{
    EXPECT_EQ(ORVSetNewHandler(throwAtThirdCall), nullptr);
    const std::new_handler runtimes = std::get_new_handler();
    orvcore::failAllocation(1, true);
    EXPECT_THROW(static_cast<void>(orvcore::allocate(8)), Exhausted);
    EXPECT_EQ(s_calls, 3);
    EXPECT_EQ(orvcore::failAllocation(0, false), 3u);
    EXPECT_EQ(std::get_new_handler(), runtimes);
    EXPECT_EQ(ORVSetNewHandler(nullptr), throwAtThirdCall);
    orvcore::failAllocation(1, true);
    EXPECT_THROW(static_cast<void>(orvcore::allocate(8)), std::bad_alloc) << "without a handler";
}

TEST_F(Memory, theNthAllocationFailsAndAllLaterOnesOnRequest)
{
    for (const bool forever : {false, true}) {
        orvcore::failAllocation(2, forever);
        void* first = orvcore::allocateRaw(4);
        ASSERT_NE(first, nullptr);
        std::memcpy(first, "abc", 4);
        EXPECT_EQ(orvcore::reallocateRaw(first, 4096), nullptr);
        EXPECT_STREQ(static_cast<char*>(first), "abc") << "the block stays as it was";

        void* third = orvcore::reallocateRaw(first, 4096);
        EXPECT_EQ(third == nullptr, forever);
        EXPECT_EQ(orvcore::failAllocation(0, false), 3u);
        orvcore::deallocateRaw(third == nullptr ? first : third);
    }
}

} // namespace
