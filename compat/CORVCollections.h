#pragma once

#include "compat/CORVSmartPtr.h"
#include "orv/IORVComparator.h"

/// What the collections have in common.
class ORV_API CORVCollections {
public:
    CORVCollections() = delete;

    /// The comparator of every collection that is given none, the one that
    /// orv::collections::GetDefaultComparator() gives. Threads: any number.
    static CORVSmartPtr<orv::IORVComparator> getDefaultComparator();
};
