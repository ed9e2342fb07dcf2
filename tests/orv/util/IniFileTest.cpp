#include "orv/util/IniFile.h"

#include "orv/ipc/Semaphore.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "orv/util/IniFileException.h"
#include "orv/util/IniFileIterators.h"

#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

namespace orv::util {
namespace {

using namespace std::string_literals;

/// A value of up to 600 units, none where there is no such key.
std::optional<std::u16string> lookUp(IniFile& file, const char16_t* set, const char16_t* key)
{
    char16_t value[600];
    if (file.GetValue(set, key, value, 600) != S_OK) return std::nullopt;
    return value;
}

std::optional<std::u16string> lookUp(IniFile&& file, const char16_t* set, const char16_t* key)
{
    return lookUp(file, set, key);
}

/// All that is in the file: "[set]key=value;key=value;[set]...", readable.
std::string contentOf(IniFile& file)
{
    std::string text;
    for (IniFileSetIterator sets(file, u""); sets.hasNext();) {
        const String set = sets.next();
        text += "[" + test::readable(test::units(set)) + "]";
        for (IniFileKeyIterator keys(file, set.getData()); keys.hasNext();) {
            const String key = keys.next();
            const auto value = lookUp(file, set.getData(), key.getData());
            text += test::readable(test::units(key)) + "=" +
                    (value ? test::readable(*value) : "(none)") + ";";
        }
    }
    return text;
}

class IniFiles : public testing::Test {
protected:
    IniFiles() { ::setenv("ORV_ENCODING", "UTF-8", 1); }
    ~IniFiles() override { ::unsetenv("ORV_ENCODING"); }

    IniFile open(std::int16_t mustExist = 0) const
    {
        return {m_folder.file(u"a.ini").getData(), nullptr, mustExist};
    }
    IniFile openText(std::string_view text) const
    {
        m_folder.write("a.ini", text);
        return open(1);
    }
    std::string saved() const { return m_folder.read("a.ini"); }

    /// Writes as another process would, some seconds later.
    void writeLater(std::string_view text, int seconds) const
    {
        const auto path = m_folder.path() / "a.ini";
        const auto before = std::filesystem::last_write_time(path);
        m_folder.write("a.ini", text);
        std::filesystem::last_write_time(path, before + std::chrono::seconds(seconds));
    }

