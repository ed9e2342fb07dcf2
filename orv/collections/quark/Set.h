#pragma once

#include "orv/collections/quark/Collection.h"

namespace orv::collections::quark {

/// A collection without equal elements.
class ORV_API Set : public virtual Collection {
protected:
    ~Set() = default;
};

} // namespace orv::collections::quark
