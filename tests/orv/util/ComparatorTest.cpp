#include "orv/util/Comparator.h"

#include "orv/Exceptions.h"
#include "orv/Integers.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/DefaultComparator.h"
#include "tests/support/ForeignCharBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace orv::util {
namespace {

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
    const auto upper = makeReference<String>(u"ABC");
    const auto backward = makeReference<Backward>(u"abc");
    const auto five = makeReference<Integer32>(5);
    const auto low = makeReference<Integer32>(INT32_MIN);
    const auto wide = makeReference<Integer64>(4);
    using Row = std::tuple<const Object*, const Object*, std::int32_t>;
    for (const auto& [a, b, expected] : {Row{abc.get(), ab.get(), 1},
                                         {ab.get(), abc.get(), -1},
                                         {abc.get(), upper.get(), 1},
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

/// Has an order and a hash that fail.
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

TEST(Comparator, handsOnTheResultOfAnElementAsItStands)
{
    const auto sealed = makeReference<Sealed>();
    const auto text = makeReference<String>(u"1");
    const Comparator comparator;
    std::int32_t result = 0;
    std::uint32_t hash = 0;
    EXPECT_EQ(comparator.Compare(toUnknown(sealed.get()), nullptr, &result), E_NOT_FOUND);
    EXPECT_EQ(comparator.Hash(toUnknown(sealed.get()), &hash), E_TIMED_OUT);
    EXPECT_TRUE(result == 5 && hash == 6);
    EXPECT_EQ(comparator.Compare(toUnknown(text.get()), toUnknown(sealed.get()), &result), E_FAIL)
        << "a cast that failed";
}

TEST(Comparator, comparesAddressesOfAllElse)
{
    const test::ForeignCharBuffer one(u""), other(u"");
    const auto text = makeReference<String>(u"x");
    const IORVUnknown* const low = std::min<const IORVUnknown*>(&one, &other);
    const IORVUnknown* const high = std::max<const IORVUnknown*>(&one, &other);
    EXPECT_EQ(order(nullptr, nullptr), 0);
    EXPECT_EQ(order(nullptr, low), -1);
    EXPECT_EQ(order(high, low), 1);
    EXPECT_EQ(order(toUnknown(text.get()), nullptr), -1) << "the text answers, the other way round";
    for (const IORVUnknown* element : {high, static_cast<const IORVUnknown*>(nullptr)}) {
        std::uint32_t hash = 1;
        EXPECT_EQ(Comparator().Hash(element, &hash), S_OK);
        EXPECT_EQ(hash, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(element)));
    }
}

TEST(Comparator, allComparatorsAreAlike)
{
    struct Other : Comparator {};
    const Comparator one;
    EXPECT_EQ(one.compareTo(Other()), 0);
    EXPECT_THROW(static_cast<void>(one.compareTo(String())), CastFailedException);
    EXPECT_TRUE(one.equals(Comparator()));
    EXPECT_FALSE(one.equals(String()));
    void* found = nullptr;
    const auto shared = collections::GetDefaultComparator();
    ASSERT_EQ(shared->QueryInterface(IORVComparator::IID, &found), S_OK);
    EXPECT_EQ(found, shared.get());
    shared->Release();
}

} // namespace
} // namespace orv::util
