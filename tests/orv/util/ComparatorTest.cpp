#include "orv/util/Comparator.h"

#include "orv/Exceptions.h"
#include "orv/Integers.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/DefaultComparator.h"

#include <gtest/gtest.h>

#include <thread>

namespace orv::util {
namespace {

/// A foreign element without an order.
struct Foreign final : IORVUnknown {
    Result QueryInterface(const GUID&, void** out) override
    {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    std::uint32_t AddRef() const override { return 1; }
    std::uint32_t Release() const override { return 1; }
};

/// Orders the other way round.
struct Backward : String {
    using String::String;
    std::int32_t compareTo(const Object& other) const override { return -String::compareTo(other); }
};

std::int32_t order(const IORVUnknown* a, const IORVUnknown* b)
{
    std::int32_t result = 77;
    EXPECT_EQ(collections::GetDefaultComparator()->Compare(a, b, &result), S_OK);
    return result;
}

TEST(Comparator, asksElementsThatHaveAnOrder)
{
    const auto abc = makeReference<String>(u"abc");
    const auto ab = makeReference<String>(u"ab");
    const auto backward = makeReference<Backward>(u"abc");
    const auto five = makeReference<Integer32>(5);
    const auto low = makeReference<Integer32>(INT32_MIN);
    const auto wide = makeReference<Integer64>(4);
    using Row = std::tuple<const Object*, const Object*, std::int32_t>;
    for (const auto& [a, b, expected] : {Row{abc.get(), ab.get(), 1},
                                         {ab.get(), abc.get(), -1},
                                         {abc.get(), backward.get(), 0},
                                         {backward.get(), ab.get(), -1},
                                         {five.get(), wide.get(), 1},
                                         {five.get(), low.get(), five->compareTo(*low)},
                                         {low.get(), five.get(), low->compareTo(*five)}}) {
        EXPECT_EQ(order(toUnknown(a), toUnknown(b)), expected);
        std::uint32_t hash = 0;
        EXPECT_EQ(collections::GetDefaultComparator()->Hash(toUnknown(a), &hash), S_OK);
        EXPECT_EQ(hash, a->hashCode());
    }
    EXPECT_EQ(abc->GetRefCount(), 1u) << "counts taken are given back";
}

TEST(Comparator, handsOnTheResultOfAnElementAsItStands)
{
    struct Sealed : Object {
        Result CompareTo(const IORVUnknown*, std::int32_t* result) const override
        {
            *result = 5;
            return E_NOT_FOUND;
        }
        Result HashCode(std::uint32_t* result) const override
        {
            *result = 6;
            return E_TIMED_OUT;
        }
    };
    const auto sealed = makeReference<Sealed>();
    const auto text = makeReference<String>(u"1");
    const auto comparator = collections::GetDefaultComparator();
    std::int32_t result = 0;
    std::uint32_t hash = 0;
    EXPECT_EQ(comparator->Compare(toUnknown(sealed.get()), nullptr, &result), E_NOT_FOUND);
    EXPECT_EQ(result, 5);
    EXPECT_EQ(comparator->Hash(toUnknown(sealed.get()), &hash), E_TIMED_OUT);
    EXPECT_EQ(hash, 6u);
    EXPECT_EQ(comparator->Compare(toUnknown(text.get()), toUnknown(sealed.get()), &result), E_FAIL)
        << "a cast that failed";
}

TEST(Comparator, comparesAddressesOfAllElse)
{
    Foreign two[2];
    const auto text = makeReference<String>(u"x");
    EXPECT_EQ(order(nullptr, nullptr), 0);
    EXPECT_EQ(order(nullptr, &two[0]), -1);
    EXPECT_EQ(order(&two[1], &two[0]), 1);
    EXPECT_EQ(order(&two[0], &two[1]), -1);
    EXPECT_EQ(order(toUnknown(text.get()), nullptr), -1) << "the text answers, the other way round";
    std::uint32_t hash = 1;
    const Comparator comparator;
    EXPECT_EQ(comparator.Hash(nullptr, &hash), S_OK);
    EXPECT_EQ(hash, 0u);
    EXPECT_EQ(comparator.Hash(&two[1], &hash), S_OK);
    EXPECT_EQ(hash, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&two[1])));
}

TEST(Comparator, allComparatorsAreAlike)
{
    struct Other : Comparator {};
    const Comparator one;
    const Comparator two;
    EXPECT_EQ(one.compareTo(Other()), 0);
    EXPECT_THROW(static_cast<void>(one.compareTo(String())), CastFailedException);
    EXPECT_TRUE(one.equals(two));
    EXPECT_FALSE(one.equals(String()));
    EXPECT_EQ(one.compare(String(u"b"), String(u"a")), 1);
    EXPECT_EQ(one.hash(Integer32(9)), Integer32(9).hashCode());
    void* found = nullptr;
    const auto shared = collections::GetDefaultComparator();
    ASSERT_EQ(shared->QueryInterface(IORVComparator::IID, &found), S_OK);
    EXPECT_EQ(found, shared.get());
    shared->Release();
}

TEST(Comparator, theDefaultOneIsOneOnAllThreads)
{
    const auto ask = [shared = collections::GetDefaultComparator().get()] {
        EXPECT_EQ(collections::GetDefaultComparator(), shared);
    };
    std::thread threads[] = {std::thread(ask), std::thread(ask), std::thread(ask)};
    for (std::thread& thread : threads) thread.join();
}

} // namespace
} // namespace orv::util
