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

using namespace orv::test;

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
    for (std::string line; std::getline(in, line);) {
        int writer = -1;
        unsigned number = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "%d %u", &writer, &number), 2) << line.substr(0, 80);
        ASSERT_EQ(line + "\n", record(writer, number));
        ASSERT_LE(number, next[writer]);
        ASSERT_GE(number + (writer == VICTIM ? 1 : 0), next[writer]);
        next[writer] = number + 1;
    }
    for (int writer = 1; writer < WRITERS; ++writer) {
        EXPECT_EQ(next[writer], progress.written[writer]);
    }
}

void appendWhileOneIsKilled(std::uint32_t mode, unsigned kills)
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
    for (unsigned kill = 0; kill < kills; ++kill) {
        const std::uint32_t awaited = progress->written[VICTIM] + kill % 3;
        ASSERT_TRUE(awaitTrue([&] { return progress->written[VICTIM] > awaited; }));
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
    FileOutputStream out(folder.file(u"log.txt"), FileOutputStream::APPEND);
    out.write("first\n", 6);
    // What a writer leaves that is killed within its write.
    ipc::SemaphoreR((folder.path() / "log.txt").c_str(), 1).noteFileSize(6);
    std::ofstream(folder.path() / "log.txt", std::ios::app) << "torn rec";
    out.write("second\n", 7);
    EXPECT_EQ(folder.read("log.txt"), "first\nsecond\n");
}

TEST(FileSharing, aBracketHoldsTheLockNamedAfterThePath)
{
    const TemporaryFolder folder;
    const std::u16string name(20, u'\u65E5'); // in UTF-8 much longer than in units
    const std::string lockName = (folder.path() / name).string();
    ipc::SemaphoreR same(lockName.c_str(), 1);
    FileOutputStream out(folder.file(name.c_str()), FileOutputStream::LOCK);
    out.wait();
    out.write("one ", 4);
    EXPECT_FALSE(same.tryWait());
    out.write("two", 3);
    out.signal();
    EXPECT_TRUE(same.tryWait());
    same.signal();
}

} // namespace
} // namespace orv::io::test
