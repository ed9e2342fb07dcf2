#include "orv/net/TcpServerSocket2.h"

#include "orv/net/internal/DiagnosticText.h"
#include "orv/net/internal/NetworkOrder.h"

#include <charconv>
#include <memory>

namespace orv::net {

using internal::withoutException;

namespace {

/// Room for the text of two addresses of IPv6.
constexpr std::int32_t DIAGNOSTIC_CAPACITY = 100;

/// What the name service is asked for: the flags passive and canonical name.
constexpr std::int32_t PASSIVE_WITH_NAME = 3;

/// Cuts the name at the start of `text` off and returns what follows, null at the end.
char* cutName(char* text) noexcept
{
    char* comma = const_cast<char*>(ORVStrChrA(text, ','));
    if (comma == nullptr) return nullptr;
    *comma++ = 0;
    while (*comma == ' ') ++comma;
    return comma;
}

bool isOneHost(InetAddress& address)
{
    return address.isAddressAny() == 0 && address.isAddressNone() == 0;
}

} // namespace

void TcpServerSocket2::AddressList::clear()
{
    for (Address& entry : entries) entry.reset();
    count = 0;
}

void TcpServerSocket2::bindListClear()
{
    m_bindList.clear();
}

void TcpServerSocket2::boundListClear()
{
    m_boundList.clear();
}

ENUM_ORV_E_SOCKET TcpServerSocket2::bindListAddAddrAny(std::uint16_t port)
{
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    for (const std::uint16_t family : {orvcore::FAMILY_IPV6, orvcore::FAMILY_IPV4}) {
        const ENUM_ORV_E_SOCKET added = addWildcard(family, port);
        if (added != ORV_E_SOCKET_OK) result = added;
    }
    return result;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::addWildcard(std::uint16_t family, std::uint16_t port)
{
    if (m_bindList.isFull()) return ORV_E_SOCKET_EFAULT;
    return withoutException(ORV_E_SOCKET_EFAULT, [&] {
        orv_sockaddr_union storage{};
        storage.family = family;
        storage.ipv4.port = internal::toNetworkOrder(port);
        ENUM_ORV_E_SOCKET made = ORV_E_SOCKET_OK;
        auto address = std::make_unique<InetSocketAddress>(&storage, &made);
        if (made != ORV_E_SOCKET_OK) return ORV_E_SOCKET_EFAULT;
        address->getAddress()->setAddressAny();
        m_bindList.add(std::move(address));
        return ORV_E_SOCKET_OK;
    });
}

ENUM_ORV_E_SOCKET TcpServerSocket2::bindListAddAddrInfo(const char* hosts, const char* service,
                                                        std::uint16_t port)
{
    if (hosts == nullptr) return ORV_E_SOCKET_EINVAL;
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    if (port == 0) {
        if (service == nullptr || *service == 0) return ORV_E_SOCKET_EINVAL;
        result = InetSocketAddress::getPortHostOrderFromTcpServiceName(service, &port);
        if (result != ORV_E_SOCKET_OK) return result;
    }
    char portText[16] = {};
    std::to_chars(portText, portText + sizeof portText - 1, port);

    const std::unique_ptr<char, decltype(&ORVStrFreeA)> names(ORVStrDupA(hosts), &ORVStrFreeA);
    if (!names) return ORV_E_SOCKET_ENOBUFS;
    char* name = names.get();
    while (name != nullptr) {
        char* const next = cutName(name);
        result = addHost(name, portText, port);
        name = next;
    }
    return result;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::addHost(const char* host, const char* portText,
                                            std::uint16_t port)
{
    addrinfo* list = nullptr;
    const auto error = orvcore::resolve(host, portText, {.flags = PASSIVE_WITH_NAME}, &list);
    if (error != 0) return ORV_E_SOCKETFromNativeEaiSocketError(error);

    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    bool found = false;
    for (const addrinfo* entry = list; entry != nullptr;) {
        const orvcore::AddressEntry read = orvcore::readAddressEntry(entry);
        if (orvcore::sizeOfAddress(read.family) != 0) {
            result = addEntry(entry, port, &found);
            if (result != ORV_E_SOCKET_OK) break;
        }
        entry = read.next;
    }
    ORVfreeaddrinfo(list);
    return result == ORV_E_SOCKET_OK && !found ? ORV_E_SOCKET_HOST_NOT_FOUND : result;
}

/// Notes in `*found` an address that can be bound to, whether there is a place for it or not.
ENUM_ORV_E_SOCKET TcpServerSocket2::addEntry(const addrinfo* entry, std::uint16_t port, bool* found)
{
    return withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        ENUM_ORV_E_SOCKET made = ORV_E_SOCKET_OK;
        auto address = std::make_unique<InetSocketAddress>(entry, port, &made);
        if (made != ORV_E_SOCKET_OK) return made;
        if (!isOneHost(*address->getAddress())) return made;
        *found = true;
        if (!m_bindList.isFull()) m_bindList.add(std::move(address));
        return made;
    });
}

ENUM_ORV_E_SOCKET TcpServerSocket2::bindListSaveOneForNamedPipeReply()
{
    if (m_bindList.count == 1) m_saved = std::move(m_bindList.entries[0]);
    m_bindList.clear();
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::getBoundAddress(std::uint32_t index, signed char* buffer,
                                                    std::uint64_t* length)
{
    if (buffer == nullptr || length == nullptr) return ORV_E_SOCKET_EINVAL;
    std::uint64_t room = std::exchange(*length, 0);
    if (index >= m_boundList.count) return ORV_E_SOCKET_EADDRNOTAVAIL;
    const Address& address = m_boundList.entries[index];
    if (!address || address->getAddress() == nullptr) return ORV_E_SOCKET_EFAULT;
    const ENUM_ORV_E_SOCKET result = address->getAddress()->getAddressBinary(buffer, &room);
    if (result == ORV_E_SOCKET_OK) *length = room;
    return result;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::listAddressesDiagnosticStrA(const Address* list,
                                                                std::uint64_t count, char* buffer,
                                                                std::uint32_t* size)
{
    return internal::writeDiagnosticText(buffer, size, DIAGNOSTIC_CAPACITY, [&](String& text) {
        for (std::uint64_t i = 0; i < count; ++i) {
            if (i > 0) text.append(u"; ");
            if (list[i]) {
                list[i]->getDiagnosticStr(text);
            } else {
                text.append(u"[list(").append(String::valueOf(i)).append(u")==NULL]");
            }
        }
        return ORV_E_SOCKET_OK;
    });
}

ENUM_ORV_E_SOCKET TcpServerSocket2::bindListAddressesDiagnosticStrA(char* buffer,
                                                                    std::uint32_t* size)
{
    return listAddressesDiagnosticStrA(m_bindList.entries.data(), m_bindList.count, buffer, size);
}

ENUM_ORV_E_SOCKET TcpServerSocket2::boundListAddressesDiagnosticStrA(char* buffer,
                                                                     std::uint32_t* size)
{
    return listAddressesDiagnosticStrA(m_boundList.entries.data(), m_boundList.count, buffer, size);
}

} // namespace orv::net
