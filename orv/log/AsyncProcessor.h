#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/log/ILogProcessor.h"
#include "orv/quark/Implements.h"

#include <cstdint>

namespace orv::log {

class AsyncProcessorImpl;

/// Takes entries into a queue and lets threads of its own hand them to a target.
///
///     Reference<MultiProcessor> oneAtATime = MultiProcessor::create();
///     oneAtATime->addProcessor(BasicLogWriter::create(text.get()).get());
///     logger->addProcessor(AsyncProcessor::create(oneAtATime.get(), 1).get());
///
/// The queue has no bound: process() never waits for room and never drops an entry, and a producer
/// that outruns the threads grows the queue. An entry of a Logger with five fields and 40 units of
/// text takes some 200 bytes in it.
///
/// One thread keeps the order of the entries; several have none. Without threads the entries wait
/// for the stop. Several threads, and at the stop even one and its stopper, call the target at the
/// same time: put a MultiProcessor before a writer, which is not made for that.
///
/// The stop is the destructor. It tells the threads to end, without waiting for them, and hands all
/// that still waits to the target, in order and on its own thread; meanwhile, and a little longer,
/// a thread may be busy with the entry that it had taken, which later ones may then overtake. Each
/// entry reaches the target once. Release the processor before the process ends: what waits then is
/// lost.
///
/// Errors: an exception of the target ends the thread that it meets, unreported; the others go on,
/// and without any left the entries wait for the stop. At the stop it goes out of the destructor,
/// the first one if there are several, after all entries have had their turn.
///
/// A thread that has nothing to do looks for entries in growing intervals of up to 2 ms, for some
/// 20 ms in all, before it sleeps until it is woken: while it looks, process() makes no system
/// call.
///
/// Threads: any for process().
class ORV_API AsyncProcessor final : public ::orv::quark::Implements<Object, ILogProcessor> {
public:
    /// Starts `threadCount` threads on `target`, none for a count below 1. Throws ResultException
    /// where they cannot be made, and with E_POINTER for null.
    [[nodiscard]] static Reference<AsyncProcessor> create(ILogProcessor* target,
                                                          std::int32_t threadCount);
    /// Stops, as told above.
    ~AsyncProcessor() noexcept(false) override;

    /// Puts `entry` at the end of the queue.
    void process(const ILogEntry* entry) override;

private:
    explicit AsyncProcessor(Reference<AsyncProcessorImpl> impl);

    Reference<AsyncProcessorImpl> m_impl;
};

} // namespace orv::log
