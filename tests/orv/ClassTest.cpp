#include "orv/Class.h"

#include "orv/ClassInfo.h"
#include "orv/ClassManager.h"
#include "orv/Exceptions.h"
#include "orv/Reference.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace orv {
namespace {

/// The list of names that hosts rely on, * behind those with a factory.
std::vector<std::string> listedClasses()
{
    std::vector<std::string> list;
    std::ifstream file(ORV_CLASS_NAMES);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) list.push_back(line);
    }
    return list;
}

std::vector<ClassInfo> classInfos()
{
    std::uint32_t count = 0;
    EXPECT_EQ(ORVEnumerateClassInfo(&count, nullptr), E_BUFFER_TOO_SMALL);
    std::vector<ClassInfo> infos(count);
    EXPECT_EQ(ORVEnumerateClassInfo(&count, infos.data()), S_OK);
    return infos;
}

std::string narrow(const char16_t* text)
{
    return String(text).getBytes(u"UTF-8");
}

TEST(ClassTable, holdsTheListedNamesInTheirOrder)
{
    std::vector<std::string> names;
    for (const ClassInfo& info : classInfos()) {
        names.push_back(narrow(info.name) + (info.hasFactory != 0 ? "*" : ""));
    }
    EXPECT_EQ(names.size(), 148u);
    EXPECT_EQ(names, listedClasses());
}

TEST(ClassTable, factoriesMakeObjectsOfTheirClass)
{
    for (const ClassInfo& info : classInfos()) {
        const Class* const found = Class::forName(info.name);
        EXPECT_EQ(narrow(found->getName()), narrow(info.name));
        if (info.hasFactory == 0) continue;
        Object* const made = found->createInstance();
        EXPECT_EQ(made->GetRefCount(), 0u) << narrow(info.name);
        const Reference<Object> owner(made);
        EXPECT_TRUE(found->isInstance(*made)) << narrow(info.name);
        EXPECT_EQ(made->getClass()->isInstance(*made), true) << narrow(info.name);
    }
}

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
    EXPECT_EQ(test::refusalOf<ClassNotFoundException>([] { Class::forName(u"no such class"); }),
              test::Refusal(E_FAIL, "no such class"));
    EXPECT_THROW(Unregistered().getClass(), ClassNotFoundException);
    EXPECT_THROW(Class::forName(u"CORVInteger32")->createInstance(), IllegalAccessException);
}

TEST(ClassManager, theFirstRegistrationStands)
{
    ClassManager* const manager = ClassManager::getInstance();
    manager->registerClass(u"test::First", &typeid(RegisteredTwice), &makeFirst);
    const Class* const first = manager->lookupName(u"test::First");
    manager->registerClass(u"test::First", &typeid(Unregistered), nullptr);
    EXPECT_EQ(manager->lookupName(u"test::First"), first);
    EXPECT_THROW(manager->lookupType(&typeid(Unregistered)), ClassNotFoundException);
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
