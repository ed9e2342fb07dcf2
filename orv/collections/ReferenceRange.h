#pragma once

#include "orv/Reference.h"

/// \file
/// A Reference to a collection as the range of a `for`, which so keeps a view alive that is made on
/// the spot:
///
///     for (String* key : map.createKeySet()) { ... }
///
/// With `*map.createKeySet()` the view would be gone before the walk begins.

namespace orv {

/// The walk over the collection, which must be there.
template <class Collection>
auto begin(const Reference<Collection>& collection) -> decltype(collection->begin())
{
    return collection->begin();
}

/// Its end.
template <class Collection>
auto end(const Reference<Collection>& collection) -> decltype(collection->end())
{
    return collection->end();
}

} // namespace orv
