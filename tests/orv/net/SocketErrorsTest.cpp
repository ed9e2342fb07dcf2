#include "orv/net/SocketErrors.h"

#include "platform/sockets.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace orv::net {
namespace {

using namespace std::string_view_literals;

/// The words of the errors in order of their numbers.
constexpr const char* words =
    "EAI_MEMORY EINTR EBADF EACCES EFAULT EINVAL EMFILE EWOULDBLOCK EINPROGRESS EALREADY ENOTSOCK "
    "EDESTADDRREQ EMSGSIZE EPROTOTYPE ENOPROTOOPT EPROTONOSUPPORT ESOCKTNOSUPPORT EOPNOTSUPP "
    "EPFNOSUPPORT EAFNOSUPPORT EADDRINUSE EADDRNOTAVAIL ENETDOWN ENETUNREACH ENETRESET "
    "ECONNABORTED ECONNRESET ENOBUFS EISCONN ENOTCONN ESHUTDOWN ETOOMANYREFS ETIMEDOUT "
    "ECONNREFUSED ELOOP ENAMETOOLONG EHOSTDOWN EHOSTUNREACH ENOTEMPTY EPROCLIM EUSERS EDQUOT "
    "ESTALE EREMOTE SYSNOTREADY VERNOTSUPPORTED NOTINITIALISED EDISCON ENOMORE ECANCELLED "
    "EINVALIDPROCTABLE EINVALIDPROVIDER EPROVIDERFAILEDINIT SYSCALLFAILURE SERVICE_NOT_FOUND "
    "TYPE_NOT_FOUND _E_NO_MORE _E_CANCELLED EREFUSED HOST_NOT_FOUND TRY_AGAIN NO_RECOVERY NO_DATA "
    "EAI_BADFLAGS EAI_SOCKTYPE EAI_FAMILY EAI_SERVICE EAI_NONAME EAI_AGAIN EAI_FAIL EAI_NODATA";

/// The words of all errors there are, by number.
std::map<std::uint32_t, std::u16string> knownErrors()
{
    std::map<std::uint32_t, std::u16string> known;
    std::istringstream in(words);
    for (const auto& [first, last] : {std::pair{2008u, 2008u},
                                      {10004, 10004},
                                      {10009, 10009},
                                      {10013, 10014},
                                      {10022, 10022},
                                      {10024, 10024},
                                      {10035, 10071},
                                      {10091, 10093},
                                      {10101, 10112},
                                      {11001, 11004},
                                      {12022, 12022},
                                      {12044, 12044},
                                      {12047, 12047},
                                      {12109, 12109},
                                      {13001, 13003},
                                      {14001, 14001}}) {
        for (std::uint32_t native = first; native <= last; ++native) {
            std::string word;
            in >> word;
            known[native].assign(word.begin(), word.end());
        }
    }
    return known;
}

std::u16string_view descriptionOf(std::uint32_t code)
{
    return ORVGetDescriptionFromORV_E_SOCKET(static_cast<ENUM_ORV_E_SOCKET>(code));
}

TEST(SocketErrors, haveANumberAndATextEach)
{
    const auto known = knownErrors();
    ASSERT_EQ(known.size(), 71u);
    for (std::uint32_t native = 1; native < 0x10000; ++native) {
        const bool isKnown = known.contains(native);
        const bool isOfSockets = isKnown && native >= 10004 && native <= 11004;
        const Result result = makeResult(0x8BE30000u + native);
        ASSERT_EQ(ORV_E_SOCKETFromNativeSocketError(native), isOfSockets ? result : E_FAIL);
        ASSERT_EQ(ORV_E_SOCKETFromNativeEaiSocketError(native), isKnown ? result : E_FAIL);
        const std::u16string_view text = descriptionOf(0x8BE30000u + native);
        if (!isKnown) {
            ASSERT_EQ(text, u"FAIL"sv) << native;
            continue;
        }
        SCOPED_TRACE(native);
        EXPECT_EQ(text.substr(0, text.find(u' ')), known.at(native));
        EXPECT_EQ(text.ends_with(u". "), isOfSockets && native != 10004);
        EXPECT_EQ(text.ends_with(u'.'), !isOfSockets || native == 10004);
    }
}

TEST(SocketErrors, haveFixedTextsWhereHostsCompareThem)
{
    using Row = std::tuple<ENUM_ORV_E_SOCKET, std::uint32_t, std::u16string_view>;
    for (const auto& [code, value, expected] : {
             Row{ORV_E_SOCKET_OK, 0, u"OK"},
             Row{ORV_E_SOCKET_EINTR, 0x8BE32714,
                 u"EINTR A blocking operation was interrupted by a call to "
                 u"WSACancelBlockingCall."},
             Row{ORV_E_SOCKET_EFAULT, 0x8BE3271E,
                 u"EFAULT The system detected an invalid pointer address in attempting to use a "
                 u"pointer argument in a call. "},
             Row{ORV_E_SOCKET_EMFILE, 0x8BE32728, u"EMFILE Too many open sockets. "},
             Row{ORV_E_SOCKET_ENOTSOCK, 0x8BE32736,
                 u"ENOTSOCK An operation was attempted on something that is not a socket. "},
             Row{ORV_E_SOCKET_EAFNOSUPPORT, 0x8BE3273F,
                 u"EAFNOSUPPORT An address incompatible with the requested protocol was used. "},
             Row{ORV_E_SOCKET_EADDRNOTAVAIL, 0x8BE32741,
                 u"EADDRNOTAVAIL The requested address is not valid in its context. "},
             Row{ORV_E_SOCKET_ENOBUFS, 0x8BE32747,
                 u"ENOBUFS An operation on a socket could not be performed"},
             Row{ORV_E_SOCKET_ENOTCONN, 0x8BE32749,
                 u"ENOTCONN A request to send or receive data was disallowed"},
             Row{ORV_E_SOCKET_HOST_NOT_FOUND, 0x8BE32AF9,
                 u"HOST_NOT_FOUND No such host is known. "},
         }) {
        EXPECT_EQ(static_cast<std::uint32_t>(code), value);
        const bool isWhole = expected.ends_with(u' ') || expected.ends_with(u'.');
        const std::u16string_view text = descriptionOf(value);
        EXPECT_EQ(isWhole ? text : text.substr(0, expected.size()), expected);
    }
    for (const std::uint32_t code : {0x80004005u, 1u, 0xFFFFFFFFu, 0x8BE30000u}) {
        EXPECT_EQ(descriptionOf(code), u"FAIL"sv) << code;
    }
    orvcore::closeSocket(orvcore::NO_SOCKET);
    EXPECT_EQ(ORVLastNativeSocketError(), 10009u);
}

} // namespace
} // namespace orv::net
