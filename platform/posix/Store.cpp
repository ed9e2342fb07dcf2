#include "platform/posix/internal/Store.h"

#include "platform/posix/internal/Results.h"
#include "platform/threads.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace orvcore {
namespace {

// Who finds the store busy looks again, often, since the gap between two writers is short: for a
// minute, which only a store on a very slow disk takes.
constexpr std::uint32_t lookMicroseconds = 300;
constexpr int mostLooks = 200'000;
constexpr std::uint32_t damaged = 1009;
constexpr std::uint32_t newer = 1306;

// A key stands under its parent, so that its subkeys are a row of neighbours; a value under its
// key. `name` is in folded case, `written` as it was given first.
constexpr const char* createTables =
    "BEGIN IMMEDIATE;"
    "CREATE TABLE IF NOT EXISTS keys(parent TEXT NOT NULL, name TEXT NOT NULL, written TEXT NOT "
    "NULL, PRIMARY KEY(parent, name)) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS entries(parent TEXT NOT NULL, name TEXT NOT NULL, written TEXT NOT "
    "NULL, type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY(parent, name)) WITHOUT ROWID;"
    "PRAGMA application_id=0x4F525652;"
    "PRAGMA user_version=1;"
    "COMMIT";
constexpr std::uint32_t applicationId = 0x4F525652;
constexpr std::uint32_t formatVersion = 1;

constexpr const char* statementTexts[] = {
    "SELECT type, data FROM entries WHERE parent=? AND name=?",
    "UPDATE entries SET type=?3, data=?4 WHERE parent=?1 AND name=?2",
    ("INSERT INTO entries(parent, name, type, data, written) VALUES(?1, ?2, ?3, ?4, ?5) "
     "ON CONFLICT DO UPDATE SET type=?3, data=?4"),
    "DELETE FROM entries WHERE parent=? AND name=?",
    "SELECT 1 FROM keys WHERE parent=? AND name=?",
    "INSERT INTO keys VALUES(?, ?, ?) ON CONFLICT DO NOTHING",
    "DELETE FROM keys WHERE parent=? AND name=?",
    "DELETE FROM keys WHERE parent BETWEEN ? AND ?",
    "DELETE FROM entries WHERE parent BETWEEN ? AND ?",
    "SELECT written FROM keys WHERE parent=? ORDER BY name",
    "SELECT written, type, data FROM entries WHERE parent=? ORDER BY name",
    "BEGIN IMMEDIATE",
    "COMMIT",
};
static_assert(std::size(statementTexts) == Store::statements);

ORVResult resultOf(sqlite3* database) noexcept
{
    if (database == nullptr) return E_OUTOFMEMORY;
    const int error = sqlite3_errcode(database) & 0xFF;
    const int system = sqlite3_system_errno(database);
    switch (error) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return ORVResultFromNative(EBUSY);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB: return systemResult(damaged);
    case SQLITE_FULL: return ORVResultFromNative(ENOSPC);
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH: return accessDenied;
    case SQLITE_NOMEM: return E_OUTOFMEMORY;
    case SQLITE_TOOBIG: return E_INVALIDARG;
    case SQLITE_CANTOPEN: return system == 0 ? accessDenied : ORVResultFromNative(system);
    case SQLITE_IOERR: return ORVResultFromNative(system == 0 ? EIO : system);
    default: return E_FAIL;
    }
}

/// Waits a little for other processes; says no after many such waits.
int waitForOthers(void*, int turns) noexcept
{
    napFor(lookMicroseconds);
    return turns < mostLooks ? 1 : 0;
}

/// Makes an empty file that only the user may read, unless there is a file.
void makePrivateFile(const char* file) noexcept
{
    const int descriptor = ::open(file, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor >= 0) ::close(descriptor);
}

/// What orvcore promises of a flushed file holds for a value that was set.
const char* durability() noexcept
{
    const char* const choice = std::getenv("ORV_FLUSH");
    const bool kernelOnly = choice != nullptr && std::strcmp(choice, "process") == 0;
    return kernelOnly ? "PRAGMA synchronous=NORMAL" : "PRAGMA synchronous=FULL";
}

} // namespace

StoreQuery::~StoreQuery()
{
    sqlite3_reset(m_statement);
}

StoreQuery& StoreQuery::bind(std::string_view text) noexcept
{
    sqlite3_bind_text64(m_statement, ++m_bound, text.data(), text.size(), SQLITE_STATIC,
                        SQLITE_UTF8);
    return *this;
}

StoreQuery& StoreQuery::bind(std::uint32_t number) noexcept
{
    sqlite3_bind_int64(m_statement, ++m_bound, number);
    return *this;
}

StoreQuery& StoreQuery::bindBytes(const void* bytes, std::uint32_t size) noexcept
{
    // A null pointer would bind the value NULL.
    sqlite3_bind_blob64(m_statement, ++m_bound, size == 0 ? "" : bytes, size, SQLITE_STATIC);
    return *this;
}

