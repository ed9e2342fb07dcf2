#include "orv/ipc/SharedMemory.h"

#include "orv/Exception.h"
#include "orv/String.h"

#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/resource.h>

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
Result refusalOf(const std::string& name, std::uint32_t flags, const char16_t* description)
{
    try {
        const SharedMemory memory(name.c_str(), 32u << 20, flags, 0600);
    } catch (const ResultException& exception) {
        return exception.getDescription().equals(String(description)) ? exception.getResult()
                                                                      : E_FAIL;
    }
    return S_OK;
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
        if (refusalOf(name, 0, u"Failed to open shared memory.") != E_NOT_FOUND) return 1;
        const std::ptrdiff_t before = openDescriptors();
        allowMore(8u << 20);
        const Result result =
            refusalOf(name, SharedMemory::CREATE, u"Failed to attach shared memory");
        if (result != E_OUTOFMEMORY) return 2;
        return openDescriptors() == before ? 0 : 3;
    });
    EXPECT_EQ(child.exitCode(), 0);
    EXPECT_EQ(test::filesOf(name), 0);
}

} // namespace
} // namespace orv::ipc
