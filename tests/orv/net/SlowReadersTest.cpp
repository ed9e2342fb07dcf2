#include "tests/orv/net/Sockets.h"

#include <cstdint>
#include <thread>
#include <vector>

namespace orv::net::test {
namespace {

constexpr std::size_t CONNECTIONS = 200;
constexpr std::uint32_t BYTES = 300'000;

/// A byte of the stream of one client, so that no piece of it can pass for another.
char byteAt(std::uint32_t client, std::uint32_t position)
{
    std::uint32_t mixed = (position + 1) * 2654435761u + client * 40503u;
    mixed ^= mixed >> 15;
    return static_cast<char>(mixed * 2246822519u >> 24);
}

void echo(TcpWorkerSocket2& worker)
{
    std::string bytes;
    while (!(bytes = received(worker, 4096)).empty() && !testing::Test::HasFailure()) {
        sendAll(worker, bytes);
    }
    worker.shutdownOutput();
}

void sendStream(TcpClientSocket2& client, std::uint32_t number)
{
    std::string bytes(BYTES, '\0');
    for (std::uint32_t i = 0; i < BYTES; ++i) bytes[i] = byteAt(number, i);
    sendAll(client, bytes);
    EXPECT_EQ(client.shutdownOutput(), ORV_E_SOCKET_OK);
}

TEST(SlowReaders, loseAndDuplicateNothing)
{
    const std::ptrdiff_t before = openDescriptors();
    {
        const Owned<TcpServerSocket2> server = listeningServer();
        const std::uint16_t port = lastPort(*server);
        std::vector<Owned<TcpClientSocket2>> clients;
        std::vector<std::jthread> threads;
        for (std::uint32_t i = 0; i < CONNECTIONS; ++i) {
            threads.emplace_back([&] {
                TcpWorkerSocket2* accepted = nullptr;
                ASSERT_EQ(server->accept(&accepted), ORV_E_SOCKET_OK);
                echo(*Owned<TcpWorkerSocket2>(accepted));
            });
            clients.push_back(newClient());
            ASSERT_EQ(connectTo(*clients.back(), port), ORV_E_SOCKET_OK);
            threads.emplace_back([i, client = clients.back().get()] { sendStream(*client, i); });
        }
        // All connections are under way at once; each is read in small pieces, one after another.
        for (std::uint32_t i = 0; i < CONNECTIONS; ++i) {
            std::uint32_t total = 0, wrong = 0;
            for (std::string bytes;
                 total <= BYTES && !(bytes = received(*clients[i], 1000)).empty();) {
                for (const char byte : bytes) wrong += byte != byteAt(i, total++) ? 1 : 0;
            }
            EXPECT_EQ(total, BYTES) << i;
            EXPECT_EQ(wrong, 0u) << i;
        }
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace orv::net::test
