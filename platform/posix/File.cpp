#include "platform/files.h"

#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/Results.h"
#include "platform/posix/internal/SigpipeGuard.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr std::uint32_t openRead = 0x80000000;
constexpr std::uint32_t openWrite = 0x40000000;
constexpr std::uint32_t openCreate = 0x100;
constexpr std::uint32_t openTruncate = 0x200;
constexpr std::uint32_t openAppend = 0x8;

// A handle is the descriptor plus 1; this bit of it tells that a write cannot raise SIGPIPE.
constexpr ORVHandle regularFile = ORVHandle{1} << 32;

ORVHandle handleOf(int descriptor, const struct stat& status) noexcept
{
    const ORVHandle number = static_cast<ORVHandle>(descriptor) + 1;
    return S_ISREG(status.st_mode) ? number | regularFile : number;
}

std::optional<int> nativeFlags(std::uint32_t flags) noexcept
{
    const bool writes = (flags & openWrite) != 0;
    int native = O_CLOEXEC | O_NOCTTY;
    switch (flags & (openRead | openWrite)) {
    case openRead: native |= O_RDONLY; break;
    case openWrite: native |= O_WRONLY; break;
    case openRead | openWrite: native |= O_RDWR; break;
    default: return std::nullopt;
    }
    if ((flags & openCreate) != 0) native |= O_CREAT;
    if ((flags & openTruncate) != 0) {
        if (!writes) return std::nullopt;
        native |= O_TRUNC;
    }
    if ((flags & openAppend) != 0) native |= O_APPEND;
    return native;
}

// Whether a call that failed is to be made again: it was interrupted, or a descriptor that does
// not block is ready by now.
bool isToBeRepeated(int descriptor, short readiness) noexcept
{
    if (errno == EINTR) return true;
    if (errno != EAGAIN) return false;
    pollfd waiting{descriptor, readiness, 0};
    return poll(&waiting, 1, -1) > 0 || errno == EINTR;
}

ORVResult statusOf(const char16_t* path, struct stat* out) noexcept
{
    NativePath name;
    if (const ORVResult result = name.assign(path); result < 0) return result;
    return stat(name.get(), out) == 0 ? S_OK : lastError();
}

ORVResult writeAll(int descriptor, const char* bytes, std::size_t size,
                   std::int32_t* written) noexcept
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::write(descriptor, bytes + done, size - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (!isToBeRepeated(descriptor, POLLOUT)) {
            break;
        }
    }
    *written = static_cast<std::int32_t>(done);
    return done == size ? S_OK : lastError();
}

bool flushesToKernelOnly() noexcept
{
    static const bool s_processOnly = [] {
        const char* choice = std::getenv("ORV_FLUSH");
        return choice != nullptr && std::strcmp(choice, "process") == 0;
    }();
    return s_processOnly;
}

std::int32_t clamped(std::int64_t count) noexcept
{
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(count, 0, most));
}

} // namespace

ORVHandle fileHandleFromDescriptor(int descriptor) noexcept
{
    if (descriptor < 0) return ORV_NO_HANDLE;
    struct stat status {};
    if (fstat(descriptor, &status) != 0) status.st_mode = 0;
    return handleOf(descriptor, status);
}

int descriptorFromFileHandle(ORVHandle file) noexcept
{
    if (file == ORV_NO_HANDLE) return -1;
    return static_cast<int>(static_cast<std::uint32_t>(file)) - 1;
}

ORVResult readFile(ORVHandle file, void* buffer, std::int32_t size, std::int32_t* got) noexcept
{
    if (buffer == nullptr || got == nullptr) return E_POINTER;
    *got = 0;
    if (size < 0) return E_INVALIDARG;
    const int descriptor = descriptorFromFileHandle(file);
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, static_cast<std::size_t>(size));
        if (count >= 0) {
            *got = static_cast<std::int32_t>(count);
            return S_OK;
        }
        if (!isToBeRepeated(descriptor, POLLIN)) return lastError();
    }
}

ORVResult writeFile(ORVHandle file, const void* bytes, std::int32_t size,
                    std::int32_t* written) noexcept
{
    if (bytes == nullptr || written == nullptr) return E_POINTER;
    *written = 0;
    if (size < 0) return E_INVALIDARG;
    const int descriptor = descriptorFromFileHandle(file);
    const auto* from = static_cast<const char*>(bytes);
    if ((file & regularFile) != 0) {
        return writeAll(descriptor, from, static_cast<std::size_t>(size), written);
    }
    const SigpipeGuard guard;
    return writeAll(descriptor, from, static_cast<std::size_t>(size), written);
}

