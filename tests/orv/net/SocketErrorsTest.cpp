#include "orv/net/SocketErrors.h"

#include "platform/sockets.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace orv::net {
namespace {

using namespace std::string_view_literals;

struct Known {
    std::uint32_t native;
    std::u16string_view word;
};

constexpr std::u16string_view socketWords[] = {
    u"EWOULDBLOCK",  u"EINPROGRESS",  u"EALREADY",     u"ENOTSOCK",        u"EDESTADDRREQ",
    u"EMSGSIZE",     u"EPROTOTYPE",   u"ENOPROTOOPT",  u"EPROTONOSUPPORT", u"ESOCKTNOSUPPORT",
    u"EOPNOTSUPP",   u"EPFNOSUPPORT", u"EAFNOSUPPORT", u"EADDRINUSE",      u"EADDRNOTAVAIL",
    u"ENETDOWN",     u"ENETUNREACH",  u"ENETRESET",    u"ECONNABORTED",    u"ECONNRESET",
    u"ENOBUFS",      u"EISCONN",      u"ENOTCONN",     u"ESHUTDOWN",       u"ETOOMANYREFS",
    u"ETIMEDOUT",    u"ECONNREFUSED", u"ELOOP",        u"ENAMETOOLONG",    u"EHOSTDOWN",
    u"EHOSTUNREACH", u"ENOTEMPTY",    u"EPROCLIM",     u"EUSERS",          u"EDQUOT",
    u"ESTALE",       u"EREMOTE"};

/// All errors there are, by number.
std::vector<Known> knownErrors()
{
    std::vector<Known> known = {{2008, u"EAI_MEMORY"},
                                {10004, u"EINTR"},
                                {10009, u"EBADF"},
                                {10013, u"EACCES"},
                                {10014, u"EFAULT"},
                                {10022, u"EINVAL"},
                                {10024, u"EMFILE"},
                                {10091, u"SYSNOTREADY"},
                                {10092, u"VERNOTSUPPORTED"},
                                {10093, u"NOTINITIALISED"},
                                {10101, u"EDISCON"},
                                {10102, u"ENOMORE"},
                                {10103, u"ECANCELLED"},
                                {10104, u"EINVALIDPROCTABLE"},
                                {10105, u"EINVALIDPROVIDER"},
                                {10106, u"EPROVIDERFAILEDINIT"},
                                {10107, u"SYSCALLFAILURE"},
                                {10108, u"SERVICE_NOT_FOUND"},
                                {10109, u"TYPE_NOT_FOUND"},
                                {10110, u"_E_NO_MORE"},
                                {10111, u"_E_CANCELLED"},
                                {10112, u"EREFUSED"},
                                {11001, u"HOST_NOT_FOUND"},
                                {11002, u"TRY_AGAIN"},
                                {11003, u"NO_RECOVERY"},
                                {11004, u"NO_DATA"},
                                {12022, u"EAI_BADFLAGS"},
                                {12044, u"EAI_SOCKTYPE"},
                                {12047, u"EAI_FAMILY"},
                                {12109, u"EAI_SERVICE"},
                                {13001, u"EAI_NONAME"},
                                {13002, u"EAI_AGAIN"},
                                {13003, u"EAI_FAIL"},
                                {14001, u"EAI_NODATA"}};
    std::uint32_t native = 10035;
    for (const std::u16string_view word : socketWords) known.push_back({native++, word});
    return known;
}

std::u16string_view descriptionOf(std::uint32_t code)
{
    return ORVGetDescriptionFromORV_E_SOCKET(static_cast<ENUM_ORV_E_SOCKET>(code));
}

TEST(SocketErrors, haveANumberAndATextEach)
{
    const std::vector<Known> known = knownErrors();
    ASSERT_EQ(known.size(), 71u);
    std::size_t found = 0;
    for (std::uint32_t native = 1; native < 0x10000; ++native) {
        const auto row = std::find_if(known.begin(), known.end(),
                                      [&](const Known& error) { return error.native == native; });
        const bool isKnown = row != known.end();
        const bool isOfSockets = isKnown && native >= 10004 && native <= 11004;
        const Result result = makeResult(0x8BE30000u + native);
        ASSERT_EQ(ORV_E_SOCKETFromNativeSocketError(native), isOfSockets ? result : E_FAIL);
        ASSERT_EQ(ORV_E_SOCKETFromNativeEaiSocketError(native), isKnown ? result : E_FAIL);
        const std::u16string_view text = descriptionOf(0x8BE30000u + native);
        if (!isKnown) {
            ASSERT_EQ(text, u"FAIL"sv) << native;
            continue;
        }
        ++found;
        SCOPED_TRACE(native);
        EXPECT_EQ(text.substr(0, text.find(u' ')), row->word);
        EXPECT_EQ(text.ends_with(u". "), isOfSockets && native != 10004);
        EXPECT_EQ(text.ends_with(u'.'), !isOfSockets || native == 10004);
    }
    EXPECT_EQ(found, known.size());
}

TEST(SocketErrors, haveFixedTextsWhereHostsCompareThem)
{
    struct Row {
        ENUM_ORV_E_SOCKET code;
        std::uint32_t value;
        const char16_t* text;
    };
    for (const Row& row : {
             Row{ORV_E_SOCKET_OK, 0, u"OK"},
             Row{ORV_E_SOCKET_EINTR, 0x8BE32714,
                 u"EINTR A blocking operation was interrupted by a call to "
                 u"WSACancelBlockingCall."},
             Row{ORV_E_SOCKET_EFAULT, 0x8BE3271E,
                 u"EFAULT The system detected an invalid pointer address in attempting to use a "
                 u"pointer argument in a call. "},
             Row{ORV_E_SOCKET_EINVAL, 0x8BE32726, u"EINVAL An invalid argument was supplied. "},
             Row{ORV_E_SOCKET_EMFILE, 0x8BE32728, u"EMFILE Too many open sockets. "},
             Row{ORV_E_SOCKET_ENOTSOCK, 0x8BE32736,
                 u"ENOTSOCK An operation was attempted on something that is not a socket. "},
             Row{ORV_E_SOCKET_EMSGSIZE, 0x8BE32738,
                 u"EMSGSIZE A message sent on a datagram socket"},
             Row{ORV_E_SOCKET_EAFNOSUPPORT, 0x8BE3273F,
                 u"EAFNOSUPPORT An address incompatible with the requested protocol was used. "},
             Row{ORV_E_SOCKET_EADDRNOTAVAIL, 0x8BE32741,
                 u"EADDRNOTAVAIL The requested address is not valid in its context. "},
             Row{ORV_E_SOCKET_ECONNRESET, 0x8BE32746,
                 u"ECONNRESET An existing connection was forcibly closed by the remote host. "},
             Row{ORV_E_SOCKET_ENOBUFS, 0x8BE32747,
                 u"ENOBUFS An operation on a socket could not be performed"},
             Row{ORV_E_SOCKET_ENOTCONN, 0x8BE32749,
                 u"ENOTCONN A request to send or receive data was disallowed"},
             Row{ORV_E_SOCKET_HOST_NOT_FOUND, 0x8BE32AF9,
                 u"HOST_NOT_FOUND No such host is known. "},
         }) {
        EXPECT_EQ(static_cast<std::uint32_t>(row.code), row.value);
        const std::u16string_view expected = row.text;
        const bool isWhole = expected.ends_with(u' ') || expected.ends_with(u'.');
        const std::u16string_view text = descriptionOf(row.value);
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
