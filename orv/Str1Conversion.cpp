#include "orv/Failure.h"
#include "orv/Reference.h"
#include "orv/Str1.h"
#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"
#include "orv/text/charset/internal/Surrogates.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace orv {

using text::charset::ByteToCharConverter;
using text::charset::CharToByteConverter;

namespace {

constexpr std::int32_t STEP = 512;             ///< bytes encoded at a time
constexpr std::int32_t LONGEST_CHARACTER = 64; ///< bytes, with room to spare

} // namespace

// Bytes to text

void Str1::decode(const signed char* bytes, std::int32_t length, ByteToCharConverter& decoder,
                  std::int32_t keep)
{
    if (length == -1) length = ORVStrLenA(reinterpret_cast<const char*>(bytes));
    length = std::max(length, 0);
    const std::int64_t most = std::int64_t{decoder.getMaxCharsPerByte()} * length + 1;
    const std::int32_t room = ensureCapacity1(keep + most, 0, keep);
    m_length = keep;
    if (length == 0) return;

    std::int32_t read = 0;
    std::int32_t written = keep;
    decoder.convert(bytes, &read, length, writableData(), &written, room);
    decoder.flush(writableData(), &written, room);
    m_length = written;
}

Result Str1::copyA(const signed char* bytes, std::int32_t length, const char16_t* encoding)
{
    return resultOf([&] {
        const Reference<ByteToCharConverter> decoder(ByteToCharConverter::getConverter(encoding));
        clear();
        decode(bytes, length, *decoder, 0);
    });
}

Result Str1::appendA(const signed char* bytes, std::int32_t length, const char16_t* encoding)
{
    return resultOf([&] {
        const Reference<ByteToCharConverter> decoder(ByteToCharConverter::getConverter(encoding));
        decode(bytes, length, *decoder, m_length);
    });
}

// Text to bytes

/// Encodes the character at `*position`, if its bytes fit; whether they did.
bool Str1::encodeOne(signed char* out, std::int32_t size, CharToByteConverter& encoder,
                     std::int32_t* outLength, std::int32_t* position) const
{
    std::int32_t end = *position + 1;
    if (end < m_length && text::charset::internal::isLeading((*this)[*position])) ++end;

    signed char bytes[LONGEST_CHARACTER];
    std::int32_t read = *position;
    std::int32_t count = 0;
    try {
        encoder.convert(getData1(), &read, end, bytes, &count, LONGEST_CHARACTER);
    } catch (...) {
        *position = read;
        throw;
    }
    if (read == *position || count > size - *outLength) return false;
    std::memcpy(out + *outLength, bytes, static_cast<std::size_t>(count));
    *outLength += count;
    *position = read;
    return true;
}

Result Str1::convertToA(signed char* out, std::int32_t size, CharToByteConverter* encoder,
                        std::int32_t* outLength, std::int32_t* position) const
{
    *outLength = 0;
    const Result result = resultOf([&] {
        // An encoder that finds no room for the second half of a pair has forgotten the first, so
        // it is given no more than what fits for sure, and at last single characters.
        const std::int32_t most = std::max(encoder->getMaxBytesPerChar(), 1);
        while (*position < m_length) {
            const std::int32_t units = std::min((size - *outLength) / most, m_length - *position);
            std::int32_t end = *position + units;
            if (units > 0 && text::charset::internal::isLeading((*this)[end - 1])) --end;
            const std::int32_t before = *position;
            if (end > before) encoder->convert(getData1(), position, end, out, outLength, size);
            if (*position == before && !encodeOne(out, size, *encoder, outLength, position)) return;
        }
        encoder->flush(out, outLength, size);
    });
    return !failed(result) && *position < m_length ? E_BUFFER_TOO_SMALL : result;
}

/// Hands all bytes of the text to `take`, at most STEP at a time.
template <class Take>
Result Str1::encodeInSteps(const char16_t* encoding, std::int32_t position, Take take) const
{
    return resultOf([&] {
        const Reference<CharToByteConverter> encoder(CharToByteConverter::getConverter(encoding));
        signed char bytes[STEP];
        while (true) {
            const std::int32_t before = position;
            std::int32_t count = 0;
            const Result result = convertToA(bytes, STEP, encoder.get(), &count, &position);
            const bool more = result == E_BUFFER_TOO_SMALL && (count > 0 || position > before);
            if (!more) throwIfFailed(result);
            take(bytes, count);
            if (!more) return;
        }
    });
}

Result Str1::getLengthA(std::int32_t* out, const char16_t* encoding, std::int32_t start) const
{
    *out = 0;
    return encodeInSteps(encoding, std::max(start, 0),
                         [out](const signed char*, std::int32_t count) {
                             if (*out > std::numeric_limits<std::int32_t>::max() - count)
                                 throwOutOfMemory();
                             *out += count;
                         });
}

Result Str1::convertToAZ(char* out, std::int32_t size, const char16_t* encoding,
                         std::int32_t* outLength) const
{
    std::int32_t position = 0;
    *outLength = 0;
    const Result result = resultOf([&] {
        const Reference<CharToByteConverter> encoder(CharToByteConverter::getConverter(encoding));
        throwIfFailed(convertToA(reinterpret_cast<signed char*>(out), size - 1, encoder.get(),
                                 outLength, &position));
    });
    out[*outLength] = 0;
    return result;
}

OwningArray<char> Str1::getBytesAZ(const char16_t* encoding) const
{
    OwningArray<char> bytes;
    const Result result = resultOf([&] {
        std::int32_t room = 0;
        throwIfFailed(getLengthA(&room, encoding, 0));
        bytes = OwningArray<char>(static_cast<std::size_t>(room) + 1);
        char* end = bytes.get();
        const auto take = [&](const signed char* step, std::int32_t count) {
            if (count > room) throwResult(E_FAIL); // a codec that says something else each time
            std::memcpy(end, step, static_cast<std::size_t>(count));
            end += count;
            room -= count;
        };
        throwIfFailed(encodeInSteps(encoding, 0, take));
        *end = 0;
    });
    return failed(result) ? OwningArray<char>() : std::move(bytes);
}

} // namespace orv
