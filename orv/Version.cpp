#include "orv/Version.h"

const char16_t* ORVGetVersion() noexcept
{
    return ORV_VERSION_TEXT;
}
