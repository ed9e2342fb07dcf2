#include "orv/io/FileOutputStream.h"

#include "tests/orv/io/Streams.h"
#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <fstream>
#include <map>
#include <memory>
#include <vector>

namespace orv::io::test {
namespace {

using orv::test::awaitTrue;
using orv::test::ForkedChild;
using orv::test::SharedPage;
using orv::test::TemporaryFolder;

constexpr int WRITERS = 4;
constexpr int VICTIM = 0;

struct Progress {
    std::atomic<bool> stop;
    std::atomic<std::uint32_t> written[WRITERS];
};

// "<writer> <number> <length> <letters>\n", long enough for a kill to fall into the write.
std::string record(int writer, std::uint32_t number)
{
    const std::size_t length = 2000 + number * 7919 % 9000;
    const char letter = static_cast<char>('a' + number % 26);
    return std::to_string(writer) + " " + std::to_string(number) + " " + std::to_string(length) +
           " " + std::string(length, letter) + "\n";
}

int appendRecords(const String& path, std::uint32_t mode, int writer, Progress& progress)
{
    FileOutputStream out(path, mode);
    while (!progress.stop) {
        const std::string bytes = record(writer, progress.written[writer]);
        out.write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        ++progress.written[writer];
    }
    return 0;
}

// Every line is a whole record, and the records of a writer are in their order. One of the victim
// may be missing or double: it may have died behind the write and before it counted it.
void checkRecords(const std::string& file, const Progress& progress)
{
    std::ifstream in(file, std::ios::binary);
    std::map<int, std::uint32_t> next;
    int lines = 0;
    for (std::string line; std::getline(in, line); ++lines) {
        int writer = -1;
        unsigned number = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "%d %u", &writer, &number), 2) << line.substr(0, 80);
        ASSERT_EQ(line + "\n", record(writer, number)) << "line " << lines;
        ASSERT_LE(number, next[writer]);
        ASSERT_GE(number + (writer == VICTIM ? 1 : 0), next[writer]);
        next[writer] = number + 1;
    }
    for (int writer = 1; writer < WRITERS; ++writer) {
        EXPECT_EQ(next[writer], progress.written[writer]);
    }
    EXPECT_GT(lines, 100);
}

void appendWhileOneIsKilled(std::uint32_t mode, int kills)
{
    const TemporaryFolder folder;
    const String path = folder.file(u"log.txt");
    SharedPage<Progress> progress;
    std::vector<std::unique_ptr<ForkedChild>> writers;
    const auto start = [&](int writer) {
        return std::make_unique<ForkedChild>(
            [&] { return appendRecords(path, mode, writer, *progress); });
    };
    for (int writer = 0; writer < WRITERS; ++writer) writers.push_back(start(writer));
    for (int kill = 0; kill < kills; ++kill) {
        const std::uint32_t before = progress->written[VICTIM];
        const std::uint32_t more = static_cast<std::uint32_t>(kill % 3);
        ASSERT_TRUE(awaitTrue([&] { return progress->written[VICTIM] > before + more; }));
        writers[VICTIM]->kill();
        writers[VICTIM] = start(VICTIM);
    }
    progress->stop = true;
    for (const auto& writer : writers) EXPECT_EQ(writer->exitCode(), 0);
    checkRecords(folder.path() / "log.txt", *progress);
}

TEST(FileSharing, fourProcessesAppendWholeRecordsWhileOneIsKilled)
{
    using Out = FileOutputStream;
    appendWhileOneIsKilled(Out::APPEND, 30);
    appendWhileOneIsKilled(Out::LOCK | Out::ATEND | Out::KEEPCLOSED, 10);
}

TEST(FileSharing, theNextWriterCutsOffWhatADeadOneTore)
{
    const TemporaryFolder folder;
    const String path = folder.file(u"log.txt");
    FileOutputStream out(path, FileOutputStream::APPEND);
    out.write("first\n", 6);
    ForkedChild child([&] {
        ipc::SemaphoreR lock((folder.path() / "log.txt").c_str(), 1);
        lock.wait();
        lock.noteFileSize(6);
        std::ofstream(folder.path() / "log.txt", std::ios::app) << "torn rec";
        ::raise(SIGKILL);
        return 0;
    });
    EXPECT_EQ(child.exitCode(), -1);
    EXPECT_EQ(folder.read("log.txt"), "first\ntorn rec");
    out.write("second\n", 7);
    EXPECT_EQ(folder.read("log.txt"), "first\nsecond\n");
}

TEST(FileSharing, aBracketKeepsOthersOut)
{
    const TemporaryFolder folder;
    const String path = folder.file(u"\u00FCnic\u00F6de \u65E5\u672C.txt");
    FileOutputStream out(path, FileOutputStream::LOCK | FileOutputStream::ATEND);
    SharedPage<std::atomic<bool>> begun;
    out.wait();
    out.write("one ", 4);
    ForkedChild other([&] {
        FileOutputStream next(path, FileOutputStream::LOCK | FileOutputStream::ATEND);
        *begun = true;
        next.write("three", 5);
        return 0;
    });
    ASSERT_TRUE(awaitTrue([&] { return begun->load(); }));
    for (int i = 0; i < 1000; ++i) std::this_thread::yield();
    out.write("two ", 4);
    out.signal();
    EXPECT_EQ(other.exitCode(), 0);
    std::ifstream in(folder.path() / std::u16string(path.getData()), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "one two three");
}

} // namespace
} // namespace orv::io::test
