#include "platform/posix/internal/NamedFile.h"

#include "platform/posix/internal/Results.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvcore {
namespace {

// The bytes that the locks stand on; they need not exist in the file.
constexpr off_t openersByte = 0;
constexpr off_t shortLockByte = 1;
constexpr off_t firstClaimByte = 16;

constexpr ORVResult tryAgain = 1;

// A name is one of these and 32 hexadecimal digits.
constexpr const char* kinds[] = {"orv-sem-", "orv-shm-"};
constexpr std::size_t digits = 32;

/// What stands at the start of the file. A longer name is told by its hash and its length.
struct Header {
    std::uint64_t length;
    char name[2040];

    explicit Header(const char* text) noexcept : length(std::strlen(text)), name()
    {
        std::memcpy(name, text, std::min<std::size_t>(length, sizeof name));
    }
};

bool lockByte(int descriptor, int command, short type, off_t byte) noexcept
{
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = byte;
    range.l_len = 1;
    int result = 0;
    do {
        result = ::fcntl(descriptor, command, &range);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool isLockedByAnother(int descriptor, off_t byte) noexcept
{
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = byte;
    range.l_len = 1;
    // When in doubt, the other one lives.
    return ::fcntl(descriptor, F_OFD_GETLK, &range) != 0 || range.l_type != F_UNLCK;
}

/// The folder that lives in memory, or where there is none, the one for temporary files, which is
/// the same in all processes whatever their environment.
const char* sharedFolder() noexcept
{
    static constexpr char inMemory[] = "/dev/shm";
    return ::access(inMemory, R_OK | W_OK | X_OK) == 0 ? inMemory : "/tmp";
}

/// Whether `path` leads to the open file.
bool leadsTo(const char* path, int descriptor) noexcept
{
    struct stat named {};
    struct stat opened {};
    return ::lstat(path, &named) == 0 && ::fstat(descriptor, &opened) == 0 &&
           named.st_ino == opened.st_ino && named.st_dev == opened.st_dev;
}

/// Removes the file at `path`, which is open with the short lock held, if nobody has it open.
void removeIfAbandoned(const char* path, int descriptor) noexcept
{
    if (lockByte(descriptor, F_OFD_SETLK, F_WRLCK, openersByte) && leadsTo(path, descriptor)) {
        ::unlink(path);
    }
}

/// Whether a file of that name can be one of ours.
bool isNameOfOurs(const char* name) noexcept
{
    return std::any_of(std::begin(kinds), std::end(kinds), [name](const char* kind) {
        const std::size_t start = std::strlen(kind);
        return std::strncmp(name, kind, start) == 0 && std::strlen(name) == start + digits &&
               std::strspn(name + start, "0123456789abcdef") == digits;
    });
}

void sweepFile(const char* path) noexcept
{
    const int descriptor = ::open(path, O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) return;
    struct stat status {};
    const bool mine = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                      status.st_uid == ::geteuid();
    if (mine && !isLockedByAnother(descriptor, openersByte) &&
        lockByte(descriptor, F_OFD_SETLK, F_WRLCK, shortLockByte)) {
        removeIfAbandoned(path, descriptor);
    }
    ::close(descriptor);
}

/// Removes what killed processes have left behind. Nobody is there to do it at their death, so
/// whoever creates or removes a file does it for all.
void sweep() noexcept
{
    const char* const folder = sharedFolder();
    DIR* const directory = ::opendir(folder);
    if (directory == nullptr) return;
    while (const dirent* const entry = ::readdir(directory)) {
        if (!isNameOfOurs(entry->d_name)) continue;
        char path[64];
        const int length = std::snprintf(path, sizeof path, "%s/%s", folder, entry->d_name);
        if (length > 0 && static_cast<std::size_t>(length) < sizeof path) sweepFile(path);
    }
    ::closedir(directory);
}

} // namespace

std::uint64_t NamedFile::hashOf(const char* name, std::uint64_t seed) noexcept
{
    std::uint64_t hash = 0xCBF29CE484222325u ^ seed;
    for (; *name != 0; ++name) {
        hash = (hash ^ static_cast<unsigned char>(*name)) * 0x100000001B3u;
    }
    return hash;
}

std::size_t NamedFile::contentOffset() noexcept
{
    return std::max<std::size_t>(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)), sizeof(Header));
}

ORVResult NamedFile::open(const char* kind, const char* name, bool create,
                          mode_t permissions) noexcept
{
    const auto user = static_cast<unsigned long long>(::geteuid());
    const std::uint64_t high = hashOf(name, user);
    const std::uint64_t low = hashOf(name, high + 1);
    std::snprintf(m_path, sizeof m_path, "%s/%s%016llx%016llx", sharedFolder(), kind,
                  static_cast<unsigned long long>(high), static_cast<unsigned long long>(low));

    ORVResult result = tryAgain;
    while (result == tryAgain) {
        result = openPath(create, permissions);
        if (result < 0) return result;
        result = settle(create);
        if (result != S_OK) forget();
    }
    if (result < 0) return result;

    result = m_isNew ? writeName(name) : checkName(name);
    if (result < 0) close();
    if (m_isNew) sweep();
    return result;
}

