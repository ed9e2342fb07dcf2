#include "orv/collections/DefaultComparator.h"

#include "orv/internal/ExitList.h"
#include "orv/util/Comparator.h"

#include <atomic>
#include <utility>

namespace orv::collections {

namespace {

/// Owns one count.
constinit std::atomic<const util::Comparator*> shared{nullptr};

constinit ::orv::internal::ExitNode releaseShared{[] {
    const util::Comparator* const last = shared.exchange(nullptr);
    if (last != nullptr) last->Release();
}};

/// Makes the shared comparator, or finds that another thread was faster.
const util::Comparator* makeShared()
{
    auto made = makeReference<const util::Comparator>();
    const util::Comparator* first = nullptr;
    if (!shared.compare_exchange_strong(first, made.get())) return first;
    ::orv::internal::atUnload(releaseShared);
    return made.detach();
}

} // namespace

Reference<IORVComparator> GetDefaultComparator()
{
    const util::Comparator* found = shared.load(std::memory_order_acquire);
    if (found == nullptr) found = makeShared();
    return Reference<IORVComparator>(const_cast<util::Comparator*>(found));
}

} // namespace orv::collections
