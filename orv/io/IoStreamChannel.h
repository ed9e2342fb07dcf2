#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/io/IChannel.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"
#include "orv/io/quark/IORVChannel.h"
#include "orv/quark/Implements.h"

namespace orv::io {

/// A pair of streams as a channel. Made by Channels::adaptStreams().
///
/// Errors: those of the streams; E_NOT_AVAILABLE from both ways to ask for a name that there is
/// none of. Threads: one at a time.
class ORV_API IoStreamChannel
    : public ::orv::quark::Implements<Object, IInheritableChannel, quark::IORVChannel> {
public:
    /// A channel without a name.
    IoStreamChannel(InputStream* in, OutputStream* out);
    /// An empty name is none.
    IoStreamChannel(InputStream* in, OutputStream* out, const String& name);
    ~IoStreamChannel() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// One read of the stream for all the room that is left, 0 bytes where there is none. At the
    /// end of the stream it returns -1 and moves the position back by one, without a check.
    int read(ByteBuffer& buffer) override;
    /// Writes all from the position to the limit in one write of the stream.
    int write(ByteBuffer& buffer) override;
    /// Throws ResultException.
    String getInheritableName() override;

    Result Read(signed char* buffer, std::int32_t* n) override;
    Result Write(const signed char* buffer, std::int32_t* n) override;
    Result GetInheritableName(util::ICharBuffer* name) override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

private:
    Reference<InputStream> m_in;
    Reference<OutputStream> m_out;
    String m_name;
};

} // namespace orv::io
