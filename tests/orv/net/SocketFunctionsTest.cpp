#include "orv/net/SocketFunctions.h"

#include "orv/Exception.h"
#include "orv/GlobalLock.h"
#include "orv/Library.h"
#include "orv/sync/LockObject.h"
#include "tests/orv/net/Sockets.h"

#include <functional>
#include <vector>

#include <netdb.h>

namespace orv::net {
namespace {

using test::Connection;
using test::listeningServer;

TEST(SocketFunctions, refuseNullPointers)
{
    Connection connection;
    const auto server = listeningServer();
    TcpClientSocket2* const client = connection.client.get();
    TcpWorkerSocket2* const worker = connection.worker.get();
    TcpServerSocket2* const listener = server.get();
    orv_sockaddr_union address = test::loopback(1);
    addrinfo hints{};
    char text[8] = "unread";
    signed char bytes[16];
    std::int16_t truth = 7;
    std::int32_t length = 4;
    std::uint16_t port = 0;
    std::uint32_t size = sizeof text;
    std::int64_t done = 0;
    std::uint64_t room = sizeof bytes;
    const std::vector<std::function<ENUM_ORV_E_SOCKET()>> calls = {
        [&] { return OrvNetTcpSocketClose(nullptr); },
        [&] { return OrvNetTcpSocketShutdownInput(nullptr); },
        [&] { return OrvNetTcpSocketShutdownOutput(nullptr); },
        [&] { return OrvNetTcpSocketShutdownBoth(nullptr); },
        [&] { return OrvNetTcpSocketStaticDestroy(nullptr); },
        [&] { return OrvNetTcpSocketStaticGetVersion(nullptr, &length); },
        [&] { return OrvNetTcpSocketStaticGetVersion(&length, nullptr); },
        [&] { return OrvNetTcpSocketStaticGetaddrinfo(nullptr, 1, &hints, 0, &address); },
        [&] { return OrvNetTcpSocketStaticGetaddrinfo("::1", 1, nullptr, 0, &address); },
        [&] { return OrvNetTcpSocketStaticGetaddrinfo("::1", 1, &hints, 0, nullptr); },
        [&] { return OrvNetTcpClientSocketStaticCreate(2, 1, 6, nullptr); },
        [&] { return OrvNetTcpClientSocketBind(nullptr, &address, 16); },
        [&] { return OrvNetTcpClientSocketBind(client, nullptr, 16); },
        [&] { return OrvNetTcpClientSocketConnect(nullptr, &address, 16); },
        [&] { return OrvNetTcpClientSocketConnect(client, nullptr, 16); },
        [&] { return OrvNetTcpClientSocketGetLocalAddress(nullptr, &address, &length); },
        [&] { return OrvNetTcpClientSocketGetLocalAddress(client, nullptr, &length); },
        [&] { return OrvNetTcpClientSocketGetLocalAddress(client, &address, nullptr); },
        [&] { return OrvNetTcpClientSocketSend(nullptr, text, 1, 0, &done); },
        [&] { return OrvNetTcpClientSocketSend(client, nullptr, 1, 0, &done); },
        [&] { return OrvNetTcpClientSocketSend(client, text, 1, 0, nullptr); },
        [&] { return OrvNetTcpClientSocketRecv(nullptr, text, 1, 0, &done); },
        [&] { return OrvNetTcpClientSocketGetsockopt(nullptr, 0xFFFF, 4, text, &length); },
        [&] { return OrvNetTcpClientSocketSetsockopt(nullptr, 0xFFFF, 4, text, 4); },
        [&] { return OrvNetTcpWorkerSocketSend(nullptr, text, 1, 0, &done); },
        [&] { return OrvNetTcpWorkerSocketRecv(nullptr, text, 1, 0, &done); },
        [&] { return OrvNetTcpWorkerSocketRecv(worker, nullptr, 1, 0, &done); },
        [&] { return OrvNetTcpWorkerSocketRecv(worker, text, 1, 0, nullptr); },
        [&] { return OrvNetTcpWorkerSocketGetsockopt(nullptr, 0xFFFF, 4, text, &length); },
        [&] { return OrvNetTcpWorkerSocketGetsockopt(worker, 0xFFFF, 4, nullptr, &length); },
        [&] { return OrvNetTcpWorkerSocketGetsockopt(worker, 0xFFFF, 4, text, nullptr); },
        [&] { return OrvNetTcpWorkerSocketSetsockopt(nullptr, 0xFFFF, 4, text, 4); },
        [&] { return OrvNetTcpWorkerSocketSetsockopt(worker, 0xFFFF, 4, nullptr, 4); },
        [&] {
            return OrvNetTcpWorkerSocketStaticSelect(nullptr, nullptr, nullptr, nullptr, nullptr,
                                                     nullptr, nullptr, nullptr);
        },
        [&] {
            return OrvNetTcpClientSocketStaticSelect(nullptr, &size, nullptr, &size, nullptr,
                                                     nullptr, nullptr, &length);
        },
        [&] { return OrvNetTcpServerSocketStaticCreate(0, 1, 6, nullptr); },
        [&] { return OrvNetTcpServerSocketBindListAddAddrAny(nullptr, 1); },
        [&] { return OrvNetTcpServerSocketBindListAddAddrInfo(nullptr, "::1", nullptr, 1); },
        [&] { return OrvNetTcpServerSocketBindListAddAddrInfo(listener, nullptr, nullptr, 1); },
        [&] { return OrvNetTcpServerSocketBindListClear(nullptr); },
        [&] { return OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply(nullptr); },
        [&] { return OrvNetTcpServerSocketBindListAddressesDiagnosticStrA(nullptr, text, &size); },
        [&] {
            return OrvNetTcpServerSocketBindListAddressesDiagnosticStrA(listener, nullptr, &size);
        },
        [&] { return OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA(nullptr, text, &size); },
        [&] {
            return OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA(listener, text, nullptr);
        },
        [&] { return OrvNetTcpServerSocketBind(nullptr); },
        [&] { return OrvNetTcpServerSocketListen(nullptr, 1); },
        [&] { return OrvNetTcpServerSocketSaveBoundAddresses(nullptr); },
        [&] { return OrvNetTcpServerSocketAccept(nullptr, nullptr); },
        [&] { return OrvNetTcpServerSocketAccept(listener, nullptr); },
        [&] { return OrvNetTcpServerSocketAcceptSocket(nullptr, &room); },
        [&] { return OrvNetTcpServerSocketAcceptSocket(listener, nullptr); },
        [&] { return OrvNetTcpServerSocketGetBoundAddress(nullptr, 0, bytes, &room); },
        [&] { return OrvNetTcpServerSocketGetBoundAddress(listener, 0, nullptr, &room); },
        [&] { return OrvNetTcpServerSocketGetBoundAddress(listener, 0, bytes, nullptr); },
        [&] {
            return OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName(nullptr, &port);
        },
        [&] {
            return OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName("http", nullptr);
        },
        [&] { return OrvNetInetSocketAddressGetDiagnosticStr(nullptr, text, &size); },
        [&] { return OrvNetInetSocketAddressGetDiagnosticStr(&address, nullptr, &size); },
        [&] { return OrvNetInetSocketAddressGetDiagnosticStr(&address, text, nullptr); },
        [&] { return OrvNetInetAddressIsAddressAny(nullptr, &truth); },
        [&] { return OrvNetInetAddressIsAddressAny(&address, nullptr); },
        [&] { return OrvNetInetAddressIsAddressLoopback(nullptr, &truth); },
        [&] { return OrvNetInetAddressIsAddressNone(&address, nullptr); },
        [&] {
            size = sizeof text;
            return OrvNetInetAddressGetAddressStr(nullptr, text, &size);
        },
        [&] { return OrvNetInetAddressGetAddressStr(&address, nullptr, &size); },
    };
    for (std::size_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i](), ORV_E_SOCKET_EINVAL) << "call " << i;
    }
    EXPECT_EQ(OrvNetTcpSocketGetId(nullptr), 0u);
    EXPECT_EQ(truth, 0);
    TcpSocket2* none = nullptr;
    EXPECT_EQ(OrvNetTcpSocketStaticDestroy(&none), ORV_E_SOCKET_OK);
}

