#pragma once

#include <csignal>

/// \file
/// Writing to pipes whose reader has gone.

namespace orvcore {

/// Keeps SIGPIPE from the calling thread while it lives and takes away the one that came
/// meanwhile. A signal that was pending before is left pending.
class SigpipeGuard {
public:
    SigpipeGuard() noexcept;
    ~SigpipeGuard();
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;

private:
    sigset_t m_before;
    bool m_wasPending;
};

} // namespace orvcore
