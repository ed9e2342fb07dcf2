#pragma once

#include "orv/Integers.h"
#include "orv/Result.h"
#include "orv/String.h"
#include "orv/collections/internal/Comparing.h"
#include "orv/collections/internal/ExactType.h"
#include "orv/util/Comparator.h"

#include <cstdint>

/// \file
/// What util::Comparator says about the keys met most, Strings and Integer32s, without its queries.

namespace orv::collections::internal {

/// Whether `comparator` is the library's own, so that the operations below may stand for it.
inline bool isDirect(const IORVComparator* comparator) noexcept
{
    return exactly<util::Comparator>(comparator) != nullptr;
}

/// hashBy() a comparator that isDirect() or not, as `direct` says.
inline std::uint32_t hashBy(const IORVComparator* comparator, bool direct,
                            const IORVUnknown* element)
{
    if (direct) {
        if (const auto* const text = exactly<String>(element)) {
            std::uint32_t hash = 0;
            throwIfFailed(resultOf([&] { hash = text->String::hashCode(); }));
            return hash;
        }
        if (const auto* const number = exactly<Integer32>(element)) {
            return static_cast<std::uint32_t>(std::int32_t{*number});
        }
    }
    return hashBy(comparator, element);
}

/// equalBy() a comparator that isDirect() or not, as `direct` says.
inline bool equalBy(const IORVComparator* comparator, bool direct, const IORVUnknown* a,
                    const IORVUnknown* b)
{
    if (direct) {
        const auto* const text = exactly<String>(a);
        const auto* const other = text != nullptr ? exactly<String>(b) : nullptr;
        if (other != nullptr) {
            bool equal = false;
            throwIfFailed(resultOf([&] { equal = text->equals(*other, false); }));
            return equal;
        }
        const auto* const number = exactly<Integer32>(a);
        const auto* const second = number != nullptr ? exactly<Integer32>(b) : nullptr;
        if (second != nullptr) return std::int32_t{*number} == std::int32_t{*second};
    }
    return equalBy(comparator, a, b);
}

} // namespace orv::collections::internal
