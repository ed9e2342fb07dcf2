#include "orv/Class.h"

#include "orv/ClassInfo.h"
#include "orv/ClassManager.h"
#include "orv/Exceptions.h"
#include "orv/Library.h"
#include "orv/Reference.h"
#include "orv/String.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace orv {
namespace {

struct ListedClass {
    std::string name;
    bool hasFactory;
    bool isBuilt;
};

/// The list of names that hosts rely on.
std::vector<ListedClass> listedClasses()
{
    std::vector<ListedClass> list;
    std::ifstream file(ORV_CLASS_NAMES);
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        const bool isBuilt = line[0] != '-';
        std::string name = isBuilt ? line : line.substr(2);
        const bool hasFactory = name.back() == '*';
        if (hasFactory) name.pop_back();
        list.push_back({name, hasFactory, isBuilt});
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
    const auto list = listedClasses();
    ASSERT_EQ(list.size(), 148u);
    const auto infos = classInfos();
    std::size_t next = 0;
    for (const ListedClass& listed : list) {
        if (!listed.isBuilt) {
            EXPECT_THROW(Class::forName(String(listed.name.c_str()).getData()),
                         ClassNotFoundException)
                << listed.name << " is built: take its mark off the list";
            continue;
        }
        ASSERT_LT(next, infos.size()) << listed.name << " is missing";
        EXPECT_EQ(narrow(infos[next].name), listed.name);
        EXPECT_EQ(infos[next].hasFactory != 0, listed.hasFactory) << listed.name;
        ++next;
    }
    EXPECT_EQ(next, infos.size());
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
