#include "orv/Exceptions.h"
#include "orv/collections/internal/LinkedListCursor.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/LinkedList.h"
#include "platform/orvcore.h"
#include "tests/orv/collections/Elements.h"
#include "tests/support/Living.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <utility>

namespace orv::collections::quark {
namespace {

using test::boxed;
using test::fill;
using test::Living;
using test::numbersOf;
using test::unboxed;
using Numbers = std::vector<int>;

constexpr IORVUnknown* no = nullptr;

/// Either list, with its count of modifications open to the test.
template <class ConcreteList>
struct Probe : ConcreteList {
    using ConcreteList::ConcreteList;
    using ConcreteList::m_modCount;
};

/// Whether `action` throws exactly a plain Exception.
void expectModified(const std::function<void()>& action)
{
    try {
        action();
        ADD_FAILURE() << "not noticed";
    } catch (const Exception& exception) {
        EXPECT_EQ(typeid(exception), typeid(Exception));
    }
}

template <class ConcreteList>
class ListTest : public testing::Test {
protected:
    ~ListTest() noexcept override {}

    int modifications() const { return m_list->m_modCount; }

    Reference<Probe<ConcreteList>> m_list = makeReference<Probe<ConcreteList>>();
};

using Lists = testing::Types<ArrayList, LinkedList>;
TYPED_TEST_SUITE(ListTest, Lists);

TYPED_TEST(ListTest, refusesAnIndexOutsideAndChangesNothing)
{
    auto& list = *this->m_list;
    fill(list, {1, 2});
    for (const int bad : {-1, 2, 3}) {
        EXPECT_THROW(list.get(bad), RangeErrorException) << bad;
        EXPECT_THROW(list.set(bad, nullptr), RangeErrorException) << bad;
        EXPECT_THROW(list.remove(bad), RangeErrorException) << bad;
        if (bad == 2) continue;
        EXPECT_THROW(list.add(bad, nullptr), RangeErrorException) << bad;
        EXPECT_THROW(list.addAll(bad, list), RangeErrorException) << bad;
        EXPECT_THROW(list.createListIterator(bad), RangeErrorException) << bad;
        EXPECT_THROW(list.createConstListIterator(bad), RangeErrorException) << bad;
        EXPECT_THROW(list.createSubList(0, bad), RangeErrorException) << bad;
    }
    EXPECT_THROW(list.createSubList(2, 1), RangeErrorException);
    EXPECT_THROW(list.createSubList(-1, 1), RangeErrorException);
    EXPECT_TRUE(list.createSubList(2, 2)->isEmpty());
    EXPECT_EQ(numbersOf(list), (Numbers{1, 2}));
}

TYPED_TEST(ListTest, anOpenIteratorWalksOnToAppendedElementsAndNoticesAllElse)
{
    auto& list = *this->m_list;
    fill(list, {1});
    const auto iterator = list.createIterator();
    EXPECT_EQ(unboxed(iterator->next()), 1);
    EXPECT_FALSE(iterator->hasNext());
    fill(list, {2});
    EXPECT_TRUE(iterator->hasNext());
    EXPECT_EQ(unboxed(iterator->next()), 2);
    EXPECT_THROW(iterator->next(), RangeErrorException);

    fill(list, {3});
    list.set(0, boxed(9).get());
    EXPECT_TRUE(iterator->hasNext()) << "answers without a check";
    expectModified([&] { iterator->next(); });
    expectModified([&] { iterator->remove(); });
    expectModified([&] { list.createListIterator(1)->add(nullptr), iterator->next(); });
}

TYPED_TEST(ListTest, anIteratorChangesTheListUnderItself)
{
    auto& list = *this->m_list;
    fill(list, {1, 2, 3, 4});
    const auto iterator = list.createListIterator(1);
    const auto refuses = [&] {
        EXPECT_THROW(iterator->remove(), IllegalStateException);
        EXPECT_THROW(iterator->set(nullptr), IllegalStateException);
    };
    refuses();
    EXPECT_EQ(unboxed(iterator->next()), 2);
    iterator->set(boxed(20).get());
    iterator->set(boxed(21).get());
    iterator->remove();
    EXPECT_EQ(iterator->nextIndex(), 1);
    refuses();
    iterator->add(boxed(5).get());
    EXPECT_EQ(iterator->previousIndex(), 1);
    refuses();
    EXPECT_EQ(unboxed(iterator->previous()), 5);
    iterator->remove();
    EXPECT_EQ(iterator->nextIndex(), 1) << "the cursor stood on the removed element";
    EXPECT_EQ(unboxed(iterator->previous()), 1);
    EXPECT_FALSE(iterator->hasPrevious());
    EXPECT_THROW(iterator->previous(), RangeErrorException);
    EXPECT_EQ(iterator->nextIndex(), 0) << "a failed step moves nothing";
    EXPECT_EQ(numbersOf(list), (Numbers{1, 3, 4}));
}

TYPED_TEST(ListTest, agreesWithAPlainModelUnderRandomOperations)
{
    std::mt19937 random(20260);
    auto& list = *this->m_list;
    Numbers model;
    int modifications = 0;
    for (int round = 0; round < 4000; ++round) {
        const auto size = static_cast<int>(model.size());
        const int value = static_cast<int>(random() % 8);
        const int place = static_cast<int>(random() % (model.size() + 1));
        const auto at = model.begin() + place;
        const auto element = boxed(value);
        const auto found = std::find(model.begin(), model.end(), value);
        const auto last = std::find(model.rbegin(), model.rend(), value);
        switch (random() % 8) {
        case 0:
        case 1: // no modification for its iterators
            EXPECT_TRUE(list.add(element.get()));
            model.push_back(value);
            break;
        case 2:
            EXPECT_TRUE(list.add(place, element.get()));
            model.insert(at, value);
            ++modifications;
            break;
        case 3:
            EXPECT_EQ(list.remove(element.get()), found != model.end());
            if (found == model.end()) break;
            model.erase(found);
            ++modifications;
            break;
        case 4:
            if (place == size) break;
            EXPECT_EQ(unboxed(list.remove(place)), *at);
            model.erase(at);
            ++modifications;
            break;
        case 5:
            if (place == size) break;
            EXPECT_EQ(unboxed(list.set(place, element.get())), std::exchange(*at, value));
            ++modifications;
            break;
        case 6:
            EXPECT_EQ(list.indexOf(element.get()),
                      found == model.end() ? -1 : found - model.begin());
            EXPECT_EQ(list.lastIndexOf(element.get()), model.rend() - last - 1);
            EXPECT_EQ(list.contains(element.get()), found != model.end());
            break;
        default:
            if (size < 200) break;
            modifications += std::is_same_v<TypeParam, ArrayList> ? size + 1 : 1;
            list.clear();
            model.clear();
        }
        ASSERT_EQ(list.getSize(), static_cast<int>(model.size()));
        ASSERT_EQ(this->modifications(), modifications);
    }
    EXPECT_EQ(numbersOf(list), model);
}

TYPED_TEST(ListTest, ordersAndHashesAsWordsDo)
{
    using Row = std::tuple<Numbers, int, std::uint32_t>;
    const auto against = makeReference<ArrayList>();
    fill(*against, {1, 2});
    for (const auto& [values, order, hash] : {Row{{}, -1, 1},
                                              {{1}, -1, 38 + 1},
                                              {{1, 2}, 0, (38 + 1) * 38 + 2},
                                              {{1, 2, 0}, 1, ((38 + 1) * 38 + 2) * 38},
                                              {{1, 3}, 1, (38 + 1) * 38 + 3},
                                              {{0, 9}, -1, 38 * 38 + 9}}) {
        SCOPED_TRACE(testing::PrintToString(values));
        const auto list = makeReference<TypeParam>();
        fill(*list, values);
        EXPECT_EQ(list->compareTo(*against), order);
        EXPECT_EQ(list->equals(*against), order == 0);
        EXPECT_EQ(list->hashCode(), hash);
    }
    EXPECT_THROW(static_cast<void>(against->compareTo(Integer32(1))), CastFailedException);
    EXPECT_FALSE(against->equals(Integer32(1)));
}

TYPED_TEST(ListTest, movesWholeCollectionsAndRetainAllEndsAtARemoval)
{
    auto& list = *this->m_list;
    const auto empty = makeReference<TypeParam>();
    const auto some = makeReference<LinkedList>();
    fill(*some, {1, 2});
    EXPECT_FALSE(list.addAll(*empty) || list.addAll(0, *empty) || list.removeAll(*empty));
    EXPECT_TRUE(list.containsAll(*empty));
    EXPECT_FALSE(list.containsAll(*some));

    fill(list, {2, 1, 1, 1});
    EXPECT_TRUE(list.containsAll(*some));
    EXPECT_TRUE(list.removeAll(*some));
    EXPECT_EQ(numbersOf(list), (Numbers{1, 1})) << "one for each element of the other";
    EXPECT_TRUE(list.addAll(1, *some));
    EXPECT_TRUE(list.addAll(4, *some));
    EXPECT_EQ(numbersOf(list), (Numbers{1, 1, 2, 1, 1, 2}));
    EXPECT_TRUE(list.addAll(list)) << "its own elements, once";
    EXPECT_EQ(list.getSize(), 12);

    EXPECT_FALSE(list.retainAll(*some));
    fill(list, {3});
    EXPECT_TRUE(list.retainAll(*some));
    fill(list, {3, 1, 2});
    expectModified([&] { list.retainAll(*some); });
    EXPECT_EQ(list.getSize(), 14) << "the removal of one that is not the last stays, and ends it";
}

TYPED_TEST(ListTest, holdsNullAndSharesElements)
{
    const int before = Living::count();
    {
        const auto list = makeReference<TypeParam>();
        const auto one = makeReference<Living>(1);
        for (IORVUnknown* element : {no, toUnknown(one.get()), no}) list->add(element);
        EXPECT_EQ(list->indexOf(nullptr), 0);
        EXPECT_EQ(list->lastIndexOf(nullptr), 2);
        EXPECT_EQ(list->indexOf(toUnknown(one.get())), 1);
        EXPECT_FALSE(list->contains(toUnknown(makeReference<Living>(1).get())));

        const auto copy = makeReference<TypeParam>(*list);
        const auto other = makeReference<ArrayList>(static_cast<const Collection&>(*list));
        EXPECT_EQ(copy->get(1), toUnknown(one.get())) << "not cloned";
        EXPECT_EQ(one->GetRefCount(), 4u);
        list->clear();
        copy->set(1, nullptr);
        EXPECT_EQ(other->remove(1), toUnknown(one.get()));
        EXPECT_EQ(one->GetRefCount(), 1u);
        copy->add(0, toUnknown(makeReference<Living>(2).get()));
    }
    EXPECT_EQ(Living::count(), before);
}

TYPED_TEST(ListTest, aRangeForGoesAsAnIteratorGoes)
{
    const auto plain = makeReference<TypeParam>();
    fill(*plain, {0, 1, 2});
    fill(*this->m_list, {0, 1, 2});
    for (const Reference<List>& list : {Reference<List>(this->m_list), Reference<List>(plain)}) {
        Numbers seen;
        for (const IORVUnknown* element : *list) {
            seen.push_back(unboxed(element));
            if (seen.size() < 6) list->add(boxed(9).get());
        }
        EXPECT_EQ(seen, (Numbers{0, 1, 2, 9, 9, 9, 9, 9})) << "appended ones are reached";
        expectModified([&] {
            for (const IORVUnknown* element : *list) {
                if (unboxed(element) == 1) list->remove(0);
            }
        });
        // A removal before the last element ends the walk at once, for it seems to be over.
        int rounds = 0;
        for (const IORVUnknown* element : *list) {
            rounds += element != nullptr ? 1 : 100;
            if (rounds == list->getSize() - 1) list->remove(0);
        }
        EXPECT_EQ(rounds, list->getSize()) << "after the last element nothing is checked";
    }
}

TYPED_TEST(ListTest, aListOutlivesItsWalk)
{
    const int before = Living::count();
    Reference<List> list = makeReference<TypeParam>();
    list->add(toUnknown(makeReference<Living>().get()));
    list->add(nullptr);
    int seen = 0;
    for (const IORVUnknown* element : *list) {
        list = nullptr;
        seen += element != nullptr ? 1 : 10;
        EXPECT_EQ(Living::count(), before + 1);
    }
    EXPECT_EQ(seen, 11);
    EXPECT_EQ(Living::count(), before);
}

TYPED_TEST(ListTest, aSubListIsALiveViewUntilTheListIsModifiedElsewhere)
{
    auto& list = *this->m_list;
    fill(list, {0, 1, 2, 3, 4});
    const Reference<List> view = static_cast<List&>(list).createSubList(1, 4);
    EXPECT_EQ(numbersOf(*view), (Numbers{1, 2, 3}));

    view->set(0, boxed(10).get());
    view->add(3, boxed(30).get());
    EXPECT_EQ(unboxed(view->remove(1)), 2);
    view->add(boxed(31).get());
    EXPECT_EQ(numbersOf(list), (Numbers{0, 10, 3, 30, 31, 4}));
    EXPECT_EQ(numbersOf(*view), (Numbers{10, 3, 30, 31}));
    EXPECT_EQ(numbersOf(*view->createSubList(1, 3)), (Numbers{3, 30}));

    list.remove(0);
    EXPECT_EQ(view->getSize(), 4);
    expectModified([&] { view->get(0); });
    expectModified([&] { view->set(0, nullptr); });
    expectModified([&] { view->add(0, nullptr); });
    expectModified([&] { view->remove(0); });
    EXPECT_THROW(view->get(4), RangeErrorException) << "the index is tested first";
    EXPECT_NO_THROW(view->add(nullptr)) << "through a new iterator";
}

TYPED_TEST(ListTest, iteratorsOfASubListStayWithinIt)
{
    auto& list = *this->m_list;
    fill(list, {0, 1, 2, 3});
    const Reference<List> view = static_cast<List&>(list).createSubList(1, 3);
    const auto iterator = view->createListIterator(0);
    expectModified([&] { iterator->previous(); });
    EXPECT_EQ(unboxed(iterator->next()), 1);
    iterator->remove();
    EXPECT_EQ(unboxed(iterator->next()), 2);
    expectModified([&] { iterator->next(); });
    iterator->add(boxed(21).get());
    EXPECT_EQ(iterator->nextIndex(), 2);
    EXPECT_EQ(numbersOf(*view), (Numbers{2, 21}));
    EXPECT_EQ(unboxed(iterator->previous()), 21);
    iterator->set(boxed(22).get());
    EXPECT_EQ(numbersOf(list), (Numbers{0, 2, 22, 3}));
    EXPECT_EQ(unboxed(iterator->previous()), 2);
    expectModified([&] { view->get(0); });

    const Reference<List> other = static_cast<List&>(list).createSubList(1, 4);
    const auto plain = other->createIterator();
    plain->next();
    plain->remove();
    expectModified([&] { plain->next(); });
    expectModified([&] { other->clear(); });
    EXPECT_EQ(numbersOf(list), (Numbers{0, 3})) << "removes one and throws";
}

/// Allocations made by appending `count` elements.
std::uint64_t allocationsOf(List& list, int count)
{
    static_cast<void>(orvcore::failAllocation(UINT32_MAX, false));
    for (int i = 0; i < count; ++i) list.add(nullptr);
    return orvcore::failAllocation(0, false);
}

TEST(ArrayList, growsByHalfAndNeverShrinks)
{
    const auto list = makeReference<ArrayList>();
    for (const int step : {1, 1, 1, 1, 2, 3, 4, 6, 9}) {
        EXPECT_EQ(allocationsOf(*list, 1), 1u) << "full at " << list->getSize() - 1;
        EXPECT_EQ(allocationsOf(*list, step - 1), 0u) << "room up to " << list->getSize();
    }
    list->clear();
    EXPECT_EQ(allocationsOf(*list, 28), 0u);
}

TEST(LinkedList, aQueueThatHasRunNeedsNoMemory)
{
    const auto queue = makeReference<LinkedList>();
    for (const unsigned expected : {1u, 0u}) {
        EXPECT_EQ(allocationsOf(*queue, 8), expected);
        while (!queue->isEmpty()) queue->remove(0);
    }
}

TEST(LinkedListCursor, goesByIndexWhateverHappensToTheList)
{
    const auto list = makeReference<LinkedList>();
    fill(*list, {0, 1, 2, 3, 4});
    internal::LinkedListCursor cursor(*list);
    EXPECT_EQ(unboxed(cursor.next()), 0);
    EXPECT_EQ(unboxed(cursor.next()), 1);
    list->remove(0);
    EXPECT_EQ(unboxed(cursor.next()), 3) << "what get(2) gives now";
    list->add(0, boxed(9).get());
    EXPECT_EQ(unboxed(cursor.next()), 3);
    list->add(boxed(5).get());
    EXPECT_EQ(unboxed(cursor.next()), 4);
    EXPECT_EQ(unboxed(cursor.next()), 5);
    EXPECT_FALSE(cursor.hasNext());
    list->clear();
    EXPECT_FALSE(cursor.hasNext());
}

} // namespace
} // namespace orv::collections::quark
