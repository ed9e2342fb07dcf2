#pragma once

#include "platform/orvcore.h"

/// \file
/// What byte streams need of open files beyond opening and closing them.

namespace orvcore {

/// The file handle of an open descriptor of this process, for files that were not opened by
/// ORVFileOpen(); ORV_NO_HANDLE for a negative one. The descriptor stays the caller's until
/// somebody closes the handle.
[[nodiscard]] ORVCORE_API ORVHandle fileHandleFromDescriptor(int descriptor) noexcept;

/// The descriptor behind a file handle; -1 for no handle.
[[nodiscard]] ORVCORE_API int descriptorFromFileHandle(ORVHandle file) noexcept;

/// Reads up to `size` bytes; `*got` 0 with S_OK is the end of the file.
[[nodiscard]] ORVCORE_API ORVResult readFile(ORVHandle file, void* buffer, std::int32_t size,
                                             std::int32_t* got) noexcept;

/// Writes `size` bytes, going on after short and interrupted writes. On failure `*written` tells
/// how many went out. Never raises SIGPIPE.
[[nodiscard]] ORVCORE_API ORVResult writeFile(ORVHandle file, const void* bytes, std::int32_t size,
                                              std::int32_t* written) noexcept;

/// Moves the position to the end of the file and tells it.
[[nodiscard]] ORVCORE_API ORVResult seekFileToEnd(ORVHandle file, std::int64_t* position) noexcept;

/// Cuts off the last `size` bytes that were written by this handle, unless others have written
/// behind them.
ORVCORE_API void takeBackFromFile(ORVHandle file, std::int32_t size) noexcept;

/// Cuts the file to `size` bytes.
[[nodiscard]] ORVCORE_API ORVResult truncateFile(ORVHandle file, std::int64_t size) noexcept;

/// When the open file was last changed, in seconds since 1970.
[[nodiscard]] ORVCORE_API ORVResult fileTime(ORVHandle file, std::int64_t* seconds) noexcept;

/// The same of the file that `path` names, in the way of ORVFileOpen().
[[nodiscard]] ORVCORE_API ORVResult fileTime(const char16_t* path, std::int64_t* seconds) noexcept;

/// What tells two states of a file apart, and a file from one that took its name.
struct FileStamp {
    std::uint64_t device;
    std::uint64_t number; ///< of the file on its device
    std::int64_t size;    ///< in bytes
    std::int64_t changed; ///< content, name or rights, in nanoseconds since 1970

    bool operator==(const FileStamp&) const noexcept = default;
};

/// The state of the file that `path` names, in the way of ORVFileOpen(). The system counts time in
/// steps, on some devices of two seconds: a change soon after another may leave no trace.
[[nodiscard]] ORVCORE_API ORVResult fileStamp(const char16_t* path, FileStamp* out) noexcept;

/// Bytes that can be read without waiting, as far as the system tells; 0 where it does not.
[[nodiscard]] ORVCORE_API std::int32_t availableInFile(ORVHandle file) noexcept;

/// Brings what was written to the disk (`fdatasync`). What has no disk behind it, such as a pipe,
/// succeeds. With `ORV_FLUSH=process` in the environment it stops at the kernel's cache.
[[nodiscard]] ORVCORE_API ORVResult flushFile(ORVHandle file) noexcept;

/// Notes in the named semaphore `lock`, which the caller holds, that the file was `size` bytes long
/// before the write under way; -1 clears the note. Another process that enters the semaphore
/// through the caller's death reads the note with recallFileSize() and cuts the file back to it.
ORVCORE_API void noteFileSize(ORVHandle lock, std::int64_t size) noexcept;

/// The size that a dead holder noted, -1 when there is none.
ORVCORE_API std::int64_t recallFileSize(ORVHandle lock) noexcept;

/// The current folder with backslashes, without drive, ending in one; terminated. `size` units.
/// Returns the length, 0 on failure or when the room is too small.
ORVCORE_API std::int32_t currentFolder(char16_t* buffer, std::int32_t size) noexcept;

/// The folder for temporary files (TMPDIR, else /tmp), in the form of currentFolder().
ORVCORE_API std::int32_t temporaryFolder(char16_t* buffer, std::int32_t size) noexcept;

} // namespace orvcore
