#pragma once

#include "orv/Reference.h"
#include "orv/net/TcpSocketStreams.h"
#include "orv/sync/Mutex.h"

#include <atomic>
#include <cstdint>

namespace orv {
class String;
} // namespace orv

namespace orv::net {

/// Owns a native socket for a TcpSocket and its streams.
class ORV_API TcpSocketHandle : public Object {
public:
    explicit TcpSocketHandle(std::uint64_t socket) noexcept : m_socket(socket) {}
    TcpSocketHandle(const TcpSocketHandle&) = delete;
    TcpSocketHandle& operator=(const TcpSocketHandle&) = delete;
    ~TcpSocketHandle() noexcept(false) override;

    /// The native socket.
    std::uint64_t getSocket() const noexcept { return m_socket; }

private:
    std::uint64_t m_socket;
};

/// A connection as a pair of byte streams, failing by exceptions.
///
///     const auto socket = makeReference<TcpSocket>(u"10.1.2.3", 7);
///     socket->setSoTimeout(5000);
///     socket->getOutputStream()->write("ping", 4);
///     const std::int32_t count = socket->getInputStream()->read(buffer, 4);
///
/// The connection closes when the socket and its streams have gone; there is no close(). It may be
/// on the heap or on the stack.
///
/// Threads: any may ask for the streams; each stream is for one thread at a time.
class ORV_API TcpSocket : public Object {
public:
    /// Connects to the first address, IPv4 or IPv6, that the name service gives for `host`. Throws
    /// Exception "Unknown host: ..." or "TcpSocket::TcpSocket ..." and leaves nothing open.
    TcpSocket(const String& host, std::uint16_t port);
    TcpSocket(const TcpSocket&) = delete;
    TcpSocket& operator=(const TcpSocket&) = delete;
    ~TcpSocket() noexcept(false) override;

    /// The stream to read from, a TcpSocketInputStream; always the same.
    Reference<io::InputStream> getInputStream();

    /// The stream to write to, a TcpSocketOutputStream; always the same.
    Reference<io::OutputStream> getOutputStream();

    /// Sets the longest wait of a read in milliseconds; 0 and less wait for ever.
    void setSoTimeout(std::int32_t limit);

    /// "orv.net.tcp.socket=" and the native socket in decimal, for a child process, which inherits
    /// the socket from here on. What the child does with it lies with the host.
    String getInheritanceId();

protected:
    /// Takes over a connected native socket, which is closed also when this throws.
    explicit TcpSocket(std::uint64_t socket);

    /// Starts the sockets of the process once. Throws Exception "TcpSocket::init ...".
    static void init();
    /// Ends them. Throws Exception "TcpSocket::uninit ...".
    static void uninit();
    /// Whether init() has been called since the last uninit().
    static bool getInitialized() noexcept { return s_bInitialized; }
    /// Closes a native socket; a failure is dropped.
    static void close(std::uint64_t socket) noexcept;

private:
    friend class TcpServerSocket;
    friend class TcpSocketHandle;

    explicit TcpSocket(Reference<TcpSocketHandle> handle);

    static Reference<TcpSocketHandle> makeHandle(std::uint64_t socket);
    TcpSocketInputStream& inputStream();

    Reference<TcpSocketInputStream> m_inputStream;
    Reference<TcpSocketOutputStream> m_outputStream;
    Reference<TcpSocketHandle> m_handle;
    sync::Mutex m_lock;

    static std::atomic<bool> s_bInitialized;
};

} // namespace orv::net
