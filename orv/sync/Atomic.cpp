#include "orv/sync/Atomic.h"

namespace orv::sync {

Atomic::~Atomic() noexcept(false) = default;
FakeAtomic::~FakeAtomic() noexcept(false) = default;

} // namespace orv::sync
