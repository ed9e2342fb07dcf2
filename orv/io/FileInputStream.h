#pragma once

#include "orv/io/InputStream.h"
#include "platform/orvcore.h"

namespace orv {
class String;
} // namespace orv

namespace orv::util {
class FilePath;
} // namespace orv::util

namespace orv::io {

/// Reads a file, without a buffer of its own: put a BufferedInputStream around it for small reads.
///
/// Failures are ResultException with the code of the system, such as 0x80070002 for a file that is
/// not there and 0x80070005 for a folder or a file that may not be read.
class ORV_API FileInputStream : public InputStream {
public:
    /// Opens the file; both slashes separate.
    explicit FileInputStream(const String& path);
    explicit FileInputStream(const util::FilePath& path);
    /// Reads from an open file of orvcore. `ownsHandle` is whether close() and the destructor close
    /// it.
    FileInputStream(std::uint64_t handle, bool ownsHandle);
    FileInputStream(const FileInputStream&) = delete;
    FileInputStream& operator=(const FileInputStream&) = delete;
    /// Closes the file as close() does, but says nothing of failures.
    ~FileInputStream() noexcept(false) override;

    using InputStream::read;
    /// Reads what one call of the system gives. -1 is the end, and the answer to an `n` of 0.
    std::int32_t read(signed char* buffer, std::int32_t n) override;

    /// Closes an open file that the stream owns. After a failure it still has the handle.
    void close() override;

    /// The file, all ones when there is none.
    std::uint64_t getHandle() const noexcept { return m_handle; }

private:
    Result closeHandle() noexcept;

    std::uint64_t m_handle = ORV_NO_HANDLE;
    bool m_ownsHandle = true;
};

} // namespace orv::io
