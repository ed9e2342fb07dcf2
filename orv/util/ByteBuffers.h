#pragma once

#include "orv/util/BasicBuffer.h"
#include "orv/util/IByteBuffer.h"

namespace orv::util {

extern template class BasicAbstractBuffer<IORVByteBuffer>;

/// The root of the byte buffers; see BasicAbstractBuffer for its operations.
class ORV_API AbstractByteBuffer : public BasicAbstractBuffer<IORVByteBuffer> {
public:
    Result QueryInterface(const GUID& iid, void** out) override;
};

extern template class BasicPlainBuffer<AbstractByteBuffer>;
extern template class BasicROBuffer<AbstractByteBuffer>;
extern template class BasicRWBuffer<AbstractByteBuffer>;

/// A read-only view of bytes that belong to somebody else; see BasicROBuffer.
class ORV_API ROByteBuffer : public BasicROBuffer<AbstractByteBuffer> {
public:
    using BasicROBuffer::BasicROBuffer;
    ROByteBuffer() noexcept = default;
    bool isWritable() const override;
};

/// A growing block of bytes of its own; see BasicRWBuffer.
class ORV_API RWByteBuffer : public BasicRWBuffer<AbstractByteBuffer> {
public:
    using BasicRWBuffer::BasicRWBuffer;
    RWByteBuffer() noexcept = default;
    bool isWritable() const override;
};

} // namespace orv::util
