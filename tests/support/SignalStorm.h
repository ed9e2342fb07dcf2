#pragma once

#include <atomic>
#include <thread>

#include <csignal>
#include <pthread.h>

namespace orv::test {

/// Interrupts the thread that made it by signals, without a pause, until the end of the scope.
class SignalStorm {
public:
    SignalStorm()
    {
        struct sigaction action {};
        action.sa_handler = [](int) { ++s_interruptions; };
        ::sigaction(SIGUSR1, &action, &m_before);
        m_thread = std::thread([this, target = ::pthread_self()] {
            while (!m_over.load()) {
                ::pthread_kill(target, SIGUSR1);
                std::this_thread::yield();
            }
        });
    }
    ~SignalStorm()
    {
        m_over.store(true);
        m_thread.join();
        ::sigaction(SIGUSR1, &m_before, nullptr);
    }
    SignalStorm(const SignalStorm&) = delete;
    SignalStorm& operator=(const SignalStorm&) = delete;

    /// Waits until storms have interrupted so many times more.
    static void awaitInterruptions(int count)
    {
        const int target = s_interruptions + count;
        while (s_interruptions < target) std::this_thread::yield();
    }

private:
    static inline std::atomic<int> s_interruptions{0};
    struct sigaction m_before {};
    std::atomic<bool> m_over{false};
    std::thread m_thread;
};

} // namespace orv::test
