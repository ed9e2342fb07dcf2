#include "orv/net/TcpServerSocket.h"

#include "orv/net/SocketErrors.h"
#include "tests/orv/io/Streams.h"
#include "tests/support/Loopback.h"
#include "tests/support/Refusals.h"

#include <chrono>
#include <string>
#include <thread>

#include <fcntl.h>

namespace orv::net {
namespace {

using io::test::readOnce;

/// The words of the exception that `call` throws.
template <class Kind, class Call>
std::string wordsOf(Call call)
{
    return test::refusalOf<Kind>(call).second;
}

/// The two ends of a connection.
struct Connection {
    Reference<TcpServerSocket> server = makeReference<TcpServerSocket>(std::uint16_t{0}, 5);
    Reference<TcpSocket> client = makeReference<TcpSocket>(u"127.0.0.1", server->getLocalPort());
    Reference<TcpSocket> worker = server->accept();
};

TEST(TcpSocket, isAPairOfStreams)
{
    Connection connection;
    auto out = connection.client->getOutputStream();
    const auto in = connection.worker->getInputStream();
    EXPECT_EQ(connection.worker->getInputStream(), in) << "always the same";
    out->write("abc", 3);
    EXPECT_EQ(readOnce(*in, 100), "abc");
    connection.worker = nullptr;
    out->write("the stream keeps the connection open", 36);
    EXPECT_EQ(readOnce(*in, 100), "the stream keeps the connection open");
    connection.client = nullptr;
    out = nullptr;
    EXPECT_EQ(readOnce(*in, 100), "|-1") << "the peer has closed";
}

TEST(TcpSocket, givesUpReadingAfterItsTimeLimit)
{
    Connection connection;
    connection.client->setSoTimeout(60);
    const auto in = connection.client->getInputStream();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(wordsOf<io::TimeoutException>([&] { in->read(); }), "socket timeout");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(60));
    connection.worker->getOutputStream()->write("late", 4);
    EXPECT_EQ(readOnce(*in, 100), "late") << "nothing is lost by a time-out";
    connection.client->setSoTimeout(0);
    std::thread writer([&] { connection.worker->getOutputStream()->write("later", 5); });
    EXPECT_EQ(readOnce(*in, 100), "later");
    writer.join();
}

TEST(TcpSocket, tellsFailuresByTheOperationAndTheError)
{
    test::PlainSocket listener;
    const std::uint16_t port = listener.listen();
    TcpSocket socket(u"127.0.0.1", port);
    const std::uint64_t worker = test::acceptFrom(listener);
    test::resetWhenClosed(worker);
    EXPECT_EQ(orvcore::closeSocket(worker), 0u);
    const String text(ORVGetDescriptionFromORV_E_SOCKET(ORV_E_SOCKET_ECONNRESET));
    const std::string reset = text.getBytes();
    EXPECT_EQ(wordsOf<io::IoException>([&] { socket.getInputStream()->read(); }),
              "TcpSocketInputStream::read " + reset);
    const auto out = socket.getOutputStream();
    EXPECT_EQ(wordsOf<io::IoException>([&] { out->write("x", 1); }),
              "TcpSocketOutputStream::write " + reset);
    EXPECT_EQ(wordsOf<io::IoException>([&] { out->write("x", -1); }),
              "TcpSocketOutputStream::write EINVAL An invalid argument was supplied. ");
}

TEST(TcpSocket, leavesNothingOpenWhenItCannotBeMade)
{
    const std::uint16_t closed = test::closedPort();
    const auto taken = makeReference<TcpServerSocket>(std::uint16_t{0}, 1);
    const std::ptrdiff_t before = test::openDescriptors();
    EXPECT_EQ(wordsOf<Exception>([&] { TcpSocket(u"127.0.0.1", closed); }),
              "TcpSocket::TcpSocket Unable to connect to 127.0.0.1");
    EXPECT_EQ(wordsOf<Exception>([&] { TcpSocket(u"a b", 1); }), "Unknown host: a b");
    const auto refused = wordsOf<Exception>([&] { TcpServerSocket(taken->getLocalPort(), 1); });
    EXPECT_TRUE(refused.starts_with("TcpServerSocket: EADDRINUSE ")) << refused;
    EXPECT_EQ(test::openDescriptors(), before);
}

TEST(TcpSocket, canBeInheritedOnceItsIdWasAskedFor)
{
    Connection connection;
    const String id = connection.client->getInheritanceId();
    const String prefix = u"orv.net.tcp.socket=";
    ASSERT_TRUE(id.startsWith(prefix));
    const int descriptor = ORVStrToIW(id.getData() + prefix.getLength());
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), 0);
    connection = {nullptr, nullptr, nullptr};
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1) << "and closes with its socket all the same";
}

} // namespace
} // namespace orv::net
