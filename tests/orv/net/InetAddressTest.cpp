#include "orv/net/InetSocketAddress.h"

#include "orv/net/SocketFunctions.h"
#include "tests/support/Loopback.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include <netdb.h>

namespace orv::net {
namespace {

orv_sockaddr_union addressOf(const char* text)
{
    orv_sockaddr_union address{};
    EXPECT_EQ(TcpSocket2::getAddrInfo(text, 80, nullptr, 0, &address), ORV_E_SOCKET_OK) << text;
    return address;
}

/// What the address says yes to.
std::string questionsOf(const orv_sockaddr_union& address)
{
    std::string yes;
    for (const auto& [ask, name] : {std::pair{&OrvNetInetAddressIsAddressAny, "any"},
                                    {&OrvNetInetAddressIsAddressLoopback, "loopback"},
                                    {&OrvNetInetAddressIsAddressNone, "none"}}) {
        std::int16_t truth = 7;
        EXPECT_EQ(ask(&address, &truth), ORV_E_SOCKET_OK);
        if (truth == 1) yes += name;
    }
    return yes;
}

using Print = ENUM_ORV_E_SOCKET (*)(const orv_sockaddr_union*, char*, std::uint32_t*);

void expectPrinted(Print print, const orv_sockaddr_union& address, const std::string& expected)
{
    char text[60] = "?";
    const auto length = static_cast<std::uint32_t>(expected.size());
    for (const std::uint32_t room : {0u, length, length + 1}) {
        std::uint32_t size = room;
        const bool fits = room > length;
        EXPECT_EQ(print(&address, text, &size), fits ? ORV_E_SOCKET_OK : ORV_E_SOCKET_EFAULT);
        EXPECT_EQ(size, fits ? room : 0) << "the terminator is written too";
        EXPECT_EQ(text, room == 0 ? "?" : fits ? expected : "");
    }
}

TEST(InetAddress, answersByItsFamily)
{
    using Row = std::tuple<const char*, int, const char*>;
    for (const auto& [name, kind, questions] :
         {Row{"0.0.0.0", 2, "any"},
          {"127.0.0.1", 2, "loopback"},
          {"127.0.0.2", 2, ""},
          {"255.255.255.255", 2, "none"},
          {"255.255.255.254", 2, ""},
          {"::", 23, "any"},
          {"::1", 23, "loopback"},
          {"1::1", 23, ""},
          {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", 23, ""}}) {
        SCOPED_TRACE(name);
        const orv_sockaddr_union source = addressOf(name);
        EXPECT_EQ(questionsOf(source), questions);
        expectPrinted(OrvNetInetAddressGetAddressStr, source, name);
        expectPrinted(OrvNetInetSocketAddressGetDiagnosticStr, source,
                      (kind == 2 ? name : "[" + std::string(name) + "]") + ":80");

        InetAddress* made = nullptr;
        ASSERT_EQ(InetAddress::create(&source, &made), ORV_E_SOCKET_OK);
        const std::unique_ptr<InetAddress> address(made);
        signed char bytes[16] = {7};
        std::uint64_t size = kind == 2 ? 3 : 15;
        EXPECT_EQ(address->getAddressBinary(bytes, &size), ORV_E_SOCKET_EMSGSIZE);
        EXPECT_EQ(bytes[0], 7) << "nothing is written";
        EXPECT_EQ(size, kind == 2 ? 4u : 16u) << "but the size that is needed";
        EXPECT_EQ(address->getAddressBinary(bytes, &size), ORV_E_SOCKET_OK);
        EXPECT_EQ(std::memcmp(bytes, source.bytes + (kind == 2 ? 4 : 8), size), 0);

        address->setAddressAny();
        orv_sockaddr_union storage{};
        size = kind == 2 ? 15 : 27;
        EXPECT_EQ(address->getStorageBinary(&storage, &size), ORV_E_SOCKET_EMSGSIZE);
        EXPECT_EQ(address->getStorageBinary(&storage, &size), ORV_E_SOCKET_OK);
        EXPECT_EQ(size, kind == 2 ? 16u : 28u);
        EXPECT_EQ(questionsOf(storage), "any");
        EXPECT_EQ(test::portOf(storage), 80) << "the port stays";
    }
}

TEST(InetAddress, refusesWhatIsNoAddress)
{
    orv_sockaddr_union odd = test::loopback(80);
    odd.family = 1;
    InetAddress* made = reinterpret_cast<InetAddress*>(&made);
    EXPECT_EQ(InetAddress::create(&odd, &made), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(InetAddress::create(nullptr, 1, &made), ORV_E_SOCKET_EINVAL);
    std::int16_t truth = 7;
    EXPECT_EQ(OrvNetInetAddressIsAddressAny(&odd, &truth), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(truth, 0);
    ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
    const Inet4Address refused(&odd, &error);
    EXPECT_EQ(error, ORV_E_SOCKET_EINVAL);
    String text;
    EXPECT_EQ(refused.getAddressStr(text), ORV_E_SOCKET_EAI_FAMILY);
    const InetSocketAddress missing(&odd, &error);
    missing.getDiagnosticStr(text);
    EXPECT_EQ(text, u"native error 120470address missing:80") << "it appends";
    std::uint16_t family = 0;
    EXPECT_EQ(missing.getFamily(&family), ORV_E_SOCKET_EFAULT);

    addrinfo* list = nullptr;
    EXPECT_EQ(orvcore::resolve("10.1.2.3", nullptr, {.flags = 2}, &list), 0u);
    const InetSocketAddress named(list, 7, &error);
    ORVfreeaddrinfo(list);
    EXPECT_EQ(named.getCanonicalName(), u"10.1.2.3");
    orv_sockaddr_union storage{};
    std::uint64_t size = sizeof storage;
    EXPECT_EQ(named.getAddress()->getStorageBinary(&storage, &size), ORV_E_SOCKET_OK);
    EXPECT_EQ(test::portOf(storage), 7);

    // Linux's own number of IPv6 is taken for that of the face.
    orv_sockaddr_union native = test::loopback(1, 23);
    native.family = 10;
    EXPECT_EQ(Inet6Address(&native, nullptr).getFamily(&family), ORV_E_SOCKET_OK);
    EXPECT_EQ(family, 23);
}

} // namespace
} // namespace orv::net
