#include "platform/posix/internal/NamedSemaphore.h"

#include "platform/files.h"

#include <algorithm>
#include <cstddef>

#include <sys/mman.h>

namespace orvcore {
namespace {

// The bits of a state, from the lowest on. The lower half is what waiters sleep on.
constexpr std::uint32_t largest = 0x7FFFFFFF; // the value
constexpr std::uint32_t AWAITED = 0x80000000; // somebody may sleep
constexpr unsigned slotShift = 32;            // the slot that the last change concerns
constexpr std::uint32_t slotMask = 0xFFF;
constexpr unsigned kindShift = 44; // what it did there
constexpr std::uint32_t kindMask = 3;
constexpr std::uint64_t DIED = std::uint64_t{1} << 46; // the value has what the dead held
constexpr unsigned numberShift = 47;                   // its number in that slot, cut to what fits
constexpr std::uint32_t numberMask = 0x1FFFF;

constexpr ORVResult throughDeath = 1;

// A death is noticed at the latest when a sleep ends.
constexpr std::uint32_t shortestSleep = 10;
constexpr std::uint32_t longestSleep = 250;

// Two openers within one process have the same memory at two addresses. What tells a data race from
// order by addresses, as the thread sanitizer does, sees their order by these words.
constexpr std::size_t orderWords = 64;
constinit std::atomic<std::uint32_t> s_order[orderWords];

constexpr std::uint32_t valueOf(std::uint64_t state) noexcept
{
    return static_cast<std::uint32_t>(state) & largest;
}

constexpr std::uint32_t slotOf(std::uint64_t state) noexcept
{
    return static_cast<std::uint32_t>(state >> slotShift) & slotMask;
}

constexpr std::uint32_t changesOf(std::uint64_t tally) noexcept
{
    return static_cast<std::uint32_t>(tally >> 32);
}

constexpr std::uint32_t numberOf(std::uint64_t state) noexcept
{
    return static_cast<std::uint32_t>(state >> numberShift) & numberMask;
}

constexpr std::uint32_t heldIn(std::uint64_t tally) noexcept
{
    return static_cast<std::uint32_t>(tally);
}

} // namespace

NamedSemaphore::~NamedSemaphore()
{
    if (m_shared == nullptr) return;
    if (m_file.isOwn() && m_slot < maxSlots) {
        m_file.lock();
        if (holdsOf(m_slot) > 0) note(-1);
        clearSlot(m_slot, false);
    }
    ::munmap(m_shared, sizeof(Shared) + maxSlots * sizeof(Slot));
}

ORVResult NamedSemaphore::open(const char* name, std::uint32_t initialCount) noexcept
{
    m_order = &s_order[NamedFile::hashOf(name) % orderWords];
    ORVResult result = m_file.open("orv-sem-", name, true, 0600);
    if (result < 0) return result;
    if (m_file.isNew()) result = m_file.reserve(sizeof(Shared));
    if (result >= 0) result = map();
    if (result < 0) return result;

    if (m_file.isNew()) {
        m_shared->state.store(initialCount);
        m_shared->note.store(-1);
        m_shared->initialCount.store(initialCount);
    }
    result = takeSlot();
    if (result >= 0) m_file.unlock();
    return result;
}

ORVResult NamedSemaphore::map() noexcept
{
    // Pages past the end of the file stay untouched until there are slots on them.
    void* const base =
        ::mmap(nullptr, sizeof(Shared) + maxSlots * sizeof(Slot), PROT_READ | PROT_WRITE,
               MAP_SHARED, m_file.descriptor(), static_cast<off_t>(NamedFile::contentOffset()));
    if (base == MAP_FAILED) return lastError();
    m_shared = static_cast<Shared*>(base);
    return S_OK;
}

/// To be called with the short lock held.
ORVResult NamedSemaphore::takeSlot() noexcept
{
    reclaimSlots(true);
    const std::uint32_t index = freeSlot();
    if (index == maxSlots) return systemResult(4);
    if (index == m_shared->slots.load()) {
        const ORVResult result = m_file.reserve(sizeof(Shared) + (index + 1) * sizeof(Slot));
        if (result < 0) return result;
        m_shared->slots.store(index + 1);
    }
    if (!m_file.claim(index)) return E_FAIL;
    slot(index).taken.store(1);
    m_slot = index;
    return S_OK;
}

std::uint32_t NamedSemaphore::freeSlot() const noexcept
{
    const std::uint32_t used = m_shared->slots.load();
    std::uint32_t index = 0;
    while (index < used && slot(index).taken.load() != 0) ++index;
    return index;
}

NamedSemaphore::Slot& NamedSemaphore::slot(std::uint32_t index) const noexcept
{
    return reinterpret_cast<Slot*>(m_shared + 1)[index];
}

/// The state, with the last change made in its slot.
NamedSemaphore::State NamedSemaphore::current() noexcept
{
    const State state = m_shared->state.load();
    settle(state);
    return state;
}

void NamedSemaphore::settle(State state) noexcept
{
    Slot& changed = slot(slotOf(state));
    Tally tally = changed.tally.load();
    if ((changesOf(tally) & numberMask) == numberOf(state)) return;
    // The state stands still until its change is made: if it has moved, somebody else made it.
    if (m_shared->state.load() != state) return;

    std::uint32_t holds = heldIn(tally);
    switch (static_cast<Kind>((state >> kindShift) & kindMask)) {
    case Kind::Take: holds += holds < largest ? 1 : 0; break;
    case Kind::Give: holds -= holds > 0 ? 1 : 0; break;
    case Kind::Clear: holds = 0; break;
    }
    const Tally next = (Tally{changesOf(tally)} + 1) << 32 | holds;
    changed.tally.compare_exchange_strong(tally, next);
}

/// Moves on from `state` to `value` by a change in slot `index`; false when it had moved already.
bool NamedSemaphore::change(State& state, std::uint32_t value, std::uint64_t flags,
                            std::uint32_t index, Kind kind) noexcept
{
    const std::uint32_t number = (changesOf(slot(index).tally.load()) + 1) & numberMask;
    const State next = value | flags | State{index} << slotShift |
                       State{static_cast<std::uint32_t>(kind)} << kindShift |
                       State{number} << numberShift;
    if (!m_shared->state.compare_exchange_strong(state, next)) return false;
    settle(next);
    return true;
}

/// Takes 1 if there is 1. One that comes from sleep leaves the mark of sleepers behind.
ORVResult NamedSemaphore::tryTake(bool asSleeper) noexcept
{
    for (;;) {
        State state = current();
        const std::uint32_t value = valueOf(state);
        if (value == 0) return busy;
        const State flags = asSleeper ? AWAITED : state & AWAITED;
        if (!change(state, value - 1, flags, m_slot, Kind::Take)) continue;
        m_order->load(std::memory_order_acquire);
        // Posts wake one sleeper and clear the mark, so who wakes up hands on what is left.
        if (asSleeper && value > 1) futexWake(&m_shared->state, 1, FutexScope::Processes);
        return (state & DIED) != 0 ? throughDeath : S_OK;
    }
}

ORVResult NamedSemaphore::tryWait() noexcept
{
    const ORVResult result = tryTake(false);
    if (result >= 0) return result;
    reclaim(false);
    return tryTake(false);
}

ORVResult NamedSemaphore::wait() noexcept
{
    ORVResult result = tryTake(false);
    if (result >= 0) return result;
    const auto taken = [&] {
        if (valueOf(m_shared->state.load()) > 0) result = tryTake(false);
        return result >= 0;
    };
    if (spinUntil(taken)) return result;

    reclaim(false);
    std::uint32_t pause = shortestSleep;
    while ((result = tryTake(true)) < 0) {
        if (sleep(pause)) continue;
        reclaim(false);
        pause = std::min(2 * pause, longestSleep);
    }
    return result;
}

/// Sleeps while the value is 0; false when the time is over.
bool NamedSemaphore::sleep(std::uint32_t milliseconds) noexcept
{
    State state = m_shared->state.load();
    do {
        if (valueOf(state) > 0) return true;
    } while (!m_shared->state.compare_exchange_weak(state, state | AWAITED));
    return futexWait(&m_shared->state, AWAITED, Deadline::after(milliseconds),
                     FutexScope::Processes);
}

bool NamedSemaphore::post() noexcept
{
    m_order->fetch_add(1, std::memory_order_release);
    for (;;) {
        State state = current();
        const std::uint32_t value = valueOf(state);
        if (value == largest) return false;
        if (!change(state, value + 1, state & DIED, slotToGive(), Kind::Give)) continue;
        if ((state & AWAITED) != 0) futexWake(&m_shared->state, 1, FutexScope::Processes);
        return true;
    }
}

/// The slot whose hold a post gives back: one's own, else that of another.
std::uint32_t NamedSemaphore::slotToGive() const noexcept
{
    if (holdsOf(m_slot) > 0) return m_slot;
    const std::uint32_t used = m_shared->slots.load();
    for (std::uint32_t index = 0; index < used; ++index) {
        if (holdsOf(index) > 0) return index;
    }
    return m_slot;
}

std::uint32_t NamedSemaphore::holdsOf(std::uint32_t index) const noexcept
{
    return heldIn(slot(index).tally.load());
}

std::uint32_t NamedSemaphore::value() noexcept
{
    if (valueOf(m_shared->state.load()) < m_shared->initialCount.load()) reclaim(false);
    return valueOf(m_shared->state.load());
}

/// Gives back what the dead held; their slots become free if `wholly`. Does nothing where somebody
/// else is at it.
void NamedSemaphore::reclaim(bool wholly) noexcept
{
    if (!m_reclaiming.tryLock()) return;
    if (m_file.tryLock()) {
        reclaimSlots(wholly);
        m_file.unlock();
    }
    m_reclaiming.unlock();
}

/// To be called with the short lock held.
void NamedSemaphore::reclaimSlots(bool wholly) noexcept
{
    current();
    const std::uint32_t used = m_shared->slots.load();
    for (std::uint32_t index = 0; index < used; ++index) {
        if (index == m_slot || slot(index).taken.load() == 0) continue;
        if (!wholly && holdsOf(index) == 0) continue;
        if (!m_file.isClaimed(index)) clearSlot(index, true);
    }
}

/// Takes the holds off a slot whose owner makes no changes any more, and frees it.
void NamedSemaphore::clearSlot(std::uint32_t index, bool died) noexcept
{
    for (;;) {
        State state = current();
        const std::uint32_t value = valueOf(state);
        const std::uint32_t initial = m_shared->initialCount.load();
        const std::uint32_t missing = initial > value ? initial - value : 0;
        const std::uint32_t given = std::min(holdsOf(index), missing);
        const State kept = given > 0 ? state & DIED : state & (DIED | AWAITED);
        const State flags = given > 0 && died ? kept | DIED : kept;
        if (!change(state, value + given, flags, index, Kind::Clear)) continue;
        if (given > 0 && (state & AWAITED) != 0) {
            futexWake(&m_shared->state, futexAll, FutexScope::Processes);
        }
        break;
    }
    slot(index).taken.store(0);
}

} // namespace orvcore

