#pragma once

#include "orv/Object.h"
#include "orv/quark/Implements.h"
#include "orv/text/charset/ComConverters.h"

#include <algorithm>
#include <string>

namespace orv::text::charset {

/// Hexadecimal pairs behind a length: "1x" is one byte x as a character, "2xy" two. Two bytes stand
/// for 0x100 times x plus y, "S" for a surrogate, "P" for U+10000, "!" for nothing.
class FakeCodec : public quark::Implements<Object, IORVCharCodec> {
public:
    Result GetName(util::ICharBuffer* out) override
    {
        Reference<util::ICharBuffer> held(out); // as a component may do
        char16_t* units = nullptr;
        const Result result = held->GetWriteLock(5, &units);
        if (failed(result)) return result;
        std::copy_n(u"FAKE", 5, units);
        return held->ReleaseWriteLock(4);
    }
    Result GetMaxBytesPerChar(std::int32_t* out) override
    {
        *out = 3;
        return S_OK;
    }
    Result GetMaxCharsPerByte(std::int32_t* out) override
    {
        *out = 2;
        return S_OK;
    }
    Result BytesToChar(const signed char* bytes, std::int32_t* n, std::uint32_t* codePoint) override
    {
        const std::int32_t wanted = bytes[0] == '1' ? 2 : bytes[0] == '2' ? 3 : 1;
        if (*n < wanted) {
            *n = 0;
            return S_OK;
        }
        *n = wanted;
        if (bytes[0] == 'S') *codePoint = 0xDABC;
        if (bytes[0] == 'P') *codePoint = 0x10000;
        if (bytes[0] == '?') *codePoint = 0x110000;
        if (bytes[0] == '1') *codePoint = static_cast<unsigned char>(bytes[1]);
        if (bytes[0] == '2') {
            *codePoint =
                256u * static_cast<unsigned char>(bytes[1]) + static_cast<unsigned char>(bytes[2]);
        }
        return bytes[0] == '!' ? E_FAIL : S_OK;
    }
    Result CharToBytes(std::uint32_t codePoint, util::IByteBuffer* out) override
    {
        if (codePoint == u'f') return E_FAIL;
        if (codePoint == u'k') kept = out;
        std::string bytes;
        if (codePoint < 0x100) bytes = {'1', static_cast<char>(codePoint)};
        if (codePoint == 0x10000) bytes = "P";
        if (codePoint == u'L') bytes = "toolong";
        signed char* to = nullptr;
        const Result result = out->GetWriteLock(static_cast<std::int32_t>(bytes.size()), &to);
        if (failed(result)) return result;
        std::copy(bytes.begin(), bytes.end(), to);
        return out->ReleaseWriteLock(static_cast<std::int32_t>(bytes.size()));
    }

    Reference<util::IByteBuffer> kept; ///< of the last "k"
};

} // namespace orv::text::charset
