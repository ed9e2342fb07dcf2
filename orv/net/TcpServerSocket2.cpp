#include "orv/net/TcpServerSocket2.h"

#include "orv/net/internal/SocketResult.h"

#include <algorithm>
#include <chrono>

namespace orv::net {

using internal::resultOf;
using internal::takePendingError;
using internal::withoutException;
using orvcore::NO_SOCKET;
using orvcore::SocketError;

namespace {

/// More sockets than this cannot be waited for at once.
constexpr std::uint64_t SELECT_LIMIT = 64;

/// What asks for the longest queue of connections.
constexpr std::int32_t GREATEST_BACKLOG = 0x7FFFFFFF;

/// Closing a listening socket whose connections are gone is no failure.
bool isHarmless(ENUM_ORV_E_SOCKET result) noexcept
{
    return result == ORV_E_SOCKET_OK || result == ORV_E_SOCKET_ENOTCONN ||
           result == ORV_E_SOCKET_ECONNRESET;
}

/// The listening sockets that one call of accept() waits for.
class Listeners {
public:
    void add(const std::atomic<std::uint64_t>& socket) noexcept
    {
        m_holds[m_count].take(socket);
        if (!m_holds[m_count].isOpen()) return;
        m_waits[m_count] = {m_holds[m_count].socket(),
                            orvcore::READY_TO_READ | orvcore::READY_EXCEPT, 0};
        ++m_count;
    }

    bool isEmpty() const noexcept { return m_count == 0; }

    SocketError wait(std::int64_t microseconds, std::int32_t* ready) noexcept
    {
        return orvcore::waitForSockets(m_waits, m_count, microseconds, ready);
    }

    /// The first socket that is ready in this way, NO_SOCKET for none.
    std::uint64_t firstReady(std::uint8_t way) const noexcept
    {
        for (std::uint32_t i = 0; i < m_count; ++i) {
            if ((m_waits[i].ready & way) != 0) return m_waits[i].socket;
        }
        return NO_SOCKET;
    }

private:
    std::uint32_t m_count = 0;
    orvcore::SocketWait m_waits[TcpServerSocket2::MOST_ADDRESSES];
    orvcore::SocketHold m_holds[TcpServerSocket2::MOST_ADDRESSES];
};

/// The time that a wait of some milliseconds has left.
class TimeLeft {
public:
    explicit TimeLeft(std::int32_t limit) noexcept : m_isLimited(limit >= 0)
    {
        if (m_isLimited) m_end = Clock::now() + std::chrono::milliseconds(limit);
    }

    std::int64_t inMicroseconds() const noexcept
    {
        if (!m_isLimited) return orvcore::FOR_EVER;
        const auto left = std::chrono::ceil<std::chrono::microseconds>(m_end - Clock::now());
        return std::max<std::int64_t>(0, left.count());
    }

private:
    using Clock = std::chrono::steady_clock;

