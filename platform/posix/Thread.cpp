#include "platform/threads.h"

#include "platform/posix/internal/Deadline.h"
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

/// Shared by the new thread, until it knows what to run, and the owner of the handle.
struct ThreadRecord {
    ThreadRecord(ORVThreadEntry entryOf, void* argumentOf) noexcept
        : entry(entryOf), argument(argumentOf)
    {
    }
    const ORVThreadEntry entry;
    void* const argument;
    pthread_t thread{};
    std::atomic<std::uint32_t> id{0};
    std::atomic<std::uint32_t> owners{2};
};

void release(ThreadRecord* record) noexcept
{
    if (record->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) destroyRecord(record);
}

// What unwinds a cancelled thread is no object, which the sanitizer would take as a fault here.
__attribute__((no_sanitize("null"))) void* runThread(void* argument)
{
    auto* const record = static_cast<ThreadRecord*>(argument);
    const ORVThreadEntry entry = record->entry;
    void* const entryArgument = record->argument;
    record->id.store(currentThreadId(), std::memory_order_release);
    release(record);
    try {
        return entry(entryArgument);
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being cancelled, which nobody may stop
    } catch (...) {
        return nullptr;
    }
}

/// The identifier of a thread just made, without waiting for it to run: the system names the clock
/// of a thread's processor time after the thread.
std::uint32_t idOf(const ThreadRecord& record) noexcept
{
    constexpr int kindBits = 3;
    clockid_t clock = 0;
    if (::pthread_getcpuclockid(record.thread, &clock) == 0) {
        return static_cast<std::uint32_t>(~(clock >> kindBits));
    }
    // It has run already and is gone.
    std::uint32_t id = 0;
    while ((id = record.id.load(std::memory_order_acquire)) == 0) ::sched_yield();
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

// Signals are for the threads of the host, which expects its handlers to run there.
int blockSignals(pthread_attr_t* attributes) noexcept
{
    sigset_t all;
    ::sigfillset(&all);
    return ::pthread_attr_setsigmask_np(attributes, &all);
}

int createThread(std::uint32_t stackSize, ThreadRecord* record) noexcept
{
    pthread_attr_t attributes;
    int error = ::pthread_attr_init(&attributes);
    if (error != 0) return error;
    error = blockSignals(&attributes);
    if (error == 0 && stackSize != 0) {
        error = ::pthread_attr_setstacksize(&attributes, usableStackSize(stackSize));
    }
    if (error == 0) error = ::pthread_create(&record->thread, &attributes, runThread, record);
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
    const ORVResult result = createRecord<ThreadRecord>(out, entry, argument);
    if (result < 0) return result;

    auto* const record = recordOf<ThreadRecord>(*out);
    if (const int error = createThread(stackSize, record)) {
        destroyRecord(record);
        *out = ORV_NO_HANDLE;
        return ORVResultFromNative(error);
    }
    if (id != nullptr) *id = idOf(*record);
    return S_OK;
}

ORVResult ORVThreadJoin(ORVHandle thread, void** exitValue) noexcept
{
    auto* const record = recordOf<ThreadRecord>(thread);
    if (record == nullptr) return invalidHandle;
    void* value = nullptr;
    if (const int error = ::pthread_join(record->thread, &value)) return ORVResultFromNative(error);
    if (exitValue != nullptr) *exitValue = value;
    release(record);
    return S_OK;
}

ORVResult ORVThreadDetach(ORVHandle thread) noexcept
{
    auto* const record = recordOf<ThreadRecord>(thread);
    if (record == nullptr) return invalidHandle;
    if (const int error = ::pthread_detach(record->thread)) return ORVResultFromNative(error);
    release(record);
    return S_OK;
}
