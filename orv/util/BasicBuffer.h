#pragma once

#include "orv/Failure.h"
#include "orv/Object.h"
#include "orv/util/IBasicBuffer.h"

#include <cstdint>
#include <limits>

namespace orv::util {

/// `capacity` in whole granules of 16 elements. Throws OutOfMemoryException where that does not
/// fit.
inline std::int32_t roundedCapacity(std::int32_t capacity)
{
    constexpr std::int32_t granule = 16;
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max() - granule + 1;
    if (capacity > largest) throwOutOfMemory();
    return (capacity + granule - 1) & ~(granule - 1);
}

/// What a character buffer and a byte buffer have in common: the operations of `Interface` as
/// result wrappers over nine operations that throw.
///
/// `Interface` is IORVCharBuffer or IORVByteBuffer; hosts use AbstractCharBuffer and
/// AbstractByteBuffer.
template <class Interface>
class ORV_API BasicAbstractBuffer : public ::orv::quark::Implements<Object, Interface> {
public:
    using Unit = typename Interface::Unit;

    /// Elements in use. Takes no lock.
    virtual std::int32_t getLength() const = 0;
    /// The first element, null where there is no memory. Takes no lock.
    virtual const Unit* getData() const = 0;
    /// Begins reading; returns the first element.
    virtual const Unit* getReadLock() const = 0;
    /// Ends reading.
    virtual void releaseReadLock() const = 0;
    /// Whether the buffer can be written.
    virtual bool isWritable() const = 0;
    /// Begins writing with room for `capacity` elements; returns the first. Throws
    /// ReadOnlyException where the buffer is read-only, OutOfMemoryException without memory.
    virtual Unit* getWriteLock(std::int32_t capacity) = 0;
    /// Within a write bracket: makes room for `capacity` elements; returns the first, which may
    /// have moved. Never shrinks and leaves the length. Throws as getWriteLock().
    virtual Unit* ensureCapacity(std::int32_t capacity) = 0;
    /// Ends writing. The length becomes `length`; a negative one leaves it.
    virtual void releaseWriteLock(std::int32_t length) = 0;
    /// Gives back room that is not used.
    virtual void freeExtra() = 0;

    /// Whether the length is 0.
    bool isEmpty() const { return getLength() == 0; }

    Result QueryInterface(const GUID& iid, void** out) override;
    std::int32_t GetLength() const override;
    const Unit* GetData() const override;
    Result GetReadLock(const Unit** data) const override;
    Result ReleaseReadLock() const override;
    std::int16_t IsWritable() const override;
    Result GetWriteLock(std::int32_t capacity, Unit** data) override;
    Result EnsureCapacity(std::int32_t capacity, Unit** data) override;
    Result ReleaseWriteLock(std::int32_t length) override;
    Result FreeExtra() override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

protected:
    BasicAbstractBuffer() noexcept = default;
};

/// A block of elements that knows its place: the common part of ROCharBuffer and RWCharBuffer.
///
/// Its fields can be read without a virtual call, which String does for buffers of its own.
template <class Abstract>
class ORV_API BasicPlainBuffer : public Abstract {
public:
    using Unit = typename Abstract::Unit;

    std::int32_t getLength() const override { return m_length; }
    const Unit* getData() const override { return m_data; }
    const Unit* getReadLock() const override { return m_data; }
    void releaseReadLock() const override {}
    std::int32_t GetLength() const override { return m_length; }
    const Unit* GetData() const override { return m_data; }

    /// The first element, without a virtual call.
    const Unit* plainData() const noexcept { return m_data; }
    /// Elements in use, without a virtual call.
    std::int32_t plainLength() const noexcept { return m_length; }
    /// Elements that can be written without growing: a multiple of 16, and 0 where the buffer is
    /// read-only or has no memory.
    std::int32_t plainCapacity() const noexcept { return m_capacity; }

protected:
    BasicPlainBuffer() noexcept = default;
    BasicPlainBuffer(Unit* data, std::int32_t length) noexcept : m_data(data), m_length(length) {}

