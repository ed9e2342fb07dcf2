#include "examples/component/IGreeter.h"
#include "orv/Class.h"
#include "orv/Exception.h"
#include "orv/String.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"
#include "platform/modules.h"
#include "tests/orv/quark/FaultyComponent.h"
#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

#include <barrier>
#include <filesystem>
#include <thread>
#include <vector>

namespace orv::quark {
namespace {

using namespace orv::test;
using util::RegistryKey;

constexpr const char16_t* PROG_ID = u"Test.Faulty";

/// A store in which the components of a test are written by hand.
class Components : public testing::Test {
protected:
    static void setDefault(const String& path, const String& text)
    {
        RegistryKey(ORV_HKEY_CLASSES_64, path).setValue(text);
    }

    /// Leads the ProgID to a class, and the class to a file; null leaves that out.
    static void enter(const GUID& classId, const char* file)
    {
        const String guid = util::Guid(classId).toString();
        setDefault(String(PROG_ID) + u"\\CLSID", guid);
        if (file != nullptr) setDefault(u"CLSID\\" + guid + u"\\InprocServer32", file);
    }

    static Result create(void** out, const GUID& iid = IORVUnknown::IID)
    {
        return ORVComCreateObjectByProgID(PROG_ID, nullptr, iid, out);
    }

    template <class T>
    static Reference<T> made(std::uint32_t fault, const GUID& iid)
    {
        enter(faultId(fault), ORV_FAULTY_COMPONENT);
        void* object = nullptr;
        EXPECT_EQ(create(&object, iid), S_OK);
        return Reference<T>::adopt(static_cast<T*>(object));
    }

