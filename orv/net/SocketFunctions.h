#pragma once

#include "orv/net/TcpClientSocket2.h"
#include "orv/net/TcpServerSocket2.h"

/// \file
/// The socket layer as flat functions, for callers that do not link against the classes.
///
/// Each does what the operation of its name does: OrvNetTcpServerSocketListen() is
/// TcpServerSocket2::listen(). A null pointer among the arguments is ORV_E_SOCKET_EINVAL unless it
/// is said otherwise. No exception leaves them.

extern "C" {

// Any socket

ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketClose(orv::net::TcpSocket2* socket);
/// The native socket, 0 for none and for a null `socket`.
ORV_API std::uint64_t OrvNetTcpSocketGetId(orv::net::TcpSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownInput(orv::net::TcpSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownOutput(orv::net::TcpSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownBoth(orv::net::TcpSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticInit();
/// Does nothing and returns 0: sockets go on working. Only the library's own end stops the layer.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticUninit();
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticDestroy(orv::net::TcpSocket2** socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticGetVersion(std::int32_t* major, std::int32_t* minor);
/// `hints` is required here.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticGetaddrinfo(const char* host, std::uint16_t port,
                                                           addrinfo* hints, std::uint32_t index,
                                                           orv_sockaddr_union* out);

// Client sockets

ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketStaticCreate(std::int32_t family, std::int32_t type,
                                                            std::int32_t protocol,
                                                            orv::net::TcpClientSocket2** out);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketBind(orv::net::TcpClientSocket2* socket,
                                                    const orv_sockaddr_union* address,
                                                    std::uint64_t length);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketConnect(orv::net::TcpClientSocket2* socket,
                                                       const orv_sockaddr_union* address,
                                                       std::uint64_t length);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketGetLocalAddress(orv::net::TcpClientSocket2* socket,
                                                               orv_sockaddr_union* address,
                                                               std::int32_t* length);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketSend(orv::net::TcpClientSocket2* socket,
                                                    char* buffer, std::uint64_t size,
                                                    std::int32_t flags, std::int64_t* done);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketRecv(orv::net::TcpClientSocket2* socket,
                                                    char* buffer, std::uint64_t size,
                                                    std::int32_t flags, std::int64_t* done);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketGetsockopt(orv::net::TcpClientSocket2* socket,
                                                          std::int32_t level, std::int32_t option,
                                                          char* value, std::int32_t* length);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketSetsockopt(orv::net::TcpClientSocket2* socket,
                                                          std::int32_t level, std::int32_t option,
                                                          const char* value, std::int32_t length);
/// Tests its arguments as TcpWorkerSocket2::select() does.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketStaticSelect(
    orv::net::TcpWorkerSocket2** read, std::uint32_t* readCount, orv::net::TcpWorkerSocket2** write,
    std::uint32_t* writeCount, orv::net::TcpWorkerSocket2** except, std::uint32_t* exceptCount,
    timeval* timeout, std::int32_t* total);

// Worker sockets

ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketSend(orv::net::TcpWorkerSocket2* socket,
                                                    char* buffer, std::uint64_t size,
                                                    std::int32_t flags, std::int64_t* done);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketRecv(orv::net::TcpWorkerSocket2* socket,
                                                    char* buffer, std::uint64_t size,
                                                    std::int32_t flags, std::int64_t* done);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketGetsockopt(orv::net::TcpWorkerSocket2* socket,
                                                          std::int32_t level, std::int32_t option,
                                                          char* value, std::int32_t* length);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketSetsockopt(orv::net::TcpWorkerSocket2* socket,
                                                          std::int32_t level, std::int32_t option,
                                                          const char* value, std::int32_t length);
/// Tests its arguments as TcpWorkerSocket2::select() does.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketStaticSelect(
    orv::net::TcpWorkerSocket2** read, std::uint32_t* readCount, orv::net::TcpWorkerSocket2** write,
    std::uint32_t* writeCount, orv::net::TcpWorkerSocket2** except, std::uint32_t* exceptCount,
    timeval* timeout, std::int32_t* total);

// Server sockets

ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketStaticCreate(std::int32_t family, std::int32_t type,
                                                            std::int32_t protocol,
                                                            orv::net::TcpServerSocket2** out);
ORV_API ENUM_ORV_E_SOCKET
OrvNetTcpServerSocketBindListAddAddrAny(orv::net::TcpServerSocket2* socket, std::uint16_t port);
/// `service` may be null.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddAddrInfo(
    orv::net::TcpServerSocket2* socket, const char* hosts, const char* service, std::uint16_t port);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListClear(orv::net::TcpServerSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET
OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply(orv::net::TcpServerSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddressesDiagnosticStrA(
    orv::net::TcpServerSocket2* socket, char* buffer, std::uint32_t* size);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA(
    orv::net::TcpServerSocket2* socket, char* buffer, std::uint32_t* size);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBind(orv::net::TcpServerSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketListen(orv::net::TcpServerSocket2* socket,
                                                      std::int32_t backlog);
ORV_API ENUM_ORV_E_SOCKET
OrvNetTcpServerSocketSaveBoundAddresses(orv::net::TcpServerSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketAccept(orv::net::TcpServerSocket2* socket,
                                                      orv::net::TcpWorkerSocket2** out);
/// The connection as a native socket.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketAcceptSocket(orv::net::TcpServerSocket2* socket,
                                                            std::uint64_t* out);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketGetBoundAddress(orv::net::TcpServerSocket2* socket,
                                                               std::uint32_t index,
                                                               signed char* buffer,
                                                               std::uint64_t* length);

// Addresses. Another family than 2 and 23 is ORV_E_SOCKET_EINVAL.

ORV_API ENUM_ORV_E_SOCKET OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName(
    const char* service, std::uint16_t* port);
/// Writes address and port, "[::1]:80". `*size` holds the room in bytes and receives the bytes
/// written, the terminator among them; with too little room it is 0, `buffer` the empty text and
/// the result ORV_E_SOCKET_EFAULT.
ORV_API ENUM_ORV_E_SOCKET OrvNetInetSocketAddressGetDiagnosticStr(const orv_sockaddr_union* address,
                                                                  char* buffer,
                                                                  std::uint32_t* size);
/// Stores 1 or 0, and 0 on failure.
ORV_API ENUM_ORV_E_SOCKET OrvNetInetAddressIsAddressAny(const orv_sockaddr_union* address,
                                                        std::int16_t* out);
/// The same.
ORV_API ENUM_ORV_E_SOCKET OrvNetInetAddressIsAddressLoopback(const orv_sockaddr_union* address,
                                                             std::int16_t* out);
/// The same.
ORV_API ENUM_ORV_E_SOCKET OrvNetInetAddressIsAddressNone(const orv_sockaddr_union* address,
                                                         std::int16_t* out);
/// Writes the address, "::1", as OrvNetInetSocketAddressGetDiagnosticStr() does.
ORV_API ENUM_ORV_E_SOCKET OrvNetInetAddressGetAddressStr(const orv_sockaddr_union* address,
                                                         char* buffer, std::uint32_t* size);

} // extern "C"
