#include "orv/internal/ExitList.h"

#include <atomic>

namespace orv::internal {

namespace {

constinit std::atomic<ExitNode*> newest{nullptr};

} // namespace

void atUnload(ExitNode& node) noexcept
{
    node.next = newest.load(std::memory_order_relaxed);
    while (!newest.compare_exchange_weak(node.next, &node, std::memory_order_release,
                                         std::memory_order_relaxed)) {
    }
}

void runExitList()
{
    while (ExitNode* node = newest.exchange(nullptr, std::memory_order_acquire)) {
        for (; node != nullptr; node = node->next) node->cleanUp();
    }
}

} // namespace orv::internal
