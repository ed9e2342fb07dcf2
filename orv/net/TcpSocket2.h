#pragma once

#include "orv/CoreAllocated.h"
#include "orv/net/SocketErrors.h"
#include "platform/sockets.h"

#include <atomic>
#include <cstdint>

namespace orv::net {

/// The root of the sockets that report by results and never throw.
///
/// TcpClientSocket2 connects, TcpServerSocket2 listens and gives out a TcpWorkerSocket2 for each
/// connection. All are made by a static operation of their class and ended by destroyTcpSocket2():
///
///     TcpClientSocket2* client = nullptr;
///     ENUM_ORV_E_SOCKET result = TcpClientSocket2::createTcpClientSocket2(2, 1, 6, &client);
///     if (result == 0) result = client->connect(&address, sizeof address.ipv4);
///     ...
///     TcpSocket2::destroyTcpSocket2(&client);
///
/// Address families are 2 for IPv4 and 23 for IPv6; error numbers are those of SocketErrors.h. The
/// sockets of a process start at the first use of any class here, under the global lock.
///
/// Threads: one for each direction of a connection, one or more in accept(). Another thread may
/// call close() meanwhile: the threads inside are woken and get ORV_E_SOCKET_ENOTSOCK. A shutdown
/// operation wakes them too: recv() then gives what has come and the end of the stream, accept()
/// fails with ORV_E_SOCKET_EINVAL. Destroy an object when they have left.
class ORV_API TcpSocket2 : public CoreAllocated {
public:
    /// Starts the sockets of the process and stores the result; `error` may be null.
    explicit TcpSocket2(ENUM_ORV_E_SOCKET* error);
    TcpSocket2(const TcpSocket2&) = delete;
    TcpSocket2& operator=(const TcpSocket2&) = delete;
    virtual ~TcpSocket2();

    /// The native socket, 0 for none; of a server the first it listens on.
    virtual std::uint64_t getId() = 0;

    /// Ends receiving, once; what comes later does nothing. A connection that is gone is no error.
    virtual ENUM_ORV_E_SOCKET shutdownInput() = 0;
    /// Ends sending: the peer reads the end of the stream.
    virtual ENUM_ORV_E_SOCKET shutdownOutput() = 0;
    /// Ends both.
    virtual ENUM_ORV_E_SOCKET shutdownBoth() = 0;
    /// Closes, once; what comes later does nothing.
    virtual ENUM_ORV_E_SOCKET close() = 0;

    /// Whether receiving was ended: 1 or 0.
    virtual std::int16_t getShutdownIn();
    /// Whether sending was ended: 1 or 0.
    virtual std::int16_t getShutdownOut();
    /// Whether the socket was closed: 1 or 0.
    virtual std::int16_t getClosed();
    /// Notes the end of receiving; there is no way back. The socket itself is not touched.
    virtual void setShutdownIn();
    /// The same for sending.
    virtual void setShutdownOut();
    /// The same for the closing.
    virtual void setClosed();

    /// Starts the sockets of the process; a start that has been made is not repeated.
    static ENUM_ORV_E_SOCKET init();

    /// Ends the sockets of the process, however often they were started. The library calls it when
    /// it goes down.
    static ENUM_ORV_E_SOCKET uninit();

    /// The highest version of the socket interface, 2.2; both pointers are required.
    static ENUM_ORV_E_SOCKET getVersion(std::int32_t* major, std::int32_t* minor);

    /// Asks the name service for `host` and copies the address at `index` of its answer, with
    /// `port`, to `*out`; ORV_E_SOCKET_EADDRNOTAVAIL past the last one. `hints` may be null. A port
    /// of 0 and null pointers are ORV_E_SOCKET_EINVAL.
    static ENUM_ORV_E_SOCKET getAddrInfo(const char* host, std::uint16_t port, addrinfo* hints,
                                         std::uint32_t index, orv_sockaddr_union* out);

    /// Ends sending, closes and deletes the socket, and clears the pointer; the results of the
    /// first two are dropped. A null socket is fine.
    static ENUM_ORV_E_SOCKET destroyTcpSocket2(TcpSocket2** socket);

    /// The same for a pointer to a class below.
    template <class Socket>
    static ENUM_ORV_E_SOCKET destroyTcpSocket2(Socket** socket)
    {
        if (socket == nullptr) return ORV_E_SOCKET_EINVAL;
        TcpSocket2* base = *socket;
        *socket = nullptr;
        return destroyTcpSocket2(&base);
    }

protected:
    /// Nothing is to be shut down.
    static constexpr std::int32_t NO_WAY = -1;

    /// Notes the end of receiving and tells how to shut down: 0 receiving, 2 both, or NO_WAY.
    std::int32_t takeWayOfInput();
    /// The same for sending: 1 sending, 2 both, or NO_WAY.
    std::int32_t takeWayOfOutput();
    /// The same for what is left of both.
    std::int32_t takeWayOfBoth();

private:
    std::atomic<std::int16_t> m_shutdownIn{0};
    std::atomic<std::int16_t> m_shutdownOut{0};
    std::atomic<std::int16_t> m_closed{0};

    static std::atomic<bool> s_bInitialized;
    static std::atomic<std::int32_t> s_major;
    static std::atomic<std::int32_t> s_minor;
};

} // namespace orv::net