    test::TemporaryFolder m_folder;
};

template <class Call>
void expectRefusal(int type, const char16_t* words, Call call)
{
    try {
        call();
        ADD_FAILURE() << "not refused";
    } catch (const IniFileException& refusal) {
        EXPECT_EQ(refusal.GetType(), type);
        EXPECT_EQ(refusal.getDescription(), words);
    }
}

std::string filled(std::string_view start, std::size_t size)
{
    return std::string(start) + std::string(size - start.size(), 'v');
}

TEST_F(IniFiles, readTheirLinesAsTheFormSays)
{
    const std::string line510 = filled("k=", 509) + "\n";
    const std::string piece = filled("k=", 510);
    const std::pair<std::string, std::string> rows[] = {
        {"[a]\nk=v\n", "[a]k=v;"},
        {"[a]\nk=v", "[a]k=;"},
        {"[a]\nk=v\r\n[b]\r\n\r\nm=w\r\n", "[a]k=v;[b]m=w;"},
        {"x=1\n[a]\ny=2\n", "[a]y=2;"},
        {"x=1\n", ""},
        {"[a]\nk=v\nnonsense\nz=1\n[b]\nq=1\n", "[a]k=v;"},
        {"[a]\nk=v\n[broken\nz=1\n", "[a]"},
        {"[broken\n[a]\nk=v\n", ""},
        {"[a]\nk=1\n[b]\nm=2\n[a]\nn=3\n", "[a]n=3;[b]m=2;"},
        {"[a]\nk=1\n[B]\n[A]\nKEY=1\nkey=2\n", "[B][a]KEY=2;"},
        {"[]\nk=1\n[a]\n", "[]k=1;[a]"},
        {"[a]\nk=1\n[]\nm=2\n", "[a]k=1;"},
        {"[a]b] rest\n[ a ]\nk=1\n", "[ a ]k=1;[a]b]"},
        {"[a\\b]\nk=1\n", "[a\\b]k=1;"},
        {"[a]\n#x=1\n;x=2\n:x=3\n\n k=1\n\tk=2\n\vk=3\n\fk=4\nm=5\n", "[a]m=5;"},
        {"[a]\n=x\nk=\n \t=1\nb = \t a = # ;b\v \t\n", "[a]=x;b=a = # ;b\\u000b;k=;"},
        {"\xEF\xBB\xBF[a]\nk=\xC3\xA4\n", "[a]k=\xC3\xA4;"},
        {"[a]\n\xEF\xBB\xBF#x=1\n\xEF\xBB\xBFk=1\n", "[a]k=1;"},
        {"[a]\n\xEF\xBB\xBF\n\xEF\xBB\xBF", "[a]"},
        {"[a]\n\xEF\xBB=1\nm=2\n", "[a]m=2;\xEF\xBF\xBD\xEF\xBF\xBD=1;"},
        {"[a]\nk=v\xF0\x9F\x98\x80", "[a]k=v\\ud83d;"},
        {"[a]\nk=12\0x\nm=1\n\0rest\nn=2\n"s, "[a]k=1;m=1;n=2;"},
        {"[a]\nk=1\n\xEF\xBB\0\nm=2\n"s, "[a]k=1;"},
        {"[a]\n" + line510 + "m=1\n", "[a]k=" + filled("", 507) + ";m=1;"},
        {"[a]\n" + piece + "m=1\nn=2\n", "[a]k=" + filled("", 507) + ";m=1;n=2;"},
        {"[a]\n" + piece + "[b]\nn=2\n", "[a]k=" + filled("", 507) + ";[b]n=2;"},
        {"[a]\nk=1\n" + std::string(1 << 20, 'x') + "\nm=2\n", "[a]k=1;"},
        {"[a]\n#" + std::string(1 << 20, '#') + "\nm=2\n", "[a]m=2;"},
    };
    for (const auto& [text, content] : rows) {
        IniFile file = openText(text);
        EXPECT_EQ(contentOf(file), content) << text.substr(0, 60);
    }
}

TEST_F(IniFiles, giveValuesIntoTheRoomThereIs)
{
    IniFile file = openText("[a]\nk=value\ne=\n");
    for (const std::uint64_t room : {0u, 1u, 5u, 6u, 9u}) {
        char16_t buffer[10] = u"---------";
        const Result result = file.GetValue(u"A", u"K", buffer, room);
        EXPECT_EQ(result, room > 5 ? S_OK : E_BUFFER_TOO_SMALL) << room;
        const std::u16string wanted = room > 5 ? u"value\0---"s : u"value"s.substr(0, room) + u"-";
        EXPECT_EQ(std::u16string(buffer, wanted.size()), wanted) << room;
    }
    EXPECT_EQ(file.GetValue(u"a", u"k", nullptr, 0), E_BUFFER_TOO_SMALL);
    EXPECT_EQ(file.GetValue(u"a", u"x", nullptr, 0), E_NOT_FOUND);
    EXPECT_EQ(lookUp(file, u"a", u"e"), u"");
}

TEST_F(IniFiles, cutWhatIsTooLongAtAWholeCharacter)
{
    String set(u'x', 258), text(u'x', 253);
    set.append(u"ä!");
    text.append(u"\U0001F600");
    IniFile file = open();
    EXPECT_EQ(file.AddKey(set.getData(), text.getData(), text.getData(), false), S_OK);
    EXPECT_EQ(file.AddKey(u"y", u"\xD800z", String(u'z', 255).getData(), false), S_OK);
    const std::string x253(253, 'x');
    EXPECT_EQ(saved(), "[" + x253 + "xxxxx]\n" + x253 + "=" + x253 +
                           "\n\n[y]\n?z=" + std::string(254, 'z') + "\n\n");
    EXPECT_EQ(lookUp(file, set.getData(), text.getData()), test::units(text));
    EXPECT_EQ(lookUp(file, u"y", u"\xD800z")->size(), 255u);
}

TEST_F(IniFiles, areSavedInTheDefaultEncoding)
{
    IniFile file = openText("\xEF\xBB\xBF[\xC3\xA4]\nk=\xE2\x82\xAC\n");
    ::setenv("ORV_ENCODING", "CP1252", 1);
    file.AddKey(u"ä", u"m", u"\u4E00", false);
    EXPECT_EQ(file.AddKey(u"a\\b", nullptr, nullptr, false), S_OK);
    EXPECT_EQ(file.AddKey(u"_", u"x", u"1", false), S_OK);
    EXPECT_EQ(saved(), "[_]\nx=1\n\n[a\\b]\n=\n\n[\xE4]\nk=\x80\nm=?\n\n");
    EXPECT_EQ(lookUp(open(), u"Ä", u"K"), u"€");
}

// Several lookups without a change use an index by hashes. These names have one hash, and 300 are
// too many for it.
TEST_F(IniFiles, findEveryKeyAmongManyOfOneHash)
{
    for (const int count : {40, 300}) {
        std::string text = "[set]\n";
        std::vector<std::u16string> names(std::size_t(count), std::u16string(100, u'n'));
        for (std::size_t i = 0; i < names.size(); ++i) {
            names[i][1] = static_cast<char16_t>(u'a' + i / 20);
            names[i][2] = static_cast<char16_t>(u'a' + i % 20);
            const std::string name(names[i].begin(), names[i].end());
            text += name + '=' + name.substr(1, 2) + "\n";
        }
        IniFile file = openText(text);
        for (int round = 0; round < 2; ++round) {
            for (const auto& name : names) {
                EXPECT_EQ(lookUp(file, u"SET", name.c_str()), name.substr(1, 2));
            }
        }
        EXPECT_EQ(file.DeleteKey(u"set", names[3].c_str()), S_OK);
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(lookUp(file, u"set", names[3].c_str()));
        EXPECT_FALSE(lookUp(file, u"other", names[4].c_str()));
    }
}

TEST_F(IniFiles, areReadAgainOnlyWhenTheirSecondIsLater)
{
    IniFile file = openText("[a]\nk=1\n");
    writeLater("[a]\nk=2\n", 0);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"2") << "the first operation always reads";
    writeLater("[a]\nk=3\n", 0);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"2");
    writeLater("[a]\nk=4\n", -5);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"2") << "now the earlier time counts";
    writeLater("[a]\nk=5\n", 1);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"5");
    file.AddKey(u"a", u"m", u"1", false);
    writeLater("[a]\nk=6\n", 0);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"5") << "its own save is known";
}

