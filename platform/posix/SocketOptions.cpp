#include "platform/posix/internal/SocketErrors.h"

#include <cerrno>
#include <cstring>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace orvcore {
namespace {

/// How a value differs between the face and the system.
enum class Form { Number, Linger, Milliseconds, Error };

struct OptionRow {
    std::int32_t level;
    std::int32_t option;
    int nativeLevel;
    int nativeOption;
    Form form;
};

constexpr OptionRow optionRows[] = {
    {LEVEL_SOCKET, 0x0001, SOL_SOCKET, SO_DEBUG, Form::Number},
    {LEVEL_SOCKET, 0x0002, SOL_SOCKET, SO_ACCEPTCONN, Form::Number},
    {LEVEL_SOCKET, OPTION_REUSE_ADDRESS, SOL_SOCKET, SO_REUSEADDR, Form::Number},
    {LEVEL_SOCKET, OPTION_KEEP_ALIVE, SOL_SOCKET, SO_KEEPALIVE, Form::Number},
    {LEVEL_SOCKET, 0x0010, SOL_SOCKET, SO_DONTROUTE, Form::Number},
    {LEVEL_SOCKET, 0x0020, SOL_SOCKET, SO_BROADCAST, Form::Number},
    {LEVEL_SOCKET, OPTION_LINGER, SOL_SOCKET, SO_LINGER, Form::Linger},
    {LEVEL_SOCKET, 0x0100, SOL_SOCKET, SO_OOBINLINE, Form::Number},
    {LEVEL_SOCKET, 0x1001, SOL_SOCKET, SO_SNDBUF, Form::Number},
    {LEVEL_SOCKET, 0x1002, SOL_SOCKET, SO_RCVBUF, Form::Number},
    {LEVEL_SOCKET, 0x1004, SOL_SOCKET, SO_RCVLOWAT, Form::Number},
    {LEVEL_SOCKET, OPTION_SEND_LIMIT, SOL_SOCKET, SO_SNDTIMEO, Form::Milliseconds},
    {LEVEL_SOCKET, OPTION_RECEIVE_LIMIT, SOL_SOCKET, SO_RCVTIMEO, Form::Milliseconds},
    {LEVEL_SOCKET, OPTION_ERROR, SOL_SOCKET, SO_ERROR, Form::Error},
    {LEVEL_SOCKET, 0x1008, SOL_SOCKET, SO_TYPE, Form::Number},
    {LEVEL_TCP, OPTION_NO_DELAY, IPPROTO_TCP, TCP_NODELAY, Form::Number},
    {41, 27, IPPROTO_IPV6, IPV6_V6ONLY, Form::Number},
};

/// The linger option as the face has it; like all values there it takes four bytes.
struct LingerValue {
    std::uint16_t isOn;
    std::uint16_t seconds;
};
static_assert(sizeof(LingerValue) == sizeof(std::int32_t));

const OptionRow* rowOf(std::int32_t level, std::int32_t option) noexcept
{
    for (const OptionRow& row : optionRows) {
        if (row.level == level && row.option == option) return &row;
    }
    return nullptr;
}

template <class T>
int get(NativeSocket socket, const OptionRow& row, T* value) noexcept
{
    socklen_t size = sizeof *value;
    return getsockopt(descriptorOf(socket), row.nativeLevel, row.nativeOption, value, &size);
}

template <class T>
int set(NativeSocket socket, const OptionRow& row, const T& value) noexcept
{
    return setsockopt(descriptorOf(socket), row.nativeLevel, row.nativeOption, &value,
                      sizeof value);
}

int getNumber(NativeSocket socket, const OptionRow& row, void* value) noexcept
{
    int number = 0;
    const int result = get(socket, row, &number);
    if (row.form == Form::Error) number = static_cast<int>(socketErrorOf(number));
    std::memcpy(value, &number, sizeof number);
    return result;
}

int getLinger(NativeSocket socket, const OptionRow& row, void* value) noexcept
{
    linger native{};
    const int result = get(socket, row, &native);
    const LingerValue lingering{static_cast<std::uint16_t>(native.l_onoff),
                                static_cast<std::uint16_t>(native.l_linger)};
    std::memcpy(value, &lingering, sizeof lingering);
    return result;
}

int getMilliseconds(NativeSocket socket, const OptionRow& row, void* value) noexcept
{
    timeval native{};
    const int result = get(socket, row, &native);
    const auto milliseconds =
        static_cast<std::uint32_t>(native.tv_sec * 1000 + native.tv_usec / 1000);
    std::memcpy(value, &milliseconds, sizeof milliseconds);
    return result;
}

int setNumber(NativeSocket socket, const OptionRow& row, const void* value) noexcept
{
    int number = 0;
    std::memcpy(&number, value, sizeof number);
    return set(socket, row, number);
}

int setLinger(NativeSocket socket, const OptionRow& row, const void* value) noexcept
{
    LingerValue lingering{};
    std::memcpy(&lingering, value, sizeof lingering);
    return set(socket, row, linger{lingering.isOn, lingering.seconds});
}

int setMilliseconds(NativeSocket socket, const OptionRow& row, const void* value) noexcept
{
    std::uint32_t milliseconds = 0;
    std::memcpy(&milliseconds, value, sizeof milliseconds);
    return set(socket, row,
               timeval{milliseconds / 1000, static_cast<suseconds_t>(milliseconds % 1000) * 1000});
}

} // namespace

SocketError getSocketOption(NativeSocket socket, std::int32_t level, std::int32_t option,
                            void* value, std::int32_t* size) noexcept
{
    const OptionRow* const row = rowOf(level, option);
    if (row == nullptr) return remember(noSuchOption);
    constexpr std::int32_t needed = sizeof(std::int32_t);
    if (*size < needed) return remember(socketFault);
    *size = needed;
    switch (row->form) {
    case Form::Linger: return rememberOutcome(getLinger(socket, *row, value));
    case Form::Milliseconds: return rememberOutcome(getMilliseconds(socket, *row, value));
    default: return rememberOutcome(getNumber(socket, *row, value));
    }
}

SocketError setSocketOption(NativeSocket socket, std::int32_t level, std::int32_t option,
                            const void* value, std::int32_t size) noexcept
{
    const OptionRow* const row = rowOf(level, option);
    if (row == nullptr) return remember(noSuchOption);
    constexpr std::int32_t needed = sizeof(std::int32_t);
    if (size < needed) return remember(socketFault);
    switch (row->form) {
    case Form::Linger: return rememberOutcome(setLinger(socket, *row, value));
    case Form::Milliseconds: return rememberOutcome(setMilliseconds(socket, *row, value));
    default: return rememberOutcome(setNumber(socket, *row, value));
    }
}

} // namespace orvcore
