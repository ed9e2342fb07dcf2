#include "orv/text/charset/internal/WordSwap.h"

namespace orv::text::charset::internal {

void copySwapped(void* to, const void* from, std::ptrdiff_t count)
{
    copySwappedPortably(to, from, count);
}

} // namespace orv::text::charset::internal