    Unit* m_data = nullptr;      ///< never written through by the read-only kind
    std::int32_t m_length = 0;   ///< elements in use
    std::int32_t m_capacity = 0; ///< elements that fit, 0 in the read-only kind
};

/// A read-only view of memory that belongs to somebody else, who keeps it alive.
///
/// Writing throws ReadOnlyException; through the interface it gives E_NOTIMPL and raises nothing.
/// Copies view the same memory. Threads: any number of readers.
template <class Abstract>
class ORV_API BasicROBuffer : public BasicPlainBuffer<Abstract> {
public:
    using Unit = typename Abstract::Unit;

    /// Views nothing.
    BasicROBuffer() noexcept = default;
    BasicROBuffer(const BasicROBuffer& other) noexcept;
    /// Views `length` elements from `data`; `capacity` plays no part.
    BasicROBuffer(const Unit* data, std::int32_t length, std::int32_t capacity) noexcept;
    BasicROBuffer& operator=(const BasicROBuffer& other) noexcept;

    bool isWritable() const override;
    [[noreturn]] Unit* getWriteLock(std::int32_t capacity) override;
    [[noreturn]] Unit* ensureCapacity(std::int32_t capacity) override;
    [[noreturn]] void releaseWriteLock(std::int32_t length) override;
    void freeExtra() override;

    Result GetReadLock(const Unit** data) const override;
    Result ReleaseReadLock() const override;
    std::int16_t IsWritable() const override;
    Result GetWriteLock(std::int32_t capacity, Unit** data) override;
    Result EnsureCapacity(std::int32_t capacity, Unit** data) override;
    Result ReleaseWriteLock(std::int32_t length) override;
    Result FreeExtra() override;
};

/// A growing block of elements of its own.
///
/// Room comes in granules of 16 elements, with no growth factor: whoever knows the size asks for
/// it up front. Bounds: 2^31 - 16 elements. Without memory an operation throws
/// OutOfMemoryException, a std::bad_alloc that says "bad allocation", and changes nothing.
template <class Abstract>
class ORV_API BasicRWBuffer : public BasicPlainBuffer<Abstract> {
public:
    using Unit = typename Abstract::Unit;

    /// Holds no memory.
    BasicRWBuffer() noexcept = default;
    /// Has room for `capacity` elements; 0 holds no memory.
    explicit BasicRWBuffer(std::int32_t capacity);
    /// Copies `length` elements into room for the larger of `capacity` and `length`.
    BasicRWBuffer(const Unit* data, std::int32_t length, std::int32_t capacity);
    BasicRWBuffer(const BasicRWBuffer& other);
    /// Copies content and capacity through this buffer's own write bracket; `other` is not locked.
    BasicRWBuffer& operator=(const BasicRWBuffer& other);
    ~BasicRWBuffer() noexcept(false) override
    {
        if (!m_inline) orvcore::deallocateRaw(this->m_data);
    }

    bool isWritable() const override;
    Unit* getWriteLock(std::int32_t capacity) override;
    Unit* ensureCapacity(std::int32_t capacity) override;
    void releaseWriteLock(std::int32_t length) override;
    void freeExtra() override;

    /// ensureCapacity() without a virtual call.
    Unit* reserve(std::int32_t capacity)
    {
        if (this->m_capacity < capacity) reallocate(capacity);
        return this->m_data;
    }
    /// Sets the length, which must fit, without a virtual call.
    void setPlainLength(std::int32_t length) noexcept { this->m_length = length; }
    /// The first element, without a virtual call.
    Unit* plainUnits() noexcept { return this->m_data; }
    /// Whether the elements lie in the block of the object itself.
    bool isCompact() const noexcept { return m_inline; }

protected:
    /// Makes the room `capacity`, rounded up; 0 frees the memory and the content. The length is
    /// otherwise left, so a room below it is the caller's affair.
    void reallocate(std::int32_t capacity);

    /// Uses `units`, which lie behind the object in its own block, until more are needed.
    void adoptInline(Unit* units, std::int32_t capacity) noexcept
    {
        this->m_data = units;
        this->m_capacity = capacity;
        m_inline = true;
    }

private:
    bool m_inline = false; ///< the elements lie in the object's own block
};

} // namespace orv::util
