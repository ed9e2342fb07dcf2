#include "orv/net/TcpSocket.h"

#include "orv/Exception.h"
#include "orv/net/TcpSocket2.h"
#include "orv/net/internal/NetworkOrder.h"
#include "orv/net/internal/SocketResult.h"
#include "orv/sync/Lock.h"

namespace orv::net {

constinit std::atomic<bool> TcpSocket::s_bInitialized{false};

namespace {

[[noreturn]] void throwResultText(const char16_t* operation, ENUM_ORV_E_SOCKET result)
{
    throw Exception(String(operation).append(ORVGetDescriptionFromORV_E_SOCKET(result)));
}

/// The first address of `host` and its size.
orvcore::AddressEntry firstAddressOf(const String& host)
{
    addrinfo* list = nullptr;
    static_cast<void>(orvcore::resolve(host.getBytes(), nullptr, {}, &list));
    if (list == nullptr) throw Exception(u"Unknown host: " + host);
    orvcore::AddressEntry first = orvcore::readAddressEntry(list);
    ORVfreeaddrinfo(list);
    first.canonicalName = nullptr;
    first.next = nullptr;
    return first;
}

} // namespace

TcpSocketHandle::~TcpSocketHandle() noexcept(false)
{
    TcpSocket::close(m_socket);
}

TcpSocket::TcpSocket(const String& host, std::uint16_t port)
{
    init();
    orvcore::AddressEntry entry = firstAddressOf(host);
    entry.address.ipv4.port = internal::toNetworkOrder(port);

    std::uint64_t socket = orvcore::NO_SOCKET;
    const auto opening =
        orvcore::openSocket(entry.address.family, orvcore::TYPE_STREAM, 0, &socket);
    if (opening != 0) throwResultText(u"TcpSocket::TcpSocket ", internal::resultOf(opening));
    m_handle = makeHandle(socket);
    if (orvcore::connectSocket(socket, &entry.address, entry.size) != 0) {
        throw Exception(u"TcpSocket::TcpSocket Unable to connect to " + host);
    }
}

TcpSocket::TcpSocket(std::uint64_t socket) : TcpSocket(makeHandle(socket)) {}

TcpSocket::TcpSocket(Reference<TcpSocketHandle> handle) : m_handle(std::move(handle)) {}

TcpSocket::~TcpSocket() noexcept(false) = default;

Reference<TcpSocketHandle> TcpSocket::makeHandle(std::uint64_t socket)
{
    try {
        return makeReference<TcpSocketHandle>(socket);
    } catch (const OutOfMemoryException&) {
        close(socket);
        throw;
    }
}

TcpSocketInputStream& TcpSocket::inputStream()
{
    const sync::Lock lock(m_lock);
    if (!m_inputStream) {
        m_inputStream = makeReference<TcpSocketInputStream>(m_handle, m_handle->getSocket());
    }
    return *m_inputStream;
}

Reference<io::InputStream> TcpSocket::getInputStream()
{
    return &inputStream();
}

Reference<io::OutputStream> TcpSocket::getOutputStream()
{
    const sync::Lock lock(m_lock);
    if (!m_outputStream) {
        m_outputStream = makeReference<TcpSocketOutputStream>(m_handle, m_handle->getSocket());
    }
    return m_outputStream;
}

void TcpSocket::setSoTimeout(std::int32_t limit)
{
    inputStream().setTimeout(limit);
}

String TcpSocket::getInheritanceId()
{
    const std::uint64_t socket = m_handle->getSocket();
    orvcore::letSocketBeInherited(socket);
    return String(u"orv.net.tcp.socket=").append(String::valueOf(socket));
}

void TcpSocket::init()
{
    if (s_bInitialized) return;
    const ENUM_ORV_E_SOCKET result = TcpSocket2::init();
    if (result != ORV_E_SOCKET_OK) throwResultText(u"TcpSocket::init ", result);
    s_bInitialized = true;
}

void TcpSocket::uninit()
{
    if (!s_bInitialized) return;
    const ENUM_ORV_E_SOCKET result = TcpSocket2::uninit();
    if (result != ORV_E_SOCKET_OK) throwResultText(u"TcpSocket::uninit ", result);
    s_bInitialized = false;
}

void TcpSocket::close(std::uint64_t socket) noexcept
{
    orvcore::closeSocket(socket);
}

} // namespace orv::net
