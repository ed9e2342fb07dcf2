#include "orv/net/InetAddress.h"

#include "orv/String.h"
#include "orv/net/TcpSocket2.h"
#include "orv/net/internal/NetworkOrder.h"
#include "orv/net/internal/SocketResult.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace orv::net {

namespace {

using internal::withoutException;
using orvcore::FAMILY_IPV4;
using orvcore::FAMILY_IPV6;

/// The longest numeric text with its terminator.
constexpr std::uint32_t TEXT_ROOM = 1025;

ENUM_ORV_E_SOCKET giveLength(std::uint64_t size, std::uint64_t* length) noexcept
{
    if (length == nullptr) return ORV_E_SOCKET_EINVAL;
    *length = size;
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET giveBytes(const void* bytes, std::uint64_t size, void* buffer,
                            std::uint64_t* length) noexcept
{
    if (buffer == nullptr || length == nullptr) return ORV_E_SOCKET_EINVAL;
    const std::uint64_t room = std::exchange(*length, size);
    if (room < size) return ORV_E_SOCKET_EMSGSIZE;
    std::memcpy(buffer, bytes, size);
    return ORV_E_SOCKET_OK;
}

template <std::size_t size>
bool isAllOf(const std::uint8_t (&bytes)[size], std::uint8_t value) noexcept
{
    return std::all_of(bytes, bytes + size, [value](std::uint8_t byte) { return byte == value; });
}

void appendNativeError(String& text, std::uint32_t error)
{
    text.append(u"native error ").append(String::valueOf(error));
}

/// Makes the address of `family` from the arguments behind it.
template <class... Arguments>
ENUM_ORV_E_SOCKET createOf(std::uint16_t family, InetAddress** out, Arguments... arguments)
{
    return withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_EINVAL;
        if (family == FAMILY_IPV4) *out = new Inet4Address(arguments..., &result);
        if (family == FAMILY_IPV6) *out = new Inet6Address(arguments..., &result);
        return result;
    });
}

} // namespace

InetAddress::InetAddress(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error)
{
    ENUM_ORV_E_SOCKET result = TcpSocket2::init();
    if (result == ORV_E_SOCKET_OK && address != nullptr) {
        const std::uint16_t family = orvcore::familyOfFace(address->family);
        const std::uint32_t size = orvcore::sizeOfAddress(family);
        std::memcpy(&m_address, address, size);
        if (size > 0) m_address.family = family;
        if (size == 0) result = ORV_E_SOCKET_EINVAL;
    }
    if (error != nullptr) *error = result;
}

InetAddress::InetAddress(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error)
    : InetAddress(nullptr, error)
{
    if (entry == nullptr) return;
    const orvcore::AddressEntry read = orvcore::readAddressEntry(entry);
    m_address = read.address;
    m_address.ipv4.port = internal::toNetworkOrder(port);
}

InetAddress::~InetAddress() = default;

ENUM_ORV_E_SOCKET InetAddress::getFamily(std::uint16_t* family) const
{
    if (family == nullptr) return ORV_E_SOCKET_EINVAL;
    *family = m_address.family;
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET InetAddress::getAddressStr(String& text) const
{
    return withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        std::uint64_t length = 0;
        const ENUM_ORV_E_SOCKET measured = getStorageBinaryLength(&length);
        if (measured != ORV_E_SOCKET_OK) {
            appendNativeError(text, static_cast<std::uint32_t>(measured));
            return measured;
        }
        char host[TEXT_ROOM];
        const std::uint32_t error = orvcore::numericAddress(m_address, host, sizeof host);
        if (error != 0) {
            appendNativeError(text, error);
        } else {
            text.append(String(host));
        }
        return ORV_E_SOCKETFromNativeEaiSocketError(error);
    });
}

ENUM_ORV_E_SOCKET InetAddress::create(const orv_sockaddr_union* address, InetAddress** out)
{
    if (out == nullptr) return ORV_E_SOCKET_EINVAL;
    *out = nullptr;
    if (address == nullptr) return ORV_E_SOCKET_EINVAL;
    const ENUM_ORV_E_SOCKET started = TcpSocket2::init();
    if (started != ORV_E_SOCKET_OK) return started;
    return createOf(orvcore::familyOfFace(address->family), out, address);
}