    ScratchRegistry m_registry;
};

TEST_F(Components, eachFailureHasItsResult)
{
    const std::string folder = m_registry.folder().path();
    m_registry.folder().write("text.so", "no library at all");
    std::filesystem::create_symlink("/nowhere/x.so", folder + "/dangling.so");
    const std::string library = ORV_FAULTY_COMPONENT;
    const struct {
        std::uint32_t fault;
        std::string file;
        std::uint32_t result;
    } rows[] = {
        {NONE, folder + "/missing.so", 0x8007007E},
        {NONE, folder + "/dangling.so", 0x8007007E},
        {NONE, folder + "/text.so/x.so", 0x8007007E},
        {NONE, "", 0x8007007E},
        {NONE, library.substr(library.rfind('/') + 1), 0x8007007E},
        {NONE, folder + "/text.so", 0x800700C1},
        {NONE, folder, 0x800700C1},
        {NONE, ORV_COMPONENT_WITHOUT_EXPORT, 0x8007007F},
        {UNKNOWN_CLASS, library, 0x80040111},
        {NO_FACTORY, library, 0x8000FFFF},
        {THROWS_EARLY, library, 0x80004005},
        {NO_OBJECT, library, 0x8000FFFF},
        {THROWS, library, 0x80004005},
        {THROWS_BAD_ALLOC, library, 0x8007000E},
        {LEAVES_REST, library, 0x80070043},
        {NONE, library, 0},
    };
    for (const auto& row : rows) {
        enter(faultId(row.fault), row.file.c_str());
        void* object = this;
        EXPECT_EQ(create(&object), makeResult(row.result)) << row.file << ' ' << row.fault;
        EXPECT_EQ(object != nullptr, row.result == 0) << row.file << ' ' << row.fault;
        if (object != nullptr) static_cast<IORVUnknown*>(object)->Release();
    }
}

TEST_F(Components, whatIsNotRegisteredIsToldFromWhatIsRegisteredBadly)
{
    GUID classId{};
    void* object = this;
    EXPECT_EQ(create(&object), makeResult(0x80040154u));
    EXPECT_EQ(object, nullptr);
    enter(faultId(NONE), nullptr);
    EXPECT_EQ(create(&object), makeResult(0x800401F8u));
    EXPECT_EQ(ORVModuleComCreateObject(nullptr, faultId(NONE), nullptr, IORVUnknown::IID, &object),
              makeResult(0x80040154u));
    setDefault(String(PROG_ID) + u"\\CLSID", u"{no identifier}");
    EXPECT_EQ(ORVComClassIDFromProgID(PROG_ID, &classId), makeResult(0x8007000Du));
    RegistryKey(ORV_HKEY_CLASSES_64, String(PROG_ID) + u"\\CLSID").setValue(std::uint32_t{7});
    EXPECT_EQ(create(&object), makeResult(0x8007000Du));
    EXPECT_EQ(ORVComClassIDFromProgID(String(u'x', 2000).getData(), &classId),
              makeResult(0x80040154u));
    EXPECT_EQ(create(nullptr), E_POINTER);

    m_registry.folder().write("damaged.db", std::string(4096, 'x'));
    const ScopedVariable other("ORV_REGISTRY", (m_registry.folder().path() / "damaged.db").c_str());
    EXPECT_EQ(create(&object), makeResult(0x800703F1u));
}

TEST_F(Components, goingDownEndsTheCreationOfObjects)
{
    enter(faultId(NONE), ORV_FAULTY_COMPONENT);
    void* object = this;
    ORVModuleSetInitialized(nullptr, 0);
    EXPECT_EQ(create(&object), makeResult(0x8007045Bu));
    ORVModuleSetInitialized(nullptr, 1);
    EXPECT_TRUE(made<ITeller>(NONE, ITeller::IID));
}

TEST_F(Components, threadsThatComeFirstTogetherLoadAndMakeTheFactoryOnce)
{
    constexpr int THREADS = 4;
    enter(faultId(NONE), ORV_FAULTY_COMPONENT);
    std::barrier gate(THREADS);
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&gate] {
            gate.arrive_and_wait();
            void* object = nullptr;
            ASSERT_EQ(create(&object, ITeller::IID), S_OK);
            const auto teller = Reference<ITeller>::adopt(static_cast<ITeller*>(object));
            EXPECT_EQ(teller->timesLoaded(), 1);
            EXPECT_EQ(teller->factoriesMade(), 1);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST_F(Components, aThreadMayEndWithinAComponent)
{
    enter(faultId(ENDS_THREAD), ORV_FAULTY_COMPONENT);
    bool cameBack = false;
    std::thread([&] {
        void* object = nullptr;
        create(&object);
        cameBack = true;
    }).join();
    EXPECT_FALSE(cameBack);
}

TEST_F(Components, typesHoldAcrossTheBorder)
{
    const auto text = made<IORVUnknown>(TEXT, IORVUnknown::IID);
    auto* const object = dynamic_cast<Object*>(text.get());
    ASSERT_NE(object, nullptr);
    EXPECT_NE(dynamic_cast<String*>(text.get()), nullptr);
    EXPECT_STREQ(String(object->getClass()->getName()).getBytes(), "CORVString");
    EXPECT_TRUE(Class::forName(u"CORVString")->isInstance(*object));

    const auto teller = made<ITeller>(NONE, ITeller::IID);
    EXPECT_EQ(dynamic_cast<String*>(teller.get()), nullptr);
    const auto* const own = dynamic_cast<Object*>(teller.get());
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->toString().indexOf(u"Object@"), 0);
    EXPECT_THROW(own->clone(), Exception);
    try {
        teller->throwOwn();
        ADD_FAILURE();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.getResult(), makeResult(0x80070043u));
    }
}

/// The component that the documentation shows, from its registration to its removal.
TEST_F(Components, aStrangerIsFoundByItsNameUntilItIsUnregistered)
{
    ASSERT_EQ(ScratchRegistry::registerComponent(ORV_GREETER), S_OK);
    void* made = nullptr;
    ASSERT_EQ(ORVComCreateObjectByProgID(u"example.greeter.1", nullptr, IGreeter::IID, &made),
              S_OK);
    const auto greeter = Reference<IGreeter>::adopt(static_cast<IGreeter*>(made));
    String greeting;
    EXPECT_EQ(greeter->Greet(u"World", &greeting), S_OK);
    EXPECT_EQ(greeting, u"Hello, World!");
    EXPECT_EQ(ORVComCreateObjectByProgID(u"Example.Greeter", greeter.get(), IGreeter::IID, &made),
              E_INVALIDARG);
    EXPECT_EQ(
        ORVComCreateObjectByProgID(u"Example.Greeter", greeter.get(), IORVUnknown::IID, &made),
        CLASS_E_NOAGGREGATION);
    EXPECT_EQ(
        ORVComCreateObjectByProgID(u"Example.Greeter", nullptr, util::IORVCharBuffer::IID, &made),
        E_NOINTERFACE);

    exec::SharedLibrary library(String(ORV_GREETER).getData());
    void* const entry = library.getSymbol(u"ORVUnregisterServer");
    char16_t path[4096];
    EXPECT_EQ(orvcore::moduleFile(entry, path, 4096), S_OK);
    EXPECT_EQ(String(path), String(ORV_GREETER));
    EXPECT_EQ(reinterpret_cast<decltype(&ORVUnregisterServer)>(entry)(), S_OK);
    EXPECT_EQ(ORVComCreateObjectByProgID(u"Example.Greeter", nullptr, IGreeter::IID, &made),
              makeResult(0x80040154u));
    const RegistryKey classes(ORV_HKEY_CLASSES_64, u"CLSID");
    EXPECT_FALSE(classes.getSubkeyIterator()->hasNext());
}

} // namespace
} // namespace orv::quark
