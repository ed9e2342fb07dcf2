#include "orv/net/SocketFunctions.h"

#include "orv/net/internal/DiagnosticText.h"

using namespace orv::net;

namespace {

/// Capacities that hold the longest text of most addresses.
constexpr std::int32_t ADDRESS_CAPACITY = 40;
constexpr std::int32_t SOCKET_ADDRESS_CAPACITY = 50;

/// Calls `operation` unless one of the pointers is null.
template <class Operation, class... Pointers>
ENUM_ORV_E_SOCKET unlessNull(Operation operation, const Pointers*... pointers)
{
    const bool isComplete = (... && (pointers != nullptr));
    return isComplete ? operation() : ORV_E_SOCKET_EINVAL;
}

/// Asks `question` of an address object on the stack.
template <class Question>
ENUM_ORV_E_SOCKET askAddress(const orv_sockaddr_union* address, Question question)
{
    ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
    switch (orvcore::familyOfFace(address->family)) {
    case orvcore::FAMILY_IPV4: {
        const Inet4Address object(address, &error);
        return error != ORV_E_SOCKET_OK ? error : question(object);
    }
    case orvcore::FAMILY_IPV6: {
        const Inet6Address object(address, &error);
        return error != ORV_E_SOCKET_OK ? error : question(object);
    }
    default: return ORV_E_SOCKET_EINVAL;
    }
}

ENUM_ORV_E_SOCKET askWhether(const orv_sockaddr_union* address, std::int16_t* out,
                             std::int16_t (InetAddress::*question)() const)
{
    if (out == nullptr) return ORV_E_SOCKET_EINVAL;
    *out = 0;
    if (address == nullptr) return ORV_E_SOCKET_EINVAL;
    return askAddress(address, [&](const InetAddress& object) {
        *out = (object.*question)();
        return ORV_E_SOCKET_OK;
    });
}

} // namespace

ENUM_ORV_E_SOCKET OrvNetTcpSocketClose(TcpSocket2* socket)
{
    return unlessNull([&] { return socket->close(); }, socket);
}

