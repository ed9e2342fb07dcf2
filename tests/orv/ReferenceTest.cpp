#include "orv/Reference.h"

#include "compat/CORVSmartPtr.h"
#include "tests/support/Living.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace orv {
namespace {

using test::Living;

template <template <class> class P>
struct Kind {
    template <class T>
    using Pointer = P<T>;
};

template <class Kind>
class ReferenceTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(Living::count(), m_before); }

private:
    int m_before = Living::count();
};

using Kinds = testing::Types<Kind<Reference>, Kind<CORVSmartPtr>>;
TYPED_TEST_SUITE(ReferenceTest, Kinds);

TYPED_TEST(ReferenceTest, assignmentTakesTheNewBeforeTheOldGoes)
{
    // What is assigned is kept alive by the old object alone.
    class Chain : public Living {
    public:
        using Living::Living;
        typename TypeParam::template Pointer<Chain> next;
    };
    decltype(Chain::next) head = new Chain(1);
    head->next = new Chain(2);
    head = head->next;
    EXPECT_EQ(head->tag(), 2);

    const auto& same = head;
    head = same;
    EXPECT_EQ(head->GetRefCount(), 1u);
    auto moved = std::move(head);
    EXPECT_EQ(moved->GetRefCount(), 1u);
    head = decltype(head)::adopt(moved.detach());
    EXPECT_EQ(head->GetRefCount(), 1u);
    head = head.get();
    EXPECT_EQ(head->GetRefCount(), 1u);
    const typename TypeParam::template Pointer<const Object> asObject = std::move(head);
    EXPECT_EQ(asObject->GetRefCount(), 1u);
    // NOLINTNEXTLINE(bugprone-use-after-move): what was moved from is null
    EXPECT_TRUE(head == nullptr);
}

template <template <class> class P>
constexpr bool isSafe =
    // Conversions to a pointer would feed overloads.
    !std::is_convertible_v<P<Living>, Living*> && !std::is_convertible_v<P<Living>, bool> &&
    !std::is_constructible_v<P<Living>, P<const Living>> &&
    std::is_convertible_v<P<Living>, P<const Object>>;
static_assert(isSafe<Reference> && isSafe<CORVSmartPtr>);

} // namespace
} // namespace orv
