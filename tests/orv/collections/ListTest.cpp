#include "orv/collections/List.h"
#include "orv/Exceptions.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/LinkedList.h"
#include "platform/orvcore.h"
#include "tests/orv/collections/Elements.h"
#include "tests/support/Living.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <utility>

namespace orv::collections::quark {
namespace {

using namespace test;
using Numbers = std::vector<int>;

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
};
using Lists = testing::Types<ArrayList, LinkedList>;
TYPED_TEST_SUITE(ListTest, Lists);

TYPED_TEST(ListTest, refusesAnIndexOutsideAndChangesNothing)
{
    const Reference<List> list = makeReference<Probe<TypeParam>>();
    fill(*list, {1, 2});
    for (const int bad : {-1, 2, 3}) {
        EXPECT_THROW(list->get(bad), RangeErrorException) << bad;
        EXPECT_THROW(list->set(bad, nullptr), RangeErrorException) << bad;
        EXPECT_THROW(list->remove(bad), RangeErrorException) << bad;
        if (bad == 2) continue;
        EXPECT_THROW(list->add(bad, nullptr), RangeErrorException) << bad;
        EXPECT_THROW(list->addAll(bad, *list), RangeErrorException) << bad;
        EXPECT_THROW(list->createListIterator(bad), RangeErrorException) << bad;
        EXPECT_THROW(list->createConstListIterator(bad), RangeErrorException) << bad;
        EXPECT_THROW(list->createSubList(0, bad), RangeErrorException) << bad;
    }
    EXPECT_THROW(list->createSubList(2, 1), RangeErrorException);
    EXPECT_THROW(list->createSubList(-1, 1), RangeErrorException);
    EXPECT_TRUE(list->createSubList(2, 2)->isEmpty());
    EXPECT_EQ(numbersOf(*list), (Numbers{1, 2}));
}

TYPED_TEST(ListTest, anOpenIteratorNoticesAllButAppending)
{
    const Reference<List> list = makeReference<Probe<TypeParam>>();
    fill(*list, {1});
    const auto iterator = list->createListIterator(1);
    EXPECT_FALSE(iterator->hasNext());
    EXPECT_THROW(iterator->next(), RangeErrorException);
    fill(*list, {2, 3});
    EXPECT_EQ(unboxed(iterator->next()), 2);
    list->set(0, nullptr);
    EXPECT_TRUE(iterator->hasNext()) << "answers without a check";
    expectModified([&] { iterator->next(); });
    expectModified([&] { iterator->previous(); });
    expectModified([&] { iterator->remove(); });
    expectModified([&] { iterator->set(nullptr); });
    expectModified([&] { iterator->add(nullptr); });
}

TYPED_TEST(ListTest, anIteratorChangesTheListUnderItself)
{
    const Reference<List> list = makeReference<Probe<TypeParam>>();
    fill(*list, {1, 2, 3, 4});
    const auto iterator = list->createListIterator(1);
    const auto refuses = [&] {
        EXPECT_THROW(iterator->remove(), IllegalStateException);
        EXPECT_THROW(iterator->set(nullptr), IllegalStateException);
    };
    refuses();
    EXPECT_EQ(unboxed(iterator->next()), 2);
    for (const int value : {20, 21}) iterator->set(boxed(value).get());
    iterator->add(boxed(5).get());
    EXPECT_EQ(iterator->previousIndex(), 2);
    refuses();
    EXPECT_EQ(unboxed(iterator->next()), 3);
    iterator->remove();
    EXPECT_EQ(iterator->nextIndex(), 3);
    refuses();
    EXPECT_EQ(unboxed(iterator->previous()), 5);
    iterator->remove();
    EXPECT_EQ(iterator->nextIndex(), 2) << "the cursor stood on the removed element";
    EXPECT_EQ(unboxed(iterator->previous()), 21);
    EXPECT_EQ(unboxed(iterator->previous()), 1);
    EXPECT_FALSE(iterator->hasPrevious());
    EXPECT_THROW(iterator->previous(), RangeErrorException);
    EXPECT_EQ(iterator->nextIndex(), 0) << "a failed step moves nothing";
    EXPECT_EQ(numbersOf(*list), (Numbers{1, 21, 4}));
}

TYPED_TEST(ListTest, agreesWithAPlainModelUnderRandomOperations)
{
    std::mt19937 random(20260);
    const auto list = makeReference<Probe<TypeParam>>();
    Numbers model;
    int modifications = 0;
    for (int round = 0; round < 4000; ++round) {
        const int value = static_cast<int>(random() % 8);
        const int place = static_cast<int>(random() % (model.size() + 1));
        const auto at = model.begin() + place;
        const auto element = boxed(value);
        const auto found = std::find(model.begin(), model.end(), value);
        const auto last = std::find(model.rbegin(), model.rend(), value);
        const bool isThere = found != model.end();
        switch (const auto choice = random() % 8) {
        case 0:
        case 1: // no modification for its iterators
            EXPECT_TRUE(list->add(element.get()));
            model.push_back(value);
            break;
        case 2:
            EXPECT_TRUE(list->add(place, element.get()));
            model.insert(at, value);
            ++modifications;
            break;
        case 3:
            EXPECT_EQ(list->indexOf(element.get()), isThere ? found - model.begin() : -1);
            EXPECT_EQ(list->lastIndexOf(element.get()), model.rend() - last - 1);
            EXPECT_EQ(list->contains(element.get()), isThere);
            EXPECT_EQ(list->remove(element.get()), isThere);
            if (!isThere) break;
            model.erase(found);
            ++modifications;
            break;
        case 4:
            if (model.size() < 200) break;
            modifications += std::is_same_v<TypeParam, ArrayList> ? list->getSize() + 1 : 1;
            list->clear();
            model.clear();
            break;
        default:
            if (at == model.end()) break;
            ++modifications;
            if (choice == 5) {
                EXPECT_EQ(unboxed(list->remove(place)), *at);
                model.erase(at);
            } else {
                EXPECT_EQ(unboxed(list->set(place, element.get())), std::exchange(*at, value));
            }
        }
        ASSERT_EQ(list->getSize(), static_cast<int>(model.size()));
        ASSERT_EQ(list->m_modCount, modifications);
    }
    EXPECT_EQ(numbersOf(*list), model);
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
    const Reference<List> list = makeReference<Probe<TypeParam>>();
    const auto empty = makeReference<TypeParam>();
    const auto some = makeReference<LinkedList>();
    fill(*some, {1, 2});
    EXPECT_FALSE(list->addAll(*empty) || list->addAll(0, *empty) || list->removeAll(*empty));
    EXPECT_TRUE(list->containsAll(*empty));
    EXPECT_FALSE(list->containsAll(*some));

    fill(*list, {2, 1, 1, 1});
    EXPECT_TRUE(list->containsAll(*some));
    EXPECT_TRUE(list->removeAll(*some));
    EXPECT_EQ(numbersOf(*list), (Numbers{1, 1})) << "one for each element of the other";
    EXPECT_TRUE(list->addAll(1, *some) && list->addAll(4, *some));
    EXPECT_EQ(numbersOf(*list), (Numbers{1, 1, 2, 1, 1, 2}));
    EXPECT_TRUE(list->addAll(*list)) << "its own elements, once";
    EXPECT_FALSE(list->retainAll(*some));
    fill(*list, {3});
    EXPECT_TRUE(list->retainAll(*some));
    fill(*list, {3, 1, 2});
    expectModified([&] { list->retainAll(*some); });
    EXPECT_EQ(list->getSize(), 14) << "the removal of one that is not the last stays, and ends it";
}

TYPED_TEST(ListTest, holdsNullAndSharesElementsAndOutlivesItsWalk)
{
    const int before = Living::count();
    auto list = makeReference<TypeParam>();
    auto one = makeReference<Living>(1);
    for (const int i : {0, 1, 0}) list->add(i == 0 ? nullptr : toUnknown(one.get()));
    EXPECT_EQ(list->indexOf(nullptr), 0);
    EXPECT_EQ(list->lastIndexOf(nullptr), 2);
    EXPECT_FALSE(list->contains(toUnknown(makeReference<Living>(1).get())));

    const auto copy = makeReference<TypeParam>(*list);
    const auto other = makeReference<ArrayList>(static_cast<const Collection&>(*list));
    EXPECT_EQ(copy->get(1), toUnknown(one.get())) << "not cloned";
    EXPECT_EQ(one->GetRefCount(), 4u);
    list->clear();
    copy->set(1, nullptr);
    EXPECT_EQ(other->remove(1), toUnknown(one.get()));
    EXPECT_EQ(one->GetRefCount(), 1u);

    list->add(0, toUnknown(std::exchange(one, nullptr).get()));
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

TYPED_TEST(ListTest, aRangeForGoesAsAnIteratorGoes)
{
    // The class itself is walked from inside, one derived from it by its iterator.
    for (const Reference<List>& list : {Reference<List>(makeReference<Probe<TypeParam>>()),
                                        Reference<List>(makeReference<TypeParam>())}) {
        fill(*list, {0, 1, 2});
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
        for ([[maybe_unused]] const IORVUnknown* element : *list) {
            if (++rounds == list->getSize() - 1) list->remove(0);
        }
        EXPECT_EQ(rounds, list->getSize()) << "after the last element nothing is checked";
    }
}

TYPED_TEST(ListTest, aSubListIsALiveViewUntilTheListIsModifiedElsewhere)
{
    const Reference<List> list = makeReference<Probe<TypeParam>>();
    fill(*list, {0, 1, 2, 3, 4});
    const Reference<List> view = list->createSubList(1, 4);
    view->set(0, boxed(10).get());
    view->add(3, boxed(30).get());
    EXPECT_EQ(unboxed(view->remove(1)), 2);
    view->add(boxed(31).get());
    EXPECT_EQ(numbersOf(*list), (Numbers{0, 10, 3, 30, 31, 4}));
    EXPECT_EQ(numbersOf(*view), (Numbers{10, 3, 30, 31}));
    EXPECT_EQ(numbersOf(*view->createSubList(1, 3)), (Numbers{3, 30}));

    list->remove(0);
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
    const Reference<List> list = makeReference<Probe<TypeParam>>();
    fill(*list, {0, 1, 2, 3});
    const Reference<List> view = list->createSubList(1, 3);
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
    EXPECT_EQ(unboxed(iterator->previous()), 2);
    expectModified([&] { view->get(0); });
    EXPECT_EQ(numbersOf(*list), (Numbers{0, 2, 22, 3}));

    const Reference<List> other = list->createSubList(1, 4);
    const auto plain = other->createIterator();
    plain->next();
    plain->remove();
    expectModified([&] { plain->next(); });
    expectModified([&] { other->clear(); });
    EXPECT_EQ(numbersOf(*list), (Numbers{0, 3})) << "removes one and throws";
}

/// Allocations made by appending `count` elements.
std::uint64_t allocationsOf(List& list, int count)
{
    static_cast<void>(orvcore::failAllocation(UINT32_MAX, false));
    for (int i = 0; i < count; ++i) list.add(nullptr);
    return orvcore::failAllocation(0, false);
}

TEST(ListMemory, growsByHalfOrByNodesAndServesAgain)
{
    const auto list = makeReference<ArrayList>();
    for (const int step : {1, 1, 1, 1, 2, 3, 4, 6, 9}) {
        EXPECT_EQ(allocationsOf(*list, 1), 1u) << "full at " << list->getSize() - 1;
        EXPECT_EQ(allocationsOf(*list, step - 1), 0u) << "room up to " << list->getSize();
    }
    list->clear();
    EXPECT_EQ(allocationsOf(*list, 28), 0u);

    const auto queue = makeReference<LinkedList>();
    EXPECT_EQ(allocationsOf(*queue, 8), 1u);
    while (!queue->isEmpty()) queue->remove(0);
    EXPECT_EQ(allocationsOf(*queue, 8), 0u);
}

TEST(TypedList, givesItsElementsInTheirClass)
{
    collections::List<String> list(makeReference<LinkedList>().get());
    for (const char16_t* each : {u"b", u"a"}) list.add(text(each).get());
    list.add(0, text(u"a").get());
    list.add(2, nullptr);
    EXPECT_EQ(joined(list), u"ab-a");
    EXPECT_EQ(*list.get(1), u"b");
    EXPECT_EQ(list.indexOf(text(u"a").get()), 0);
    EXPECT_EQ(list.lastIndexOf(text(u"a").get()), 3);
    EXPECT_TRUE(list.contains(text(u"b").get()));
    EXPECT_EQ(joined(std::as_const(list).createSubList(1, 3)), u"b-");

    EXPECT_EQ(*list.set(1, text(u"c").get()), u"b");
    EXPECT_EQ(list.remove(2), nullptr);
    EXPECT_TRUE(list.remove(text(u"a").get()));
    EXPECT_EQ(joined(list), u"ca");

    const auto iterator = list.createListIterator(2);
    EXPECT_EQ(*iterator->previous(), u"a");
    iterator->set(text(u"e").get());
    iterator->add(text(u"d").get());
    EXPECT_EQ(*iterator->next(), u"e");
    iterator->remove();
    EXPECT_EQ(joined(list), u"cd");
}

TEST(TypedList, goesByWhatIsWithin)
{
    const auto inner = makeReference<ArrayList>();
    const auto first = makeReference<ArrayList>();
    collections::List<String> a(first.get());
    collections::Collection<String> b(inner.get());
    b.add(text(u"x").get());
    EXPECT_EQ(a.compareTo(b), -1);
    EXPECT_TRUE(a.addAll(b));
    EXPECT_EQ(a.compareTo(b), 0);
    EXPECT_TRUE(a.equals(*inner));
    EXPECT_EQ(a.hashCode(), inner->hashCode());
    EXPECT_THROW(static_cast<void>(a.compareTo(Integer32(1))), CastFailedException);

    collections::List<Object>(first.get()).add(0, makeReference<Integer32>(7).get());
    EXPECT_THROW(a.get(0), CastFailedException) << "an element of another class";
    EXPECT_THROW(a.createConstIterator()->next(), CastFailedException);
    EXPECT_THROW(joined(a), CastFailedException);
}

TEST(AbstractCollection, throwsTheResultOfAFailingComparator)
{
    struct Failing : ::orv::quark::Implements<Object, IORVComparator> {
        Result Compare(const IORVUnknown*, const IORVUnknown*, std::int32_t*) const override
        {
            return E_NOT_FOUND;
        }
        Result Hash(const IORVUnknown*, std::uint32_t*) const override { return E_NOT_FOUND; }
    };
    const auto comparator = makeReference<Failing>();
    for (Failing* const failing : {comparator.get(), static_cast<Failing*>(nullptr)}) {
        const auto list = makeReference<ArrayList>(failing);
        const auto map = makeReference<HashMap>(failing, failing, 1, 1.0F);
        list->add(nullptr);
        const Result expected = failing == nullptr ? E_POINTER : E_NOT_FOUND;
        EXPECT_EQ(resultOf([&] { static_cast<void>(list->contains(nullptr)); }), expected);
        EXPECT_EQ(resultOf([&] { static_cast<void>(list->hashCode()); }), expected);
        EXPECT_EQ(resultOf([&] { list->remove(nullptr); }), expected);
        EXPECT_EQ(resultOf([&] { map->put(nullptr, nullptr); }), expected);
        EXPECT_EQ(list->getSize() - map->getSize(), 1);
    }
    EXPECT_EQ(comparator->GetRefCount(), 1u);
}

} // namespace
} // namespace orv::collections::quark
