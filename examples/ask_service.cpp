// A service on this machine that adds numbers, and a client that asks it by URIs.

#include <orv/Exception>
#include <orv/Number>
#include <orv/Reference>
#include <orv/String>
#include <orv/net/TcpServerSocket>
#include <orv/net/TcpSocket>
#include <orv/net/URI>

#include <cstdio>
#include <thread>

using namespace orv;
using namespace orv::net;

namespace {

/// Text up to the end that the other side makes, or a line feed.
String readLine(io::InputStream& in)
{
    String line;
    for (char byte = 0; in.read(&byte, 1) == 1 && byte != '\n';) {
        line.append(static_cast<char16_t>(byte));
    }
    return line;
}

void writeLine(io::OutputStream& out, const String& text)
{
    const String line = text + u"\n";
    out.write(line.getBytes(), line.getLength());
}

/// Answers one request, "/add?a=2&b=40".
void serve(TcpServerSocket& server)
{
    const auto socket = server.accept();
    const URI request(readLine(*socket->getInputStream()));
    std::int32_t sum = 0;
    for (const char16_t* key : {u"a", u"b"}) {
        sum += Number::parseInt32(request.getQueryValue(key, true));
    }
    writeLine(*socket->getOutputStream(), request.getPath(true) + u": " + String::valueOf(sum));
}

/// Connects to host and port of the URI and sends the rest of it.
String ask(const URI& uri)
{
    URI request(uri);
    request.removeScheme();
    request.removeAuthority();
    const auto socket =
        makeReference<TcpSocket>(uri.getHost(true), static_cast<std::uint16_t>(uri.getPort()));
    socket->setSoTimeout(10'000);
    writeLine(*socket->getOutputStream(), request.toString());
    return readLine(*socket->getInputStream());
}

} // namespace

int main()
{
    try {
        TcpServerSocket server(0, 5); // any free port
        std::thread service([&] { serve(server); });

        URI uri(u"sum://127.0.0.1/simple%20sum?a=2");
        uri.setPort(server.getLocalPort());
        uri.setQueryPair(u"b", u"40", true);
        std::printf("%s\n", ask(uri).getBytes());
        service.join();
    } catch (const Exception& exception) {
        std::printf("failed: %s\n", exception.getDescription().getBytes());
        return 1;
    }
    return 0;
}
