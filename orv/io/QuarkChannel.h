#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/io/IChannel.h"
#include "orv/io/quark/IORVChannel.h"
#include "orv/quark/Implements.h"

namespace orv::io {

/// The channel of a component, for callers that want exceptions. Made by Channels.
///
/// Errors: ResultException with the component's result; the buffer is then as it was. Threads: one
/// at a time.
class ORV_API QuarkChannel : public ::orv::quark::Implements<Object, IInheritableChannel> {
public:
    explicit QuarkChannel(quark::IORVChannel* channel);
    ~QuarkChannel() noexcept(false) override;

    /// The position moves by what the component says, back by one at its end.
    int read(ByteBuffer& buffer) override;
    int write(ByteBuffer& buffer) override;
    String getInheritableName() override;

private:
    Reference<quark::IORVChannel> m_channel;
};

} // namespace orv::io
