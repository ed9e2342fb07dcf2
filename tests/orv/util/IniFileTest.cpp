#include "orv/util/IniFile.h"

#include "orv/ipc/Semaphore.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "orv/util/IniFileException.h"
#include "orv/util/IniFileIterators.h"

#include "tests/support/Processes.h"
#include "tests/support/ScopedVariable.h"
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
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <sys/resource.h>

namespace orv::util {
namespace {

using namespace std::string_literals;

/// A value of up to 600 units, "(none)" where there is no such key.
std::u16string lookUp(IniFile& file, const char16_t* set, const char16_t* key)
{
    char16_t value[600] = u"(none)";
    file.GetValue(set, key, value, 600);
    return value;
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
            text += test::readable(test::units(key)) + "=" +
                    test::readable(lookUp(file, set.getData(), key.getData())) + ";";
        }
    }
    return text;
}

class IniFiles : public testing::Test {
protected:
    IniFile open(std::int16_t mustExist = 0, const char* lock = nullptr) const
    {
        return {m_file.u16string().c_str(), lock, mustExist};
    }
    IniFile openText(std::string_view text, const char* lock = nullptr) const
    {
        m_folder.write("a.ini", text);
        return open(1, lock);
    }
    std::string saved() const { return m_folder.read("a.ini"); }

    /// Writes as another process would, some seconds later.
    void writeLater(std::string_view text, int seconds) const
    {
        const auto before = std::filesystem::last_write_time(m_file);
        m_folder.write("a.ini", text);
        std::filesystem::last_write_time(m_file, before + std::chrono::seconds(seconds));
    }

    test::ScopedVariable m_encoding{"ORV_ENCODING", "UTF-8"};
    test::TemporaryFolder m_folder;
    const std::filesystem::path m_file = m_folder.path() / "a.ini";
    const std::string m_lock = test::uniqueName();
};

/// The type of an IniFileException and its description.
using Refused = std::pair<int, String>;

template <class Call>
Refused refusalOf(Call call)
{
    try {
        call();
    } catch (const IniFileException& refusal) {
        return {refusal.GetType(), refusal.getDescription()};
    }
    return {-1, u"not refused"};
}

// The tests of the command have the other cases of the form, with what a save makes of them.
TEST_F(IniFiles, readTheirLinesAsTheFormSays)
{
    const std::string v507(507, 'v'); // "k=", these and a line feed are the longest line
    const std::pair<std::string, std::string> rows[] = {
        {"[a]\nk=v\r\n[b]\r\n\r\nm=w\r\n", "[a]k=v;[b]m=w;"},
        {"x=1\n[a]\ny=2\n[A]\nn=3\n[b]\nm=1\n", "[a]n=3;[b]m=1;"},
        {"[broken\n[a]\nk=v\n", ""},
        {"[a]\nk=1\n[B]\n[A]\nKEY=1\nkey=2\n", "[B][a]KEY=2;"},
        {"[a]\nKEY=1\n[b]\nkey=2\n", "[a]KEY=1;[b]key=2;"},
        {"[]\nk=1\n[a]\n", "[]k=1;[a]"},
        {"[a]\nk=1\n[]\nm=2\n", "[a]k=1;"},
        {"[a]b] rest\n[ a ]\nk=1\n", "[ a ]k=1;[a]b]"},
        {"[a]\n#x=1\n;x=2\n:x=3\n\n k=1\n\tk=2\n\vk=3\n\fk=4\nm=5\n", "[a]m=5;"},
        {"[a]\n=x\nk=\n \t=1\nb = \t a = # ;b\v \t\n", "[a]=x;b=a = # ;b\\u000b;k=;"},
        {"\xEF\xBB\xBF[a]\nk=\xC3\xA4\n", "[a]k=\\u00e4;"},
        {"[a]\n\xEF\xBB\xBF#x=1\n\xEF\xBB\xBFk=1\n", "[a]k=1;"},
        {"[a]\n\xEF\xBB\xBF\n\xEF\xBB\xBF", "[a]"},
        {"[a]\n\xEF\xBB=1\nm=2\n", "[a]m=2;\\ufffd\\ufffd=1;"},
        {"[a]\nk=v\xF0\x9F\x98\x80", "[a]k=v\\ud83d;"},
        {"[a]\nk=12\0x\nm=1\n\0rest\nn=2\n"s, "[a]k=1;m=1;n=2;"},
        {"[a]\nk=1\n\xEF\xBB\0\nm=2\n"s, "[a]k=1;"},
        {"[a]\nk=" + v507 + "\nm=1\n", "[a]k=" + v507 + ";m=1;"},
        {"[a]\nk=" + v507 + "vm=1\nn=2\n", "[a]k=" + v507 + ";m=1;n=2;"},
        {"[a]\nk=" + v507 + "v[b]\nn=2\n", "[a]k=" + v507 + ";[b]n=2;"},
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
        std::u16string buffer(10, u'-');
        const Result result = room > 5 ? S_OK : E_BUFFER_TOO_SMALL;
        EXPECT_EQ(file.GetValue(u"A", u"K", buffer.data(), room), result) << room;
        const std::u16string copied = u"value\0"s.substr(0, room);
        EXPECT_EQ(buffer, copied + std::u16string(10 - copied.size(), u'-')) << room;
    }
    EXPECT_EQ(file.GetValue(u"a", u"x", nullptr, 0), E_NOT_FOUND);
    EXPECT_EQ(lookUp(file, u"a", u"e"), u"");
}

