#include "orv/io/OutputStreamWriter.h"

#include "orv/text/charset/CharsetExceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

using namespace std::string_literals;
using test::RecordingStream;
using test::thrownBy;
using text::charset::InvalidCharacterException;

struct Row {
    const char16_t* encoding;
    std::u16string text;
    std::string bytes;
};

const Row ROWS[] = {
    {u"UTF-8", u"a\u00E9\u20AC\U00010000z", "a\xC3\xA9\xE2\x82\xAC\xF0\x90\x80\x80z"},
    {u"UTF-8", u"\U0001F600\U0001F600\U0001F600",
     "\xF0\x9F\x98\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80"},
    {u"UTF-8", u"12345\U0001F600", "12345\xF0\x9F\x98\x80"},
    {u"UTF-8", u"1\xDC00", "1\xED\xB0\x80"}, // a trailing half by itself
    {u"UTF-16LE", u"a\U00010000", "a\0\x00\xD8\x00\xDC"s},
    {u"UTF-16BE", u"a\U00010000", "\0a\xD8\x00\xDC\x00"s},
    {u"UTF-32LE", u"a\U00010000b", "a\0\0\0\0\0\1\0b\0\0\0"s},
    {u"CP1252", u"\u20ACuro 12345678\U0001F600\U0001F600!",
     "\x80uro 12345678?"
     "?!"},
    {u"ASCII", u"\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600", "?????"},
    {u"AMP-7", u"a&\U0001F600\u2019\"z", "a&AMP;&_1F600;&_2019;\"z"},
    {u"AMP-7", u"\U0001F600\U0001F601", "&_1F600;&_1F601;"},
};

TEST(OutputStreamWriter, writesTheSameBytesHoweverTheTextIsSplit)
{
    for (const Row& row : ROWS) {
        const auto length = static_cast<std::int32_t>(row.text.size());
        for (std::int32_t size = 0; size < 20; ++size) {
            for (std::int32_t piece = 1; piece <= length; ++piece) {
                SCOPED_TRACE(orv::test::readable(row.text) + " in pieces of " +
                             std::to_string(piece) + ", buffer " + std::to_string(size));
                const auto bytes = makeReference<RecordingStream>();
                OutputStreamWriter out(bytes.get(), row.encoding, size);
                for (std::int32_t at = 0; at < length; at += piece) {
                    out.write(row.text.data() + at, std::min(piece, length - at));
                }
                out.flush();
                ASSERT_EQ(bytes->content, row.bytes);
                EXPECT_EQ(bytes->flushes, 1);
            }
        }
    }
}

TEST(OutputStreamWriter, closeDropsWhatIsNotFlushed)
{
    const auto bytes = makeReference<RecordingStream>();
    OutputStreamWriter out(bytes.get(), u"UTF-8", 64);
    out.write(u"lost");
    out.close();
    EXPECT_EQ(bytes->content, "");
}

TEST(OutputStreamWriter, waitsForTheOtherHalfOfAPairUntilFlushed)
{
    for (const char16_t* encoding : {u"UTF-8", u"UTF-32BE", u"CP1252", u"AMP-7"}) {
        SCOPED_TRACE(String(encoding).getBytes());
        const auto bytes = makeReference<RecordingStream>();
        OutputStreamWriter out(bytes.get(), encoding, 6);
        out.write(u"abc\xD83D", 4);
        EXPECT_EQ(thrownBy<InvalidCharacterException>([&] { out.flush(); }),
                  u"leading surrogate without trailing");
        EXPECT_EQ(thrownBy<InvalidCharacterException>([&] { out.write(u"x"); }),
                  u"leading surrogate without trailing");
        out.write(u'\xDE00');
        EXPECT_NO_THROW(out.flush());
        EXPECT_EQ(bytes->flushes, 1);
    }
}

} // namespace
} // namespace orv::io
