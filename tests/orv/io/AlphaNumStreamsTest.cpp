#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"

#include "orv/text/charset/CharsetExceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

using namespace std::string_view_literals;
using test::PieceStream;
using test::readOnce;
using test::RecordingStream;
using text::charset::InvalidCharacterException;

// The default alphabet in another order, with two characters above ASCII.
constexpr const char16_t* TURNED = u"98765432ZYXWVUTSRQPNMLKJHGFEDC\u00C4\u00D6";

std::string encoded(std::string_view bytes, const char16_t* alphabet = nullptr)
{
    const auto text = makeReference<RecordingStream>();
    const auto out = makeReference<AlphaNumOutputStream>(text.get(), alphabet);
    out->write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    out->flush();
    EXPECT_EQ(text->writes, static_cast<int>(text->content.size())) << "each symbol by itself";
    return text->content;
}

Reference<AlphaNumInputStream> symbolsIn(std::string_view text, const char16_t* alphabet = nullptr)
{
    return makeReference<AlphaNumInputStream>(makeReference<PieceStream>(std::string(text)).get(),
                                              alphabet);
}

TEST(AlphaNumStreams, fiveBytesAreEightSymbolsAndShorterGroupsGainAByte)
{
    struct Row {
        std::string_view bytes, text, back;
    };
    const Row rows[] = {
        {"\0\0\0\0\0"sv, "AAAAAAAA", "\0\0\0\0\0"sv},
        {"\xFF"sv, "96", "\xFF\0"sv},
        {"\x12\x34"sv, "CJ4A", "\x12\x34\0"sv},
        {"\x12\x34\x56"sv, "CJ4FN", "\x12\x34\x56\0"sv},
        {"\x12\x34\x56\x78"sv, "CJ4FN8A", "\x12\x34\x56\x78\0"sv},
        {"\x12\x34\x56\x78\x9A"sv, "CJ4FN8E4", "\x12\x34\x56\x78\x9A"sv},
        {""sv, "", "|-1"sv},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(encoded(row.bytes), row.text);
        EXPECT_EQ(readOnce(*symbolsIn(row.text), 9), row.back) << row.text;
    }
}

TEST(AlphaNumStreams, carryEveryByteInEveryPlaceOfAGroup)
{
    std::string bytes;
    for (int i = 0; i < 256 * 5; ++i) bytes += static_cast<char>(i * 7 + i / 256);
    for (const char16_t* alphabet : {static_cast<const char16_t*>(nullptr), TURNED}) {
        const auto in = symbolsIn(encoded(bytes, alphabet), alphabet);
        EXPECT_EQ(readOnce(*in, 7), bytes.substr(0, 7));
        EXPECT_EQ(in->skip(4), 4);
        EXPECT_EQ(in->read(), static_cast<unsigned char>(bytes[11]));
        EXPECT_EQ(readOnce(*in, 2000), bytes.substr(12));
    }
}

TEST(AlphaNumOutputStream, aFlushInMidStreamEndsTheGroup)
{
    const auto text = makeReference<RecordingStream>();
    const auto out = makeReference<AlphaNumOutputStream>(text.get(), nullptr);
    out->write(static_cast<signed char>(-1));
    out->flush();
    out->write(static_cast<signed char>(0));
    out->close();
    EXPECT_EQ(text->content, "96A") << "close() dropped the rest";
}

TEST(AlphaNumInputStream, afterTheEndAGroupBeginsAnew)
{
    const auto text = makeReference<PieceStream>("99");
    const auto in = makeReference<AlphaNumInputStream>(text.get(), nullptr);
    EXPECT_EQ(readOnce(*in, 9), "\xFF\xC0");
    text->content += "AA";
    EXPECT_EQ(readOnce(*in, 9), "\0\0"sv);
}

TEST(AlphaNumInputStream, refusesWhatIsNoSymbolAndGoesOnBehindIt)
{
    for (const char* wrong : {"a", "I", "O", "0", "1", " ", "\n", "\x80", "\xFF"}) {
        const auto in = symbolsIn("9" + std::string(wrong) + "6AA");
        const auto read = [&] { readOnce(*in, 9); };
        EXPECT_EQ(test::thrownBy<InvalidCharacterException>(read), u"Invalid AlphaNum character");
        EXPECT_EQ(readOnce(*in, 9), "\xFF\0\0"sv) << wrong;
    }
}

TEST(AlphaNumStreams, takeAlphabetsOf32CharactersOnly)
{
    for (const char16_t* alphabet :
         {u"ABCDEFGHJKLMNPQRSTUVWXYZ2345678", u"ABCDEFGHJKLMNPQRSTUVWXYZ234567890"}) {
        EXPECT_EQ(test::codeThrownBy([&] { symbolsIn("A", alphabet); }), 0x80070057);
        EXPECT_EQ(test::codeThrownBy([&] { encoded("", alphabet); }), 0x80070057);
    }
}

TEST(AlphaNumInputStream, tellsOfFiveEighthsOfTheTextThatIsReady)
{
    const auto text = makeReference<PieceStream>("");
    const auto in = makeReference<AlphaNumInputStream>(text.get(), nullptr);
    text->ready = 2000000000;
    EXPECT_EQ(in->available(), 1250000000);
}

} // namespace
} // namespace orv::io
