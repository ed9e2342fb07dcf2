#include "platform/orvcore.h"

#include "platform/posix/internal/Results.h"
#include "platform/posix/internal/SocketErrors.h"

#include <cerrno>
#include <climits>
#include <cstring>

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

void translateFamily(addrinfo& entry) noexcept
{
    if (entry.ai_family != AF_INET6) return;
    entry.ai_family = orvcore::FAMILY_IPV6;
    if (entry.ai_addr != nullptr) entry.ai_addr->sa_family = orvcore::FAMILY_IPV6;
}

} // namespace

ORVResult ORVGetHostName(char* buffer, std::int32_t size) noexcept
{
    if (buffer == nullptr) return E_POINTER;
    char name[HOST_NAME_MAX + 1];
    if (gethostname(name, sizeof name) != 0) return orvcore::lastError();
    const std::size_t length = strnlen(name, sizeof name - 1);
    if (size < 1 || length >= static_cast<std::size_t>(size)) return orvcore::bufferTooSmall;
    std::memcpy(buffer, name, length);
    buffer[length] = 0;
    return S_OK;
}

std::int32_t ORVgetaddrinfo(const char* node, const char* service, const addrinfo* hints,
                            addrinfo** out) noexcept
{
    addrinfo wanted{};
    if (hints != nullptr) wanted = *hints;
    if (wanted.ai_family == orvcore::FAMILY_IPV6) wanted.ai_family = AF_INET6;

    addrinfo* list = nullptr;
    int error;
    do {
        error = getaddrinfo(node, service, hints == nullptr ? nullptr : &wanted, &list);
    } while (error == EAI_SYSTEM && errno == EINTR);
    *out = error == 0 ? list : nullptr;
    for (addrinfo* entry = *out; entry != nullptr; entry = entry->ai_next) translateFamily(*entry);
    return static_cast<std::int32_t>(orvcore::resolverErrorOf(error));
}

void ORVfreeaddrinfo(addrinfo* list) noexcept
{
    if (list != nullptr) freeaddrinfo(list);
}
