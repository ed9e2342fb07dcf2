#include "tools/orv/Command.h"
#include "tools/orv/Files.h"

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "platform/console.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace tool {
namespace {

using orv::Reference;
using orv::String;
using namespace orv::io;
using namespace orv::text::charset;

constexpr std::int32_t BLOCK = 1 << 16; ///< bytes and units converted at a time
constexpr std::int64_t PROGRESS_STEP = std::int64_t{64} << 20;

/// Tells on a terminal how far a long conversion is.
class Progress {
public:
    ~Progress()
    {
        if (m_next > PROGRESS_STEP) std::fputc('\n', stderr);
    }
    void tell(std::int64_t bytes)
    {
        if (!m_terminal || bytes < m_next) return;
        std::fprintf(stderr, "\r%lld MiB", static_cast<long long>(bytes >> 20));
        m_next = bytes + PROGRESS_STEP;
    }

private:
    bool m_terminal = orvcore::isErrorTerminal();
    std::int64_t m_next = PROGRESS_STEP;
};

/// Carries bytes through a decoder and an encoder, counting both sides.
class Conversion {
public:
    Conversion(InputStream& in, OutputStream& out, ByteToCharConverter& decoder,
               CharToByteConverter& encoder, bool strict)
        : m_in(in), m_out(out), m_decoder(decoder), m_encoder(encoder), m_strict(strict),
          m_wordSize(String(decoder.getEncodingName()).startsWith(u"UTF-32") ? 4 : 1),
          m_atOnce(std::max(ENCODED / std::max(encoder.getMaxBytesPerChar(), 1), 2))
    {
        m_decoder.setSubstitutionMode(!strict);
        m_encoder.setSubstitutionMode(!strict);
    }

    void run()
    {
        Progress progress;
        while (fill()) {
            decodeBlock();
            progress.tell(m_bytesBefore);
        }
        decodeRest();
        finishEncoding();
    }

private:
    static constexpr std::int32_t ENCODED = 8 * BLOCK; ///< bytes that no block of units exceeds

    /// Moves the bytes left over to the front and reads more behind them.
    bool fill()
    {
        std::copy(&m_bytes[m_pos], &m_bytes[m_end], &m_bytes[0]);
        m_bytesBefore += m_pos;
        m_end -= m_pos;
        m_pos = 0;
        std::int32_t got = 0;
        named(u"cannot read the input", [&] { got = m_in.read(&m_bytes[m_end], BLOCK - m_end); });
        if (got < 1) return false;
        m_end += got;
        return true;
    }

    /// Decodes until the bytes are used up or end within a character.
    void decodeBlock()
    {
        // The decoders of UTF-32 would take the beginning of a word for all of it.
        const std::int32_t end = m_end - (m_end - m_pos) % m_wordSize;
        std::int32_t before = -1;
        while (m_pos < end && m_pos != before) {
            before = m_pos;
            try {
                m_decoder.convert(&m_bytes[0], &m_pos, end, &m_units[0], &m_count, BLOCK);
            } catch (const orv::Exception& exception) {
                encode();
                fail(exception, u"byte ", m_bytesBefore + m_pos);
            }
            encode();
        }
    }

    /// The bytes of a character that the end of the input cut off.
    void decodeRest()
    {
        if (m_strict && m_pos < m_end) {
            throw Failure{u"the input ends within a character at byte " +
                              String::valueOf(m_bytesBefore + m_pos),
                          orv::E_INVALID_CHARACTER};
        }
        while (m_pos < m_end) {
            ++m_pos;
            m_units[m_count++] = u'\uFFFD';
            encode();
            decodeBlock();
        }
    }