std::uint64_t OrvNetTcpSocketGetId(TcpSocket2* socket)
{
    return socket == nullptr ? 0 : socket->getId();
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownInput(TcpSocket2* socket)
{
    return unlessNull([&] { return socket->shutdownInput(); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownOutput(TcpSocket2* socket)
{
    return unlessNull([&] { return socket->shutdownOutput(); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownBoth(TcpSocket2* socket)
{
    return unlessNull([&] { return socket->shutdownBoth(); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticInit()
{
    return TcpSocket2::init();
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticUninit()
{
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticDestroy(TcpSocket2** socket)
{
    return TcpSocket2::destroyTcpSocket2(socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticGetVersion(std::int32_t* major, std::int32_t* minor)
{
    return TcpSocket2::getVersion(major, minor);
}

ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticGetaddrinfo(const char* host, std::uint16_t port,
                                                   addrinfo* hints, std::uint32_t index,
                                                   orv_sockaddr_union* out)
{
    return unlessNull([&] { return TcpSocket2::getAddrInfo(host, port, hints, index, out); }, host,
                      hints, out);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketStaticCreate(std::int32_t family, std::int32_t type,
                                                    std::int32_t protocol, TcpClientSocket2** out)
{
    return TcpClientSocket2::createTcpClientSocket2(family, type, protocol, out);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketBind(TcpClientSocket2* socket,
                                            const orv_sockaddr_union* address, std::uint64_t length)
{
    return unlessNull([&] { return socket->bind(address, length); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketConnect(TcpClientSocket2* socket,
                                               const orv_sockaddr_union* address,
                                               std::uint64_t length)
{
    return unlessNull([&] { return socket->connect(address, length); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketGetLocalAddress(TcpClientSocket2* socket,
                                                       orv_sockaddr_union* address,
                                                       std::int32_t* length)
{
    return unlessNull([&] { return socket->getLocalAddress(address, length); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketSend(TcpClientSocket2* socket, char* buffer,
                                            std::uint64_t size, std::int32_t flags,
                                            std::int64_t* done)
{
    return OrvNetTcpWorkerSocketSend(socket, buffer, size, flags, done);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketRecv(TcpClientSocket2* socket, char* buffer,
                                            std::uint64_t size, std::int32_t flags,
                                            std::int64_t* done)
{
    return OrvNetTcpWorkerSocketRecv(socket, buffer, size, flags, done);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketGetsockopt(TcpClientSocket2* socket, std::int32_t level,
                                                  std::int32_t option, char* value,
                                                  std::int32_t* length)
{
    return OrvNetTcpWorkerSocketGetsockopt(socket, level, option, value, length);
}

ENUM_ORV_E_SOCKET OrvNetTcpClientSocketSetsockopt(TcpClientSocket2* socket, std::int32_t level,
                                                  std::int32_t option, const char* value,
                                                  std::int32_t length)
{
    return OrvNetTcpWorkerSocketSetsockopt(socket, level, option, value, length);
}

ENUM_ORV_E_SOCKET
OrvNetTcpClientSocketStaticSelect(TcpWorkerSocket2** read, std::uint32_t* readCount,
                                  TcpWorkerSocket2** write, std::uint32_t* writeCount,
                                  TcpWorkerSocket2** except, std::uint32_t* exceptCount,
                                  timeval* timeout, std::int32_t* total)
{
    return TcpWorkerSocket2::select(read, readCount, write, writeCount, except, exceptCount,
                                    timeout, total);
}

ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketSend(TcpWorkerSocket2* socket, char* buffer,
                                            std::uint64_t size, std::int32_t flags,
                                            std::int64_t* done)
{
    return unlessNull([&] { return socket->send(buffer, size, flags, done); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketRecv(TcpWorkerSocket2* socket, char* buffer,
                                            std::uint64_t size, std::int32_t flags,
                                            std::int64_t* done)
{
    return unlessNull([&] { return socket->recv(buffer, size, flags, done); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketGetsockopt(TcpWorkerSocket2* socket, std::int32_t level,
                                                  std::int32_t option, char* value,
                                                  std::int32_t* length)
{
    return unlessNull([&] { return socket->getsockopt(level, option, value, length); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketSetsockopt(TcpWorkerSocket2* socket, std::int32_t level,
                                                  std::int32_t option, const char* value,
                                                  std::int32_t length)
{
    return unlessNull([&] { return socket->setsockopt(level, option, value, length); }, socket);
}

ENUM_ORV_E_SOCKET
OrvNetTcpWorkerSocketStaticSelect(TcpWorkerSocket2** read, std::uint32_t* readCount,
                                  TcpWorkerSocket2** write, std::uint32_t* writeCount,
                                  TcpWorkerSocket2** except, std::uint32_t* exceptCount,
                                  timeval* timeout, std::int32_t* total)
{
    return TcpWorkerSocket2::select(read, readCount, write, writeCount, except, exceptCount,
                                    timeout, total);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketStaticCreate(std::int32_t family, std::int32_t type,
                                                    std::int32_t protocol, TcpServerSocket2** out)
{
    return TcpServerSocket2::createTcpServerSocket2(family, type, protocol, out);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddAddrAny(TcpServerSocket2* socket,
                                                          std::uint16_t port)
{
    return unlessNull([&] { return socket->bindListAddAddrAny(port); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddAddrInfo(TcpServerSocket2* socket,
                                                           const char* hosts, const char* service,
                                                           std::uint16_t port)
{
    return unlessNull([&] { return socket->bindListAddAddrInfo(hosts, service, port); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListClear(TcpServerSocket2* socket)
{
    if (socket == nullptr) return ORV_E_SOCKET_EINVAL;
    socket->bindListClear();
    return ORV_E_SOCKET_OK;
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply(TcpServerSocket2* socket)
{
    return unlessNull([&] { return socket->bindListSaveOneForNamedPipeReply(); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddressesDiagnosticStrA(TcpServerSocket2* socket,
                                                                       char* buffer,
                                                                       std::uint32_t* size)
{
    return unlessNull([&] { return socket->bindListAddressesDiagnosticStrA(buffer, size); },
                      socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA(TcpServerSocket2* socket,
                                                                        char* buffer,
                                                                        std::uint32_t* size)
{
    return unlessNull([&] { return socket->boundListAddressesDiagnosticStrA(buffer, size); },
                      socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBind(TcpServerSocket2* socket)
{
    return unlessNull([&] { return socket->bind(); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketListen(TcpServerSocket2* socket, std::int32_t backlog)
{
    return unlessNull([&] { return socket->listen(backlog); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketSaveBoundAddresses(TcpServerSocket2* socket)
{
    return unlessNull([&] { return socket->saveBoundAddresses(); }, socket);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketAccept(TcpServerSocket2* socket, TcpWorkerSocket2** out)
{
    return unlessNull([&] { return socket->accept(out); }, socket, out);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketAcceptSocket(TcpServerSocket2* socket, std::uint64_t* out)
{
    return unlessNull([&] { return socket->accept(out); }, socket, out);
}

ENUM_ORV_E_SOCKET OrvNetTcpServerSocketGetBoundAddress(TcpServerSocket2* socket,
                                                       std::uint32_t index, signed char* buffer,
                                                       std::uint64_t* length)
{
    return unlessNull([&] { return socket->getBoundAddress(index, buffer, length); }, socket);
}

ENUM_ORV_E_SOCKET
OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName(const char* service,
                                                                std::uint16_t* port)
{
    return InetSocketAddress::getPortHostOrderFromTcpServiceName(service, port);
}

ENUM_ORV_E_SOCKET OrvNetInetSocketAddressGetDiagnosticStr(const orv_sockaddr_union* address,
                                                          char* buffer, std::uint32_t* size)
{
    return internal::writeDiagnosticText(buffer, size, SOCKET_ADDRESS_CAPACITY,
                                         [&](orv::String& text) {
                                             ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
                                             const InetSocketAddress object(address, &error);
                                             if (error == ORV_E_SOCKET_OK)
                                                 object.getDiagnosticStr(text);
                                             return error;
                                         });
}

ENUM_ORV_E_SOCKET OrvNetInetAddressIsAddressAny(const orv_sockaddr_union* address,
                                                std::int16_t* out)
{
    return askWhether(address, out, &InetAddress::isAddressAny);
}

ENUM_ORV_E_SOCKET OrvNetInetAddressIsAddressLoopback(const orv_sockaddr_union* address,
                                                     std::int16_t* out)
{
    return askWhether(address, out, &InetAddress::isAddressLoopback);
}

ENUM_ORV_E_SOCKET OrvNetInetAddressIsAddressNone(const orv_sockaddr_union* address,
                                                 std::int16_t* out)
{
    return askWhether(address, out, &InetAddress::isAddressNone);
}

ENUM_ORV_E_SOCKET OrvNetInetAddressGetAddressStr(const orv_sockaddr_union* address, char* buffer,
                                                 std::uint32_t* size)
{
    return internal::writeDiagnosticText(buffer, size, ADDRESS_CAPACITY, [&](orv::String& text) {
        if (address == nullptr) return ORV_E_SOCKET_EINVAL;
        return askAddress(address,
                          [&](const InetAddress& object) { return object.getAddressStr(text); });
    });
}
