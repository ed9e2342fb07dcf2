#include "orv/net/TcpWorkerSocket2.h"

#include "platform/threads.h"
#include "tests/orv/net/Sockets.h"
#include "tests/support/Processes.h"

#include <array>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace orv::net::test {
namespace {

TEST(TcpWorkerSocket2, tellsOfAPeerThatResets)
{
    Connection connection;
    const std::uint16_t linger[] = {1, 0};
    EXPECT_EQ(connection.client->setsockopt(0xFFFF, 0x80, reinterpret_cast<const char*>(linger), 4),
              ORV_E_SOCKET_OK);
    EXPECT_EQ(connection.client->close(), ORV_E_SOCKET_OK);
    EXPECT_EQ(received(*connection.worker), "!ECONNRESET");
    EXPECT_EQ(connection.worker->shutdownBoth(), ORV_E_SOCKET_OK) << "nothing left to shut down";
}

TEST(TcpWorkerSocket2, shutsDownEachWayOnce)
{
    using Step = ENUM_ORV_E_SOCKET (TcpSocket2::*)();
    constexpr Step in = &TcpSocket2::shutdownInput;
    constexpr Step out = &TcpSocket2::shutdownOutput;
    constexpr Step both = &TcpSocket2::shutdownBoth;
    using Row = std::tuple<std::vector<Step>, bool, bool>;
    for (const auto& [steps, isInEnded, isOutEnded] : {Row{{in}, true, false},
                                                       {{out}, false, true},
                                                       {{in, out, out}, true, true},
                                                       {{out, both}, true, true},
                                                       {{both, in}, true, true}}) {
        Connection connection;
        TcpWorkerSocket2& worker = *connection.worker;
        for (const Step step : steps) EXPECT_EQ((worker.*step)(), ORV_E_SOCKET_OK);
        EXPECT_EQ(worker.getShutdownIn() != 0, isInEnded);
        EXPECT_EQ(worker.getShutdownOut() != 0, isOutEnded);
        if (isInEnded) {
            EXPECT_EQ(received(worker), "");
        }
        if (isOutEnded) {
            EXPECT_EQ(received(*connection.client), "");
        } else {
            sendAll(worker, "x");
            EXPECT_EQ(received(*connection.client), "x");
        }
    }
    Connection connection;
    connection.worker->setShutdownOut();
    EXPECT_EQ(connection.worker->shutdownOutput(), ORV_E_SOCKET_OK);
    sendAll(*connection.worker, "x");
    EXPECT_EQ(received(*connection.client), "x") << "the note alone shuts nothing";
}

TEST(TcpWorkerSocket2, isNoSocketOnceItIsClosed)
{
    char byte = 0;
    std::int64_t done = 5;
    EXPECT_EQ(newClient()->send(&byte, 0, 0, &done), ORV_E_SOCKET_ECONNRESET);
    EXPECT_EQ(done, -1) << "without a connection not even nothing can be sent";

    Connection connection;
    TcpClientSocket2& client = *connection.client;
    orv_sockaddr_union local{};
    std::int32_t length = 15;
    EXPECT_EQ(client.getLocalAddress(&local, &length), ORV_E_SOCKET_EFAULT) << "one byte short";
    EXPECT_NE(client.getId(), 0u);
    EXPECT_EQ(client.close(), ORV_E_SOCKET_OK);
    EXPECT_EQ(client.close(), ORV_E_SOCKET_OK);
    EXPECT_EQ(client.getId(), 0u);
    done = 5;
    EXPECT_EQ(client.recv(&byte, 1, 0, &done), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(client.send(&byte, 1, 0, &done), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(done, 5);
    EXPECT_EQ(client.getsockopt(0xFFFF, 4, &byte, &length), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(client.connect(&local, 16), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(client.shutdownBoth(), ORV_E_SOCKET_OK);
}

/// One call of select(), with its arguments and its outcome.
struct Selection {
    std::vector<TcpWorkerSocket2*> read, write, except;
    std::uint32_t readCount = 0, writeCount = 0, exceptCount = 0;
    std::int32_t total = -7;

    ENUM_ORV_E_SOCKET run(timeval* timeout)
    {
        readCount = static_cast<std::uint32_t>(read.size());
        writeCount = static_cast<std::uint32_t>(write.size());
        exceptCount = static_cast<std::uint32_t>(except.size());
        return TcpWorkerSocket2::select(read.data(), &readCount, write.data(), &writeCount,
                                        except.data(), &exceptCount, timeout, &total);
    }
    ENUM_ORV_E_SOCKET run()
    {
        timeval now{0, 0};
        return run(&now);
    }
    std::array<std::int64_t, 4> counts() const
    {
        return {readCount, writeCount, exceptCount, total};
    }
};

using Counts = std::array<std::int64_t, 4>;

TEST(TcpSelect, keepsTheReadyInPlaceAndNullsTheOthers)
{
    Connection a, b;
    TcpWorkerSocket2* const first = a.worker.get();
    TcpWorkerSocket2* const second = b.worker.get();
    sendAll(*b.client, "x");
    Selection selection{{first, second, second}, {first}, {first, second}};
    EXPECT_EQ(selection.run(nullptr), ORV_E_SOCKET_OK);
    EXPECT_EQ(selection.counts(), (Counts{2, 1, 0, 2})) << "a socket twice in an array counts once";
    EXPECT_EQ(selection.read, (std::vector<TcpWorkerSocket2*>{nullptr, second, second}));
    EXPECT_EQ(selection.write, std::vector<TcpWorkerSocket2*>{first});
    EXPECT_EQ(selection.except, (std::vector<TcpWorkerSocket2*>{nullptr, nullptr}));

    Selection silent{{first}, {}, {first}};
    timeval shortly{0, 20'000};
    EXPECT_EQ(silent.run(&shortly), ORV_E_SOCKET_OK);
    EXPECT_EQ(silent.counts(), (Counts{0, 0, 0, 0}));
    EXPECT_EQ(silent.read, std::vector<TcpWorkerSocket2*>{first}) << "untouched after a time-out";
    EXPECT_EQ(shortly.tv_usec, 20'000);

    TcpWorkerSocket2* both[] = {first, second};
    std::uint32_t readCount = 2, writeCount = 2, none = 0;
    EXPECT_EQ(TcpWorkerSocket2::select(both, &readCount, both, &writeCount, nullptr, &none, nullptr,
                                       &silent.total),
              ORV_E_SOCKET_ENOTSOCK)
        << "what reading took out of the array is not there for writing";
}

TEST(TcpSelect, givesThePendingErrorOfAnExceptionalSocket)
{
    PlainSocket plain;
    const std::uint64_t socket = plain.release();
    ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
    TcpWorkerSocket2 worker(socket, &error);
    // A connection that is refused in the background leaves its error behind.
    ASSERT_EQ(::fcntl(static_cast<int>(socket), F_SETFL, O_NONBLOCK), 0);
    const orv_sockaddr_union peer = loopback(closedPort());
    static_cast<void>(orvcore::connectSocket(socket, &peer, sizeof peer.ipv4));
    Selection selection{{}, {}, {&worker}};
    EXPECT_EQ(selection.run(nullptr), ORV_E_SOCKET_ECONNREFUSED);
    EXPECT_EQ(selection.counts(), (Counts{0, 0, 1, 1}));
}

TEST(TcpSelect, refusesWhatItCannotWaitFor)
{
    Connection connection;
    TcpWorkerSocket2* const worker = connection.worker.get();
    TcpWorkerSocket2* const closed = connection.client.get();
    closed->close();
    const std::vector<TcpWorkerSocket2*> most(63, worker);
    Selection fits{most, most, most};
    EXPECT_EQ(fits.run(), ORV_E_SOCKET_OK);
    EXPECT_EQ(fits.counts(), (Counts{63, 63, 0, 2}));
    EXPECT_EQ((Selection{std::vector<TcpWorkerSocket2*>(64, worker), {}, {}}.run()),
              ORV_E_SOCKET_EMFILE);
    EXPECT_EQ((Selection{{worker, closed}, {}, {}}.run()), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ((Selection{{}, {nullptr}, {}}.run()), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ((Selection{{}, {}, {}}.run()), ORV_E_SOCKET_OK) << "just a wait";
    EXPECT_EQ((Selection{{}, {}, {}}.run(nullptr)), ORV_E_SOCKET_EINVAL) << "for ever";
    timeval negative{-1, 0};
    EXPECT_EQ((Selection{{worker}, {}, {}}.run(&negative)), ORV_E_SOCKET_EINVAL);
}

TEST(TcpSelect, endsWhenAnotherThreadCloses)
{
    for (const bool reads : {true, false}) {
        Connection connection;
        TcpWorkerSocket2& worker = *connection.worker;
        std::atomic<std::uint32_t> id{0};
        std::thread selector([&] {
            id = orvcore::currentThreadId();
            Selection selection{{}, {}, {&worker}};
            if (reads) selection.read.push_back(&worker);
            EXPECT_EQ(selection.run(nullptr), ORV_E_SOCKET_ENOTSOCK);
        });
        ASSERT_TRUE(awaitTrue([&] { return id != 0; }) && awaitSleepOf(id));
        EXPECT_EQ(worker.close(), ORV_E_SOCKET_OK);
        selector.join();
    }
}

TEST(TcpSocket2, asksTheNameService)
{
    orv_sockaddr_union out{};
    const auto ask = &TcpSocket2::getAddrInfo;
    ASSERT_EQ(ask("127.0.0.1", 258, nullptr, 0, &out), ORV_E_SOCKET_OK);
    EXPECT_EQ(portOf(out), 258);
    EXPECT_EQ(out.family, 2);
    EXPECT_EQ(ask("127.0.0.1", 258, nullptr, 99, &out), ORV_E_SOCKET_EADDRNOTAVAIL);
    EXPECT_EQ(ask("127.0.0.1", 0, nullptr, 0, &out), ORV_E_SOCKET_EINVAL);
    for (const char* host : {"no-such-host.invalid", "a b", ""}) {
        const ENUM_ORV_E_SOCKET result = ask(host, 1, nullptr, 0, &out);
        EXPECT_TRUE(result == ORV_E_SOCKET_EAI_NONAME || result == ORV_E_SOCKET_EAI_AGAIN ||
                    result == ORV_E_SOCKET_EAI_FAIL)
            << std::hex << result;
    }
    std::int32_t major = 0, minor = 0;
    EXPECT_EQ(TcpSocket2::getVersion(&major, &minor), ORV_E_SOCKET_OK);
    EXPECT_EQ(major, 2);
    EXPECT_EQ(minor, 2);
}

} // namespace
} // namespace orv::net::test
