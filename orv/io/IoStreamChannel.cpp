#include "orv/io/IoStreamChannel.h"

#include "orv/Failure.h"
#include "orv/io/internal/FlatChannel.h"
#include "orv/quark/InterfaceData.h"

namespace orv::io {

IoStreamChannel::IoStreamChannel(InputStream* in, OutputStream* out) : m_in(in), m_out(out) {}

IoStreamChannel::IoStreamChannel(InputStream* in, OutputStream* out, const String& name)
    : m_in(in), m_out(out), m_name(name)
{
}

IoStreamChannel::~IoStreamChannel() noexcept(false) = default;

const ::orv::quark::InterfaceData* IoStreamChannel::GetComIntfMap()
{
    using namespace ::orv::quark;
    static const InterfaceData map[] = {interfaceRow<io::quark::IORVChannel, IoStreamChannel>(),
                                        baseRow<Object>(), endRow};
    return map;
}

Result IoStreamChannel::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

int IoStreamChannel::read(ByteBuffer& buffer)
{
    const std::int32_t got = m_in->read(buffer.here(), buffer.atOnce());
    buffer.m_position += static_cast<std::uint32_t>(got);
    return got;
}

int IoStreamChannel::write(ByteBuffer& buffer)
{
    const std::int32_t n = buffer.atOnce();
    m_out->write(buffer.here(), n);
    buffer.m_position += static_cast<std::uint32_t>(n);
    return n;
}

String IoStreamChannel::getInheritableName()
{
    if (m_name.getLength() == 0) throwResult(E_NOT_AVAILABLE);
    return m_name;
}

Result IoStreamChannel::Read(signed char* buffer, std::int32_t* n)
{
    return internal::readFlat(*this, buffer, n);
}

Result IoStreamChannel::Write(const signed char* buffer, std::int32_t* n)
{
    return internal::writeFlat(*this, buffer, n);
}

Result IoStreamChannel::GetInheritableName(util::ICharBuffer* name)
{
    if (m_name.getLength() == 0) return E_NOT_AVAILABLE;
    return resultOf([&] { ORVCopyCharBuffer(name, &m_name); });
}

} // namespace orv::io
