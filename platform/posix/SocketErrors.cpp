#include "platform/posix/internal/SocketErrors.h"

#include <cerrno>

#include <netdb.h>

namespace orvcore {
namespace {

constinit thread_local SocketError t_lastError = 0;

struct ErrorRow {
    int native;
    SocketError error;
};

constexpr ErrorRow errorRows[] = {
    {EINTR, 10004},
    {EBADF, 10009},
    {EACCES, 10013},
    {EPERM, 10013},
    {EFAULT, socketFault},
    {EINVAL, SOCKET_INVALID_ARGUMENT},
    {EMFILE, 10024},
    {ENFILE, 10024},
    {EAGAIN, SOCKET_WOULD_BLOCK},
    {EINPROGRESS, 10036},
    {EALREADY, 10037},
    {ENOTSOCK, notASocket},
    {EDESTADDRREQ, 10039},
    {EMSGSIZE, 10040},
    {EPROTOTYPE, 10041},
    {ENOPROTOOPT, noSuchOption},
    {EPROTONOSUPPORT, 10043},
    {ESOCKTNOSUPPORT, 10044},
    {EOPNOTSUPP, 10045},
    {EPFNOSUPPORT, 10046},
    {EAFNOSUPPORT, familyNotSupported},
    {EADDRINUSE, 10048},
    {EADDRNOTAVAIL, 10049},
    {ENETDOWN, 10050},
    {ENETUNREACH, 10051},
    {ENETRESET, 10052},
    {ECONNABORTED, 10053},
    {ECONNRESET, 10054},
    {EPIPE, 10054},
    {ENOBUFS, 10055},
    {ENOMEM, 10055},
    {EISCONN, 10056},
    {ENOTCONN, 10057},
    {ESHUTDOWN, 10058},
    {ETOOMANYREFS, 10059},
    {ETIMEDOUT, socketTimedOut},
    {ECONNREFUSED, 10061},
    {ELOOP, 10062},
    {ENAMETOOLONG, 10063},
    {EHOSTDOWN, 10064},
    {EHOSTUNREACH, 10065},
    {ENOTEMPTY, 10066},
    {EUSERS, 10068},
    {EDQUOT, 10069},
    {ESTALE, 10070},
    {EREMOTE, 10071},
    {ECANCELED, 10103},
};

} // namespace

SocketError socketErrorOf(int nativeError) noexcept
{
    for (const ErrorRow& row : errorRows) {
        if (row.native == nativeError) return row.error;
    }
    return static_cast<SocketError>(nativeError);
}

SocketError resolverErrorOf(int nativeResult) noexcept
{
    switch (nativeResult) {
    case 0: return 0;
    case EAI_BADFLAGS: return 12022;
    case EAI_SOCKTYPE: return 12044;
    case EAI_FAMILY: return 12047;
    case EAI_SERVICE: return 12109;
    case EAI_NONAME: return 13001;
    case EAI_AGAIN: return 13002;
    case EAI_MEMORY: return 2008;
    case EAI_NODATA: return 14001;
    case EAI_SYSTEM: return socketErrorOf(errno);
    default: return 13003;
    }
}

SocketError remember(SocketError error) noexcept
{
    t_lastError = error;
    return error;
}

SocketError rememberFailure() noexcept
{
    return remember(socketErrorOf(errno));
}

SocketError lastSocketError() noexcept
{
    return t_lastError;
}

} // namespace orvcore
