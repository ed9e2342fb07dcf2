#pragma once

#include "orv/Reference.h"
#include "orv/io/IChannel.h"
#include "orv/quark/Implements.h"
#include "orv/sync/LockObject.h"
#include "orv/sync/Mutex.h"

namespace orv::io {

/// A channel with a lock, by which threads keep whole exchanges together.
///
///     const sync::Lock exchange(*channel);
///     channel->write(question);
///     channel->read(answer);
///
/// read() and write() take no lock by themselves: they work for a thread that holds none, beside
/// one that does. Threads: any for the lock; for the rest as the bracket orders them.
class ORV_API LockingChannel : public ::orv::quark::Implements<sync::LockObject, IChannel> {
public:
    /// `lockName` labels the lock for diagnosis and may be null.
    LockingChannel(IChannel* channel, const char* lockName);
    LockingChannel(const LockingChannel&) = delete;
    LockingChannel& operator=(const LockingChannel&) = delete;
    ~LockingChannel() noexcept(false) override;

    void wait() override;
    bool tryWait() override;
    void signal() override;

    int read(ByteBuffer& buffer) override;
    int write(ByteBuffer& buffer) override;

private:
    Reference<IChannel> m_channel;
    sync::Mutex m_lock;
};

} // namespace orv::io
