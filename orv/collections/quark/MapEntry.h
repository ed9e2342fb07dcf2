#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Reference.h"

#include <cstdint>

namespace orv {
class Object;
}

namespace orv::collections::quark {

/// A key of a map with its value.
class ORV_API MapEntry : public virtual IORVUnknown {
public:
    /// The order against `other`.
    virtual std::int32_t compareTo(const Object& other) const = 0;

    /// Whether `other` equals this entry.
    virtual bool equals(const Object& other) const = 0;

    /// The key.
    virtual Reference<IORVUnknown> getKey() = 0;

    /// The value.
    virtual Reference<IORVUnknown> getValue() = 0;

    /// The share of this entry in the hash of its map.
    virtual std::uint32_t hashCode() const = 0;

    /// Replaces the value, in the map too, and returns the one before. Not a modification.
    virtual Reference<IORVUnknown> setValue(IORVUnknown* value) = 0;

protected:
    MapEntry() = default;
    MapEntry(const MapEntry&) = default;
    MapEntry& operator=(const MapEntry&) = default;
    ~MapEntry() = default;
};

} // namespace orv::collections::quark
