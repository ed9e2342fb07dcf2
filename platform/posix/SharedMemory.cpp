#include "platform/orvcore.h"
#include "platform/posix/internal/NamedFile.h"
#include "platform/posix/internal/Record.h"

#include <cstddef>
#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr std::uint32_t createWhereAbsent = 0x100;
constexpr std::uint32_t accessRead = 0x80000000u;
constexpr std::uint32_t accessWrite = 0x40000000u;

struct SharedMemory {
    ORVResult open(const char* name, bool create, mode_t permissions) noexcept
    {
        const bool anonymous = name == nullptr || *name == 0;
        ORVResult result = anonymous ? file.openAnonymous("orv-shm-")
                                     : file.open("orv-shm-", name, create, permissions);
        if (result >= 0) result = file.isNew() ? file.reserve(size) : checkSize();
        if (result >= 0 && !anonymous) file.unlock();
        return result;
    }

    /// Memory beyond the object would be there, but kill whoever touches it.
    ORVResult checkSize() const noexcept
    {
        std::uint64_t present = 0;
        const ORVResult result = file.contentSize(&present);
        if (result < 0) return result;
        return size <= present ? S_OK : E_INVALIDARG;
    }

    NamedFile file;
    std::size_t size = 0;
};

/// Stands on a page of its own before each mapping and tells what to unmap. Nobody can write there,
/// so that a stray write below the memory is found out.
struct MappingHeader {
    std::size_t wholeSize;
};

std::size_t pageSize() noexcept
{
    return static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

ORVResult attach(const SharedMemory& memory, int protection, void** out) noexcept
{
    const std::size_t page = pageSize();
    const std::size_t whole = page + memory.size;
    void* const start =
        ::mmap(nullptr, whole, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) return lastError();

    static_cast<MappingHeader*>(start)->wholeSize = whole;
    char* const base = static_cast<char*>(start) + page;
    const auto offset = static_cast<off_t>(NamedFile::contentOffset());
    if (::mprotect(start, page, PROT_READ) != 0 ||
        ::mmap(base, memory.size, protection, MAP_SHARED | MAP_FIXED, memory.file.descriptor(),
               offset) == MAP_FAILED) {
        const ORVResult result = lastError();
        ::munmap(start, whole);
        return result;
    }
    *out = base;
    return S_OK;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVSharedMemOpen(const char* name, std::uint32_t flags, std::uint32_t permissions,
                           std::uint32_t size, ORVHandle* out) noexcept
{
    if (size == 0) return E_INVALIDARG;
    ORVResult result = createRecord<SharedMemory>(out);
    if (result < 0) return result;

    auto* const record = recordOf<SharedMemory>(*out);
    record->size = size;
    constexpr mode_t allPermissions = 0777;
    result = record->open(name, (flags & createWhereAbsent) != 0, permissions & allPermissions);
    if (result >= 0) return S_OK;
    destroyRecord(record);
    *out = ORV_NO_HANDLE;
    return result;
}

ORVResult ORVSharedMemAttach(ORVHandle memory, std::uint32_t access, void** out) noexcept
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    const auto* const record = recordOf<SharedMemory>(memory);
    if (record == nullptr) return invalidHandle;
    switch (access) {
    case accessRead: return attach(*record, PROT_READ, out);
    case accessRead | accessWrite: return attach(*record, PROT_READ | PROT_WRITE, out);
    default: return E_INVALIDARG;
    }
}

ORVResult ORVSharedMemDetach(void* base) noexcept
{
    if (base == nullptr) return E_INVALIDARG;
    void* const start = static_cast<char*>(base) - pageSize();
    const std::size_t whole = static_cast<const MappingHeader*>(start)->wholeSize;
    return ::munmap(start, whole) == 0 ? S_OK : lastError();
}

ORVResult ORVSharedMemClose(ORVHandle memory) noexcept
{
    auto* const record = recordOf<SharedMemory>(memory);
    if (record == nullptr) return invalidHandle;
    destroyRecord(record);
    return S_OK;
}
