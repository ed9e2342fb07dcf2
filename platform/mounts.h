#pragma once

#include "platform/orvcore.h"

#include <cstddef>
#include <cstdint>

/// \file
/// Which paths of this system lie on another machine.

namespace orvcore {

/// Where a path lies by a table of mounted file systems.
struct Mount {
    /// `\\server\share` for a file system of another machine, empty for one of this machine.
    char16_t connection[1024];
    /// The units at the start of the path that name the place where it is mounted, a separator
    /// behind them left out.
    std::int32_t length;
};

/// Finds the file system that `path`, absolute and on drive C: in the form of ORVPathExpand(),
/// lies on: the one with the longest mount point, of equal ones the last. Those of the types cifs,
/// smb3, nfs and nfs4 are of another machine; paths on other drives are of this one.
///
/// `table` holds `size` bytes in the form of /proc/self/mounts; lines that are cut short do not
/// count. 0x80004009 for a connection that has no room.
[[nodiscard]] ORVCORE_API ORVResult findMount(const char* table, std::size_t size,
                                              const char16_t* path, Mount* out) noexcept;

/// The same by the system's own table. Where the system has none, every path is of this machine.
[[nodiscard]] ORVCORE_API ORVResult findMount(const char16_t* path, Mount* out) noexcept;

} // namespace orvcore
