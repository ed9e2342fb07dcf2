#include "orv/Reference.h"

#include "tests/support/Living.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace orv {
namespace {

using test::Living;

class ReferenceTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(Living::count(), m_before); }

private:
    int m_before = Living::count();
};

TEST_F(ReferenceTest, assignmentTakesTheNewBeforeTheOldGoes)
{
    // What is assigned is kept alive by the old object alone.
    class Chain : public Living {
    public:
        using Living::Living;
        Reference<Chain> next;
    };
    Reference<Chain> head = makeReference<Chain>(1);
    head->next = makeReference<Chain>(2);
    head = head->next;
    EXPECT_EQ(head->tag(), 2);

    const Reference<Chain>& same = head;
    head = same;
    EXPECT_EQ(head->GetRefCount(), 1u);
    head = head.get();
    EXPECT_EQ(head->GetRefCount(), 1u);
    head = nullptr;
    EXPECT_FALSE(head);
    EXPECT_TRUE(head == nullptr);
}

static_assert(!std::is_convertible_v<Reference<Living>, Living*>, "it would feed overloads");
static_assert(!std::is_convertible_v<Reference<Living>, bool>);
static_assert(!std::is_constructible_v<Reference<Living>, Reference<const Living>>);

} // namespace
} // namespace orv
