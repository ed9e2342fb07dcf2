#include "orv/exec/Thread.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "platform/threads.h"

#include <typeinfo>

namespace orv::exec {

Thread::Thread(IRunnable* runnable) : m_runnable(runnable) {}

Thread::Thread(IRunnable* runnable, const String& name) : m_runnable(runnable), m_name(name) {}

Thread::Thread(const Thread& other)
    : Object(other), m_runnable(other.m_runnable), m_name(other.m_name),
      m_stackSize(other.m_stackSize)
{
}

Thread::~Thread() noexcept(false)
{
    if (m_handle != ORV_NO_HANDLE) ORVThreadDetach(m_handle);
}

Object* Thread::clone() const
{
    if (typeid(*this) != typeid(Thread)) throwCloneNotSupported();
    return new Thread(*this);
}

void Thread::setStackSize(std::uint32_t bytes)
{
    checkNotStarted();
    m_stackSize = bytes;
}

void Thread::start()
{
    checkNotStarted();
    Reference<IRunnable> ofTheThread = m_runnable;
    const Result result = ORVThreadCreate(&Thread::threadWrapper, ofTheThread.get(), 0, m_stackSize,
                                          &m_handle, &m_id);
    if (failed(result)) throw ResultException(result, u"thread creation failed");
    static_cast<void>(ofTheThread.detach());
}

void* Thread::threadWrapper(void* runnable)
{
    // A cancelled thread gives the reference back too, as it unwinds.
    const auto own = Reference<IRunnable>::adopt(static_cast<IRunnable*>(runnable));
    void* value = nullptr;
    if (own) static_cast<void>(resultOf([&] { value = own->run(); }));
    return value;
}

void* Thread::join()
{
    checkStarted();
    void* value = nullptr;
    const Result result = ORVThreadJoin(m_handle, &value);
    if (failed(result)) throw ResultException(result, u"thread join failed");
    m_handle = ORV_NO_HANDLE;
    m_id = 0;
    return value;
}

std::uint32_t Thread::getID() const
{
    checkStarted();
    return m_id;
}

std::uint32_t Thread::getCurrentID() noexcept
{
    return orvcore::currentThreadId();
}

void Thread::sleep(std::uint32_t milliseconds) noexcept
{
    orvcore::sleepFor(milliseconds);
}

void Thread::checkStarted() const
{
    if (m_handle == ORV_NO_HANDLE) throw IllegalStateException(u"thread not started");
}

void Thread::checkNotStarted() const
{
    if (m_handle != ORV_NO_HANDLE) throw IllegalStateException(u"thread already started");
}

} // namespace orv::exec
