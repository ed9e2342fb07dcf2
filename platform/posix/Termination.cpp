#include "platform/termination.h"

#include <cerrno>
#include <csignal>

#include <unistd.h>

namespace orvcore {
namespace {

sigset_t requests() noexcept
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

void holdTermination() noexcept
{
    const sigset_t held = requests();
    pthread_sigmask(SIG_BLOCK, &held, nullptr);
}

void awaitTermination() noexcept
{
    const sigset_t awaited = requests();
    int signal = 0;
    while (sigwait(&awaited, &signal) == EINTR) {
    }
}

void requestTermination() noexcept
{
    kill(getpid(), SIGTERM);
}

} // namespace orvcore
