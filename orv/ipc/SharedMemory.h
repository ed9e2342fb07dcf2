#pragma once

#include "orv/Object.h"
#include "platform/orvcore.h"

#include <cstdint>

namespace orv::ipc {

/// A block of memory that the processes of one user on this machine share by its name.
///
///     SharedMemory table("inventory", 65536, SharedMemory::CREATE, 0600);
///     auto* rows = static_cast<Row*>(table.get());
///
/// It begins with zeroes, and lives as long as some process has it open; the last one leaves
/// nothing behind. Whoever creates it settles its size, and others open that much or less. Any text
/// is a name, slashes too; null and the empty text make one that nobody else finds.
///
/// Threads: any; what is in the memory is for its users to order.
class ORV_API SharedMemory : public Object {
public:
    /// Among the flags: create the memory where it is absent.
    static constexpr std::uint32_t CREATE = 0x100;

    /// Opens `size` bytes, at least 1, for reading and writing. `permissions` are the mode bits of
    /// memory that is created (octal 600 for reading and writing). Throws ResultException described
    /// as "Failed to open shared memory." where there is none, or less than `size`, and as "Failed
    /// to attach shared memory" where it cannot be mapped.
    SharedMemory(const char* name, std::uint32_t size, std::uint32_t flags,
                 std::uint32_t permissions);
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory() noexcept(false) override;

    /// The first byte, at the start of a page.
    void* get() const noexcept { return m_base; }
    operator void*() const noexcept { return m_base; }

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
    void* m_base = nullptr;
};

} // namespace orv::ipc
