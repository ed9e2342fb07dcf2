#pragma once

#include "orv/util/BasicMTBuffer.h"
#include "orv/util/CharBuffers.h"

namespace orv::util {

extern template class BasicMTBuffer<RWCharBuffer>;

/// A growing block of code units for several threads; see BasicMTBuffer.
class ORV_API MTCharBuffer : public BasicMTBuffer<RWCharBuffer> {
public:
    using BasicMTBuffer::BasicMTBuffer;
    MTCharBuffer() = default;
    MTCharBuffer(const MTCharBuffer& other) = default;
    MTCharBuffer& operator=(const MTCharBuffer& other) = default;
    ~MTCharBuffer() noexcept(false) override;
};

} // namespace orv::util