TEST_F(IniFiles, thatVanishLeaveTheirContent)
{
    IniFile file = openText("[a]\nk=1\n");
    std::filesystem::remove(m_folder.path() / "a.ini");
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"1");
    EXPECT_EQ(file.AddKey(u"a", u"m", u"2", false), S_OK);
    EXPECT_EQ(saved(), "[a]\nk=1\nm=2\n\n");

    // In the place of the file stands something that no file can be opened at.
    std::filesystem::remove(m_folder.path() / "a.ini");
    std::filesystem::create_directory(m_folder.path() / "a.ini");
    std::filesystem::last_write_time(m_folder.path() / "a.ini",
                                     std::filesystem::file_time_type::clock::now() +
                                         std::chrono::seconds(9));
    EXPECT_FALSE(lookUp(file, u"a", u"k"));
    EXPECT_EQ(file.AddKey(u"a", u"n", u"3", false), S_OK) << "kept, though it cannot be saved";
    EXPECT_EQ(contentOf(file), "[a]n=3;");
}

TEST_F(IniFiles, thatAreMissingMayBeRefused)
{
    IniFile missing = open();
    EXPECT_EQ(contentOf(missing), "");
    missing.AddKey(u"a", u"k", u"v", true);
    EXPECT_EQ(saved(), "[a]\nk=v\n\n");
    struct stat status {};
    ASSERT_EQ(::stat((m_folder.path() / "a.ini").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0111, 0u);

    for (const char16_t* name : {static_cast<const char16_t*>(nullptr), u"/no/file"}) {
        expectRefusal(IniFileException::TYPE_LOAD_FAILED, name == nullptr ? u"" : name,
                      [&] { IniFile(name, nullptr, 1); });
    }
}

TEST_F(IniFiles, withNamesOf260BytesAreNone)
{
    const String folder = m_folder.file(u"");
    for (const std::int32_t length : {259, 260}) {
        String name(folder);
        while (length - name.getLength() > 100) name.append(u"./");
        name.append(u'n', length - name.getLength());
        IniFile file(name.getData(), nullptr, 0);
        EXPECT_EQ(file.AddKey(u"a", u"k", u"v", true), S_OK);
        const std::filesystem::path path(std::u16string(test::units(name)));
        EXPECT_EQ(std::filesystem::exists(path), length == 259) << length;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.path()), {}), 1)
        << "no file of a shorter name";
}

