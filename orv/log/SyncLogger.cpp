#include "orv/log/SyncLogger.h"

#include "orv/Failure.h"
#include "orv/sync/Lock.h"

namespace orv::log {

SyncLogger::SyncLogger(ILevelLogger* target)
    : m_target(target), m_lock("orv::log::SyncLogger::m_lock")
{
    if (target == nullptr) throwResult(E_POINTER);
}

SyncLogger::~SyncLogger() noexcept(false) = default;

void SyncLogger::log(std::int32_t level, const String& text)
{
    const sync::Lock lock(m_lock);
    m_target->log(level, text);
}

} // namespace orv::log
