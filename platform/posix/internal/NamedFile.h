#pragma once

#include "platform/orvcore.h"

#include <cstddef>
#include <cstdint>

#include <sys/types.h>

namespace orvcore {

/// A file in memory that the processes of one user find by a name of any bytes, and that goes with
/// the last of them.
///
/// Everybody who has it open holds a shared lock on its first byte, which the kernel takes back
/// from the dead; a file that nobody holds is a leftover. A second lock, for short times only,
/// orders those who open, close or clean up. Both are locks of the open file: they conflict between
/// threads too, and a forked child shares them.
///
/// In the file the name comes first, then, from contentOffset() on, what the owner of this object
/// puts there.
class NamedFile {
public:
    NamedFile() noexcept = default;
    ~NamedFile() { close(); }
    NamedFile(const NamedFile&) = delete;
    NamedFile& operator=(const NamedFile&) = delete;

    /// Opens the file of the `kind` ("orv-sem-" or "orv-shm-") and `name`, creating it where
    /// `create` allows it and nobody has it open. On success the short lock is held: the caller
    /// prepares what is its own and calls unlock(). 0x80070002 where there is none.
    ORVResult open(const char* kind, const char* name, bool create, mode_t permissions) noexcept;

    /// Opens a file without a name for `kind`, always new.
    ORVResult openAnonymous(const char* kind) noexcept;

    /// Whether open() has created the file, so that its content is to be made.
    bool isNew() const noexcept { return m_isNew; }

    /// Makes room for `size` bytes of content, all zero as far as they are new.
    ORVResult reserve(std::size_t size) noexcept;

    /// The room for content, in bytes.
    ORVResult contentSize(std::uint64_t* out) const noexcept;

    /// Where the content begins: a multiple of the size of a page.
    static std::size_t contentOffset() noexcept;

    /// The hash of a name (FNV-1a).
    static std::uint64_t hashOf(const char* name, std::uint64_t seed = 0) noexcept;

    /// The descriptor, -1 when closed.
    int descriptor() const noexcept { return m_descriptor; }

    /// Whether this process opened the file, and did not inherit it by a fork.
    bool isOwn() const noexcept;

    /// Waits for the short lock.
    void lock() noexcept;
    bool tryLock() noexcept;
    void unlock() noexcept;

    /// Locks the byte with the number `index` of a row that owners of this file are told apart by,
    /// until it is closed.
    bool claim(std::uint32_t index) noexcept;

    /// Whether anybody else has locked that byte.
    bool isClaimed(std::uint32_t index) const noexcept;

    /// Lets go of the file, and removes it where nobody else has it open. In a forked child it only
    /// forgets the descriptor.
    void close() noexcept;

private:
    ORVResult openPath(bool create, mode_t permissions) noexcept;
    ORVResult settle(bool create) noexcept;
    ORVResult writeName(const char* name) noexcept;
    ORVResult checkName(const char* name) const noexcept;
    void forget() noexcept;

    char m_path[64] = "";
    int m_descriptor = -1;
    pid_t m_process = 0;
    bool m_isNew = false;
};

} // namespace orvcore
