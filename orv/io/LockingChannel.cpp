#include "orv/io/LockingChannel.h"

namespace orv::io {

LockingChannel::LockingChannel(IChannel* channel, const char* lockName)
    : m_channel(channel), m_lock(lockName, 0)
{
}

LockingChannel::~LockingChannel() noexcept(false) = default;

void LockingChannel::wait()
{
    m_lock.wait();
}

bool LockingChannel::tryWait()
{
    return m_lock.tryWait();
}

void LockingChannel::signal()
{
    m_lock.signal();
}

int LockingChannel::read(ByteBuffer& buffer)
{
    return m_channel->read(buffer);
}

int LockingChannel::write(ByteBuffer& buffer)
{
    return m_channel->write(buffer);
}

} // namespace orv::io
