#include "orv/Failure.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/internal/AnsiBytes.h"
#include "orv/internal/StringAccess.h"
#include "orv/text/charset/CodePageConverters.h"
#include "orv/text/charset/SingleByteConverters.h"
#include "orv/text/charset/UTF8Converters.h"
#include "orv/text/charset/internal/Utf8Kernels.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

namespace orv {

using namespace text::charset;

namespace {

namespace kernels = text::charset::internal;

constexpr std::int32_t MAX_ROOM = std::numeric_limits<std::int32_t>::max() - 31;

std::int32_t checkedRoom(std::int64_t room)
{
    if (room > MAX_ROOM) throwOutOfMemory();
    return static_cast<std::int32_t>(room);
}

char16_t upperAscii(char16_t unit)
{
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

/// The name that an encoding argument stands for: null is the default encoding.
class EncodingName {
public:
    explicit EncodingName(const char16_t* encoding)
    {
        if (encoding == nullptr) {
            const bool known =
                !failed(ORVGetDefaultCharEncoding(m_default, ROOM)) && *m_default != 0;
            encoding = known ? m_default : u"ASCII";
        }
        m_name = encoding;
    }
    EncodingName(const EncodingName&) = delete;
    EncodingName& operator=(const EncodingName&) = delete;

    const char16_t* get() const noexcept { return m_name.data(); }
    bool is(std::u16string_view name) const noexcept { return name == m_name; }

private:
    static constexpr std::int32_t ROOM = 40;

    std::u16string_view m_name;
    char16_t m_default[ROOM];
};

/// A buffer with its first count, not yet in use by a String.
using NewText = std::unique_ptr<util::RWCharBuffer>;

struct Narrow {
    const signed char* text; ///< may be null, and then gives no text
    std::int32_t length;
};

/// Decodes from `read` on into `room` units, of which `written` are.
void decode(ByteToCharConverter& decoder, const Narrow& in, std::int32_t read,
            util::RWCharBuffer& out, std::int32_t written, std::int32_t room)
{
    char16_t* const units = out.plainUnits();
    if (in.text != nullptr) {
        decoder.convert(in.text, &read, in.length, units, &written, room);
        decoder.flush(units, &written, room);
    }
    units[written] = u'\0';
    out.setPlainLength(written + 1);
}

/// A decoder may fill all its room, and then the terminator needs one unit more.
NewText newText(std::int32_t room)
{
    return NewText(orv::internal::newText(0, room + 1));
}

NewText decodedBy(ByteToCharConverter& decoder, const Narrow& in, std::int32_t capacity)
{
    const std::int64_t need = std::int64_t{decoder.getMaxCharsPerByte()} * in.length + 1;
    const std::int32_t room = checkedRoom(std::max<std::int64_t>(capacity, need));
    NewText out = newText(room);
    decode(decoder, in, 0, *out, 0, room);
    return out;
}

/// Text in order needs no decoder object, which would cost a short text half its time. A sequence
/// never gives more units than it has bytes.
NewText decodedUtf8(const Narrow& in, std::int32_t capacity)
{
    const std::int32_t room = std::max(capacity, checkedRoom(std::int64_t{in.length} + 1));
    NewText out = newText(room);
    char16_t* const units = out->plainUnits();
    const signed char* const end = in.text == nullptr ? nullptr : in.text + in.length;
    const auto stop = kernels::decodeUtf8(in.text, end, units, units + room);
    const auto written = static_cast<std::int32_t>(stop.out - units);
    if (stop.in == end) {
        units[written] = u'\0';
        out->setPlainLength(written + 1);
        return out;
    }
    BTCUTF8 decoder;
    decode(decoder, in, static_cast<std::int32_t>(stop.in - in.text), *out, written, room);
    return out;
}

/// The encodings that narrow text usually has need no heap and no look-up for their converter.
NewText decoded(const Narrow& in, const char16_t* encoding, std::int32_t capacity)
{
    const EncodingName name(encoding);
    if (name.is(u"UTF-8")) return decodedUtf8(in, capacity);
    if (name.is(u"CP1252")) {
        BTCCP1252 decoder;
        return decodedBy(decoder, in, capacity);
    }
    if (name.is(u"ASCII")) {
        BTCASCII decoder;
        return decodedBy(decoder, in, capacity);
    }
    const Reference<ByteToCharConverter> decoder(ByteToCharConverter::getConverter(name.get()));
    return decodedBy(*decoder, in, capacity);
}

/// Where encoded text goes.
struct Room {
    signed char* bytes;
    std::int32_t size;
};

/// Encodes from `read` on; `written` bytes are there. Returns their number with a terminator that
/// fits.
std::int32_t encodeBy(CharToByteConverter& encoder, std::u16string_view text, std::int32_t read,
                      const Room& out, std::int32_t written)
{
    encoder.convert(text.data(), &read, static_cast<std::int32_t>(text.size()), out.bytes, &written,
                    out.size);
    encoder.flush(out.bytes, &written, out.size);
    if (written < out.size) out.bytes[written++] = 0;
    return written;
}

std::int32_t encodeUtf8(std::u16string_view text, const Room& out)
{
    const char16_t* const end = text.data() + text.size();
    const auto stop =
        kernels::encodeUtf8(text.data(), end, out.bytes, out.bytes + std::max(out.size, 0));
    auto written = static_cast<std::int32_t>(stop.out - out.bytes);
    if (stop.in == end) {
        if (written < out.size) out.bytes[written++] = 0;
        return written;
    }
    CTBUTF8 encoder;
    return encodeBy(encoder, text, static_cast<std::int32_t>(stop.in - text.data()), out, written);
}

std::int32_t encode(std::u16string_view text, const EncodingName& name, const Room& out)
{
    if (name.is(u"UTF-8")) return encodeUtf8(text, out);
    if (name.is(u"CP1252")) {
        CTBCP1252 encoder;
        return encodeBy(encoder, text, 0, out, 0);
    }
    if (name.is(u"ASCII")) {
        CTBASCII encoder;
        return encodeBy(encoder, text, 0, out, 0);
    }
    const Reference<CharToByteConverter> encoder(CharToByteConverter::getConverter(name.get()));
    return encodeBy(*encoder, text, 0, out, 0);
}

std::int32_t mostBytesPerChar(const EncodingName& name)
{
    if (name.is(u"UTF-8")) return CTBUTF8().getMaxBytesPerChar();
    return Reference<CharToByteConverter>(CharToByteConverter::getConverter(name.get()))
        ->getMaxBytesPerChar();
}

/// A write bracket over a byte buffer. Unless close() ends it, the length is left as it is.
class ByteWriting {
public:
    ByteWriting(util::IByteBuffer* buffer, std::int32_t capacity) : m_buffer(buffer)
    {
        throwIfFailed(buffer->GetWriteLock(capacity, &m_data));
    }
    ByteWriting(const ByteWriting&) = delete;
    ByteWriting& operator=(const ByteWriting&) = delete;
    ~ByteWriting()
    {
        if (m_buffer != nullptr) m_buffer->ReleaseWriteLock(-1);
    }

    signed char* data() const noexcept { return m_data; }
    void close(std::int32_t length)
    {
        throwIfFailed(std::exchange(m_buffer, nullptr)->ReleaseWriteLock(length));
    }

private:
    util::IByteBuffer* m_buffer;
    signed char* m_data = nullptr;
};

} // namespace

// The bytes kept by a String

String::AnsiBytes::AnsiBytes(const char16_t* encoding)
{
    if (encoding == nullptr) return;
    const auto length = static_cast<std::size_t>(ORVStrLenW(encoding));
    m_encoding = std::make_unique_for_overwrite<char16_t[]>(length + 1);
    ORVStrCpyW(m_encoding.get(), encoding);
}

String::AnsiBytes::AnsiBytes(AnsiBytes& other)
    : RWByteBuffer(other), m_encoding(std::move(other.m_encoding))
{
}

String::AnsiBytes& String::AnsiBytes::operator=(AnsiBytes& other)
{
    if (this == &other) return *this;
    RWByteBuffer::operator=(other);
    m_encoding = std::move(other.m_encoding);
    return *this;
}

String::AnsiBytes::~AnsiBytes() noexcept(false) = default;

bool String::AnsiBytes::encodingEquals(const char16_t* encoding) const
{
    if (m_encoding == nullptr || encoding == nullptr) return m_encoding.get() == encoding;
    const char16_t* a = m_encoding.get();
    const char16_t* b = encoding;
    while (*a != 0 && upperAscii(*a) == upperAscii(*b)) {
        ++a;
        ++b;
    }
    return *a == *b;
}

// Narrow to wide

void String::internalSetTo(const signed char* text, std::int32_t length, const char16_t* encoding,
                           std::int32_t capacity)
{
    if (length == -1)
        length = text == nullptr ? 0 : ORVStrLenA(reinterpret_cast<const char*>(text));
    if (length < 1 && capacity < 1) {
        dropBytes();
        shareEmpty();
        return;
    }
    length = std::max(length, 0);

    takePlain(decoded({text, length}, encoding, capacity).release());
    dropBytes();
}

String::String(const char* text, std::int32_t length, const char16_t* encoding,
               std::int32_t capacity)
{
    internalSetTo(reinterpret_cast<const signed char*>(text), length, encoding, capacity);
}

String::String(const signed char* text, std::int32_t length, const char16_t* encoding,
               std::int32_t capacity)
{
    internalSetTo(text, length, encoding, capacity);
}

String::String(const unsigned char* text, std::int32_t length, const char16_t* encoding,
               std::int32_t capacity)
{
    internalSetTo(reinterpret_cast<const signed char*>(text), length, encoding, capacity);
}

String String::CORVString(const char* text, std::int32_t length, const char16_t* encoding,
                          std::int32_t capacity)
{
    return {text, length, encoding, capacity};
}

String& String::operator=(const char* text)
{
    return setTo(text, -1, nullptr);
}

String& String::setTo(const char* text, std::int32_t length, const char16_t* encoding)
{
    return setTo(reinterpret_cast<const signed char*>(text), length, encoding);
}

String& String::setTo(const signed char* text, std::int32_t length, const char16_t* encoding)
{
    internalSetTo(text, length, encoding, 0);
    return *this;
}

String& String::setTo(const unsigned char* text, std::int32_t length, const char16_t* encoding)
{
    return setTo(reinterpret_cast<const signed char*>(text), length, encoding);
}

// Wide to narrow

std::int32_t String::getBytes(signed char* out, std::int32_t size, const char16_t* encoding) const
{
    const Reading reading(*this);
    return encode({reading.data(), static_cast<std::size_t>(reading.length())},
                  EncodingName(encoding), {out, size});
}

std::int32_t String::getBytes(char* out, std::int32_t size, const char16_t* encoding) const
{
    return getBytes(reinterpret_cast<signed char*>(out), size, encoding);
}

std::int32_t String::getBytes(unsigned char* out, std::int32_t size, const char16_t* encoding) const
{
    return getBytes(reinterpret_cast<signed char*>(out), size, encoding);
}

void String::getBytes(util::IByteBuffer* out, const char16_t* encoding) const
{
    const Reading reading(*this);
    const EncodingName name(encoding);
    const std::int64_t most = mostBytesPerChar(name);
    const std::int32_t size = checkedRoom(most * reading.length() + 1);
    ByteWriting writing(out, size);
    const std::u16string_view text(reading.data(), static_cast<std::size_t>(reading.length()));
    writing.close(encode(text, name, {writing.data(), size}));
}

const char* String::getBytes(const char16_t* encoding) const
{
    if (m_bytes == nullptr || !static_cast<AnsiBytes*>(m_bytes)->encodingEquals(encoding)) {
        Reference<AnsiBytes> bytes = makeReference<AnsiBytes>(encoding);
        getBytes(bytes.get(), encoding);
        dropBytes();
        m_bytes = bytes.detach();
    }
    return reinterpret_cast<const char*>(m_bytes->plainData());
}

const char* String::getBytesReadLock(const char16_t* encoding) const
{
    getReadLock();
    try {
        return getBytes(encoding);
    } catch (...) {
        ReleaseReadLock();
        throw;
    }
}

} // namespace orv
