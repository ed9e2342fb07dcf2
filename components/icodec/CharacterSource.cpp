#include "components/icodec/CharacterSource.h"

#include "components/icodec/CP720.h"
#include "orv/Failure.h"

#include <cerrno>
#include <iconv.h>

#include <algorithm>

namespace orv::components::icodec {

namespace {

constexpr const char* UNITS = "UTF-16LE";

/// One direction of iconv.
class Iconv {
public:
    Iconv(const char* to, const char* from) : m_iconv(iconv_open(to, from))
    {
        if (m_iconv != reinterpret_cast<iconv_t>(-1)) return;
        throwResult(errno == EINVAL ? E_UNKNOWN_ENCODING : ORVResultFromNative(errno));
    }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    ~Iconv() { iconv_close(m_iconv); }

    /// Converts all of the input by itself and stores at `out` what it gives, `room` bytes at most.
    /// Returns the bytes stored, 0 where it gives nothing, -1 where it is the beginning of more.
    std::ptrdiff_t convert(const void* in, std::size_t size, void* out, std::size_t room)
    {
        char* from = static_cast<char*>(const_cast<void*>(in));
        char* to = static_cast<char*>(out);
        iconv(m_iconv, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_iconv, &from, &size, &to, &room) != 0) return errno == EINVAL ? -1 : 0;
        // Where accents combine, the letter is held back until it is known that none follows.
        if (iconv(m_iconv, nullptr, nullptr, &to, &room) != 0) return 0;
        return to - static_cast<char*>(out);
    }

private:
    iconv_t m_iconv;
};

class IconvSource : public CharacterSource {
public:
    explicit IconvSource(const char* name) : m_decoder(UNITS, name), m_encoder(name, UNITS) {}

    Step decode(const signed char* bytes, std::uint8_t n) override
    {
        std::array<char16_t, 4> units{};
        const std::ptrdiff_t size = m_decoder.convert(bytes, n, units.data(), sizeof units);
        if (size < 0) return {Step::NONE, 0};
        return {size == sizeof(char16_t) ? units[0] : Step::NONE, n};
    }

    Sequence encode(char16_t unit) override
    {
        Sequence sequence;
        const std::ptrdiff_t size =
            m_encoder.convert(&unit, sizeof unit, sequence.bytes.data(), sequence.bytes.size());
        sequence.length = static_cast<std::uint8_t>(std::max<std::ptrdiff_t>(size, 0));
        return sequence;
    }

private:
    Iconv m_decoder;
    Iconv m_encoder;
};

/// An encoding of one byte a character, by its table.
class TableSource : public CharacterSource {
public:
    explicit TableSource(const char16_t (&units)[256]) : m_units(units) {}

    Step decode(const signed char* bytes, std::uint8_t n) override
    {
        return {m_units[static_cast<unsigned char>(bytes[0])], n};
    }

    Sequence encode(char16_t unit) override
    {
        const char16_t* const found = std::find(m_units, m_units + 256, unit);
        if (found == m_units + 256) return {};
        return {{static_cast<signed char>(found - m_units)}, 1};
    }

private:
    const char16_t (&m_units)[256];
};

} // namespace

std::unique_ptr<CharacterSource> openSource(const CodePage& page)
{
    if (page.iconvName == nullptr) return std::make_unique<TableSource>(cp720Units);
    return std::make_unique<IconvSource>(page.iconvName);
}

} // namespace orv::components::icodec
