#include "orv/log/internal/AsyncProcessorImpl.h"

#include "orv/exec/Thread.h"
#include "orv/log/ILogEntry.h"
#include "orv/sync/Lock.h"
#include "platform/threads.h"

#include <algorithm>
#include <exception>

#include <cxxabi.h>

namespace orv::log {

namespace {

// In microseconds. A thread that sleeps for good has to be woken by a system call, which takes
// longer than writing the line; one that naps costs a processor less than 1 in 50.
constexpr std::uint32_t FIRST_NAP = 200;
constexpr std::uint32_t LONGEST_NAP = 2000;
constexpr std::uint32_t NAPS_IN_ALL = 20'000;

} // namespace

AsyncProcessorImpl::AsyncProcessorImpl(ILogProcessor* target, std::int32_t threadCount)
    : m_target(target), m_lock("orv/log/AsyncProcessorImpl::m_lock"),
      m_signal(0, "orv/log/AsyncProcessorImpl::m_signal"), m_threadCount(threadCount)
{
}

AsyncProcessorImpl::~AsyncProcessorImpl() noexcept(false) = default;

void AsyncProcessorImpl::start()
{
    for (std::int32_t i = 0; i < m_threadCount; ++i) makeReference<exec::Thread>(this)->start();
}

void AsyncProcessorImpl::process(const ILogEntry* entry)
{
    {
        const sync::Lock lock(m_lock);
        m_queue.append(entry);
    }
    m_signal.signal();
}

void* AsyncProcessorImpl::run()
{
    awaitSignal();
    while (!isStopped()) {
        const Reference<const ILogEntry> entry = takeOldest();
        if (!entry) break;
        m_target->process(entry.get());
        awaitSignal();
    }
    return nullptr;
}

/// The oldest entry. Null once the stop has begun, which then takes care of all that are left.
Reference<const ILogEntry> AsyncProcessorImpl::takeOldest()
{
    const sync::Lock lock(m_lock);
    return isStopped() ? nullptr : m_queue.removeFirst();
}

void AsyncProcessorImpl::awaitSignal()
{
    if (m_signal.tryWait()) return;
    std::uint32_t napped = 0;
    for (std::uint32_t nap = FIRST_NAP; napped < NAPS_IN_ALL;
         nap = std::min(nap * 2, LONGEST_NAP)) {
        orvcore::napFor(nap);
        if (m_signal.tryWait()) return;
        napped += nap;
    }
    m_signal.wait();
}

void AsyncProcessorImpl::stop()
{
    m_stopped.store(true, std::memory_order_release);
    for (std::int32_t i = 0; i < m_threadCount; ++i) m_signal.signal();
    drain();
}

void AsyncProcessorImpl::drain()
{
    const sync::Lock lock(m_lock);
    std::exception_ptr first;
    m_queue.forEach([&](const ILogEntry* entry) {
        try {
            m_target->process(entry);
        } catch (abi::__forced_unwind&) {
            throw; // the thread is being cancelled, which nobody may stop
        } catch (...) {
            if (!first) first = std::current_exception();
        }
    });
    if (first) std::rethrow_exception(first);
}

} // namespace orv::log
