#include "orv/net/TcpSocketStreams.h"

#include "orv/io/IoExceptions.h"
#include "orv/net/internal/SocketResult.h"

namespace orv::net {

namespace {

constexpr std::int64_t MICROSECONDS_IN_MILLISECOND = 1000;

[[noreturn]] void throwFailure(const char16_t* operation, orvcore::SocketError error)
{
    String text(operation);
    text.append(ORVGetDescriptionFromORV_E_SOCKET(internal::resultOf(error)));
    throw io::IoException(text);
}

} // namespace

TcpSocketInputStream::TcpSocketInputStream(Reference<Object> handle, std::uint64_t socket)
    : m_handle(std::move(handle)), m_socket(socket)
{
}

TcpSocketInputStream::~TcpSocketInputStream() noexcept(false) = default;

void TcpSocketInputStream::awaitBytes() const
{
    const std::int64_t limit = m_limit;
    if (limit <= 0) return;
    orvcore::SocketWait wait{m_socket, orvcore::READY_TO_READ, 0};
    std::int32_t ready = 0;
    const auto error =
        orvcore::waitForSockets(&wait, 1, limit * MICROSECONDS_IN_MILLISECOND, &ready);
    // A failure of the wait is one of the socket, and told by receiving.
    if (error == 0 && ready == 0) throw io::TimeoutException(u"socket timeout");
}

std::int32_t TcpSocketInputStream::read(signed char* buffer, std::int32_t n)
{
    constexpr const char16_t* operation = u"TcpSocketInputStream::read ";
    if (n < 0) throwFailure(operation, orvcore::SOCKET_INVALID_ARGUMENT);
    awaitBytes();
    std::int64_t done = 0;
    const auto error =
        orvcore::receiveBytes(m_socket, buffer, static_cast<std::uint32_t>(n), 0, &done);
    if (error != 0) throwFailure(operation, error);
    return done == 0 ? -1 : static_cast<std::int32_t>(done);
}

TcpSocketOutputStream::TcpSocketOutputStream(Reference<Object> handle, std::uint64_t socket)
    : m_handle(std::move(handle)), m_socket(socket)
{
}

TcpSocketOutputStream::~TcpSocketOutputStream() noexcept(false) = default;

void TcpSocketOutputStream::write(const signed char* bytes, std::int32_t n)
{
    constexpr const char16_t* operation = u"TcpSocketOutputStream::write ";
    if (n < 0) throwFailure(operation, orvcore::SOCKET_INVALID_ARGUMENT);
    std::int64_t done = 0;
    const auto error = orvcore::sendBytes(m_socket, bytes, static_cast<std::uint32_t>(n), 0, &done);
    if (error != 0) throwFailure(operation, error);
}

} // namespace orv::net
