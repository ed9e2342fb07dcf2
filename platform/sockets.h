#pragma once

#include "platform/orvcore.h"

#include <atomic>
#include <cstdint>

struct sockaddr;
struct timeval;

/// \file
/// Sockets as the library knows them: families 2 and 23, the option numbers and error numbers that
/// hosts compare with. What Linux calls them instead stays behind this face.
///
/// An operation returns a native socket error, 0 for success, and leaves it for the calling thread
/// to be read again by lastSocketError(). Interrupted calls are resumed with what remains of their
/// time; no operation raises SIGPIPE; descriptors are close-on-exec and never 0, 1 or 2.

/// A socket address: the family in 16 bits, then by family the IPv4 form of 16 bytes (family 2) or
/// the IPv6 form of 28 bytes (family 23). Ports and addresses stand in network byte order.
union alignas(8) orv_sockaddr_union {
    std::uint8_t bytes[128]; ///< all of it, and first, so that `{}` clears all of it
    std::uint16_t family;    ///< 2 or 23; 0 for none
    /// The IPv4 form.
    struct {
        std::uint16_t family;
        std::uint16_t port;
        std::uint8_t address[4];
        std::uint8_t unused[8];
    } ipv4;
    /// The IPv6 form.
    struct {
        std::uint16_t family;
        std::uint16_t port;
        std::uint32_t flowInfo;
        std::uint8_t address[16];
        std::uint32_t scopeId;
    } ipv6;
};
static_assert(sizeof(orv_sockaddr_union) == 128);
static_assert(sizeof(orv_sockaddr_union::ipv4) == 16);
static_assert(sizeof(orv_sockaddr_union::ipv6) == 28);