using namespace orvcore;

namespace {

/// The named semaphore behind `handle`, null for a local one.
NamedSemaphore* namedOf(ORVHandle handle) noexcept
{
    auto* const record = recordOf<SemaphoreRecord>(handle);
    return record != nullptr && record->isNamed ? static_cast<NamedSemaphore*>(record) : nullptr;
}

} // namespace

ORVResult ORVNamedSemOpen(const char* name, std::uint32_t initialCount, ORVHandle* out) noexcept
{
    if (initialCount > largest) return E_INVALIDARG;
    if (name == nullptr || *name == 0) return ORVSemaphoreCreate(initialCount, nullptr, 0, out);

    ORVResult result = createRecord<NamedSemaphore>(out);
    if (result < 0) return result;
    auto* const record = recordOf<NamedSemaphore>(*out);
    result = record->open(name, initialCount);
    if (result >= 0) return result;
    destroyRecord(record);
    *out = ORV_NO_HANDLE;
    return result;
}

ORVResult ORVNamedSemClose(ORVHandle semaphore) noexcept
{
    auto* const record = namedOf(semaphore);
    if (record == nullptr) return ORVSemaphoreDestroy(semaphore);
    destroyRecord(record);
    return S_OK;
}

void orvcore::noteFileSize(ORVHandle lock, std::int64_t size) noexcept
{
    if (auto* const record = namedOf(lock)) record->note(size);
}

std::int64_t orvcore::recallFileSize(ORVHandle lock) noexcept
{
    const auto* const record = namedOf(lock);
    return record != nullptr ? record->noted() : -1;
}
