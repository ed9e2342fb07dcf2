#include "platform/posix/internal/SocketHold.h"
#include "platform/posix/internal/SocketErrors.h"

#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

// A descriptor that is closed while a thread waits on it does not wake that thread, and may be
// given to the next file opened while the thread still means the old one. So each socket in use has
// a count of its users, and closing it with users inside shuts it down, which wakes them, and
// leaves the descriptor to the last of them.

namespace orvcore {
namespace {

using Users = std::atomic<std::uint32_t>;

constexpr std::uint32_t closing = 1u << 31;

constexpr int chunkBits = 10;
constexpr int chunkSize = 1 << chunkBits;
constexpr int chunkCount = 1024;

// Descriptors come in ascending order, so few chunks are ever made; they live as long as we do.
constinit std::atomic<Users*> s_chunks[chunkCount];

Users* madeChunk(std::atomic<Users*>& place) noexcept
{
    auto* const memory = static_cast<Users*>(allocateRaw(sizeof(Users) * chunkSize));
    if (memory == nullptr) return nullptr;
    for (int i = 0; i < chunkSize; ++i) new (memory + i) Users(0);
    Users* present = nullptr;
    if (place.compare_exchange_strong(present, memory)) return memory;
    deallocateRaw(memory);
    return present;
}

// Null where the count cannot be kept: without memory, and for descriptors beyond a million.
Users* usersOf(int descriptor) noexcept
{
    const int chunk = descriptor >> chunkBits;
    if (descriptor < 0 || chunk >= chunkCount) return nullptr;
    Users* users = s_chunks[chunk].load(std::memory_order_acquire);
    if (users == nullptr) users = madeChunk(s_chunks[chunk]);
    return users == nullptr ? nullptr : users + (descriptor & (chunkSize - 1));
}

// Adds a user and `mark`, unless the socket is being closed. Stores the users before.
bool enter(Users& users, std::uint32_t mark, std::uint32_t* before) noexcept
{
    *before = users.load();
    while ((*before & closing) == 0) {
        if (users.compare_exchange_weak(*before, (*before + 1) | mark)) return true;
    }
    return false;
}

SocketError closeDescriptor(int descriptor) noexcept
{
    // An interrupted close has closed the descriptor all the same.
    return close(descriptor) == 0 || errno == EINTR ? 0 : socketErrorOf(errno);
}

SocketError leave(Users& users, int descriptor) noexcept
{
    if (users.fetch_sub(1) != (closing | 1)) return 0;
    // From the next line on the count is that of the descriptor's next owner.
    users.store(0);
    return closeDescriptor(descriptor);
}

} // namespace

void SocketHold::take(const std::atomic<NativeSocket>& place) noexcept
{
    const NativeSocket socket = place.load();
    if (socket == NO_SOCKET) return;
    m_users = usersOf(descriptorOf(socket));
    std::uint32_t before = 0;
    if (m_users != nullptr && !enter(*m_users, 0, &before)) return;
    m_socket = socket;
    // Whoever closes has emptied the place before it looks for users.
    if (place.load() != socket) release();
}

void SocketHold::release() noexcept
{
    if (m_socket == NO_SOCKET) return;
    const int descriptor = descriptorOf(m_socket);
    m_socket = NO_SOCKET;
    if (m_users != nullptr) static_cast<void>(leave(*m_users, descriptor));
}

bool isBeingClosed(int descriptor) noexcept
{
    const Users* const users = usersOf(descriptor);
    return users != nullptr && (users->load() & closing) != 0;
}

SocketError closeSocket(NativeSocket socket) noexcept
{
    const int descriptor = descriptorOf(socket);
    Users* const users = usersOf(descriptor);
    if (users == nullptr) return remember(closeDescriptor(descriptor));

    std::uint32_t before = 0;
    if (!enter(*users, closing, &before)) return remember(notASocket);
    if (before > 0) static_cast<void>(shutdown(descriptor, SHUT_RDWR));
    return remember(leave(*users, descriptor));
}

} // namespace orvcore
