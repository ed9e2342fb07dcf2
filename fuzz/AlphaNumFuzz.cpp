#include "orv/Reference.h"
#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/text/charset/CharsetExceptions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// \file
/// Bytes must come back from their text, and any text must decode as a reader bit by bit says,
/// however the calls cut it. The first two bytes of an input say how.

namespace {

using namespace orv;
using namespace orv::io;

constexpr std::string_view ALPHABET = "ABCDEFGHJKLMNPQRSTUVWXYZ23456789";

void require(bool holds)
{
    if (!holds) std::abort();
}

const signed char* signedBytes(const std::string& bytes)
{
    return reinterpret_cast<const signed char*>(bytes.data());
}

/// What a text says bit by bit, up to the first byte that is no symbol.
struct Plain {
    explicit Plain(std::string_view text)
    {
        unsigned bits = 0, count = 0;
        for (const char symbol : text) {
            const std::size_t value = ALPHABET.find(symbol);
            if (value == std::string_view::npos) {
                valid = false;
                return;
            }
            bits = bits << 5 | static_cast<unsigned>(value);
            count += 5;
            if (count < 8) continue;
            count -= 8;
            bytes += static_cast<char>(bits >> count);
            bits &= (1U << count) - 1;
        }
        if (text.size() % 8 != 0) bytes += static_cast<char>(bits << (8 - count));
    }
    std::string bytes;
    bool valid = true;
};

std::string encoded(const std::string& bytes, std::size_t piece)
{
    const auto text = makeReference<ByteArrayOutputStream>(16);
    const auto out = makeReference<AlphaNumOutputStream>(text.get(), nullptr);
    for (std::size_t i = 0; i < bytes.size(); i += piece) {
        const std::size_t n = std::min(piece, bytes.size() - i);
        out->write(signedBytes(bytes) + i, static_cast<std::int32_t>(n));
    }
    out->flush();
    std::vector<signed char> symbols(2 * bytes.size() + 8);
    const std::int32_t n =
        text->getBytes(symbols.data(), static_cast<std::int32_t>(symbols.size()));
    return {symbols.begin(), symbols.begin() + n};
}

void checkDecoding(const std::string& text, std::size_t piece)
{
    const Plain expected(text);
    const auto bytes = makeReference<ByteArrayInputStream>(signedBytes(text),
                                                           static_cast<std::int32_t>(text.size()));
    const auto in = makeReference<AlphaNumInputStream>(bytes.get(), nullptr);
    std::string all;
    try {
        std::vector<signed char> block(piece);
        for (std::int32_t got;
             (got = in->read(block.data(), static_cast<std::int32_t>(piece))) > 0;) {
            all.append(block.begin(), block.begin() + got);
        }
        require(expected.valid && all == expected.bytes);
    } catch (const text::charset::InvalidCharacterException&) {
        require(!expected.valid && expected.bytes.starts_with(all));
        require(expected.bytes.size() - all.size() < piece);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2 || size > 4000) return -1;
    const std::size_t piece = data[0] % 64u + 1;
    std::string bytes(data + 2, data + size);
    if ((data[1] & 1) != 0) { // symbols of every value, with a stranger here and there
        for (char& byte : bytes) {
            if ((byte & 0xC0) != 0xC0) byte = ALPHABET[static_cast<unsigned char>(byte) % 32];
        }
    }
    checkDecoding(bytes, piece);

    const std::string text = encoded(bytes, piece);
    require(text.size() == (bytes.size() * 8 + 4) / 5);
    if (bytes.size() % 5 != 0) bytes += '\0';
    require(Plain(text).bytes == bytes);
    checkDecoding(text, piece);
    return 0;
}
