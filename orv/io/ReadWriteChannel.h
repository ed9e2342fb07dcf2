#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/io/IChannel.h"
#include "orv/io/quark/IORVChannel.h"
#include "orv/quark/Implements.h"

namespace orv::io {

/// Joins a channel to read from and one to write to, and offers both to components too.
///
/// Threads: one at a time.
class ORV_API ReadWriteChannel
    : public ::orv::quark::Implements<Object, IChannel, quark::IORVChannel> {
public:
    /// Takes a count on both, neither of which may be null.
    ReadWriteChannel(IReadChannel* in, IWriteChannel* out);
    ~ReadWriteChannel() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    int read(ByteBuffer& buffer) override;
    int write(ByteBuffer& buffer) override;

    Result Read(signed char* buffer, std::int32_t* n) override;
    Result Write(const signed char* buffer, std::int32_t* n) override;
    /// E_NOT_AVAILABLE.
    Result GetInheritableName(util::ICharBuffer* name) override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

private:
    Reference<IReadChannel> m_in;
    Reference<IWriteChannel> m_out;
};

} // namespace orv::io
