#include "orv/util/IniFile.h"

#include "tests/orv/util/IniFiles.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orv::util {
namespace {

std::u16string nameOf(int writer, int change)
{
    const std::string name = "k" + std::to_string(writer) + "." + std::to_string(change);
    return {name.begin(), name.end()};
}

int countOf(IniFile& file)
{
    int count = 0;
    for (IniFileKeyIterator keys(file, u"set"); keys.hasNext(); ++count) keys.next();
    return count;
}

class IniFileSharing : public testing::Test {
protected:
    IniFile open() const { return {m_path.c_str(), m_lock.c_str(), 0}; }

    test::TemporaryFolder m_folder;
    std::u16string m_path{test::units(m_folder.file(u"shared.ini"))};
    std::string m_lock = test::uniqueName();
};

// ORV_TEST_CHANGES=1000 makes it last some minutes.
TEST_F(IniFileSharing, losesNothingWhenTheFileIsOpenedForEachChange)
{
    constexpr int writers = 4;
    const char* const asked = std::getenv("ORV_TEST_CHANGES");
    const int changes = asked != nullptr ? std::atoi(asked) : 60;
    std::vector<std::unique_ptr<test::ForkedChild>> children;
    for (int writer = 0; writer < writers; ++writer) {
        children.push_back(std::make_unique<test::ForkedChild>([&, writer] {
            for (int change = 0; change < changes; ++change) {
                const std::u16string key = nameOf(writer, change);
                if (open().AddKey(u"set", key.c_str(), u"value", false) != S_OK) return 1;
            }
            return 0;
        }));
    }
    for (auto& child : children) EXPECT_EQ(child->exitCode(), 0);
    IniFile file = open();
    EXPECT_EQ(countOf(file), writers * changes);
}

// What a kill leaves is the file before the save, after it, or what a save of it begins with.
TEST_F(IniFileSharing, leavesTheBeginningOfASaveWhenItsProcessIsKilled)
{
    std::string whole = "[set]\n";
    for (int i = 100; i < 400; ++i) whole += "k" + std::to_string(i) + "=value\n";
    whole += "\n";
    for (int turn = 0; turn < 20; ++turn) {
        m_folder.write("shared.ini", whole);
        test::SharedPage<std::atomic<int>> saves;
        test::ForkedChild child([&] {
            IniFile file = open();
            for (;;) {
                file.AddKey(u"set", u"k100", u"value", true);
                ++*saves;
            }
            return 0;
        });
        ASSERT_TRUE(test::awaitTrue([&] { return saves->load() > turn; }));
        child.kill();
        const std::string left = m_folder.read("shared.ini");
        EXPECT_EQ(left, whole.substr(0, left.size()));
        EXPECT_EQ(open().AddKey(u"set", u"k100", u"value", true), S_OK);
    }
}

TEST_F(IniFileSharing, servesSeveralThreadsUnderASemaphore)
{
    IniFile file = open();
    IniFile copy(file);
    const auto work = [&](int writer) {
        for (int change = 0; change < 30; ++change) {
            const std::u16string key = nameOf(writer, change);
            file.AddKey(u"set", key.c_str(), key.c_str(), true);
            for (int i = 0; i < 3; ++i) EXPECT_EQ(test::lookUp(file, u"set", key.c_str()), key);
            test::contentOf(copy);
        }
    };
    std::thread first(work, 1);
    std::thread second(work, 2);
    first.join();
    second.join();
    EXPECT_EQ(countOf(file), 60);
}

} // namespace
} // namespace orv::util
