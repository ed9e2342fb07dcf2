#pragma once

#include "orv/util/BasicMTBuffer.h"
#include "orv/util/ByteBuffers.h"

namespace orv::util {

extern template class BasicMTBuffer<RWByteBuffer>;

/// A growing block of bytes for several threads; see BasicMTBuffer.
class ORV_API MTByteBuffer : public BasicMTBuffer<RWByteBuffer> {
public:
    using BasicMTBuffer::BasicMTBuffer;
    MTByteBuffer() = default;
    MTByteBuffer(const MTByteBuffer& other) = default;
    MTByteBuffer& operator=(const MTByteBuffer& other) = default;
    ~MTByteBuffer() noexcept(false) override;
};

} // namespace orv::util
