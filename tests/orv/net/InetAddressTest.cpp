#include "orv/net/InetSocketAddress.h"

#include "tests/support/Loopback.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include <netdb.h>

namespace orv::net {
namespace {

orv_sockaddr_union addressOf(const char* text, std::uint16_t port)
{
    addrinfo* list = nullptr;
    EXPECT_EQ(orvcore::resolve(text, nullptr, {.flags = 4}, &list), 0u) << text;
    orv_sockaddr_union address = orvcore::readAddressEntry(list).address;
    ORVfreeaddrinfo(list);
    address.ipv4.port = test::loopback(port).ipv4.port;
    return address;
}

TEST(InetAddress, answersByItsFamily)
{
    using Row = std::tuple<const char*, int, int, int, int>;
    for (const auto& [name, kind, any, loopback, none] :
         {Row{"0.0.0.0", 2, 1, 0, 0},
          {"127.0.0.1", 2, 0, 1, 0},
          {"127.0.0.2", 2, 0, 0, 0},
          {"255.255.255.255", 2, 0, 0, 1},
          {"255.255.255.254", 2, 0, 0, 0},
          {"::", 23, 1, 0, 0},
          {"::1", 23, 0, 1, 0},
          {"1::1", 23, 0, 0, 0},
          {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", 23, 0, 0, 0}}) {
        SCOPED_TRACE(name);
        const orv_sockaddr_union source = addressOf(name, 80);
        InetAddress* made = nullptr;
        ASSERT_EQ(InetAddress::create(&source, &made), ORV_E_SOCKET_OK);
        const std::unique_ptr<InetAddress> address(made);
        std::uint16_t family = 0;
        EXPECT_EQ(address->getFamily(&family), ORV_E_SOCKET_OK);
        EXPECT_EQ(family, kind);
        EXPECT_EQ(address->isAddressAny(), any);
        EXPECT_EQ(address->isAddressLoopback(), loopback);
        EXPECT_EQ(address->isAddressNone(), none);
        String text(u"<");
        EXPECT_EQ(address->getAddressStr(text), ORV_E_SOCKET_OK);
        EXPECT_EQ(address->getAddressStr(text), ORV_E_SOCKET_OK);
        EXPECT_EQ(text, String(u"<") + String(name) + String(name)) << "it appends";

        orv_sockaddr_union storage{};
        std::uint64_t size = sizeof storage;
        EXPECT_EQ(address->getStorageBinary(&storage, &size), ORV_E_SOCKET_OK);
        EXPECT_EQ(std::memcmp(&storage, &source, size), 0);
        address->setAddressAny();
        EXPECT_EQ(address->isAddressAny(), 1);
        EXPECT_EQ(address->getStorageBinary(&storage, &size), ORV_E_SOCKET_OK);
        EXPECT_EQ(test::portOf(storage), 80) << "the port stays";
        EXPECT_EQ(storage.family, kind);
    }
}

TEST(InetAddress, tellsTheSizeThatABufferNeeds)
{
    const orv_sockaddr_union source = addressOf("1.2.3.4", 80);
    const Inet4Address address(&source, nullptr);
    signed char bytes[16] = {};
    std::uint64_t length = 3;
    EXPECT_EQ(address.getAddressBinary(bytes, &length), ORV_E_SOCKET_EMSGSIZE);
    EXPECT_EQ(length, 4u);
    EXPECT_EQ(bytes[0], 0) << "nothing is written";
    EXPECT_EQ(address.getAddressBinary(bytes, &length), ORV_E_SOCKET_OK);
    EXPECT_EQ(bytes[3], 4);
    orv_sockaddr_union storage{};
    length = 15;
    EXPECT_EQ(address.getStorageBinary(&storage, &length), ORV_E_SOCKET_EMSGSIZE);
    EXPECT_EQ(length, 16u);
    EXPECT_EQ(address.getAddressBinaryLength(nullptr), ORV_E_SOCKET_EINVAL);
}

TEST(InetAddress, refusesWhatIsNoAddress)
{
    orv_sockaddr_union odd = test::loopback(1);
    odd.family = 1;
    InetAddress* made = reinterpret_cast<InetAddress*>(&odd);
    EXPECT_EQ(InetAddress::create(&odd, &made), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(InetAddress::create(static_cast<orv_sockaddr_union*>(nullptr), &made),
              ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(InetAddress::create(static_cast<addrinfo*>(nullptr), 1, &made), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(InetAddress::create(&odd, nullptr), ORV_E_SOCKET_EINVAL);

    ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
    const Inet4Address refused(&odd, &error);
    EXPECT_EQ(error, ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(refused.isAddressAny(), 1) << "left empty";
    String text;
    EXPECT_EQ(refused.getAddressStr(text), ORV_E_SOCKET_EAI_FAMILY);
    EXPECT_EQ(text, u"native error 12047");

    // Linux's own number of IPv6 is taken for that of the face.
    orv_sockaddr_union native = test::loopback(1, 23);
    native.family = 10;
    std::uint16_t family = 0;
    EXPECT_EQ(Inet6Address(&native, nullptr).getFamily(&family), ORV_E_SOCKET_OK);
    EXPECT_EQ(family, 23);
}

String diagnosticOf(const InetSocketAddress& address)
{
    String text;
    address.getDiagnosticStr(text);
    return text;
}

TEST(InetSocketAddress, printsForPeople)
{
    ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
    orv_sockaddr_union odd = test::loopback(80);
    odd.family = 1;
    for (const auto& [source, text, result] :
         {std::tuple{addressOf("10.1.2.3", 80), u"10.1.2.3:80", ORV_E_SOCKET_OK},
          std::tuple{addressOf("fe80::1", 65535), u"[fe80::1]:65535", ORV_E_SOCKET_OK},
          std::tuple{odd, u"0address missing:80", ORV_E_SOCKET_EINVAL}}) {
        const InetSocketAddress address(&source, &error);
        EXPECT_EQ(error, result);
        EXPECT_EQ(diagnosticOf(address), text);
    }
    const InetSocketAddress missing(&odd, &error);
    std::uint16_t family = 0;
    EXPECT_EQ(missing.getFamily(&family), ORV_E_SOCKET_EFAULT);
}

} // namespace
} // namespace orv::net
