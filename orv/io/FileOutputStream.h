#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/io/OutputStream.h"
#include "orv/ipc/SemaphoreR.h"
#include "orv/sync/Mutex.h"

namespace orv::util {
class FilePath;
} // namespace orv::util

namespace orv::io {

/// Writes a file, without a buffer of its own: put a BufferedOutputStream around it for small
/// writes.
///
///     FileOutputStream log(path, FileOutputStream::APPEND);
///     log.write(record, length); // one record, whole, behind those of other processes
///
/// Several processes may write to one file in the modes APPEND and LOCK. What one write() takes is
/// never torn and never mixed with that of others: a lock named after the path, as it is spelt,
/// orders the writers, and when one of them is killed within a write, the next one cuts the torn
/// rest off, as long as some process has kept a stream on the path. A record that comes in several
/// writes, as from a bridge or a buffer smaller than the record, wants wait() before and signal()
/// behind it, which keep the others out, but not half of it from staying if its writer is killed.
///
/// Failures are ResultException with the code of the system, such as 0x80070070 for a full disk.
/// What had been written before stays; of the failed write nothing does, unless the stream was made
/// from a handle or others have written behind it.
///
/// Threads: one at a time; in the mode KEEPCLOSED any, for write(), flush(), open(), close() and
/// getSize(). In the other modes two threads that write through one stream with a file lock may
/// wait for each other for ever: each wants a stream of its own.
class ORV_API FileOutputStream : public OutputStream {
public:
    /// Opened for appending: the system puts each write at the end of the file.
    static constexpr std::uint32_t ATEND = 0x1;
    /// Goes to the end of the file before each write, under the file lock.
    static constexpr std::uint32_t APPEND = 0x2;
    /// Empties the file, when it is opened for the first time.
    static constexpr std::uint32_t TRUNC = 0x4;
    /// Keeps the file closed between the operations: each write opens, flushes and closes it.
    static constexpr std::uint32_t KEEPCLOSED = 0x8;
    /// Writes under the file lock.
    static constexpr std::uint32_t LOCK = 0x10;

    /// Opens the file, or makes it, readable by its owner alone. Both slashes separate. An empty
    /// path is an InvalidPathException.
    FileOutputStream(const String& path, std::uint32_t mode);
    FileOutputStream(const util::FilePath& path, std::uint32_t mode);
    /// True means ATEND, false TRUNC.
    FileOutputStream(const String& path, bool append);
    FileOutputStream(const util::FilePath& path, bool append);
    /// Writes to an open file of orvcore. `ownsHandle` is whether close() and the destructor close
    /// it.
    FileOutputStream(std::uint64_t handle, bool ownsHandle);
    FileOutputStream(const FileOutputStream&) = delete;
    FileOutputStream& operator=(const FileOutputStream&) = delete;
    /// Closes the file as close() does.
    ~FileOutputStream() noexcept(false) override;

    using OutputStream::write;
    /// After a failure the file stays open, in the mode KEEPCLOSED too.
    void write(const signed char* bytes, std::int32_t n) override;

    /// Brings what was written to the disk; ORV_FLUSH=process in the environment lets it stop at
    /// the system's cache. On a closed stream nothing.
    void flush() override;

    /// Closes an open file that the stream owns, and reports no failure.
    void close() override;

    /// Whether the file is open, 1 or 0.
    virtual std::int16_t is_open() const;
    /// Opens the file again where it is closed, never emptying it. A stream made from a handle
    /// throws InvalidPathException.
    virtual void open();
    /// The size of the file in bytes. Throws on a closed stream, unless it is KEEPCLOSED.
    virtual std::int64_t getSize();

    /// The open file; all ones where it is closed, and always in the mode KEEPCLOSED.
    std::uint64_t getHandle() const noexcept;
    std::uint32_t getMode() const noexcept { return m_mode; }

    /// Takes the file lock, where the mode has one, which the same thread may do again and again;
    /// signal() gives it back.
    void wait();
    void signal();

private:
    void init(const String& path);
    static std::uint64_t openFile(const String& path, std::uint32_t mode);
    bool keepsClosed() const noexcept { return (m_mode & KEEPCLOSED) != 0; }
    sync::Mutex* closedModeLock() const noexcept;
    void reopen();
    void closeHandle() noexcept;
    void writeBytes(const signed char* bytes, std::int32_t n);

    String m_path;
    std::uint64_t m_handle = ORV_NO_HANDLE;
    bool m_ownsHandle = true;
    std::uint32_t m_mode = 0;
    Reference<ipc::SemaphoreR> m_fileLock;
    Reference<sync::Mutex> m_mutex;
};

} // namespace orv::io
