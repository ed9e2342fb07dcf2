#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/exec/IRunnable.h"
#include "platform/orvcore.h"

namespace orv::exec {

/// Runs an IRunnable on a thread of its own.
///
///     Reference<Thread> thread = makeReference<Thread>(makeReference<Job>().get());
///     thread->start();
///     ...
///     void* const result = thread->join();
///
/// A thread that nobody joins goes its own way: destroying the object lets it run on to its end.
/// The runnable lives until then, held by the thread.
///
/// The new thread has all signals blocked; they are for the threads of the host.
///
/// Errors: IllegalStateException "thread already started" and "thread not started".
/// Threads: the object is driven from one thread at a time; getCurrentID() and sleep() by any.
class ORV_API Thread : public Object {
public:
    /// Holds a reference on `runnable`. A thread without one ends at once, with the result null.
    explicit Thread(IRunnable* runnable);
    /// The same with a name, which only getName() tells.
    Thread(IRunnable* runnable, const String& name);
    /// A thread that is not started, with the runnable, the name and the stack size of `other`.
    Thread(const Thread& other);
    Thread& operator=(const Thread&) = delete;
    /// Lets a running thread run on.
    ~Thread() noexcept(false) override;

    /// As the copy constructor. Throws CloneNotSupportedException for an object of a derived class.
    Object* clone() const override;

    /// The name given at construction, empty without one.
    String getName() const { return m_name; }

    /// Sets the room for the stack, in bytes; too small a size is raised to what a thread needs, 0
    /// asks for no particular size. Not while the thread is started and not joined.
    void setStackSize(std::uint32_t bytes);

    /// Starts the thread, again too, once it has been joined. Throws ResultException "thread
    /// creation failed".
    void start();

    /// Waits for the end of the thread and gives what run() returned; null after an exception.
    ///
    /// Afterwards the thread counts as not started: a second join() says "thread not started", and
    /// start() runs the same runnable anew. ResultException "thread join failed" changes nothing.
    void* join();

    /// The identifier of the thread between start() and join(), as getCurrentID() gives it there.
    std::uint32_t getID() const;

    /// The identifier of the calling thread, never 0.
    static std::uint32_t getCurrentID() noexcept;

    /// Lets the calling thread sleep for `milliseconds`; 0 lets others run, 0xFFFFFFFF never ends.
    static void sleep(std::uint32_t milliseconds) noexcept;

private:
    void checkStarted() const;
    void checkNotStarted() const;
    static void* threadWrapper(void* runnable);

    Reference<IRunnable> m_runnable;
    String m_name;
    std::uint32_t m_stackSize = 0;
    ORVHandle m_handle = ORV_NO_HANDLE;
    std::uint32_t m_id = 0;
};

} // namespace orv::exec
