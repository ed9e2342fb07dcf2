#include "orv/net/TcpWorkerSocket2.h"

#include "orv/net/internal/SocketResult.h"

namespace orv::net {

using internal::resultOf;

namespace {

/// Counts of arrays end below this.
constexpr std::uint32_t COUNT_LIMIT = 64;

/// One of the three arrays, with the count that its caller sees.
struct SocketArray {
    TcpWorkerSocket2** sockets;
    std::uint32_t length;
    std::uint32_t* count;
    std::uint8_t wanted;
};

} // namespace

/// The sockets of one select(), each of them once.
class SocketSelection {
public:
    /// Adds the sockets of `array`; ORV_E_SOCKET_ENOTSOCK for one that is none.
    ENUM_ORV_E_SOCKET add(const SocketArray& array)
    {
        for (std::uint32_t i = 0; i < array.length; ++i) {
            TcpWorkerSocket2* const socket = array.sockets[i];
            const std::uint64_t id = idOf(socket);
            if (id == 0) return ORV_E_SOCKET_ENOTSOCK;
            std::uint8_t& place = placeOf(id);
            if (place == 0) {
                m_holds[m_count].take(socket->m_socket);
                if (m_holds[m_count].socket() != id) return ORV_E_SOCKET_ENOTSOCK;
                m_waits[m_count] = {id, 0, 0};
                place = static_cast<std::uint8_t>(++m_count);
            }
            m_waits[place - 1].wanted |= array.wanted;
        }
        return ORV_E_SOCKET_OK;
    }

    bool isEmpty() const noexcept { return m_count == 0; }

    orvcore::SocketError wait(std::int64_t limit, std::int32_t* ready) noexcept
    {
        return orvcore::waitForSockets(m_waits, m_count, limit, ready);
    }

    /// Counts the ready sockets of `array` and puts null in the place of the others. The pending
    /// error of one in an exceptional state goes to `*result`.
    ENUM_ORV_E_SOCKET report(const SocketArray& array, ENUM_ORV_E_SOCKET* result)
    {
        for (std::uint32_t i = 0; i < array.length; ++i) {
            // One array given twice may have lost its sockets by now.
            const std::uint64_t id = idOf(array.sockets[i]);
            if (id == 0) return ORV_E_SOCKET_ENOTSOCK;
            const std::uint8_t place = placeOf(id);
            if (place == 0 || (m_waits[place - 1].ready & array.wanted) == 0) {
                array.sockets[i] = nullptr;
                continue;
            }
            ++*array.count;
            if (array.wanted == orvcore::READY_EXCEPT) {
                *result = resultOf(internal::takePendingError(id));
            }
        }
        return ORV_E_SOCKET_OK;
    }

private:
    static std::uint64_t idOf(TcpWorkerSocket2* socket)
    {
        return socket == nullptr ? 0 : socket->getId();
    }

    /// Where the place in m_waits of a socket is noted, plus 1; 0 for a new one. The table has
    /// room for more sockets than there can be, so a free place is always found.
    std::uint8_t& placeOf(std::uint64_t id) noexcept
    {
        std::uint8_t slot = static_cast<std::uint8_t>(id);
        while (m_places[slot] != 0 && m_waits[m_places[slot] - 1].socket != id) ++slot;
        return m_places[slot];
    }

    std::uint32_t m_count = 0;
    std::uint8_t m_places[256] = {};
    orvcore::SocketWait m_waits[orvcore::MOST_WAITS];
    orvcore::SocketHold m_holds[orvcore::MOST_WAITS];
};

ENUM_ORV_E_SOCKET TcpWorkerSocket2::select(TcpWorkerSocket2** read, std::uint32_t* readCount,
                                           TcpWorkerSocket2** write, std::uint32_t* writeCount,
                                           TcpWorkerSocket2** except, std::uint32_t* exceptCount,
                                           timeval* timeout, std::int32_t* total)
{
    if (readCount == nullptr || writeCount == nullptr || exceptCount == nullptr ||
        total == nullptr) {
        return ORV_E_SOCKET_EINVAL;
    }
    const ENUM_ORV_E_SOCKET started = init();
    if (started != ORV_E_SOCKET_OK) return started;

    SocketArray arrays[] = {{read, *readCount, readCount, orvcore::READY_TO_READ},
                            {write, *writeCount, writeCount, orvcore::READY_TO_WRITE},
                            {except, *exceptCount, exceptCount, orvcore::READY_EXCEPT}};
    for (const SocketArray& array : arrays) *array.count = 0;
    *total = 0;
    SocketSelection selection;
    for (SocketArray& array : arrays) {
        if (array.length >= COUNT_LIMIT) return ORV_E_SOCKET_EMFILE;
        if (array.sockets == nullptr) array.length = 0;
    }
    for (const SocketArray& array : arrays) {
        const ENUM_ORV_E_SOCKET added = selection.add(array);
        if (added != ORV_E_SOCKET_OK) return added;
    }

    std::int64_t limit = 0;
    if (const auto error = orvcore::microsecondsOf(timeout, &limit); error != 0) {
        return resultOf(error);
    }
    if (selection.isEmpty() && limit == orvcore::FOR_EVER) return ORV_E_SOCKET_EINVAL;
    if (const auto error = selection.wait(limit, total); error != 0) return resultOf(error);
    if (*total < 1) return ORV_E_SOCKET_OK;

    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    for (const SocketArray& array : arrays) {
        const ENUM_ORV_E_SOCKET reported = selection.report(array, &result);
        if (reported != ORV_E_SOCKET_OK) return reported;
    }
    return result;
}

} // namespace orv::net