ENUM_ORV_E_SOCKET InetAddress::create(const addrinfo* entry, std::uint16_t port, InetAddress** out)
{
    if (out == nullptr) return ORV_E_SOCKET_EINVAL;
    *out = nullptr;
    if (entry == nullptr) return ORV_E_SOCKET_EINVAL;
    const ENUM_ORV_E_SOCKET started = TcpSocket2::init();
    if (started != ORV_E_SOCKET_OK) return started;
    return createOf(orvcore::readAddressEntry(entry).family, out, entry, port);
}

Inet4Address::Inet4Address(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error)
    : InetAddress(address, error)
{
}

Inet4Address::Inet4Address(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error)
    : InetAddress(entry, port, error)
{
}

Inet4Address::~Inet4Address() = default;

ENUM_ORV_E_SOCKET Inet4Address::getAddressBinaryLength(std::uint64_t* length) const
{
    return giveLength(sizeof m_address.ipv4.address, length);
}

ENUM_ORV_E_SOCKET Inet4Address::getAddressBinary(signed char* buffer, std::uint64_t* length) const
{
    return giveBytes(m_address.ipv4.address, sizeof m_address.ipv4.address, buffer, length);
}

ENUM_ORV_E_SOCKET Inet4Address::getStorageBinaryLength(std::uint64_t* length) const
{
    return giveLength(sizeof m_address.ipv4, length);
}

ENUM_ORV_E_SOCKET Inet4Address::getStorageBinary(orv_sockaddr_union* buffer,
                                                 std::uint64_t* length) const
{
    return giveBytes(&m_address, sizeof m_address.ipv4, buffer, length);
}

std::int16_t Inet4Address::isAddressAny() const
{
    return isAllOf(m_address.ipv4.address, 0) ? 1 : 0;
}

std::int16_t Inet4Address::isAddressLoopback() const
{
    constexpr std::uint8_t loopback[] = {127, 0, 0, 1};
    return std::equal(std::begin(loopback), std::end(loopback), m_address.ipv4.address) ? 1 : 0;
}

std::int16_t Inet4Address::isAddressNone() const
{
    return isAllOf(m_address.ipv4.address, 255) ? 1 : 0;
}

void Inet4Address::setAddressAny()
{
    std::fill(std::begin(m_address.ipv4.address), std::end(m_address.ipv4.address),
              std::uint8_t{0});
}

Inet6Address::Inet6Address(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error)
    : InetAddress(address, error)
{
}

Inet6Address::Inet6Address(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error)
    : InetAddress(entry, port, error)
{
}

Inet6Address::~Inet6Address() = default;

ENUM_ORV_E_SOCKET Inet6Address::getAddressBinaryLength(std::uint64_t* length) const
{
    return giveLength(sizeof m_address.ipv6.address, length);
}

ENUM_ORV_E_SOCKET Inet6Address::getAddressBinary(signed char* buffer, std::uint64_t* length) const
{
    return giveBytes(m_address.ipv6.address, sizeof m_address.ipv6.address, buffer, length);
}

ENUM_ORV_E_SOCKET Inet6Address::getStorageBinaryLength(std::uint64_t* length) const
{
    return giveLength(sizeof m_address.ipv6, length);
}

ENUM_ORV_E_SOCKET Inet6Address::getStorageBinary(orv_sockaddr_union* buffer,
                                                 std::uint64_t* length) const
{
    return giveBytes(&m_address, sizeof m_address.ipv6, buffer, length);
}

std::int16_t Inet6Address::isAddressAny() const
{
    return isAllOf(m_address.ipv6.address, 0) ? 1 : 0;
}

std::int16_t Inet6Address::isAddressLoopback() const
{
    constexpr std::uint8_t loopback[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    return std::equal(std::begin(loopback), std::end(loopback), m_address.ipv6.address) ? 1 : 0;
}

std::int16_t Inet6Address::isAddressNone() const
{
    return 0;
}

void Inet6Address::setAddressAny()
{
    std::fill(std::begin(m_address.ipv6.address), std::end(m_address.ipv6.address),
              std::uint8_t{0});
}

} // namespace orv::net
