#include "components/tcptransport/TcpConnector.h"

#include "components/tcptransport/Connection.h"
#include "orv/net/TcpClientSocket2.h"

namespace orv::components::tcptransport {

namespace {

using net::TcpClientSocket2;

constexpr char16_t DEFAULT_HOST[] = u"localhost";

struct FreeAddresses {
    void operator()(addrinfo* list) const { ORVfreeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses addressesOf(const String& host, std::uint16_t port)
{
    addrinfo* list = nullptr;
    const String portText = String::valueOf(std::uint32_t{port});
    const auto error = orvcore::resolve(host.getBytes(), portText.getBytes(), {}, &list);
    check(ORV_E_SOCKETFromNativeEaiSocketError(error));
    return Addresses(list);
}

ENUM_ORV_E_SOCKET connectTo(const orvcore::AddressEntry& entry, std::int32_t timeout,
                            Owned<TcpClientSocket2>& socket)
{
    TcpClientSocket2* made = nullptr;
    const auto result = TcpClientSocket2::createTcpClientSocket2(entry.family, orvcore::TYPE_STREAM,
                                                                 orvcore::PROTOCOL_TCP, &made);
    socket.reset(made);
    if (result != ORV_E_SOCKET_OK) return result;
    limitWaits(*socket, timeout);
    return socket->connect(&entry.address, entry.size);
}

} // namespace

TcpConnector::TcpConnector(const Settings& settings) : m_settings(settings)
{
    if (settings.port == 0) throwResult(E_INVALIDARG);
}

Reference<io::IChannel> TcpConnector::connect()
{
    const bool named = m_settings.host.getLength() != 0;
    const Addresses addresses =
        addressesOf(named ? m_settings.host : DEFAULT_HOST, m_settings.port);
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_HOST_NOT_FOUND;
    orvcore::AddressEntry entry;
    for (const addrinfo* next = addresses.get(); next != nullptr; next = entry.next) {
        entry = orvcore::readAddressEntry(next);
        if (orvcore::sizeOfAddress(entry.family) == 0) continue;
        Owned<TcpClientSocket2> socket;
        result = connectTo(entry, m_settings.timeout, socket);
        if (result == ORV_E_SOCKET_OK) return makeChannel(std::move(socket), m_settings.timeout);
    }
    throwResult(result);
}

} // namespace orv::components::tcptransport
