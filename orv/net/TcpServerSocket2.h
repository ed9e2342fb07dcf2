#pragma once

#include "orv/net/TcpWorkerSocket2.h"

#include <array>
#include <memory>

namespace orv::net {

/// A server that listens on up to twenty addresses at once, IPv6 and IPv4 together.
///
///     TcpServerSocket2* server = nullptr;
///     TcpServerSocket2::createTcpServerSocket2(0, 1, 6, &server);
///     server->bindListAddAddrAny(8080);                  // [::] and 0.0.0.0
///     server->bind();
///     server->listen(0);
///     server->saveBoundAddresses();
///     while (server->accept(&worker) == 0) { ... }
///
/// It keeps three lists of twenty places: the addresses to bind, the sockets, and the addresses
/// that are bound, for reporting. bind() succeeds when one address could be bound; which ones were
/// is told by the third list after saveBoundAddresses().
///
/// Threads: any number may be in accept(); each connection goes to one of them. close() in another
/// thread ends their waiting. Everything else: one thread at a time.
class ORV_API TcpServerSocket2 : public TcpSocket2 {
public:
    /// The limit of an accept() that waits for ever.
    static constexpr std::int32_t FOR_EVER = -1;
    /// Places in each list.
    static constexpr std::uint32_t MOST_ADDRESSES = 20;

    /// Makes a server without addresses, of type 1 (stream) and protocol 6 (TCP) or 0. Each socket
    /// has the family of its address; `family` is only kept. End it by destroyTcpSocket2(). On
    /// failure `*out` is null.
    static ENUM_ORV_E_SOCKET createTcpServerSocket2(std::int32_t family, std::int32_t type,
                                                    std::int32_t protocol, TcpServerSocket2** out);
    /// Closes the sockets it holds.
    ~TcpServerSocket2() override;

    std::uint64_t getId() override;
    ENUM_ORV_E_SOCKET shutdownInput() override;
    ENUM_ORV_E_SOCKET shutdownOutput() override;
    ENUM_ORV_E_SOCKET shutdownBoth() override;
    ENUM_ORV_E_SOCKET close() override;

    /// Adds the wildcard addresses of IPv6 and IPv4, in this order. ORV_E_SOCKET_EFAULT where one
    /// finds no place; the other is added all the same.
    ENUM_ORV_E_SOCKET bindListAddAddrAny(std::uint16_t port);

    /// Adds the addresses of a list of host names, "localhost, 10.1.2.3".
    ///
    /// Blanks behind a comma are skipped. With a `port` of 0 the port is that of `service`, which
    /// must then be a name; otherwise `service` may be null. Wildcard addresses, 255.255.255.255
    /// and what finds no place in the list are left out; ORV_E_SOCKET_HOST_NOT_FOUND where a name
    /// has nothing but the former. The result is that of the last name: a failure of one is
    /// forgotten when a later one has an address.
    ENUM_ORV_E_SOCKET bindListAddAddrInfo(const char* hosts, const char* service,
                                          std::uint16_t port);

    /// Empties the list of addresses to bind.
    void bindListClear();
    /// Empties the list of bound addresses.
    void boundListClear();
    /// Forgets the sockets without closing them, for a caller that has taken their handles over.
    void socketListClear();

    /// Keeps the only address to bind for the next saveBoundAddresses(), for a server whose real
    /// address another process gives out, and empties the list of addresses to bind. With no or
    /// several addresses nothing is kept, and the list is emptied all the same.
    ENUM_ORV_E_SOCKET bindListSaveOneForNamedPipeReply();

    /// Makes a socket for each address and binds it. 0 when one stands, whatever became of the
    /// others, and with an empty list; else the last failure.
    ENUM_ORV_E_SOCKET bind();

    /// Listens on all sockets; a `backlog` below 1 asks for the greatest. The last failure is the
    /// result.
    ENUM_ORV_E_SOCKET listen(std::int32_t backlog);

