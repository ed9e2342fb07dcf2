#include "tools/orv/Command.h"
#include "tools/orv/Files.h"

#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/text/charset/CharsetExceptions.h"

#include <array>

namespace tool {
namespace {

using orv::makeReference;
using orv::Reference;
using orv::String;
using namespace orv::io;

constexpr std::int32_t BLOCK = 1 << 16; ///< bytes at a time

using Block = std::array<signed char, BLOCK>;

/// The input in blocks, giving single bytes without sign, and how many it gave.
class Source : public InputStream {
public:
    explicit Source(const Arguments& arguments) : m_in(openInput(arguments)) {}

    using InputStream::read;
    std::int32_t read(signed char* buffer, std::int32_t n) override
    {
        return named(u"cannot read the input", [&] { return m_in->read(buffer, n); });
    }
    std::int32_t read() override
    {
        if (m_next == m_end) {
            m_end = read(m_block.data(), BLOCK);
            m_next = 0;
        }
        if (m_end < 1) {
            m_next = m_end = 0;
            return -1;
        }
        ++m_given;
        return static_cast<unsigned char>(m_block[static_cast<std::size_t>(m_next++)]);
    }

    std::int64_t given() const { return m_given; }

private:
    Reference<InputStream> m_in;
    Block m_block;
    std::int32_t m_next = 0;
    std::int32_t m_end = 0;
    std::int64_t m_given = 0;
};

void write(OutputStream& out, const signed char* bytes, std::int64_t n)
{
    named(u"cannot write the output", [&] { out.write(bytes, static_cast<std::int32_t>(n)); });
}

void encode(Source& source, OutputStream& out, Block& block)
{
    const auto blocks = makeReference<BufferedOutputStream>(&out, BLOCK);
    const auto symbols = makeReference<AlphaNumOutputStream>(blocks.get(), nullptr);
    for (std::int32_t got; (got = source.read(block.data(), BLOCK)) > 0;) {
        write(*symbols, block.data(), got);
    }
    named(u"cannot write the output", [&] { symbols->flush(); });
}

void decode(Source& source, OutputStream& out, Block& block)
{
    const auto symbols = makeReference<AlphaNumInputStream>(&source, nullptr);
    std::int64_t written = 0;
    try {
        for (std::int32_t got; (got = symbols->read(block.data(), BLOCK)) > 0; written += got) {
            write(out, block.data(), got);
        }
    } catch (const orv::text::charset::InvalidCharacterException& exception) {
        const std::int64_t good = source.given() - 1;
        write(out, block.data(), good * 5 / 8 - written);
        throw Failure{exception.getDescription() + u" at character " + String::valueOf(good),
                      exception.getResult()};
    }
    named(u"cannot write the output", [&] { out.flush(); });
}

void runAlphaNum(const Arguments& arguments, PrintWriter&)
{
    const String way = arguments.word(0, u"encode or decode");
    if (way != u"encode" && way != u"decode") {
        throw UsageError{u"\"" + way + u"\" is neither encode nor decode"};
    }
    refuseOneFileForBoth(arguments);
    const auto source = makeReference<Source>(arguments);
    const Reference<OutputStream> out = openOutput(arguments);
    const auto block = std::make_unique<Block>();
    (way == u"encode" ? encode : decode)(*source, *out, *block);
    out->close();
}

constexpr const char16_t* options[] = {u"in", u"out"};

} // namespace

const Command alphanum = {
    u"alphanum",
    u"bytes as text over 32 symbols, and back",
    u" encode|decode [-in=FILE] [-out=FILE]\n\n"
    u"Writes 8 symbols of ABCDEFGHJKLMNPQRSTUVWXYZ23456789 for 5 bytes, without line ends, or "
    u"reads\nsuch text back. Without -in and -out it reads standard input and writes standard "
    u"output.\n\nThe text does not say how many bytes there were: unless their number is a "
    u"multiple of 5, they\ncome back with a zero byte behind them. Anything but the symbols ends "
    u"decoding with exit status 1,\nline ends too; the bytes before it are written.",
    options,
    1,
    &runAlphaNum};

} // namespace tool
