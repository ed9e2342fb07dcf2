#include "orv/net/SocketErrors.h"

#include "platform/sockets.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <utility>

namespace orv::net {
namespace {

/// The words of the errors, each with the number behind that of the word before, or the one told.
constexpr const char* words =
    "2008 EAI_MEMORY 10004 EINTR 10009 EBADF 10013 EACCES EFAULT 10022 EINVAL 10024 EMFILE "
    "10035 EWOULDBLOCK EINPROGRESS EALREADY ENOTSOCK EDESTADDRREQ EMSGSIZE EPROTOTYPE ENOPROTOOPT "
    "EPROTONOSUPPORT ESOCKTNOSUPPORT EOPNOTSUPP EPFNOSUPPORT EAFNOSUPPORT EADDRINUSE EADDRNOTAVAIL "
    "ENETDOWN ENETUNREACH ENETRESET ECONNABORTED ECONNRESET ENOBUFS EISCONN ENOTCONN ESHUTDOWN "
    "ETOOMANYREFS ETIMEDOUT ECONNREFUSED ELOOP ENAMETOOLONG EHOSTDOWN EHOSTUNREACH ENOTEMPTY "
    "EPROCLIM EUSERS EDQUOT ESTALE EREMOTE 10091 SYSNOTREADY VERNOTSUPPORTED NOTINITIALISED "
    "10101 EDISCON ENOMORE ECANCELLED EINVALIDPROCTABLE EINVALIDPROVIDER EPROVIDERFAILEDINIT "
    "SYSCALLFAILURE SERVICE_NOT_FOUND TYPE_NOT_FOUND _E_NO_MORE _E_CANCELLED EREFUSED "
    "11001 HOST_NOT_FOUND TRY_AGAIN NO_RECOVERY NO_DATA 12022 EAI_BADFLAGS 12044 EAI_SOCKTYPE "
    "12047 EAI_FAMILY 12109 EAI_SERVICE 13001 EAI_NONAME EAI_AGAIN EAI_FAIL 14001 EAI_NODATA";

std::string descriptionOf(Result code)
{
    return String(ORVGetDescriptionFromORV_E_SOCKET(static_cast<ENUM_ORV_E_SOCKET>(code)))
        .getBytes();
}

TEST(SocketErrors, haveANumberAndATextEach)
{
    std::map<std::uint32_t, std::string> known;
    std::istringstream in(words);
    std::uint32_t next = 0;
    for (std::string word; in >> word;) {
        const bool isNumber = word[0] <= '9';
        if (isNumber) next = static_cast<std::uint32_t>(std::stoi(word));
        if (!isNumber) known[next++] = word;
    }
    ASSERT_EQ(known.size(), 71u);
    for (std::uint32_t native = 0; native < 0x10000; ++native) {
        const bool isKnown = known.contains(native);
        const bool isOfSockets = isKnown && native >= 10004 && native <= 11004;
        const Result result = makeResult(0x8BE30000u + native);
        const Result failure = native == 0 ? S_OK : E_FAIL;
        ASSERT_EQ(ORV_E_SOCKETFromNativeSocketError(native), isOfSockets ? result : failure);
        ASSERT_EQ(ORV_E_SOCKETFromNativeEaiSocketError(native), isKnown ? result : failure);
        const std::string text = descriptionOf(result);
        ASSERT_EQ(text.substr(0, text.find(' ')), isKnown ? known[native] : "FAIL") << native;
        ASSERT_EQ(text.ends_with(' '), isOfSockets && native != 10004) << text;
    }
    orvcore::closeSocket(orvcore::NO_SOCKET);
    EXPECT_EQ(ORVLastNativeSocketError(), 10009u);
}

TEST(SocketErrors, haveFixedTextsWhereHostsCompareThem)
{
    const std::pair<Result, const char*> rows[] = {
        {S_OK, "OK"},
        {E_FAIL, "FAIL"},
        {ORV_E_SOCKET_EINTR, "EINTR A blocking operation was interrupted by a call to "
                             "WSACancelBlockingCall."},
        {ORV_E_SOCKET_EFAULT, "EFAULT The system detected an invalid pointer address in attempting "
                              "to use a pointer argument in a call. "},
        {ORV_E_SOCKET_EMSGSIZE, "EMSGSIZE A message sent on a datagram socket"},
        {ORV_E_SOCKET_EADDRNOTAVAIL,
         "EADDRNOTAVAIL The requested address is not valid in its context. "},
        {ORV_E_SOCKET_ECONNRESET,
         "ECONNRESET An existing connection was forcibly closed by the remote host. "},
        {ORV_E_SOCKET_ENOTCONN, "ENOTCONN A request to send or receive data was disallowed"},
        {ORV_E_SOCKET_HOST_NOT_FOUND, "HOST_NOT_FOUND No such host is known. "}};
    for (const auto& [code, expected] : rows) {
        EXPECT_TRUE(descriptionOf(code).starts_with(expected)) << expected;
    }
}

} // namespace
} // namespace orv::net
