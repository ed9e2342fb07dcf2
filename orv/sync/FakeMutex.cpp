#include "orv/sync/FakeMutex.h"

namespace orv::sync {

FakeMutex::FakeMutex(const char*, std::uint32_t) noexcept {}

FakeMutex::~FakeMutex() noexcept(false) = default;

void FakeMutex::wait() {}

bool FakeMutex::tryWait() noexcept
{
    return true;
}

void FakeMutex::signal() {}

} // namespace orv::sync
