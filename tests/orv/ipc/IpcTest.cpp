#include "orv/Exception.h"
#include "orv/ipc/SemaphoreR.h"
#include "orv/ipc/SharedMemory.h"

#include "tests/support/Processes.h"
#include "tests/support/Refusals.h"
#include "tests/support/SharedNames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

namespace orv::ipc {
namespace {

using test::awaitTrue;
using test::ForkedChild;
using test::SharedPage;
using test::uniqueName;

TEST(SemaphoreR, givesItsCountBackAtTheLastSignalOfItsHolder)
{
    const std::string name = uniqueName();
    SemaphoreR semaphore(name.c_str(), 1);
    Semaphore other(name.c_str(), 5); // the count is that of the first
    semaphore.wait();
    semaphore.wait();
    EXPECT_TRUE(semaphore.tryWait());
    for (int holds = 3; holds > 0; --holds) {
        std::thread([&] {
            EXPECT_FALSE(semaphore.tryWait());
            semaphore.signal();
        }).join();
        EXPECT_FALSE(other.tryWait());
        EXPECT_EQ(semaphore.getValue(), 0) << holds;
        semaphore.signal();
    }
    semaphore.signal();
    EXPECT_EQ(other.getValue(), 1) << "nobody holds it";
    std::thread([&] {
        EXPECT_TRUE(semaphore.tryWait());
        semaphore.signal();
    }).join();
    other.wait();
    EXPECT_FALSE(semaphore.tryWait());
    other.signal();
    EXPECT_TRUE(other.tryWait());
}

TEST(SemaphoreR, tellsAHoldThatCameFromADeathAndItsNote)
{
    const std::string name = uniqueName();
    SemaphoreR semaphore(name.c_str(), 1);
    semaphore.wait();
    EXPECT_FALSE(semaphore.isAfterDeath());
    semaphore.signal();
    {
        const SharedPage<std::atomic<int>> step;
        ForkedChild child([&] {
            SemaphoreR own(name.c_str(), 1);
            own.wait();
            own.noteFileSize(12'345'678'901);
            *step = 1;
            for (;;) ::pause();
            return 0;
        });
        EXPECT_TRUE(awaitTrue([&] { return *step == 1; }));
        EXPECT_FALSE(semaphore.tryWait());
    }
    semaphore.wait();
    semaphore.wait();
    EXPECT_TRUE(semaphore.isAfterDeath());
    EXPECT_EQ(semaphore.recallFileSize(), 12'345'678'901);
    semaphore.noteFileSize(-1);
    semaphore.signal();
    semaphore.signal();

    semaphore.wait();
    EXPECT_FALSE(semaphore.isAfterDeath());
    EXPECT_EQ(semaphore.recallFileSize(), -1);
    semaphore.signal();
}

/// What opening memory of that name is refused with.
test::Refusal refusalOf(const std::string& name, std::uint32_t size, std::uint32_t flags)
{
    return test::refusalOf([&] { const SharedMemory memory(name.c_str(), size, flags, 0600); });
}

test::Refusal notOpened(Result result)
{
    return {result, "Failed to open shared memory."};
}

TEST(IpcSharedMemory, carriesBytesBetweenProcessesAndIsMadeAnewAfterAKill)
{
    const std::string name = uniqueName();
    {
        const SharedPage<std::atomic<int>> step;
        ForkedChild child([&] {
            const SharedMemory own(name.c_str(), 5'000, SharedMemory::CREATE, 0600);
            std::strcpy(static_cast<char*>(own.get()) + 4'000, "hello");
            *step = 1;
            for (;;) ::pause();
            return 0;
        });
        EXPECT_TRUE(awaitTrue([&] { return *step == 1; }));
        const SharedMemory memory(name.c_str(), 5'000, 0, 0);
        void* const base = memory;
        EXPECT_STREQ(static_cast<char*>(base) + 4'000, "hello");
    }
    EXPECT_EQ(refusalOf(name, 100, 0), notOpened(E_NOT_FOUND));
    EXPECT_EQ(refusalOf(name, 0, SharedMemory::CREATE), notOpened(E_INVALIDARG));
    const SharedMemory memory(name.c_str(), 6'000, SharedMemory::CREATE, 0600);
    EXPECT_EQ(static_cast<char*>(memory.get())[4'000], 0);
    EXPECT_EQ(refusalOf(name, 6'001, SharedMemory::CREATE), notOpened(E_INVALIDARG));
    EXPECT_EQ(refusalOf(name, 5, 0).first, S_OK);
}

TEST(IpcSharedMemory, leavesNothingWhenItCannotBeAttached)
{
    const std::string name = uniqueName();
    ForkedChild child([&] {
        if (refusalOf(name, 10, 0) != notOpened(E_NOT_FOUND)) return 1;
        const std::ptrdiff_t before = test::openDescriptors();
        std::uint64_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limit{pages * 4096 + (8u << 20), RLIM_INFINITY};
        ::setrlimit(RLIMIT_AS, &limit);
        const test::Refusal notAttached(E_OUTOFMEMORY, "Failed to attach shared memory");
        if (refusalOf(name, 32u << 20, SharedMemory::CREATE) != notAttached) return 2;
        return test::openDescriptors() == before ? 0 : 3;
    });
    EXPECT_EQ(child.exitCode(), 0);
    EXPECT_EQ(test::filesOf(name), 0);
}

} // namespace
} // namespace orv::ipc
