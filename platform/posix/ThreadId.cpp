#include "platform/threads.h"

#include <atomic>

#include <sys/mman.h>
#include <unistd.h>

namespace orvcore {
namespace {

using Generation = std::atomic<std::uint32_t>;

/// An identifier and the generation of processes, of which a fork begins a new one, in which it was
/// asked for.
struct KnownId {
    std::uint32_t generation = 0;
    std::uint32_t id = 0;
};

constinit thread_local KnownId t_known [[gnu::tls_model("initial-exec")]];

/// On a page that the system empties in a forked child; null until it is there.
constinit std::atomic<Generation*> s_current{nullptr};
constinit Generation s_last{0};

Generation* mapGeneration() noexcept
{
    const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    void* const page =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED) return nullptr;
    auto* const generation = static_cast<Generation*>(page);
    Generation* first = nullptr;
    if (::madvise(page, size, MADV_WIPEONFORK) == 0 &&
        s_current.compare_exchange_strong(first, generation)) {
        return generation;
    }
    ::munmap(page, size);
    return first;
}

/// The generation of this process, 0 where the system does not tell of forks.
std::uint32_t beginGeneration() noexcept
{
    Generation* current = s_current.load();
    if (current == nullptr) current = mapGeneration();
    if (current == nullptr) return 0;
    std::uint32_t generation = 0;
    const std::uint32_t next = s_last.fetch_add(1) + 1;
    return current->compare_exchange_strong(generation, next) ? next : generation;
}

} // namespace

std::uint32_t processMark() noexcept
{
    const Generation* const current = s_current.load(std::memory_order_acquire);
    const std::uint32_t generation =
        current != nullptr ? current->load(std::memory_order_relaxed) : 0;
    return generation != 0 ? generation : beginGeneration();
}

std::uint32_t currentThreadId() noexcept
{
    const std::uint32_t generation = processMark();
    if (generation != 0 && generation == t_known.generation) return t_known.id;
    t_known = KnownId{generation, static_cast<std::uint32_t>(::gettid())};
    return t_known.id;
}

} // namespace orvcore
