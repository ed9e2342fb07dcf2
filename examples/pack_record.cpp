// Lays out a record by the flat classes that older programs are built on, and reads it back.
//
//     example_pack_record -name=Ada -year=1843
//
// New programs take orv::util::CommandLineParser, PropertySet and orv::io::ByteBuffer.

#include <compat/CORVByteBuffer>
#include <compat/CORVCmdLineParser>
#include <compat/CORVProperty>
#include <orv/Exception>
#include <orv/String>

#include <cstdint>
#include <cstdio>
#include <cstring>

using orv::String;

namespace {

/// The bytes of the text in UTF-8, behind their number.
void putText(CORVByteBuffer& record, const String& text)
{
    const char* const bytes = text.getBytes(u"UTF-8");
    const std::size_t length = std::strlen(bytes);
    record.putInt16(static_cast<std::int16_t>(length));
    record.put(reinterpret_cast<const signed char*>(bytes), static_cast<std::uint32_t>(length));
}

String getText(CORVByteBuffer& record)
{
    signed char bytes[256];
    const auto length = static_cast<std::uint16_t>(record.getInt16());
    const std::uint32_t got = record.get(bytes, length < 256u ? length : 256u);
    return String(bytes, static_cast<std::int32_t>(got), u"UTF-8");
}

} // namespace

int main(int count, char** words)
{
    CORVCmdLineParser line;
    line.defineOption(u"name", 1, u"Ada");
    line.defineOption(u"year", 1, u"1843");
    line.parse(count - 1, words + 1);
    try {
        const CORVProperty year(u"year", line.getValueLong(u"year", 0)); // kept as text
        const CORVSmartPtr<CORVByteBuffer> record(
            new CORVByteBuffer(64u, CORVByteBuffer::ORDER_BIG, false));
        record->putInt32(year.getValueLong());
        putText(*record, line.getValueString(u"name", 0));
        record->flip();
        std::printf("%u bytes:", static_cast<unsigned>(record->remaining()));
        for (std::uint32_t i = 0; i < record->getLimit(); ++i) {
            std::printf(" %02X", static_cast<unsigned>(record->get(i)) & 0xFFu);
        }
        const std::int32_t value = record->getInt32();
        std::printf("\n%s, %s %d\n", getText(*record).getBytes(), year.getKey().getBytes(), value);
        return 0;
    } catch (const orv::Exception& exception) {
        std::fprintf(stderr, "example_pack_record: %s\n", exception.getDescription().getBytes());
        return 1;
    }
}
