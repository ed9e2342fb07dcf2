#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/exec/IRunnable.h"
#include "orv/log/ILogProcessor.h"
#include "orv/log/internal/EntryQueue.h"
#include "orv/quark/Implements.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/Semaphore.h"

#include <atomic>
#include <cstdint>

namespace orv::log {

/// What an AsyncProcessor and its threads have in common; it lives as long as any of them.
class AsyncProcessorImpl final
    : public ::orv::quark::Implements<Object, exec::IRunnable, ILogProcessor> {
public:
    AsyncProcessorImpl(ILogProcessor* target, std::int32_t threadCount);
    ~AsyncProcessorImpl() noexcept(false) override;

    /// Starts the threads and lets go of them.
    void start();

    /// Tells the threads to end and hands what waits to the target; see AsyncProcessor.
    void stop();

    /// The work of each thread.
    void* run() override;

    /// Puts `entry` at the end of the queue.
    void process(const ILogEntry* entry) override;

private:
    bool isStopped() const noexcept { return m_stopped.load(std::memory_order_acquire); }
    Reference<const ILogEntry> takeOldest();
    void awaitSignal();
    void drain();

    Reference<ILogProcessor> m_target;
    sync::Mutex m_lock;       ///< guards the queue
    sync::Semaphore m_signal; ///< one count an entry, and one a thread at the stop
    internal::EntryQueue m_queue;
    std::int32_t m_threadCount;
    std::atomic<bool> m_stopped{false};
};

} // namespace orv::log
