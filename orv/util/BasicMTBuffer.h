#pragma once

#include "orv/sync/ReaderWriterLock.h"

#include <cstdint>

namespace orv::util {

/// A growing buffer for several threads, whose brackets lock: any number of readers, or one writer
/// from getWriteLock() to releaseWriteLock().
///
/// `Base` is RWCharBuffer or RWByteBuffer; hosts use MTCharBuffer and MTByteBuffer. Brackets do not
/// nest. getLength(), getData() and ensureCapacity() take no lock: they are for use within a
/// bracket.
///
/// Copying and assigning do not lock the other buffer; assigning takes the write bracket of this
/// one.
template <class Base>
class ORV_API BasicMTBuffer : public Base {
public:
    using Unit = typename Base::Unit;

    using Base::Base;
    BasicMTBuffer() = default;
    BasicMTBuffer(const BasicMTBuffer& other);
    BasicMTBuffer& operator=(const BasicMTBuffer& other);
    ~BasicMTBuffer() noexcept(false) override;

    const Unit* getReadLock() const override;

    /// Gives back the read lock, through the release that serves both sides of the lock.
    void releaseReadLock() const override;

    /// Holds no lock when it throws for lack of memory.
    Unit* getWriteLock(std::int32_t capacity) override;
    void releaseWriteLock(std::int32_t length) override;

    /// Takes the write lock for its length.
    void freeExtra() override;

private:
    mutable sync::ReaderWriterLock m_lock;
};

} // namespace orv::util
