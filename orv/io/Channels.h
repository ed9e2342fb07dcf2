#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/io/IChannel.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"
#include "orv/io/quark/IORVChannel.h"

namespace orv::io {

/// Makes channels out of what else can carry bytes. The channels hold what they are given by
/// reference.
class ORV_API Channels {
public:
    /// A channel over two streams: an IoStreamChannel.
    static Reference<IChannel> adaptStreams(InputStream* in, OutputStream* out);
    /// The same with the name under which a further process can take it over.
    static Reference<IInheritableChannel> adaptStreams(InputStream* in, OutputStream* out,
                                                       const String& name);
    /// The channel of a component: a QuarkChannel.
    static Reference<IChannel> adaptQuarkChannel(quark::IORVChannel* channel);
    /// The same for one that has a name; without it ResultException.
    static Reference<IInheritableChannel> adaptQuarkWithInheritance(quark::IORVChannel* channel);

private:
    Channels() = default;
};

} // namespace orv::io