TEST_F(IniFiles, cutWhatIsTooLongAtAWholeCharacter)
{
    String set(u'x', 257), text(u'x', 253);
    set.append(u"ä!");
    text.append(u"\U0001F600");
    IniFile file = open();
    file.AddKey(set.getData(), text.getData(), text.getData(), false);
    file.AddKey(u"y", u"\xD800z", String(u'z', 255).getData(), false);
    const std::string x253(253, 'x');
    EXPECT_EQ(saved(), "[" + x253 + "xxxx\xC3\xA4]\n" + x253 + "=" + x253 +
                           "\n\n[y]\n?z=" + std::string(254, 'z') + "\n\n");
    EXPECT_EQ(lookUp(file, set.getData(), text.getData()), test::units(text));
}

TEST_F(IniFiles, areSavedInTheDefaultEncoding)
{
    IniFile file = openText("\xEF\xBB\xBF[\xC3\xA4]\nk=\xE2\x82\xAC\n");
    m_encoding.set("CP1252");
    file.AddKey(u"ä", u"m", u"\u4E00", false);
    file.AddKey(u"a\\b", nullptr, nullptr, false);
    file.AddKey(u"_", u"x", u"1", false);
    EXPECT_EQ(saved(), "[_]\nx=1\n\n[a\\b]\n=\n\n[\xE4]\nk=\x80\nm=?\n\n");
    IniFile again = open();
    EXPECT_EQ(lookUp(again, u"Ä", u"K"), u"€");
}

// Several lookups without a change use an index by hashes. These names have one hash, and 300 are
// too many for it.
TEST_F(IniFiles, findEveryKeyAmongManyOfOneHash)
{
    for (const std::size_t count : {40u, 300u}) {
        std::string text = "[set]\n";
        std::vector<std::u16string> names(count, std::u16string(100, u'n'));
        for (std::size_t i = 0; i < count; ++i) {
            names[i][1] = static_cast<char16_t>(u'a' + i / 20);
            names[i][2] = static_cast<char16_t>(u'a' + i % 20);
            const std::string name(names[i].begin(), names[i].end());
            text += name + '=' + name.substr(1, 2) + "\n";
        }
        IniFile file = openText(text);
        for (std::size_t i = 0; i < 2 * count; ++i) {
            const std::u16string& name = names[i % count];
            EXPECT_EQ(lookUp(file, u"SET", name.c_str()), name.substr(1, 2));
        }
        EXPECT_EQ(file.DeleteKey(u"set", names[3].c_str()), S_OK);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(lookUp(file, u"set", names[3].c_str()), u"(none)");
        EXPECT_EQ(lookUp(file, u"other", names[4].c_str()), u"(none)");
    }
}

TEST_F(IniFiles, areReadAgainOnlyWhenTheirSecondIsLater)
{
    IniFile file = openText("[a]\nk=1\n");
    const auto valueAfter = [&](const char* value, int seconds) {
        writeLater("[a]\nk="s + value + "\n", seconds);
        return lookUp(file, u"a", u"k");
    };
    EXPECT_EQ(valueAfter("2", 0), u"2") << "the first operation always reads";
    EXPECT_EQ(valueAfter("3", 0), u"2");
    EXPECT_EQ(valueAfter("4", -5), u"2") << "now the earlier time counts";
    EXPECT_EQ(valueAfter("5", 1), u"5");
    file.AddKey(u"a", u"m", u"1", false);
    EXPECT_EQ(valueAfter("6", 0), u"5") << "its own save is known";
}

