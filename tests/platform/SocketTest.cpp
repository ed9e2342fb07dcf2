#include "platform/sockets.h"

#include "platform/threads.h"
#include "tests/support/Loopback.h"
#include "tests/support/Processes.h"
#include "tests/support/SignalStorm.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/time.h>

namespace {

using namespace orvcore;
using orv::test::acceptFrom;
using orv::test::awaitSleepOf;
using orv::test::PlainSocket;

int descriptorOf(const PlainSocket& socket)
{
    return static_cast<int>(socket.get());
}

/// Two ends of a connection.
struct Connection {
    Connection()
    {
        PlainSocket listener;
        const std::uint16_t port = listener.listen();
        EXPECT_EQ(near.connect(port), 0u);
        far = acceptFrom(listener);
    }
    ~Connection() { closeFar(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    void closeFar()
    {
        if (far != NO_SOCKET) closeSocket(std::exchange(far, NO_SOCKET));
    }

    PlainSocket near;
    NativeSocket far = NO_SOCKET;
};

TEST(SocketAddress, goesToTheSystemsFormAndBack)
{
    const sockaddr_in v4{AF_INET, htons(258), {htonl(0x0A010203)}, {}};
    sockaddr_in6 v6{AF_INET6, htons(258), 0, IN6ADDR_LOOPBACK_INIT, 7};
    const std::pair<const void*, std::uint32_t> rows[] = {{&v4, 16}, {&v6, 28}};
    for (const auto& [native, size] : rows) {
        const auto* const plain = static_cast<const sockaddr*>(native);
        orv_sockaddr_union address{};
        ASSERT_TRUE(addressFromNative(plain, size, &address));
        EXPECT_EQ(address.family, size == 16 ? 2 : 23);
        EXPECT_EQ(address.bytes[2], 1);
        EXPECT_EQ(address.bytes[3], 2);
        char back[sizeof v6] = {};
        auto* const out = reinterpret_cast<sockaddr*>(back);
        EXPECT_EQ(addressToNative(address, out, size - 1), 0u);
        ASSERT_EQ(addressToNative(address, out, size), size);
        EXPECT_EQ(std::memcmp(back, native, size), 0);
        EXPECT_FALSE(addressFromNative(plain, size - 1, &address));
        EXPECT_EQ(address.family, 0);
    }
}

TEST(Socket, isCloseOnExecAndClearOfTheStandardStreams)
{
    orv::test::ForkedChild child([] {
        ::close(0);
        ::close(1);
        NativeSocket socket = NO_SOCKET;
        if (openSocket(FAMILY_IPV4, 1, 6, &socket) != 0 || socket < 3) return 1;
        return ::fcntl(static_cast<int>(socket), F_GETFD) == FD_CLOEXEC ? 0 : 2;
    });
    EXPECT_EQ(child.exitCode(), 0);
}

TEST(Socket, translatesOptions)
{
    PlainSocket plain;
    using Row = std::tuple<std::int32_t, std::int32_t, std::uint32_t, int, int, std::vector<int>>;
    for (const auto& [level, option, value, nativeLevel, nativeOption, expected] :
         {Row{0xFFFF, 0x0008, 1, SOL_SOCKET, SO_KEEPALIVE, {1}},
          {6, 1, 1, IPPROTO_TCP, 1, {1}},
          {0xFFFF, 0x0080, 1 | 9 << 16, SOL_SOCKET, SO_LINGER, {1, 9}},
          {0xFFFF, 0x1006, 2500, SOL_SOCKET, SO_RCVTIMEO, {2, 0, 500000, 0}},
          {0xFFFF, 0x1005, 40, SOL_SOCKET, SO_SNDTIMEO, {0, 0, 40000, 0}}}) {
        SCOPED_TRACE(option);
        ASSERT_EQ(setSocketOption(plain.get(), level, option, &value, 4), 0u);
        std::vector<int> native(expected.size());
        socklen_t nativeSize = static_cast<socklen_t>(native.size() * sizeof(int));
        ::getsockopt(descriptorOf(plain), nativeLevel, nativeOption, native.data(), &nativeSize);
        EXPECT_EQ(native, expected);
        std::uint32_t read = 0;
        std::int32_t size = 8;
        EXPECT_EQ(getSocketOption(plain.get(), level, option, &read, &size), 0u);
        EXPECT_EQ(read, value);
        EXPECT_EQ(size, 4);
        size = 3;
        EXPECT_EQ(getSocketOption(plain.get(), level, option, &read, &size), 10014u);
        EXPECT_EQ(setSocketOption(plain.get(), level, option, &value, 3), 10014u);
    }
    std::uint32_t value = 0;
    std::int32_t size = 4;
    EXPECT_EQ(getSocketOption(plain.get(), SOL_SOCKET, SO_TYPE, &value, &size), 10042u);
    EXPECT_EQ(setSocketOption(plain.get(), 0xFFFF, 0x7777, &value, 4), 10042u);
}

TEST(Socket, tellsATimeLimitFromASocketThatDoesNotWait)
{
    Connection connection;
    const std::uint32_t limit = 20;
    ASSERT_EQ(setSocketOption(connection.near.get(), 0xFFFF, 0x1006, &limit, 4), 0u);
    char byte = 0;
    std::int64_t done = 0;
    EXPECT_EQ(receiveBytes(connection.near.get(), &byte, 1, 0, &done), 10060u);
    EXPECT_EQ(done, -1);
    EXPECT_EQ(receiveBytes(connection.near.get(), &byte, 1, MSG_DONTWAIT, &done), 10035u);
    EXPECT_EQ(receiveBytes(connection.near.get(), &byte, 0, MSG_DONTWAIT, &done), 0u);
    EXPECT_EQ(done, 0);
}

TEST(Socket, resumesWhatSignalsInterrupt)
{
    Connection connection;
    const std::vector<char> sent(8 << 20, 'x');
    std::size_t received = 0;
    std::thread receiver([&] {
        std::vector<char> buffer(64 << 10);
        std::int64_t got = 1;
        while (received < sent.size() && got > 0) {
            orv::test::SignalStorm::awaitInterruptions(1);
            ASSERT_EQ(receiveBytes(connection.far, buffer.data(), 64 << 10, 0, &got), 0u);
            received += static_cast<std::size_t>(got);
        }
    });
    const orv::test::SignalStorm storm;
    std::int64_t done = 0;
    const auto size = static_cast<std::uint32_t>(sent.size());
    EXPECT_EQ(sendBytes(connection.near.get(), sent.data(), size, 0, &done), 0u);
    EXPECT_EQ(done, static_cast<std::int64_t>(sent.size())) << "nothing was cut off";
    receiver.join();
    EXPECT_EQ(received, sent.size());
}

TEST(SocketHold, keepsTheNumberOfAClosedSocketUntilTheLastUserIsOut)
{
    Connection connection;
    std::atomic<NativeSocket> place{connection.near.release()};
    const NativeSocket socket = place;
    std::atomic<std::uint32_t> id{0};
    std::thread worker([&] {
        const SocketHold hold(place);
        EXPECT_EQ(hold.socket(), socket);
        id = currentThreadId();
        char byte = 0;
        std::int64_t done = -1;
        EXPECT_EQ(receiveBytes(hold.socket(), &byte, 1, 0, &done), 0u);
        EXPECT_GE(::fcntl(static_cast<int>(socket), F_GETFD), 0) << "nobody else can have it";
    });
    ASSERT_TRUE(orv::test::awaitTrue([&] { return id != 0; }) && awaitSleepOf(id));
    place = NO_SOCKET;
    EXPECT_EQ(closeSocket(socket), 0u);
    worker.join();
    EXPECT_EQ(::fcntl(static_cast<int>(socket), F_GETFD), -1) << "the last one out closed it";
    EXPECT_FALSE(SocketHold(place).isOpen());
}

TEST(SocketWait, tellsReadinessByKind)
{
    Connection connection;
    const auto readiness = [](NativeSocket socket, int wanted) {
        SocketWait wait{socket, static_cast<std::uint8_t>(wanted), 0};
        std::int32_t ready = 0;
        EXPECT_EQ(waitForSockets(&wait, 1, 0, &ready), 0u);
        EXPECT_EQ(ready, __builtin_popcount(wait.ready));
        return wait.ready;
    };
    constexpr int all = READY_TO_READ | READY_TO_WRITE | READY_EXCEPT;
    const NativeSocket socket = connection.near.get();
    EXPECT_EQ(readiness(socket, all), READY_TO_WRITE);
    std::int64_t done = 0;
    ASSERT_EQ(sendBytes(connection.far, "!", 1, MSG_OOB, &done), 0u);
    EXPECT_EQ(readiness(socket, READY_EXCEPT), READY_EXCEPT);

    // A connection that hangs up both ways ends no wait for exceptions alone.
    Connection ending;
    shutDownSocket(ending.near.get(), 2);
    ending.closeFar();
    SocketWait wait{ending.near.get(), READY_EXCEPT, 0};
    std::int32_t ready = 0;
    EXPECT_EQ(waitForSockets(&wait, 1, 300'000, &ready), 0u);
    EXPECT_EQ(ready, 0);
    EXPECT_EQ(readiness(ending.near.get(), READY_TO_READ), READY_TO_READ);
}

TEST(SocketWait, takesDescriptorsOfAnyNumber)
{
    struct rlimit limit {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    if (limit.rlim_cur < 5100) GTEST_SKIP() << "this process may not have 5,000 descriptors open";
    std::vector<int> many(5000);
    for (int& descriptor : many) descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    {
        Connection connection;
        EXPECT_GT(connection.far, 5000u);
        SocketWait waits[] = {{connection.far, READY_TO_READ, 0},
                              {connection.near.get(), READY_TO_READ, 0}};
        std::int64_t done = 0;
        ASSERT_EQ(sendBytes(connection.near.get(), "x", 1, 0, &done), 0u);
        std::int32_t ready = 0;
        EXPECT_EQ(waitForSockets(waits, 2, FOR_EVER, &ready), 0u);
        EXPECT_EQ(ready, 1);
        EXPECT_EQ(waits[0].ready, READY_TO_READ);
    }
    for (const int descriptor : many) ::close(descriptor);
}

} // namespace
