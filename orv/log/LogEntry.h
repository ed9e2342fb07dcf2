#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/log/ILogEntry.h"
#include "orv/log/quark/ILogEntry.h"
#include "orv/quark/Implements.h"

#include <atomic>

namespace orv::collections {
class StringHashMap;
}

namespace orv::log {

class Logger;

namespace internal {
class StandardFields;
}

/// The entry of the library's loggers.
///
/// The fields are those of a StringHashMap with 101 buckets, and getFieldNames() gives its key set.
/// What a Logger puts in is kept as plain values in the block of the entry until somebody asks for
/// a field or sets one; then the map is made. A writer of the library asks for neither.
class ORV_API LogEntry final
    : public ::orv::quark::Implements<Object, ::orv::log::ILogEntry, quark::ILogEntry> {
public:
    /// An entry without fields.
    [[nodiscard]] static Reference<LogEntry> create();
    ~LogEntry() noexcept(false) override;

    void setField(const String& name, const Object* value) override;
    Reference<const Object> getField(const String& name) const override;
    bool hasField(const String& name) const override;
    Reference<const collections::Set<String>> getFieldNames() const override;

    /// A null name is E_POINTER, here and in the operations below.
    Result SetField(const char16_t* name, IORVUnknown* value) override;
    Result GetField(const char16_t* name, const GUID& iid, void** result) const override;
    Result HasField(const char16_t* name) const override;
    Result GetFieldIterator(quark::IFieldIterator** result) const override;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

    /// The values while they are plain, null once there is more in the entry. Valid until a field
    /// is set.
    const internal::StandardFields* plainFields() const noexcept { return m_plain; }

private:
    friend class Logger;
    using Map = collections::StringHashMap;

    LogEntry() noexcept = default;

    /// An entry with standard fields, whose texts are copied.
    static Reference<LogEntry> create(const internal::StandardFields& fields);

    Map& map() const;
    Reference<Object> find(const String& name) const;

    internal::StandardFields* m_plain = nullptr; ///< behind the entry, in its own block
    mutable std::atomic<Map*> m_map{nullptr};    ///< counted; null until it is needed
};

} // namespace orv::log
