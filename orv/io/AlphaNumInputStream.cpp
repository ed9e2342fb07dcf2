#include "orv/io/AlphaNumInputStream.h"

#include "orv/io/internal/AlphaNum.h"
#include "orv/text/charset/CharsetExceptions.h"

namespace orv::io {

namespace {

constexpr std::int32_t GROUP = 8; ///< symbols
constexpr std::int32_t GROUP_BYTES = 5;

} // namespace

AlphaNumInputStream::AlphaNumInputStream(InputStream* in, const char16_t* alphabet)
    : FilterInputStream(in), m_alphabet(internal::alphaNumAlphabet(alphabet))
{
    m_values.fill(-1);
    for (std::int32_t value = internal::ALPHANUM_SYMBOLS - 1; value >= 0; --value) {
        const char16_t symbol = m_alphabet.getCharAt(value);
        if (symbol < m_values.size()) m_values[symbol] = static_cast<signed char>(value);
    }
}

AlphaNumInputStream::~AlphaNumInputStream() noexcept(false) = default;

std::int32_t AlphaNumInputStream::read(char* buffer, std::int32_t n)
{
    return InputStream::read(buffer, n);
}

std::int32_t AlphaNumInputStream::read(unsigned char* buffer, std::int32_t n)
{
    return InputStream::read(buffer, n);
}

std::int32_t AlphaNumInputStream::read(signed char* buffer, std::int32_t n)
{
    std::int32_t stored = 0;
    while (stored < n) {
        const std::int32_t symbol = m_in->read();
        if (symbol < 0) {
            if (m_phase > 0) buffer[stored++] = static_cast<signed char>(m_bits);
            m_phase = 0;
            m_bits = 0;
            break;
        }
        const signed char value = getValue(static_cast<signed char>(symbol));
        if (decode(static_cast<std::uint32_t>(value), buffer[stored])) ++stored;
    }
    return stored > 0 ? stored : -1;
}

std::int32_t AlphaNumInputStream::read()
{
    return InputStream::read();
}

std::int32_t AlphaNumInputStream::skip(std::int32_t n)
{
    return InputStream::skip(n);
}

std::int32_t AlphaNumInputStream::available()
{
    return static_cast<std::int32_t>(std::int64_t{m_in->available()} * GROUP_BYTES / GROUP);
}

signed char AlphaNumInputStream::getValue(signed char symbol) const
{
    const signed char value = m_values[static_cast<unsigned char>(symbol)];
    if (value < 0) throw text::charset::InvalidCharacterException(u"Invalid AlphaNum character");
    return value;
}

/// Adds a symbol of the group; true where it completes `byte`.
bool AlphaNumInputStream::decode(std::uint32_t value, signed char& byte)
{
    // The symbol's 5 bits reach past the byte by `over` bits, or leave as many open below them.
    constexpr std::array<std::int32_t, GROUP> over{-3, 2, -1, 4, 1, -2, 3, 0};
    const std::int32_t shift = over[static_cast<std::size_t>(m_phase)];
    m_phase = static_cast<signed char>((m_phase + 1) % GROUP);
    if (shift < 0) {
        m_bits = static_cast<std::uint8_t>(m_bits | value << -shift);
        return false;
    }
    byte = static_cast<signed char>(m_bits | value >> shift);
    m_bits = static_cast<std::uint8_t>(value << (8 - shift));
    return true;
}

} // namespace orv::io
