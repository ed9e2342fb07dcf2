#include "platform/orvcore.h"

#include "tests/support/Processes.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

constexpr ORVResult notFound = ORVMakeResult(0x80070002u);
constexpr ORVResult accessDenied = ORVMakeResult(0x80070005u);
constexpr ORVResult tooSmall = ORVMakeResult(0x80004009u);
constexpr ORVResult nameTooLong = ORVMakeResult(0x800700CEu);
constexpr ORVResult noMoreItems = ORVMakeResult(0x80070103u);
constexpr ORVResult damaged = ORVMakeResult(0x800703F1u);
constexpr std::uint32_t BINARY = 3;

ORVResult set(const std::u16string& path, const std::u16string& name, const std::string& bytes,
              ENUM_ORV_HKEY root = ORV_HKEY_USER)
{
    return ORVRegistrySetValue(root, path.c_str(), name.c_str(), BINARY, bytes.data(),
                               static_cast<std::uint32_t>(bytes.size()));
}

/// The value, or "result" and its number.
std::string get(const std::u16string& path, const std::u16string& name,
                ENUM_ORV_HKEY root = ORV_HKEY_USER)
{
    std::string bytes(1 << 17, '?');
    auto size = static_cast<std::uint32_t>(bytes.size());
    const ORVResult result =
        ORVRegistryGetValue(root, path.c_str(), name.c_str(), nullptr, bytes.data(), &size);
    return result < 0 ? "result " + std::to_string(result & 0xFFFF) : bytes.substr(0, size);
}

const std::string missing = "result 2";

/// The number that a RegistryChild has set last, 0 when there is none.
std::uint64_t lastOf(const std::u16string& path)
{
    std::uint64_t last = 0;
    const std::string bytes = get(path, u"last");
    if (bytes.size() == sizeof last) std::memcpy(&last, bytes.data(), sizeof last);
    return last;
}

/// The names that an enumeration of keys or values gives from here on.
template <class Next>
std::vector<std::u16string> rest(Next next)
{
    std::vector<std::u16string> names;
    char16_t name[255];
    for (std::uint32_t length = 255; next(name, &length) == S_OK; length = 255) {
        names.emplace_back(name, length);
        EXPECT_EQ(name[length], 0);
    }
    return names;
}

std::vector<std::u16string> keysOf(const std::u16string& path)
{
    ORVHandle handle = ORV_NO_HANDLE;
    if (ORVRegistryOpenKeyEnum(ORV_HKEY_USER, path.c_str(), &handle) < 0) return {u"none"};
    auto names = rest([&](char16_t* name, std::uint32_t* length) {
        return ORVRegistryEnumNextKey(handle, name, length);
    });
    ORVRegistryCloseEnum(handle);
    return names;
}

using Names = std::vector<std::u16string>;

/// A store of the test's own.
class Registry : public testing::Test {
protected:
    orv::test::TemporaryFolder m_home;
    const std::filesystem::path m_folder = m_home.path();
    const std::filesystem::path m_file = m_folder / "store.db";
    orv::test::ScopedVariable m_variable{"ORV_REGISTRY", m_file.c_str()};
};