    bool m_isLimited;
    Clock::time_point m_end;
};

} // namespace

TcpServerSocket2::TcpServerSocket2(std::int32_t family, std::int32_t type, std::int32_t protocol,
                                   ENUM_ORV_E_SOCKET* error)
    : TcpSocket2(error), m_family(family), m_type(type), m_protocol(protocol)
{
    TcpServerSocket2::socketListClear();
}

TcpServerSocket2::~TcpServerSocket2()
{
    // Those too that were bound after close().
    static_cast<void>(closeSockets());
}

ENUM_ORV_E_SOCKET TcpServerSocket2::createTcpServerSocket2(std::int32_t family, std::int32_t type,
                                                           std::int32_t protocol,
                                                           TcpServerSocket2** out)
{
    if (out == nullptr) return ORV_E_SOCKET_EINVAL;
    *out = nullptr;
    return withoutException(ORV_E_SOCKET_EFAULT, [&] {
        ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
        std::unique_ptr<TcpServerSocket2> made(
            new TcpServerSocket2(family, type, protocol, &result));
        if (result == ORV_E_SOCKET_OK) *out = made.release();
        return result;
    });
}

std::uint64_t TcpServerSocket2::getId()
{
    const std::uint64_t first = m_sockets[0];
    return first == NO_SOCKET ? 0 : first;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::shutdownInput()
{
    return shutDownAll(takeWayOfInput());
}

ENUM_ORV_E_SOCKET TcpServerSocket2::shutdownOutput()
{
    return shutDownAll(takeWayOfOutput());
}

ENUM_ORV_E_SOCKET TcpServerSocket2::shutdownBoth()
{
    return shutDownAll(takeWayOfBoth());
}

ENUM_ORV_E_SOCKET TcpServerSocket2::shutDownAll(std::int32_t way)
{
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    if (way == NO_WAY) return result;
    const std::uint64_t count = m_socketCount;
    for (std::uint64_t i = 0; i < count; ++i) {
        const orvcore::SocketHold hold(m_sockets[i]);
        if (!hold.isOpen()) continue;
        const ENUM_ORV_E_SOCKET ended = resultOf(orvcore::shutDownSocket(hold.socket(), way));
        if (!isHarmless(ended)) result = ended;
    }
    return result;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::close()
{
    if (getClosed() != 0) return ORV_E_SOCKET_OK;
    setClosed();
    return closeSockets();
}

ENUM_ORV_E_SOCKET TcpServerSocket2::closeSockets()
{
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    const std::uint64_t count = m_socketCount.exchange(0);
    for (std::uint64_t i = 0; i < count; ++i) {
        const auto error = orvcore::closeSocket(m_sockets[i].exchange(NO_SOCKET));
        if (!isHarmless(resultOf(error))) result = resultOf(error);
    }
    return result;
}

void TcpServerSocket2::socketListClear()
{
    m_socketCount = 0;
    for (std::atomic<std::uint64_t>& socket : m_sockets) socket = NO_SOCKET;
}

bool TcpServerSocket2::keep(std::uint64_t socket) noexcept
{
    const std::uint64_t count = m_socketCount;
    if (count >= MOST_ADDRESSES) return false;
    m_sockets[count] = socket;
    m_socketCount = count + 1;
    return true;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::bind()
{
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    for (std::uint64_t i = 0; i < m_bindList.count; ++i) {
        const Address& address = m_bindList.entries[i];
        if (!address || address->getAddress() == nullptr) return ORV_E_SOCKET_EFAULT;
        orv_sockaddr_union storage{};
        std::uint64_t size = sizeof storage;
        address->getAddress()->getStorageBinary(&storage, &size);

        orvcore::NativeSocket socket = NO_SOCKET;
        const auto opening = orvcore::openSocket(storage.family, m_type, m_protocol, &socket);
        if (opening != 0) {
            result = resultOf(opening);
            if (result == ORV_E_SOCKET_EAFNOSUPPORT) continue;
            break;
        }
        const auto binding =
            orvcore::bindListener(socket, &storage, static_cast<std::uint32_t>(size));
        if (binding == 0 && keep(socket)) continue;
        result = resultOf(binding);
        const auto closing = orvcore::closeSocket(socket);
        if (closing != 0) return resultOf(closing);
    }
    return m_socketCount > 0 ? ORV_E_SOCKET_OK : result;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::listen(std::int32_t backlog)
{
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    const std::uint64_t count = m_socketCount;
    for (std::uint64_t i = 0; i < count; ++i) {
        const auto error =
            orvcore::listenOnSocket(m_sockets[i], backlog < 1 ? GREATEST_BACKLOG : backlog);
        if (error != 0) result = resultOf(error);
    }
    return result;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::saveBoundAddresses()
{
    if (m_saved) {
        m_boundList.clear();
        m_boundList.add(std::move(m_saved));
        return ORV_E_SOCKET_OK;
    }
    const std::uint64_t count = m_socketCount;
    for (std::uint64_t i = 0; i < count && !m_boundList.isFull(); ++i) {
        orv_sockaddr_union storage{};
        std::int32_t size = sizeof storage;
        if (orvcore::nameOfSocket(m_sockets[i], &storage, &size) != 0) continue;
        static_cast<void>(withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
            ENUM_ORV_E_SOCKET made = ORV_E_SOCKET_OK;
            auto address = std::make_unique<InetSocketAddress>(&storage, &made);
            if (made == ORV_E_SOCKET_OK) m_boundList.add(std::move(address));
            return made;
        }));
    }
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::accept(TcpWorkerSocket2** out)
{
    return accept_guts(out, nullptr, FOR_EVER);
}

ENUM_ORV_E_SOCKET TcpServerSocket2::accept(TcpWorkerSocket2** out, std::int32_t limit)
{
    return accept_guts(out, nullptr, limit);
}

ENUM_ORV_E_SOCKET TcpServerSocket2::accept(std::uint64_t* socket)
{
    return accept_guts(nullptr, socket, FOR_EVER);
}

ENUM_ORV_E_SOCKET TcpServerSocket2::accept_guts(TcpWorkerSocket2** worker, std::uint64_t* socket,
                                                std::int32_t limit)
{
    const std::uint64_t count = m_socketCount;
    if (count == 0) return ORV_E_SOCKET_ENOTSOCK;
    if (count >= SELECT_LIMIT) return ORV_E_SOCKET_EMFILE;
    if ((worker == nullptr) == (socket == nullptr)) return ORV_E_SOCKET_EINVAL;
    if (worker != nullptr) *worker = nullptr;

    std::uint64_t accepted = NO_SOCKET;
    orv_sockaddr_union peer{};
    const ENUM_ORV_E_SOCKET result = awaitConnection(&accepted, &peer, limit);
    if (result != ORV_E_SOCKET_OK) return result;
    if (socket != nullptr) {
        *socket = accepted;
        return ORV_E_SOCKET_OK;
    }
    static_cast<void>(withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        ENUM_ORV_E_SOCKET made = ORV_E_SOCKET_OK;
        *worker = new TcpWorkerSocket2(accepted, &peer, &made);
        return made;
    }));
    if (*worker == nullptr) orvcore::closeSocket(accepted);
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET TcpServerSocket2::awaitConnection(std::uint64_t* socket, orv_sockaddr_union* peer,
                                                    std::int32_t limit)
{
    const TimeLeft left(limit);
    Listeners listeners;
    const std::uint64_t count = m_socketCount;
    for (std::uint64_t i = 0; i < count; ++i) listeners.add(m_sockets[i]);
    // Where another thread takes the connection first there is nothing to take, and the wait goes
    // on.
    for (;;) {
        if (getClosed() != 0 || listeners.isEmpty()) return ORV_E_SOCKET_ENOTSOCK;
        std::int32_t ready = 0;
        const SocketError waited = listeners.wait(left.inMicroseconds(), &ready);
        if (getClosed() != 0) return ORV_E_SOCKET_ENOTSOCK;
        if (waited != 0) return resultOf(waited);
        if (ready == 0) return limit < 0 ? ORV_E_SOCKET_EINTR : ORV_E_SOCKET_ETIMEDOUT;

        if (const auto failing = listeners.firstReady(orvcore::READY_EXCEPT);
            failing != NO_SOCKET) {
            const SocketError pending = takePendingError(failing);
            if (pending != 0) return resultOf(pending);
        }
        const std::uint64_t listener = listeners.firstReady(orvcore::READY_TO_READ);
        if (listener == NO_SOCKET) continue;
        const SocketError error = orvcore::acceptSocket(listener, socket, peer);
        if (error != orvcore::SOCKET_WOULD_BLOCK) return resultOf(error);
    }
}

} // namespace orv::net
