#include "tools/orv/Sockets.h"

#include "orv/net/InetSocketAddress.h"

namespace tool {

using orv::String;

void check(ENUM_ORV_E_SOCKET result, const String& what)
{
    if (result == ORV_E_SOCKET_OK) return;
    String text = what + u": " + ORVGetDescriptionFromORV_E_SOCKET(result);
    text.trim();
    throw Failure{text, result};
}

std::vector<orv_sockaddr_union> addressesOfHost(const Arguments& arguments)
{
    const String host = arguments.text(u"host");
    const String port = String::valueOf(arguments.number(u"port", 1, 65535));
    const String what = u"cannot find " + host;

    addrinfo* found = nullptr;
    const auto error = orvcore::resolve(host.getBytes(), port.getBytes(), {}, &found);
    check(ORV_E_SOCKETFromNativeEaiSocketError(error), what);
    const std::unique_ptr<addrinfo, decltype(&ORVfreeaddrinfo)> list(found, &ORVfreeaddrinfo);

    std::vector<orv_sockaddr_union> addresses;
    for (const addrinfo* entry = list.get(); entry != nullptr;) {
        const orvcore::AddressEntry read = orvcore::readAddressEntry(entry);
        if (orvcore::sizeOfAddress(read.family) != 0) addresses.push_back(read.address);
        entry = read.next;
    }
    if (addresses.empty()) check(ORV_E_SOCKET_HOST_NOT_FOUND, what);
    return addresses;
}

String addressText(const orv_sockaddr_union& address)
{
    ENUM_ORV_E_SOCKET error = ORV_E_SOCKET_OK;
    const orv::net::InetSocketAddress made(&address, &error);
    String text;
    made.getDiagnosticStr(text);
    return text;
}

} // namespace tool
