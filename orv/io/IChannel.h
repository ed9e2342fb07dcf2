#pragma once

#include "orv/IORVUnknown.h"

#include <cstdint>

namespace orv {
class String;
}

namespace orv::io {

class ByteBuffer;

/// What fills byte buffers. Buffers are the caller's and may lie on the stack, so an implementation
/// keeps no Reference to one.
class ORV_API IReadChannel : public IORVUnknown {
public:
    /// Reads bytes to between the position and the limit of `buffer`, moves its position by their
    /// number and returns it; -1 at the end. Throws.
    virtual int read(ByteBuffer& buffer) = 0;

protected:
    ~IReadChannel() = default;
};

/// What takes the contents of byte buffers.
class ORV_API IWriteChannel : public IORVUnknown {
public:
    /// Writes bytes from between the position and the limit of `buffer`, moves its position by
    /// their number and returns it. Throws.
    virtual int write(ByteBuffer& buffer) = 0;

protected:
    ~IWriteChannel() = default;
};

/// Both ways at once: the content of a ByteBuffer moves in one call.
class ORV_API IChannel : public IReadChannel, public IWriteChannel {
public:
    // The two bases have these each; here they are one.
    Result QueryInterface(const GUID& iid, void** out) override = 0;
    std::uint32_t AddRef() const override = 0;
    std::uint32_t Release() const override = 0;

protected:
    ~IChannel() = default;
};

/// A channel that a further process can take over by a name.
class ORV_API IInheritableChannel : public IChannel {
public:
    /// The name; what it means is between this process and the other one. Throws.
    virtual String getInheritableName() = 0;

protected:
    ~IInheritableChannel() = default;
};

} // namespace orv::io
