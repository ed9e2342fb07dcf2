// TCP over the loopback device: round trips, throughput, connections, waiting for many.

#include "bench/common/Case.h"

#include "orv/String.h"
#include "orv/net/TcpClientSocket2.h"
#include "orv/net/TcpServerSocket.h"
#include "orv/net/TcpServerSocket2.h"

#if __has_include(<Poco/Net/StreamSocket.h>)
#include <Poco/Net/ServerSocket.h>
#include <Poco/Net/SocketAddress.h>
#include <Poco/Net/StreamSocket.h>
#endif
#if __has_include(<boost/asio.hpp>)
#include <boost/asio.hpp>
#endif

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace orv::bench {
namespace {

constexpr int BLOCK = 65536;
constexpr int BLOCKS = 512;
constexpr int SELECTED = 60;

void require(bool condition, const char* what)
{
    if (!condition) throw std::runtime_error(what);
}

// Each peer has a Server, which listens on the loopback address, and a Socket with send() and
// recv() of the plain calls' results.

class PosixSocket {
public:
    explicit PosixSocket(int descriptor) : m_descriptor(descriptor)
    {
        require(descriptor >= 0, "socket");
    }
    PosixSocket(PosixSocket&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    ~PosixSocket()
    {
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    static PosixSocket connect(std::uint16_t port)
    {
        PosixSocket socket(::socket(AF_INET, SOCK_STREAM, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        require(::connect(socket.m_descriptor, reinterpret_cast<sockaddr*>(&address),
                          sizeof address) == 0,
                "connect");
        return socket;
    }
    void noDelay()
    {
        const int on = 1;
        ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    std::int64_t send(char* bytes, std::size_t size)
    {
        return ::send(m_descriptor, bytes, size, MSG_NOSIGNAL);
    }
    std::int64_t recv(char* bytes, std::size_t size)
    {
        return ::recv(m_descriptor, bytes, size, 0);
    }
    int descriptor() const noexcept { return m_descriptor; }

private:
    int m_descriptor;
};

struct Posix {
    static constexpr const char* NAME = "posix";
    using Socket = PosixSocket;
    class Server {
    public:
        Server() : m_socket(::socket(AF_INET, SOCK_STREAM, 0))
        {
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            socklen_t size = sizeof address;
            auto* const any = reinterpret_cast<sockaddr*>(&address);
            require(::bind(m_socket.descriptor(), any, size) == 0, "bind");
            require(::listen(m_socket.descriptor(), 64) == 0, "listen");
            require(::getsockname(m_socket.descriptor(), any, &size) == 0, "getsockname");
            m_port = ntohs(address.sin_port);
        }
        std::uint16_t port() const { return m_port; }
        Socket accept() { return Socket(::accept(m_socket.descriptor(), nullptr, nullptr)); }

    private:
        PosixSocket m_socket;
        std::uint16_t m_port = 0;
    };
};

struct Destroy {
    template <class Socket>
    void operator()(Socket* socket) const
    {
        net::TcpSocket2::destroyTcpSocket2(&socket);
    }
};

class OrvSocket {
public:
    explicit OrvSocket(net::TcpWorkerSocket2* socket) : m_socket(socket) {}
    static OrvSocket connect(std::uint16_t port)
    {
        net::TcpClientSocket2* client = nullptr;
        net::TcpClientSocket2::createTcpClientSocket2(2, 1, 6, &client);
        OrvSocket socket(client);
        orv_sockaddr_union address{};
        address.family = 2;
        address.ipv4.port = htons(port);
        address.ipv4.address[0] = 127;
        address.ipv4.address[3] = 1;
        require(client->connect(&address, sizeof address.ipv4) == 0, "connect");
        return socket;
    }
    void noDelay()
    {
        const std::int32_t on = 1;
        m_socket->setsockopt(6, 1, reinterpret_cast<const char*>(&on), sizeof on);
    }
    std::int64_t send(char* bytes, std::size_t size)
    {
        std::int64_t done = 0;
        m_socket->send(bytes, size, 0, &done);
        return done;
    }
    std::int64_t recv(char* bytes, std::size_t size)
    {
        std::int64_t done = 0;
        m_socket->recv(bytes, size, 0, &done);
        return done;
    }
    net::TcpWorkerSocket2* get() const noexcept { return m_socket.get(); }

private:
    std::unique_ptr<net::TcpWorkerSocket2, Destroy> m_socket;
};

struct Orv {
    static constexpr const char* NAME = LIBRARY;
    using Socket = OrvSocket;
    class Server {
    public:
        Server()
        {
            net::TcpServerSocket2* made = nullptr;
            net::TcpServerSocket2::createTcpServerSocket2(0, 1, 6, &made);
            m_server.reset(made);
            m_server->bindListAddAddrAny(0);
            require(m_server->bind() == 0 && m_server->listen(64) == 0, "listen");
            m_server->saveBoundAddresses();
            char text[200];
            std::uint32_t size = sizeof text;
            m_server->boundListAddressesDiagnosticStrA(text, &size);
            const std::string bound = text;
            m_port = static_cast<std::uint16_t>(std::stoi(bound.substr(bound.rfind(':') + 1)));
        }
        std::uint16_t port() const { return m_port; }
        Socket accept()
        {
            net::TcpWorkerSocket2* worker = nullptr;
            require(m_server->accept(&worker) == 0, "accept");
            return Socket(worker);
        }

    private:
        std::unique_ptr<net::TcpServerSocket2, Destroy> m_server;
        std::uint16_t m_port = 0;
    };
};

/// The streams cannot switch the delay of small packets off, and in a dialogue need not.
class StreamSocket {
public:
    explicit StreamSocket(Reference<net::TcpSocket> socket)
        : m_socket(std::move(socket)), m_in(m_socket->getInputStream()),
          m_out(m_socket->getOutputStream())
    {
    }
    static StreamSocket connect(std::uint16_t port)
    {
        return StreamSocket(makeReference<net::TcpSocket>(u"127.0.0.1", port));
    }
    void noDelay() {}
    std::int64_t send(char* bytes, std::size_t size)
    {
        m_out->write(bytes, static_cast<std::int32_t>(size));
        return static_cast<std::int64_t>(size);
    }
    std::int64_t recv(char* bytes, std::size_t size)
    {
        return m_in->read(bytes, static_cast<std::int32_t>(size));
    }

private:
    Reference<net::TcpSocket> m_socket;
    Reference<io::InputStream> m_in;
    Reference<io::OutputStream> m_out;
};

struct OrvStreams {
    static constexpr const char* NAME = "orvcl_streams";
    using Socket = StreamSocket;
    class Server {
    public:
        std::uint16_t port() const { return m_server.getLocalPort(); }
        Socket accept() { return Socket(m_server.accept()); }

    private:
        net::TcpServerSocket m_server{0, 64};
    };
};

#if __has_include(<Poco/Net/StreamSocket.h>)
class PocoSocket {
public:
    explicit PocoSocket(Poco::Net::StreamSocket socket) : m_socket(std::move(socket)) {}
    static PocoSocket connect(std::uint16_t port)
    {
        return PocoSocket(
            Poco::Net::StreamSocket(Poco::Net::SocketAddress("127.0.0.1", Poco::UInt16(port))));
    }
    void noDelay() { m_socket.setNoDelay(true); }
    std::int64_t send(char* bytes, std::size_t size)
    {
        return m_socket.sendBytes(bytes, static_cast<int>(size));
    }
    std::int64_t recv(char* bytes, std::size_t size)
    {
        return m_socket.receiveBytes(bytes, static_cast<int>(size));
    }

private:
    Poco::Net::StreamSocket m_socket;
};

struct PocoNet {
    static constexpr const char* NAME = "poco";
    using Socket = PocoSocket;
    class Server {
    public:
        std::uint16_t port() const { return m_socket.address().port(); }
        Socket accept() { return Socket(m_socket.acceptConnection()); }

    private:
        Poco::Net::ServerSocket m_socket{Poco::Net::SocketAddress("127.0.0.1", Poco::UInt16(0)),
                                         64};
    };
};
#endif

#if __has_include(<boost/asio.hpp>)
class AsioSocket {
public:
    AsioSocket() : m_context(std::make_unique<boost::asio::io_context>(1)), m_socket(*m_context) {}
    static AsioSocket connect(std::uint16_t port)
    {
        AsioSocket socket;
        socket.m_socket.connect({boost::asio::ip::address_v4::loopback(), port});
        return socket;
    }
    boost::asio::ip::tcp::socket& socket() noexcept { return m_socket; }
    void noDelay() { m_socket.set_option(boost::asio::ip::tcp::no_delay(true)); }
    std::int64_t send(char* bytes, std::size_t size)
    {
        return static_cast<std::int64_t>(m_socket.write_some(boost::asio::buffer(bytes, size)));
    }
    std::int64_t recv(char* bytes, std::size_t size)
    {
        boost::system::error_code error;
        return static_cast<std::int64_t>(
            m_socket.read_some(boost::asio::buffer(bytes, size), error));
    }

private:
    std::unique_ptr<boost::asio::io_context> m_context;
    boost::asio::ip::tcp::socket m_socket;
};

struct Asio {
    static constexpr const char* NAME = "asio";
    using Socket = AsioSocket;
    class Server {
    public:
        std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }
        Socket accept()
        {
            Socket socket;
            m_acceptor.accept(socket.socket());
            return socket;
        }

    private:
        boost::asio::io_context m_context{1};
        boost::asio::ip::tcp::acceptor m_acceptor{m_context,
                                                  {boost::asio::ip::address_v4::loopback(), 0}};
    };
};
#endif

template <class Socket>
bool receiveAll(Socket& socket, char* bytes, std::size_t size)
{
    while (size > 0) {
        const std::int64_t got = socket.recv(bytes, size);
        if (got <= 0) return false;
        bytes += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

template <class Socket>
void sendAll(Socket& socket, char* bytes, std::size_t size)
{
    while (size > 0) {
        const std::int64_t put = socket.send(bytes, size);
        require(put > 0, "send");
        bytes += put;
        size -= static_cast<std::size_t>(put);
    }
}

template <class Peer>
void roundTrips(benchmark::State& state)
{
    typename Peer::Server server;
    std::jthread echo([&] {
        typename Peer::Socket socket = server.accept();
        socket.noDelay();
        char bytes[64];
        while (receiveAll(socket, bytes, sizeof bytes)) sendAll(socket, bytes, sizeof bytes);
    });
    typename Peer::Socket socket = Peer::Socket::connect(server.port());
    socket.noDelay();
    char bytes[64] = "ping";
    for (auto _ : state) {
        sendAll(socket, bytes, sizeof bytes);
        receiveAll(socket, bytes, sizeof bytes);
    }
    state.SetItemsProcessed(state.iterations());
}

template <class Peer>
void throughput(benchmark::State& state)
{
    typename Peer::Server server;
    std::jthread sink([&] {
        typename Peer::Socket socket = server.accept();
        std::vector<char> bytes(BLOCK);
        std::int64_t have = 0;
        for (std::int64_t got; (got = socket.recv(bytes.data(), BLOCK)) > 0;) {
            have += got;
            if (have < std::int64_t{BLOCKS} * BLOCK) continue;
            have = 0;
            char done = '!';
            sendAll(socket, &done, 1);
        }
    });
    typename Peer::Socket socket = Peer::Socket::connect(server.port());
    std::vector<char> bytes(BLOCK, 'x');
    char done = 0;
    for (auto _ : state) {
        for (int i = 0; i < BLOCKS; ++i) sendAll(socket, bytes.data(), BLOCK);
        receiveAll(socket, &done, 1);
    }
    state.SetBytesProcessed(state.iterations() * BLOCKS * BLOCK);
}

template <class Peer>
void connections(benchmark::State& state)
{
    typename Peer::Server server;
    for (auto _ : state) {
        typename Peer::Socket near = Peer::Socket::connect(server.port());
        typename Peer::Socket far = server.accept();
    }
    state.SetItemsProcessed(state.iterations());
}

template <class Peer>
void addPeer()
{
    addCase("echo_round_trip/64B", Peer::NAME, &roundTrips<Peer>)
        ->UseRealTime()
        ->MeasureProcessCPUTime();
    addCase("throughput/64KiB", Peer::NAME, &throughput<Peer>)
        ->UseRealTime()
        ->MeasureProcessCPUTime();
    addCase("connect_accept_close/1", Peer::NAME, &connections<Peer>)->UseRealTime();
}

/// Connections of which the last has bytes to read.
template <class Peer>
struct Crowd {
    Crowd()
    {
        for (int i = 0; i < SELECTED; ++i) {
            near.push_back(Peer::Socket::connect(server.port()));
            far.push_back(server.accept());
        }
        char byte = 'x';
        sendAll(near.back(), &byte, 1);
    }

    typename Peer::Server server;
    std::vector<typename Peer::Socket> near, far;
};

void addSelect()
{
    addCase("select/60", LIBRARY, [](benchmark::State& state) {
        Crowd<Orv> crowd;
        net::TcpWorkerSocket2* sockets[SELECTED];
        for (auto _ : state) {
            for (int i = 0; i < SELECTED; ++i)
                sockets[i] = crowd.far[static_cast<std::size_t>(i)].get();
            std::uint32_t reading = SELECTED;
            std::uint32_t none = 0;
            std::uint32_t never = 0;
            std::int32_t total = 0;
            timeval now{0, 0};
            net::TcpWorkerSocket2::select(sockets, &reading, nullptr, &none, nullptr, &never, &now,
                                          &total);
            require(total == 1 && sockets[SELECTED - 1] != nullptr, "select");
        }
    });
    addCase("select/60", "posix", [](benchmark::State& state) {
        Crowd<Posix> crowd;
        for (auto _ : state) {
            fd_set reading;
            FD_ZERO(&reading);
            int highest = 0;
            for (const PosixSocket& socket : crowd.far) {
                FD_SET(socket.descriptor(), &reading);
                highest = std::max(highest, socket.descriptor());
            }
            timeval now{0, 0};
            int total = ::select(highest + 1, &reading, nullptr, nullptr, &now);
            for (const PosixSocket& socket : crowd.far) {
                if (FD_ISSET(socket.descriptor(), &reading)) total += 10;
            }
            require(total == 11, "select");
        }
    });
#if __has_include(<Poco/Net/StreamSocket.h>)
    addCase("select/60", "poco", [](benchmark::State& state) {
        Poco::Net::ServerSocket server(Poco::Net::SocketAddress("127.0.0.1", Poco::UInt16(0)), 64);
        std::vector<Poco::Net::StreamSocket> near, far;
        for (int i = 0; i < SELECTED; ++i) {
            near.emplace_back(server.address());
            far.push_back(server.acceptConnection());
        }
        near.back().sendBytes("x", 1);
        for (auto _ : state) {
            Poco::Net::Socket::SocketList reading(far.begin(), far.end());
            Poco::Net::Socket::SocketList none;
            Poco::Net::Socket::SocketList never;
            require(Poco::Net::Socket::select(reading, none, never, Poco::Timespan(0)) == 1,
                    "select");
        }
    });
#endif
}

const bool registered = [] {
    addPeer<Orv>();
    addPeer<OrvStreams>();
    addPeer<Posix>();
#if __has_include(<Poco/Net/StreamSocket.h>)
    addPeer<PocoNet>();
#endif
#if __has_include(<boost/asio.hpp>)
    addPeer<Asio>();
#endif
    addSelect();
    return true;
}();

} // namespace
} // namespace orv::bench
