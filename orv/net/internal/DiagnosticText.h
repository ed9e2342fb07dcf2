#pragma once

#include "orv/String.h"
#include "orv/net/internal/SocketResult.h"

#include <algorithm>
#include <cstdint>

namespace orv::net::internal {

/// Writes a text for people, which `append` appends to a String with room for `capacity` units,
/// into a caller's buffer.
///
/// `*size` holds the room in bytes; it receives the bytes written, the terminator among them, and 0
/// on failure. A text that does not fit with its terminator is ORV_E_SOCKET_EFAULT and leaves an
/// empty text. Null pointers are ORV_E_SOCKET_EINVAL. `append` returns a result, which is passed
/// on.
template <class Append>
ENUM_ORV_E_SOCKET writeDiagnosticText(char* buffer, std::uint32_t* size, std::int32_t capacity,
                                      Append append)
{
    if (size == nullptr) return ORV_E_SOCKET_EINVAL;
    const std::uint32_t room = std::min<std::uint32_t>(std::exchange(*size, 0), INT32_MAX);
    if (buffer == nullptr) return ORV_E_SOCKET_EINVAL;
    if (room > 0) *buffer = 0;
    return withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        String text(capacity);
        const ENUM_ORV_E_SOCKET result = append(text);
        if (result != ORV_E_SOCKET_OK) return result;
        if (text.getLength() > static_cast<std::int32_t>(room) - 1) return ORV_E_SOCKET_EFAULT;
        const auto written = text.getBytes(buffer, static_cast<std::int32_t>(room), nullptr);
        *size = static_cast<std::uint32_t>(written);
        return ORV_E_SOCKET_OK;
    });
}

} // namespace orv::net::internal
