#pragma once

#include "orv/Reference.h"
#include "orv/ipc/Semaphore.h"
#include "orv/sync/Mutex.h"

#include <cstdint>

namespace orv::ipc {

/// A named semaphore that its holder, a thread, may take again: each wait() wants a signal(), and
/// only the last of them gives the count back.
///
/// It is made for locks between processes, with an initial count of 1.
///
/// Every operation takes a mutex for its whole length, wait() while it waits too. So one object is
/// for one thread at a time: another thread that waits keeps the holder from its signal(), for
/// ever. Threads that are to exclude each other open the name each for themselves.
///
/// What the holder guards may be left half done if it is killed. Where that can be put right by
/// cutting a file back, its length before the work is noted here:
///
///     lock->wait();
///     if (lock->isAfterDeath() && lock->recallFileSize() >= 0) cut(lock->recallFileSize());
///     lock->noteFileSize(size);
///     write();
///     lock->noteFileSize(-1);
///     lock->signal();
///
/// A note lasts as long as some process has the semaphore open.
class ORV_API SemaphoreR : public Semaphore {
public:
    /// Opens the semaphore as Semaphore does. `lock` is the mutex, on the heap and shared with the
    /// caller; null stands for one of its own.
    SemaphoreR(const char* name, std::uint32_t initialCount, sync::Mutex* lock = nullptr);
    SemaphoreR(const SemaphoreR&) = delete;
    SemaphoreR& operator=(const SemaphoreR&) = delete;
    ~SemaphoreR() noexcept(false) override;

    void wait() override;

    /// As wait(), but false where it would have to wait for the count. Never throws.
    bool tryWait() noexcept override;

    /// Does nothing, and says nothing, when the caller is not the holder.
    void signal() override;

    /// Whether the present hold was that of a process which died with it. To be asked by the
    /// holder.
    bool isAfterDeath() const noexcept { return m_afterDeath; }

    /// Notes that the file guarded was `size` bytes long before the work under way; -1 takes the
    /// note back. To be called by the holder.
    void noteFileSize(std::int64_t size) noexcept;

    /// The length noted last, -1 when there is none. To be called by the holder.
    std::int64_t recallFileSize() const noexcept;

private:
    Result take(Result (*operation)(ORVHandle));

    std::uint32_t m_owner = 0; ///< a thread, 0 for none
    std::int32_t m_holds = 0;
    Reference<sync::Mutex> m_lock;
    bool m_afterDeath = false;
};

} // namespace orv::ipc
