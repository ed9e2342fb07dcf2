#include "platform/orvcore.h"
#include "platform/threads.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <csignal>
#include <pthread.h>
#include <unistd.h>

namespace {

/// Runs `entry` on a thread of its own; returns what it returned.
void* run(ORVThreadEntry entry, void* argument, std::uint32_t* id = nullptr)
{
    ORVHandle thread = 0;
    void* value = nullptr;
    EXPECT_EQ(ORVThreadCreate(entry, argument, 0, 0, &thread, id), S_OK);
    EXPECT_EQ(ORVThreadJoin(thread, &value), S_OK);
    return value;
}

TEST(Thread, knowsTheIdentifierThatItsCreatorGot)
{
    std::uint32_t own = 0;
    std::uint32_t told = 0;
    const auto entry = [](void* argument) {
        *static_cast<std::uint32_t*>(argument) = orvcore::currentThreadId();
        return argument;
    };
    // Often enough for some threads to be over before their creator looks at them.
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(run(entry, &own, &told), &own);
        ASSERT_EQ(own, told);
        ASSERT_NE(own, 0u);
        ASSERT_NE(own, orvcore::currentThreadId());
    }
}

TEST(Thread, ofAForkedChildHasTheIdentifierOfTheChild)
{
    const std::uint32_t parent = orvcore::currentThreadId();
    const auto isOwn = [] { return orvcore::currentThreadId() == std::uint32_t(::getpid()); };
    for (int generation = 0; generation < 2; ++generation) {
        orv::test::ForkedChild child([&] {
            orv::test::ForkedChild grandchild([&] { return isOwn() ? 0 : 1; });
            return grandchild.exitCode() + (isOwn() ? 0 : 1);
        });
        EXPECT_EQ(child.exitCode(), 0);
        EXPECT_EQ(orvcore::currentThreadId(), parent);
    }
}

TEST(Thread, runsWithAllSignalsBlockedAndLeavesTheMaskOfItsCreator)
{
    sigset_t before;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &before);
    sigset_t inside;
    const auto entry = [](void* argument) {
        ::pthread_sigmask(SIG_SETMASK, nullptr, static_cast<sigset_t*>(argument));
        return argument;
    };
    run(entry, &inside);
    sigset_t after;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGALRM, SIGUSR1, SIGCHLD}) {
        EXPECT_EQ(::sigismember(&inside, number), 1) << number;
        EXPECT_EQ(::sigismember(&before, number), ::sigismember(&after, number)) << number;
    }
}

} // namespace
