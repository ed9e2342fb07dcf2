#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/log/ILevelLogger.h"
#include "orv/quark/Implements.h"
#include "orv/sync/Mutex.h"

namespace orv::log {

/// Lets the calls to another logger through one at a time.
///
/// Threads: any.
class ORV_API SyncLogger : public ::orv::quark::Implements<Object, ILevelLogger> {
public:
    /// Holds a reference on `target`. Throws ResultException with E_POINTER for null.
    explicit SyncLogger(ILevelLogger* target);
    ~SyncLogger() noexcept(false) override;

    void log(std::int32_t level, const String& text) override;

private:
    Reference<ILevelLogger> m_target;
    sync::Mutex m_lock;
};

} // namespace orv::log
