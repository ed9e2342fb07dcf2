#include "orv/exec/Thread.h"
#include "orv/sync/Condition.h"
#include "orv/sync/Event.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"

#include "bench/common/Case.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <semaphore>
#include <shared_mutex>
#include <string>
#include <thread>

#if __has_include(<QMutex>)
#include <QMutex>
#include <QReadWriteLock>
#include <QSemaphore>
#include <QThread>
#include <QWaitCondition>
#endif
#if __has_include(<Poco/Mutex.h>)
#include <Poco/Condition.h>
#include <Poco/Event.h>
#include <Poco/Mutex.h>
#include <Poco/RWLock.h>
#include <Poco/Semaphore.h>
#include <Poco/Thread.h>
#endif

// Locks alone and contended; semaphores, self-resetting events and conditions alone and handed over
// between two threads; threads that are started and joined. "pinned" figures, with all threads on
// one processor, tell the code apart from the cost of waking an idle processor: taskset -c 0.

namespace orv::bench {
namespace {

template <class Lock>
void addLock(const std::string& kind, const char* peer)
{
    addCase(kind + "/uncontended", peer, [](benchmark::State& state) {
        Lock lock;
        for (auto _ : state) {
            lock.lock();
            benchmark::ClobberMemory();
            lock.unlock();
        }
    });
    addCase(kind + "/2_threads", peer,
            [](benchmark::State& state) {
                static Lock lock;
                static long guarded = 0;
                for (auto _ : state) {
                    lock.lock();
                    benchmark::DoNotOptimize(guarded);
                    lock.unlock();
                }
            })
        ->Threads(2)
        ->UseRealTime();
}

template <class Signal>
void addSignal(const std::string& kind, const char* peer)
{
    addCase(kind + "_signal_wait/uncontended", peer, [](benchmark::State& state) {
        Signal signal;
        for (auto _ : state) {
            signal.signal();
            signal.wait();
        }
    });
    // Two threads wake each other in turn; one iteration is there and back.
    addCase(kind + "_hand_over/round_trip", peer, [](benchmark::State& state) {
        Signal there;
        Signal back;
        std::atomic<bool> stop{false};
        std::thread other([&] {
            for (;;) {
                there.wait();
                if (stop.load(std::memory_order_relaxed)) return;
                back.signal();
            }
        });
        for (auto _ : state) {
            there.signal();
            back.wait();
        }
        stop = true;
        there.signal();
        other.join();
    })->UseRealTime();
}

/// `Run` starts a thread that does nothing and joins it.
template <class Run>
void addThread(const char* peer)
{
    addCase("thread/start_join", peer, [](benchmark::State& state) {
        Run run;
        for (auto _ : state) run();
    })->UseRealTime();
}

// The library

struct OrvMutex {
    sync::Mutex mutex;
    void lock() { mutex.wait(); }
    void unlock() { mutex.signal(); }
};
struct OrvRead {
    sync::ReaderWriterLock mutex;
    void lock() { mutex.waitShared(); }
    void unlock() { mutex.signalShared(); }
};
struct OrvWrite {
    sync::ReaderWriterLock mutex;
    void lock() { mutex.wait(); }
    void unlock() { mutex.signal(); }
};
struct OrvSemaphore : sync::Semaphore {
    OrvSemaphore() : Semaphore(0) {}
};

struct OrvCondition {
    sync::Condition condition;
    bool set = false;
    void signal()
    {
        const sync::Condition::Holder guard(condition);
        set = true;
        condition.signal();
    }
    void wait()
    {
        const sync::Condition::Holder guard(condition);
        while (!set) condition.wait();
        set = false;
    }
};
struct OrvThread {
    struct Nothing : quark::Implements<Object, exec::IRunnable> {
        void* run() override { return nullptr; }
    };
    const Reference<Nothing> nothing = makeReference<Nothing>();
    void operator()() const
    {
        exec::Thread thread(nothing.get());
        thread.start();
        thread.join();
    }
};

// The standard library

struct StdRead {
    std::shared_mutex mutex;
    void lock() { mutex.lock_shared(); }
    void unlock() { mutex.unlock_shared(); }
};
struct StdSemaphore {
    std::counting_semaphore<> semaphore{0};
    void signal() { semaphore.release(); }
    void wait() { semaphore.acquire(); }
};
struct StdEvent {
    std::mutex mutex;
    std::condition_variable condition;
    bool set = false;
    void signal()
    {
        const std::lock_guard guard(mutex);
        set = true;
        condition.notify_one();
    }
    void wait()
    {
        std::unique_lock guard(mutex);
        condition.wait(guard, [this] { return set; });
        set = false;
    }
};

struct StdThread {
    void operator()() const
    {
        std::thread([] {}).join();
    }
};

void addStd()
{
    addLock<std::mutex>("mutex_lock_unlock", "std");
    addLock<std::recursive_mutex>("recursive_mutex_lock_unlock", "std");
    addLock<StdRead>("rwlock_read", "std");
    addLock<std::shared_mutex>("rwlock_write", "std");
    addSignal<StdSemaphore>("semaphore", "std");
    addSignal<StdEvent>("event", "std_condition");
    addSignal<StdEvent>("condition", "std");
    addThread<StdThread>("std");
}

#if __has_include(<QMutex>)
struct QtRead {
    QReadWriteLock mutex;
    void lock() { mutex.lockForRead(); }
    void unlock() { mutex.unlock(); }
};
struct QtWrite {
    QReadWriteLock mutex;
    void lock() { mutex.lockForWrite(); }
    void unlock() { mutex.unlock(); }
};
struct QtSemaphore {
    QSemaphore semaphore;
    void signal() { semaphore.release(); }
    void wait() { semaphore.acquire(); }
};
struct QtEvent {
    QMutex mutex;
    QWaitCondition condition;
    bool set = false;
    void signal()
    {
        const QMutexLocker guard(&mutex);
        set = true;
        condition.wakeOne();
    }
    void wait()
    {
        const QMutexLocker guard(&mutex);
        while (!set) condition.wait(&mutex);
        set = false;
    }
};

struct QtThread {
    struct Nothing : QThread {
        void run() override {}
    };
    void operator()() const
    {
        Nothing thread;
        thread.start();
        thread.wait();
    }
};

void addQt()
{
    addLock<QMutex>("mutex_lock_unlock", "qt");
    addLock<QRecursiveMutex>("recursive_mutex_lock_unlock", "qt");
    addLock<QtRead>("rwlock_read", "qt");
    addLock<QtWrite>("rwlock_write", "qt");
    addSignal<QtSemaphore>("semaphore", "qt");
    addSignal<QtEvent>("event", "qt_condition");
    addSignal<QtEvent>("condition", "qt");
    addThread<QtThread>("qt");
}
#endif

#if __has_include(<Poco/Mutex.h>)
struct PocoRead {
    Poco::RWLock mutex;
    void lock() { mutex.readLock(); }
    void unlock() { mutex.unlock(); }
};
struct PocoWrite {
    Poco::RWLock mutex;
    void lock() { mutex.writeLock(); }
    void unlock() { mutex.unlock(); }
};
struct PocoSemaphore {
    Poco::Semaphore semaphore{0, 1 << 30};
    void signal() { semaphore.set(); }
    void wait() { semaphore.wait(); }
};
struct PocoEvent {
    Poco::Event event{Poco::Event::EVENT_AUTORESET};
    void signal() { event.set(); }
    void wait() { event.wait(); }
};

struct PocoCondition {
    Poco::FastMutex mutex;
    Poco::Condition condition;
    bool set = false;
    void signal()
    {
        const Poco::FastMutex::ScopedLock guard(mutex);
        set = true;
        condition.signal();
    }
    void wait()
    {
        const Poco::FastMutex::ScopedLock guard(mutex);
        while (!set) condition.wait(mutex);
        set = false;
    }
};
struct PocoThread {
    void operator()() const
    {
        Poco::Thread thread;
        thread.startFunc([] {});
        thread.join();
    }
};

void addPoco()
{
    addLock<Poco::FastMutex>("mutex_lock_unlock", "poco");
    addLock<Poco::Mutex>("recursive_mutex_lock_unlock", "poco");
    addLock<PocoRead>("rwlock_read", "poco");
    addLock<PocoWrite>("rwlock_write", "poco");
    addSignal<PocoSemaphore>("semaphore", "poco");
    addSignal<PocoEvent>("event", "poco");
    addSignal<PocoCondition>("condition", "poco");
    addThread<PocoThread>("poco");
}
#endif

const bool registered = [] {
    // The library's mutex is recursive; the plain ones of the peers do less.
    addLock<OrvMutex>("mutex_lock_unlock", LIBRARY);
    addLock<OrvMutex>("recursive_mutex_lock_unlock", LIBRARY);
    addLock<OrvRead>("rwlock_read", LIBRARY);
    addLock<OrvWrite>("rwlock_write", LIBRARY);
    addSignal<OrvSemaphore>("semaphore", LIBRARY);
    addSignal<sync::Event>("event", LIBRARY);
    addSignal<OrvCondition>("condition", LIBRARY);
    addThread<OrvThread>(LIBRARY);
    addStd();
#if __has_include(<QMutex>)
    addQt();
#endif
#if __has_include(<Poco/Mutex.h>)
    addPoco();
#endif
    return true;
}();

} // namespace
} // namespace orv::bench
