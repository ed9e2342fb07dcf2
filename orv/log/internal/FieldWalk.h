#pragma once

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/collections/Iterators.h"
#include "orv/collections/Set.h"
#include "orv/log/LogEntry.h"
#include "orv/log/internal/MomentText.h"
#include "orv/log/internal/StandardFields.h"

#include <string_view>
#include <typeinfo>

namespace orv::log::internal {

/// The text of a standard field, as toString() of its object gives it.
class ValueText {
public:
    ValueText() noexcept = default;
    ValueText(const ValueText&) = delete;
    ValueText& operator=(const ValueText&) = delete;

    /// Valid until the next call.
    std::u16string_view of(const StandardFields& fields, Standard field);

private:
    std::u16string_view decimal(std::uint32_t magnitude, bool isNegative) noexcept;
    std::u16string_view decimal(std::int32_t value) noexcept
    {
        const auto bits = static_cast<std::uint32_t>(value);
        return decimal(value < 0 ? 0 - bits : bits, value < 0);
    }

    char16_t m_units[MOMENT_ROOM];
};

/// The fields of `entry` while they are plain, else null.
inline const StandardFields* plainFieldsOf(const ILogEntry& entry) noexcept
{
    // The class is final, so that the type says it all.
    if (typeid(entry) != typeid(LogEntry)) return nullptr;
    return static_cast<const LogEntry&>(entry).plainFields();
}

inline std::u16string_view unitsOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

/// Calls `visit` with the name and the text of each field, in the order of getFieldNames().
template <class Visit>
void forEachField(const ILogEntry& entry, Visit visit)
{
    if (const StandardFields* const fields = plainFieldsOf(entry)) {
        ValueText text;
        for (const Standard field : STANDARD_ORDER) {
            if (fields->has(field)) visit(nameOf(field), text.of(*fields, field));
        }
        return;
    }
    const Reference<const collections::Set<String>> names = entry.getFieldNames();
    for (const String* const name : *names) {
        const Reference<const Object> value = entry.getField(*name);
        if (!value) throwResult(E_END_OF_FILE);
        const String text = value->toString();
        visit(unitsOf(*name), unitsOf(text));
    }
}

} // namespace orv::log::internal
