#pragma once

#include "orv/Reference.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"

#include <atomic>
#include <cstdint>

namespace orv::net {

/// Reads from a TcpSocket, whose connection it keeps open.
class ORV_API TcpSocketInputStream : public io::InputStream {
public:
    /// Reads from `socket`, which lives as long as `handle`.
    TcpSocketInputStream(Reference<Object> handle, std::uint64_t socket);
    ~TcpSocketInputStream() noexcept(false) override;

    using InputStream::read;
    /// Reads what has come, waiting for the first byte. -1 when the peer has closed.
    ///
    /// Throws io::TimeoutException "socket timeout" after the time limit, and then can be called
    /// again; io::IoException with the description of the failure.
    std::int32_t read(signed char* buffer, std::int32_t n) override;

    /// The longest wait of a read in milliseconds; 0 and less wait for ever.
    void setTimeout(std::int32_t limit) noexcept { m_limit = limit; }

private:
    void awaitBytes() const;

    Reference<Object> m_handle;
    std::uint64_t m_socket;
    std::atomic<std::int32_t> m_limit{0};
};

/// Writes to a TcpSocket, whose connection it keeps open.
class ORV_API TcpSocketOutputStream : public io::OutputStream {
public:
    /// Writes to `socket`, which lives as long as `handle`.
    TcpSocketOutputStream(Reference<Object> handle, std::uint64_t socket);
    ~TcpSocketOutputStream() noexcept(false) override;

    using OutputStream::write;
    /// Sends `n` bytes in one call of the system, waiting for room. Throws io::IoException with the
    /// description of the failure; how much went out before is not told.
    void write(const signed char* bytes, std::int32_t n) override;

private:
    Reference<Object> m_handle;
    std::uint64_t m_socket;
};

} // namespace orv::net
