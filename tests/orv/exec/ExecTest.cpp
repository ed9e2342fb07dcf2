#include "orv/Exceptions.h"
#include "orv/exec/Process.h"
#include "orv/exec/SharedLibrary.h"
#include "orv/exec/Thread.h"
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

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>

namespace orv::exec {
namespace {

using namespace test;

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
    EXPECT_EQ(refusalOf<IllegalStateException>(call).second, words);
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
    EXPECT_TRUE(awaitTrue([&] { return Living::count() == before; }));
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
    Thread greedy(job.get());
    greedy.setStackSize(0xFFFF0000u);
    Thread thread(greedy);
    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit unlimited{};
    ::getrlimit(RLIMIT_AS, &unlimited);
    const rlimit tight{pages * 4096 + (1u << 30), unlimited.rlim_max};
    ::setrlimit(RLIMIT_AS, &tight);
    const auto refusal = refusalOf<ResultException>([&] { thread.start(); });
    ::setrlimit(RLIMIT_AS, &unlimited);
    EXPECT_TRUE(failed(refusal.first));
    EXPECT_EQ(refusal.second, "thread creation failed");
    EXPECT_EQ(job->GetRefCount(), 3u);
    thread.setStackSize(0);
    thread.start();
    thread.join();
}

// A child does what a child may do: exec, or _exit.
TEST(Fork, leavesTheThreadsOfTheParentAlone)
{
    const TemporaryFolder folder;
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
    for (int i = 0; i < 1000 / SLOWNESS; ++i) {
        ForkedChild child([i] { return i % 20 == 0 ? ::execl("/bin/true", "true", nullptr) : 0; });
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

std::string readAll(const Reference<io::InputStream>& in)
{
    std::string text;
    for (std::int32_t byte = 0; (byte = in->read()) >= 0;) text += static_cast<char>(byte);
    return text;
}

void write(Process& process, const std::string& text)
{
    process.getOutputStream()->write(text.data(), static_cast<std::int32_t>(text.size()));
}

TEST(Process, talksToItsChild)
{
    Process sort(nullptr, u"sh -c \"sort; echo done >&2\"");
    write(sort, "pear\nfig\n");
    sort.getOutputStream()->flush();
    write(sort, "apple\n");
    sort.endOutput();
    sort.endOutput();
    EXPECT_EQ(refusalOf([&] { write(sort, "late"); }).first, makeResult(0x80070006u));
    EXPECT_EQ(readAll(sort.getInputStream()), "apple\nfig\npear\n");
    EXPECT_EQ(readAll(sort.getErrorStream()), "done\n");
    EXPECT_EQ(sort.join(), 0);
}

TEST(Process, thatCannotBeStartedIsAnExceptionAndLeavesNothingOpen)
{
    const std::ptrdiff_t before = openDescriptors();
    EXPECT_EQ(refusalOf([] { Process(u"/no/such/program"); }), Refusal(E_NOT_FOUND, ""));
    EXPECT_EQ(refusalOf([] { Process(nullptr, u"no-such-program x"); }), Refusal(E_NOT_FOUND, ""));
    EXPECT_EQ(refusalOf([] { Process(u"/etc/passwd"); }).first, makeResult(0x80070005u));
    EXPECT_EQ(refusalOf([] { Process(nullptr, u"  "); }).first, E_INVALIDARG);
    {
        Process unread(u"C:\\bin\\sh", u"sh -c \"echo a; echo b >&2\"");
        Process half(u"/bin/cat");
        half.endOutput();
        EXPECT_EQ(readAll(half.getInputStream()), "");
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(Process, cutsItsCommandLineAtBlanks)
{
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"printf [%s] a  b\tc", "[a][b][c]"},
        {u"  printf [%s] \"a  b\" x\"y z\"w ", "[a  b][xy zw]"},
        {u"printf [%s] \"\" \"open end", "[][open end]"},
    };
    for (const auto& [commandLine, output] : rows) {
        EXPECT_EQ(readAll(Process(nullptr, commandLine).getInputStream()), output);
    }
}

TEST(Process, startsInItsFolderWithItsEnvironmentAndNothingElse)
{
    const char16_t* const environment[] = {u"GREETING=good day", u"PATH=/bin", nullptr};
    const int open = ::open("/dev/null", O_RDONLY); // without O_CLOEXEC
    sigset_t all, before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    // The last line is the bit of SIGPIPE among the signals that are ignored.
    Process child(u"C:\\bin\\sh",
                  u"sh -c \"echo [$GREETING][$HOME]; pwd; echo /proc/self/fd/*; "
                  u"grep SigBlk /proc/self/status; "
                  u"echo $((0x$(sed -n s/SigIgn:.//p /proc/self/status) >> 12 & 1))\"",
                  u"\\usr\\bin", environment);
    ::signal(SIGPIPE, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    const std::string output = readAll(child.getInputStream());
    EXPECT_TRUE(output.starts_with("[good day][]\n/usr/bin\n")) << output;
    EXPECT_EQ(output.find("/fd/" + std::to_string(open) + " "), std::string::npos) << output;
    EXPECT_TRUE(output.ends_with("SigBlk:\t0000000000000000\n0\n")) << output;
    ::close(open);
}

TEST(Process, isRunningOrJoined)
{
    Process child(nullptr, u"sh -c \"read line; exit 7\"");
    EXPECT_FALSE(child.tryJoin());
    child.endOutput();
    EXPECT_EQ(readAll(child.getInputStream()), "") << "ended";
    const Refusal notJoined(E_FAIL, "process has not been joined");
    EXPECT_EQ(refusalOf([&] { child.getExitCode(); }), notJoined);
    EXPECT_TRUE(awaitTrue([&] { return child.tryJoin(); }));
    EXPECT_EQ(child.getExitCode(), 7);
    const Refusal joined(E_FAIL, "process already joined");
    EXPECT_EQ(refusalOf([&] { child.tryJoin(); }), joined);
    EXPECT_EQ(refusalOf([&] { child.join(); }), joined);
    EXPECT_EQ(refusalOf([&] { child.getID(); }), Refusal(E_NOT_AVAILABLE, ""));
    EXPECT_EQ(Process::getCurrentID(), static_cast<std::uint32_t>(::getpid()));
    EXPECT_EQ(Process(nullptr, u"sh -c \"kill -9 $$\"").join(), 128 + SIGKILL);
}

TEST(Process, keepsItsPipesAsLongAsTheirStreams)
{
    Reference<io::InputStream> in;
    {
        Process cat(u"/bin/cat");
        in = cat.getInputStream();
        EXPECT_EQ(in, cat.getInputStream());
        in->close();
        cat.getOutputStream()->close();
        write(cat, "still open");
    }
    EXPECT_EQ(readAll(in), "still open") << "and cat has read the end of its input";
    Process gone(nullptr, u"true");
    gone.join();
    EXPECT_EQ(refusalOf([&] { write(gone, "nobody reads"); }).first, makeResult(0x8007006Du));
}

TEST(Process, childrenHoldNothingOfEachOther)
{
    // A child with another's pipe would keep that one's cat waiting for its end.
    std::vector<Reference<Process>> children(24);
    const auto start = [&children](std::size_t first) {
        for (std::size_t i = first; i < children.size(); i += 2) {
            children[i] = makeReference<Process>(u"/bin/cat");
        }
    };
    std::thread other(start, 1);
    start(0);
    other.join();
    for (const auto& child : children) {
        write(*child, "x");
        child->endOutput();
        EXPECT_EQ(readAll(child->getInputStream()), "x");
        EXPECT_EQ(child->join(), 0);
    }
}

TEST(SharedLibrary, isLoadedAsLongAsTheObjectLivesOrSaysWhatIsMissing)
{
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "libsample.so";
    std::filesystem::create_symlink(ORV_SAMPLE_LIBRARY, file);
    const auto isLoaded = [&] {
        void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
        return handle != nullptr && ::dlclose(handle) == 0;
    };
    String backslashes = folder.file(u"libsample.so");
    backslashes.translate(u'/', u'\\');
    for (const String& name : {backslashes, folder.file(u"libsample"), folder.file(u"sample")}) {
        ASSERT_FALSE(isLoaded());
        SharedLibrary library(name.getData());
        EXPECT_TRUE(isLoaded());
        auto* const twice = reinterpret_cast<int (*)(int)>(library.getSymbol(u"orvSampleTwice"));
        EXPECT_EQ(twice(21), 42);
        EXPECT_EQ(library.getSymbol(u"orvSampleNothing"), nullptr);
        EXPECT_EQ(refusalOf<ResultException>([&] { library.getSymbol(u"noSuchSymbol"); }),
                  Refusal(makeResult(0x8007007Fu), "Failed to get symbol."));
    }
    folder.write("libtext.so", "no library");
    for (const String& name : {String(u"no-such-library"), String(), folder.file(u"libtext.so")}) {
        EXPECT_EQ(refusalOf<ResultException>([&] { SharedLibrary(name.getData()); }),
                  Refusal(makeResult(0x8007007Eu), "Failed to open shared library."));
    }
}

} // namespace
} // namespace orv::exec
