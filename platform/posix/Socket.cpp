#include "platform/posix/internal/SocketAddress.h"
#include "platform/posix/internal/SocketErrors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/time.h>
#include <unistd.h>

namespace orvcore {
namespace {

constinit std::atomic<bool> s_started{false};

constexpr std::uint16_t version22 = 0x0202;

template <class Call>
auto resumed(Call call) noexcept
{
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

// A process without standard streams is given their numbers for its sockets. Sockets stay clear of
// them: what prints would print into a connection, and 0 stands for no socket at the face.
int clearOfStandardStreams(int descriptor) noexcept
{
    if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(descriptor);
    errno = error;
    return moved;
}

SocketError rememberDescriptor(int descriptor, NativeSocket* out) noexcept
{
    const int clear = clearOfStandardStreams(descriptor);
    *out = clear < 0 ? NO_SOCKET : static_cast<NativeSocket>(clear);
    return rememberOutcome(clear);
}

bool isBlocking(int descriptor) noexcept
{
    const int flags = fcntl(descriptor, F_GETFL);
    return flags >= 0 && (flags & O_NONBLOCK) == 0;
}

// A socket that waits and yet would have to wait has come to its time limit.
SocketError rememberTransferFailure(int descriptor, std::int32_t flags) noexcept
{
    if (errno != EAGAIN) return rememberFailure();
    const bool waits = (flags & MSG_DONTWAIT) == 0 && isBlocking(descriptor);
    return remember(waits ? socketTimedOut : SOCKET_WOULD_BLOCK);
}

std::size_t oneTransfer(std::uint32_t size) noexcept
{
    return std::min<std::uint32_t>(size, INT_MAX);
}

int pendingError(int descriptor) noexcept
{
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

std::int64_t sendLimitOf(int descriptor) noexcept
{
    timeval limit{};
    socklen_t size = sizeof limit;
    const bool known = getsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, &size) == 0;
    std::int64_t microseconds = 0;
    if (!known || microsecondsOf(&limit, &microseconds) != 0) return FOR_EVER;
    return microseconds == 0 ? FOR_EVER : microseconds;
}

// An interrupted connect goes on in the background and cannot be called again.
SocketError awaitConnection(int descriptor) noexcept
{
    SocketWait wait{static_cast<NativeSocket>(descriptor), READY_TO_WRITE, 0};
    std::int32_t ready = 0;
    const auto error = waitForSockets(&wait, 1, sendLimitOf(descriptor), &ready);
    if (error != 0) return remember(error);
    return remember(ready == 0 ? socketTimedOut : socketErrorOf(pendingError(descriptor)));
}

} // namespace

SocketError startSockets(std::uint16_t* version) noexcept
{
    s_started = true;
    *version = version22;
    return remember(0);
}

SocketError stopSockets() noexcept
{
    return remember(s_started.exchange(false) ? 0 : SOCKET_NOT_INITIALISED);
}

SocketError openSocket(std::int32_t family, std::int32_t type, std::int32_t protocol,
                       NativeSocket* out) noexcept
{
    *out = NO_SOCKET;
    const int native = nativeFamily(family);
    if (native == AF_UNSPEC) return remember(familyNotSupported);
    return rememberDescriptor(::socket(native, type | SOCK_CLOEXEC, protocol), out);
}

SocketError shutDownSocket(NativeSocket socket, std::int32_t way) noexcept
{
    return rememberOutcome(shutdown(descriptorOf(socket), way));
}

SocketError bindSocket(NativeSocket socket, const orv_sockaddr_union* address,
                       std::uint32_t size) noexcept
{
    const sockaddr_storage native = toNative(address, size);
    return rememberOutcome(
        bind(descriptorOf(socket), reinterpret_cast<const sockaddr*>(&native), size));
}

SocketError bindListener(NativeSocket socket, const orv_sockaddr_union* address,
                         std::uint32_t size) noexcept
{
    const int descriptor = descriptorOf(socket);
    const int on = 1;
    int result = setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (result == 0 && familyOfFace(address->family) == FAMILY_IPV6) {
        result = setsockopt(descriptor, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
    }
    return result < 0 ? rememberFailure() : bindSocket(socket, address, size);
}

SocketError listenOnSocket(NativeSocket socket, std::int32_t backlog) noexcept
{
    const int descriptor = descriptorOf(socket);
    if (listen(descriptor, backlog) < 0) return rememberFailure();
    const int flags = fcntl(descriptor, F_GETFL);
    return rememberOutcome(flags < 0 ? flags : fcntl(descriptor, F_SETFL, flags | O_NONBLOCK));
}

SocketError acceptSocket(NativeSocket socket, NativeSocket* out, orv_sockaddr_union* peer) noexcept
{
    *out = NO_SOCKET;
    sockaddr_storage native{};
    const int accepted = resumed([&] {
        socklen_t size = sizeof native;
        return accept4(descriptorOf(socket), reinterpret_cast<sockaddr*>(&native), &size,
                       SOCK_CLOEXEC);
    });
    if (peer != nullptr) *peer = fromNative(native);
    return rememberDescriptor(accepted, out);
}

SocketError connectSocket(NativeSocket socket, const orv_sockaddr_union* address,
                          std::uint32_t size) noexcept
{
    const int descriptor = descriptorOf(socket);
    const sockaddr_storage native = toNative(address, size);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&native), size) == 0) {
        return remember(0);
    }
    if (errno == EINTR) return awaitConnection(descriptor);
    if (errno == EINPROGRESS && isBlocking(descriptor)) return remember(socketTimedOut);
    return rememberFailure();
}

