#pragma once

#include "orv/Failure.h"
#include "orv/IORVComparator.h"

namespace orv::collections::internal {

/// The order of `a`, the stored element, against `b`. Throws ResultException with a failed result
/// of the comparator, and with E_POINTER for none at all.
inline std::int32_t compareBy(const IORVComparator* comparator, const IORVUnknown* a,
                              const IORVUnknown* b)
{
    if (comparator == nullptr) throwResult(E_POINTER);
    std::int32_t order = 0;
    throwIfFailed(comparator->Compare(a, b, &order));
    return order;
}

/// Whether `a`, the stored element, equals `b`. Throws as compareBy() does.
inline bool equalBy(const IORVComparator* comparator, const IORVUnknown* a, const IORVUnknown* b)
{
    return compareBy(comparator, a, b) == 0;
}

/// The hash of `a`. Throws as compareBy() does.
inline std::uint32_t hashBy(const IORVComparator* comparator, const IORVUnknown* a)
{
    if (comparator == nullptr) throwResult(E_POINTER);
    std::uint32_t hash = 0;
    throwIfFailed(comparator->Hash(a, &hash));
    return hash;
}

} // namespace orv::collections::internal
