#pragma once

#include "orv/Result.h"
#include "orv/io/ByteBuffer.h"
#include "orv/io/IChannel.h"

namespace orv::io::internal {

/// IORVChannel::Read() by way of `channel`. A negative size is refused with E_INVALIDARG.
inline Result readFlat(IReadChannel& channel, signed char* bytes, std::int32_t* n)
{
    if (*n < 0) return E_INVALIDARG;
    return resultOf([&] {
        ByteBuffer buffer(bytes, static_cast<std::uint32_t>(*n), ORV_ENDIAN_LITTLE, false);
        *n = channel.read(buffer);
    });
}

/// The same for IORVChannel::Write().
inline Result writeFlat(IWriteChannel& channel, const signed char* bytes, std::int32_t* n)
{
    if (*n < 0) return E_INVALIDARG;
    return resultOf([&] {
        ByteBuffer buffer(bytes, static_cast<std::uint32_t>(*n), ORV_ENDIAN_LITTLE);
        *n = channel.write(buffer);
    });
}

} // namespace orv::io::internal
