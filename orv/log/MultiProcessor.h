#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/Fwd.h"
#include "orv/log/ILogProcessor.h"
#include "orv/quark/Implements.h"
#include "orv/sync/Mutex.h"

namespace orv::log {

/// Hands each entry to several processors, one after the other and one entry at a time: what stands
/// behind it needs no lock of its own.
///
/// Threads: any for process(); addProcessor() only while nobody calls process().
class ORV_API MultiProcessor final : public ::orv::quark::Implements<Object, ILogProcessor> {
public:
    /// Without processors it takes entries and drops them.
    [[nodiscard]] static Reference<MultiProcessor> create();
    ~MultiProcessor() noexcept(false) override;

    /// Adds `processor` behind the others; one that is added twice gets each entry twice. There is
    /// no way to remove one. Throws ResultException with E_POINTER for null.
    void addProcessor(ILogProcessor* processor);

    /// Hands `entry` to the processors in the order in which they were added. An exception of one
    /// leaves the later ones without the entry and goes to the caller.
    void process(const ILogEntry* entry) override;

private:
    MultiProcessor();

    Reference<collections::quark::LinkedList> m_processors;
    sync::Mutex m_lock;
};

} // namespace orv::log
