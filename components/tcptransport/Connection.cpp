#include "components/tcptransport/Connection.h"

#include "orv/io/Channels.h"

#include <utility>

namespace orv::components::tcptransport {

namespace {

using net::TcpWorkerSocket2;

/// The socket that the two streams share.
class Connection : public Object {
public:
    explicit Connection(Owned<TcpWorkerSocket2> connected) : socket(std::move(connected)) {}

    const Owned<TcpWorkerSocket2> socket;
};

class ConnectionInput : public io::InputStream {
public:
    explicit ConnectionInput(Connection* connection) : m_connection(connection) {}

    using InputStream::read;
    std::int32_t read(signed char* buffer, std::int32_t n) override
    {
        // Without room there is no telling the end from nothing.
        if (n < 1) return 0;
        std::int64_t done = 0;
        check(m_connection->socket->recv(reinterpret_cast<char*>(buffer),
                                         static_cast<std::uint64_t>(n), 0, &done));
        return done == 0 ? -1 : static_cast<std::int32_t>(done);
    }

private:
    Reference<Connection> m_connection;
};

class ConnectionOutput : public io::OutputStream {
public:
    explicit ConnectionOutput(Connection* connection) : m_connection(connection) {}

    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override
    {
        // A failure on the way shows as fewer bytes at first, and by itself the next time.
        while (n > 0) {
            std::int64_t done = 0;
            auto* const from = const_cast<char*>(reinterpret_cast<const char*>(bytes));
            check(m_connection->socket->send(from, static_cast<std::uint64_t>(n), 0, &done));
            bytes += done;
            n -= static_cast<std::int32_t>(done);
        }
    }

private:
    Reference<Connection> m_connection;
};

} // namespace

ENUM_ORV_E_SOCKET setOption(TcpWorkerSocket2& socket, std::int32_t level, std::int32_t option,
                            std::int32_t value)
{
    return socket.setsockopt(level, option, reinterpret_cast<const char*>(&value), sizeof value);
}

void limitWaits(TcpWorkerSocket2& socket, std::int32_t timeout)
{
    check(setOption(socket, orvcore::LEVEL_SOCKET, orvcore::OPTION_SEND_LIMIT, timeout));
    check(setOption(socket, orvcore::LEVEL_SOCKET, orvcore::OPTION_RECEIVE_LIMIT, timeout));
}

Reference<io::IChannel> makeChannel(Owned<TcpWorkerSocket2> socket, std::int32_t timeout)
{
    limitWaits(*socket, timeout);
    // A write is a whole message, which need not wait for more, and a peer that lost its power is
    // noticed some day without a time limit too.
    check(setOption(*socket, orvcore::LEVEL_TCP, orvcore::OPTION_NO_DELAY, 1));
    check(setOption(*socket, orvcore::LEVEL_SOCKET, orvcore::OPTION_KEEP_ALIVE, 1));
    const auto connection = makeReference<Connection>(std::move(socket));
    return io::Channels::adaptStreams(makeReference<ConnectionInput>(connection.get()).get(),
                                      makeReference<ConnectionOutput>(connection.get()).get());
}

} // namespace orv::components::tcptransport
