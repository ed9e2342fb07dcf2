#include "orv/exec/Thread.h"

#include "orv/Exceptions.h"
#include "orv/sync/Gate.h"
#include "tests/orv/exec/Jobs.h"
#include "tests/support/Processes.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include <pthread.h>
#include <sys/resource.h>

namespace orv::exec {
namespace {

template <class Call>
void expectRefusal(Call call, const char* words)
{
    EXPECT_EQ(test::refusalOf<IllegalStateException>(call).second, words);
}

TEST(Thread, runsItsJobElsewhereAndGivesTheResult)
{
    std::uint32_t inside = 0;
    const auto job = makeReference<Job>([&]() -> void* {
        inside = Thread::getCurrentID();
        return &inside;
    });
    Thread thread(job.get(), u"worker");
    thread.setStackSize(1);
    thread.start();
    const std::uint32_t id = thread.getID();
    EXPECT_EQ(thread.join(), &inside);
    EXPECT_EQ(id, inside);
    EXPECT_NE(id, Thread::getCurrentID());
    EXPECT_EQ(thread.getName(), u"worker");
    EXPECT_EQ(job->GetRefCount(), 2u) << "the object's and the test's";
}

TEST(Thread, isStartedOrNot)
{
    sync::Gate gate;
    int runs = 0;
    Thread thread(jobOf([&] {
                      gate.wait();
                      ++runs;
                  }).get());
    for (int round = 1; round <= 3; ++round) {
        expectRefusal([&] { thread.join(); }, "thread not started");
        expectRefusal([&] { thread.getID(); }, "thread not started");
        thread.setStackSize(0);
        thread.start();
        expectRefusal([&] { thread.start(); }, "thread already started");
        expectRefusal([&] { thread.setStackSize(1 << 20); }, "thread already started");
        EXPECT_NE(thread.getID(), 0u);
        gate.open();
        thread.join();
        EXPECT_EQ(runs, round);
    }
}

TEST(Thread, survivesWhateverEndsItsJob)
{
    static int s_left;
    for (const auto& work : {
             std::function<void*()>([]() -> void* { throw std::runtime_error("lost"); }),
             std::function<void*()>([]() -> void* { throw Exception(u"lost"); }),
             std::function<void*()>([]() -> void* { throw 42; }),
             std::function<void*()>([]() -> void* { ::pthread_exit(&s_left); }),
         }) {
        const auto job = makeReference<Job>(work);
        Thread thread(job.get());
        thread.start();
        void* const result = thread.join();
        EXPECT_TRUE(result == nullptr || result == &s_left);
        EXPECT_EQ(job->GetRefCount(), 2u);
    }
    Thread without(nullptr);
    without.start();
    EXPECT_EQ(without.join(), nullptr);
}

TEST(Thread, runsOnWhenItsObjectIsGone)
{
    const int before = test::Living::count();
    // Held by nobody but the thread, which may still use them after the test's end.
    const auto go = makeReference<sync::Gate>();
    startThread([go, counted = makeReference<test::Living>()] { go->wait(); });
    EXPECT_EQ(test::Living::count(), before + 2) << "of the job and of the other object";
    go->open();
    EXPECT_TRUE(test::awaitTrue([&] { return test::Living::count() == before; }));
}

TEST(Thread, aCopyIsNotStarted)
{
    struct Derived : Thread {
        using Thread::Thread;
    };
    const auto job = jobOf([] {});
    Thread thread(job.get(), u"name");
    thread.start();
    EXPECT_EQ(Thread(thread).getName(), u"name");
    const Reference<Object> clone(thread.clone());
    auto& copy = dynamic_cast<Thread&>(*clone);
    EXPECT_EQ(copy.getName(), u"name");
    expectRefusal([&] { copy.join(); }, "thread not started");
    copy.start();
    copy.join();
    thread.join();
    EXPECT_EQ(job->GetRefCount(), 3u) << "shared";
    EXPECT_THROW(Derived(job.get()).clone(), CloneNotSupportedException);
}

TEST(Thread, canBeStartedOnceTheSystemHasRoomAgain)
{
    const auto job = jobOf([] {});
    Thread thread(job.get());
    thread.setStackSize(0xFFFF0000u);

    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit unlimited{};
    ::getrlimit(RLIMIT_AS, &unlimited);
    const rlimit tight{pages * 4096 + (1u << 30), unlimited.rlim_max};
    ::setrlimit(RLIMIT_AS, &tight);
    const auto refusal = test::refusalOf<ResultException>([&] { thread.start(); });
    ::setrlimit(RLIMIT_AS, &unlimited);
    EXPECT_TRUE(failed(refusal.first));
    EXPECT_EQ(refusal.second, "thread creation failed");
    EXPECT_EQ(job->GetRefCount(), 2u);

    thread.setStackSize(0);
    thread.start();
    thread.join();
}

TEST(Thread, sleepsNoShorterThanTold)
{
    const auto before = std::chrono::steady_clock::now();
    Thread::sleep(20);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(20));
}

} // namespace
} // namespace orv::exec
