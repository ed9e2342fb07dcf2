#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/MaskedConsoleInputStream.h"
#include "orv/io/StdioStreams.h"

#include "orv/Exceptions.h"
#include "orv/util/FilePath.h"
#include "tests/orv/io/Streams.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <unistd.h>

namespace orv::io::test {
namespace {

using orv::test::TemporaryFolder;

constexpr std::uint64_t none = ~std::uint64_t{0};

TEST(FileInputStream, readsToTheEndAndCloses)
{
    const TemporaryFolder folder;
    folder.write("in.txt", "abcdef");
    FileInputStream in(util::FilePath(folder.file(u"in.txt")));
    EXPECT_EQ(readOnce(in, 4), "abcd");
    signed char byte = 0;
    EXPECT_EQ(in.read(&byte, 0), -1);
    EXPECT_EQ(readOnce(in, 4), "ef");
    EXPECT_EQ(readOnce(in, 4), "|-1");
    in.close();
    EXPECT_EQ(in.getHandle(), none);
    in.close();
    EXPECT_EQ(codeThrownBy([&] { in.read(); }), 0x80070006u);
}

TEST(FileStreams, tellWhyAFileCannotBeOpened)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "dir");
    using Row = std::tuple<const char16_t*, std::uint32_t, std::uint32_t>;
    for (const auto& [name, reading, writing] : {Row{u"absent", 0x80070002, 0},
                                                 {u"dir", 0x80070005, 0x80070005},
                                                 {u"absent/file", 0x80070003, 0x80070003},
                                                 {u"absent/", 0x80070003, 0x80070005}}) {
        SCOPED_TRACE(orv::test::readable(name));
        const String path = folder.file(name);
        EXPECT_EQ(codeThrownBy([&] { FileInputStream in(path); }), reading);
        EXPECT_EQ(codeThrownBy([&] { FileOutputStream out(path, true); }), writing);
    }
    EXPECT_EQ(codeThrownBy([] { FileInputStream in(u"Z:\\x"); }), 0x80070003u);
    EXPECT_THROW(FileOutputStream(String(), false), InvalidPathException);
}

TEST(FileOutputStream, opensAsTheModeSays)
{
    using Row = std::pair<std::uint32_t, const char*>;
    using Out = FileOutputStream;
    // Each write of a file that is kept closed and not appended to begins at its start.
    for (const auto& [mode, content] : {Row{0, "newdef"},
                                        {Out::ATEND, "abcdefnew"},
                                        {Out::TRUNC, "new"},
                                        {Out::APPEND, "abcdefnew"},
                                        {Out::KEEPCLOSED, "wecdef"},
                                        {Out::KEEPCLOSED | Out::TRUNC, "we"},
                                        {Out::KEEPCLOSED | Out::APPEND, "abcdefnew"}}) {
        SCOPED_TRACE(mode);
        const TemporaryFolder folder;
        folder.write("out.txt", "abcdef");
        FileOutputStream out(folder.file(u"out.txt"), mode);
        EXPECT_EQ(out.getMode(), mode);
        out.write("ne", 2);
        out.write("w", 1);
        EXPECT_EQ(folder.read("out.txt"), content);
    }
}

TEST(FileOutputStream, movesBetweenOpenAndClosed)
{
    const TemporaryFolder folder;
    FileOutputStream out(folder.file(u"out.txt"), FileOutputStream::TRUNC);
    out.write("abc", 3);
    EXPECT_EQ(out.getSize(), 3);
    out.close();
    EXPECT_NO_THROW(out.flush());
    EXPECT_EQ(codeThrownBy([&] { out.write("x", 1); }), 0x80070006u);
    EXPECT_EQ(codeThrownBy([&] { out.getSize(); }), 0x80070006u);
    out.open();
    out.open();
    EXPECT_EQ(out.getSize(), 3) << "not truncated again";
    FileOutputStream guest(out.getHandle(), false);
    guest.close();
    EXPECT_EQ(guest.is_open(), 1);
    EXPECT_THROW(guest.open(), InvalidPathException);
}

TEST(FileOutputStream, keptClosedOpensForEachOperation)
{
    const TemporaryFolder folder;
    const std::uint32_t mode = FileOutputStream::KEEPCLOSED | FileOutputStream::ATEND;
    FileOutputStream out(folder.file(u"out.txt"), mode | FileOutputStream::TRUNC);
    out.write("one", 3);
    EXPECT_EQ(out.is_open(), 0);
    std::filesystem::rename(folder.path() / "out.txt", folder.path() / "old.txt");
    out.write("two", 3);
    EXPECT_EQ(out.getSize(), 3);
    EXPECT_EQ(folder.read("old.txt"), "one");
    EXPECT_EQ(folder.read("out.txt"), "two");
    out.open();
    EXPECT_EQ(out.is_open(), 1);
    EXPECT_EQ(out.getHandle(), none);
    out.flush();
    EXPECT_EQ(out.is_open(), 0);
}

TEST(FileOutputStream, tellsOfAFullDisk)
{
    using Out = FileOutputStream;
    for (const std::uint32_t mode : {0u, Out::LOCK | Out::APPEND, 0u | Out::KEEPCLOSED}) {
        FileOutputStream out(u"/dev/full", mode);
        EXPECT_EQ(codeThrownBy([&] { out.write("x", 1); }), 0x80070070u) << mode;
        EXPECT_EQ(out.is_open(), 1) << "a failed write leaves the file open";
        EXPECT_EQ(codeThrownBy([&] { out.write("x", 1); }), 0x80070070u) << "the lock is free";
        EXPECT_NO_THROW(out.flush());
    }
}

// Runs `body` in a child whose standard stream `number` is the file, and gives what it returns.
template <class Body>
int runWith(int number, const std::filesystem::path& file, int flags, Body body)
{
    orv::test::ForkedChild child([&] {
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

TEST(StdioStreams, tellOfFailures)
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
                           {"ab\x1Axy", "ab", 20},
                           {"ab\x03xy", "abort", 20},
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
} // namespace orv::io::test
