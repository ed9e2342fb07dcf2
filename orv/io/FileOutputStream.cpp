#include "orv/io/FileOutputStream.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/io/Block.h"
#include "orv/sync/Lock.h"
#include "orv/util/FilePath.h"
#include "platform/files.h"

#include <exception>

namespace orv::io {

namespace {

/// Holds a file lock for a scope; null holds nothing.
class FileLockHold {
public:
    explicit FileLockHold(ipc::SemaphoreR* lock) : m_lock(lock)
    {
        if (m_lock != nullptr) m_lock->wait();
    }
    FileLockHold(const FileLockHold&) = delete;
    FileLockHold& operator=(const FileLockHold&) = delete;
    ~FileLockHold() noexcept(false)
    {
        if (m_lock == nullptr) return;
        try {
            m_lock->signal();
        } catch (...) {
            if (std::uncaught_exceptions() == m_unwinding) throw;
        }
    }

private:
    ipc::SemaphoreR* m_lock;
    int m_unwinding = std::uncaught_exceptions();
};

/// Leaves the length of the file in the lock while a write is under way.
class LengthNote {
public:
    LengthNote(ipc::SemaphoreR* lock, std::int64_t length) : m_lock(lock)
    {
        if (m_lock != nullptr) m_lock->noteFileSize(length);
    }
    LengthNote(const LengthNote&) = delete;
    LengthNote& operator=(const LengthNote&) = delete;
    ~LengthNote()
    {
        if (m_lock != nullptr) m_lock->noteFileSize(-1);
    }

private:
    ipc::SemaphoreR* m_lock;
};

/// Cuts off what a writer that died within its write has left behind the noted length.
void cutTornRest(ipc::SemaphoreR& lock, std::uint64_t file)
{
    const std::int64_t noted = lock.recallFileSize();
    if (noted < 0) return;
    std::int64_t size = 0;
    throwIfFailed(ORVFileGetSize(file, &size));
    if (size > noted) throwIfFailed(orvcore::truncateFile(file, noted));
    lock.noteFileSize(-1);
}

/// The name by which the writers of a path find their lock.
Block<char> lockName(const String& path)
{
    String name(String::AcquireCopy, path);
    name.translate(u'\\', u'/');
    // A unit takes three bytes in UTF-8 and less in the code pages.
    const std::int64_t room = std::int64_t{name.getLength()} * 3 + 10;
    if (room > INT32_MAX) throwOutOfMemory();
    Block<char> bytes = allocateBlock<char>(static_cast<std::int32_t>(room));
    const std::int32_t length =
        ORVUnicodeToAnsi(bytes.get(), name.getData(), static_cast<std::int32_t>(room));
    if (length == 0 || length == -1) throwResult(E_FAIL);
    return bytes;
}

} // namespace

FileOutputStream::FileOutputStream(const String& path, std::uint32_t mode) : m_mode(mode)
{
    init(path);
}

FileOutputStream::FileOutputStream(const util::FilePath& path, std::uint32_t mode)
    : FileOutputStream(path.toString(), mode)
{
}

FileOutputStream::FileOutputStream(const String& path, bool append)
    : FileOutputStream(path, append ? ATEND : TRUNC)
{
}

FileOutputStream::FileOutputStream(const util::FilePath& path, bool append)
    : FileOutputStream(path.toString(), append)
{
}

FileOutputStream::FileOutputStream(std::uint64_t handle, bool ownsHandle)
    : m_handle(handle), m_ownsHandle(ownsHandle)
{
}

FileOutputStream::~FileOutputStream() noexcept(false)
{
    closeHandle();
}

void FileOutputStream::init(const String& path)
{
    if (path.isEmpty()) throw InvalidPathException();
    m_path = path;
    if ((m_mode & (APPEND | LOCK | KEEPCLOSED)) != 0) m_mutex = makeReference<sync::Mutex>();
    if ((m_mode & (APPEND | LOCK)) != 0) {
        m_fileLock = makeReference<ipc::SemaphoreR>(lockName(path).get(), 1u, m_mutex.get());
    }
    m_handle = openFile(m_path, m_mode);
    if (keepsClosed()) closeHandle();
}

std::uint64_t FileOutputStream::openFile(const String& path, std::uint32_t mode)
{
    constexpr std::uint32_t forWriting = 0x40000100; // made where it is not there
    constexpr std::uint32_t appending = 0x8;
    constexpr std::uint32_t truncating = 0x200;
    constexpr std::uint32_t ownerOnly = 0700;
    std::uint32_t flags = forWriting;
    if ((mode & ATEND) != 0) flags |= appending;
    if ((mode & TRUNC) != 0) flags |= truncating;
    ORVHandle handle = ORV_NO_HANDLE;
    throwIfFailed(ORVFileOpen(path.getData(), flags, ownerOnly, &handle));
    return handle;
}

sync::Mutex* FileOutputStream::closedModeLock() const noexcept
{
    return keepsClosed() ? m_mutex.get() : nullptr;
}

/// Opens the file if it is closed. The truncation was the first opening's.
void FileOutputStream::reopen()
{
    if (m_handle == ORV_NO_HANDLE) m_handle = openFile(m_path, m_mode & ~TRUNC);
}

void FileOutputStream::write(const signed char* bytes, std::int32_t n)
{
    const sync::Lock inProcess(closedModeLock());
    const FileLockHold betweenProcesses(m_fileLock.get());
    if (keepsClosed()) reopen();
    writeBytes(bytes, n);
    if (keepsClosed()) flush();
}

void FileOutputStream::writeBytes(const signed char* bytes, std::int32_t n)
{
    if (m_fileLock) cutTornRest(*m_fileLock, m_handle);
    std::int64_t length = 0;
    if ((m_mode & APPEND) != 0) {
        throwIfFailed(orvcore::seekFileToEnd(m_handle, &length));
    } else if (m_fileLock) {
        throwIfFailed(ORVFileGetSize(m_handle, &length));
    }
    if (n < 1) return;
    const LengthNote note(m_fileLock.get(), length);
    std::int32_t written = 0;
    const Result result = orvcore::writeFile(m_handle, bytes, n, &written);
    if (failed(result) && written > 0 && !m_path.isEmpty()) {
        orvcore::takeBackFromFile(m_handle, written);
    }
    throwIfFailed(result);
}

void FileOutputStream::flush()
{
    const sync::Lock inProcess(closedModeLock());
    if (m_handle == ORV_NO_HANDLE) return;
    const Result result = orvcore::flushFile(m_handle);
    if (keepsClosed()) close();
    throwIfFailed(result);
}

void FileOutputStream::open()
{
    if (m_path.isEmpty()) throw InvalidPathException();
    const sync::Lock inProcess(closedModeLock());
    reopen();
}

void FileOutputStream::close()
{
    const sync::Lock inProcess(closedModeLock());
    closeHandle();
}

void FileOutputStream::closeHandle() noexcept
{
    if (!m_ownsHandle || m_handle == ORV_NO_HANDLE) return;
    if (ORVFileClose(m_handle) == S_OK) m_handle = ORV_NO_HANDLE;
}

std::int16_t FileOutputStream::is_open() const
{
    return m_handle != ORV_NO_HANDLE ? 1 : 0;
}

std::int64_t FileOutputStream::getSize()
{
    const sync::Lock inProcess(closedModeLock());
    if (keepsClosed()) reopen();
    std::int64_t size = 0;
    const Result result = ORVFileGetSize(m_handle, &size);
    if (keepsClosed()) close();
    throwIfFailed(result);
    return size;
}

std::uint64_t FileOutputStream::getHandle() const noexcept
{
    return keepsClosed() ? ORV_NO_HANDLE : m_handle;
}

void FileOutputStream::wait()
{
    if (m_fileLock) m_fileLock->wait();
}

void FileOutputStream::signal()
{
    if (m_fileLock) m_fileLock->signal();
}

} // namespace orv::io