SocketError nameOfSocket(NativeSocket socket, orv_sockaddr_union* out, std::int32_t* size) noexcept
{
    sockaddr_storage native{};
    socklen_t length = sizeof native;
    if (getsockname(descriptorOf(socket), reinterpret_cast<sockaddr*>(&native), &length) != 0) {
        return rememberFailure();
    }
    const auto needed = static_cast<std::int32_t>(length);
    if (*size < needed) return remember(socketFault);
    const orv_sockaddr_union address = fromNative(native);
    std::memcpy(out, &address, length);
    *size = needed;
    return remember(0);
}

SocketError receiveBytes(NativeSocket socket, void* buffer, std::uint32_t size, std::int32_t flags,
                         std::int64_t* done) noexcept
{
    // The system would wait for a byte that there is no room for.
    *done = 0;
    if (size == 0) return remember(0);
    const int descriptor = descriptorOf(socket);
    *done = resumed([&] { return recv(descriptor, buffer, oneTransfer(size), flags); });
    return *done < 0 ? rememberTransferFailure(descriptor, flags) : remember(0);
}

SocketError sendBytes(NativeSocket socket, const void* bytes, std::uint32_t size,
                      std::int32_t flags, std::int64_t* done) noexcept
{
    const int descriptor = descriptorOf(socket);
    const auto* const from = static_cast<const char*>(bytes);
    const std::size_t all = oneTransfer(size);
    std::size_t sent = 0;
    ssize_t count = 0;
    // A signal cuts a transfer short that would have gone on.
    do {
        count = resumed(
            [&] { return send(descriptor, from + sent, all - sent, flags | MSG_NOSIGNAL); });
        if (count > 0) sent += static_cast<std::size_t>(count);
    } while (count > 0 && sent < all);
    *done = sent > 0 ? static_cast<std::int64_t>(sent) : count;
    return *done < 0 ? rememberTransferFailure(descriptor, flags) : remember(0);
}

SocketError letSocketBeInherited(NativeSocket socket) noexcept
{
    const int descriptor = descriptorOf(socket);
    const int flags = fcntl(descriptor, F_GETFD);
    return rememberOutcome(flags < 0 ? flags : fcntl(descriptor, F_SETFD, flags & ~FD_CLOEXEC));
}

} // namespace orvcore
