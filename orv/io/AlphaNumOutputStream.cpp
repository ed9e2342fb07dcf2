#include "orv/io/AlphaNumOutputStream.h"

#include "orv/io/internal/AlphaNum.h"

#include <array>

namespace orv::io {

namespace {

constexpr std::int32_t GROUP_BYTES = 5;
constexpr unsigned SYMBOL_BITS = 5;

} // namespace

AlphaNumOutputStream::AlphaNumOutputStream(OutputStream* out, const char16_t* alphabet)
    : FilterOutputStream(out), m_alphabet(internal::alphaNumAlphabet(alphabet))
{
}

AlphaNumOutputStream::~AlphaNumOutputStream() noexcept(false) = default;

void AlphaNumOutputStream::write(const char* bytes, std::int32_t n)
{
    write(reinterpret_cast<const signed char*>(bytes), n);
}

void AlphaNumOutputStream::write(const unsigned char* bytes, std::int32_t n)
{
    write(reinterpret_cast<const signed char*>(bytes), n);
}

void AlphaNumOutputStream::write(const signed char* bytes, std::int32_t n)
{
    while (n > 0) {
        if (m_phase == 0 && n >= GROUP_BYTES) {
            encodeGroup(bytes);
            bytes += GROUP_BYTES;
            n -= GROUP_BYTES;
        } else {
            encode(static_cast<std::uint8_t>(*bytes++));
            --n;
        }
    }
}

void AlphaNumOutputStream::write(signed char byte)
{
    write(&byte, 1);
}

void AlphaNumOutputStream::flush()
{
    // How far left the bits that remain in the last byte move to fill a symbol.
    constexpr std::array<unsigned, 7> shift{0, 2, 0, 4, 1, 0, 3};
    if (m_phase > 0) {
        writeSymbol(std::uint32_t{m_last} << shift[static_cast<std::size_t>(m_phase)]);
        m_last = 0;
        m_phase = 0;
    }
    m_out->flush();
}

/// Writes the symbol of the lowest 5 bits.
void AlphaNumOutputStream::writeSymbol(std::uint32_t bits)
{
    const char16_t symbol = m_alphabet.getCharAt(static_cast<std::int32_t>(bits & 31));
    m_out->write(static_cast<signed char>(symbol));
}

/// Encodes 5 bytes where none is left over from before.
void AlphaNumOutputStream::encodeGroup(const signed char* bytes)
{
    std::uint64_t bits = 0;
    for (std::int32_t i = 0; i < GROUP_BYTES; ++i) {
        bits = bits << 8 | static_cast<std::uint8_t>(bytes[i]);
    }
    const char16_t* const alphabet = m_alphabet.getData();
    OutputStream& out = *m_out;
    for (unsigned shift = GROUP_BYTES * 8; shift > 0;) {
        shift -= SYMBOL_BITS;
        out.write(static_cast<signed char>(alphabet[bits >> shift & 31]));
    }
}

void AlphaNumOutputStream::encode(std::uint8_t byte)
{
    const std::uint32_t bits = std::uint32_t{m_last} << 8 | byte;
    switch (m_phase) {
    case 0:
        writeSymbol(bits >> 3);
        m_phase = 1;
        break;
    case 1:
        writeSymbol(bits >> 6);
        writeSymbol(bits >> 1);
        m_phase = 3;
        break;
    case 3:
        writeSymbol(bits >> 4);
        m_phase = 4;
        break;
    case 4:
        writeSymbol(bits >> 7);
        writeSymbol(bits >> 2);
        m_phase = 6;
        break;
    default:
        writeSymbol(bits >> 5);
        writeSymbol(bits);
        m_phase = 0;
    }
    m_last = byte;
}

} // namespace orv::io
