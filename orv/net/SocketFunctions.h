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

/// Closes, once; what comes later does nothing.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketClose(orv::net::TcpSocket2* socket);
/// The native socket, 0 for none and for a null `socket`.
ORV_API std::uint64_t OrvNetTcpSocketGetId(orv::net::TcpSocket2* socket);
/// Ends receiving, sending or both, by its name.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownInput(orv::net::TcpSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownOutput(orv::net::TcpSocket2* socket);
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketShutdownBoth(orv::net::TcpSocket2* socket);
/// Starts the sockets of the process; a start that has been made is not repeated.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticInit();
/// Does nothing and returns 0: sockets go on working. Only the library's own end stops the layer.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticUninit();
/// Ends sending, closes and deletes the socket, and clears the pointer. A null socket is fine.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticDestroy(orv::net::TcpSocket2** socket);
/// The highest version of the socket interface, 2.2.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticGetVersion(std::int32_t* major, std::int32_t* minor);
/// `hints` is required here.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpSocketStaticGetaddrinfo(const char* host, std::uint16_t port,
                                                           addrinfo* hints, std::uint32_t index,
                                                           orv_sockaddr_union* out);

// Client sockets

/// Makes a socket that is not connected yet: family 2 or 23, type 1 (stream), protocol 6 (TCP) or
/// 0. End it by OrvNetTcpSocketStaticDestroy(). On failure `*out` is null.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketStaticCreate(std::int32_t family, std::int32_t type,
                                                            std::int32_t protocol,
                                                            orv::net::TcpClientSocket2** out);
/// Binds to a local address of `length` bytes.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketBind(orv::net::TcpClientSocket2* socket,
                                                    const orv_sockaddr_union* address,
                                                    std::uint64_t length);
/// Connects to an address of `length` bytes, waiting until the connection stands or has failed.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketConnect(orv::net::TcpClientSocket2* socket,
                                                       const orv_sockaddr_union* address,
                                                       std::uint64_t length);
/// The local address. `*length` holds the room in bytes and receives the size; ORV_E_SOCKET_EFAULT
/// when the room is too small.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpClientSocketGetLocalAddress(orv::net::TcpClientSocket2* socket,
                                                               orv_sockaddr_union* address,
                                                               std::int32_t* length);
/// As the operation of the same name for worker sockets.
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

/// Sends all `size` bytes. `*done` is the number of bytes sent: smaller only where a time limit or
/// a failure cut the rest off, -1 where nothing went out. `flags` are the system's.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketSend(orv::net::TcpWorkerSocket2* socket,
                                                    char* buffer, std::uint64_t size,
                                                    std::int32_t flags, std::int64_t* done);
/// Receives what is there, at most `size` bytes, waiting for the first of them. `*done` is their
/// number; it is 0 with result 0 when the peer has closed in order.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketRecv(orv::net::TcpWorkerSocket2* socket,
                                                    char* buffer, std::uint64_t size,
                                                    std::int32_t flags, std::int64_t* done);
/// Reads an option, by the numbers of TcpWorkerSocket2::getsockopt(). `*length` holds the room in
/// bytes and receives the size. An option that is not known is ORV_E_SOCKET_ENOPROTOOPT.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketGetsockopt(orv::net::TcpWorkerSocket2* socket,
                                                          std::int32_t level, std::int32_t option,
                                                          char* value, std::int32_t* length);
/// Sets such an option.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketSetsockopt(orv::net::TcpWorkerSocket2* socket,
                                                          std::int32_t level, std::int32_t option,
                                                          const char* value, std::int32_t length);
/// Tests its arguments as TcpWorkerSocket2::select() does.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpWorkerSocketStaticSelect(
    orv::net::TcpWorkerSocket2** read, std::uint32_t* readCount, orv::net::TcpWorkerSocket2** write,
    std::uint32_t* writeCount, orv::net::TcpWorkerSocket2** except, std::uint32_t* exceptCount,
    timeval* timeout, std::int32_t* total);

// Server sockets

/// Makes a server without addresses, of type 1 (stream) and protocol 6 (TCP) or 0; `family` is only
/// kept. End it by OrvNetTcpSocketStaticDestroy(). On failure `*out` is null.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketStaticCreate(std::int32_t family, std::int32_t type,
                                                            std::int32_t protocol,
                                                            orv::net::TcpServerSocket2** out);
/// Adds the wildcard addresses of IPv6 and IPv4, in this order, with `port` in host byte order.
/// ORV_E_SOCKET_EFAULT where one finds no place in the list; the other is added all the same.
ORV_API ENUM_ORV_E_SOCKET
OrvNetTcpServerSocketBindListAddAddrAny(orv::net::TcpServerSocket2* socket, std::uint16_t port);
/// Adds the addresses of a list of host names, "localhost, 10.1.2.3", by the rules of
/// TcpServerSocket2::bindListAddAddrInfo(). `service` may be null.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddAddrInfo(
    orv::net::TcpServerSocket2* socket, const char* hosts, const char* service, std::uint16_t port);
/// Empties the list of addresses to bind.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListClear(orv::net::TcpServerSocket2* socket);
/// Keeps the only address to bind for the next OrvNetTcpServerSocketSaveBoundAddresses(), and
/// empties the list; with no or several addresses nothing is kept.
ORV_API ENUM_ORV_E_SOCKET
OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply(orv::net::TcpServerSocket2* socket);
/// Writes the addresses to bind as text, "10.1.2.3:80; [::1]:80". `*size` holds the room in bytes
/// and receives the bytes written, the terminator among them. ORV_E_SOCKET_EFAULT, `*size` 0 and an
/// empty text when the room is too small.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBindListAddressesDiagnosticStrA(
    orv::net::TcpServerSocket2* socket, char* buffer, std::uint32_t* size);
/// The same for the bound addresses.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA(
    orv::net::TcpServerSocket2* socket, char* buffer, std::uint32_t* size);
/// Makes a socket for each address and binds it. 0 when one stands, and with an empty list; else
/// the last failure.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketBind(orv::net::TcpServerSocket2* socket);
/// Listens on all sockets; a `backlog` below 1 asks for the greatest. The last failure is the
/// result.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketListen(orv::net::TcpServerSocket2* socket,
                                                      std::int32_t backlog);
/// Appends the addresses of the sockets to the bound list, with the ports that the system gave. An
/// address kept by OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply() replaces the list
/// instead.
ORV_API ENUM_ORV_E_SOCKET
OrvNetTcpServerSocketSaveBoundAddresses(orv::net::TcpServerSocket2* socket);
/// Waits for a connection and takes it. `*out` is for the caller to destroy; it is null when memory
/// ran out, with result 0. ORV_E_SOCKET_ENOTSOCK where the server has no socket or is closed.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketAccept(orv::net::TcpServerSocket2* socket,
                                                      orv::net::TcpWorkerSocket2** out);
/// The connection as a native socket.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketAcceptSocket(orv::net::TcpServerSocket2* socket,
                                                            std::uint64_t* out);
/// Copies the bytes of a bound address, 4 or 16, without the port. `*length` holds the room and
/// receives the size, 0 on failure. ORV_E_SOCKET_EADDRNOTAVAIL past the end of the list.
ORV_API ENUM_ORV_E_SOCKET OrvNetTcpServerSocketGetBoundAddress(orv::net::TcpServerSocket2* socket,
                                                               std::uint32_t index,
                                                               signed char* buffer,
                                                               std::uint64_t* length);

// Addresses. Another family than 2 and 23 is ORV_E_SOCKET_EINVAL.

/// The port, in host byte order, of a service over TCP.
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
