#include "orv/net/TcpWorkerSocket2.h"

#include "tests/orv/net/Sockets.h"

#include <array>
#include <random>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/time.h>

namespace orv::net::test {
namespace {

TEST(TcpWorkerSocket2, shutsDownEachWayOnce)
{
    using Step = ENUM_ORV_E_SOCKET (*)(TcpSocket2*);
    constexpr Step in = OrvNetTcpSocketShutdownInput;
    constexpr Step out = OrvNetTcpSocketShutdownOutput;
    constexpr Step both = OrvNetTcpSocketShutdownBoth;
    constexpr Step note = [](TcpSocket2* socket) {
        socket->setShutdownOut();
        return ORV_E_SOCKET_OK;
    };
    using Row = std::tuple<std::vector<Step>, int, int, std::string>;
    for (const auto& [steps, inEnded, outEnded, heard] :
         {Row{{in}, 1, 0, "x"},
          {{out}, 0, 1, ""},
          {{in, out, out}, 1, 1, ""},
          {{out, both}, 1, 1, ""},
          {{both, in}, 1, 1, ""},
          {{note, out}, 0, 1, "x"}}) { // the note alone shuts nothing
        Connection connection;
        TcpWorkerSocket2& worker = *connection.worker;
        for (const Step step : steps) EXPECT_EQ(step(&worker), ORV_E_SOCKET_OK);
        EXPECT_EQ(worker.getShutdownIn(), inEnded);
        EXPECT_EQ(worker.getShutdownOut(), outEnded);
        char byte = 'x';
        std::int64_t done = 0;
        static_cast<void>(worker.send(&byte, 1, 0, &done));
        EXPECT_EQ(received(*connection.client), heard);
        if (inEnded == 1) {
            EXPECT_EQ(received(worker), "");
        }
    }
}

TEST(TcpWorkerSocket2, endsForBothSidesWhenOneResetsIt)
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
    resetWhenClosed(client.getId());
    for (int time = 0; time < 2; ++time) EXPECT_EQ(client.close(), ORV_E_SOCKET_OK);
    EXPECT_EQ(client.getId(), 0u);
    EXPECT_EQ(OrvNetTcpClientSocketRecv(&client, &byte, 1, 0, &done), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(OrvNetTcpClientSocketSend(&client, &byte, 1, 0, &done), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(done, -1) << "as it was";
    EXPECT_EQ(client.getsockopt(0xFFFF, 4, &byte, &length), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(client.connect(&local, 16), ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(client.shutdownBoth(), ORV_E_SOCKET_OK);
    EXPECT_EQ(received(*connection.worker), "!ECONNRESET");
    EXPECT_EQ(connection.worker->shutdownBoth(), ORV_E_SOCKET_OK) << "nothing left to shut down";
}

constexpr std::uint32_t CONNECTIONS = 200;
constexpr std::uint32_t BYTES = 300'000;

/// The stream of one client, no piece of which can pass for another.
std::string streamOf(std::uint32_t client)
{
    std::string bytes(BYTES, 0);
    std::minstd_rand random(client + 1);
    for (char& byte : bytes) byte = static_cast<char>(random() >> 16);
    return bytes;
}

TEST(TcpWorkerSocket2, losesAndDuplicatesNothingForSlowReaders)
{
    const std::ptrdiff_t before = openDescriptors();
    {
        const Owned<TcpServerSocket2> server = listeningServer();
        std::vector<Owned<TcpClientSocket2>> clients;
        std::vector<std::jthread> threads;
        for (std::uint32_t i = 0; i < CONNECTIONS; ++i) {
            threads.emplace_back([&] {
                const auto worker = acceptOne(*server);
                std::string bytes;
                while (!HasFailure() && !(bytes = received(*worker, 4096)).empty()) {
                    sendAll(*worker, bytes);
                }
            });
            clients.push_back(newClient());
            ASSERT_EQ(connectTo(*clients.back(), lastPort(*server)), ORV_E_SOCKET_OK);
            threads.emplace_back([i, client = clients.back().get()] {
                sendAll(*client, streamOf(i));
                EXPECT_EQ(client->shutdownOutput(), ORV_E_SOCKET_OK);
            });
        }
        // All connections are under way at once; each is read in small pieces, one after another.
        for (std::uint32_t i = 0; i < CONNECTIONS; ++i) {
            std::string all, piece;
            while (all.size() <= BYTES && !(piece = received(*clients[i], 1000)).empty()) {
                all += piece;
            }
            EXPECT_TRUE(all == streamOf(i)) << i << ", " << all.size() << " bytes";
        }
    }
    EXPECT_EQ(openDescriptors(), before);
}

/// What select() gives: its result, the three counts and the total.
using Outcome = std::array<std::int64_t, 5>;

/// The arrays of a select().
struct Selection {
    std::vector<TcpWorkerSocket2*> read, write, except;

    Outcome run(timeval* timeout)
    {
        auto reads = static_cast<std::uint32_t>(read.size());
        auto writes = static_cast<std::uint32_t>(write.size());
        auto excepts = static_cast<std::uint32_t>(except.size());
        std::int32_t total = -7;
        const auto result = OrvNetTcpWorkerSocketStaticSelect(
            read.data(), &reads, write.data(), &writes, except.data(), &excepts, timeout, &total);
        return {result, reads, writes, excepts, total};
    }
    Outcome run()
    {
        timeval now{0, 0};
        return run(&now);
    }
};

TEST(TcpSelect, keepsTheReadyInPlaceAndNullsTheOthers)
{
    Connection a, b;
    TcpWorkerSocket2* const first = a.worker.get();
    TcpWorkerSocket2* const second = b.worker.get();
    sendAll(*b.client, "x");
    Selection selection{{first, second, second}, {first}, {first, second}};
    EXPECT_EQ(selection.run(nullptr), (Outcome{0, 2, 1, 0, 2})) << "twice in an array counts once";
    EXPECT_EQ(selection.read, (std::vector<TcpWorkerSocket2*>{nullptr, second, second}));
    EXPECT_EQ(selection.write, std::vector<TcpWorkerSocket2*>{first});
    EXPECT_EQ(selection.except, (std::vector<TcpWorkerSocket2*>{nullptr, nullptr}));

    Selection silent{{first}, {}, {first}};
    timeval shortly{0, 20'000};
    EXPECT_EQ(silent.run(&shortly), (Outcome{0, 0, 0, 0, 0}));
    EXPECT_EQ(silent.read, std::vector<TcpWorkerSocket2*>{first}) << "untouched after a time-out";
    EXPECT_EQ(shortly.tv_usec, 20'000);

    TcpWorkerSocket2* both[] = {first, second};
    std::uint32_t reads = 2, writes = 2, none = 0;
    std::int32_t total = 0;
    EXPECT_EQ(OrvNetTcpClientSocketStaticSelect(both, &reads, both, &writes, nullptr, &none,
                                                nullptr, &total),
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
    EXPECT_EQ((Selection{{}, {}, {&worker}}.run(nullptr)),
              (Outcome{ORV_E_SOCKET_ECONNREFUSED, 0, 0, 1, 1}));
}

TEST(TcpSelect, refusesWhatItCannotWaitFor)
{
    Connection connection;
    TcpWorkerSocket2* const worker = connection.worker.get();
    TcpWorkerSocket2* const closed = connection.client.get();
    closed->close();
    const std::vector<TcpWorkerSocket2*> most(63, worker), tooMany(64, worker);
    EXPECT_EQ((Selection{most, most, most}.run()), (Outcome{0, 63, 63, 0, 2}));
    EXPECT_EQ((Selection{{}, {}, {}}.run()), (Outcome{0, 0, 0, 0, 0})) << "just a wait";
    timeval now{0, 0}, negative{-1, 0};
    using Row = std::tuple<Selection, timeval*, ENUM_ORV_E_SOCKET>;
    for (auto [selection, timeout, result] :
         {Row{{tooMany, {}, {}}, &now, ORV_E_SOCKET_EMFILE},
          {{{worker, closed}, {}, {}}, &now, ORV_E_SOCKET_ENOTSOCK},
          {{{}, {nullptr}, {}}, &now, ORV_E_SOCKET_ENOTSOCK},
          {{{}, {}, {}}, nullptr, ORV_E_SOCKET_EINVAL},
          {{{worker}, {}, {}}, &negative, ORV_E_SOCKET_EINVAL}}) {
        EXPECT_EQ(selection.run(timeout), (Outcome{result, 0, 0, 0, 0}));
    }
}

TEST(TcpSelect, endsWhenAnotherThreadCloses)
{
    for (const std::size_t reads : {0, 1}) {
        Connection connection;
        TcpWorkerSocket2* const worker = connection.worker.get();
        const std::jthread selector = sleeperIn([&] {
            Selection selection{{reads, worker}, {}, {worker}};
            EXPECT_EQ(selection.run(nullptr)[0], ORV_E_SOCKET_ENOTSOCK);
        });
        EXPECT_EQ(worker->close(), ORV_E_SOCKET_OK);
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
    EXPECT_EQ(ask("", 1, nullptr, 0, &out), ORV_E_SOCKET_EAI_NONAME);
    std::int32_t major = 0, minor = 0;
    EXPECT_EQ(OrvNetTcpSocketStaticGetVersion(&major, &minor), ORV_E_SOCKET_OK);
    EXPECT_EQ(major * 10 + minor, 22);
}

} // namespace
} // namespace orv::net::test
