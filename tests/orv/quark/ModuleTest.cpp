#include "orv/quark/ClassRow.h"
#include "orv/quark/DllModule.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"
#include "tests/support/Living.h"
#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orv::quark {
namespace {

using util::RegistryKey;

constexpr GUID NAMED{0x11111111, 0x2222, 0x3333, {0x44, 0, 0, 0, 0, 0, 0, 0x55}};
constexpr GUID NAMELESS{0x11111112, 0x2222, 0x3333, {0x44, 0, 0, 0, 0, 0, 0, 0x55}};
constexpr GUID OTHER{0x11111113, 0x2222, 0x3333, {0x44, 0, 0, 0, 0, 0, 0, 0x55}};

struct Named : ComObject {
    static const char16_t* GetComProgID() { return u"Test.Named.2"; }
    static const char16_t* GetComDescription() { return u"has names"; }
    static const char16_t* GetComVersionIndependentProgID() { return u"Test.Named"; }
};

int factoriesMade = 0;

Result countedFactory(Module* module, CreateInstanceQI create, const GUID& iid, void** out)
{
    ++factoriesMade;
    return ClassFactory::Create(module, create, iid, out);
}

/// All default values below the root of the classes, by path.
void collect(const RegistryKey& key, std::map<std::string, std::string>& values)
{
    if (key.valueExists(u"")) {
        values[key.getKey(true).getBytes()] = key.getValueString(u"").getBytes();
    }
    for (const auto keys = key.getSubkeyIterator(); keys->hasNext();) {
        collect(*keys->next(), values);
    }
}

std::map<std::string, std::string> registered()
{
    std::map<std::string, std::string> values;
    collect(RegistryKey(u"ORV_HKEY_CLASSES"), values);
    return values;
}

TEST(Module, registersWhatAClassTellsAndRemovesIt)
{
    const test::ScratchRegistry registry;
    const std::string named = "{11111111-2222-3333-4400-000000000055}";
    const std::string nameless = "{11111112-2222-3333-4400-000000000055}";
    ClassData classes[] = {classRow<Named>(NAMED), classRow<ComObject>(NAMELESS), endOfClasses()};
    DllModule module(classes);
    EXPECT_EQ(module.RegisterServer(static_cast<const char16_t*>(nullptr)), E_POINTER);
    EXPECT_TRUE(registered().empty());
    EXPECT_EQ(module.RegisterServer(u"/lib/x.so"), S_OK);
    const std::map<std::string, std::string> expected = {
        {"\\\\Test.Named.2", "has names"},
        {"\\\\Test.Named.2\\CLSID", named},
        {"\\\\Test.Named", "has names"},
        {"\\\\Test.Named\\CLSID", named},
        {"\\\\Test.Named\\CurVer", "Test.Named.2"},
        {"\\\\CLSID\\" + named, "has names"},
        {"\\\\CLSID\\" + named + "\\ProgID", "Test.Named.2"},
        {"\\\\CLSID\\" + named + "\\VersionIndependentProgID", "Test.Named"},
        {"\\\\CLSID\\" + named + "\\InprocServer32", "/lib/x.so"},
        {"\\\\CLSID\\" + nameless, ""},
        {"\\\\CLSID\\" + nameless + "\\InprocServer32", "/lib/x.so"},
    };
    EXPECT_EQ(registered(), expected);

    EXPECT_EQ(module.UnregisterServer(), S_OK);
    EXPECT_TRUE(registered().empty());
    EXPECT_EQ(module.UnregisterServer(), E_NOT_FOUND);
    EXPECT_EQ(module.RegisterServer(ModuleHandle{nullptr}), E_FAIL);
    EXPECT_EQ(module.RegisterServer(ModuleHandle{&factoriesMade}), S_OK);
    EXPECT_NE(registered()["\\\\CLSID\\" + nameless + "\\InprocServer32"].find("orv_quark_tests"),
              std::string::npos);
    ClassData none[] = {endOfClasses()};
    EXPECT_EQ(DllModule(none).UnregisterServer(), S_OK);
}

TEST(Module, makesAFactoryOnceAndReleasesItInTheEnd)
{
    const int livingBefore = test::Living::count();
    factoriesMade = 0;
    ClassData classes[] = {classRow<test::Living>(NAMED), classRow<Named>(NAMELESS),
                           endOfClasses()};
    classes[0].createFactory = &countedFactory;
    {
        DllModule module(classes);
        void* out = &module;
        EXPECT_EQ(module.GetClassObject(OTHER, IORVUnknown::IID, &out), CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(module.GetClassObject(NAMED, IORVUnknown::IID, nullptr), E_POINTER);
        EXPECT_EQ(module.CanUnloadNow(), 0);
        for (int i = 0; i < 2; ++i) {
            ASSERT_EQ(module.GetClassObject(NAMED, IORVClassFactory::IID, &out), S_OK);
            const auto factory =
                Reference<IORVClassFactory>::adopt(static_cast<IORVClassFactory*>(out));
            EXPECT_EQ(factory->CreateInstance(nullptr, IORVClassFactory::IID, &out), E_NOINTERFACE);
            EXPECT_EQ(factory->CreateInstance(nullptr, IORVUnknown::IID, nullptr), E_POINTER);
            ASSERT_EQ(factory->CreateInstance(nullptr, IORVUnknown::IID, &out), S_OK);
            const auto object = Reference<IORVUnknown>::adopt(static_cast<IORVUnknown*>(out));
            EXPECT_EQ(test::Living::count(), livingBefore + 1);
            EXPECT_EQ(module.GetRefCount(), 2u) << "the factory and the object";
        }
        EXPECT_EQ(factoriesMade, 1);
        EXPECT_EQ(module.CanUnloadNow(), 1) << "the factory that it keeps";
    }
    EXPECT_EQ(classes[0].factory.load(), nullptr);
    EXPECT_EQ(test::Living::count(), livingBefore);
}

TEST(Module, aServerLockKeepsItLoaded)
{
    ClassData none[] = {endOfClasses()};
    Module module(none);
    ClassFactory factory;
    EXPECT_EQ(factory.LockServer(1), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), 0);
    factory.SetComModule(&module);
    EXPECT_EQ(factory.LockServer(1), S_OK);
    EXPECT_EQ(ClassFactory(factory).LockServer(-1), S_OK);
    EXPECT_EQ(module.GetRefCount(), 2u);
    EXPECT_EQ(factory.LockServer(0), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), 1);
    EXPECT_EQ(factory.LockServer(0), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), 0);

    void* out = nullptr;
    EXPECT_EQ(factory.CreateInstance(nullptr, IORVUnknown::IID, &out), E_FAIL);
}

} // namespace
} // namespace orv::quark
