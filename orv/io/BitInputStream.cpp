#include "orv/io/BitInputStream.h"

#include <algorithm>
#include <typeinfo>

namespace orv::io {

namespace {

constexpr std::int32_t BYTE = 8;

} // namespace

BitInputStream::~BitInputStream() noexcept(false) = default;

std::int32_t BitInputStream::read(char* buffer, std::int32_t n)
{
    return read(reinterpret_cast<signed char*>(buffer), n);
}

std::int32_t BitInputStream::read(unsigned char* buffer, std::int32_t n)
{
    return read(reinterpret_cast<signed char*>(buffer), n);
}

std::int32_t BitInputStream::read(signed char* buffer, std::int32_t n)
{
    std::int32_t stored = 0;
    while (stored < n) {
        const std::int32_t byte = read();
        if (byte < 0) break;
        buffer[stored++] = static_cast<signed char>(byte);
    }
    return stored > 0 ? stored : -1;
}

std::int32_t BitInputStream::read()
{
    return read(BYTE);
}

std::int32_t BitInputStream::read(std::int32_t bits)
{
    // A derived class may have its own readBit(), which then gives each bit.
    if (&typeid(*this) == &typeid(BitInputStream)) return inPieces(bits);

    std::uint32_t value = 0;
    for (; bits > 0; --bits) value = value << 1 | static_cast<std::uint32_t>(readBit());
    return static_cast<std::int32_t>(value);
}

std::int32_t BitInputStream::readBit()
{
    if (m_left == 0 && !nextByte()) return -1;
    --m_left;
    return m_byte >> m_left & 1;
}

/// What read() gives, as many bits at once as the byte still has.
std::int32_t BitInputStream::inPieces(std::int32_t bits)
{
    std::uint32_t value = 0;
    while (bits > 0) {
        if (m_left == 0 && !nextByte()) {
            value = ~std::uint32_t{0};
            --bits;
            continue;
        }
        const std::int32_t taken = std::min<std::int32_t>(bits, m_left);
        bits -= taken;
        m_left = static_cast<std::uint8_t>(m_left - taken);
        const auto part = static_cast<std::uint32_t>(m_byte) >> m_left;
        value = value << taken | (part & ((1U << taken) - 1));
    }
    return static_cast<std::int32_t>(value);
}

/// False at the end of the inner stream.
bool BitInputStream::nextByte()
{
    m_byte = m_in->read();
    if (m_byte < 0) return false;
    m_left = BYTE;
    return true;
}

} // namespace orv::io
