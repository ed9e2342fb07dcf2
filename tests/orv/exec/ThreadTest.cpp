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

TEST(Thread, runsItsJobElsewhereAsOftenAsItIsStarted)
{
    sync::Gate gate;
    std::uint32_t inside = 0;
    const auto job = makeReference<Job>([&]() -> void* {
        gate.wait();
        inside = Thread::getCurrentID();
        return &inside;
    });
    Thread thread(job.get(), u"worker");
    for (const std::uint32_t stack : {1u, 0u}) {
        expectRefusal([&] { thread.join(); }, "thread not started");
        expectRefusal([&] { thread.getID(); }, "thread not started");
        thread.setStackSize(stack);
        gate.close();
        inside = 0;
        thread.start();
        expectRefusal([&] { thread.start(); }, "thread already started");
        expectRefusal([&] { thread.setStackSize(1 << 20); }, "thread already started");
        const std::uint32_t id = thread.getID();
        gate.open();
        EXPECT_EQ(thread.join(), &inside);
        EXPECT_EQ(id, inside);
        EXPECT_NE(id, Thread::getCurrentID());
    }
    EXPECT_EQ(job->GetRefCount(), 2u) << "the object's and the test's";
}

TEST(Thread, survivesWhateverEndsItsJob)
{
    for (void (*const end)() :
         {+[] { throw std::runtime_error("lost"); }, +[] { throw Exception(u"lost"); },
          +[] { throw 42; }, +[] { ::pthread_exit(nullptr); }}) {
        const auto job = jobOf(end);
        Thread thread(job.get());
        thread.start();
        EXPECT_EQ(thread.join(), nullptr);
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
