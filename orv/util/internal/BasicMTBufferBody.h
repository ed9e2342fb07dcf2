#pragma once

#include "orv/sync/Lock.h"
#include "orv/util/BasicMTBuffer.h"

/// \file
/// The bodies of BasicMTBuffer, for the two sources that instantiate it.

namespace orv::util {

template <class Base>
BasicMTBuffer<Base>::BasicMTBuffer(const BasicMTBuffer& other) : Base(other)
{
}

template <class Base>
BasicMTBuffer<Base>& BasicMTBuffer<Base>::operator=(const BasicMTBuffer& other)
{
    Base::operator=(other);
    return *this;
}

template <class Base>
BasicMTBuffer<Base>::~BasicMTBuffer() noexcept(false) = default;

template <class Base>
auto BasicMTBuffer<Base>::getReadLock() const -> const Unit*
{
    m_lock.waitShared();
    return this->getData();
}

template <class Base>
void BasicMTBuffer<Base>::releaseReadLock() const
{
    m_lock.signal();
}

template <class Base>
auto BasicMTBuffer<Base>::getWriteLock(std::int32_t capacity) -> Unit*
{
    m_lock.wait();
    try {
        return this->ensureCapacity(capacity);
    } catch (...) {
        m_lock.signal();
        throw;
    }
}

template <class Base>
void BasicMTBuffer<Base>::releaseWriteLock(std::int32_t length)
{
    Base::releaseWriteLock(length);
    m_lock.signal();
}

template <class Base>
void BasicMTBuffer<Base>::freeExtra()
{
    const sync::Lock lock(m_lock);
    Base::freeExtra();
}

} // namespace orv::util
