#include "orv/Class.h"

#include "orv/ClassManager.h"
#include "orv/Exceptions.h"
#include "orv/Library.h"
#include "orv/Reference.h"
#include "orv/String.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace orv {
namespace {

struct Unregistered : Object {};
struct RegisteredTwice : Object {};
struct TextOfAHost : String {};

Object* makeFirst()
{
    return new RegisteredTwice;
}

TEST(Class, isInstanceLooksAtTheExactClass)
{
    EXPECT_FALSE(Class::forName(u"CORVString")->isInstance(TextOfAHost()));
    EXPECT_FALSE(Class::forName(u"CORVObject")->isInstance(String()));
}

TEST(Class, refusesWhatIsNotThere)
{
    try {
        Class::forName(u"no such class");
        FAIL() << "found a class that does not exist";
    } catch (const ClassNotFoundException& exception) {
        EXPECT_TRUE(exception.getDescription().equals(u"no such class"));
    }
    EXPECT_THROW(Unregistered().getClass(), ClassNotFoundException);
    EXPECT_THROW(Class::forName(u"CORVInteger32")->createInstance(), IllegalAccessException);
}

TEST(ClassManager, theFirstRegistrationStands)
{
    ClassManager* const manager = ClassManager::getInstance();
    manager->registerClass(u"test::First", &typeid(RegisteredTwice), &makeFirst);
    const Class* const first = manager->lookupName(u"test::First");
    manager->registerClass(u"test::First", &typeid(RegisteredTwice), nullptr);
    EXPECT_EQ(manager->lookupName(u"test::First"), first);
    EXPECT_NO_THROW(Reference<Object>(first->createInstance()));

    manager->registerClass(u"test::Second", &typeid(RegisteredTwice), nullptr);
    EXPECT_EQ(manager->lookupType(&typeid(RegisteredTwice)), first);
    EXPECT_THROW(manager->lookupName(u"test::Second")->createInstance(), IllegalAccessException);
}

/// Counts its instances, as the managers of the library have no way to.
class Counted {
public:
    static int s_built;

protected:
    Counted() { ++s_built; }
    ~Counted() { --s_built; }
};
int Counted::s_built = 0;

using OneCounted = util::Singleton<Counted, &g_pGlobalLock>;

TEST(Singleton, isBuiltOnceAndFreedOnce)
{
    std::vector<std::thread> threads;
    std::vector<OneCounted*> seen(8);
    for (auto& place : seen) {
        threads.emplace_back([&place] { place = OneCounted::getInstance(); });
    }
    for (auto& thread : threads) thread.join();
    for (auto* instance : seen) EXPECT_EQ(instance, seen[0]);
    EXPECT_EQ(Counted::s_built, 1);

    OneCounted::freeInstance();
    EXPECT_EQ(OneCounted::m_instance.load(), nullptr);
    EXPECT_EQ(Counted::s_built, 0);
    OneCounted::freeInstance();
    EXPECT_EQ(Counted::s_built, 0);
}

} // namespace
} // namespace orv
