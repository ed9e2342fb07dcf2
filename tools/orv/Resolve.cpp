#include "tools/orv/Command.h"
#include "tools/orv/Sockets.h"

namespace tool {
namespace {

void runResolve(const Arguments& arguments, orv::io::PrintWriter& out)
{
    for (const orv_sockaddr_union& address : addressesOfHost(arguments)) {
        out.println(addressText(address));
    }
}

constexpr const char16_t* options[] = {u"host", u"port"};

} // namespace

const Command resolve = {u"resolve",
                         u"the addresses of a host",
                         u" -host=NAME -port=N\n\n"
                         u"Prints each address of the host with the port, as 10.1.2.3:80 or "
                         u"[fe80::1]:80, in the order in\nwhich the name service gives them and "
                         u"\"orv connect\" tries them.",
                         options,
                         0,
                         &runResolve};

} // namespace tool