ORVResult NamedFile::openPath(bool create, mode_t permissions) noexcept
{
    const int creation = create ? O_CREAT : 0;
    m_descriptor = ::open(m_path, O_RDWR | O_CLOEXEC | O_NOFOLLOW | creation, permissions);
    if (m_descriptor < 0) return lastError();
    m_process = ::getpid();

    struct stat status {};
    if (::fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_uid == ::geteuid()) {
        return S_OK;
    }
    forget();
    return accessDenied;
}

/// Takes the short lock and finds out what has been opened; a result of 1 asks for another try.
ORVResult NamedFile::settle(bool create) noexcept
{
    lock();
    struct stat status {};
    if (::fstat(m_descriptor, &status) != 0) return lastError();
    if (status.st_nlink == 0) return tryAgain;

    m_isNew = lockByte(m_descriptor, F_OFD_SETLK, F_WRLCK, openersByte);
    if (m_isNew && status.st_size > 0) {
        // Left behind by the dead. Others may have it mapped still, so it is not written over.
        if (leadsTo(m_path, m_descriptor)) ::unlink(m_path);
        return create ? tryAgain : notFound;
    }
    if (m_isNew && !create) return notFound;
    return lockByte(m_descriptor, F_OFD_SETLK, F_RDLCK, openersByte) ? S_OK : lastError();
}

ORVResult NamedFile::openAnonymous(const char* kind) noexcept
{
    m_descriptor = ::memfd_create(kind, MFD_CLOEXEC);
    if (m_descriptor < 0) return lastError();
    m_process = ::getpid();
    m_isNew = true;
    return S_OK;
}

ORVResult NamedFile::writeName(const char* name) noexcept
{
    const Header header(name);
    const ORVResult result = reserve(0);
    if (result < 0) return result;
    const ssize_t written = ::pwrite(m_descriptor, &header, sizeof header, 0);
    return written == static_cast<ssize_t>(sizeof header) ? S_OK : lastError();
}

ORVResult NamedFile::checkName(const char* name) const noexcept
{
    const Header wanted(name);
    Header header("");
    const ssize_t count = ::pread(m_descriptor, &header, sizeof header, 0);
    const bool equal = count == static_cast<ssize_t>(sizeof header) &&
                       header.length == wanted.length &&
                       std::memcmp(header.name, wanted.name, sizeof header.name) == 0;
    return equal ? S_OK : E_FAIL;
}

ORVResult NamedFile::reserve(std::size_t size) noexcept
{
    // Room that is only promised would be missed at a write into the mapping, which kills.
    int error = 0;
    do {
        error = ::posix_fallocate(m_descriptor, 0, static_cast<off_t>(contentOffset() + size));
    } while (error == EINTR);
    return ORVResultFromNative(error);
}

ORVResult NamedFile::contentSize(std::uint64_t* out) const noexcept
{
    struct stat status {};
    if (::fstat(m_descriptor, &status) != 0) return lastError();
    const auto size = static_cast<std::uint64_t>(status.st_size);
    *out = size - std::min<std::uint64_t>(size, contentOffset());
    return S_OK;
}

bool NamedFile::isOwn() const noexcept
{
    return m_process == ::getpid();
}

void NamedFile::lock() noexcept
{
    lockByte(m_descriptor, F_OFD_SETLKW, F_WRLCK, shortLockByte);
}

bool NamedFile::tryLock() noexcept
{
    return lockByte(m_descriptor, F_OFD_SETLK, F_WRLCK, shortLockByte);
}

void NamedFile::unlock() noexcept
{
    lockByte(m_descriptor, F_OFD_SETLK, F_UNLCK, shortLockByte);
}

bool NamedFile::claim(std::uint32_t index) noexcept
{
    return lockByte(m_descriptor, F_OFD_SETLK, F_WRLCK, firstClaimByte + index);
}

bool NamedFile::isClaimed(std::uint32_t index) const noexcept
{
    return isLockedByAnother(m_descriptor, firstClaimByte + index);
}

void NamedFile::close() noexcept
{
    if (m_descriptor < 0) return;
    if (m_path[0] != 0 && isOwn()) {
        lock();
        removeIfAbandoned(m_path, m_descriptor);
        const bool removed = !leadsTo(m_path, m_descriptor);
        // A child between fork and exec may share the locks; they end here all the same.
        struct flock everything {};
        everything.l_type = F_UNLCK;
        everything.l_whence = SEEK_SET;
        ::fcntl(m_descriptor, F_OFD_SETLK, &everything);
        if (removed) sweep();
    }
    forget();
}

void NamedFile::forget() noexcept
{
    ::close(m_descriptor);
    m_descriptor = -1;
}

} // namespace orvcore
