#include "orv/util/RegistryKey.h"

#include "bench/common/Case.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

#if __has_include(<sqlite3.h>)
#include <sqlite3.h>
#endif
#if __has_include(<QSettings>)
#include <QSettings>
#include <QString>
#endif

// A store of 1,000 keys with 10 values each: values read in a mixed order, and single values
// written, each a transaction of its own. "durable" writes reach the disk, as the library's do by
// default; "process" writes reach the kernel, as with ORV_FLUSH=process.

namespace orv::bench {
namespace {

constexpr int KEYS = 1000;
constexpr int VALUES = 10;

std::string keyName(int key)
{
    return "set" + std::to_string(key);
}

std::string valueName(int value)
{
    return "parameter" + std::to_string(value);
}

std::string content(int key, int value)
{
    return "value of " + std::to_string(key * 7919 % 10007) + " and " + std::to_string(value);
}

/// What is asked for, in a fixed mixed order.
struct Probe {
    std::string key, value, content, other;
};

const Probe& probe(std::size_t i)
{
    static const std::vector<Probe> probes = [] {
        std::vector<Probe> made;
        std::uint32_t random = 5;
        for (int n = 0; n < 1024; ++n) {
            random = random * 1664525u + 1013904223u;
            const int key = static_cast<int>((random >> 8) % KEYS);
            const int value = static_cast<int>((random >> 20) % VALUES);
            const std::string text = content(key, value);
            made.push_back({keyName(key), valueName(value), text, text + "!"});
        }
        return made;
    }();
    return probes[i & 1023];
}

template <class Set>
void fill(Set set)
{
    for (int key = 0; key < KEYS; ++key) {
        for (int value = 0; value < VALUES; ++value) {
            set(keyName(key), valueName(value), content(key, value));
        }
    }
}

std::string freshStore(const char* owner)
{
    const std::string file = dataFolder() + "/orv_bench_" + owner + ".db";
    for (const char* tail : {"", "-wal", "-shm"}) ::unlink((file + tail).c_str());
    return file;
}

/// Whether pass `i` over the probes writes the other content: writing what is there costs nothing.
bool isOdd(std::size_t i)
{
    return ((i - 1) >> 10) % 2 == 0;
}

/// The library's store in a file of its own.
class OrvStore {
public:
    explicit OrvStore(bool durable) : m_file(freshStore("orvcl"))
    {
        ::setenv("ORV_REGISTRY", m_file.c_str(), 1);
        ::setenv("ORV_FLUSH", "process", 1);
        const util::RegistryKey root(u"ORV_HKEY_USER");
        fill([&](const std::string& key, const std::string& value, const std::string& text) {
            root.getSubkey(key.c_str()).setValue(value.c_str(), String(text.c_str()));
        });
        if (!durable) return;
        // The store looks at the variable when it is opened.
        ::setenv("ORV_REGISTRY", "/nowhere", 1);
        root.valueExists(u"");
        ::unsetenv("ORV_FLUSH");
        ::setenv("ORV_REGISTRY", m_file.c_str(), 1);
    }
    OrvStore(const OrvStore&) = delete;
    OrvStore& operator=(const OrvStore&) = delete;
    ~OrvStore()
    {
        ::unsetenv("ORV_FLUSH");
        freshStore("orvcl");
    }

private:
    std::string m_file;
};

struct OrvProbe {
    util::RegistryKey key;
    String value, content, other;
};

const OrvProbe& orvProbe(std::size_t i)
{
    static const std::vector<OrvProbe> probes = [] {
        std::vector<OrvProbe> made;
        for (std::size_t n = 0; n < 1024; ++n) {
            const Probe& from = probe(n);
            made.push_back({util::RegistryKey(ORV_HKEY_USER, from.key.c_str()), from.value.c_str(),
                            from.content.c_str(), (from.content + "!").c_str()});
        }
        return made;
    }();
    return probes[i & 1023];
}

void orvSet(benchmark::State& state, bool durable)
{
    const OrvStore store(durable);
    std::size_t i = 0;
    for (auto _ : state) {
        const OrvProbe& next = orvProbe(i++);
        next.key.setValue(next.value, isOdd(i) ? next.other : next.content);
    }
}

void addOrv()
{
    addCase("store_get/of_10000", LIBRARY, [](benchmark::State& state) {
        const OrvStore store(true);
        std::size_t i = 0;
        for (auto _ : state) {
            const OrvProbe& next = orvProbe(i++);
            const String text = next.key.getValueString(next.value);
            if (text.getLength() != next.content.getLength()) state.SkipWithError("wrong");
        }
    });
    addCase("store_set/durable", LIBRARY, [](benchmark::State& state) {
        orvSet(state, true);
    })->UseRealTime();
    addCase("store_set/process", LIBRARY, [](benchmark::State& state) {
        orvSet(state, false);
    })->UseRealTime();
}

#if __has_include(<sqlite3.h>)
/// One connection, prepared statements, each set a transaction of its own.
class SqliteStore {
public:
    explicit SqliteStore(const char* synchronous)
    {
        sqlite3_open(freshStore("sqlite").c_str(), &m_database);
        run("PRAGMA journal_mode=WAL");
        run((std::string("PRAGMA synchronous=") + synchronous).c_str());
        run("CREATE TABLE store(path TEXT NOT NULL, name TEXT NOT NULL, type INTEGER, value BLOB, "
            "PRIMARY KEY(path, name)) WITHOUT ROWID");
        prepare("INSERT OR REPLACE INTO store VALUES(?1, ?2, 0, ?3)", &m_set);
        prepare("SELECT value FROM store WHERE path=?1 AND name=?2", &m_get);
        run("BEGIN");
        fill([&](const std::string& key, const std::string& value, const std::string& text) {
            set(key, value, text);
        });
        run("COMMIT");
    }
    SqliteStore(const SqliteStore&) = delete;
    SqliteStore& operator=(const SqliteStore&) = delete;
    ~SqliteStore()
    {
        sqlite3_finalize(m_set);
        sqlite3_finalize(m_get);
        sqlite3_close(m_database);
        freshStore("sqlite");
    }