namespace orvcore {

/// A socket of the system; NO_SOCKET for none.
using NativeSocket = std::uint64_t;

/// No socket: all bits set.
inline constexpr NativeSocket NO_SOCKET = ~NativeSocket{0};

/// A native socket error, 0 for success.
using SocketError = std::uint32_t;

/// The families of addresses at this face.
inline constexpr std::uint16_t FAMILY_IPV4 = 2;
inline constexpr std::uint16_t FAMILY_IPV6 = 23;

/// The type and protocol of TCP sockets.
inline constexpr std::int32_t TYPE_STREAM = 1;
inline constexpr std::int32_t PROTOCOL_TCP = 6;

/// The options that callers set or read themselves; getSocketOption() knows more.
inline constexpr std::int32_t LEVEL_SOCKET = 0xFFFF;
inline constexpr std::int32_t OPTION_REUSE_ADDRESS = 4;
inline constexpr std::int32_t OPTION_KEEP_ALIVE = 8;
inline constexpr std::int32_t OPTION_LINGER = 0x80;
inline constexpr std::int32_t OPTION_SEND_LIMIT = 0x1005;
inline constexpr std::int32_t OPTION_RECEIVE_LIMIT = 0x1006;
inline constexpr std::int32_t OPTION_ERROR = 0x1007;
inline constexpr std::int32_t LEVEL_TCP = 6;
inline constexpr std::int32_t OPTION_NO_DELAY = 1;

/// The errors that callers look for themselves.
inline constexpr SocketError SOCKET_INVALID_ARGUMENT = 10022;
inline constexpr SocketError SOCKET_WOULD_BLOCK = 10035;
inline constexpr SocketError SOCKET_NOT_INITIALISED = 10093;

/// The error of the calling thread's last operation here, 0 after success.
[[nodiscard]] ORVCORE_API SocketError lastSocketError() noexcept;

/// Starts the sockets of the process; `version` receives the highest version offered, the major
/// number in its low byte and the minor in the next. Starting twice is one start.
ORVCORE_API SocketError startSockets(std::uint16_t* version) noexcept;

/// Undoes startSockets(); SOCKET_NOT_INITIALISED without one. Open sockets go on working.
ORVCORE_API SocketError stopSockets() noexcept;

// Addresses

/// Bytes that an address of `family` has, 0 for a family that is neither 2 nor 23.
[[nodiscard]] ORVCORE_API std::uint32_t sizeOfAddress(std::uint16_t family) noexcept;

/// The family that stands for `family` at this face: 23 also for Linux's own IPv6 number.
[[nodiscard]] ORVCORE_API std::uint16_t familyOfFace(std::uint16_t family) noexcept;

/// Makes `*out` from an address of the system, `size` bytes long. False, with `*out` cleared, for
/// a null address, a family other than AF_INET and AF_INET6, or too few bytes.
[[nodiscard]] ORVCORE_API bool addressFromNative(const sockaddr* native, std::uint32_t size,
                                                 orv_sockaddr_union* out) noexcept;

/// Writes `address` in the system's form to `native`, which has room for `room` bytes. Returns the
/// bytes written, 0 for a family that is none or too little room.
[[nodiscard]] ORVCORE_API std::uint32_t
addressToNative(const orv_sockaddr_union& address, sockaddr* native, std::uint32_t room) noexcept;

/// Writes the numeric text of `address` to `text`, terminated; a scope is a number, "fe80::1%2".
/// `room` is 1025 by convention. The result is 0 or a native resolver error.
ORVCORE_API SocketError numericAddress(const orv_sockaddr_union& address, char* text,
                                       std::uint32_t room) noexcept;

/// The port, in host byte order, of a service over TCP.
ORVCORE_API SocketError portOfService(const char* service, std::uint16_t* port) noexcept;

/// What getaddrinfo() is asked for, by the numbers of this face: as it stands, addresses of any
/// family to connect to.
struct AddressHints {
    std::int32_t flags = 0;  ///< 1 passive, 2 canonical name
    std::int32_t family = 0; ///< 0 for any
    std::int32_t type = TYPE_STREAM;
    std::int32_t protocol = PROTOCOL_TCP;
};

/// ORVgetaddrinfo() with hints by value.
ORVCORE_API SocketError resolve(const char* host, const char* service, const AddressHints& hints,
                                addrinfo** out) noexcept;

/// An entry of a list of ORVgetaddrinfo().
struct AddressEntry {
    std::uint16_t family = 0;            ///< of the entry
    std::uint32_t size = 0;              ///< bytes of the address, at most 128
    orv_sockaddr_union address{};        ///< zeroes where the entry has none
    const char* canonicalName = nullptr; ///< may be null
    const addrinfo* next = nullptr;      ///< the entry behind it, null at the end
};

/// Reads an entry, which must not be null.
[[nodiscard]] ORVCORE_API AddressEntry readAddressEntry(const addrinfo* entry) noexcept;

// Sockets

/// Makes a socket; the type is 1 for streams, the protocol 6 for TCP or 0.
ORVCORE_API SocketError openSocket(std::int32_t family, std::int32_t type, std::int32_t protocol,
                                   NativeSocket* out) noexcept;

/// Closes the socket. Threads that are at work on it or wait for it are woken first, and the
/// system takes it back when the last of them has left.
ORVCORE_API SocketError closeSocket(NativeSocket socket) noexcept;

/// Shuts down receiving (0), sending (1) or both (2).
ORVCORE_API SocketError shutDownSocket(NativeSocket socket, std::int32_t way) noexcept;

/// Binds to a local address, of which `size` bytes count.
ORVCORE_API SocketError bindSocket(NativeSocket socket, const orv_sockaddr_union* address,
                                   std::uint32_t size) noexcept;

/// The same for a socket that will listen: it may take over a port that connections of an earlier
/// listener still linger on, and an IPv6 one leaves the port free for IPv4.
ORVCORE_API SocketError bindListener(NativeSocket socket, const orv_sockaddr_union* address,
                                     std::uint32_t size) noexcept;

/// Listens; from here on acceptSocket() does not wait.
ORVCORE_API SocketError listenOnSocket(NativeSocket socket, std::int32_t backlog) noexcept;

/// Takes a connection; SOCKET_WOULD_BLOCK when there is none. `peer` may be null.
ORVCORE_API SocketError acceptSocket(NativeSocket socket, NativeSocket* out,
                                     orv_sockaddr_union* peer) noexcept;

/// Connects, waiting until the connection stands or has failed.
ORVCORE_API SocketError connectSocket(NativeSocket socket, const orv_sockaddr_union* address,
                                      std::uint32_t size) noexcept;

/// The local address; `*size` holds the room in bytes and receives the size.
ORVCORE_API SocketError nameOfSocket(NativeSocket socket, orv_sockaddr_union* out,
                                     std::int32_t* size) noexcept;

/// Receives what is there, waiting for the first byte. `*done` is the number of bytes, 0 when the
/// peer has closed and where `size` is 0, -1 on failure. `flags` are the system's. At most 2^31 - 1
/// bytes go in one call.
ORVCORE_API SocketError receiveBytes(NativeSocket socket, void* buffer, std::uint32_t size,
                                     std::int32_t flags, std::int64_t* done) noexcept;

/// Sends all bytes; fewer only where the socket may not wait or fails on the way. `*done` as above.
ORVCORE_API SocketError sendBytes(NativeSocket socket, const void* bytes, std::uint32_t size,
                                  std::int32_t flags, std::int64_t* done) noexcept;

/// Reads an option. Options of level 0xFFFF: 1 debug, 2 listening, 4 reuse address, 8 keep alive,
/// 0x10 do not route, 0x20 broadcast, 0x80 linger (two 16-bit numbers), 0x100 urgent data in line,
/// 0x1001 and 0x1002 buffers for sending and receiving, 0x1004 least to receive, 0x1005 and 0x1006
/// time limits for sending and receiving in milliseconds, 0x1007 pending error, 0x1008 type. Level
/// 6: 1 no delay. Level 41: 27 IPv6 alone. Any other is 10042. Values are 32-bit numbers; too
/// little room for one is 10014.
ORVCORE_API SocketError getSocketOption(NativeSocket socket, std::int32_t level,
                                        std::int32_t option, void* value,
                                        std::int32_t* size) noexcept;

/// Sets such an option.
ORVCORE_API SocketError setSocketOption(NativeSocket socket, std::int32_t level,
                                        std::int32_t option, const void* value,
                                        std::int32_t size) noexcept;

/// Lets child processes inherit the socket.
ORVCORE_API SocketError letSocketBeInherited(NativeSocket socket) noexcept;

/// Keeps a socket's number from meaning another socket while a thread works on it:
///
///     const SocketHold hold(m_socket);   // before any test of it
///     if (!hold.isOpen()) return ...;    // closed meanwhile
///     receiveBytes(hold.socket(), ...);  // closeSocket() elsewhere wakes this
///
/// Whoever closes the socket stores NO_SOCKET in its place before.
class ORVCORE_API SocketHold {
public:
    SocketHold() noexcept = default;
    explicit SocketHold(const std::atomic<NativeSocket>& place) noexcept { take(place); }
    SocketHold(const SocketHold&) = delete;
    SocketHold& operator=(const SocketHold&) = delete;
    ~SocketHold() { release(); }

