#include "orv/Class.h"
#include "orv/quark/ClassRow.h"
#include "orv/quark/DllModule.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"
#include "platform/threads.h"
#include "tests/support/Living.h"
#include "tests/support/Processes.h"
#include "tests/support/Refusals.h"
#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <map>
#include <string>
#include <thread>

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

std::uint32_t s_factories = 0;
std::thread s_second;

/// Makes a class factory; meanwhile another thread asks for one, and waits for the lock.
Result slowFactory(Module* module, CreateInstanceQI create, const GUID& iid, void** out)
{
    if (++s_factories == 1) {
        std::atomic<std::uint32_t> id{0};
        s_second = std::thread([module, &id] {
            id = orvcore::currentThreadId();
            void* found = nullptr;
            EXPECT_EQ(module->GetClassObject(NAMED, IORVUnknown::IID, &found), S_OK);
            static_cast<IORVUnknown*>(found)->Release();
        });
        EXPECT_TRUE(test::awaitTrue([&] { return id != 0; }) && test::awaitSleepOf(id));
    }
    return ClassFactory::Create(module, create, iid, out);
}

TEST(Module, countsItsObjectsAndLocksAndReleasesItsFactories)
{
    const int livingBefore = test::Living::count();
    ClassData classes[] = {classRow<test::Living>(NAMED), endOfClasses()};
    classes[0].createFactory = &slowFactory;
    {
        DllModule module(classes);
        void* out = &module;
        EXPECT_EQ(module.GetClassObject(GUID{}, IORVUnknown::IID, &out), CLASS_E_CLASSNOTAVAILABLE);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(module.CanUnloadNow(), 0);
        ASSERT_EQ(module.GetClassObject(NAMED, IORVClassFactory::IID, &out), S_OK);
        s_second.join();
        EXPECT_EQ(s_factories, 1u);
        const auto made = Reference<IORVClassFactory>::adopt(static_cast<IORVClassFactory*>(out));
        EXPECT_EQ(made->CreateInstance(nullptr, IORVClassFactory::IID, &out), E_NOINTERFACE);
        EXPECT_EQ(made->CreateInstance(made.get(), IORVClassFactory::IID, &out), E_INVALIDARG);
        EXPECT_EQ(made->CreateInstance(made.get(), IORVUnknown::IID, &out), CLASS_E_NOAGGREGATION);
        EXPECT_EQ(test::Living::count(), livingBefore);
        ASSERT_EQ(made->CreateInstance(nullptr, IORVUnknown::IID, &out), S_OK);
        EXPECT_EQ(made->LockServer(-1), S_OK);
        EXPECT_EQ(module.GetRefCount(), 3u) << "the factory, the object and the lock";
        EXPECT_EQ(static_cast<IORVUnknown*>(out)->Release(), 0u);
        EXPECT_EQ(made->LockServer(0), S_OK);
        EXPECT_EQ(module.GetRefCount(), 1u);
        EXPECT_EQ(module.CanUnloadNow(), 1);
    }
    EXPECT_EQ(classes[0].factory.load(), nullptr);
    EXPECT_EQ(test::Living::count(), livingBefore);
}

constexpr const char16_t* PROG_ID_KEY = u"Test.Faulty\\CLSID";

void setDefault(const String& path, const String& text)
{
    util::RegistryKey(ORV_HKEY_CLASSES_64, path).setValue(text);
}

/// Leads the ProgID to the class of FaultyComponent.cpp with that fault, in `file`.
void enter(std::uint32_t fault, const std::string& file = ORV_FAULTY_COMPONENT)
{
    const String guid = util::Guid({fault, 0, 0, {}}).toString();
    setDefault(PROG_ID_KEY, guid);
    setDefault(u"CLSID\\" + guid + u"\\InprocServer32", file.c_str());
}

/// Creates an object of the class that the ProgID leads to; returns the result.
std::uint32_t create(Reference<Object>* out = nullptr)
{
    void* made = &made;
    const Result result =
        ORVComCreateObjectByProgID(u"Test.Faulty", nullptr, IORVUnknown::IID, &made);
    EXPECT_EQ(made == nullptr, failed(result));
    const auto object = Reference<IORVUnknown>::adopt(static_cast<IORVUnknown*>(made));
    if (out != nullptr) *out = dynamic_cast<Object*>(object.get());
    return static_cast<std::uint32_t>(result);
}

TEST(Components, giveEachFailureItsResult)
{
    const test::ScratchRegistry registry;
    EXPECT_EQ(create(), 0x80040154u);
    setDefault(PROG_ID_KEY, u"{no identifier}");
    EXPECT_EQ(create(), 0x8007000Du);
    setDefault(PROG_ID_KEY, util::Guid().toString());
    EXPECT_EQ(create(), 0x800401F8u);
    void* made = &made;
    EXPECT_EQ(ORVModuleComCreateObject(nullptr, GUID{}, nullptr, IORVUnknown::IID, &made),
              makeResult(0x80040154u));

    const std::string folder = registry.folder().path();
    const std::string text = folder + "/text.so";
    registry.folder().write("text.so", "no library at all");
    const struct {
        std::uint32_t fault, result;
        std::string file = ORV_FAULTY_COMPONENT;
    } rows[] = {{0, 0x8007007E, folder + "/missing.so"},
                {0, 0x8007007E, "liborv_faulty_component.so"},
                {0, 0x8007007E, ""},
                {0, 0x8007000D, std::string(5000, 'x')},
                {0, 0x800700C1, text},
                {0, 0x8007007F, ORV_COMPONENT_WITHOUT_EXPORT},
                {2, 0x80040111},
                {3, 0x80004005},
                {4, 0x8000FFFF},
                {5, 0x80004005},
                {6, 0x8007000E},
                {8, 0x80070043},
                {9, 0x8000FFFF},
                {0, 0}};
    for (const auto& row : rows) {
        enter(row.fault, row.file);
        EXPECT_EQ(create(), row.result) << row.fault << ' ' << row.file;
    }
    ORVModuleSetInitialized(nullptr, 0);
    EXPECT_EQ(create(), 0x8007045Bu);
    ORVModuleSetInitialized(nullptr, 1);
    EXPECT_EQ(create(), 0u);
    const test::ScopedVariable damaged("ORV_REGISTRY", text.c_str());
    EXPECT_EQ(create(), 0x800703F1u);
}

TEST(Components, areForAllThreadsAndShareTheTypesOfTheirHost)
{
    const test::ScratchRegistry registry;
    enter(0);
    {
        std::jthread threads[4];
        for (auto& thread : threads) thread = std::jthread([] { EXPECT_EQ(create(), 0u); });
    }
    Reference<Object> object;
    ASSERT_EQ(create(&object), 0u);
    EXPECT_EQ(dynamic_cast<String*>(object.get()), nullptr);
    EXPECT_EQ(test::refusalOf([&] { object->compareTo(*object); }),
              test::Refusal(makeResult(0x80070043u), ""));
    enter(1);
    ASSERT_EQ(create(&object), 0u);
    ASSERT_NE(dynamic_cast<String*>(object.get()), nullptr);
    EXPECT_EQ(object->getClass(), Class::forName(u"CORVString"));
    enter(7);
    std::thread([] { ADD_FAILURE() << create(); }).join();
}

} // namespace
} // namespace orv::quark
