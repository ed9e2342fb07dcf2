#pragma once

#include "orv/util/IBasicBuffer.h"

namespace orv::util {

/// A counted block of bytes; see IBasicBuffer for its operations.
class ORV_API IByteBuffer : public IBasicBuffer<signed char> {
protected:
    ~IByteBuffer() = default;
};

/// IByteBuffer as it is known across the binary interface.
class ORV_API IORVByteBuffer : public IByteBuffer {
public:
    /// {BD454BEB-D847-40F3-AABF-3083AC2AC54B}
    static constexpr GUID IID{
        0xBD454BEB, 0xD847, 0x40F3, {0xAA, 0xBF, 0x30, 0x83, 0xAC, 0x2A, 0xC5, 0x4B}};

protected:
    ~IORVByteBuffer() = default;
};

} // namespace orv::util
