#include "orv/io/ReadWriteChannel.h"

#include "orv/io/internal/FlatChannel.h"
#include "orv/quark/InterfaceData.h"

namespace orv::io {

ReadWriteChannel::ReadWriteChannel(IReadChannel* in, IWriteChannel* out) : m_in(in), m_out(out) {}

ReadWriteChannel::~ReadWriteChannel() noexcept(false) = default;

const ::orv::quark::InterfaceData* ReadWriteChannel::GetComIntfMap()
{
    using namespace ::orv::quark;
    static const InterfaceData map[] = {interfaceRow<io::quark::IORVChannel, ReadWriteChannel>(),
                                        baseRow<Object>(), endRow};
    return map;
}

Result ReadWriteChannel::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

int ReadWriteChannel::read(ByteBuffer& buffer)
{
    return m_in->read(buffer);
}

int ReadWriteChannel::write(ByteBuffer& buffer)
{
    return m_out->write(buffer);
}

Result ReadWriteChannel::Read(signed char* buffer, std::int32_t* n)
{
    return internal::readFlat(*this, buffer, n);
}

Result ReadWriteChannel::Write(const signed char* buffer, std::int32_t* n)
{
    return internal::writeFlat(*this, buffer, n);
}

Result ReadWriteChannel::GetInheritableName(util::ICharBuffer*)
{
    return E_NOT_AVAILABLE;
}

} // namespace orv::io
