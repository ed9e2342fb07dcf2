#pragma once

#include "orv/Reference.h"
#include "orv/io/Block.h"
#include "orv/io/InputStream.h"
#include "orv/io/Reader.h"
#include "orv/text/charset/ByteToCharConverter.h"

#include <array>

namespace orv::io {

/// Reads text from a byte stream in an encoding.
///
///     auto bytes = makeReference<FileInputStream>(path);
///     auto text = makeReference<InputStreamReader>(bytes.get(), u"CP1252", 0x2000);
///
/// Once read() has something to give it does not wait for more. Wherever the bytes are split, and
/// however few units are asked for, the text is the same: a surrogate pair of which there is room
/// for one unit comes in two reads. Only UTF-32 wants a stream whose reads end at whole words: its
/// decoder takes the bytes of a cut word for a word.
///
/// Errors: what the decoder throws passes through, with units that the same call had decoded before
/// lost; the next read meets the same bytes and throws again. Of a sequence cut off by the end of
/// the stream each byte becomes one U+FFFD. IoException "stream closed" after close(), but for
/// close() itself, which closes the inner stream again.
class ORV_API InputStreamReader : public Reader {
public:
    /// Decodes by the named encoding, null being the default one, through a buffer of `size` bytes,
    /// at least 6. Throws UnknownEncodingException for a name that no codec answers to.
    InputStreamReader(InputStream* in, const char16_t* encoding, std::int32_t size);
    InputStreamReader(const InputStreamReader&) = delete;
    InputStreamReader& operator=(const InputStreamReader&) = delete;
    ~InputStreamReader() noexcept(false) override;

    using Reader::read;
    std::int32_t read(char16_t* buffer, std::int32_t n) override;

    /// How many units the bytes at hand give at least.
    std::int32_t available() override;
    void close() override;

    /// The canonical name of the encoding.
    virtual const char16_t* getEncodingName();

private:
    void requireOpen() const;
    void fill();
    void makeRoom();
    bool hasBytes() const noexcept { return m_pos < m_count; }
    std::int32_t takeAhead(char16_t* buffer, std::int32_t n) noexcept;
    std::int32_t convertTail(char16_t* buffer, std::int32_t n);
    std::int32_t atEnd(char16_t* buffer, std::int32_t n, std::int32_t done);

    Reference<InputStream> m_in;
    Reference<text::charset::ByteToCharConverter> m_converter; ///< null once closed
    std::int32_t m_size;
    Block<signed char> m_buffer;
    std::int32_t m_pos = 0;
    std::int32_t m_count = 0;
    bool m_atEnd = false;

    // Units decoded beyond the room of a read. What a decoder writes for one sequence fits here,
    // with the room to spare that some of them ask for.
    std::array<char16_t, 8> m_ahead;
    std::int32_t m_aheadPos = 0;
    std::int32_t m_aheadCount = 0;
};

} // namespace orv::io
