#include "platform/files.h"
#include "platform/posix/internal/SocketErrors.h"
#include "platform/posix/internal/SocketHold.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/time.h>
#include <time.h>

namespace orvcore {
namespace {

constexpr std::int64_t microsecondsInSecond = 1'000'000;

// So that a limit can be added to the clock.
constexpr std::int64_t longestLimit = INT64_MAX / 2;

// How long a socket that hangs up, which nobody asked to know, stays out of a wait.
constexpr std::int64_t quietTime = microsecondsInSecond / 5;

/// The moment at which a wait ends.
class End {
public:
    explicit End(std::int64_t limit) noexcept : m_limit(std::min(limit, longestLimit))
    {
        if (m_limit > 0) m_moment = now() + m_limit;
    }

    /// Microseconds left, FOR_EVER where there is no end.
    std::int64_t left() const noexcept
    {
        if (m_limit <= 0) return m_limit;
        return std::max<std::int64_t>(0, m_moment - now());
    }

private:
    static std::int64_t now() noexcept
    {
        timespec time{};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return time.tv_sec * microsecondsInSecond + time.tv_nsec / 1000;
    }

    std::int64_t m_limit;
    std::int64_t m_moment = 0;
};

int pollFor(pollfd* polls, std::uint32_t count, std::int64_t microseconds) noexcept
{
    if (microseconds < 0) return ppoll(polls, count, nullptr, nullptr);
    const timespec time{microseconds / microsecondsInSecond,
                        microseconds % microsecondsInSecond * 1000};
    return ppoll(polls, count, &time, nullptr);
}

// A number that can be no descriptor is to be answered like one that is not open; a negative one
// would be passed over.
int descriptorToPoll(NativeSocket socket) noexcept
{
    const int descriptor = descriptorOf(socket);
    return descriptor < 0 ? INT_MAX : descriptor;
}

short eventsOf(std::uint8_t wanted) noexcept
{
    int events = 0;
    if ((wanted & READY_TO_READ) != 0) events |= POLLIN;
    if ((wanted & READY_TO_WRITE) != 0) events |= POLLOUT;
    if ((wanted & READY_EXCEPT) != 0) events |= POLLPRI;
    return static_cast<short>(events);
}

std::uint8_t readinessOf(int events) noexcept
{
    int ready = 0;
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) ready |= READY_TO_READ;
    if ((events & (POLLOUT | POLLERR)) != 0) ready |= READY_TO_WRITE;
    if ((events & (POLLPRI | POLLERR)) != 0) ready |= READY_EXCEPT;
    return static_cast<std::uint8_t>(ready);
}

/// The sockets of one wait, in the form that poll() takes.
class Polls {
public:
    Polls(SocketWait* waits, std::uint32_t count) noexcept : m_waits(waits), m_count(count)
    {
        for (std::uint32_t i = 0; i < count; ++i) {
            m_polls[i] = {descriptorToPoll(waits[i].socket), eventsOf(waits[i].wanted), 0};
            waits[i].ready = 0;
        }
    }

    int wait(std::int64_t microseconds) noexcept { return pollFor(m_polls, m_count, microseconds); }

    /// Stores what came true and counts it; notASocket for a descriptor that is none, or whose
    /// socket another thread is closing.
    SocketError collect(std::int32_t* ready) noexcept
    {
        std::int32_t count = 0;
        for (std::uint32_t i = 0; i < m_count; ++i) {
            const int events = m_polls[i].revents;
            if (events == 0) continue;
            if ((events & POLLNVAL) != 0) return notASocket;
            m_waits[i].ready = readinessOf(events) & m_waits[i].wanted;
            if (m_waits[i].ready == 0 && isBeingClosed(m_polls[i].fd)) return notASocket;
            count += __builtin_popcount(m_waits[i].ready);
        }
        *ready = count;
        return 0;
    }

    /// Takes the sockets that answered out of the wait, or puts all back.
    void setQuiet(bool quiet) noexcept
    {
        for (std::uint32_t i = 0; i < m_count; ++i) {
            const int descriptor = descriptorToPoll(m_waits[i].socket);
            m_polls[i].fd = quiet && m_polls[i].revents != 0 ? ~descriptor : descriptor;
        }
    }

private:
    SocketWait* m_waits;
    std::uint32_t m_count;
    pollfd m_polls[MOST_WAITS];
};

// The system always tells of a socket that hangs up. Where only writing or exceptions are of
// interest this must not end the wait, nor keep the processor busy.
SocketError waitUntilReady(Polls& polls, const End& end, std::int32_t* ready) noexcept
{
    bool quiet = false;
    for (;;) {
        const std::int64_t left = end.left();
        const bool cut = quiet && (left < 0 || left > quietTime);
        const int answered = polls.wait(cut ? quietTime : left);
        if (answered < 0 && errno != EINTR) return rememberFailure();
        if (answered == 0 && !cut) return remember(0);
        if (answered > 0) {
            const SocketError error = polls.collect(ready);
            if (error != 0 || *ready > 0) return remember(error);
        }
        quiet = answered > 0 && !quiet;
        polls.setQuiet(quiet);
    }
}

} // namespace

SocketError microsecondsOf(const timeval* limit, std::int64_t* out) noexcept
{
    *out = FOR_EVER;
    if (limit == nullptr) return 0;
    if (limit->tv_sec < 0 || limit->tv_usec < 0) return SOCKET_INVALID_ARGUMENT;
    constexpr std::int64_t mostSeconds = longestLimit / microsecondsInSecond;
    *out = std::min<std::int64_t>(limit->tv_sec, mostSeconds) * microsecondsInSecond +
           std::min<std::int64_t>(limit->tv_usec, longestLimit);
    return 0;
}

SocketError waitForSockets(SocketWait* waits, std::uint32_t count, std::int64_t limit,
                           std::int32_t* ready) noexcept
{
    *ready = 0;
    if (count > MOST_WAITS) return remember(SOCKET_INVALID_ARGUMENT);
    Polls polls(waits, count);
    return waitUntilReady(polls, End(limit), ready);
}

bool awaitInput(NativeSocket socket, ORVHandle input) noexcept
{
    pollfd polls[] = {{descriptorFromFileHandle(input), POLLIN, 0},
                      {descriptorToPoll(socket), POLLRDHUP, 0}};
    while (pollFor(polls, 2, FOR_EVER) < 0 && errno == EINTR) {
    }
    return polls[0].revents != 0;
}

} // namespace orvcore
