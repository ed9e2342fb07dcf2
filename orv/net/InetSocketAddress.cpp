#include "orv/net/InetSocketAddress.h"

#include "orv/net/TcpSocket2.h"
#include "orv/net/internal/NetworkOrder.h"
#include "orv/net/internal/SocketResult.h"

namespace orv::net {

using internal::withoutException;

InetSocketAddress::InetSocketAddress(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error)
{
    if (error == nullptr) return;
    InetAddress* made = nullptr;
    *error = InetAddress::create(address, &made);
    m_address.reset(made);
    if (address != nullptr) m_port = internal::toNetworkOrder(address->ipv4.port);
}

InetSocketAddress::InetSocketAddress(const addrinfo* entry, std::uint16_t port,
                                     ENUM_ORV_E_SOCKET* error)
{
    if (error == nullptr) return;
    InetAddress* made = nullptr;
    *error = InetAddress::create(entry, port, &made);
    m_address.reset(made);
    m_port = port;
    if (*error != ORV_E_SOCKET_OK) return;
    const char* const name = orvcore::readAddressEntry(entry).canonicalName;
    if (name == nullptr || *name == 0) return;
    *error = withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        m_canonicalName = name;
        return ORV_E_SOCKET_OK;
    });
}

InetSocketAddress::~InetSocketAddress() = default;

ENUM_ORV_E_SOCKET InetSocketAddress::getFamily(std::uint16_t* family) const
{
    return m_address ? m_address->getFamily(family) : ORV_E_SOCKET_EFAULT;
}

ENUM_ORV_E_SOCKET InetSocketAddress::getAddressStr(String& text) const
{
    return m_address ? m_address->getAddressStr(text) : ORV_E_SOCKET_EFAULT;
}

ENUM_ORV_E_SOCKET InetSocketAddress::getPortHostOrder(std::uint16_t* port) const
{
    if (port == nullptr) return ORV_E_SOCKET_EINVAL;
    *port = m_port;
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET InetSocketAddress::setPortHostOrder(std::uint16_t port)
{
    m_port = port;
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET InetSocketAddress::getPortHostOrderFromTcpServiceName(const char* service,
                                                                        std::uint16_t* port)
{
    if (port == nullptr) return ORV_E_SOCKET_EINVAL;
    *port = 0;
    if (service == nullptr) return ORV_E_SOCKET_EINVAL;
    const ENUM_ORV_E_SOCKET started = TcpSocket2::init();
    if (started != ORV_E_SOCKET_OK || *service == 0) return started;
    return internal::resultOf(orvcore::portOfService(service, port));
}

void InetSocketAddress::getDiagnosticStr(String& text) const
{
    std::uint16_t family = 0;
    if (m_address) m_address->getFamily(&family);
    const bool isIpv6 = family == orvcore::FAMILY_IPV6;
    if (isIpv6) {
        text.append(u'[');
    } else if (family != orvcore::FAMILY_IPV4) {
        text.append(String::valueOf(static_cast<std::uint32_t>(family)));
    }
    if (m_address) {
        m_address->getAddressStr(text);
    } else {
        text.append(u"address missing");
    }
    if (isIpv6) text.append(u']');
    text.append(u':').append(String::valueOf(static_cast<std::uint32_t>(m_port)));
}

} // namespace orv::net
