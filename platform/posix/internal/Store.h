#pragma once

#include "platform/orvcore.h"
#include "platform/posix/internal/StoreMemory.h"

#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace orvcore {

/// The statements of the configuration store, in the order of their texts in Store.cpp.
enum class StoreSql {
    FindValue,
    ChangeValue,
    AddValue,
    DeleteValue,
    FindKey,
    AddKey,
    DeleteKey,
    DeleteKeys,
    DeleteValues,
    ListKeys,
    ListValues,
    Begin,
    Commit,
};

/// One use of a statement. What is bound must outlive it.
class StoreQuery {
public:
    explicit StoreQuery(sqlite3_stmt* statement) noexcept : m_statement(statement) {}
    StoreQuery(const StoreQuery&) = delete;
    StoreQuery& operator=(const StoreQuery&) = delete;
    ~StoreQuery();

    StoreQuery& bind(std::string_view text) noexcept;
    StoreQuery& bind(std::uint32_t number) noexcept;
    StoreQuery& bindBytes(const void* bytes, std::uint32_t size) noexcept;

    /// Positive for a row, S_OK at the end, else a failure.
    ORVResult step() noexcept;

    std::string_view bytes(int column) const noexcept;
    std::uint32_t number(int column) const noexcept;

private:
    sqlite3_stmt* m_statement;
    int m_bound = 0;
};

/// A connection to the file of the configuration store, for one thread at a time.
///
/// After a failure other than those of a search it is to be destroyed, which gives up what it had
/// begun.
class Store {
public:
    Store() noexcept = default;
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    /// Opens the file. Where there is none, or an empty one, it is made or, unless `creates`, the
    /// answer is 0x80070002. A file that is no configuration store, or a damaged one, is
    /// 0x800703F1 and stays as it is; one of a newer library is 0x8007051A.
    ORVResult open(const char* file, bool creates) noexcept;

    /// Whether it still leads to the file of that name, and not to one that was moved away.
    bool isAt(const char* file) const noexcept;

    /// Runs a statement without rows.
    template <class... Values>
    ORVResult run(StoreSql sql, const Values&... values) noexcept
    {
        StoreQuery query(statement(sql));
        (query.bind(values), ...);
        return query.step();
    }

    /// Reads a value, out of memory where it is known, and hands it to `deliver`, which may use it
    /// until it returns. Gives the result of `deliver` or of the store.
    template <class Deliver>
    ORVResult read(std::string_view key, std::string_view name, Deliver deliver) noexcept
    {
        StoredValue stored;
        if (m_memory.find(key, name, &stored)) return deliver(stored);
        StoreQuery query(statement(StoreSql::FindValue));
        const ORVResult result = query.bind(key).bind(name).step();
        if (result < 0) return result;
        if (result > 0) stored = {true, query.number(0), query.bytes(1)};
        m_memory.add(key, name, stored);
        return deliver(stored);
    }

    sqlite3_stmt* statement(StoreSql sql) noexcept;

    /// What it has read since the store last changed.
    StoreMemory& memory() noexcept { return m_memory; }

    /// Rows that the last statement changed.
    int changes() const noexcept;

    static constexpr int statements = static_cast<int>(StoreSql::Commit) + 1;

private:
    ORVResult checkHeader() noexcept;
    ORVResult checkContent(bool creates) noexcept;
    ORVResult create() noexcept;
    ORVResult execute(const char* sql) noexcept;

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_statements[statements] = {};
    char* m_file = nullptr;
    StoreMemory m_memory;
};

/// A connection for one operation, out of those that the process keeps open.
class StoreLease {
public:
    /// Opens the store where none is open. A process that was forked off one which had used the
    /// store gets 0x80070032: it would share the parent's locks.
    explicit StoreLease(bool creates) noexcept;
    ~StoreLease();
    StoreLease(const StoreLease&) = delete;
    StoreLease& operator=(const StoreLease&) = delete;

    /// Why there is none.
    ORVResult result() const noexcept { return m_result; }
    Store* operator->() const noexcept { return m_store; }
    Store& operator*() const noexcept { return *m_store; }

    /// Tells how the operation went, and decides whether the connection is kept. Gives `result`.
    ORVResult end(ORVResult result) noexcept;

private:
    Store* m_store = nullptr;
    ORVResult m_result = S_OK;
};

/// The path of the store's file: ORV_REGISTRY, else orv/registry.db in XDG_CONFIG_HOME or in
/// ~/.config. `buffer` has `size` bytes to make it in; null where there is none or it is too long.
const char* storeFile(char* buffer, std::size_t size) noexcept;

} // namespace orvcore
