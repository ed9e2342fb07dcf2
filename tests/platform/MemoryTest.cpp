#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <new>

namespace {

struct Exhausted {};
int s_calls = 0;

void throwAtThirdCall()
{
    if (++s_calls == 3) throw Exhausted{};
}

TEST(Memory, callsTheHandlerUntilItThrows)
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
    EXPECT_EQ(orvcore::failAllocation(0, false), 1u);
}

} // namespace
