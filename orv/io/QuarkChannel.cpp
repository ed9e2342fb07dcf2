#include "orv/io/QuarkChannel.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/io/ByteBuffer.h"

namespace orv::io {

QuarkChannel::QuarkChannel(quark::IORVChannel* channel) : m_channel(channel) {}

QuarkChannel::~QuarkChannel() noexcept(false) = default;

int QuarkChannel::read(ByteBuffer& buffer)
{
    std::int32_t n = buffer.atOnce();
    throwIfFailed(m_channel->Read(buffer.here(), &n));
    buffer.m_position += static_cast<std::uint32_t>(n);
    return n;
}

int QuarkChannel::write(ByteBuffer& buffer)
{
    std::int32_t n = buffer.atOnce();
    throwIfFailed(m_channel->Write(buffer.here(), &n));
    buffer.m_position += static_cast<std::uint32_t>(n);
    return n;
}

String QuarkChannel::getInheritableName()
{
    // On the heap, because a component may take a Reference to what it is given.
    const auto name = makeReference<String>();
    throwIfFailed(m_channel->GetInheritableName(name.get()));
    return *name;
}

} // namespace orv::io