    /// Encodes all but a leading surrogate at the end that the encoder wants to see with its
    /// partner: that goes to the front.
    void encode()
    {
        std::int32_t pos = 0;
        for (std::int32_t before = -1; pos < m_count && pos != before;) {
            before = pos;
            // Some encoders forget the first half of a pair that finds no room.
            const std::int32_t end = std::min(m_count, pos + m_atOnce);
            std::int32_t bytes = 0;
            try {
                m_encoder.convert(&m_units[0], &pos, end, &m_encoded[0], &bytes, ENCODED);
            } catch (const orv::Exception& exception) {
                write(bytes);
                fail(exception, u"character ", m_unitsBefore + pos);
            }
            write(bytes);
        }
        std::copy(&m_units[pos], &m_units[m_count], &m_units[0]);
        m_unitsBefore += pos;
        m_count -= pos;
    }

    void finishEncoding()
    {
        if (m_count > 0) {
            fail(InvalidCharacterException(u"leading surrogate without trailing"), u"character ",
                 m_unitsBefore);
        }
        std::int32_t bytes = 0;
        try {
            m_encoder.flush(&m_encoded[0], &bytes, ENCODED);
        } catch (const orv::Exception& exception) {
            fail(exception, u"character ", m_unitsBefore - 1);
        }
        write(bytes);
        named(u"cannot write the output", [&] { m_out.flush(); });
    }

    void write(std::int32_t bytes)
    {
        named(u"cannot write the output", [&] { m_out.write(&m_encoded[0], bytes); });
    }

    [[noreturn]] static void fail(const orv::Exception& exception, const char16_t* what,
                                  std::int64_t position)
    {
        String text = exception.getDescription();
        if (text.getLength() == 0) {
            text = exception.getResult() == orv::E_UNMAPPABLE_CHARACTER
                       ? u"no counterpart in the target encoding"
                       : u"malformed input";
        }
        throw Failure{text + u" at " + what + String::valueOf(position), exception.getResult()};
    }

    InputStream& m_in;
    OutputStream& m_out;
    ByteToCharConverter& m_decoder;
    CharToByteConverter& m_encoder;
    bool m_strict;
    std::int32_t m_wordSize; ///< bytes that the decoder wants to see together
    std::int32_t m_atOnce;   ///< units that find room in m_encoded whatever they are
    std::unique_ptr<signed char[]> m_bytes = std::make_unique<signed char[]>(BLOCK + 1);
    std::unique_ptr<char16_t[]> m_units = std::make_unique<char16_t[]>(BLOCK + 1);
    std::unique_ptr<signed char[]> m_encoded = std::make_unique<signed char[]>(ENCODED);
    std::int32_t m_pos = 0;
    std::int32_t m_end = 0;
    std::int32_t m_count = 0; ///< units not yet encoded
    std::int64_t m_bytesBefore = 0;
    std::int64_t m_unitsBefore = 0;
};

template <class Converter>
Reference<Converter> converterFor(const String& encoding)
{
    try {
        return Reference<Converter>(Converter::getConverter(encoding.getData()));
    } catch (const UnknownEncodingException& exception) {
        throw Failure{u"unknown encoding \"" + encoding + u"\"", exception.getResult()};
    }
}

void runConvert(const Arguments& arguments, PrintWriter&)
{
    refuseOneFileForBoth(arguments);
    const auto decoder = converterFor<ByteToCharConverter>(arguments.text(u"from"));
    const auto encoder = converterFor<CharToByteConverter>(arguments.text(u"to"));
    const Reference<InputStream> in = openInput(arguments);
    const Reference<OutputStream> out = openOutput(arguments);
    Conversion(*in, *out, *decoder, *encoder, arguments.has(u"strict")).run();
    out->close();
}

constexpr const char16_t* options[] = {u"from", u"to", u"in", u"out", u"strict"};

} // namespace

const Command convert = {
    u"convert",
    u"text from one encoding into another",
    u" -from=NAME -to=NAME [-in=FILE] [-out=FILE] [-strict]\n\n"
    u"Reads bytes, decodes them by the first encoding and writes them in the second. Without -in "
    u"and\n-out it reads standard input and writes standard output.\n\n"
    u"  -from, -to  names as \"orv encodings\" prints them, aliases too\n"
    u"  -strict     ends at what has no counterpart, instead of putting a substitute",
    options,
    0,
    &runConvert};

} // namespace tool
