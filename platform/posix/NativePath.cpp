#include "platform/posix/internal/NativePath.h"

#include "platform/posix/internal/NarrowText.h"
#include "platform/posix/internal/Results.h"

namespace orvcore {

ORVResult NativePath::assign(const char16_t* path) noexcept
{
    m_bytes[0] = 0;
    if (path == nullptr) return E_POINTER;
    if (hasServer(path)) return pathNotFound;
    const bool withDrive = hasDrive(path);
    if (withDrive) {
        if ((path[0] | 0x20) != u'c') return pathNotFound;
        path += 2;
    }

    // No encoding makes fewer bytes than units, so a text that is too long here stays too long.
    char16_t slashed[PATH_MAX];
    std::int32_t length = 0;
    for (; path[length] != 0; ++length) {
        if (length == PATH_MAX - 1) return nameTooLong;
        slashed[length] = path[length] == u'\\' ? u'/' : path[length];
    }
    if (withDrive && length == 0) slashed[length++] = u'.';
    slashed[length] = 0;

    const ORVResult result = narrowExactly(slashed, m_bytes, sizeof m_bytes);
    if (result < 0) m_bytes[0] = 0;
    return result;
}

} // namespace orvcore
