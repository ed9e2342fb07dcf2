#include "tests/orv/text/charset/Converting.h"
#include "tests/orv/text/charset/FakeCodec.h"

namespace orv::text::charset {
namespace {

/// Blocks of a small letter or a unit, no more; fails on "f", and claims too much behind "z".
class FakeBlockCodec : public quark::Implements<FakeCodec, IORVBlockCodec> {
public:
    Result QueryInterface(const GUID&, void** out) override
    {
        AddRef();
        *out = static_cast<IORVBlockCodec*>(this);
        return S_OK;
    }
    Result BytesToUnits(const signed char* bytes, std::int32_t* n, char16_t* units,
                        std::int32_t* count) override
    {
        if (*n == 0 || *bytes < 'a') *n = *count = 0;
        if (*count == 0) return S_OK;
        *units = static_cast<char16_t>(*bytes);
        *n = *count = *bytes == 'z' ? 99 : 1;
        return *bytes == 'f' ? E_FAIL : S_OK;
    }
    Result UnitsToBytes(const char16_t*, std::int32_t* n, signed char* bytes,
                        std::int32_t* count) override
    {
        *n = *count = std::min({*n, *count, 1});
        std::fill_n(bytes, *n, '.');
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
    EXPECT_EQ(decoded(reading, "x1\xE9v!f1ug"), u"x\u00E9v\uFFFD\uFFFDug");
    EXPECT_EQ(decoded(reading, "xyz1a", from = 0, 4).size(), 4u); // no claim leads out of bounds
    EXPECT_EQ(from, 5);
    CTBCom writing(blocks.get());
    EXPECT_EQ(encoded(writing, u"x\U00010000y"), ".P.");
}

} // namespace
} // namespace orv::text::charset
