#include "platform/orvcore.h"
#include "platform/threads.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <csignal>
#include <pthread.h>
#include <unistd.h>

namespace {

ORVHandle start(ORVThreadEntry entry, void* argument = nullptr, std::uint32_t stackSize = 0,
                std::uint32_t* id = nullptr)
{
    ORVHandle thread = 0;
    EXPECT_EQ(ORVThreadCreate(entry, argument, 0, stackSize, &thread, id), S_OK);
    return thread;
}

void* join(ORVHandle thread)
{
    void* value = nullptr;
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
        EXPECT_EQ(join(start(entry, &own, 0, &told)), &own);
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
    join(start(entry, &inside));
    sigset_t after;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGALRM, SIGUSR1, SIGCHLD}) {
        EXPECT_EQ(::sigismember(&inside, number), 1) << number;
        EXPECT_EQ(::sigismember(&before, number), ::sigismember(&after, number)) << number;
    }
}

TEST(Thread, getsAStackThatItCanWorkOn)
{
    const auto entry = [](void*) -> void* {
        volatile char room[24 * 1024];
        for (std::size_t i = 0; i < sizeof room; i += 512) room[i] = 1;
        pthread_attr_t attributes;
        ::pthread_getattr_np(::pthread_self(), &attributes);
        std::size_t size = 0;
        ::pthread_attr_getstacksize(&attributes, &size);
        ::pthread_attr_destroy(&attributes);
        return reinterpret_cast<void*>(size);
    };
    const auto sizeFor = [&](std::uint32_t wanted) {
        return reinterpret_cast<std::size_t>(join(start(entry, nullptr, wanted)));
    };
    EXPECT_GE(sizeFor(1), 32u * 1024);
    EXPECT_GE(sizeFor(3'000'001), 3'000'001u);
    EXPECT_GE(sizeFor(0), 1'000'000u) << "no particular size";
}

} // namespace