    /// Appends the addresses of the sockets to the bound list, with the ports that the system gave;
    /// an address kept by bindListSaveOneForNamedPipeReply() replaces the list instead. Always 0.
    ENUM_ORV_E_SOCKET saveBoundAddresses();

    /// Waits for a connection and takes it. `*out` is for the caller to destroy; it is null when
    /// memory ran out, with result 0. ORV_E_SOCKET_ENOTSOCK without a socket, also when another
    /// thread closes the server meanwhile.
    ENUM_ORV_E_SOCKET accept(TcpWorkerSocket2** out);
    /// The same, waiting `limit` milliseconds at most: ORV_E_SOCKET_ETIMEDOUT when none came. 0
    /// takes what has come, FOR_EVER waits for ever.
    ENUM_ORV_E_SOCKET accept(TcpWorkerSocket2** out, std::int32_t limit);
    /// The same as a native socket, for the caller to close.
    ENUM_ORV_E_SOCKET accept(std::uint64_t* socket);

    /// Copies the bytes of a bound address, 4 or 16, without the port. `*length` holds the room and
    /// receives the size, 0 on failure. ORV_E_SOCKET_EADDRNOTAVAIL past the end of the list.
    ENUM_ORV_E_SOCKET getBoundAddress(std::uint32_t index, signed char* buffer,
                                      std::uint64_t* length);

    /// Writes the addresses to bind as text, "10.1.2.3:80; [::1]:80". `*size` holds the room in
    /// bytes and receives the bytes written, the terminator among them. ORV_E_SOCKET_EFAULT,
    /// `*size` 0 and an empty text when the room is too small.
    ENUM_ORV_E_SOCKET bindListAddressesDiagnosticStrA(char* buffer, std::uint32_t* size);
    /// The same for the bound addresses.
    ENUM_ORV_E_SOCKET boundListAddressesDiagnosticStrA(char* buffer, std::uint32_t* size);

protected:
    TcpServerSocket2(std::int32_t family, std::int32_t type, std::int32_t protocol,
                     ENUM_ORV_E_SOCKET* error);

    using Address = std::unique_ptr<InetSocketAddress>;

    /// Writes `count` addresses as text; one that is null reads "[list(1)==NULL]".
    static ENUM_ORV_E_SOCKET listAddressesDiagnosticStrA(const Address* list, std::uint64_t count,
                                                         char* buffer, std::uint32_t* size);

private:
    struct AddressList {
        std::array<Address, MOST_ADDRESSES> entries;
        std::uint64_t count = 0;

        bool isFull() const noexcept { return count == MOST_ADDRESSES; }
        void add(Address address) { entries[count++] = std::move(address); }
        void clear();
    };

    ENUM_ORV_E_SOCKET addWildcard(std::uint16_t family, std::uint16_t port);
    ENUM_ORV_E_SOCKET addHost(const char* host, const char* portText, std::uint16_t port);
    ENUM_ORV_E_SOCKET addEntry(const addrinfo* entry, std::uint16_t port, bool* found);
    bool keep(std::uint64_t socket) noexcept;
    ENUM_ORV_E_SOCKET shutDownAll(std::int32_t way);
    ENUM_ORV_E_SOCKET closeSockets();
    ENUM_ORV_E_SOCKET accept_guts(TcpWorkerSocket2** worker, std::uint64_t* socket,
                                  std::int32_t limit);
    ENUM_ORV_E_SOCKET awaitConnection(std::uint64_t* socket, orv_sockaddr_union* peer,
                                      std::int32_t limit);

    std::int32_t m_family;
    std::int32_t m_type;
    std::int32_t m_protocol;
    std::array<std::atomic<std::uint64_t>, MOST_ADDRESSES> m_sockets;
    std::atomic<std::uint64_t> m_socketCount{0};
    AddressList m_bindList;
    AddressList m_boundList;
    Address m_saved;
};

} // namespace orv::net
