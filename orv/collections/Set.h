#pragma once

#include "orv/collections/Collection.h"
#include "orv/collections/quark/Set.h"

namespace orv::collections {

/// A set of elements of the class `T`, over an untyped one.
template <class T>
class ORV_API Set : public Collection<T> {
public:
    explicit Set(quark::Set* set) : Collection<T>(set) {}
};

extern template class Set<Integer32>;
extern template class Set<String>;

} // namespace orv::collections
