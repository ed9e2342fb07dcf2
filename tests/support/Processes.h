#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <thread>

#include <csignal>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

/// \file
/// Child processes that run a piece of the test, and how tests wait for other threads and processes
/// without sleeping for a guessed time.

namespace orv::test {

/// Looks at `condition` again and again; false when it does not come true within half a minute.
template <class Condition>
bool awaitTrue(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::yield();
    }
    return true;
}

/// Waits until the thread `id` of this process sleeps in the kernel.
inline bool awaitSleepOf(std::uint32_t id)
{
    return awaitTrue([path = "/proc/self/task/" + std::to_string(id) + "/stat"] {
        std::ifstream file(path);
        const std::string text((std::istreambuf_iterator<char>(file)), {});
        const std::size_t end = text.rfind(") ");
        return end != std::string::npos && text[end + 2] == 'S';
    });
}

/// Descriptors that this process has open.
inline std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Something of which parent and children see the same.
template <class T>
class SharedPage {
public:
    SharedPage()
        : m_content(new (::mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0)) T)
    {
    }
    ~SharedPage() { ::munmap(m_content, sizeof(T)); }
    SharedPage(const SharedPage&) = delete;
    SharedPage& operator=(const SharedPage&) = delete;

    T* operator->() const noexcept { return m_content; }
    T& operator*() const noexcept { return *m_content; }

private:
    T* m_content;
};

/// A child that runs `body` from here on and ends with the code that it returns; killed at the end
/// of the scope at the latest. To be made while this process has one thread.
class ForkedChild {
public:
    template <class Body>
    explicit ForkedChild(Body body) : m_process(::fork())
    {
        if (m_process == 0) ::_exit(body());
    }
    ~ForkedChild() { kill(); }
    ForkedChild(const ForkedChild&) = delete;
    ForkedChild& operator=(const ForkedChild&) = delete;

    /// Ends it by SIGKILL and waits until it is gone.
    void kill()
    {
        signal(SIGKILL);
        exitCode();
    }

    void signal(int number) const
    {
        if (m_process > 0) ::kill(m_process, number);
    }

    /// Waits for its end; -1 when a signal ended it.
    int exitCode()
    {
        if (m_process <= 0) return m_exitCode;
        int status = 0;
        while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
        }
        m_process = 0;
        m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return m_exitCode;
    }

    /// Ends it by SIGKILL without taking notice, so that it stays a zombie.
    void killOnly() const { signal(SIGKILL); }

private:
    pid_t m_process;
    int m_exitCode = -1;
};

} // namespace orv::test
