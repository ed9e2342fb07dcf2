#include "orv/Class.h"
#include "orv/ClassInfo.h"
#include "orv/Exceptions.h"
#include "orv/Reference.h"
#include "orv/String.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
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

} // namespace
} // namespace orv
