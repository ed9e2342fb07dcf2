#include "orv/Class.h"
#include "orv/Exception.h"
#include "orv/String.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"
#include "tests/support/ScratchRegistry.h"

#include <gtest/gtest.h>

#include <barrier>
#include <thread>
#include <vector>

namespace orv::quark {
namespace {

constexpr const char16_t* PROG_ID = u"Test.Faulty";

void setDefault(const String& path, const String& text)
{
    util::RegistryKey(ORV_HKEY_CLASSES_64, path).setValue(text);
}

/// Leads the ProgID to the class of FaultyComponent.cpp with that fault, in `file`.
void enter(std::uint32_t fault, const char* file = ORV_FAULTY_COMPONENT)
{
    const String guid = util::Guid({fault, 0, 0, {}}).toString();
    setDefault(String(PROG_ID) + u"\\CLSID", guid);
    setDefault(u"CLSID\\" + guid + u"\\InprocServer32", file);
}

std::uint32_t create(Reference<IORVUnknown>& object)
{
    void* made = &object;
    const Result result = ORVComCreateObjectByProgID(PROG_ID, nullptr, IORVUnknown::IID, &made);
    EXPECT_EQ(made == nullptr, failed(result));
    object = Reference<IORVUnknown>::adopt(static_cast<IORVUnknown*>(made));
    return static_cast<std::uint32_t>(result);
}

struct Components : testing::Test {
    ~Components() noexcept override {}

    test::ScratchRegistry registry;
    Reference<IORVUnknown> object;
};

TEST_F(Components, eachFailureHasItsResult)
{
    const String progIdKey = String(PROG_ID) + u"\\CLSID";
    EXPECT_EQ(create(object), 0x80040154u);
    setDefault(progIdKey, u"{no identifier}");
    EXPECT_EQ(create(object), 0x8007000Du);
    setDefault(progIdKey, util::Guid().toString());
    EXPECT_EQ(create(object), 0x800401F8u);
    void* made = this;
    EXPECT_EQ(ORVModuleComCreateObject(nullptr, GUID{}, nullptr, IORVUnknown::IID, &made),
              makeResult(0x80040154u));

    const std::string folder = registry.folder().path();
    registry.folder().write("text.so", "no library at all");
    const struct {
        std::uint32_t fault, result;
        std::string file = ORV_FAULTY_COMPONENT;
    } rows[] = {{0, 0x8007007E, folder + "/missing.so"},
                {0, 0x8007007E, folder + "/text.so/x.so"},
                {0, 0x8007007E, "liborv_faulty_component.so"},
                {0, 0x8007007E, ""},
                {0, 0x8007000D, std::string(5000, 'x')},
                {0, 0x800700C1, folder + "/text.so"},
                {0, 0x800700C1, folder},
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
        enter(row.fault, row.file.c_str());
        EXPECT_EQ(create(object), row.result) << row.fault << ' ' << row.file;
    }
    ORVModuleSetInitialized(nullptr, 0);
    EXPECT_EQ(create(object), 0x8007045Bu);
    ORVModuleSetInitialized(nullptr, 1);
    EXPECT_EQ(create(object), 0u);
    const std::string damaged = folder + "/text.so";
    const test::ScopedVariable other("ORV_REGISTRY", damaged.c_str());
    EXPECT_EQ(create(object), 0x800703F1u);
}

TEST_F(Components, threadsThatComeFirstTogetherMakeTheFactoryOnceAndMayEndWithin)
{
    enter(0);
    std::barrier gate(4);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&gate] {
            gate.arrive_and_wait();
            Reference<IORVUnknown> mine;
            ASSERT_EQ(create(mine), 0u);
            EXPECT_EQ(dynamic_cast<Object*>(mine.get())->hashCode(), 1u);
        });
    }
    for (std::thread& thread : threads) thread.join();
    enter(7);
    std::thread([this] { ADD_FAILURE() << create(object); }).join();
}

TEST_F(Components, typesHoldAcrossTheBorder)
{
    enter(1);
    ASSERT_EQ(create(object), 0u);
    const auto* const text = dynamic_cast<String*>(object.get());
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->getClass(), Class::forName(u"CORVString"));

    enter(0);
    ASSERT_EQ(create(object), 0u);
    const auto* const teller = dynamic_cast<Object*>(object.get());
    EXPECT_EQ(dynamic_cast<String*>(object.get()), nullptr);
    try {
        teller->compareTo(*teller);
        ADD_FAILURE();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.getResult(), makeResult(0x80070043u));
    }
}

} // namespace
} // namespace orv::quark
