#include "platform/posix/internal/Record.h"
#include "platform/posix/internal/Store.h"
#include "platform/posix/internal/StoreText.h"

#include <algorithm>
#include <cstring>

namespace orvcore {
namespace {

constexpr ORVResult noMoreItems = systemResult(259);
constexpr ORVResult damagedStore = systemResult(1009);

/// A value by the place of its key and by its name, null being the default value's.
struct StoreValue {
    StoreKey key;
    StoreText name;
    std::u16string_view written;

    ORVResult assign(ENUM_ORV_HKEY root, const char16_t* path, const char16_t* valueName) noexcept
    {
        const ORVResult result = key.assign(root, path);
        if (result < 0) return result;
        if (valueName != nullptr) written = valueName;
        if (written.size() > longestStoreName) return nameTooLong;
        name.appendFolded(written);
        return name.failed() ? E_OUTOFMEMORY : S_OK;
    }
};

/// Where ORVRegistryGetValue() puts what it finds; each of them may be null.
struct ValueOut {
    std::uint32_t* type;
    void* data;
    std::uint32_t* size;
};

bool isValueOf(std::uint32_t type, std::uint32_t size) noexcept
{
    switch (type) {
    case ORV_REG_UINT32: return size == sizeof(std::uint32_t);
    case ORV_REG_UINT64: return size == sizeof(std::uint64_t);
    default: return type <= ORV_REG_BINARY;
    }
}

ORVResult deliver(const StoredValue& value, const ValueOut& out) noexcept
{
    if (!value.isThere) return notFound;
    const auto size = static_cast<std::uint32_t>(value.bytes.size());
    if (!isValueOf(value.type, size)) return damagedStore;
    if (out.type != nullptr) *out.type = value.type;
    if (out.size == nullptr) return S_OK;
    const std::uint32_t room = *out.size;
    *out.size = size;
    if (out.data == nullptr) return S_OK;
    if (room < size) return bufferTooSmall;
    std::copy(value.bytes.begin(), value.bytes.end(), static_cast<char*>(out.data));
    return S_OK;
}

ORVResult addKeys(Store& store, const StoreKey& key, const char16_t* path) noexcept
{
    const std::string_view text = key.text();
    std::size_t end = StoreKey::rootSize;
    StoreText written;
    ORVResult result = S_OK;
    for (std::u16string_view part; result >= 0 && nextPart(&path, &part);) {
        const std::size_t begin = end;
        end = std::min(text.find('\\', begin + 1), text.size());
        written.clear();
        written.appendUnits(part);
        if (written.failed()) return E_OUTOFMEMORY;
        result = store.run(StoreSql::AddKey, text.substr(0, begin),
                           text.substr(begin + 1, end - begin - 1), written.view());
    }
    return result;
}

/// Changes a value that is there: the usual case, which takes one statement.
ORVResult changeValue(Store& store, const StoreValue& value, std::uint32_t type, const void* data,
                      std::uint32_t size) noexcept
{
    StoreQuery query(store.statement(StoreSql::ChangeValue));
    query.bind(value.key.text()).bind(value.name.view()).bind(type).bindBytes(data, size);
    return query.step();
}

ORVResult addValue(Store& store, const StoreValue& value, const char16_t* path, std::uint32_t type,
                   const void* data, std::uint32_t size) noexcept
{
    StoreText written;
    written.appendUnits(value.written);
    if (written.failed()) return E_OUTOFMEMORY;
    ORVResult result = store.run(StoreSql::Begin);
    if (result >= 0) result = addKeys(store, value.key, path);
    if (result >= 0) {
        StoreQuery query(store.statement(StoreSql::AddValue));
        query.bind(value.key.text()).bind(value.name.view()).bind(type).bindBytes(data, size);
        result = query.bind(written.view()).step();
    }
    return result >= 0 ? store.run(StoreSql::Commit) : result;
}

ORVResult deleteKey(Store& store, const StoreKey& key) noexcept
{
    ORVResult result = store.run(StoreSql::Begin);
    if (result >= 0) result = store.run(StoreSql::DeleteKey, key.parent(), key.name());
    const bool isThere = result >= 0 && store.changes() > 0;
    if (isThere) {
        // The keys below it: their places begin with its own and a backslash, behind which no
        // byte is above 0xFF.
        StoreText first;
        StoreText last;
        first.append(key.text());
        first.append("\\");
        last.append(first.view());
        last.append("\xFF");
        if (first.failed() || last.failed()) return E_OUTOFMEMORY;
        for (const StoreSql sql : {StoreSql::DeleteKeys, StoreSql::DeleteValues}) {
            if (result >= 0) result = store.run(sql, key.text(), key.text());
            if (result >= 0) result = store.run(sql, first.view(), last.view());
        }
    }
    if (result >= 0) result = store.run(StoreSql::Commit);
    return result >= 0 && !isThere ? notFound : result;
}

/// The names of one key, and of values also the content, as they were when it was opened: for each
/// the sizes and the type, then the bytes.
struct Enumeration {
    StoreText entries;
    std::size_t position = 0;
};

struct EntryHead {
    std::uint32_t nameSize;
    std::uint32_t type;
    std::uint32_t dataSize;
};

struct Entry {
    std::string_view name;
    std::uint32_t type = 0;
    std::string_view data;
};

void addEntry(StoreText& entries, const Entry& entry) noexcept
{
    const EntryHead head{static_cast<std::uint32_t>(entry.name.size()), entry.type,
                         static_cast<std::uint32_t>(entry.data.size())};
    entries.append(&head, sizeof head);
    entries.append(entry.name);
    entries.append(entry.data);
}

/// The entry at the position, and where the next one begins; 0 at the end.
std::size_t entryAt(const Enumeration& enumeration, Entry* out) noexcept
{
    const std::string_view rest = enumeration.entries.view().substr(enumeration.position);
    if (rest.empty()) return 0;
    EntryHead head;
    std::memcpy(&head, rest.data(), sizeof head);
    *out = {rest.substr(sizeof head, head.nameSize), head.type,
            rest.substr(sizeof head + head.nameSize, head.dataSize)};
    return enumeration.position + sizeof head + head.nameSize + head.dataSize;
}

ORVResult listEntries(Store& store, StoreSql sql, const StoreKey& key, StoreText* entries) noexcept
{
    StoreQuery query(store.statement(sql));
    query.bind(key.text());
    ORVResult result = S_OK;
    while ((result = query.step()) > 0) {
        Entry entry{query.bytes(0), 0, {}};
        if (sql == StoreSql::ListValues) {
            entry.type = query.number(1);
            entry.data = query.bytes(2);
        }
        addEntry(*entries, entry);
    }
    return entries->failed() ? E_OUTOFMEMORY : result;
}

ORVResult fill(Enumeration& enumeration, StoreSql sql, const StoreKey& key) noexcept
{
    StoreLease store(false);
    // The roots are there even when the store is not.
    if (store.result() == notFound && key.isRoot()) return S_OK;
    if (store.result() < 0) return store.result();
    ORVResult result = listEntries(*store, sql, key, &enumeration.entries);
    const bool isKnown = key.isRoot() || !enumeration.entries.view().empty();
    if (result >= 0 && !isKnown) {
        result = store->run(StoreSql::FindKey, key.parent(), key.name());
        if (result == S_OK) result = notFound;
    }
    return store.end(result);
}

ORVResult openEnumeration(StoreSql sql, ENUM_ORV_HKEY root, const char16_t* path,
                          ORVHandle* out) noexcept
{
    ORVResult result = createRecord<Enumeration>(out);
    if (result < 0) return result;
    auto* const enumeration = recordOf<Enumeration>(*out);
    StoreKey key;
    result = key.assign(root, path);
    if (result >= 0) result = fill(*enumeration, sql, key);
    if (result >= 0) return S_OK;
    destroyRecord(enumeration);
    *out = ORV_NO_HANDLE;
    return result;
}

/// Gives the name with its terminator; nothing but the length needed where the room is too small.
ORVResult deliverName(std::string_view text, char16_t* name, std::uint32_t* length) noexcept
{
    const auto units = static_cast<std::uint32_t>(widenStoreText(text, nullptr));
    const std::uint32_t room = *length;
    *length = units;
    if (room <= units) return bufferTooSmall;
    widenStoreText(text, name);
    name[units] = 0;
    return S_OK;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVRegistryGetValue(ENUM_ORV_HKEY root, const char16_t* path, const char16_t* name,
                              std::uint32_t* type, void* data, std::uint32_t* size) noexcept
{
    if (data != nullptr && size == nullptr) return E_POINTER;
    StoreValue value;
    if (const ORVResult result = value.assign(root, path, name); result < 0) return result;
    StoreLease store(false);
    if (store.result() < 0) return store.result();
    return store.end(
        store->read(value.key.text(), value.name.view(), [&](const StoredValue& stored) {
            return deliver(stored, {type, data, size});
        }));
}

ORVResult ORVRegistrySetValue(ENUM_ORV_HKEY root, const char16_t* path, const char16_t* name,
                              std::uint32_t type, const void* data, std::uint32_t size) noexcept
{
    if (data == nullptr && size != 0) return E_POINTER;
    if (!isValueOf(type, size)) return E_INVALIDARG;
    StoreValue value;
    if (const ORVResult result = value.assign(root, path, name); result < 0) return result;
    StoreLease store(true);
    if (store.result() < 0) return store.result();
    ORVResult result = changeValue(*store, value, type, data, size);
    if (result >= 0 && store->changes() == 0) {
        result = addValue(*store, value, path, type, data, size);
    }
    return store.end(result);
}

ORVResult ORVRegistryDeleteValue(ENUM_ORV_HKEY root, const char16_t* path,
                                 const char16_t* name) noexcept
{
    StoreValue value;
    if (const ORVResult result = value.assign(root, path, name); result < 0) return result;
    StoreLease store(false);
    if (store.result() < 0) return store.result();
    ORVResult result = store->run(StoreSql::DeleteValue, value.key.text(), value.name.view());
    if (result >= 0 && store->changes() == 0) result = notFound;
    return store.end(result);
}

ORVResult ORVRegistryDeleteKey(ENUM_ORV_HKEY root, const char16_t* path) noexcept
{
    StoreKey key;
    if (const ORVResult result = key.assign(root, path); result < 0) return result;
    if (key.isRoot()) return accessDenied;
    StoreLease store(false);
    if (store.result() < 0) return store.result();
    return store.end(deleteKey(*store, key));
}

ORVResult ORVRegistryOpenKeyEnum(ENUM_ORV_HKEY root, const char16_t* path, ORVHandle* out) noexcept
{
    return openEnumeration(StoreSql::ListKeys, root, path, out);
}

ORVResult ORVRegistryOpenValueEnum(ENUM_ORV_HKEY root, const char16_t* path,
                                   ORVHandle* out) noexcept
{
    return openEnumeration(StoreSql::ListValues, root, path, out);
}

ORVResult ORVRegistryEnumNextKey(ORVHandle enumeration, char16_t* name,
                                 std::uint32_t* length) noexcept
{
    auto* const record = recordOf<Enumeration>(enumeration);
    if (record == nullptr) return invalidHandle;
    if (name == nullptr || length == nullptr) return E_POINTER;
    Entry entry;
    const std::size_t next = entryAt(*record, &entry);
    if (next == 0) return noMoreItems;
    const ORVResult result = deliverName(entry.name, name, length);
    if (result >= 0) record->position = next;
    return result;
}

ORVResult ORVRegistryEnumNextValue(ORVHandle enumeration, char16_t* name, std::uint32_t* nameLength,
                                   std::uint32_t* type, void* data, std::uint32_t* size) noexcept
{
    auto* const record = recordOf<Enumeration>(enumeration);
    if (record == nullptr) return invalidHandle;
    if (name == nullptr || nameLength == nullptr || (data != nullptr && size == nullptr)) {
        return E_POINTER;
    }
    Entry entry;
    const std::size_t next = entryAt(*record, &entry);
    if (next == 0) return noMoreItems;
    const ORVResult result = deliverName(entry.name, name, nameLength);
    if (result < 0) return result;
    if (data != nullptr)
        std::memcpy(data, entry.data.data(), std::min<std::size_t>(*size, entry.data.size()));
    if (size != nullptr) *size = static_cast<std::uint32_t>(entry.data.size());
    if (type != nullptr) *type = entry.type;
    record->position = next;
    return S_OK;
}

ORVResult ORVRegistryCloseEnum(ORVHandle enumeration) noexcept
{
    auto* const record = recordOf<Enumeration>(enumeration);
    if (record == nullptr) return invalidHandle;
    destroyRecord(record);
    return S_OK;
}