    /// Holds the socket at `place`, in an object that holds none.
    void take(const std::atomic<NativeSocket>& place) noexcept;

    /// Lets go.
    void release() noexcept;

    /// Whether there was a socket to hold.
    bool isOpen() const noexcept { return m_socket != NO_SOCKET; }
    /// The socket held, NO_SOCKET for none.
    NativeSocket socket() const noexcept { return m_socket; }

private:
    NativeSocket m_socket = NO_SOCKET;
    std::atomic<std::uint32_t>* m_users = nullptr;
};

/// What a wait looks for, a bit set.
enum SocketReadiness : std::uint8_t {
    READY_TO_READ = 1,  ///< bytes, a connection, the end, or a failure that reading will tell
    READY_TO_WRITE = 2, ///< room to send, a connection made, or a failure that sending will tell
    READY_EXCEPT = 4,   ///< urgent bytes, or a pending error
};

/// A socket to wait for.
struct SocketWait {
    NativeSocket socket;
    std::uint8_t wanted; ///< bits of SocketReadiness
    std::uint8_t ready;  ///< those of them that came true
};

/// The most sockets that one wait takes.
inline constexpr std::uint32_t MOST_WAITS = 192;

/// A wait that never ends by itself.
inline constexpr std::int64_t FOR_EVER = -1;

/// The microseconds of `limit`, null being FOR_EVER.
ORVCORE_API SocketError microsecondsOf(const timeval* limit, std::int64_t* out) noexcept;

/// Waits until one of `count` sockets, at most MOST_WAITS, is ready for what it is wanted for, or
/// `limit` microseconds have gone. `*ready` is the number of bits that came true, 0 for a time-out.
/// The sockets may have any descriptors, 1024 and above too. Without a socket it only waits. Where
/// another thread closes one of them, the wait ends: with what the end of a connection makes ready,
/// else with 10038.
ORVCORE_API SocketError waitForSockets(SocketWait* waits, std::uint32_t count, std::int64_t limit,
                                       std::int32_t* ready) noexcept;

/// Waits until the open file `input` has bytes or its end to be read, which is true, or the peer of
/// `socket` has sent all or is gone, which is false. With both, it is true.
[[nodiscard]] ORVCORE_API bool awaitInput(NativeSocket socket, ORVHandle input) noexcept;

} // namespace orvcore
