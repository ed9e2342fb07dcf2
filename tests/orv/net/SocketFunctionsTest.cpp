#include "orv/net/SocketFunctions.h"

#include "orv/GlobalLock.h"
#include "orv/Library.h"
#include "orv/sync/LockObject.h"
#include "tests/orv/net/Sockets.h"

#include <string>
#include <type_traits>
#include <utility>

namespace orv::net::test {
namespace {

/// Calls functions with one null among arguments that are good: sockets at work, and for what is
/// only pointed to memory that begins with a 2, which makes it a short length or an IPv4 address.
class NullPasser {
public:
    /// The functions, by number from 0, that take a null.
    template <class... Functions>
    std::string takersOfNull(Functions... functions)
    {
        std::string takers;
        int number = 0;
        ((takers += takesNull(functions) ? std::to_string(number) + " " : "", ++number), ...);
        return takers;
    }

private:
    template <class... Types>
    bool takesNull(ENUM_ORV_E_SOCKET (*function)(Types...))
    {
        return [&]<std::size_t... places>(std::index_sequence<places...>)
        {
            const auto resultWithout = [&](std::size_t place) {
                alignas(orv_sockaddr_union) char memory[sizeof(orv_sockaddr_union)] = {2};
                return function(argument<Types>(memory, place == places)...);
            };
            return ((std::is_pointer_v<Types> && resultWithout(places) != ORV_E_SOCKET_EINVAL) ||
                    ...);
        }
        (std::index_sequence_for<Types...>());
    }

    template <class T>
    T argument(char* memory, bool isNull)
    {
        if constexpr (!std::is_pointer_v<T>) {
            return 1;
        } else {
            if (isNull) return nullptr;
            if constexpr (std::is_same_v<T, TcpServerSocket2*>) return m_server.get();
            if constexpr (std::is_convertible_v<TcpClientSocket2*, T>) return m_client.get();
            return reinterpret_cast<T>(memory);
        }
    }

    Owned<TcpServerSocket2> m_server = newServer();
    Owned<TcpClientSocket2> m_client = newClient();
};

template <auto select>
ENUM_ORV_E_SOCKET selectNothing(std::uint32_t* read, std::uint32_t* write, std::uint32_t* except,
                                std::int32_t* total)
{
    return select(nullptr, read, nullptr, write, nullptr, except, nullptr, total);
}

TEST(SocketFunctions, refuseNullPointers)
{
    const auto addHosts = +[](TcpServerSocket2* server, const char* hosts) {
        return OrvNetTcpServerSocketBindListAddAddrInfo(server, hosts, nullptr, 1);
    };
    EXPECT_EQ(NullPasser().takersOfNull(
                  OrvNetTcpSocketClose, OrvNetTcpSocketShutdownInput, OrvNetTcpSocketShutdownOutput,
                  OrvNetTcpSocketShutdownBoth, OrvNetTcpSocketStaticDestroy,
                  OrvNetTcpSocketStaticGetVersion, OrvNetTcpSocketStaticGetaddrinfo,
                  OrvNetTcpClientSocketStaticCreate, OrvNetTcpClientSocketBind,
                  OrvNetTcpClientSocketConnect, OrvNetTcpClientSocketGetLocalAddress,
                  OrvNetTcpClientSocketSend, OrvNetTcpClientSocketRecv,
                  OrvNetTcpClientSocketGetsockopt, OrvNetTcpClientSocketSetsockopt,
                  selectNothing<OrvNetTcpClientSocketStaticSelect>, OrvNetTcpWorkerSocketSend,
                  OrvNetTcpWorkerSocketRecv, OrvNetTcpWorkerSocketGetsockopt,
                  OrvNetTcpWorkerSocketSetsockopt, selectNothing<OrvNetTcpWorkerSocketStaticSelect>,
                  OrvNetTcpServerSocketStaticCreate, OrvNetTcpServerSocketBindListAddAddrAny,
                  addHosts, OrvNetTcpServerSocketBindListClear,
                  OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply,
                  OrvNetTcpServerSocketBindListAddressesDiagnosticStrA,
                  OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA, OrvNetTcpServerSocketBind,
                  OrvNetTcpServerSocketListen, OrvNetTcpServerSocketSaveBoundAddresses,
                  OrvNetTcpServerSocketAccept, OrvNetTcpServerSocketAcceptSocket,
                  OrvNetTcpServerSocketGetBoundAddress,
                  OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName,
                  OrvNetInetSocketAddressGetDiagnosticStr, OrvNetInetAddressIsAddressAny,
                  OrvNetInetAddressIsAddressLoopback, OrvNetInetAddressIsAddressNone,
                  OrvNetInetAddressGetAddressStr),
              "");
    EXPECT_EQ(OrvNetTcpSocketGetId(nullptr), 0u);
    TcpSocket2* nothing = nullptr;
    EXPECT_EQ(OrvNetTcpSocketStaticDestroy(&nothing), ORV_E_SOCKET_OK);
}

TEST(Library, endsTheSocketsWithItself)
{
    EXPECT_EQ(OrvNetTcpSocketStaticInit(), ORV_E_SOCKET_OK);
    EXPECT_EQ(ORVCLLibInit(), S_OK);
    EXPECT_EQ(ORVCLLibUninit(), S_OK);
    ASSERT_NE(g_pGlobalLock, nullptr) << "the library is started and ended once";
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
} // namespace orv::net::test
