#include "orv/io/InputStream.h"

#include "orv/io/ByteArrayOutputStream.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

using test::PieceStream;

TEST(InputStream, givesSingleBytesWithoutSign)
{
    PieceStream in("\x7F\xFF");
    EXPECT_EQ(in.read(), 0x7F);
    EXPECT_EQ(in.read(), 0xFF);
    EXPECT_EQ(in.read(), -1);
}

struct Growing : ByteArrayOutputStream {
    using ByteArrayOutputStream::ByteArrayOutputStream;
    using ByteArrayOutputStream::capacity;
};

TEST(ByteArrayOutputStream, growsToFiveQuartersOfWhatIsNeeded)
{
    struct Row {
        std::int32_t initial, written, capacity;
    };
    const signed char bytes[257] = {};
    for (const Row& row : {Row{0, 1, 1}, {0, 3, 3}, {0, 4, 5}, {256, 256, 256}, {256, 257, 321}}) {
        Growing stream(row.initial);
        stream.write(bytes, row.written);
        EXPECT_EQ(stream.capacity(), row.capacity) << row.initial << " then " << row.written;
    }
}

} // namespace
} // namespace orv::io
