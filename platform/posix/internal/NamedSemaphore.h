#pragma once

#include "platform/posix/internal/NamedFile.h"
#include "platform/posix/internal/RawLock.h"
#include "platform/posix/internal/SemaphoreRecord.h"

#include <atomic>
#include <cstdint>

namespace orvcore {

/// A semaphore that processes share by its name, and that outlives any of them being killed at any
/// moment.
///
/// Each opener has a slot in the shared file, which counts the holds that its wait() took and that
/// no post() gave back. Value and slots stay in step because the word of the value also tells the
/// last change: which slot it concerns, and how. Whoever wants to change the value brings that slot
/// up to date first, if the one who made the last change has not, and may be dead. A slot counts
/// its changes, so that each is made once.
///
/// A slot belongs to the living as long as its byte of the file is claimed. What a slot of the dead
/// held goes back into the value, by one change as well.
class NamedSemaphore : public SemaphoreRecord {
public:
    NamedSemaphore() noexcept : SemaphoreRecord(0, true) {}
    ~NamedSemaphore();
    NamedSemaphore(const NamedSemaphore&) = delete;
    NamedSemaphore& operator=(const NamedSemaphore&) = delete;

    ORVResult open(const char* name, std::uint32_t initialCount) noexcept;

    /// S_OK, or a positive result when what has been taken was held by a process that died.
    ORVResult wait() noexcept;
    ORVResult tryWait() noexcept;

    /// False when the count is at its largest.
    bool post() noexcept;

    std::uint32_t value() noexcept;

    void note(std::int64_t size) noexcept { m_shared->note.store(size); }
    std::int64_t noted() const noexcept { return m_shared->note.load(); }

private:
    /// The value with the last change to it; see NamedSemaphore.cpp for the bits.
    using State = std::uint64_t;
    /// Holds in the lower half, the number of changes in the upper one.
    using Tally = std::uint64_t;

    struct alignas(64) Slot {
        std::atomic<Tally> tally;
        std::atomic<std::uint32_t> taken; ///< 1 while somebody has it
    };

    struct alignas(64) Shared {
        std::atomic<State> state;
        std::atomic<std::int64_t> note; ///< of noteFileSize()
        std::atomic<std::uint32_t> initialCount;
        std::atomic<std::uint32_t> slots; ///< those ever used, from the first on
    };

    enum class Kind : std::uint32_t { Take = 0, Give = 1, Clear = 2 };

    static constexpr std::uint32_t maxSlots = 4096;

    ORVResult map() noexcept;
    ORVResult takeSlot() noexcept;
    std::uint32_t freeSlot() const noexcept;
    Slot& slot(std::uint32_t index) const noexcept;

    State current() noexcept;
    void settle(State state) noexcept;
    bool change(State& state, std::uint32_t value, State flags, std::uint32_t index,
                Kind kind) noexcept;

    ORVResult tryTake(bool asSleeper) noexcept;
    std::uint32_t slotToGive() const noexcept;
    std::uint32_t holdsOf(std::uint32_t index) const noexcept;
    bool sleep(std::uint32_t milliseconds) noexcept;
    void reclaim(bool wholly) noexcept;
    void reclaimSlots(bool wholly) noexcept;
    void clearSlot(std::uint32_t index, bool died) noexcept;

    NamedFile m_file;
    RawLock m_reclaiming; ///< between the threads of this opener, who share the locks of the file
    Shared* m_shared = nullptr;
    std::uint32_t m_slot = maxSlots;
    std::atomic<std::uint32_t>* m_order = nullptr;
};

} // namespace orvcore
