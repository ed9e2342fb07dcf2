#pragma once

#include "orv/sync/Handle.h"
#include "orv/sync/Object.h"

#include <cstdint>

namespace orv::sync {

/// Lets everybody pass while it is open, and nobody while it is closed. It begins closed.
///
/// Whoever waits when it opens passes, also if it closes again at once. The name is a label for
/// diagnosis, may be null and shares nothing; `flags` is 0.
///
/// Threads: any; nobody may wait when the gate is destroyed.
class ORV_API Gate : public Object {
public:
    explicit Gate(const char* name = nullptr, std::uint32_t flags = 0);
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate() noexcept(false) override;

    void wait() override;

    /// Whether the gate is open. Never throws: a fault reads as false.
    bool tryWait() noexcept override;

    /// Waits for at most `milliseconds`, 0xFFFFFFFF being for ever; false when the time is over.
    virtual bool wait(std::uint32_t milliseconds);

    /// Opens or closes the gate. Throws ResultException.
    virtual void open();
    virtual void close();

private:
    Handle<ORVGateDestroy> m_handle;
};

} // namespace orv::sync
