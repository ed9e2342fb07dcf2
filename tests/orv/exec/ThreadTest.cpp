#include "orv/exec/Thread.h"

#include "orv/Exceptions.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/Logger.h"
#include "orv/sync/Condition.h"
#include "orv/sync/Gate.h"
#include "orv/sync/Lock.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"
#include "tests/support/Living.h"
#include "tests/support/Processes.h"
#include "tests/support/Refusals.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <vector>

#include <pthread.h>
#include <sys/resource.h>

namespace orv::exec {
namespace {

using test::Living;

/// A runnable around a function; gives where it lies.
struct Job : ::orv::quark::Implements<Living, IRunnable> {
    explicit Job(std::function<void()> toDo) : work(std::move(toDo)) {}
    void* run() override
    {
        work();
        return this;
    }
    std::function<void()> work;
};

/// A started thread that does `work`.
Reference<Thread> startThread(std::function<void()> work)
{
    auto thread = makeReference<Thread>(makeReference<Job>(std::move(work)).get());
    thread->start();
    return thread;
}

template <class Call>
void expectRefusal(Call call, const char* words)
{
    EXPECT_EQ(test::refusalOf<IllegalStateException>(call).second, words);
}

TEST(Thread, runsItsJobElsewhereAsOftenAsItIsStarted)
{
    sync::Gate gate;
    std::uint32_t inside = 0;
    const auto job = makeReference<Job>([&] {
        gate.wait();
        Thread::sleep(20);
        inside = Thread::getCurrentID();
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
        const auto before = std::chrono::steady_clock::now();
        gate.open();
        EXPECT_EQ(thread.join(), job.get());
        EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(20));
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
        const auto job = makeReference<Job>(end);
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
    const int before = Living::count();
    // Held by nobody but the thread, which may still use them after the test's end.
    const auto go = makeReference<sync::Gate>();
    startThread([go, counted = makeReference<Living>()] { go->wait(); });
    EXPECT_EQ(Living::count(), before + 2) << "of the job and of the other object";
    go->open();
    EXPECT_TRUE(test::awaitTrue([&] { return Living::count() == before; }));
}

TEST(Thread, aCopyIsNotStarted)
{
    struct Derived : Thread {
        using Thread::Thread;
    };
    const auto job = makeReference<Job>([] {});
    Thread thread(job.get(), u"name");
    thread.start();
    const Reference<Object> clone(thread.clone());
    auto& copy = dynamic_cast<Thread&>(*clone);
    EXPECT_EQ(copy.getName(), u"name");
    expectRefusal([&] { copy.join(); }, "thread not started");
    copy.start();
    EXPECT_EQ(copy.join(), thread.join()) << "of the same job";
    EXPECT_THROW(Derived(job.get()).clone(), CloneNotSupportedException);
}

TEST(Thread, canBeStartedOnceTheSystemHasRoomAgain)
{
    const auto job = makeReference<Job>([] {});
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

// A child does what a child may do: exec, or _exit.
TEST(Fork, leavesTheThreadsOfTheParentAlone)
{
    const test::TemporaryFolder folder;
    sync::Mutex mutex;
    sync::ReaderWriterLock lock;
    sync::Condition condition;
    sync::Semaphore there(0), back(0);
    long counts[3] = {};
    std::atomic<long> logged{0};
    std::vector<Reference<Thread>> threads;
    std::atomic<bool> stop{false};
    const auto add = [&](const std::function<void()>& work) {
        threads.push_back(startThread([&stop, work] {
            while (!stop.load(std::memory_order_relaxed)) work();
        }));
    };
    const auto countUnder = [](sync::LockObject& lockObject, long& count) {
        const sync::Lock hold(lockObject);
        ++count;
    };
    for (int i = 0; i < 2; ++i) {
        add([&] {
            countUnder(mutex, counts[0]);
            countUnder(lock, counts[1]);
            lock.waitShared();
            lock.signalShared();
            const sync::Condition::Holder hold(condition);
            ++counts[2];
        });
        // Both append to one file under its lock, which a child has, too, until it ends.
        const auto file = makeReference<io::FileOutputStream>(folder.file(u"log.txt"),
                                                              io::FileOutputStream::APPEND);
        const auto text = makeReference<io::OutputStreamWriter>(file.get(), u"UTF-8", 4096);
        const auto logger = log::Logger::create();
        logger->addProcessor(log::BasicLogWriter::create(text.get()).get());
        add([&logged, logger] {
            logger->log(0, u"x");
            ++logged;
        });
    }
    add([&] {
        there.signal();
        back.wait();
    });
    add([&] {
        if (there.tryWait()) back.signal();
        startThread([] {})->join();
    });

    // With a sanitizer at work a fork takes twenty times as long.
    for (int i = 0; i < 1000 / test::SLOWNESS; ++i) {
        test::ForkedChild child(
            [i] { return i % 20 == 0 ? ::execl("/bin/true", "true", nullptr) : 0; });
        ASSERT_EQ(child.exitCode(), 0) << i;
    }
    stop = true;
    back.signal(); // for the thread that may wait for an answer
    for (const auto& thread : threads) thread->join();
    EXPECT_TRUE(counts[0] == counts[2] && counts[1] == counts[2]);
    std::string entries;
    while (logged-- > 0) entries += "level=0\ntext=x\n-------------------------\n";
    EXPECT_FALSE(entries.empty());
    EXPECT_TRUE(folder.read("log.txt") == entries);
}

} // namespace
} // namespace orv::exec