TEST(SocketFunctions, askAddressesByTheirFamily)
{
    orv_sockaddr_union v4 = test::loopback(80);
    orv_sockaddr_union v6 = test::loopback(80, 23);
    orv_sockaddr_union odd = v4;
    odd.family = 1;
    std::int16_t truth = 0;
    for (const orv_sockaddr_union* address : {&v4, &v6}) {
        EXPECT_EQ(OrvNetInetAddressIsAddressLoopback(address, &truth), ORV_E_SOCKET_OK);
        EXPECT_EQ(truth, 1);
        EXPECT_EQ(OrvNetInetAddressIsAddressAny(address, &truth), ORV_E_SOCKET_OK);
        EXPECT_EQ(truth, 0);
    }
    truth = 1;
    EXPECT_EQ(OrvNetInetAddressIsAddressAny(&odd, &truth), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(truth, 0);

    using Print = ENUM_ORV_E_SOCKET (*)(const orv_sockaddr_union*, char*, std::uint32_t*);
    struct Row {
        Print print;
        const orv_sockaddr_union* address;
        std::string text;
    };
    for (const Row& row : {Row{&OrvNetInetAddressGetAddressStr, &v4, "127.0.0.1"},
                           {&OrvNetInetAddressGetAddressStr, &v6, "::1"},
                           {&OrvNetInetSocketAddressGetDiagnosticStr, &v4, "127.0.0.1:80"},
                           {&OrvNetInetSocketAddressGetDiagnosticStr, &v6, "[::1]:80"}}) {
        char text[20] = "?";
        auto size = static_cast<std::uint32_t>(row.text.size());
        EXPECT_EQ(row.print(row.address, text, &size), ORV_E_SOCKET_EFAULT) << "one byte short";
        EXPECT_EQ(size, 0u);
        EXPECT_STREQ(text, "");
        size = static_cast<std::uint32_t>(row.text.size()) + 1;
        EXPECT_EQ(row.print(row.address, text, &size), ORV_E_SOCKET_OK);
        EXPECT_EQ(text, row.text);
        EXPECT_EQ(size, row.text.size() + 1);
        size = sizeof text;
        EXPECT_EQ(row.print(&odd, text, &size), ORV_E_SOCKET_EINVAL);
        EXPECT_STREQ(text, "");
        size = 0;
        text[0] = '?';
        EXPECT_EQ(row.print(row.address, text, &size), ORV_E_SOCKET_EFAULT);
        EXPECT_EQ(text[0], '?') << "no room, not even for the end";
    }
}

TEST(Library, endsTheSocketsWithItself)
{
    EXPECT_EQ(OrvNetTcpSocketStaticInit(), ORV_E_SOCKET_OK);
    EXPECT_EQ(ORVCLLibUninit(), S_OK);
    EXPECT_EQ(g_pGlobalLock, nullptr);
    EXPECT_EQ(orvcore::stopSockets(), orvcore::SOCKET_NOT_INITIALISED) << "they were stopped";
    EXPECT_EQ(ORVCLLibUninit(), E_FAIL) << "once too often";
    EXPECT_EQ(ORVCLLibInit(), S_OK);

    // When somebody else has stopped them, the end fails half-way and keeps the lock.
    EXPECT_EQ(OrvNetTcpSocketStaticInit(), ORV_E_SOCKET_OK);
    EXPECT_EQ(orvcore::stopSockets(), 0u);
    sync::LockObject* const kept = g_pGlobalLock;
    EXPECT_EQ(ORVCLLibUninit(), E_FAIL);
    EXPECT_EQ(g_pGlobalLock, kept);
    EXPECT_EQ(TcpSocket2::uninit(), ORV_E_SOCKET_NOTINITIALISED);
    std::uint16_t version = 0;
    EXPECT_EQ(orvcore::startSockets(&version), 0u);
    EXPECT_EQ(ORVCLLibInit(), S_OK);
    delete kept;
}

} // namespace
} // namespace orv::net
