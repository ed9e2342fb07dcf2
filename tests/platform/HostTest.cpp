#include "platform/orvcore.h"

#include "tests/platform/ScopedVariable.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <dlfcn.h>

namespace {

bool isEqual(const STRUCT_ORV_TIME& a, const STRUCT_ORV_TIME& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(Time, breaksPosixSecondsDownInUtc)
{
    struct Row {
        std::int32_t seconds;
        STRUCT_ORV_TIME time;
    };
    const orv::test::ScopedVariable zone("TZ", "XYZ-5");
    for (const Row& row :
         {Row{0, {1970, 1, 4, 1, 0, 0, 0, 0}}, Row{951782399, {2000, 2, 1, 28, 23, 59, 59, 0}},
          Row{951782400, {2000, 2, 2, 29, 0, 0, 0, 0}}, Row{-1, {1969, 12, 3, 31, 23, 59, 59, 0}},
          Row{INT32_MAX, {2038, 1, 2, 19, 3, 14, 7, 0}},
          Row{INT32_MIN, {1901, 12, 5, 13, 20, 45, 52, 0}}}) {
        STRUCT_ORV_TIME time{};
        ASSERT_EQ(ORVTimeFromPosix(row.seconds, &time), S_OK);
        EXPECT_TRUE(isEqual(time, row.time)) << row.seconds;
    }
}

// The folder of the core library, which is a shared library that is there for certain.
std::u16string coreFolder()
{
    Dl_info info{};
    EXPECT_NE(dladdr(reinterpret_cast<void*>(&ORVModuleLibOpen), &info), 0);
    const std::string path = info.dli_fname;
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    return {folder.begin(), folder.end()};
}

TEST(SharedLibrary, isFoundUnderItsShortNames)
{
    const std::u16string folder = coreFolder();
    std::u16string backslashed = u"C:" + folder;
    for (char16_t& unit : backslashed) unit = unit == u'/' ? u'\\' : unit;
    for (const std::u16string& name :
         {folder + u"liborvcore.so", folder + u"liborvcore", folder + u"orvcore",
          backslashed + u"orvcore", std::u16string(u"liborvcore.so.1")}) {
        ORVHandle library = 0;
        ASSERT_EQ(ORVModuleLibOpen(nullptr, name.c_str(), &library), S_OK)
            << testing::PrintToString(name);
        void* symbol = nullptr;
        EXPECT_EQ(ORVLibGetSymbol(library, u"ORVStrLenW", &symbol), S_OK);
        EXPECT_EQ(symbol, reinterpret_cast<void*>(&ORVStrLenW));
        EXPECT_EQ(ORVLibGetSymbol(library, u"noSuchSymbol", &symbol), ORVMakeResult(0x8007007F));
        EXPECT_EQ(symbol, nullptr);
        EXPECT_EQ(ORVModuleLibClose(nullptr, library), S_OK);
    }
}

TEST(SharedLibrary, thatIsNotThereIsReported)
{
    for (const char16_t* name :
         {u"", u"no-such-library", u"/no/such/library", u"D:\\x", u"\xD800"}) {
        ORVHandle library = 0;
        EXPECT_EQ(ORVModuleLibOpen(nullptr, name, &library), ORVMakeResult(0x8007007E));
        EXPECT_EQ(library, ORV_NO_HANDLE);
    }
    EXPECT_EQ(ORVModuleLibClose(nullptr, ORV_NO_HANDLE), E_INVALIDARG);
}

} // namespace
