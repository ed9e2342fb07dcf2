#include "orv/net/TcpSocket2.h"

#include "orv/GlobalLock.h"
#include "orv/net/internal/SocketResult.h"
#include "orv/sync/Lock.h"

#include <charconv>
#include <cstring>

namespace orv::net {

using internal::resultOf;
using internal::withoutException;

constinit std::atomic<bool> TcpSocket2::s_bInitialized{false};
constinit std::atomic<std::int32_t> TcpSocket2::s_major{0};
constinit std::atomic<std::int32_t> TcpSocket2::s_minor{0};

TcpSocket2::TcpSocket2(ENUM_ORV_E_SOCKET* error)
{
    const ENUM_ORV_E_SOCKET result = init();
    if (error != nullptr) *error = result;
}

TcpSocket2::~TcpSocket2()
{
    m_shutdownIn = 1;
    m_shutdownOut = 1;
    m_closed = 1;
}

std::int16_t TcpSocket2::getShutdownIn()
{
    return m_shutdownIn;
}

std::int16_t TcpSocket2::getShutdownOut()
{
    return m_shutdownOut;
}

std::int16_t TcpSocket2::getClosed()
{
    return m_closed;
}

void TcpSocket2::setShutdownIn()
{
    m_shutdownIn = 1;
}

void TcpSocket2::setShutdownOut()
{
    m_shutdownOut = 1;
}

void TcpSocket2::setClosed()
{
    m_closed = 1;
}

std::int32_t TcpSocket2::takeWayOfInput()
{
    if (getShutdownIn() != 0) return NO_WAY;
    const std::int32_t way = getShutdownOut() != 0 ? 2 : 0;
    setShutdownIn();
    return getClosed() != 0 ? NO_WAY : way;
}

std::int32_t TcpSocket2::takeWayOfOutput()
{
    if (getShutdownOut() != 0) return NO_WAY;
    const std::int32_t way = getShutdownIn() != 0 ? 2 : 1;
    setShutdownOut();
    return getClosed() != 0 ? NO_WAY : way;
}

std::int32_t TcpSocket2::takeWayOfBoth()
{
    const bool in = getShutdownIn() != 0;
    const bool out = getShutdownOut() != 0;
    if (in && out) return NO_WAY;
    std::int32_t way = 2;
    if (in) way = 1;
    if (out) way = 0;
    setShutdownIn();
    setShutdownOut();
    return getClosed() != 0 ? NO_WAY : way;
}

ENUM_ORV_E_SOCKET TcpSocket2::init()
{
    if (s_bInitialized.load(std::memory_order_acquire)) return ORV_E_SOCKET_OK;
    return withoutException(ORV_E_SOCKET_ENOBUFS, [] {
        const sync::Lock lock(g_pGlobalLock);
        if (s_bInitialized) return ORV_E_SOCKET_OK;
        std::uint16_t version = 0;
        const ENUM_ORV_E_SOCKET result = resultOf(orvcore::startSockets(&version));
        if (result != ORV_E_SOCKET_OK) return result;
        s_major = version & 0xFF;
        s_minor = version >> 8;
        s_bInitialized = true;
        return ORV_E_SOCKET_OK;
    });
}

ENUM_ORV_E_SOCKET TcpSocket2::uninit()
{
    if (!s_bInitialized) return ORV_E_SOCKET_OK;
    return withoutException(ORV_E_SOCKET_ENOBUFS, [] {
        const sync::Lock lock(g_pGlobalLock);
        if (!s_bInitialized) return ORV_E_SOCKET_OK;
        const ENUM_ORV_E_SOCKET result = resultOf(orvcore::stopSockets());
        if (result == ORV_E_SOCKET_OK) s_bInitialized = false;
        return result;
    });
}

ENUM_ORV_E_SOCKET TcpSocket2::getVersion(std::int32_t* major, std::int32_t* minor)
{
    if (major == nullptr || minor == nullptr) return ORV_E_SOCKET_EINVAL;
    const ENUM_ORV_E_SOCKET result = init();
    *major = s_major;
    *minor = s_minor;
    return result;
}

ENUM_ORV_E_SOCKET TcpSocket2::getAddrInfo(const char* host, std::uint16_t port, addrinfo* hints,
                                          std::uint32_t index, orv_sockaddr_union* out)
{
    if (host == nullptr || port == 0 || out == nullptr) return ORV_E_SOCKET_EINVAL;
    const ENUM_ORV_E_SOCKET started = init();
    if (started != ORV_E_SOCKET_OK) return started;

    char portText[16] = {};
    std::to_chars(portText, portText + sizeof portText - 1, port);
    addrinfo* list = nullptr;
    const std::int32_t error = ORVgetaddrinfo(host, portText, hints, &list);
    if (error != 0) return ORV_E_SOCKETFromNativeEaiSocketError(static_cast<std::uint32_t>(error));

    const addrinfo* entry = list;
    while (entry != nullptr && index > 0) {
        entry = orvcore::readAddressEntry(entry).next;
        --index;
    }
    if (entry != nullptr) {
        const orvcore::AddressEntry found = orvcore::readAddressEntry(entry);
        std::memcpy(out, &found.address, found.size);
    }
    ORVfreeaddrinfo(list);
    return entry != nullptr ? ORV_E_SOCKET_OK : ORV_E_SOCKET_EADDRNOTAVAIL;
}

ENUM_ORV_E_SOCKET TcpSocket2::destroyTcpSocket2(TcpSocket2** socket)
{
    if (socket == nullptr) return ORV_E_SOCKET_EINVAL;
    if (*socket == nullptr) return ORV_E_SOCKET_OK;
    (*socket)->shutdownOutput();
    (*socket)->close();
    delete *socket;
    *socket = nullptr;
    return ORV_E_SOCKET_OK;
}

} // namespace orv::net
