#include "orv/text/charset/ComConverters.h"

#include "orv/Failure.h"
#include "orv/text/charset/internal/MultiByteLoops.h"

#include <algorithm>
#include <limits>
#include <typeinfo>

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

Reference<IORVBlockCodec> blocksOf(IORVCharCodec* codec)
{
    void* blocks = nullptr;
    if (failed(codec->QueryInterface(IORVBlockCodec::IID, &blocks))) return nullptr;
    return Reference<IORVBlockCodec>::adopt(static_cast<IORVBlockCodec*>(blocks));
}

/// Moves a run as far as an operation of the codec goes, and within bounds whatever it says.
template <class Run, class Operation>
void takeBlock(Run& run, Operation operation)
{
    constexpr std::ptrdiff_t LARGEST = std::numeric_limits<std::int32_t>::max();
    const auto available = static_cast<std::int32_t>(std::min(run.inLeft(), LARGEST));
    const auto room = static_cast<std::int32_t>(std::min(run.outLeft(), LARGEST));
    std::int32_t consumed = available;
    std::int32_t written = room;
    if (failed(operation(run.in, &consumed, run.out, &written))) return;
    run.in += std::clamp(consumed, 0, available);
    run.out += std::clamp(written, 0, room);
}

} // namespace

BTCCom::BTCCom(IORVCharCodec* codec) : m_codec(codec), m_blocks(blocksOf(codec))
{
    readCodec(codec, m_name, m_maxBytesPerChar, m_maxCharsPerByte);
}

BTCCom::~BTCCom() noexcept(false) = default;

std::int32_t BTCCom::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                             char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    if (!m_blocks || typeid(*this) != typeid(BTCCom)) {
        return BTCMultiByte::convert(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    }
    const auto plain = [this](internal::DecoderRun& run) {
        takeBlock(run, [this](auto... arguments) { return m_blocks->BytesToUnits(arguments...); });
    };
    const auto hook = [this](const signed char* bytes, std::int32_t& n) {
        return convertBytes(bytes, n);
    };
    return convertBy(plain, hook, src, srcPos, srcEnd, dst, dstPos, dstEnd);
}

std::uint32_t BTCCom::convertBytes(const signed char* bytes, std::int32_t& n)
{
    std::uint32_t codePoint = 0xFFFD;
    m_codec->BytesToChar(bytes, &n, &codePoint);
    return codePoint;
}

CTBCom::CTBCom(IORVCharCodec* codec) : m_codec(codec), m_blocks(blocksOf(codec))
{
    readCodec(codec, m_name, m_maxBytesPerChar, m_maxCharsPerByte);
}

CTBCom::~CTBCom() noexcept(false) = default;

std::int32_t CTBCom::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                             signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    if (!m_blocks || typeid(*this) != typeid(CTBCom)) {
        return CTBMultiByte::convert(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    }
    const auto plain = [this](internal::EncoderRun& run) {
        takeBlock(run, [this](auto... arguments) { return m_blocks->UnitsToBytes(arguments...); });
    };
    const auto hook = [this](std::uint32_t code, signed char* buffer, std::int32_t size) {
        return convertChar(code, buffer, size);
    };
    return convertBy(plain, hook, src, srcPos, srcEnd, dst, dstPos, dstEnd);
}

std::int32_t CTBCom::convertChar(std::uint32_t codePoint, signed char* buffer, std::int32_t size)
{
    if (!m_bytes || m_bytes->GetSettledRefCount() != 1) {
        m_bytes = makeReference<util::RWByteBuffer>(size);
    }
    m_bytes->setPlainLength(0);
    if (failed(m_codec->CharToBytes(codePoint, m_bytes.get()))) return -1;
    const std::int32_t length = m_bytes->plainLength();
    if (length < 1 || length > size) return 0;
    std::copy_n(m_bytes->plainData(), length, buffer);
    return length;
}

} // namespace orv::text::charset
