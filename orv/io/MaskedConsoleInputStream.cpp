#include "orv/io/MaskedConsoleInputStream.h"

#include "orv/Exceptions.h"
#include "platform/console.h"

#include <algorithm>

namespace orv::io {

namespace {

constexpr std::int32_t interruptKey = 3;
constexpr std::int32_t backspaceKey = 8;
constexpr std::int32_t enterKey = 13;
constexpr std::int32_t endKey = 26;

} // namespace

MaskedConsoleInputStream::~MaskedConsoleInputStream() noexcept(false) = default;

std::int32_t MaskedConsoleInputStream::read(signed char* buffer, std::int32_t n)
{
    if (n < 1) return 0;
    std::int32_t stored = 0;
    while (stored < n) {
        std::int32_t key = orvcore::readKey();
        if (key == endKey) break;
        if (key == interruptKey) throw UserAbortException();
        if (key == backspaceKey) {
            stored = std::max(stored - 1, 0);
            continue;
        }
        if (key == enterKey) key = '\n';
        buffer[stored++] = static_cast<signed char>(key);
        if (key == '\n') break;
    }
    return stored == 0 ? -1 : stored;
}

} // namespace orv::io
