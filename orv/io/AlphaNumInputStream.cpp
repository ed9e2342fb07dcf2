#include "orv/io/AlphaNumInputStream.h"

#include "orv/io/internal/AlphaNum.h"
#include "orv/text/charset/CharsetExceptions.h"

namespace orv::io {

namespace {

constexpr std::int32_t GROUP = 8; ///< symbols
constexpr std::int32_t GROUP_BYTES = 5;
constexpr std::int32_t SYMBOL_BITS = 5;

} // namespace

/// A group at hand for the time of a read, out of which it is put back whatever ends the read.
class AlphaNumInputStream::Working : public Group {
public:
    explicit Working(Group& group) : Group(group), m_group(group) {}
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;
    ~Working() { m_group = *this; }

    /// Adds a symbol; true where it completes `byte`.
    bool add(std::uint32_t value, signed char& byte)
    {
        // How many of the symbol's bits reach past the byte, or how far they stay from its end.
        const std::int32_t over = phase * SYMBOL_BITS % 8 + SYMBOL_BITS - 8;
        phase = static_cast<signed char>((phase + 1) % GROUP);
        if (over < 0) {
            bits = static_cast<std::uint8_t>(bits | value << -over);
            return false;
        }
        byte = static_cast<signed char>(bits | value >> over);
        bits = static_cast<std::uint8_t>(value << (8 - over));
        return true;
    }

private:
    Group& m_group;
};

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
    return read(reinterpret_cast<signed char*>(buffer), n);
}

std::int32_t AlphaNumInputStream::read(unsigned char* buffer, std::int32_t n)
{
    return read(reinterpret_cast<signed char*>(buffer), n);
}

std::int32_t AlphaNumInputStream::read(signed char* buffer, std::int32_t n)
{
    Working group(m_group);
    InputStream& in = *m_in;
    std::int32_t stored = 0;
    while (stored < n) {
        const std::int32_t symbol = in.read();
        if (symbol < 0) {
            if (group.phase > 0) buffer[stored++] = static_cast<signed char>(group.bits);
            group.bits = 0;
            group.phase = 0;
            break;
        }
        const signed char value = getValue(static_cast<signed char>(symbol));
        if (group.add(static_cast<std::uint32_t>(value), buffer[stored])) ++stored;
    }
    return stored > 0 ? stored : -1;
}

std::int32_t AlphaNumInputStream::read()
{
    signed char byte = 0;
    return read(&byte, 1) < 1 ? -1 : static_cast<unsigned char>(byte);
}

std::int32_t AlphaNumInputStream::skip(std::int32_t n)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the filter's own would count symbols
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

} // namespace orv::io
