#pragma once

#include "orv/util/BasicBuffer.h"
#include "orv/util/ICharBuffer.h"

#include <cstddef>
#include <new>

namespace orv::util {

extern template class BasicAbstractBuffer<IORVCharBuffer>;

/// The root of the character buffers; see BasicAbstractBuffer for its operations.
class ORV_API AbstractCharBuffer : public BasicAbstractBuffer<IORVCharBuffer> {
public:
    Result QueryInterface(const GUID& iid, void** out) override;
};

extern template class BasicPlainBuffer<AbstractCharBuffer>;
extern template class BasicROBuffer<AbstractCharBuffer>;
extern template class BasicRWBuffer<AbstractCharBuffer>;

/// A character buffer whose fields are read without a virtual call.
using PlainCharBuffer = BasicPlainBuffer<AbstractCharBuffer>;

/// A read-only view of code units that belong to somebody else; see BasicROBuffer.
class ORV_API ROCharBuffer : public BasicROBuffer<AbstractCharBuffer> {
public:
    using BasicROBuffer::BasicROBuffer;
    ROCharBuffer() noexcept = default;
    bool isWritable() const override;
};

/// A growing block of code units of its own; see BasicRWBuffer.
class ORV_API RWCharBuffer : public BasicRWBuffer<AbstractCharBuffer> {
public:
    using BasicRWBuffer::BasicRWBuffer;
    RWCharBuffer() noexcept = default;
    bool isWritable() const override;

    /// A buffer on the heap, with count 0, whose first `capacity` units lie in the block of the
    /// object itself: one allocation instead of two. Throws OutOfMemoryException.
    [[nodiscard]] static RWCharBuffer* createCompact(std::int32_t capacity);
};

inline RWCharBuffer* RWCharBuffer::createCompact(std::int32_t capacity)
{
    static_assert(sizeof(RWCharBuffer) % alignof(char16_t) == 0);
    const std::int32_t rounded = roundedCapacity(capacity);
    void* const block = orvcore::allocate(sizeof(RWCharBuffer) +
                                          static_cast<std::size_t>(rounded) * sizeof(char16_t));
    auto* const buffer = ::new (block) RWCharBuffer;
    buffer->adoptInline(reinterpret_cast<char16_t*>(buffer + 1), rounded);
    return buffer;
}

} // namespace orv::util
