#pragma once

#include "orv/net/InetSocketAddress.h"
#include "orv/net/TcpSocket2.h"

#include <memory>

namespace orv::net {

/// A connected socket.
class ORV_API TcpWorkerSocket2 : public TcpSocket2 {
public:
    /// Takes over a native socket; it is closed with this object at the latest, also when `*error`
    /// receives a failure.
    TcpWorkerSocket2(std::uint64_t socket, ENUM_ORV_E_SOCKET* error);
    /// The same with the address of the peer, which is copied.
    TcpWorkerSocket2(std::uint64_t socket, const orv_sockaddr_union* remote,
                     ENUM_ORV_E_SOCKET* error);
    /// Ends sending and closes, unless that was done.
    ~TcpWorkerSocket2() override;

    std::uint64_t getId() override;
    ENUM_ORV_E_SOCKET shutdownInput() override;
    ENUM_ORV_E_SOCKET shutdownOutput() override;
    ENUM_ORV_E_SOCKET shutdownBoth() override;
    ENUM_ORV_E_SOCKET close() override;

    /// Reads an option. Level 0xFFFF has 4 reuse address, 8 keep alive, 0x80 linger, 0x1001 and
    /// 0x1002 buffer sizes for sending and receiving, 0x1005 and 0x1006 time limits for sending and
    /// receiving in milliseconds, 0x1007 pending error, 0x1008 type and their like; level 6 has 1
    /// no delay. Values are 32-bit numbers, linger two 16-bit ones. `*length` holds the room and
    /// receives the size. Any other option is ORV_E_SOCKET_ENOPROTOOPT.
    virtual ENUM_ORV_E_SOCKET getsockopt(std::int32_t level, std::int32_t option, char* value,
                                         std::int32_t* length);

    /// Receives what is there, at most `size` bytes, waiting for the first of them. `*done` is the
    /// number of bytes; it is 0 with result 0 when the peer has closed in order. Of `size` the low
    /// 32 bits count, and of these at most 2^31 - 1. `flags` are the system's own.
    virtual ENUM_ORV_E_SOCKET recv(char* buffer, std::uint64_t size, std::int32_t flags,
                                   std::int64_t* done);

    /// Sends all `size` bytes; `*done` is smaller only where a time limit or a failure cut the rest
    /// off, and -1 where nothing went out. Sizes and flags as for recv().
    virtual ENUM_ORV_E_SOCKET send(char* buffer, std::uint64_t size, std::int32_t flags,
                                   std::int64_t* done);

    /// Sets an option, as getsockopt() knows them.
    virtual ENUM_ORV_E_SOCKET setsockopt(std::int32_t level, std::int32_t option, const char* value,
                                         std::int32_t length);

    /// Waits until a socket of one of three arrays is ready, or `timeout` has gone; a null timeout
    /// waits for ever.
    ///
    /// `read` is for bytes, the end of the stream or a failure; `write` for room to send; `except`
    /// for urgent bytes or a pending error. Each count holds the length of its array, 63 at most,
    /// and receives how many of its sockets are ready. The ready ones keep their places, the places
    /// of the others become null. `*total` is the number of all, a socket that an array holds twice
    /// being counted once; with 0 after a time-out counts are 0 and arrays untouched.
    ///
    /// A pending error of a socket in `except` is taken off it and is the result. A null or closed
    /// socket is ORV_E_SOCKET_ENOTSOCK, a count of 64 ORV_E_SOCKET_EMFILE, no socket and no timeout
    /// ORV_E_SOCKET_EINVAL.
    static ENUM_ORV_E_SOCKET select(TcpWorkerSocket2** read, std::uint32_t* readCount,
                                    TcpWorkerSocket2** write, std::uint32_t* writeCount,
                                    TcpWorkerSocket2** except, std::uint32_t* exceptCount,
                                    timeval* timeout, std::int32_t* total);

    /// The peer of an accepted connection, null where it is not known.
    const InetSocketAddress* getRemoteAddress() const noexcept { return m_remote.get(); }

protected:
    std::atomic<std::uint64_t> m_socket; ///< all ones after close()

private:
    friend class SocketSelection;

    std::unique_ptr<InetSocketAddress> m_remote;
};

} // namespace orv::net