TEST_F(IniFiles, thatAreMissingAreMadeByASave)
{
    IniFile file = openText("[a]\nk=1\n");
    std::filesystem::remove(m_file);
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"1");
    EXPECT_EQ(file.AddKey(u"a", u"m", u"2", false), S_OK);
    EXPECT_EQ(saved(), "[a]\nk=1\nm=2\n\n");
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(m_file).permissions() & perms(0111), perms::none);

    // In the place of the file stands something that no file can be opened at.
    std::filesystem::remove(m_file);
    std::filesystem::create_directory(m_file);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(m_file, now + std::chrono::seconds(9));
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"(none)");
    EXPECT_EQ(file.AddKey(u"a", u"n", u"3", false), S_OK) << "kept, though it cannot be saved";
    EXPECT_EQ(contentOf(file), "[a]n=3;");
    EXPECT_THROW(IniFile(nullptr, nullptr, 1), IniFileException);
    EXPECT_EQ(refusalOf([] { IniFile(u"/no/file", nullptr, 1); }),
              Refused(IniFileException::TYPE_LOAD_FAILED, u"/no/file"));
}

TEST_F(IniFiles, withNamesOf260BytesAreNone)
{
    for (const std::size_t length : {259u, 260u}) {
        std::u16string name = m_folder.path().u16string() + u"/";
        while (length - name.size() > 100) name += u"./";
        name.resize(length, u'n');
        EXPECT_EQ(IniFile(name.c_str(), nullptr, 0).AddKey(u"a", u"k", u"v", true), S_OK);
        EXPECT_EQ(std::filesystem::exists(name), length == 259) << length;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.path()), {}), 1);
}

TEST_F(IniFiles, thatAreNoTextStayAsTheyAre)
{
    const std::string bad = "[a]\nk=\xED\xA0\x80\n";
    EXPECT_THROW(openText(bad), text::charset::InvalidCharacterException);

    IniFile file = openText("[a]\nk=1\n", m_lock.c_str());
    EXPECT_EQ(lookUp(file, u"a", u"k"), u"1");
    writeLater(bad, 2);
    EXPECT_THROW(file.AddKey(u"a", u"m", u"2", true), text::charset::InvalidCharacterException);
    EXPECT_THROW(IniFileKeyIterator(file, u"a"), text::charset::InvalidCharacterException);
    EXPECT_EQ(saved(), bad);
    EXPECT_EQ(ipc::Semaphore(m_lock.c_str(), 1).getValue(), 1) << "the semaphore was given back";
    std::filesystem::remove(m_file);
    EXPECT_EQ(contentOf(file), "[a]k=1;");

    // Opens, and fails to be read.
    EXPECT_EQ(resultOf([] { IniFile(u"/proc/self/mem", nullptr, 0); }), makeResult(0x8007001F));
}

TEST_F(IniFiles, onAFullDiskKeepTheirContentInMemory)
{
    IniFile file = openText("[a]\nk=1\n");
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto most = std::exchange(limit.rlim_cur, 50);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(file.AddKey(u"b", u"long", String(u'x', 100).getData(), true), S_OK);
    limit.rlim_cur = most;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(saved(), "[a]\nk=1\n\n[b]\nlong=" + std::string(32, 'x'));
    file.AddKey(u"a", u"m", u"2", true);
    EXPECT_EQ(saved(), "[a]\nk=1\nm=2\n\n[b]\nlong=" + std::string(100, 'x') + "\n\n");
}

TEST_F(IniFiles, areSavedByOneWriteCall)
{
    const auto writeCalls = [] {
        std::ifstream file("/proc/self/io");
        const std::string counters{std::istreambuf_iterator<char>(file), {}};
        const std::size_t place = counters.find("syscw:");
        return place == std::string::npos ? -1 : std::stol(counters.substr(place + 6));
    };
    if (writeCalls() < 0) GTEST_SKIP() << "the kernel does not count";
    std::string text = "[set]\n";
    for (int i = 0; i < 3000; ++i) text += "key" + std::to_string(i) + "=value\n";
    IniFile file = openText(text);
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
    for (int i = 0; i < 3; ++i) EXPECT_EQ(lookUp(other, u"a", u"k"), u"(none)");
    other = file;
    for (IniFile* each : {&copy, &other}) {
        std::filesystem::remove(m_file);
        EXPECT_EQ(each->DeleteKey(u"a", u"k"), S_OK);
    }
    std::filesystem::remove(m_file);
    EXPECT_EQ(contentOf(file), "[a]k=1;");
    EXPECT_EQ(contentOf(other), "[a]");
}

