#pragma once

#include "orv/exec/Thread.h"
#include "tests/support/Living.h"

#include <functional>
#include <utility>

namespace orv::exec {

/// A runnable around a function.
class Job : public ::orv::quark::Implements<test::Living, IRunnable> {
public:
    explicit Job(std::function<void*()> work) : m_work(std::move(work)) {}
    void* run() override { return m_work(); }

private:
    std::function<void*()> m_work;
};

inline Reference<Job> jobOf(std::function<void*()> work)
{
    return makeReference<Job>(std::move(work));
}

/// A started thread that does `work`.
inline Reference<Thread> startThread(std::function<void()> work)
{
    const auto job = jobOf([work = std::move(work)]() -> void* {
        work();
        return nullptr;
    });
    Reference<Thread> thread = makeReference<Thread>(job.get());
    thread->start();
    return thread;
}

} // namespace orv::exec
