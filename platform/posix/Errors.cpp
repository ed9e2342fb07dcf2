#include "platform/posix/internal/Results.h"

#include <cerrno>

namespace orvcore {
namespace {

constexpr std::uint32_t generalFailure = 31;

constexpr std::uint32_t numberOf(std::int32_t error) noexcept
{
    switch (error) {
    case ENOENT: return 2;
    case ENOTDIR: return 3;
    case EMFILE:
    case ENFILE: return 4;
    case EACCES:
    case EPERM:
    case EISDIR: return 5;
    case EBADF: return 6;
    case ENOMEM: return 14;
    case EROFS: return 19;
    case EINVAL: return 87;
    case EPIPE: return 109;
    case ENOSPC:
    case EDQUOT: return 112;
    case EBUSY: return 170;
    case EEXIST: return 183;
    case ENAMETOOLONG: return 206;
    case ETIMEDOUT: return 1460;
    default: return generalFailure;
    }
}

} // namespace

ORVResult lastError() noexcept
{
    return systemResult(numberOf(errno));
}

} // namespace orvcore

ORVResult ORVResultFromNative(std::int32_t nativeError) noexcept
{
    if (nativeError == 0) return S_OK;
    return orvcore::systemResult(orvcore::numberOf(nativeError));
}
