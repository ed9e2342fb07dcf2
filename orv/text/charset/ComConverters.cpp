#include "orv/text/charset/ComConverters.h"

#include "orv/Failure.h"
#include "orv/util/ByteBuffers.h"

#include <algorithm>

namespace orv::text::charset {

namespace {

void readCodec(IORVCharCodec* codec, String& name, std::int32_t& maxBytes, std::int32_t& maxChars)
{
    // On the heap, because a codec may take a Reference to what it is given.
    const auto filled = makeReference<String>();
    throwIfFailed(codec->GetName(filled.get()));
    throwIfFailed(codec->GetMaxBytesPerChar(&maxBytes));
    throwIfFailed(codec->GetMaxCharsPerByte(&maxChars));
    name.setAddRef(*filled);
}

} // namespace

BTCCom::BTCCom(IORVCharCodec* codec) : m_codec(codec)
{
    readCodec(codec, m_name, m_maxBytesPerChar, m_maxCharsPerByte);
}

BTCCom::~BTCCom() noexcept(false) = default;

std::uint32_t BTCCom::convertBytes(const signed char* bytes, std::int32_t& n)
{
    std::uint32_t codePoint = 0xFFFD;
    m_codec->BytesToChar(bytes, &n, &codePoint);
    return codePoint;
}

CTBCom::CTBCom(IORVCharCodec* codec) : m_codec(codec)
{
    readCodec(codec, m_name, m_maxBytesPerChar, m_maxCharsPerByte);
}

CTBCom::~CTBCom() noexcept(false) = default;

std::int32_t CTBCom::convertChar(std::uint32_t codePoint, signed char* buffer, std::int32_t size)
{
    const auto bytes = makeReference<util::RWByteBuffer>(size);
    if (failed(m_codec->CharToBytes(codePoint, bytes.get()))) return -1;
    const std::int32_t length = bytes->getLength();
    if (length < 1 || length > size) return 0;
    const signed char* data = nullptr;
    throwIfFailed(bytes->GetReadLock(&data));
    std::copy_n(data, length, buffer);
    bytes->ReleaseReadLock();
    return length;
}

} // namespace orv::text::charset
