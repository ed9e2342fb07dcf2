#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"

#include "orv/Exceptions.h"
#include "orv/util/FilePath.h"
#include "tests/orv/io/Streams.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>

namespace orv::io {
namespace {

using orv::test::TemporaryFolder;
using test::codeThrownBy;
using test::readOnce;

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
    struct Row {
        const char16_t* name;
        std::uint32_t reading, writing;
    };
    for (const Row& row : {Row{u"absent", 0x80070002, 0},
                           {u"dir", 0x80070005, 0x80070005},
                           {u"absent/file", 0x80070003, 0x80070003},
                           {u"absent/", 0x80070003, 0x80070005}}) {
        SCOPED_TRACE(orv::test::readable(row.name));
        const String path = folder.file(row.name);
        EXPECT_EQ(codeThrownBy([&] { FileInputStream in(path); }), row.reading);
        EXPECT_EQ(codeThrownBy([&] { FileOutputStream out(path, true); }), row.writing);
    }
    EXPECT_EQ(codeThrownBy([] { FileInputStream in(u"Z:\\x"); }), 0x80070003u);
    EXPECT_THROW(FileOutputStream(String(), false), InvalidPathException);
}

TEST(FileOutputStream, opensAsTheModeSays)
{
    struct Row {
        std::uint32_t mode;
        const char* content;
    };
    using Out = FileOutputStream;
    // Each write of a file that is kept closed and not appended to begins at its start.
    for (const Row& row : {Row{0, "newdef"},
                           {Out::ATEND, "abcdefnew"},
                           {Out::TRUNC, "new"},
                           {Out::APPEND, "abcdefnew"},
                           {Out::KEEPCLOSED, "wecdef"},
                           {Out::KEEPCLOSED | Out::TRUNC, "we"},
                           {Out::KEEPCLOSED | Out::APPEND, "abcdefnew"}}) {
        SCOPED_TRACE(row.mode);
        const TemporaryFolder folder;
        folder.write("out.txt", "abcdef");
        FileOutputStream out(folder.file(u"out.txt"), row.mode);
        EXPECT_EQ(out.getMode(), row.mode);
        out.write("ne", 2);
        out.write("w", 1);
        EXPECT_EQ(folder.read("out.txt"), row.content);
    }
}

TEST(FileOutputStream, movesBetweenOpenAndClosed)
{
    const TemporaryFolder folder;
    FileOutputStream out(folder.file(u"out.txt"), FileOutputStream::TRUNC);
    EXPECT_EQ(out.is_open(), 1);
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
    EXPECT_EQ(out.is_open(), 0);
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
    FileOutputStream out(u"/dev/full", 0u);
    EXPECT_EQ(codeThrownBy([&] { out.write("x", 1); }), 0x80070070u);
    EXPECT_NO_THROW(out.flush());

    FileOutputStream locked(u"/dev/full", FileOutputStream::LOCK | FileOutputStream::APPEND);
    EXPECT_EQ(codeThrownBy([&] { locked.write("x", 1); }), 0x80070070u);
    EXPECT_EQ(codeThrownBy([&] { locked.write("x", 1); }), 0x80070070u) << "the lock is free";

    FileOutputStream closed(u"/dev/full", FileOutputStream::KEEPCLOSED);
    EXPECT_EQ(codeThrownBy([&] { closed.write("x", 1); }), 0x80070070u);
    EXPECT_EQ(closed.is_open(), 1) << "a failed write leaves the file open";
}

} // namespace
} // namespace orv::io
