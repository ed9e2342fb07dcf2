#include "components/icodec/CharCodec.h"

#include "orv/quark/InterfaceData.h"
#include "orv/util/IBasicBuffer.h"

#include <algorithm>
#include <string>

namespace orv::components::icodec {

namespace {

/// Replaces the content of a buffer.
template <class Unit>
Result fill(util::IBasicBuffer<Unit>* out, const Unit* content, std::size_t size)
{
    if (out == nullptr) return E_POINTER;
    const auto length = static_cast<std::int32_t>(size);
    Unit* units = nullptr;
    const Result result = out->GetWriteLock(length, &units);
    if (failed(result)) return result;
    std::copy_n(content, length, units);
    return out->ReleaseWriteLock(length);
}

} // namespace

const quark::InterfaceData* CharCodec::GetComIntfMap()
{
    static const quark::InterfaceData map[] = {
        quark::interfaceRow<text::charset::IORVCharCodec, CharCodec>(),
        quark::interfaceRow<text::charset::IORVBlockCodec, CharCodec>(),
        quark::baseRow<ComObject>(), quark::endRow};
    return map;
}

Result CharCodec::QueryInterface(const GUID& iid, void** out)
{
    return quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result CharCodec::GetName(util::ICharBuffer* out)
{
    return fill(out, m_page.name(), std::char_traits<char16_t>::length(m_page.name()));
}

Result CharCodec::GetMaxBytesPerChar(std::int32_t* out)
{
    if (out == nullptr) return E_POINTER;
    *out = m_tables.maxBytes();
    return S_OK;
}

Result CharCodec::GetMaxCharsPerByte(std::int32_t* out)
{
    if (out == nullptr) return E_POINTER;
    *out = 1;
    return S_OK;
}

Result CharCodec::BytesToChar(const signed char* bytes, std::int32_t* n, std::uint32_t* codePoint)
{
    const Step step = m_tables.decode(bytes, bytes + std::max(*n, 0));
    *n = step.consumed;
    if (step.consumed != 0) *codePoint = step.unit;
    return S_OK;
}

Result CharCodec::CharToBytes(std::uint32_t codePoint, util::IByteBuffer* out)
{
    const Sequence sequence =
        codePoint < 0x10000 ? m_tables.encode(static_cast<char16_t>(codePoint)) : Sequence{};
    return fill(out, sequence.bytes.data(), sequence.length);
}

Result CharCodec::BytesToUnits(const signed char* bytes, std::int32_t* n, char16_t* units,
                               std::int32_t* count)
{
    // The position follows from the branches taken, not from what the tables say of a length, so
    // that the processor begins the next character before it has this one.
    const signed char* in = bytes;
    char16_t* out = units;
    for (const signed char* next = in; out < units + *count; in = next) {
        const Step step = m_tables.decode(next, bytes + *n);
        if (step.consumed == 0 || step.unit == Step::NONE) break;
        *out++ = step.unit;
    }
    *n = static_cast<std::int32_t>(in - bytes);
    *count = static_cast<std::int32_t>(out - units);
    return S_OK;
}

Result CharCodec::UnitsToBytes(const char16_t* units, std::int32_t* n, signed char* bytes,
                               std::int32_t* count)
{
    const char16_t* in = units;
    signed char* out = bytes;
    constexpr std::ptrdiff_t LONGEST = std::tuple_size_v<decltype(Sequence::bytes)>;
    signed char* const end = bytes + *count;
    for (const char16_t* const inEnd = units + *n; in < inEnd; ++in) {
        const Sequence sequence = m_tables.encode(*in);
        if (sequence.length == 0 || end - out < sequence.length) break;
        // A copy of one size, wherever there is room for it, is the fastest.
        if (end - out >= LONGEST) {
            std::copy_n(sequence.bytes.begin(), LONGEST, out);
        } else {
            std::copy_n(sequence.bytes.begin(), sequence.length, out);
        }
        out += sequence.length;
    }
    *n = static_cast<std::int32_t>(in - units);
    *count = static_cast<std::int32_t>(out - bytes);
    return S_OK;
}

} // namespace orv::components::icodec
