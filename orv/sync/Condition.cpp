#include "orv/sync/Condition.h"

#include "orv/Failure.h"
#include "platform/internal/LockWords.h"

#include <exception>

namespace orv::sync {
namespace {

orvcore::ConditionWords& wordsOf(ORVHandle handle) noexcept
{
    return orvcore::wordsOf<orvcore::ConditionWords>(handle);
}

} // namespace

Condition::Holder::Holder(Condition& condition)
    : m_condition(condition), m_unwinding(std::uncaught_exceptions())
{
    m_condition.acquire();
}

Condition::Holder::~Holder() noexcept(false)
{
    if (wordsOf(m_condition.m_handle).owner.tryRelease()) return;
    const Result result = ORVConditionRelease(m_condition.m_handle);
    if (failed(result) && std::uncaught_exceptions() == m_unwinding) throwResult(result);
}

Condition::Condition(const char* name, std::uint32_t flags)
{
    throwIfFailed(ORVConditionCreate(name, flags, &m_handle));
}

Condition::~Condition() noexcept(false)
{
    ORVConditionDestroy(m_handle);
}

void Condition::acquire()
{
    if (wordsOf(m_handle).owner.tryAcquire()) return;
    throwIfFailed(ORVConditionAcquire(m_handle));
}

void Condition::release()
{
    if (wordsOf(m_handle).owner.tryRelease()) return;
    throwIfFailed(ORVConditionRelease(m_handle));
}

void Condition::wait()
{
    throwIfFailed(ORVConditionWait(m_handle));
}

void Condition::wait(std::uint32_t milliseconds)
{
    throwIfFailed(ORVConditionTimedWait(m_handle, milliseconds));
}

void Condition::signal()
{
    if (wordsOf(m_handle).hasNoWaiter()) return;
    throwIfFailed(ORVConditionSignal(m_handle));
}

void Condition::broadcast()
{
    if (wordsOf(m_handle).hasNoWaiter()) return;
    throwIfFailed(ORVConditionBroadcast(m_handle));
}

} // namespace orv::sync
