#include "orv/log/LogEntry.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/collections/Iterators.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/log/FieldIterator.h"
#include "orv/log/internal/StandardFields.h"

#include <new>

namespace orv::log {

namespace {

using collections::StringHashMap;
using internal::Standard;
using internal::StandardFields;

void putFields(const StandardFields& fields, StringHashMap& map)
{
    for (std::size_t i = 0; i < internal::STANDARD_NAMES.size(); ++i) {
        const auto field = static_cast<Standard>(i);
        if (!fields.has(field)) continue;
        const std::u16string_view name = internal::nameOf(field);
        const String key(name.data(), static_cast<std::int32_t>(name.size()));
        map.put(key, fields.toObject(field).get());
    }
}

} // namespace

LogEntry::~LogEntry() noexcept(false)
{
    if (Map* const map = m_map.load(std::memory_order_acquire)) map->Release();
}

Reference<LogEntry> LogEntry::create()
{
    return Reference<LogEntry>(new LogEntry);
}

Reference<LogEntry> LogEntry::create(const StandardFields& fields)
{
    // The values and then the texts lie behind the entry: one allocation for all of it.
    static_assert(sizeof(LogEntry) % alignof(StandardFields) == 0);
    void* const block = orvcore::allocate(sizeof(LogEntry) + sizeof(StandardFields) +
                                          fields.unitCount() * sizeof(char16_t));
    Reference<LogEntry> entry(::new (block) LogEntry);
    entry->m_plain = ::new (entry.get() + 1) StandardFields(fields);
    entry->m_plain->moveTexts(reinterpret_cast<char16_t*>(entry->m_plain + 1));
    return entry;
}

/// The fields as a map. Several threads that read the entry may make one; the first one stays.
LogEntry::Map& LogEntry::map() const
{
    if (Map* const map = m_map.load(std::memory_order_acquire)) return *map;
    Reference<Map> made = makeReference<Map>();
    if (m_plain != nullptr) putFields(*m_plain, *made);
    Map* first = nullptr;
    if (m_map.compare_exchange_strong(first, made.get(), std::memory_order_acq_rel)) {
        return *made.detach();
    }
    return *first;
}

Reference<Object> LogEntry::find(const String& name) const
{
    return map().get(name);
}

void LogEntry::setField(const String& name, const Object* value)
{
    // Values are counted, not changed.
    map().put(name, const_cast<Object*>(value));
    m_plain = nullptr;
}

Reference<const Object> LogEntry::getField(const String& name) const
{
    Reference<Object> value = find(name);
    if (!value) throwResult(E_END_OF_FILE);
    return value;
}

bool LogEntry::hasField(const String& name) const
{
    return static_cast<bool>(find(name));
}

Reference<const collections::Set<String>> LogEntry::getFieldNames() const
{
    return map().createKeySet();
}

Result LogEntry::SetField(const char16_t* name, IORVUnknown* value)
{
    if (name == nullptr) return E_POINTER;
    const Object* const object = dynamic_cast<const Object*>(value);
    if (object == nullptr) return E_FAIL;
    return resultOf([&] { setField(name, object); });
}

Result LogEntry::GetField(const char16_t* name, const GUID& iid, void** result) const
{
    if (name == nullptr || result == nullptr) return E_POINTER;
    *result = nullptr;
    Result queried = E_FAIL;
    const Result found = resultOf([&] {
        const Reference<Object> value = find(name);
        if (value) queried = value->QueryInterface(iid, result);
    });
    return failed(found) ? found : queried;
}

Result LogEntry::HasField(const char16_t* name) const
{
    if (name == nullptr) return E_POINTER;
    bool isThere = false;
    const Result result = resultOf([&] { isThere = hasField(name); });
    if (failed(result)) return result;
    return isThere ? 0 : 1;
}

Result LogEntry::GetFieldIterator(quark::IFieldIterator** result) const
{
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    return resultOf([&] {
        auto names = getFieldNames()->createConstIterator();
        *result = makeReference<FieldIterator>(names).detach();
    });
}

Result LogEntry::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

const ::orv::quark::InterfaceData* LogEntry::GetComIntfMap()
{
    using namespace ::orv::quark;
    static const InterfaceData map[] = {interfaceRow<log::quark::ILogEntry, LogEntry>(),
                                        baseRow<Object>(), endRow};
    return map;
}

} // namespace orv::log
