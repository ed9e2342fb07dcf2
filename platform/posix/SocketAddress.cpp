#include "platform/posix/internal/SocketAddress.h"

#include "platform/posix/internal/SocketErrors.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include <netdb.h>
#include <netinet/in.h>

namespace orvcore {
namespace {

static_assert(sizeof(sockaddr_in) == sizeof(orv_sockaddr_union::ipv4));
static_assert(sizeof(sockaddr_in6) == sizeof(orv_sockaddr_union::ipv6));

std::uint32_t sizeOfNative(std::uint16_t family) noexcept
{
    return family == AF_INET6 ? sizeOfAddress(FAMILY_IPV6) : sizeOfAddress(family);
}

// Appends "%" and the number of the scope.
SocketError appendScope(std::uint32_t scope, char* text, std::uint32_t room) noexcept
{
    const std::size_t length = std::strlen(text);
    const int added = std::snprintf(text + length, room - length, "%%%u", scope);
    return static_cast<std::size_t>(added) < room - length ? 0 : resolverErrorOf(EAI_OVERFLOW);
}

} // namespace

std::uint32_t sizeOfAddress(std::uint16_t family) noexcept
{
    switch (family) {
    case FAMILY_IPV4: return sizeof(orv_sockaddr_union::ipv4);
    case FAMILY_IPV6: return sizeof(orv_sockaddr_union::ipv6);
    default: return 0;
    }
}

std::uint16_t familyOfFace(std::uint16_t family) noexcept
{
    return family == AF_INET6 ? FAMILY_IPV6 : family;
}

int nativeFamily(std::int32_t family) noexcept
{
    if (family == FAMILY_IPV4) return AF_INET;
    return family == FAMILY_IPV6 || family == AF_INET6 ? AF_INET6 : AF_UNSPEC;
}

sockaddr_storage toNative(const orv_sockaddr_union* address, std::uint32_t size) noexcept
{
    sockaddr_storage native{};
    std::memcpy(&native, address, std::min<std::size_t>(size, sizeof native));
    if (native.ss_family == FAMILY_IPV6) native.ss_family = AF_INET6;
    return native;
}

orv_sockaddr_union fromNative(const sockaddr_storage& native) noexcept
{
    static_assert(sizeof native == sizeof(orv_sockaddr_union));
    orv_sockaddr_union address;
    std::memcpy(&address, &native, sizeof address);
    address.family = familyOfFace(address.family);
    return address;
}

bool addressFromNative(const sockaddr* native, std::uint32_t size, orv_sockaddr_union* out) noexcept
{
    *out = {};
    if (native == nullptr || size < sizeof native->sa_family) return false;
    const std::uint32_t needed = sizeOfNative(native->sa_family);
    if (needed == 0 || size < needed) return false;
    std::memcpy(out, native, needed);
    out->family = familyOfFace(out->family);
    return true;
}

std::uint32_t addressToNative(const orv_sockaddr_union& address, sockaddr* native,
                              std::uint32_t room) noexcept
{
    const std::uint32_t size = sizeOfNative(address.family);
    if (native == nullptr || size == 0 || room < size) return 0;
    const sockaddr_storage copy = toNative(&address, size);
    std::memcpy(native, &copy, size);
    return size;
}

SocketError numericAddress(const orv_sockaddr_union& address, char* text,
                           std::uint32_t room) noexcept
{
    sockaddr_storage native{};
    const std::uint32_t size =
        addressToNative(address, reinterpret_cast<sockaddr*>(&native), sizeof native);
    if (size == 0) return resolverErrorOf(EAI_FAMILY);

    // The system would name the scope after a network device, which another machine cannot read.
    std::uint32_t scope = 0;
    if (native.ss_family == AF_INET6) {
        scope = std::exchange(reinterpret_cast<sockaddr_in6*>(&native)->sin6_scope_id, 0);
    }
    char service[32];
    const int result = getnameinfo(reinterpret_cast<sockaddr*>(&native), size, text, room, service,
                                   sizeof service, NI_NUMERICHOST | NI_NUMERICSERV);
    if (result != 0 || scope == 0) return resolverErrorOf(result);
    return appendScope(scope, text, room);
}

SocketError portOfService(const char* service, std::uint16_t* port) noexcept
{
    char buffer[1024];
    servent entry{};
    servent* found = nullptr;
    static_cast<void>(getservbyname_r(service, "tcp", &entry, buffer, sizeof buffer, &found));
    *port = found == nullptr ? std::uint16_t{0} : ntohs(static_cast<std::uint16_t>(found->s_port));
    return remember(found == nullptr ? noData : 0);
}

SocketError resolve(const char* host, const char* service, const AddressHints& hints,
                    addrinfo** out) noexcept
{
    addrinfo wanted{};
    wanted.ai_flags = hints.flags;
    wanted.ai_family = hints.family;
    wanted.ai_socktype = hints.type;
    wanted.ai_protocol = hints.protocol;
    return static_cast<SocketError>(ORVgetaddrinfo(host, service, &wanted, out));
}

AddressEntry readAddressEntry(const addrinfo* entry) noexcept
{
    AddressEntry read;
    read.family = familyOfFace(static_cast<std::uint16_t>(entry->ai_family));
    read.canonicalName = entry->ai_canonname;
    read.next = entry->ai_next;
    if (entry->ai_addr == nullptr) return read;
    read.size = std::min<std::uint32_t>(entry->ai_addrlen, sizeof read.address);
    std::memcpy(&read.address, entry->ai_addr, read.size);
    read.address.family = familyOfFace(read.address.family);
    return read;
}

} // namespace orvcore
