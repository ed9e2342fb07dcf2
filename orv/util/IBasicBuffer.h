#pragma once

#include "orv/IORVUnknown.h"

namespace orv::util {

/// The slots of a counted block of elements, by which text and bytes cross interfaces.
///
/// Access is bracketed: GetReadLock() .. ReleaseReadLock() and GetWriteLock() ..
/// ReleaseWriteLock(). On plain buffers the brackets cost nothing, on the locked kinds they lock,
/// and then they do not nest. Lengths and capacities count elements.
template <class UnitType>
class ORV_API IBasicBuffer : public IORVUnknown {
public:
    using Unit = UnitType;

    /// Elements in use. Takes no lock.
    virtual std::int32_t GetLength() const = 0;

    /// The first element; may be null where the length is 0. Takes no lock.
    virtual const Unit* GetData() const = 0;

    /// Begins reading and stores the first element in `*data`.
    virtual Result GetReadLock(const Unit** data) const = 0;

    /// Ends reading.
    virtual Result ReleaseReadLock() const = 0;

    /// 1 where the buffer can be written, else 0.
    virtual std::int16_t IsWritable() const = 0;

    /// Begins writing with room for `capacity` elements and stores the first in `*data`.
    /// E_NOTIMPL and null where the buffer is read-only.
    virtual Result GetWriteLock(std::int32_t capacity, Unit** data) = 0;

    /// Within a write bracket: makes room for `capacity` elements, which may move them.
    virtual Result EnsureCapacity(std::int32_t capacity, Unit** data) = 0;

    /// Ends writing. The length becomes `length`; a negative one leaves it.
    virtual Result ReleaseWriteLock(std::int32_t length) = 0;

    /// Gives back room that is not used.
    virtual Result FreeExtra() = 0;

protected:
    ~IBasicBuffer() = default;
};

} // namespace orv::util
