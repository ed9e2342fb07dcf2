#include "orv/io/Channels.h"

#include "orv/io/IoStreamChannel.h"
#include "orv/io/QuarkChannel.h"

namespace orv::io {

Reference<IChannel> Channels::adaptStreams(InputStream* in, OutputStream* out)
{
    return makeReference<IoStreamChannel>(in, out);
}

Reference<IInheritableChannel> Channels::adaptStreams(InputStream* in, OutputStream* out,
                                                      const String& name)
{
    return makeReference<IoStreamChannel>(in, out, name);
}

Reference<IChannel> Channels::adaptQuarkChannel(quark::IORVChannel* channel)
{
    return makeReference<QuarkChannel>(channel);
}

Reference<IInheritableChannel> Channels::adaptQuarkWithInheritance(quark::IORVChannel* channel)
{
    const auto adapted = makeReference<QuarkChannel>(channel);
    adapted->getInheritableName();
    return adapted;
}

} // namespace orv::io
