#pragma once

#include "orv/Failure.h"
#include "orv/collections/internal/ExactType.h"
#include "orv/collections/quark/HashMapEntry.h"

namespace orv::collections::internal {

/// The entry that `element` is. Throws CastFailedException where it is none.
inline quark::MapEntry& entryOf(const IORVUnknown* element)
{
    // Elements are counted, not protected: a const walk hands out entries that can be set.
    if (const auto* const hashed = exactly<quark::HashMapEntry>(element)) {
        return const_cast<quark::HashMapEntry&>(*hashed);
    }
    auto* const entry = dynamic_cast<quark::MapEntry*>(const_cast<IORVUnknown*>(element));
    if (entry == nullptr) throwCastFailed();
    return *entry;
}

} // namespace orv::collections::internal