ORVResult StoreQuery::step() noexcept
{
    if (m_statement == nullptr) return E_OUTOFMEMORY;
    switch (sqlite3_step(m_statement)) {
    case SQLITE_ROW: return 1;
    case SQLITE_DONE: return S_OK;
    default: return resultOf(sqlite3_db_handle(m_statement));
    }
}

std::string_view StoreQuery::bytes(int column) const noexcept
{
    const void* const data = sqlite3_column_blob(m_statement, column);
    const int size = sqlite3_column_bytes(m_statement, column);
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

std::uint32_t StoreQuery::number(int column) const noexcept
{
    return static_cast<std::uint32_t>(sqlite3_column_int64(m_statement, column));
}

Store::~Store()
{
    for (sqlite3_stmt* const statement : m_statements) sqlite3_finalize(statement);
    sqlite3_close(m_database);
    deallocateRaw(m_file);
}

ORVResult Store::open(const char* file, bool creates) noexcept
{
    const std::size_t size = std::strlen(file) + 1;
    m_file = static_cast<char*>(allocateRaw(size));
    if (m_file == nullptr) return E_OUTOFMEMORY;
    std::memcpy(m_file, file, size);

    if (creates) makePrivateFile(file);
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(file, &m_database, flags, nullptr) != SQLITE_OK) {
        return resultOf(m_database);
    }
    sqlite3_busy_handler(m_database, waitForOthers, nullptr);
    ORVResult result = checkHeader();
    if (result >= 0) result = execute(durability());
    if (result >= 0) result = checkContent(creates);
    if (result >= 0) m_memory.watch(m_database);
    return result;
}

/// Asks the file itself: pages that wait in a log beside a damaged file would hide the damage and,
/// when they are carried over, end up in it.
ORVResult Store::checkHeader() noexcept
{
    constexpr char expected[] = "SQLite format 3";
    sqlite3_file* file = nullptr;
    char header[sizeof expected] = "";
    sqlite3_file_control(m_database, nullptr, SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
    if (file == nullptr || file->pMethods == nullptr) return E_FAIL;
    sqlite3_int64 size = 0;
    if (file->pMethods->xFileSize(file, &size) != SQLITE_OK) return resultOf(m_database);
    if (size == 0) return S_OK;
    const int read = file->pMethods->xRead(file, header, sizeof header, 0);
    if (read != SQLITE_OK && read != SQLITE_IOERR_SHORT_READ) return resultOf(m_database);
    return std::equal(std::begin(expected), std::end(expected), header) ? S_OK
                                                                        : systemResult(damaged);
}

ORVResult Store::checkContent(bool creates) noexcept
{
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(m_database,
                       "SELECT application_id, user_version, (SELECT count(*) FROM sqlite_schema) "
                       "FROM pragma_application_id, pragma_user_version",
                       -1, &statement, nullptr);
    ORVResult result = statement != nullptr ? S_OK : resultOf(m_database);
    if (result >= 0) {
        StoreQuery query(statement);
        result = query.step();
        if (result > 0) {
            const std::uint32_t owner = query.number(0);
            const std::uint32_t version = query.number(1);
            const bool isEmpty = owner == 0 && version == 0 && query.number(2) == 0;
            const bool isOurs = owner == applicationId;
            result = isEmpty ? notFound : !isOurs ? systemResult(damaged) : S_OK;
            if (isOurs && version > formatVersion) result = systemResult(newer);
        }
    }
    sqlite3_finalize(statement);
    return result == notFound && creates ? create() : result;
}

/// Several processes may be at it at once: the log mode does not wait for its turn by itself.
ORVResult Store::create() noexcept
{
    ORVResult result = S_OK;
    int turns = 0;
    do {
        result = execute("PRAGMA journal_mode=WAL");
    } while (result == ORVResultFromNative(EBUSY) && waitForOthers(nullptr, turns++) != 0);
    return result >= 0 ? execute(createTables) : result;
}

ORVResult Store::execute(const char* sql) noexcept
{
    if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) == SQLITE_OK) return S_OK;
    return resultOf(m_database);
}

bool Store::isAt(const char* file) const noexcept
{
    int moved = 1;
    if (std::strcmp(file, m_file) != 0) return false;
    sqlite3_file_control(m_database, nullptr, SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved == 0;
}

sqlite3_stmt* Store::statement(StoreSql sql) noexcept
{
    sqlite3_stmt*& statement = m_statements[static_cast<int>(sql)];
    if (statement == nullptr) {
        sqlite3_prepare_v3(m_database, statementTexts[static_cast<int>(sql)], -1,
                           SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    }
    return statement;
}

int Store::changes() const noexcept
{
    return sqlite3_changes(m_database);
}

} // namespace orvcore