ORVResult seekFileToEnd(ORVHandle file, std::int64_t* position) noexcept
{
    if (position == nullptr) return E_POINTER;
    *position = lseek(descriptorFromFileHandle(file), 0, SEEK_END);
    return *position < 0 ? lastError() : S_OK;
}

ORVResult truncateFile(ORVHandle file, std::int64_t size) noexcept
{
    const int descriptor = descriptorFromFileHandle(file);
    while (ftruncate(descriptor, size) != 0) {
        if (errno != EINTR) return lastError();
    }
    return S_OK;
}

void takeBackFromFile(ORVHandle file, std::int32_t size) noexcept
{
    const int descriptor = descriptorFromFileHandle(file);
    const off_t position = lseek(descriptor, 0, SEEK_CUR);
    if (position < size || lseek(descriptor, 0, SEEK_END) != position) return;
    if (truncateFile(file, position - size) == S_OK) lseek(descriptor, 0, SEEK_END);
}

ORVResult fileTime(ORVHandle file, std::int64_t* seconds) noexcept
{
    if (seconds == nullptr) return E_POINTER;
    struct stat status {};
    if (fstat(descriptorFromFileHandle(file), &status) != 0) return lastError();
    *seconds = status.st_mtim.tv_sec;
    return S_OK;
}

ORVResult fileTime(const char16_t* path, std::int64_t* seconds) noexcept
{
    if (seconds == nullptr) return E_POINTER;
    struct stat status {};
    if (const ORVResult result = statusOf(path, &status); result < 0) return result;
    *seconds = status.st_mtim.tv_sec;
    return S_OK;
}

ORVResult fileStamp(const char16_t* path, FileStamp* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    struct stat status {};
    if (const ORVResult result = statusOf(path, &status); result < 0) return result;
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    *out = {status.st_dev, status.st_ino, status.st_size,
            status.st_ctim.tv_sec * nanoseconds + status.st_ctim.tv_nsec};
    return S_OK;
}

std::int32_t availableInFile(ORVHandle file) noexcept
{
    const int descriptor = descriptorFromFileHandle(file);
    struct stat status {};
    if (fstat(descriptor, &status) != 0) return 0;
    if (S_ISREG(status.st_mode)) {
        const off_t position = lseek(descriptor, 0, SEEK_CUR);
        return position < 0 ? 0 : clamped(status.st_size - position);
    }
    int count = 0;
    return ioctl(descriptor, FIONREAD, &count) == 0 ? clamped(count) : 0;
}

ORVResult flushFile(ORVHandle file) noexcept
{
    const int descriptor = descriptorFromFileHandle(file);
    if (flushesToKernelOnly()) return descriptor < 0 ? ORVResultFromNative(EBADF) : S_OK;
    while (fdatasync(descriptor) != 0) {
        if (errno == EINVAL || errno == EROFS || errno == ENOTSUP) return S_OK;
        if (errno != EINTR) return lastError();
    }
    return S_OK;
}

} // namespace orvcore

ORVResult ORVFileOpen(const char16_t* path, std::uint32_t flags, std::uint32_t permissions,
                      ORVHandle* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    *out = ORV_NO_HANDLE;
    const std::optional<int> native = orvcore::nativeFlags(flags);
    if (!native) return E_INVALIDARG;
    orvcore::NativePath name;
    if (const ORVResult result = name.assign(path); result < 0) return result;

    int descriptor;
    do {
        descriptor = open(name.get(), *native, static_cast<mode_t>(permissions & 07777));
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) return orvcore::lastError();

    struct stat status {};
    const bool known = fstat(descriptor, &status) == 0;
    if (!known || S_ISDIR(status.st_mode)) {
        const ORVResult result = known ? orvcore::accessDenied : orvcore::lastError();
        close(descriptor);
        return result;
    }
    *out = orvcore::handleOf(descriptor, status);
    return S_OK;
}

ORVResult ORVFileClose(ORVHandle file) noexcept
{
    // An interrupted close has closed the descriptor all the same.
    const bool closed = close(orvcore::descriptorFromFileHandle(file)) == 0 || errno == EINTR;
    return closed ? S_OK : orvcore::lastError();
}

ORVResult ORVFileGetSize(ORVHandle file, std::int64_t* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    struct stat status {};
    if (fstat(orvcore::descriptorFromFileHandle(file), &status) != 0) return orvcore::lastError();
    *out = status.st_size;
    return S_OK;
}
