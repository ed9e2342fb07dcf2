#include "platform/orvcore.h"

#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include <csignal>

namespace {

using orv::test::awaitTrue;
using orv::test::filesOf;
using orv::test::ForkedChild;
using orv::test::SharedPage;
using orv::test::uniqueName;
using std::chrono::steady_clock;

constexpr ORVResult busy = ORVMakeResult(0x800700AAu);
constexpr ORVResult throughDeath = 1;

class NamedSemaphore {
public:
    NamedSemaphore(const std::string& name, std::uint32_t count)
    {
        EXPECT_EQ(ORVNamedSemOpen(name.c_str(), count, &m_handle), S_OK) << name;
    }
    ~NamedSemaphore() { EXPECT_EQ(ORVNamedSemClose(m_handle), S_OK); }
    NamedSemaphore(const NamedSemaphore&) = delete;
    NamedSemaphore& operator=(const NamedSemaphore&) = delete;

    ORVResult wait() const { return ORVSemaphoreWait(m_handle); }
    ORVResult tryWait() const { return ORVSemaphoreTryWait(m_handle); }
    ORVResult post() const { return ORVSemaphorePost(m_handle); }
    std::int32_t value() const
    {
        std::int32_t value = -1;
        EXPECT_EQ(ORVSemaphoreGetValue(m_handle, &value), S_OK);
        return value;
    }

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
};

using Progress = SharedPage<std::atomic<int>>;

/// A child that takes `holds` of the semaphore and goes on holding them.
class Holder {
public:
    Holder(const std::string& name, std::uint32_t count, int holds)
        : m_child([&, this] {
              const NamedSemaphore semaphore(name, count);
              for (int i = 0; i < holds; ++i) semaphore.wait();
              *m_progress = 1;
              for (;;) ::pause();
              return 0;
          })
    {
        EXPECT_TRUE(awaitTrue([&] { return *m_progress == 1; }));
    }
    ForkedChild& process() { return m_child; }

private:
    Progress m_progress;
    ForkedChild m_child;
};

TEST(NamedSemaphore, takesAnyTextAsItsNameAndLeavesNothing)
{
    for (const std::string& ending :
         {std::string("/a/../b"), std::string("\\back\\slash"), std::string("\xFF\xFE\x01 %s\n"),
          std::string(5000, 'n'), std::string(4999, 'n') + "m"}) {
        const std::string name = uniqueName(ending);
        {
            const NamedSemaphore semaphore(name, 1);
            const NamedSemaphore again(name, 1);
            EXPECT_EQ(semaphore.wait(), S_OK) << ending;
            EXPECT_EQ(again.tryWait(), busy) << ending;
            EXPECT_EQ(filesOf(name), 1) << ending;
        }
        EXPECT_EQ(filesOf(name), 0) << ending;
    }
}

TEST(NamedSemaphore, whatAKilledProcessHeldComesBackWithinASecond)
{
    const std::string name = uniqueName();
    const NamedSemaphore semaphore(name, 1);
    for (int round = 0; round < 5; ++round) {
        Holder holder(name, 1, 1);
        EXPECT_EQ(semaphore.tryWait(), busy);
        std::thread killer([&] {
            ForkedChild& child = holder.process();
            round % 2 == 0 ? child.kill() : child.killOnly(); // a zombie is dead too
        });
        const auto start = steady_clock::now();
        EXPECT_EQ(semaphore.wait(), throughDeath) << round;
        EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(1)) << round;
        killer.join();
        EXPECT_EQ(semaphore.post(), S_OK);
        EXPECT_EQ(semaphore.wait(), S_OK) << "only the first one enters through the death";
        EXPECT_EQ(semaphore.post(), S_OK);
    }
    EXPECT_EQ(semaphore.value(), 1);
}

TEST(NamedSemaphore, aDeathGivesBackNoMoreThanTheInitialCount)
{
    using Row = std::tuple<std::uint32_t, int, int, std::int32_t>;
    for (const auto& [initial, posts, takes, left] :
         {Row{3, 0, 2, 3}, {0, 3, 2, 1}, {2, 2, 1, 3}, {2, 1, 3, 2}}) {
        const std::string name = uniqueName();
        const NamedSemaphore semaphore(name, initial);
        for (int i = 0; i < posts; ++i) semaphore.post();
        Holder(name, initial, takes).process().kill();
        EXPECT_EQ(semaphore.value(), left) << initial << ' ' << takes;
    }
}

TEST(NamedSemaphore, aStoppedHolderIsAlive)
{
    const std::string name = uniqueName();
    const NamedSemaphore semaphore(name, 1);
    Holder holder(name, 1, 1);
    holder.process().signal(SIGSTOP);
    EXPECT_EQ(semaphore.tryWait(), busy);
    EXPECT_EQ(semaphore.value(), 0);
    holder.process().kill();
    EXPECT_EQ(semaphore.tryWait(), throughDeath);
}

// Processes are killed wherever they happen to be: between taking and counting, while opening,
// while cleaning up after another.
TEST(NamedSemaphore, survivesKillsAtAnyMoment)
{
    const std::string name = uniqueName();
    const Progress shared;
    const NamedSemaphore semaphore(name, 2);
    const auto work = [&] {
        for (;;) {
            const NamedSemaphore own(name, 2);
            for (int i = 0; i < 50; ++i) {
                own.wait();
                ++*shared;
                own.post();
            }
        }
        return 0;
    };
    ForkedChild survivor(work);
    std::chrono::nanoseconds longest{0};
    for (int round = 0; round < 60; ++round) {
        ForkedChild victim(work);
        const int target = *shared + 1 + 37 * round % 200;
        EXPECT_TRUE(awaitTrue([&] { return *shared >= target; }));
        victim.kill();
        const auto start = steady_clock::now();
        EXPECT_GE(semaphore.wait(), 0);
        longest = std::max(longest, steady_clock::now() - start);
        semaphore.post();
    }
    survivor.kill();
    EXPECT_LT(longest, std::chrono::seconds(1));
    EXPECT_EQ(semaphore.value(), 2);
}

} // namespace