/// A RegistryChild that works for the test.
class Writer {
public:
    Writer(const std::string& key, int count)
        : m_output(::popen(
              ("exec '" ORV_REGISTRY_CHILD "' '" + key + "' " + std::to_string(count)).c_str(),
              "r")),
          m_id(static_cast<pid_t>(next()))
    {
    }
    ~Writer()
    {
        if (m_output != nullptr) join();
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// The next number that the child tells, 0 at its end.
    std::uint64_t next()
    {
        std::uint64_t number = 0;
        return std::fread(&number, sizeof number, 1, m_output) == 1 ? number : 0;
    }
    void kill() const { ::kill(m_id, SIGKILL); }
    /// Its exit status, or the signal that ended it.
    int join()
    {
        while (next() != 0) {
        }
        return ::pclose(std::exchange(m_output, nullptr));
    }

private:
    std::FILE* m_output;
    pid_t m_id;
};

TEST_F(Registry, keepsValuesOfEverySize)
{
    for (const std::uint32_t size : {0u, 1u, 4u, 510u, 511u, 1023u, 1024u, 1025u, 65535u, 65536u}) {
        std::string bytes(size, '\0');
        for (std::uint32_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + size);
        ASSERT_EQ(set(u"sizes", u"v", bytes), S_OK) << size;
        std::string room(size + 1, '?');
        std::uint32_t told = size;
        std::uint32_t type = 77;
        EXPECT_EQ(ORVRegistryGetValue(ORV_HKEY_USER, u"sizes", u"v", &type, room.data(), &told),
                  S_OK);
        EXPECT_EQ(type, BINARY);
        EXPECT_EQ(room, bytes + "?") << "not a byte more";
        if (size == 0) continue;
        room.assign(size, '!');
        told = size - 1;
        EXPECT_EQ(ORVRegistryGetValue(ORV_HKEY_USER, u"sizes", u"v", nullptr, room.data(), &told),
                  tooSmall);
        EXPECT_EQ(told, size);
        EXPECT_EQ(room, std::string(size, '!'));
    }
}

TEST_F(Registry, findsNamesInAnyCaseAndKeepsThemAsWritten)
{
    const std::u16string odd = u"a/b \u00C4\u0416\xD83D\xDE00 \xD800";
    ASSERT_EQ(set(u"\\Soft\\\\" + odd, u"Gr\u00D6\u00DFe", "1"), S_OK);
    EXPECT_EQ(get(u"soft\\" + odd + u"\\", u"gR\u00F6\u00DFE"), "1");
    EXPECT_EQ(set(u"SOFT\\a/B \u00E4\u0436\xD83D\xDE00 \xD800", u"GR\u00D6\u00DFE", "2"), S_OK);
    EXPECT_EQ(get(u"\\Soft\\" + odd, u"Gr\u00D6\u00DFe"), "2");
    EXPECT_EQ(keysOf(u""), Names{u"Soft"});
    EXPECT_EQ(keysOf(u"sofT"), Names{odd});

    EXPECT_EQ(get(u"soft", u""), missing);
    EXPECT_EQ(ORVRegistrySetValue(ORV_HKEY_USER, u"soft", nullptr, BINARY, "d", 1), S_OK);
    EXPECT_EQ(get(u"soft", u""), "d") << "the default value";
    EXPECT_EQ(set(u"", u"of the root", "r"), S_OK);
    EXPECT_EQ(get(u"\\", u"OF THE ROOT"), "r");
    for (const auto root :
         {ORV_HKEY_CLASSES_32, ORV_HKEY_CONFIG_32, ORV_HKEY_CLASSES_64, ORV_HKEY_CONFIG_64}) {
        EXPECT_EQ(get(u"soft", u"", root), missing) << root;
    }
}

TEST_F(Registry, deletesAKeyWithAllBelowAndNothingBeside)
{
    for (const char16_t* key : {u"a", u"a\\b", u"a\\b\\c", u"a b", u"a]", u"a[", u"ab", u"b\\a"}) {
        ASSERT_EQ(set(key, u"v", "x"), S_OK);
    }
    EXPECT_EQ(ORVRegistryDeleteKey(ORV_HKEY_USER, u"A"), S_OK);
    EXPECT_EQ(ORVRegistryDeleteKey(ORV_HKEY_USER, u"a"), notFound);
    EXPECT_EQ(keysOf(u""), (Names{u"a b", u"a[", u"a]", u"ab", u"b"}));
    for (const char16_t* key : {u"a", u"a\\b", u"a\\b\\c"}) EXPECT_EQ(get(key, u"v"), missing);
    for (const char16_t* key : {u"a b", u"a]", u"ab", u"b\\a"}) EXPECT_EQ(get(key, u"v"), "x");
    set(u"a\\b", u"w", "new");
    EXPECT_EQ(get(u"a\\b", u"v"), missing) << "nothing comes back";

    EXPECT_EQ(ORVRegistryDeleteValue(ORV_HKEY_USER, u"ab", u"V"), S_OK);
    EXPECT_EQ(ORVRegistryDeleteValue(ORV_HKEY_USER, u"ab", u"v"), notFound);
    EXPECT_EQ(keysOf(u"ab"), Names{}) << "the key stays";
    EXPECT_EQ(ORVRegistryDeleteKey(ORV_HKEY_USER, u"\\"), accessDenied) << "a root stays";
}

TEST_F(Registry, enumeratesASnapshotInOrder)
{
    EXPECT_EQ(keysOf(u""), Names{}) << "a root is there without a file";
    EXPECT_EQ(keysOf(u"k"), Names{u"none"});
    for (const char16_t* name : {u"beta", u"Alpha", u"\uFF21", u"\xD83D\xDE00", u"alpha2", u""}) {
        set(u"k", name, std::string(600, 'z'));
    }
    ORVHandle handle = 0;
    ASSERT_EQ(ORVRegistryOpenValueEnum(ORV_HKEY_USER, u"k", &handle), S_OK);
    ORVRegistryDeleteKey(ORV_HKEY_USER, u"k");
    char16_t name[255];
    char data[510];
    std::uint32_t length = 255;
    std::uint32_t type = 0;
    std::uint32_t size = 510;
    EXPECT_EQ(ORVRegistryEnumNextValue(handle, name, &length, &type, data, &size), S_OK);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(type, BINARY);
    EXPECT_EQ(size, 600u) << "cut, and told in full";
    EXPECT_EQ(std::string(data, 510), std::string(510, 'z'));
    length = 5;
    EXPECT_EQ(ORVRegistryEnumNextValue(handle, name, &length, nullptr, nullptr, nullptr), tooSmall);
    EXPECT_EQ(length, 5u);
    EXPECT_EQ(rest([&](char16_t* to, std::uint32_t* room) {
                  return ORVRegistryEnumNextValue(handle, to, room, nullptr, nullptr, nullptr);
              }),
              (Names{u"Alpha", u"alpha2", u"beta", u"\xD83D\xDE00", u"\uFF21"}));
    length = 255;
    EXPECT_EQ(ORVRegistryEnumNextKey(handle, name, &length), noMoreItems);
    EXPECT_EQ(ORVRegistryCloseEnum(handle), S_OK);
}

TEST_F(Registry, refusesWhatItCannotKeep)
{
    const std::u16string most(254, u'n');
    std::u16string deep;
    for (int i = 0; i < 500; ++i) deep += u"\\level" + most.substr(0, 10);
    EXPECT_EQ(set(most + u"\\" + most, most, "x"), S_OK);
    EXPECT_EQ(keysOf(most), Names{most});
    EXPECT_EQ(set(deep, u"v", "x"), S_OK);
    EXPECT_EQ(get(deep, u"v"), "x");
    EXPECT_EQ(set(most + u"n", u"v", "x"), nameTooLong);
    EXPECT_EQ(set(u"k", most + u"n", "x"), nameTooLong);
    EXPECT_EQ(set(u"k", u"v", "x", static_cast<ENUM_ORV_HKEY>(5)), E_INVALIDARG);
    using Row = std::tuple<std::uint32_t, std::uint32_t, ORVResult>;
    for (const auto& [type, size, result] :
         {Row{0, 3, S_OK}, Row{1, 3, E_INVALIDARG}, Row{1, 4, S_OK}, Row{2, 4, E_INVALIDARG},
          Row{2, 8, S_OK}, Row{4, 4, E_INVALIDARG}}) {
        EXPECT_EQ(ORVRegistrySetValue(ORV_HKEY_USER, u"k", u"v", type, "12345678", size), result)
            << type;
    }
}

TEST_F(Registry, liesWhereTheEnvironmentSays)
{
    const orv::test::ScopedVariable home("HOME", (m_folder / "home").c_str());
    orv::test::ScopedVariable config("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(get(u"k", u"v"), missing);
    EXPECT_FALSE(std::filesystem::exists(m_file)) << "asking makes no file";
    set(u"k", u"v", "given");
    struct stat status {};
    ::stat(m_file.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0600u);

    m_variable.set("");
    set(u"k", u"v", "home");
    EXPECT_TRUE(std::filesystem::exists(m_folder / "home/.config/orv/registry.db"));
    config.set((m_folder / "xdg").c_str());
    set(u"k", u"v", "xdg");
    EXPECT_TRUE(std::filesystem::exists(m_folder / "xdg/orv/registry.db"));
    EXPECT_EQ(get(u"k", u"v"), "xdg");
    m_variable.set(m_file.c_str());
    EXPECT_EQ(get(u"k", u"v"), "given");

    std::filesystem::rename(m_file, m_folder / "away.db");
    EXPECT_EQ(get(u"k", u"v"), missing);
    EXPECT_EQ(set(u"k", u"v", "anew"), S_OK);
    EXPECT_EQ(get(u"k", u"v"), "anew");
    m_variable.set("/no/such/folder/store.db");
    EXPECT_EQ(set(u"k", u"v", "x"), notFound);
}

TEST_F(Registry, leavesAFileAloneThatIsNotItsOwn)
{
    const auto otherDatabase = [&](const char* sql) {
        sqlite3* database = nullptr;
        sqlite3_open(m_file.c_str(), &database);
        sqlite3_exec(database, sql, nullptr, nullptr, nullptr);
        sqlite3_close(database);
    };
    using Row = std::tuple<const char*, std::function<void()>, ORVResult>;
    for (const auto& [what, make, result] : {
             Row{"rubbish", [&] { m_home.write("store.db", std::string(20'000, 'r')); }, damaged},
             Row{"a foreign database", [&] { otherDatabase("CREATE TABLE t(x)"); }, damaged},
             Row{"of a newer library",
                 [&] {
                     set(u"k", u"v", "x");
                     m_variable.set("");
                     get(u"k", u"v");
                     m_variable.set(m_file.c_str());
                     otherDatabase("PRAGMA user_version=2");
                 },
                 ORVMakeResult(0x8007051Au)},
             Row{"a folder", [&] { std::filesystem::create_directory(m_file); }, accessDenied},
         }) {
        for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
            std::filesystem::remove_all(entry);
        }
        make();
        const auto content = [&] {
            return std::filesystem::is_directory(m_file) ? "" : m_home.read("store.db");
        };
        const std::string before = content();
        std::uint32_t size = 0;
        EXPECT_EQ(ORVRegistryGetValue(ORV_HKEY_USER, u"k", u"v", nullptr, nullptr, &size), result)
            << what;
        EXPECT_EQ(set(u"k", u"v", "y"), result) << what;
        EXPECT_EQ(keysOf(u"k"), Names{u"none"}) << what;
        EXPECT_EQ(content(), before) << what;
    }
}

TEST_F(Registry, takesAValueOfNoTypeForDamage)
{
    ASSERT_EQ(set(u"k", u"v", "123"), S_OK);
    for (const char* damage : {"UPDATE entries SET type=4", "UPDATE entries SET type=1"}) {
        sqlite3* database = nullptr;
        sqlite3_open(m_file.c_str(), &database);
        sqlite3_exec(database, damage, nullptr, nullptr, nullptr);
        sqlite3_close(database);
        EXPECT_EQ(get(u"k", u"v"), "result 1009");
    }
    EXPECT_EQ(set(u"k", u"v", "new"), S_OK);
    EXPECT_EQ(get(u"k", u"v"), "new");
}

TEST_F(Registry, keepsWhatItHasWhenTheDiskIsFull)
{
    ASSERT_EQ(set(u"k", u"v", "before"), S_OK);
    ::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little{1 << 16, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &little);
    const ORVResult result = set(u"k", u"v", std::string(1 << 18, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_LT(result, 0);
    EXPECT_EQ(get(u"k", u"v"), "before");
    EXPECT_EQ(set(u"k", u"v", "after"), S_OK);
    EXPECT_EQ(get(u"k", u"v"), "after");
}

TEST_F(Registry, isSharedByThreadsAndProcesses)
{
    // All begin at a store that is not there, and are not held up by the disk.
    const orv::test::ScopedVariable flush("ORV_FLUSH", "process");
    {
        std::vector<std::unique_ptr<Writer>> writers;
        for (const char* key : {"p\\1", "p\\2", "p\\1\\sub"}) {
            writers.push_back(std::make_unique<Writer>(key, 60));
        }
        std::vector<std::thread> threads;
        for (char16_t id = u'a'; id < u'g'; ++id) {
            threads.emplace_back([id] {
                for (int i = 0; i < 30; ++i) {
                    const std::string text = std::to_string(i);
                    EXPECT_EQ(set(u"threads", {id}, text), S_OK);
                    EXPECT_EQ(get(u"threads", {id}), text);
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
        for (const auto& writer : writers) EXPECT_EQ(writer->join(), 0);
    }
    EXPECT_EQ(keysOf(u"p"), (Names{u"1", u"2"}));
    for (const char16_t* key : {u"p\\1", u"p\\2", u"p\\1\\sub"}) EXPECT_EQ(lastOf(key), 60u);
}

TEST_F(Registry, readsAnewWhatAnotherProcessHasChanged)
{
    const orv::test::ScopedVariable flush("ORV_FLUSH", "process");
    EXPECT_EQ(set(u"live", u"other", "kept"), S_OK);
    EXPECT_EQ(get(u"live", u"last"), missing);
    Writer writer("live", 300);
    while (const std::uint64_t told = writer.next()) {
        for (int again = 0; again < 3; ++again) ASSERT_GE(lastOf(u"live"), told);
        ASSERT_EQ(get(u"live", u"other"), "kept");
    }
    EXPECT_EQ(writer.join(), 0);
    EXPECT_EQ(lastOf(u"live"), 300u);
    std::thread([] { EXPECT_EQ(ORVRegistryDeleteKey(ORV_HKEY_USER, u"live"), S_OK); }).join();
    EXPECT_EQ(get(u"live", u"other"), missing);
}

TEST_F(Registry, losesNothingToAKilledProcess)
{
    std::mt19937 random(17);
    for (int round = 0; round < 200; ++round) {
        Writer writer("killed", 0);
        std::uint64_t told = 0;
        for (std::uint64_t n = random() % 6; n > 0; --n) told = writer.next();
        if (round % 2 == 0) std::this_thread::yield();
        writer.kill();
        while (const std::uint64_t number = writer.next()) told = number;
        EXPECT_EQ(writer.join(), SIGKILL);
        if (told == 0) continue;
        const std::uint64_t kept = lastOf(u"killed");
        ASSERT_TRUE(kept == told || kept == told + 1) << kept << " after " << told;
        ASSERT_EQ(set(u"killed", u"parent", "writes too"), S_OK);
    }
}

TEST_F(Registry, isNotForAForkedChild)
{
    set(u"k", u"v", "parent");
    orv::test::ForkedChild child([] { return get(u"k", u"v") == "result 50" ? 7 : 1; });
    EXPECT_EQ(child.exitCode(), 7);
    EXPECT_EQ(get(u"k", u"v"), "parent");
}

} // namespace
