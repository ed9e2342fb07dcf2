#include "tests/orv/net/Sockets.h"

#include <cstdint>
#include <thread>
#include <vector>

namespace orv::net::test {
namespace {

constexpr std::size_t CONNECTIONS = 200;
constexpr std::uint32_t BYTES = 300'000;

/// A byte of the stream of one client, so that no piece of it can pass for another.
unsigned char byteAt(std::uint32_t client, std::uint32_t position)
{
    std::uint32_t mixed = (position + 1) * 2654435761u + client * 40503u;
    mixed ^= mixed >> 15;
    return static_cast<unsigned char>(mixed * 2246822519u >> 24);
}

void echo(TcpWorkerSocket2& worker)
{
    char bytes[4096];
    std::int64_t got = 0;
    while (worker.recv(bytes, sizeof bytes, 0, &got) == ORV_E_SOCKET_OK && got > 0) {
        std::int64_t sent = 0;
        ASSERT_EQ(worker.send(bytes, static_cast<std::uint64_t>(got), 0, &sent), ORV_E_SOCKET_OK);
        ASSERT_EQ(sent, got);
    }
    worker.shutdownOutput();
}

void sendStream(TcpClientSocket2& client, std::uint32_t number)
{
    std::string bytes(BYTES, '\0');
    for (std::uint32_t i = 0; i < BYTES; ++i) bytes[i] = static_cast<char>(byteAt(number, i));
    std::int64_t done = 0;
    EXPECT_EQ(client.send(bytes.data(), BYTES, 0, &done), ORV_E_SOCKET_OK);
    EXPECT_EQ(done, BYTES);
    EXPECT_EQ(client.shutdownOutput(), ORV_E_SOCKET_OK);
}

TEST(SlowReaders, loseAndDuplicateNothing)
{
    const std::ptrdiff_t before = openDescriptors();
    {
        const Owned<TcpServerSocket2> server = listeningServer();
        const std::uint16_t port = lastPort(*server);
        std::vector<Owned<TcpClientSocket2>> clients;
        std::vector<Owned<TcpWorkerSocket2>> workers(CONNECTIONS);
        std::vector<std::thread> threads;
        std::thread acceptor([&] {
            for (auto& worker : workers) {
                TcpWorkerSocket2* accepted = nullptr;
                ASSERT_EQ(server->accept(&accepted), ORV_E_SOCKET_OK);
                worker.reset(accepted);
            }
        });
        for (std::size_t i = 0; i < CONNECTIONS; ++i) {
            clients.push_back(newClient());
            ASSERT_EQ(connectTo(*clients.back(), port), ORV_E_SOCKET_OK);
        }
        acceptor.join();
        for (auto& worker : workers) threads.emplace_back([&] { echo(*worker); });
        for (std::uint32_t i = 0; i < CONNECTIONS; ++i) {
            threads.emplace_back([&, i] { sendStream(*clients[i], i); });
        }
        // All connections are under way at once; each is read in small pieces, one after another.
        for (std::uint32_t i = 0; i < CONNECTIONS; ++i) {
            std::uint32_t total = 0, wrong = 0;
            char bytes[1000];
            std::int64_t count = 0;
            while (clients[i]->recv(bytes, sizeof bytes, 0, &count) == ORV_E_SOCKET_OK &&
                   count > 0) {
                for (std::int64_t k = 0; k < count; ++k, ++total) {
                    if (bytes[k] != static_cast<char>(byteAt(i, total))) ++wrong;
                }
            }
            EXPECT_EQ(total, BYTES) << i;
            EXPECT_EQ(wrong, 0u) << i;
        }
        for (std::thread& thread : threads) thread.join();
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace orv::net::test
