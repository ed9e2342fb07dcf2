#include "compat/CORVCollections.h"

#include "orv/Reference.h"
#include "orv/collections/DefaultComparator.h"

CORVSmartPtr<orv::IORVComparator> CORVCollections::getDefaultComparator()
{
    return orv::collections::GetDefaultComparator().get();
}
