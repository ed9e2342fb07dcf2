#include "platform/posix/internal/SigpipeGuard.h"

#include <cerrno>
#include <ctime>

#include <pthread.h>
#include <signal.h>

namespace orvcore {
namespace {

bool isPending() noexcept
{
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

sigset_t onlySigpipe() noexcept
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

} // namespace

SigpipeGuard::SigpipeGuard() noexcept : m_wasPending(isPending())
{
    const sigset_t set = onlySigpipe();
    pthread_sigmask(SIG_BLOCK, &set, &m_before);
}

SigpipeGuard::~SigpipeGuard()
{
    const int error = errno;
    if (!m_wasPending && isPending()) {
        const sigset_t set = onlySigpipe();
        const timespec atOnce{};
        while (sigtimedwait(&set, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    errno = error;
}

} // namespace orvcore
