#include "orv/net/SocketErrors.h"

#include "platform/sockets.h"

#include <algorithm>
#include <iterator>

namespace orv::net {
namespace {

struct ErrorRow {
    std::uint32_t native;
    const char16_t* text;
};

/// One row an error, in order of the numbers.
constexpr ErrorRow rows[] = {
    {2008, u"EAI_MEMORY The name service ran out of memory."},
    {10004, u"EINTR A blocking operation was interrupted by a call to WSACancelBlockingCall."},
    {10009, u"EBADF The socket handle is not a valid one. "},
    {10013, u"EACCES The permissions of the socket or the address do not allow this. "},
    {10014, u"EFAULT The system detected an invalid pointer address in attempting to use a pointer "
            u"argument in a call. "},
    {10022, u"EINVAL An invalid argument was supplied. "},
    {10024, u"EMFILE Too many open sockets. "},
    {10035, u"EWOULDBLOCK The operation would have to wait, and the socket does not. "},
    {10036, u"EINPROGRESS An operation that takes its time has begun and goes on. "},
    {10037, u"EALREADY The socket is still busy with an earlier operation. "},
    {10038, u"ENOTSOCK An operation was attempted on something that is not a socket. "},
    {10039, u"EDESTADDRREQ The operation needs an address to send to. "},
    {10040, u"EMSGSIZE A message sent on a datagram socket, or the room given for an answer, did "
            u"not have the size that is needed. "},
    {10041, u"EPROTOTYPE The protocol does not fit the type of the socket. "},
    {10042, u"ENOPROTOOPT The protocol has no such option at this level. "},
    {10043, u"EPROTONOSUPPORT The protocol is not available on this machine. "},
    {10044, u"ESOCKTNOSUPPORT Sockets of this type do not exist in this address family. "},
    {10045, u"EOPNOTSUPP Sockets of this kind do not offer the operation. "},
    {10046, u"EPFNOSUPPORT The protocol family is not available on this machine. "},
    {10047, u"EAFNOSUPPORT An address incompatible with the requested protocol was used. "},
    {10048, u"EADDRINUSE Another socket uses the address and port already. "},
    {10049, u"EADDRNOTAVAIL The requested address is not valid in its context. "},
    {10050, u"ENETDOWN The network is down. "},
    {10051, u"ENETUNREACH No route leads to that network. "},
    {10052, u"ENETRESET The network dropped the connection when it found the peer gone. "},
    {10053, u"ECONNABORTED This machine broke the connection off. "},
    {10054, u"ECONNRESET An existing connection was forcibly closed by the remote host. "},
    {10055, u"ENOBUFS An operation on a socket could not be performed, as the memory or the queue "
            u"space for it was missing. "},
    {10056, u"EISCONN The socket is connected already. "},
    {10057, u"ENOTCONN A request to send or receive data was disallowed, as the socket is not "
            u"connected and no address was given. "},
    {10058, u"ESHUTDOWN The socket has been shut down in this direction. "},
    {10059, u"ETOOMANYREFS The system object has too many references. "},
    {10060, u"ETIMEDOUT The peer did not answer in time. "},
    {10061, u"ECONNREFUSED Nothing listens at that address and port. "},
    {10062, u"ELOOP The name leads around in a circle. "},
    {10063, u"ENAMETOOLONG The name is too long. "},
    {10064, u"EHOSTDOWN The remote host is down. "},
    {10065, u"EHOSTUNREACH No route leads to that host. "},
    {10066, u"ENOTEMPTY The directory is not empty. "},
    {10067, u"EPROCLIM Too many processes use sockets at once. "},
    {10068, u"EUSERS The quota of users is used up. "},
    {10069, u"EDQUOT The disk quota is used up. "},
    {10070, u"ESTALE The handle stands for a file that is no longer there. "},
    {10071, u"EREMOTE The object is not on this machine. "},
    {10091, u"SYSNOTREADY The network of this machine is not ready. "},
    {10092,
     u"VERNOTSUPPORTED The version of the socket interface that was asked for is not available. "},
    {10093, u"NOTINITIALISED The socket layer has not been started. "},
    {10101, u"EDISCON The peer is shutting the connection down in order. "},
    {10102, u"ENOMORE The enumeration has no more entries. "},
    {10103, u"ECANCELLED The operation was cancelled. "},
    {10104, u"EINVALIDPROCTABLE The procedure table of a service provider is wrong. "},
    {10105, u"EINVALIDPROVIDER The service provider is not valid. "},
    {10106, u"EPROVIDERFAILEDINIT The service provider could not be started. "},
    {10107, u"SYSCALLFAILURE A system call failed that never should. "},
    {10108, u"SERVICE_NOT_FOUND No such service is known in this name space. "},
    {10109, u"TYPE_NOT_FOUND The class of the object is not known. "},
    {10110, u"_E_NO_MORE The look-up has no more entries. "},
    {10111, u"_E_CANCELLED The look-up was cancelled. "},
    {10112, u"EREFUSED The query was refused. "},
    {11001, u"HOST_NOT_FOUND No such host is known. "},
    {11002, u"TRY_AGAIN The name server did not answer; asking again may help. "},
    {11003, u"NO_RECOVERY The name service failed for good. "},
    {11004, u"NO_DATA The name is known but has no data of the kind asked for. "},
    {12022, u"EAI_BADFLAGS The flags of the name look-up are wrong."},
    {12044, u"EAI_SOCKTYPE The type of socket asked for is not available."},
    {12047, u"EAI_FAMILY The address family asked for is not available."},
    {12109, u"EAI_SERVICE The service is not known for this type of socket."},
    {13001, u"EAI_NONAME The host or service is not known."},
    {13002, u"EAI_AGAIN The name service cannot answer for now."},
    {13003, u"EAI_FAIL The name service failed for good."},
    {14001, u"EAI_NODATA The host is known but has no address."},
};

/// The first and the last error of sockets; the others are those of the name service.
constexpr std::uint32_t FIRST = 10004;
constexpr std::uint32_t LAST = 11004;

const ErrorRow* rowOf(std::uint32_t native) noexcept
{
    const ErrorRow* const row = std::lower_bound(
        std::begin(rows), std::end(rows), native,
        [](const ErrorRow& candidate, std::uint32_t number) { return candidate.native < number; });
    return row != std::end(rows) && row->native == native ? row : nullptr;
}

ENUM_ORV_E_SOCKET resultOf(std::uint32_t native) noexcept
{
    const bool known = rowOf(native) != nullptr;
    return static_cast<ENUM_ORV_E_SOCKET>(known ? socketResult(native) : E_FAIL);
}

} // namespace
} // namespace orv::net

ENUM_ORV_E_SOCKET ORV_E_SOCKETFromNativeSocketError(std::uint32_t native) noexcept
{
    using namespace orv::net;
    if (native == 0) return ORV_E_SOCKET_OK;
    const bool isOfSockets = native >= FIRST && native <= LAST;
    return isOfSockets ? resultOf(native) : static_cast<ENUM_ORV_E_SOCKET>(E_FAIL);
}

ENUM_ORV_E_SOCKET ORV_E_SOCKETFromNativeEaiSocketError(std::uint32_t native) noexcept
{
    return native == 0 ? ORV_E_SOCKET_OK : orv::net::resultOf(native);
}

const char16_t* ORVGetDescriptionFromORV_E_SOCKET(ENUM_ORV_E_SOCKET code) noexcept
{
    using namespace orv::net;
    if (code == ORV_E_SOCKET_OK) return u"OK";
    const auto offset =
        static_cast<std::uint32_t>(code) - static_cast<std::uint32_t>(socketResult(0));
    const ErrorRow* const row = rowOf(offset);
    return row == nullptr ? u"FAIL" : row->text;
}

std::uint32_t ORVLastNativeSocketError() noexcept
{
    return orvcore::lastSocketError();
}
