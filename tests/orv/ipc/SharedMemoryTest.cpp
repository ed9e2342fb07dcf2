#include "orv/ipc/SharedMemory.h"

#include "orv/Exception.h"
#include "orv/String.h"

#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/resource.h>
#include <unistd.h>

namespace orv::ipc {
namespace {

using test::uniqueName;

TEST(IpcSharedMemory, carriesBytesBetweenProcesses)
{
    const std::string name = uniqueName();
    {
        const SharedMemory memory(name.c_str(), 5'000, SharedMemory::CREATE, 0600);
        test::ForkedChild child([&] {
            const SharedMemory own(name.c_str(), 5'000, 0, 0);
            std::strcpy(static_cast<char*>(own.get()) + 4'000, "hello");
            return 0;
        });
        EXPECT_EQ(child.exitCode(), 0);
        void* const base = memory;
        EXPECT_STREQ(static_cast<char*>(base) + 4'000, "hello");
    }
    EXPECT_EQ(test::filesOf(name), 0);
}

/// The result of opening memory of that name, described as it must be; E_FAIL if it is not.
Result refusalOf(const std::string& name, std::uint32_t size, std::uint32_t flags,
                 const char16_t* description = u"Failed to open shared memory.")
{
    try {
        const SharedMemory memory(name.c_str(), size, flags, 0600);
    } catch (const ResultException& exception) {
        return exception.getDescription().equals(String(description)) ? exception.getResult()
                                                                      : E_FAIL;
    }
    return S_OK;
}

TEST(IpcSharedMemory, isRefusedWhereItIsAbsentOrTooSmall)
{
    const std::string name = uniqueName();
    EXPECT_EQ(refusalOf(name, 0, SharedMemory::CREATE), E_INVALIDARG);
    const SharedMemory memory(name.c_str(), 10, SharedMemory::CREATE, 0600);
    EXPECT_EQ(refusalOf(name, 11, SharedMemory::CREATE), E_INVALIDARG);
    EXPECT_EQ(refusalOf(name, 5, 0), S_OK);
}

TEST(IpcSharedMemory, ofAKilledProcessIsMadeAnew)
{
    const std::string name = uniqueName();
    {
        const test::SharedPage<std::atomic<int>> step;
        test::ForkedChild child([&] {
            const SharedMemory own(name.c_str(), 100, SharedMemory::CREATE, 0600);
            *static_cast<char*>(own.get()) = 'o';
            *step = 1;
            for (;;) ::pause();
            return 0;
        });
        EXPECT_TRUE(test::awaitTrue([&] { return *step == 1; }));
    }
    EXPECT_EQ(refusalOf(name, 100, 0), E_NOT_FOUND);
    const SharedMemory memory(name.c_str(), 200, SharedMemory::CREATE, 0600);
    EXPECT_EQ(*static_cast<char*>(memory.get()), 0);
}

/// Lets this process have so many bytes more than it has, and no more.
void allowMore(rlim_t bytes)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    rlim_t kibibytes = 0;
    while (word != "VmData:" && status >> word) {
    }
    status >> kibibytes;
    const rlimit limit{kibibytes * 1024 + bytes, RLIM_INFINITY};
    ::setrlimit(RLIMIT_DATA, &limit);
}

std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(IpcSharedMemory, leavesNothingWhenItCannotBeAttached)
{
    const std::string name = uniqueName();
    test::ForkedChild child([&] {
        if (refusalOf(name, 10, 0) != E_NOT_FOUND) return 1;
        const std::ptrdiff_t before = openDescriptors();
        allowMore(8u << 20);
        const Result result =
            refusalOf(name, 32u << 20, SharedMemory::CREATE, u"Failed to attach shared memory");
        if (result != E_OUTOFMEMORY) return 2;
        return openDescriptors() == before ? 0 : 3;
    });
    EXPECT_EQ(child.exitCode(), 0);
    EXPECT_EQ(test::filesOf(name), 0);
}

} // namespace
} // namespace orv::ipc