TEST_F(IniFiles, thatAreNoTextStayAsTheyAre)
{
    const std::string bad = "[a]\nk=\xED\xA0\x80\n";
    EXPECT_THROW(openText(bad), text::charset::InvalidCharacterException);

    const std::string lock = test::uniqueName();
    m_folder.write("a.ini", "[a]\nk=1\n");
    IniFile file(m_folder.file(u"a.ini").getData(), lock.c_str(), 1);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"1");
    writeLater(bad, 2);
    EXPECT_THROW(file.AddKey(u"a", u"m", u"2", true), text::charset::InvalidCharacterException);
    EXPECT_THROW(IniFileKeyIterator(file, u"a"), text::charset::InvalidCharacterException);
    EXPECT_EQ(saved(), bad);
    EXPECT_EQ(ipc::Semaphore(lock.c_str(), 1).getValue(), 1) << "the semaphore was given back";
    std::filesystem::remove(m_folder.path() / "a.ini");
    EXPECT_EQ(contentOf(file), "[a]k=1;");

    // Opens, and fails to be read.
    EXPECT_EQ(resultOf([] { IniFile(u"/proc/self/mem", nullptr, 0); }), makeResult(0x8007001F));
}

TEST_F(IniFiles, onAFullDiskKeepTheirContentInMemory)
{
    IniFile file = openText("[a]\nk=1\n");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{50, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const Result result = file.AddKey(u"b", u"long", String(u'x', 100).getData(), true);
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(saved(), "[a]\nk=1\n\n[b]\nlong=" + std::string(32, 'x'));
    file.AddKey(u"a", u"m", u"2", true);
    EXPECT_EQ(saved(), "[a]\nk=1\nm=2\n\n[b]\nlong=" + std::string(100, 'x') + "\n\n");
}

TEST_F(IniFiles, areSavedByOneWriteCall)
{
    const auto writeCalls = [] {
        std::ifstream counters("/proc/self/io");
        long calls = -1;
        for (std::string word; counters >> word;) {
            if (word == "syscw:") counters >> calls;
        }
        return calls;
    };
    std::string text = "[set]\n";
    for (int i = 0; i < 3000; ++i) text += "key" + std::to_string(i) + "=value\n";
    IniFile file = openText(text);
    if (writeCalls() < 0) GTEST_SKIP() << "the kernel does not count";
    long least = LONG_MAX; // sanitizers write too, where something is new to them
    for (int i = 0; i < 4; ++i) {
        const long before = writeCalls();
        file.AddKey(u"set", u"key0", u"1", true);
        least = std::min(least, writeCalls() - before);
    }
    EXPECT_EQ(least, 1);
}

TEST_F(IniFiles, giveCopiesOfTheirOwn)
{
    IniFile file = openText("[a]\nk=1\n");
    IniFile copy(file), other(nullptr, nullptr, 0);
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(lookUp(other, u"a", u"k"));
    other = file;
    for (IniFile* each : {&copy, &other}) {
        std::filesystem::remove(m_folder.path() / "a.ini");
        EXPECT_EQ(each->DeleteKey(u"a", u"k"), S_OK);
    }
    std::filesystem::remove(m_folder.path() / "a.ini");
    EXPECT_EQ(contentOf(file), "[a]k=1;");
    EXPECT_EQ(contentOf(other), "[a]");
}

TEST_F(IniFiles, iterateOverTheNamesThereWere)
{
    IniFile file = openText("[b]\n[_c]\n[B\\x]\n[a]\nz=1\nY=2\nx=3\n");
    IniFileSetIterator sets(file, u"");
    IniFileKeyIterator keys(file, u"A");
    IniFileKeyIterator copy(keys);
    file.DeleteSet(u"a");
    for (const char16_t* name : {u"B\\x", u"_c", u"a", u"b"}) EXPECT_EQ(sets.next(), name);
    for (const char16_t* name : {u"x", u"Y", u"z"}) EXPECT_EQ(keys.next(), name);
    EXPECT_FALSE(sets.hasNext());
    EXPECT_EQ(copy.next(), u"x");
    copy = keys;
    EXPECT_FALSE(copy.hasNext());
    EXPECT_EQ(copy.getSetName(), u"A");
    for (const char16_t* name : {u"b", u"B", u"none"}) {
        EXPECT_FALSE(IniFileSetIterator(file, name).hasNext()) << "sets have none below them";
    }
    EXPECT_TRUE(IniFileSetIterator(file, nullptr).hasNext());
    expectRefusal(IniFileException::TYPE_NO_MORE_ELEMENTS, u"", [&] { sets.next(); });
    expectRefusal(IniFileException::TYPE_NO_MORE_ELEMENTS, u"", [&] { keys.next(); });
    expectRefusal(IniFileException::TYPE_NO_SUCH_SET, u"c",
                  [&] { IniFileKeyIterator(file, u"c"); });
}

// Shared between processes and threads.

std::u16string nameOf(int writer, int change)
{
    const std::string name = "k" + std::to_string(writer) + "." + std::to_string(change);
    return {name.begin(), name.end()};
}

int countOf(IniFile& file)
{
    int count = 0;
    for (IniFileKeyIterator keys(file, u"set"); keys.hasNext(); ++count) keys.next();
    return count;
}

class IniFileSharing : public testing::Test {
protected:
    IniFile open() const { return {m_path.c_str(), m_lock.c_str(), 0}; }

    test::TemporaryFolder m_folder;
    std::u16string m_path{test::units(m_folder.file(u"shared.ini"))};
    std::string m_lock = test::uniqueName();
};

// ORV_TEST_CHANGES=1000 makes it last some minutes.
TEST_F(IniFileSharing, losesNothingWhenTheFileIsOpenedForEachChange)
{
    constexpr int writers = 4;
    const char* const asked = std::getenv("ORV_TEST_CHANGES");
    const int changes = asked != nullptr ? std::atoi(asked) : 60;
    std::vector<std::unique_ptr<test::ForkedChild>> children;
    for (int writer = 0; writer < writers; ++writer) {
        children.push_back(std::make_unique<test::ForkedChild>([&, writer] {
            for (int change = 0; change < changes; ++change) {
                const std::u16string key = nameOf(writer, change);
                if (open().AddKey(u"set", key.c_str(), u"value", false) != S_OK) return 1;
            }
            return 0;
        }));
    }
    for (auto& child : children) EXPECT_EQ(child->exitCode(), 0);
    IniFile file = open();
    EXPECT_EQ(countOf(file), writers * changes);
}

// What a kill leaves is the file before the save, after it, or what a save of it begins with.
TEST_F(IniFileSharing, leavesTheBeginningOfASaveWhenItsProcessIsKilled)
{
    std::string whole = "[set]\n";
    for (int i = 100; i < 400; ++i) whole += "k" + std::to_string(i) + "=value\n";
    whole += "\n";
    for (int turn = 0; turn < 20; ++turn) {
        m_folder.write("shared.ini", whole);
        test::SharedPage<std::atomic<int>> saves;
        test::ForkedChild child([&] {
            IniFile file = open();
            for (;;) {
                file.AddKey(u"set", u"k100", u"value", true);
                ++*saves;
            }
            return 0;
        });
        ASSERT_TRUE(test::awaitTrue([&] { return saves->load() > turn; }));
        child.kill();
        const std::string left = m_folder.read("shared.ini");
        EXPECT_EQ(left, whole.substr(0, left.size()));
        EXPECT_EQ(open().AddKey(u"set", u"k100", u"value", true), S_OK);
    }
}

TEST_F(IniFileSharing, servesSeveralThreadsUnderASemaphore)
{
    IniFile file = open();
    IniFile copy(file);
    const auto work = [&](int writer) {
        for (int change = 0; change < 30; ++change) {
            const std::u16string key = nameOf(writer, change);
            file.AddKey(u"set", key.c_str(), key.c_str(), true);
            for (int i = 0; i < 3; ++i) EXPECT_EQ(lookUp(file, u"set", key.c_str()), key);
            contentOf(copy);
        }
    };
    std::thread first(work, 1);
    std::thread second(work, 2);
    first.join();
    second.join();
    EXPECT_EQ(countOf(file), 60);
}

} // namespace
} // namespace orv::util