TEST_F(IniFiles, iterateOverTheNamesThereWere)
{
    IniFile file = openText("[b]\n[_c]\n[B\\x]\n[a]\nz=1\nY=2\nx=3\n");
    IniFileSetIterator sets(file, nullptr);
    IniFileKeyIterator keys(file, u"A");
    IniFileKeyIterator copy(keys);
    file.DeleteSet(u"a");
    for (const char16_t* name : {u"B\\x", u"_c", u"a", u"b"}) EXPECT_EQ(sets.next(), name);
    for (const char16_t* name : {u"x", u"Y", u"z"}) EXPECT_EQ(keys.next(), name);
    EXPECT_EQ(copy.next(), u"x");
    copy = keys;
    EXPECT_FALSE(copy.hasNext() || sets.hasNext());
    EXPECT_EQ(copy.getSetName(), u"A");
    for (const char16_t* name : {u"b", u"B", u"none"}) {
        EXPECT_FALSE(IniFileSetIterator(file, name).hasNext()) << "sets have none below them";
    }
    const Refused noMore(IniFileException::TYPE_NO_MORE_ELEMENTS, u"");
    EXPECT_EQ(refusalOf([&] { sets.next(); }), noMore);
    EXPECT_EQ(refusalOf([&] { keys.next(); }), noMore);
    EXPECT_EQ(refusalOf([&] { IniFileKeyIterator(file, u"c"); }),
              Refused(IniFileException::TYPE_NO_SUCH_SET, u"c"));
}

// Shared between processes and threads.

// ORV_TEST_CHANGES=1000 makes it last some minutes.
TEST_F(IniFiles, loseNothingWhenTheyAreOpenedForEachChange)
{
    constexpr int writers = 4;
    const char* const asked = std::getenv("ORV_TEST_CHANGES");
    const int changes = asked != nullptr ? std::atoi(asked) : 60;
    std::vector<std::unique_ptr<test::ForkedChild>> children;
    for (int writer = 0; writer < writers; ++writer) {
        children.push_back(std::make_unique<test::ForkedChild>([&, writer] {
            for (int change = 0; change < changes; ++change) {
                const String key = String::valueOf(writer * changes + change);
                IniFile file = open(0, m_lock.c_str());
                if (file.AddKey(u"set", key.getData(), u"value", false) != S_OK) return 1;
            }
            return 0;
        }));
    }
    for (auto& child : children) EXPECT_EQ(child->exitCode(), 0);
    const std::string left = saved();
    EXPECT_EQ(std::count(left.begin(), left.end(), '='), writers * changes);
}

// What a kill leaves is the file before the save, after it, or what a save of it begins with.
TEST_F(IniFiles, holdTheBeginningOfASaveWhenItsProcessIsKilled)
{
    std::string whole = "[set]\n";
    for (int i = 100; i < 400; ++i) whole += "k" + std::to_string(i) + "=value\n";
    whole += "\n";
    for (int turn = 0; turn < 20; ++turn) {
        m_folder.write("a.ini", whole);
        test::SharedPage<std::atomic<int>> saves;
        test::ForkedChild child([&] {
            for (IniFile file = open(0, m_lock.c_str());; ++*saves) {
                file.AddKey(u"set", u"k100", u"value", true);
            }
            return 0;
        });
        ASSERT_TRUE(test::awaitTrue([&] { return saves->load() > turn; }));
        child.kill();
        const std::string left = saved();
        EXPECT_EQ(left, whole.substr(0, left.size()));
        IniFile file = open(0, m_lock.c_str()); // in spite of who died with the semaphore
        EXPECT_EQ(file.AddKey(u"set", u"k100", u"value", true), S_OK);
    }
}

TEST_F(IniFiles, serveSeveralThreadsUnderASemaphore)
{
    IniFile file = open(0, m_lock.c_str());
    IniFile copy(file);
    const auto work = [&](int writer) {
        for (int change = 0; change < 30; ++change) {
            const String key = String::valueOf(writer * 100 + change);
            file.AddKey(u"set", key.getData(), key.getData(), true);
            for (int i = 0; i < 3; ++i) {
                EXPECT_EQ(lookUp(file, u"set", key.getData()), test::units(key));
            }
            contentOf(copy);
        }
    };
    std::thread first(work, 1), second(work, 2);
    first.join();
    second.join();
    const std::string left = saved();
    EXPECT_EQ(std::count(left.begin(), left.end(), '='), 60);
}

} // namespace
} // namespace orv::util
