#include "orv/net/Transport.h"

#include "orv/net/QuarkTransport.h"

namespace orv::net {

Reference<ITransport> Transport::get(const String& progId)
{
    return makeReference<QuarkTransport>(progId);
}

} // namespace orv::net
