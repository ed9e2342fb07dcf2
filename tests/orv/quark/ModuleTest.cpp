#include "orv/quark/ClassRow.h"
#include "orv/quark/DllModule.h"
#include "orv/util/RegistryKey.h"
#include "tests/support/Living.h"
#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace orv::quark {
namespace {

constexpr GUID NAMED{0x11111111, 0x2222, 0x3333, {0x44, 0, 0, 0, 0, 0, 0, 0x55}};
constexpr GUID NAMELESS{0x11111112, 0x2222, 0x3333, {0x44, 0, 0, 0, 0, 0, 0, 0x55}};

struct Named : ComObject {
    static const char16_t* GetComProgID() { return u"Test.Named.2"; }
    static const char16_t* GetComDescription() { return u"has names"; }
    static const char16_t* GetComVersionIndependentProgID() { return u"Test.Named"; }
};

using Values = std::map<std::string, std::string>;

/// The default values of a key and all below it, by path.
Values registered(const util::RegistryKey& key)
{
    Values values;
    if (key.valueExists(u"")) {
        values[key.getKey(true).getBytes()] = key.getValueString(u"").getBytes();
    }
    for (const auto keys = key.getSubkeyIterator(); keys->hasNext();) {
        values.merge(registered(*keys->next()));
    }
    return values;
}

TEST(Module, registersWhatAClassTellsAndRemovesIt)
{
    const test::ScratchRegistry registry;
    const util::RegistryKey root(u"ORV_HKEY_CLASSES");
    const std::string named = "{11111111-2222-3333-4400-000000000055}";
    const std::string nameless = "{11111112-2222-3333-4400-000000000055}";
    ClassData classes[] = {classRow<Named>(NAMED), classRow<ComObject>(NAMELESS), endOfClasses()};
    DllModule module(classes);
    EXPECT_EQ(module.RegisterServer(ModuleHandle{nullptr}), E_FAIL);
    EXPECT_EQ(registered(root), Values());
    EXPECT_EQ(module.RegisterServer(u"/lib/x.so"), S_OK);
    const Values expected = {
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
    EXPECT_EQ(registered(root), expected);
    EXPECT_EQ(module.UnregisterServer(), S_OK);
    EXPECT_EQ(registered(root), Values());
    EXPECT_EQ(module.UnregisterServer(), E_NOT_FOUND);
    EXPECT_EQ(module.RegisterServer(ModuleHandle{&NAMED}), S_OK);
    EXPECT_EQ(registered(root)["\\\\CLSID\\" + named + "\\InprocServer32"],
              std::filesystem::read_symlink("/proc/self/exe"));
}

TEST(Module, countsItsObjectsAndLocksAndReleasesItsFactories)
{
    const int livingBefore = test::Living::count();
    ClassData classes[] = {classRow<test::Living>(NAMED), classRow<Named>(NAMELESS),
                           endOfClasses()};
    {
        DllModule module(classes);
        ClassFactory lock;
        lock.SetComModule(&module);
        EXPECT_EQ(lock.LockServer(-1), S_OK);
        EXPECT_EQ(module.CanUnloadNow(), 1);
        EXPECT_EQ(ClassFactory(lock).LockServer(0), S_OK);
        EXPECT_EQ(module.CanUnloadNow(), 0);

        void* out = &module;
        EXPECT_EQ(module.GetClassObject(GUID{}, IORVUnknown::IID, &out), CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(out, nullptr);
        ASSERT_EQ(module.GetClassObject(NAMED, IORVClassFactory::IID, &out), S_OK);
        const auto made = Reference<IORVClassFactory>::adopt(static_cast<IORVClassFactory*>(out));
        EXPECT_EQ(made->CreateInstance(nullptr, IORVClassFactory::IID, &out), E_NOINTERFACE);
        EXPECT_EQ(made->CreateInstance(made.get(), IORVClassFactory::IID, &out), E_INVALIDARG);
        EXPECT_EQ(made->CreateInstance(made.get(), IORVUnknown::IID, &out), CLASS_E_NOAGGREGATION);
        EXPECT_EQ(test::Living::count(), livingBefore);
        ASSERT_EQ(made->CreateInstance(nullptr, IORVUnknown::IID, &out), S_OK);
        EXPECT_EQ(module.GetRefCount(), 2u) << "the factory and the object";
        static_cast<IORVUnknown*>(out)->Release();
        EXPECT_EQ(module.GetRefCount(), 1u);
    }
    EXPECT_EQ(classes[0].factory.load(), nullptr);
    EXPECT_EQ(test::Living::count(), livingBefore);
}

} // namespace
} // namespace orv::quark
