#include "platform/console.h"

#include "platform/files.h"

#include <cerrno>

#include <termios.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr std::int32_t interruptKey = 3;
constexpr std::int32_t backspaceKey = 8;
constexpr std::int32_t enterKey = 13;
constexpr std::int32_t endKey = 26;
constexpr unsigned char deleteByte = 127;

// One byte of standard input, endKey at its end.
std::int32_t readByte() noexcept
{
    unsigned char byte = 0;
    ssize_t count;
    do {
        count = ::read(STDIN_FILENO, &byte, 1);
    } while (count < 0 && errno == EINTR);
    return count == 1 ? byte : endKey;
}

termios keyByKey(termios mode) noexcept
{
    mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHONL | ISIG | IEXTEN);
    mode.c_iflag &= ~static_cast<tcflag_t>(ICRNL | INLCR | IGNCR | IXON);
    mode.c_cc[VMIN] = 1;
    mode.c_cc[VTIME] = 0;
    return mode;
}

// Changes the mode without losing what was typed ahead.
void setMode(const termios& mode) noexcept
{
    while (tcsetattr(STDIN_FILENO, TCSANOW, &mode) != 0 && errno == EINTR) {
    }
}

bool isKey(const termios& mode, unsigned index, std::int32_t byte) noexcept
{
    return mode.c_cc[index] != _POSIX_VDISABLE && byte == mode.c_cc[index];
}

std::int32_t keyOf(std::int32_t byte, const termios& mode) noexcept
{
    if (byte == deleteByte || isKey(mode, VERASE, byte)) return backspaceKey;
    if (isKey(mode, VINTR, byte)) return interruptKey;
    if (isKey(mode, VEOF, byte)) return endKey;
    // What was typed before the call has gone through the terminal's own translation.
    return byte == '\n' ? enterKey : byte;
}

} // namespace

std::int32_t readKey() noexcept
{
    termios mode{};
    if (tcgetattr(STDIN_FILENO, &mode) != 0) return readByte();
    setMode(keyByKey(mode));
    const std::int32_t byte = readByte();
    setMode(mode);
    return keyOf(byte, mode);
}

ORVHandle standardInput() noexcept
{
    return fileHandleFromDescriptor(STDIN_FILENO);
}

ORVHandle standardOutput() noexcept
{
    return fileHandleFromDescriptor(STDOUT_FILENO);
}

ORVHandle fileHandleFromStream(std::FILE* stream) noexcept
{
    return fileHandleFromDescriptor(fileno(stream));
}

bool isErrorTerminal() noexcept
{
    return isatty(STDERR_FILENO) == 1;
}

} // namespace orvcore
