#pragma once

#include "orv/Export.h"
#include "orv/sync/Lock.h"
#include "orv/sync/LockObject.h"

#include <atomic>

namespace orv::util {

/// The one object of `T` in the process, built on first use under the lock that `*lock` points to.
///
/// Before the library's load and after its unload there is no lock, and the object is built
/// without one. Threads: getInstance() any; freeInstance() when nobody uses the object any more.
template <class T, sync::LockObject** lock>
class ORV_API Singleton final : public T {
public:
    /// The object, built if need be.
    static Singleton* getInstance()
    {
        if (Singleton* const present = m_instance.load(std::memory_order_acquire)) return present;
        if (*lock == nullptr) return build();
        const sync::Lock guard(**lock);
        return build();
    }

    /// Destroys the object, if there is one.
    static void freeInstance()
    {
        if (m_instance.load(std::memory_order_acquire) == nullptr) return;
        if (*lock == nullptr) return destroy();
        const sync::Lock guard(**lock);
        destroy();
    }

    /// The object, or null.
    static std::atomic<Singleton*> m_instance;

private:
    Singleton() = default;
    ~Singleton() = default;

    static Singleton* build()
    {
        Singleton* present = m_instance.load(std::memory_order_relaxed);
        if (present == nullptr) {
            present = new Singleton;
            m_instance.store(present, std::memory_order_release);
        }
        return present;
    }

    static void destroy() { delete m_instance.exchange(nullptr); }
};

template <class T, sync::LockObject** lock>
constinit std::atomic<Singleton<T, lock>*> Singleton<T, lock>::m_instance{nullptr};

} // namespace orv::util