    bool set(const std::string& key, const std::string& value, const std::string& text)
    {
        bind(m_set, 1, key);
        bind(m_set, 2, value);
        bind(m_set, 3, text);
        const bool done = sqlite3_step(m_set) == SQLITE_DONE;
        sqlite3_reset(m_set);
        return done;
    }
    std::string get(const std::string& key, const std::string& value)
    {
        bind(m_get, 1, key);
        bind(m_get, 2, value);
        std::string text;
        if (sqlite3_step(m_get) == SQLITE_ROW) {
            text.assign(static_cast<const char*>(sqlite3_column_blob(m_get, 0)),
                        static_cast<std::size_t>(sqlite3_column_bytes(m_get, 0)));
        }
        sqlite3_reset(m_get);
        return text;
    }

private:
    void run(const char* sql) { sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr); }
    void prepare(const char* sql, sqlite3_stmt** out)
    {
        sqlite3_prepare_v2(m_database, sql, -1, out, nullptr);
    }
    static void bind(sqlite3_stmt* statement, int index, const std::string& text)
    {
        sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_set = nullptr;
    sqlite3_stmt* m_get = nullptr;
};

void addSqliteSet(const char* kind, const char* synchronous)
{
    addCase(std::string("store_set/") + kind, "sqlite", [synchronous](benchmark::State& state) {
        SqliteStore store(synchronous);
        std::size_t i = 0;
        for (auto _ : state) {
            const Probe& next = probe(i++);
            const std::string& text = isOdd(i) ? next.other : next.content;
            if (!store.set(next.key, next.value, text)) state.SkipWithError("not set");
        }
    })->UseRealTime();
}

void addSqlite()
{
    addCase("store_get/of_10000", "sqlite", [](benchmark::State& state) {
        SqliteStore store("FULL");
        std::size_t i = 0;
        for (auto _ : state) {
            const Probe& next = probe(i++);
            if (store.get(next.key, next.value).size() != next.content.size()) {
                state.SkipWithError("wrong");
            }
        }
    });
    addSqliteSet("durable", "FULL");
    addSqliteSet("process", "NORMAL");
}
#endif

#if __has_include(<QSettings>)
void addQt()
{
    addCase("store_get/of_10000", "qt", [](benchmark::State& state) {
        QSettings store(QString::fromStdString(freshStore("qt")), QSettings::IniFormat);
        fill([&](const std::string& key, const std::string& value, const std::string& text) {
            store.setValue(QString::fromStdString(key + "/" + value), QString::fromStdString(text));
        });
        std::vector<QString> names;
        for (std::size_t i = 0; i < 1024; ++i) {
            names.push_back(QString::fromStdString(probe(i).key + "/" + probe(i).value));
        }
        std::size_t i = 0;
        for (auto _ : state) {
            const QString text = store.value(names[i++ & 1023]).toString();
            benchmark::DoNotOptimize(text.size());
        }
    });
}
#endif

const bool registered = [] {
    addOrv();
#if __has_include(<sqlite3.h>)
    addSqlite();
#endif
#if __has_include(<QSettings>)
    addQt();
#endif
    return true;
}();

} // namespace
} // namespace orv::bench
