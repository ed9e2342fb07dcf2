#include "orv/text/charset/ComConverters.h"

#include "orv/Exception.h"
#include "orv/Object.h"
#include "tests/orv/text/charset/Converting.h"

namespace orv::text::charset {
namespace {

/// Hexadecimal pairs behind a length: "1x" is one byte x as a character, "2xy" two. Two bytes stand
/// for 0x100 times x plus y, "S" for a surrogate, "P" for U+10000, "!" for nothing.
class FakeCodec : public quark::Implements<Object, IORVCharCodec> {
public:
    Result GetName(util::ICharBuffer* out) override
    {
        Reference<util::ICharBuffer> held(out); // as a component may do
        char16_t* units = nullptr;
        held->GetWriteLock(5, &units);
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
        out->GetWriteLock(static_cast<std::int32_t>(bytes.size()), &to);
        std::copy(bytes.begin(), bytes.end(), to);
        return out->ReleaseWriteLock(static_cast<std::int32_t>(bytes.size()));
    }

    Reference<util::IByteBuffer> kept; ///< of the last "k"
};

/// Takes blocks of small letters, fails on those with an "f", and claims too much behind a "z".
class FakeBlockCodec : public quark::Implements<FakeCodec, IORVBlockCodec> {
public:
    Result QueryInterface(const GUID& iid, void** out) override
    {
        static const quark::InterfaceData map[] = {
            quark::interfaceRow<IORVCharCodec, FakeBlockCodec>(),
            quark::interfaceRow<IORVBlockCodec, FakeBlockCodec>(), quark::endRow};
        return quark::QueryInterfaceMap(map, this, iid, out);
    }
    Result BytesToUnits(const signed char* bytes, std::int32_t* n, char16_t* units,
                        std::int32_t* count) override
    {
        return take(bytes, n, units, count);
    }
    Result UnitsToBytes(const char16_t* units, std::int32_t* n, signed char* bytes,
                        std::int32_t* count) override
    {
        return take(units, n, bytes, count);
    }

private:
    template <class From, class To>
    Result take(const From* from, std::int32_t* n, To* to, std::int32_t* count)
    {
        std::int32_t i = 0, extra = 0;
        for (; i < std::min(*n, *count) && from[i] >= 'a' && from[i] <= 'z'; ++i) {
            if (from[i] == 'f') return E_FAIL;
            if (from[i] == 'z') extra = 99;
            to[i] = static_cast<To>(from[i]);
        }
        *n = *count = i + extra;
        return S_OK;
    }
};

class ComConverters : public testing::Test {
protected:
    ~ComConverters() noexcept override = default;

    std::u16string decode(std::string_view bytes, std::int32_t room = 16)
    {
        return decoded(decoder, bytes, from = 0, room);
    }
    std::string encode(std::u16string_view units, std::int32_t room = 16)
    {
        return encoded(encoder, units, from = 0, room);
    }

    Reference<FakeCodec> codec = makeReference<FakeCodec>();
    BTCCom decoder{codec.get()};
    CTBCom encoder{codec.get()};
    std::int32_t from = 0, to = 0;
};

TEST_F(ComConverters, decodeCharacterByCharacter)
{
    EXPECT_EQ(decode("1a2\x20\xACP"), u"a\u20AC\U00010000");
    EXPECT_EQ(decode("1a2\x20"), u"a"); // the codec wants more
    EXPECT_EQ(from, 2);
    EXPECT_EQ(decode("P", 1), u"");
    EXPECT_EQ(from, 0);
    decoder.setSubstitutionChars(u"<>", 2);
    EXPECT_EQ(decode("!1a?", 5), u"<>a<>"); // may end exactly at the end
    EXPECT_EQ(decode("!", 1), u"");
    EXPECT_THROW(decode("1aS"), InvalidCharacterException);
    EXPECT_EQ(from, 2);
    decoder.setSubstitutionMode(false);
    EXPECT_THROW(decode("1a!"), UnmappableCharacterException);
    EXPECT_EQ(from, 2);
    EXPECT_EQ(decode("?", 0), u""); // a code point that is none, too, waits for room
    char16_t out[4];
    EXPECT_EQ(decoder.flush(out, &to, 4), 0);
}

TEST_F(ComConverters, encodeCharacterByCharacter)
{
    EXPECT_EQ(encode(u"a\U00010000z"), "1aP1z");
    EXPECT_EQ(encode(u"ab", 3), "1a");
    EXPECT_EQ(from, 1);
    EXPECT_EQ(encode(u"a\u20ACfL"), "1a???"); // none, a failure and an overlong answer alike
    EXPECT_EQ(encode(u"ka"), "1k1a");
    EXPECT_EQ(codec->kept->GetData()[1], 'k');                      // the codec's to keep
    EXPECT_THROW(encode(u"\U00010001"), InvalidCharacterException); // a pair without bytes
    encoder.reset();
    EXPECT_THROW(encode(u"a\xDC00"), InvalidCharacterException);
    EXPECT_THROW(encode(u"a\xD800z"), InvalidCharacterException);
    EXPECT_EQ(from, 2);
    EXPECT_THROW(encoder.flush(nullptr, &to, 0), InvalidCharacterException);
    encoder.reset();
    EXPECT_EQ(encoder.flush(nullptr, &to, 0), 0);
    encoder.setSubstitutionMode(false);
    EXPECT_THROW(encode(u"\u20AC"), UnmappableCharacterException);
}

TEST_F(ComConverters, takePlainTextInBlocks)
{
    const auto blocks = makeReference<FakeBlockCodec>();
    BTCCom reading(blocks.get());
    CTBCom writing(blocks.get());
    EXPECT_EQ(decoded(reading, "ab1\xE9"
                               "cd!1fe"),
              u"ab\xE9"
              u"cd\uFFFD"
              u"fe");
    EXPECT_EQ(encoded(writing, u"ab\xE9"
                               u"cd\U00010000e\u20AC"
                               u"f"),
              "ab1\xE9"
              "cdPe??");
    EXPECT_EQ(decoded(reading, "xyz", from = 0, 2), u"xy");
    EXPECT_EQ(from, 2);
    EXPECT_EQ(decoded(reading, "xyz1a", from = 0, 8).size(), 8u); // no claim leads out of bounds
    EXPECT_EQ(from, 5);
}

} // namespace
} // namespace orv::text::charset
