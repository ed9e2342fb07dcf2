// Carries a text file from one encoding into another, a block of units at a time, through the four
// streams that a host puts together for it.
//
//     example_reencode UTF-8 UTF-16LE letter.txt letter.utf16

#include <orv/Exception>
#include <orv/Reference>
#include <orv/io/FileInputStream>
#include <orv/io/FileOutputStream>
#include <orv/io/InputStreamReader>
#include <orv/io/OutputStreamWriter>

#include <cstdio>

using namespace orv;
using namespace orv::io;

namespace {

constexpr std::int32_t BUFFER_SIZE = 65536;

std::int64_t reencode(const String& from, const String& to, const String& in, const String& out)
{
    const auto bytesIn = makeReference<FileInputStream>(in);
    const auto reader =
        makeReference<InputStreamReader>(bytesIn.get(), from.getData(), BUFFER_SIZE);
    const auto bytesOut = makeReference<FileOutputStream>(out, FileOutputStream::TRUNC);
    const auto writer =
        makeReference<OutputStreamWriter>(bytesOut.get(), to.getData(), BUFFER_SIZE);

    std::int64_t total = 0;
    char16_t units[4096];
    for (;;) {
        const std::int32_t got = reader->read(units, 4096);
        if (got < 1) break;
        writer->write(units, got);
        total += got;
    }
    writer->flush(); // close() drops what is not flushed
    writer->close();
    reader->close();
    return total;
}

} // namespace

int main(int count, char** words)
{
    if (count != 5) {
        std::fprintf(stderr, "usage: example_reencode FROM TO INPUT OUTPUT\n");
        return 2;
    }
    try {
        const std::int64_t units = reencode(words[1], words[2], words[3], words[4]);
        std::printf("%lld code units from %s to %s\n", static_cast<long long>(units), words[1],
                    words[2]);
        return 0;
    } catch (const Exception& exception) {
        std::fprintf(stderr, "example_reencode: %s (0x%08X)\n",
                     exception.getDescription().getBytes(),
                     static_cast<unsigned>(exception.getResult()));
        return 1;
    }
}
