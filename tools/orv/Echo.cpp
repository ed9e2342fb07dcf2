#include "tools/orv/Command.h"
#include "tools/orv/Sockets.h"

#include "orv/Exception.h"
#include "orv/exec/Thread.h"
#include "orv/net/TcpServerSocket2.h"
#include "orv/sync/Lock.h"
#include "orv/sync/Mutex.h"
#include "platform/termination.h"

#include <cstdio>
#include <iterator>
#include <limits>
#include <list>
#include <memory>

namespace tool {
namespace {

using orv::makeReference;
using orv::Reference;
using orv::String;
using orv::exec::Thread;
using orv::io::PrintWriter;
using orv::net::TcpServerSocket2;
using orv::net::TcpWorkerSocket2;

constexpr std::uint32_t RETRY_AFTER = 100;   ///< milliseconds, when no connection can be taken
constexpr std::uint32_t ADDRESS_TEXT = 2000; ///< room for twenty addresses
constexpr std::int32_t ANY_FAMILY = 0;

using Server = OwnedSocket<TcpServerSocket2>;
using Worker = OwnedSocket<TcpWorkerSocket2>;

/// Sends back what comes over one connection, until its peer ends it.
class Connection : public Task {
public:
    explicit Connection(Worker worker) : m_worker(std::move(worker)) {}

    void* run() override
    {
        const auto block = std::make_unique<char[]>(BLOCK);
        std::int64_t got = 0;
        while (m_worker->recv(block.get(), BLOCK, 0, &got) == ORV_E_SOCKET_OK && got > 0) {
            std::int64_t sent = 0;
            m_worker->send(block.get(), static_cast<std::uint64_t>(got), 0, &sent);
            if (sent != got) break;
        }
        m_worker->shutdownOutput();
        m_worker->close();
        return nullptr;
    }

    /// Ends run() from another thread.
    void stop() { m_worker->shutdownBoth(); }

    /// Whether run() is through.
    bool isDone() { return m_worker->getClosed() != 0; }

private:
    Worker m_worker;
};

/// Takes connections and echoes each in a thread of its own.
class EchoServer : public Task {
public:
    explicit EchoServer(Server server) : m_server(std::move(server)) {}

    /// Takes `count` connections, or fewer where the server is stopped, and waits for their end.
    void serve(std::int32_t count)
    {
        for (std::int32_t taken = 0; taken < count;) {
            TcpWorkerSocket2* accepted = nullptr;
            const ENUM_ORV_E_SOCKET result = m_server->accept(&accepted);
            Worker worker(accepted);
            if (m_server->getClosed() != 0) break;
            if (worker != nullptr && start(std::move(worker))) {
                ++taken;
            } else {
                waitForBetterTimes(result);
            }
            joinEnded();
        }
        // The entries stay in the list meanwhile, so that run() can stop them.
        for (const Entry& entry : m_entries) entry.thread->join();
    }

    /// Waits for the request to end, and passes it on.
    void* run() override
    {
        orvcore::awaitTermination();
        m_server->close();
        const orv::sync::Lock lock(m_lock);
        m_stopped = true;
        for (const Entry& entry : m_entries) entry.connection->stop();
        return nullptr;
    }

private:
    struct Entry {
        Reference<Connection> connection;
        Reference<Thread> thread;
    };

    static void waitForBetterTimes(ENUM_ORV_E_SOCKET result)
    {
        const String text =
            String(u"orv echo: no connection taken: ") + ORVGetDescriptionFromORV_E_SOCKET(result);
        const char* const bytes = text.getBytes();
        std::fprintf(stderr, "%s\n", bytes);
        Thread::sleep(RETRY_AFTER);
    }

    /// False where the system has no thread to spare; the connection is closed then.
    bool start(Worker worker)
    {
        const auto connection = makeReference<Connection>(std::move(worker));
        const auto thread = makeReference<Thread>(connection.get());
        try {
            thread->start();
        } catch (const orv::ResultException&) {
            return false;
        }
        const orv::sync::Lock lock(m_lock);
        m_entries.push_back({connection, thread});
        if (m_stopped) connection->stop();
        return true;
    }

    void joinEnded()
    {
        const orv::sync::Lock lock(m_lock);
        for (auto entry = m_entries.begin(); entry != m_entries.end();) {
            const auto next = std::next(entry);
            if (entry->connection->isDone()) {
                entry->thread->join();
                m_entries.erase(entry);
            }
            entry = next;
        }
    }

    Server m_server;
    orv::sync::Mutex m_lock; ///< guards changes of what is below
    std::list<Entry> m_entries;
    bool m_stopped = false;
};

Server openServer(const Arguments& arguments)
{
    const auto port = static_cast<std::uint16_t>(arguments.number(u"port", 0, 65535));
    TcpServerSocket2* made = nullptr;
    check(TcpServerSocket2::createTcpServerSocket2(ANY_FAMILY, orvcore::TYPE_STREAM,
                                                   orvcore::PROTOCOL_TCP, &made),
          u"cannot make a socket");
    Server server(made);
    if (!arguments.has(u"hosts")) {
        check(server->bindListAddAddrAny(port), u"cannot listen");
    } else if (port == 0) {
        throw UsageError{u"-port=0 goes without -hosts"};
    } else {
        const String hosts = arguments.text(u"hosts");
        check(server->bindListAddAddrInfo(hosts.getBytes(), nullptr, port),
              u"cannot find the hosts");
    }
    check(server->bind(), u"cannot bind");
    check(server->listen(0), u"cannot listen");
    server->saveBoundAddresses();
    return server;
}

void runEcho(const Arguments& arguments, PrintWriter& out)
{
    std::int32_t count = std::numeric_limits<std::int32_t>::max();
    if (arguments.has(u"count")) count = arguments.number(u"count", 1, count);
    Server server = openServer(arguments);
    orvcore::holdTermination();

    char addresses[ADDRESS_TEXT];
    std::uint32_t size = sizeof addresses;
    server->boundListAddressesDiagnosticStrA(addresses, &size);
    out.println(u"listening on " + String(addresses));
    out.flush();

    const auto echo = makeReference<EchoServer>(std::move(server));
    Thread stopper(echo.get());
    stopper.start();
    echo->serve(count);
    orvcore::requestTermination();
    stopper.join();
}

constexpr const char16_t* options[] = {u"port", u"hosts", u"count"};

} // namespace

const Command echo = {
    u"echo",
    u"a server that sends back what it is sent",
    u" -port=N [-hosts=LIST] [-count=N]\n\n"
    u"Prints the addresses it listens on and sends back what comes over each connection, until "
    u"its peer\nhas sent all. Ends on SIGINT and SIGTERM.\n\n"
    u"  -port   0 asks the system for a port of its own for each address\n"
    u"  -hosts  listens on the addresses of these hosts only, separated by commas\n"
    u"  -count  ends after so many connections",
    options,
    0,
    &runEcho};

} // namespace tool
