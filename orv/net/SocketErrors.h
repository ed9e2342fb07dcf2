#pragma once

#include "orv/Result.h"

#include <cstdint>

/// \file
/// The results of the socket layer, which reports through them and never throws.

namespace orv::net {

/// The result that stands for a native socket error: 0x8BE30000 plus its number.
constexpr Result socketResult(std::uint32_t native) noexcept
{
    return makeResult(0x8BE30000u + native);
}

} // namespace orv::net

/// A result of the socket layer. A failure that is none of these is E_FAIL.
enum ENUM_ORV_E_SOCKET : std::int32_t {
    ORV_E_SOCKET_OK = 0,
    ORV_E_SOCKET_EAI_MEMORY = orv::net::socketResult(2008),
    ORV_E_SOCKET_EINTR = orv::net::socketResult(10004),
    ORV_E_SOCKET_EBADF = orv::net::socketResult(10009),
    ORV_E_SOCKET_EACCES = orv::net::socketResult(10013),
    ORV_E_SOCKET_EFAULT = orv::net::socketResult(10014),
    ORV_E_SOCKET_EINVAL = orv::net::socketResult(10022),
    ORV_E_SOCKET_EMFILE = orv::net::socketResult(10024),
    ORV_E_SOCKET_EWOULDBLOCK = orv::net::socketResult(10035),
    ORV_E_SOCKET_EINPROGRESS = orv::net::socketResult(10036),
    ORV_E_SOCKET_EALREADY = orv::net::socketResult(10037),
    ORV_E_SOCKET_ENOTSOCK = orv::net::socketResult(10038),
    ORV_E_SOCKET_EDESTADDRREQ = orv::net::socketResult(10039),
    ORV_E_SOCKET_EMSGSIZE = orv::net::socketResult(10040),
    ORV_E_SOCKET_EPROTOTYPE = orv::net::socketResult(10041),
    ORV_E_SOCKET_ENOPROTOOPT = orv::net::socketResult(10042),
    ORV_E_SOCKET_EPROTONOSUPPORT = orv::net::socketResult(10043),
    ORV_E_SOCKET_ESOCKTNOSUPPORT = orv::net::socketResult(10044),
    ORV_E_SOCKET_EOPNOTSUPP = orv::net::socketResult(10045),
    ORV_E_SOCKET_EPFNOSUPPORT = orv::net::socketResult(10046),
    ORV_E_SOCKET_EAFNOSUPPORT = orv::net::socketResult(10047),
    ORV_E_SOCKET_EADDRINUSE = orv::net::socketResult(10048),
    ORV_E_SOCKET_EADDRNOTAVAIL = orv::net::socketResult(10049),
    ORV_E_SOCKET_ENETDOWN = orv::net::socketResult(10050),
    ORV_E_SOCKET_ENETUNREACH = orv::net::socketResult(10051),
    ORV_E_SOCKET_ENETRESET = orv::net::socketResult(10052),
    ORV_E_SOCKET_ECONNABORTED = orv::net::socketResult(10053),
    ORV_E_SOCKET_ECONNRESET = orv::net::socketResult(10054),
    ORV_E_SOCKET_ENOBUFS = orv::net::socketResult(10055),
    ORV_E_SOCKET_EISCONN = orv::net::socketResult(10056),
    ORV_E_SOCKET_ENOTCONN = orv::net::socketResult(10057),
    ORV_E_SOCKET_ESHUTDOWN = orv::net::socketResult(10058),
    ORV_E_SOCKET_ETOOMANYREFS = orv::net::socketResult(10059),
    ORV_E_SOCKET_ETIMEDOUT = orv::net::socketResult(10060),
    ORV_E_SOCKET_ECONNREFUSED = orv::net::socketResult(10061),
    ORV_E_SOCKET_ELOOP = orv::net::socketResult(10062),
    ORV_E_SOCKET_ENAMETOOLONG = orv::net::socketResult(10063),
    ORV_E_SOCKET_EHOSTDOWN = orv::net::socketResult(10064),
    ORV_E_SOCKET_EHOSTUNREACH = orv::net::socketResult(10065),
    ORV_E_SOCKET_ENOTEMPTY = orv::net::socketResult(10066),
    ORV_E_SOCKET_EPROCLIM = orv::net::socketResult(10067),
    ORV_E_SOCKET_EUSERS = orv::net::socketResult(10068),
    ORV_E_SOCKET_EDQUOT = orv::net::socketResult(10069),
    ORV_E_SOCKET_ESTALE = orv::net::socketResult(10070),
    ORV_E_SOCKET_EREMOTE = orv::net::socketResult(10071),
    ORV_E_SOCKET_SYSNOTREADY = orv::net::socketResult(10091),
    ORV_E_SOCKET_VERNOTSUPPORTED = orv::net::socketResult(10092),
    ORV_E_SOCKET_NOTINITIALISED = orv::net::socketResult(10093),
    ORV_E_SOCKET_EDISCON = orv::net::socketResult(10101),
    ORV_E_SOCKET_ENOMORE = orv::net::socketResult(10102),
    ORV_E_SOCKET_ECANCELLED = orv::net::socketResult(10103),
    ORV_E_SOCKET_EINVALIDPROCTABLE = orv::net::socketResult(10104),
    ORV_E_SOCKET_EINVALIDPROVIDER = orv::net::socketResult(10105),
    ORV_E_SOCKET_EPROVIDERFAILEDINIT = orv::net::socketResult(10106),
    ORV_E_SOCKET_SYSCALLFAILURE = orv::net::socketResult(10107),
    ORV_E_SOCKET_SERVICE_NOT_FOUND = orv::net::socketResult(10108),
    ORV_E_SOCKET_TYPE_NOT_FOUND = orv::net::socketResult(10109),
    ORV_E_SOCKET__E_NO_MORE = orv::net::socketResult(10110),
    ORV_E_SOCKET__E_CANCELLED = orv::net::socketResult(10111),
    ORV_E_SOCKET_EREFUSED = orv::net::socketResult(10112),
    ORV_E_SOCKET_HOST_NOT_FOUND = orv::net::socketResult(11001),
    ORV_E_SOCKET_TRY_AGAIN = orv::net::socketResult(11002),
    ORV_E_SOCKET_NO_RECOVERY = orv::net::socketResult(11003),
    ORV_E_SOCKET_NO_DATA = orv::net::socketResult(11004),
    ORV_E_SOCKET_EAI_BADFLAGS = orv::net::socketResult(12022),
    ORV_E_SOCKET_EAI_SOCKTYPE = orv::net::socketResult(12044),
    ORV_E_SOCKET_EAI_FAMILY = orv::net::socketResult(12047),
    ORV_E_SOCKET_EAI_SERVICE = orv::net::socketResult(12109),
    ORV_E_SOCKET_EAI_NONAME = orv::net::socketResult(13001),
    ORV_E_SOCKET_EAI_AGAIN = orv::net::socketResult(13002),
    ORV_E_SOCKET_EAI_FAIL = orv::net::socketResult(13003),
    ORV_E_SOCKET_EAI_NODATA = orv::net::socketResult(14001),
};

extern "C" {

/// The result for a native socket error, 0 for 0. E_FAIL for a number that is none of those from
/// ORV_E_SOCKET_EINTR to ORV_E_SOCKET_NO_DATA.
ORV_API ENUM_ORV_E_SOCKET ORV_E_SOCKETFromNativeSocketError(std::uint32_t native) noexcept;

/// The result for an error of the name service; any other number is taken as a socket error.
ORV_API ENUM_ORV_E_SOCKET ORV_E_SOCKETFromNativeEaiSocketError(std::uint32_t native) noexcept;

/// A line of English text that begins with the word of the result, as "ENOTSOCK An operation ...";
/// "OK" for 0, "FAIL" for a code that is no result of the socket layer. The text is static.
ORV_API const char16_t* ORVGetDescriptionFromORV_E_SOCKET(ENUM_ORV_E_SOCKET code) noexcept;

/// The native error of the calling thread's last socket operation, 0 after success.
ORV_API std::uint32_t ORVLastNativeSocketError() noexcept;

} // extern "C"
