#include "orv/io/StdioStreams.h"

#include "orv/Exceptions.h"
#include "orv/io/MaskedConsoleInputStream.h"
#include "tests/orv/io/Streams.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace orv::io {
namespace {

using orv::test::ForkedChild;
using orv::test::TemporaryFolder;
using test::readOnce;
using test::thrownBy;

// Runs `body` in a child whose standard stream `number` is the file, and gives what it returns.
template <class Body>
int runWith(int number, const std::filesystem::path& file, int flags, Body body)
{
    ForkedChild child([&] {
        const int descriptor = ::open(file.c_str(), flags);
        if (descriptor < 0 || ::dup2(descriptor, number) < 0) return 99;
        return body();
    });
    return child.exitCode();
}

// Joins what `read` gives until the end by "|".
template <class Read>
std::string pieces(Read read)
{
    std::string all;
    for (std::string piece; (piece = read()) != "|-1"; all += piece + "|") {
    }
    return all;
}

TEST(StdioInputStream, readsLinesUpToAZeroByte)
{
    const TemporaryFolder folder;
    folder.write("in", std::string("one\nlong line\nze\0ro\n\nx", 22));
    const int failure = runWith(STDIN_FILENO, folder.path() / "in", O_RDONLY, [] {
        StdioInputStream in;
        if (readOnce(in, 1) != "|-1" || !readOnce(in, 0).empty()) return 1;
        if (in.read() != 'o') return 2;
        if (pieces([&] { return readOnce(in, 6); }) != "ne\n|long |line\n|ze|\n|\n|x|") return 3;
        return in.read() == -1 ? 0 : 4;
    });
    EXPECT_EQ(failure, 0);
}

TEST(StdioOutputStream, tellsOfFailures)
{
    const int failure = runWith(STDOUT_FILENO, "/dev/full", O_WRONLY, [] {
        StdioOutputStream out;
        if (thrownBy([&] { out.write("abc", 3); }) != u"stream write error") return 1;
        out.write(static_cast<signed char>('x'));
        return thrownBy([&] { out.flush(); }) == u"stream flush error" ? 0 : 2;
    });
    EXPECT_EQ(failure, 0);
}

TEST(MaskedConsoleInputStream, takesKeysAsTheyMean)
{
    struct Row {
        std::string keys, read;
        std::int32_t n;
    };
    for (const Row& row : {Row{"secret\rnext", "secret\n", 20},
                           {"\b\bab\bc\r", "ac\n", 20},
                           {"abcdef", "abc", 3},
                           {"ab\x1A"
                            "cd",
                            "ab", 20},
                           {"ab\x03"
                            "cd",
                            "abort", 20},
                           {"", "|-1", 20},
                           {"x", "", 0}}) {
        const TemporaryFolder folder;
        folder.write("keys", row.keys);
        const int failure = runWith(STDIN_FILENO, folder.path() / "keys", O_RDONLY, [&] {
            MaskedConsoleInputStream in;
            try {
                return readOnce(in, row.n) == row.read ? 0 : 1;
            } catch (const UserAbortException&) {
                return row.read == "abort" ? 0 : 2;
            }
        });
        EXPECT_EQ(failure, 0) << row.keys;
    }
}

} // namespace
} // namespace orv::io
