#pragma once

#include "orv/net/TcpSocket.h"

namespace orv::net {

/// Listens on all IPv4 addresses of the machine and gives each connection out as a TcpSocket.
///
///     const auto server = makeReference<TcpServerSocket>(std::uint16_t{0}, 10);
///     serve(server->accept());                      // at server->getLocalPort()
///
/// Threads: any number may be in accept(). Destroy it when they have left.
class ORV_API TcpServerSocket : public Object {
public:
    /// Listens on `port`, 0 being any free one, with a queue of `backlog` connections. Throws
    /// Exception "TcpServerSocket: ..." and leaves nothing open.
    TcpServerSocket(std::uint16_t port, std::int32_t backlog);
    TcpServerSocket(const TcpServerSocket&) = delete;
    TcpServerSocket& operator=(const TcpServerSocket&) = delete;
    ~TcpServerSocket() noexcept(false) override;

    /// Waits for a connection and takes it. Throws Exception "TcpServerSocket::accept WSERROR "
    /// with the native error behind.
    Reference<TcpSocket> accept();

    /// The port it listens on, in host byte order.
    std::uint16_t getLocalPort() const;

protected:
    sync::Mutex m_lock; ///< for what derived classes share between threads

private:
    std::uint64_t m_socket;
};

} // namespace orv::net
