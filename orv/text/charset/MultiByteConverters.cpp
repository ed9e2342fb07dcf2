#include "orv/text/charset/MultiByteConverters.h"

#include "orv/text/charset/internal/MultiByteLoops.h"

namespace orv::text::charset {

BTCMultiByte::~BTCMultiByte() noexcept(false) = default;

std::int32_t BTCMultiByte::convert(const signed char* src, std::int32_t* srcPos,
                                   std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                                   std::int32_t dstEnd)
{
    const auto hook = [this](const signed char* bytes, std::int32_t& n) {
        return convertBytes(bytes, n);
    };
    return convertBy([](auto&) {}, hook, src, srcPos, srcEnd, dst, dstPos, dstEnd);
}

std::int32_t BTCMultiByte::flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    if (m_pending == 0) return 0;
    if (dstEnd - *dstPos < 2) {
        internal::throwInvalid(u"Not enough room in buffer for trailing surrogate");
    }
    dst[*dstPos] = m_pending;
    return 1;
}

void BTCMultiByte::reset()
{
    m_pending = 0;
}

const char16_t* BTCMultiByte::getEncodingName() const
{
    return m_name.getData();
}

std::int32_t BTCMultiByte::getMaxBytesPerChar() const
{
    return m_maxBytesPerChar;
}

std::int32_t BTCMultiByte::getMaxCharsPerByte() const
{
    return m_maxCharsPerByte;
}

CTBMultiByte::~CTBMultiByte() noexcept(false) = default;

std::int32_t CTBMultiByte::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                   signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    const auto hook = [this](std::uint32_t code, signed char* buffer, std::int32_t size) {
        return convertChar(code, buffer, size);
    };
    return convertBy([](auto&) {}, hook, src, srcPos, srcEnd, dst, dstPos, dstEnd);
}

std::int32_t CTBMultiByte::flush(signed char*, std::int32_t*, std::int32_t)
{
    if (m_leading != 0) internal::throwLoneLeading();
    return 0;
}

void CTBMultiByte::reset()
{
    m_leading = 0;
}

const char16_t* CTBMultiByte::getEncodingName() const
{
    return m_name.getData();
}

std::int32_t CTBMultiByte::getMaxBytesPerChar() const
{
    return m_maxBytesPerChar;
}

std::int32_t CTBMultiByte::getMaxCharsPerByte() const
{
    return m_maxCharsPerByte;
}

} // namespace orv::text::charset
