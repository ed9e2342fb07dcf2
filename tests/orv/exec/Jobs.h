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

/// A job that does `work` and gives null.
inline Reference<Job> jobOf(std::function<void()> work)
{
    return makeReference<Job>([work = std::move(work)]() -> void* {
        work();
        return nullptr;
    });
}

/// A started thread that does `work`.
inline Reference<Thread> startThread(std::function<void()> work)
{
    Reference<Thread> thread = makeReference<Thread>(jobOf(std::move(work)).get());
    thread->start();
    return thread;
}

} // namespace orv::exec
