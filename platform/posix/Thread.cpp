#include "platform/threads.h"

#include "platform/posix/internal/Deadline.h"
#include "platform/posix/internal/Futex.h"
#include "platform/posix/internal/Record.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <ctime>

#include <csignal>
#include <cxxabi.h>
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

namespace orvcore {
namespace {

struct ThreadRecord {
    pthread_t thread{};
};

/// What the creator and the new thread tell each other. It lives on the creator's stack, until the
/// identifier is there.
struct Start {
    ORVThreadEntry entry;
    void* argument;
    std::atomic<std::uint32_t> id{0};
};

// What unwinds a cancelled thread is no object, which the sanitizer would take as a fault here.
__attribute__((no_sanitize("null"))) void* runThread(void* argument)
{
    auto* const start = static_cast<Start*>(argument);
    const ORVThreadEntry entry = start->entry;
    void* const entryArgument = start->argument;
    start->id.store(currentThreadId(), std::memory_order_release);
    futexWake(&start->id, 1);
    try {
        return entry(entryArgument);
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being cancelled, which nobody may stop
    } catch (...) {
        return nullptr;
    }
}

std::uint32_t awaitId(const Start& start) noexcept
{
    std::uint32_t id = 0;
    while ((id = start.id.load(std::memory_order_acquire)) == 0) futexWait(&start.id, 0);
    return id;
}

/// The size of a stack that a thread can work on, in whole pages.
std::size_t usableStackSize(std::uint32_t wanted) noexcept
{
    constexpr std::size_t enoughForTheLibrary = 64 * 1024;
    const auto least = static_cast<std::size_t>(std::max(::sysconf(_SC_THREAD_STACK_MIN), 0L));
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t size =
        std::max<std::size_t>({wanted, least + enoughForTheLibrary, enoughForTheLibrary});
    return (size + page - 1) / page * page;
}

int createThread(pthread_t* thread, std::uint32_t stackSize, Start* start) noexcept
{
    pthread_attr_t attributes;
    int error = ::pthread_attr_init(&attributes);
    if (error != 0) return error;
    if (stackSize != 0)
        error = ::pthread_attr_setstacksize(&attributes, usableStackSize(stackSize));

    // Signals are for the threads of the host, which expects its handlers to run there.
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    if (error == 0) {
        ::pthread_sigmask(SIG_SETMASK, &all, &before);
        error = ::pthread_create(thread, &attributes, runThread, start);
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    ::pthread_attr_destroy(&attributes);
    return error;
}

} // namespace

void sleepFor(std::uint32_t milliseconds) noexcept
{
    if (milliseconds == 0) {
        ::sched_yield();
        return;
    }
    const Deadline deadline = Deadline::after(milliseconds);
    while (deadline.moment() == nullptr) ::pause();
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, deadline.moment(), nullptr) == EINTR) {
    }
}

void napFor(std::uint32_t microseconds) noexcept
{
    const timespec time{microseconds / 1'000'000,
                        static_cast<long>(microseconds % 1'000'000) * 1000};
    ::clock_nanosleep(CLOCK_MONOTONIC, 0, &time, nullptr);
}

} // namespace orvcore

using namespace orvcore;

ORVResult ORVThreadCreate(ORVThreadEntry entry, void* argument, std::uint32_t /*reserved*/,
                          std::uint32_t stackSize, ORVHandle* out, std::uint32_t* id) noexcept
{
    if (entry == nullptr) return E_POINTER;
    const ORVResult result = createRecord<ThreadRecord>(out);
    if (result < 0) return result;

    auto* const record = recordOf<ThreadRecord>(*out);
    Start start{entry, argument};
    if (const int error = createThread(&record->thread, stackSize, &start)) {
        destroyRecord(record);
        *out = ORV_NO_HANDLE;
        return ORVResultFromNative(error);
    }
    const std::uint32_t threadId = awaitId(start);
    if (id != nullptr) *id = threadId;
    return S_OK;
}

ORVResult ORVThreadJoin(ORVHandle thread, void** exitValue) noexcept
{
    auto* const record = recordOf<ThreadRecord>(thread);
    if (record == nullptr) return invalidHandle;
    void* value = nullptr;
    if (const int error = ::pthread_join(record->thread, &value)) return ORVResultFromNative(error);
    if (exitValue != nullptr) *exitValue = value;
    destroyRecord(record);
    return S_OK;
}

ORVResult ORVThreadDetach(ORVHandle thread) noexcept
{
    auto* const record = recordOf<ThreadRecord>(thread);
    if (record == nullptr) return invalidHandle;
    if (const int error = ::pthread_detach(record->thread)) return ORVResultFromNative(error);
    destroyRecord(record);
    return S_OK;
}
