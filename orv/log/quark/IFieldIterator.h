#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Result.h"
#include "orv/util/ICharBuffer.h"

namespace orv::log::quark {

/// Walks the names of an entry's fields, in result codes.
class ORV_API IFieldIterator : public IORVUnknown {
public:
    /// 0 where there is another name, 1 where there is none.
    virtual Result HasNext() = 0;

    /// Copies the next name into `name`; a failure at the end.
    virtual Result Next(util::ICharBuffer* name) = 0;

protected:
    ~IFieldIterator() = default;
};

} // namespace orv::log::quark
