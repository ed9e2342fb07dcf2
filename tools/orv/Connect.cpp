#include "tools/orv/Command.h"
#include "tools/orv/Files.h"
#include "tools/orv/Sockets.h"

#include "orv/exec/Thread.h"
#include "orv/net/TcpClientSocket2.h"
#include "platform/console.h"

#include <atomic>
#include <optional>

namespace tool {
namespace {

using orv::makeReference;
using orv::Reference;
using orv::String;
using orv::exec::Thread;
using orv::io::InputStream;
using orv::io::OutputStream;
using orv::io::PrintWriter;
using orv::net::TcpClientSocket2;

/// Milliseconds until a sender looks whether it is to stop.
constexpr std::int32_t SEND_LIMIT = 100;

/// Closes without ending the sending first, which would let a cut stream look complete.
struct CloseSocket : DestroySocket {
    void operator()(TcpClientSocket2* socket) const
    {
        socket->close();
        DestroySocket::operator()(socket);
    }
};
using Client = std::unique_ptr<TcpClientSocket2, CloseSocket>;

/// Says how the connection ends when it is closed, by us or with this process: in order, or by a
/// reset, from which the peer learns that it was broken off.
void setReset(TcpClientSocket2& client, bool reset)
{
    const std::uint16_t lingering[] = {reset ? std::uint16_t{1} : std::uint16_t{0}, 0};
    client.setsockopt(orvcore::LEVEL_SOCKET, orvcore::OPTION_LINGER,
                      reinterpret_cast<const char*>(lingering), sizeof lingering);
}

ENUM_ORV_E_SOCKET tryToConnect(const orv_sockaddr_union& address, Client& client)
{
    TcpClientSocket2* made = nullptr;
    const auto result = TcpClientSocket2::createTcpClientSocket2(
        address.family, orvcore::TYPE_STREAM, orvcore::PROTOCOL_TCP, &made);
    if (result != ORV_E_SOCKET_OK) return result;
    client.reset(made);
    return client->connect(&address, orvcore::sizeOfAddress(address.family));
}

/// Connects to the first address of the host that answers.
Client connectToHost(const Arguments& arguments)
{
    Client client;
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    String last;
    for (const orv_sockaddr_union& address : addressesOfHost(arguments)) {
        result = tryToConnect(address, client);
        if (result == ORV_E_SOCKET_OK) break;
        last = addressText(address);
    }
    check(result, u"cannot connect to " + last);
    setReset(*client, true);
    return client;
}

/// Carries standard input to the peer, in a thread of its own.
class Sender : public Task {
public:
    Sender(TcpClientSocket2& socket, Reference<InputStream> input)
        : m_socket(socket), m_input(std::move(input)), m_block(std::make_unique<char[]>(BLOCK))
    {
        m_socket.setsockopt(orvcore::LEVEL_SOCKET, orvcore::OPTION_SEND_LIMIT,
                            reinterpret_cast<const char*>(&SEND_LIMIT), sizeof SEND_LIMIT);
    }

    void* run() override
    {
        try {
            carry();
            return nullptr;
        } catch (const Failure& failure) {
            m_failure = failure;
        } catch (const orv::Exception& exception) {
            m_failure = Failure{u"cannot read the input", exception.getResult()};
        }
        m_socket.shutdownInput();
        return nullptr;
    }

    /// Lets run() end soon, without a word to the peer.
    void stop()
    {
        m_stopped = true;
        m_socket.shutdownInput();
    }

    /// Throws what run(), which is through, failed in.
    void checkOutcome() const
    {
        if (m_failure) throw Failure(*m_failure);
    }

private:
    /// Once the peer has ended, what input there is still goes out, but none is waited for.
    void carry()
    {
        const ORVHandle input = orvcore::standardInput();
        while (orvcore::awaitInput(m_socket.getId(), input) && !m_stopped) {
            const std::int32_t count = m_input->read(m_block.get(), BLOCK);
            if (count < 0) {
                m_socket.shutdownOutput();
                return;
            }
            send(count);
        }
    }

    void send(std::int64_t count)
    {
        for (char* bytes = m_block.get(); count > 0 && !m_stopped;) {
            std::int64_t sent = 0;
            const auto result = m_socket.send(bytes, static_cast<std::uint64_t>(count), 0, &sent);
            if (result == ORV_E_SOCKET_ETIMEDOUT) continue;
            check(result, u"cannot send all of the input");
            bytes += sent;
            count -= sent;
        }
    }

    TcpClientSocket2& m_socket;
    Reference<InputStream> m_input;
    std::unique_ptr<char[]> m_block;
    std::optional<Failure> m_failure;
    std::atomic<bool> m_stopped{false};
};

/// Carries what the peer sends to standard output, until the peer ends.
void receive(TcpClientSocket2& socket, OutputStream& output)
{
    const auto block = std::make_unique<char[]>(BLOCK);
    for (;;) {
        std::int64_t got = 0;
        check(socket.recv(block.get(), BLOCK, 0, &got), u"the connection broke");
        if (got == 0) return;
        named(u"cannot write the output",
              [&] { output.write(block.get(), static_cast<std::int32_t>(got)); });
    }
}

void runConnect(const Arguments& arguments, PrintWriter&)
{
    const Client client = connectToHost(arguments);
    const Reference<OutputStream> output = openOutput(arguments);
    const auto sender = makeReference<Sender>(*client, openInput(arguments));
    Thread thread(sender.get());
    thread.start();
    try {
        receive(*client, *output);
    } catch (const Failure&) {
        sender->stop();
        thread.join();
        throw;
    }
    thread.join();
    sender->checkOutcome();
    setReset(*client, false);
}

constexpr const char16_t* options[] = {u"host", u"port"};

} // namespace

const Command connect = {
    u"connect",
    u"carries bytes to a server and back",
    u" -host=NAME -port=N\n\n"
    u"Connects to the first address of the host that answers, sends it standard input and prints "
    u"what it\nsends, both at once. At the end of the input sending ends and the rest of the "
    u"answer "
    u"is awaited. The\ncommand ends when the peer has sent all; input that is there by then still "
    u"goes out. When the command\nis interrupted or fails, the peer sees the connection reset.",
    options,
    0,
    &runConnect};

} // namespace tool
