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

namespace orv::io::test {
namespace {

using orv::test::ForkedChild;
using orv::test::TemporaryFolder;

constexpr Result BAD_HANDLE = makeResult(0x80070006);
constexpr Result DISK_FULL = makeResult(0x80070070);

TEST(FileInputStream, readsToTheEndAndCloses)
{
    const TemporaryFolder folder;
    folder.write("in.txt", "abcdef");
    FileInputStream in(util::FilePath(folder.file(u"in.txt")));
    EXPECT_EQ(readOnce(in, 4), "abcd");
    EXPECT_EQ(readOnce(in, 0), "|-1");
    EXPECT_EQ(readOnce(in, 4), "ef");
    EXPECT_EQ(readOnce(in, 4), "|-1");
    in.close();
    EXPECT_EQ(in.getHandle(), ORV_NO_HANDLE);
    in.close();
    EXPECT_EQ(refusalOf([&] { in.read(); }).first, BAD_HANDLE);
    EXPECT_EQ(refusalOf([&] { FileInputStream(folder.file(u"none")); }).first, E_NOT_FOUND);
    EXPECT_THROW(FileOutputStream(folder.file(u""), true), ResultException);
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
    out.close();
    EXPECT_NO_THROW(out.flush());
    EXPECT_EQ(refusalOf([&] { out.write("x", 1); }).first, BAD_HANDLE);
    EXPECT_EQ(refusalOf([&] { out.getSize(); }).first, BAD_HANDLE);
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
    using Out = FileOutputStream;
    Out out(folder.file(u"out.txt"), Out::KEEPCLOSED | Out::ATEND | Out::TRUNC);
    out.write("one", 3);
    EXPECT_EQ(out.is_open(), 0);
    std::filesystem::rename(folder.path() / "out.txt", folder.path() / "old.txt");
    out.write("two", 3);
    EXPECT_EQ(out.getSize(), 3);
    EXPECT_EQ(folder.read("old.txt") + folder.read("out.txt"), "onetwo");
    out.open();
    EXPECT_EQ(out.is_open(), 1);
    EXPECT_EQ(out.getHandle(), ORV_NO_HANDLE);
    out.flush();
    EXPECT_EQ(out.is_open(), 0);
}

TEST(FileOutputStream, tellsOfAFullDisk)
{
    using Out = FileOutputStream;
    for (const std::uint32_t mode : {0u, Out::LOCK | Out::APPEND, 0u | Out::KEEPCLOSED}) {
        FileOutputStream out(u"/dev/full", mode);
        EXPECT_EQ(refusalOf([&] { out.write("x", 1); }).first, DISK_FULL) << mode;
        EXPECT_EQ(out.is_open(), 1) << "a failed write leaves the file open";
        EXPECT_EQ(refusalOf([&] { out.write("x", 1); }).first, DISK_FULL) << "the lock is free";
    }
}

/// Whether `holds` does in a child that has these bytes as its standard input.
template <class Holds>
bool holdsWithInput(const std::string& bytes, Holds holds)
{
    const TemporaryFolder folder;
    folder.write("in", bytes);
    ForkedChild child([&] {
        const int file = ::open((folder.path() / "in").c_str(), O_RDONLY);
        return file >= 0 && ::dup2(file, STDIN_FILENO) >= 0 && holds() ? 0 : 1;
    });
    return child.exitCode() == 0;
}

TEST(StdioInputStream, readsLinesUpToAZeroByte)
{
    EXPECT_TRUE(holdsWithInput(std::string("one\nlong line\nze\0ro\n\nx", 22), [] {
        StdioInputStream in;
        std::string all = readOnce(in, 1) + readOnce(in, 0) + static_cast<char>(in.read()) + "|";
        for (std::string piece; (piece = readOnce(in, 6)) != "|-1";) all += piece + "|";
        return all == "|-1o|ne\n|long |line\n|ze|\n|\n|x|" && in.read() == -1;
    }));
}

TEST(StdioStreams, tellOfFailures)
{
    ForkedChild child([] {
        StdioOutputStream out;
        if (std::freopen("/dev/full", "w", stdout) == nullptr) return 1;
        if (refusalOf([&] { out.write("abc", 3); }).second != "stream write error") return 2;
        out.write(static_cast<signed char>('x'));
        return refusalOf([&] { out.flush(); }).second == "stream flush error" ? 0 : 3;
    });
    EXPECT_EQ(child.exitCode(), 0);
}

TEST(MaskedConsoleInputStream, takesKeysAsTheyMean)
{
    struct Row {
        std::string keys, expected;
        std::int32_t n = 20;
    };
    for (const Row& row : {Row{"secret\rnext", "secret\n"},
                           {"\b\bab\bc\r", "ac\n"},
                           {"abcdef", "abc", 3},
                           {"ab\x1Axy", "ab"},
                           {"ab\x03xy", "aborted"},
                           {"", "|-1"},
                           {"x", "", 0}}) {
        EXPECT_TRUE(holdsWithInput(row.keys, [&] {
            MaskedConsoleInputStream in;
            std::string got = "aborted";
            refusalOf<UserAbortException>([&] { got = readOnce(in, row.n); });
            return got == row.expected;
        })) << row.keys;
    }
}

} // namespace
} // namespace orv::io::test
