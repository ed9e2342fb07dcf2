#include "orv/internal/ModuleToken.h"

namespace orv::internal {

const void* moduleToken() noexcept
{
    static const char token = 0;
    return &token;
}

} // namespace orv::internal
