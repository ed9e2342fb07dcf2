#pragma once

#include "orv/util/IBasicBuffer.h"

namespace orv::util {

/// A counted block of UTF-16 code units; see IBasicBuffer for its operations.
class ORV_API ICharBuffer : public IBasicBuffer<char16_t> {
protected:
    ~ICharBuffer() = default;
};

/// ICharBuffer as it is known across the binary interface.
class ORV_API IORVCharBuffer : public ICharBuffer {
public:
    /// {1F2639A2-1EBC-4E20-8560-0AA59F8ACB39}
    static constexpr GUID IID{
        0x1F2639A2, 0x1EBC, 0x4E20, {0x85, 0x60, 0x0A, 0xA5, 0x9F, 0x8A, 0xCB, 0x39}};

protected:
    ~IORVCharBuffer() = default;
};

} // namespace orv::util

/// Replaces the content of `destination` by that of `source` and returns the result of the
/// destination's ReleaseWriteLock().
///
/// Throws ResultException with the first result that fails, the locks taken being given back.
extern "C" ORV_API orv::Result ORVCopyCharBuffer(orv::util::ICharBuffer* destination,
                                                 orv::util::ICharBuffer* source);
