#include "platform/store.h"

#include "platform/posix/internal/NarrowText.h"
#include "platform/posix/internal/RawLock.h"
#include "platform/posix/internal/Results.h"
#include "platform/posix/internal/Store.h"
#include "platform/threads.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include <sys/stat.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr ORVResult notSupported = systemResult(50);

/// The connections that are open and not in use; as many threads at once cost no opening.
constexpr int keptStores = 4;
constinit RawLock s_lock;
constinit Store* s_kept[keptStores] = {};
constinit int s_count = 0;
constinit pid_t s_process = 0;      ///< the process that opened them
constinit std::uint32_t s_mark = 0; ///< and its mark

bool isForked() noexcept
{
    const std::uint32_t mark = processMark();
    if (s_process == 0 || (mark != 0 && mark == s_mark)) return false;
    return s_process != ::getpid();
}

/// Null where none is kept. False in a forked child.
bool takeStore(Store** out) noexcept
{
    const RawGuard guard(s_lock);
    if (isForked()) return false;
    *out = s_count > 0 ? s_kept[--s_count] : nullptr;
    return true;
}

void close(Store* store) noexcept
{
    store->~Store();
    deallocateRaw(store);
}

void keep(Store* store) noexcept
{
    {
        const RawGuard guard(s_lock);
        if (s_count < keptStores) {
            s_kept[s_count++] = store;
            return;
        }
    }
    close(store);
}

ORVResult openStore(const char* file, bool creates, Store** out) noexcept
{
    void* const memory = allocateRaw(sizeof(Store));
    if (memory == nullptr) return E_OUTOFMEMORY;
    {
        const RawGuard guard(s_lock);
        s_process = ::getpid();
        s_mark = processMark();
    }
    auto* const store = new (memory) Store;
    const ORVResult result = store->open(file, creates);
    if (result < 0) {
        close(store);
        return result;
    }
    *out = store;
    return S_OK;
}

/// Makes the folders above `file`, as far as they are missing; opening the file tells the rest.
void makeFolders(const char* file) noexcept
{
    char folder[PATH_MAX];
    for (std::size_t i = 0; file[i] != 0 && i < sizeof folder; ++i) {
        folder[i] = file[i];
        if (i == 0 || file[i] != '/') continue;
        folder[i] = 0;
        ::mkdir(folder, 0700);
        folder[i] = '/';
    }
}

const char* variable(const char* name) noexcept
{
    const char* const value = std::getenv(name);
    return value == nullptr || *value == 0 ? nullptr : value;
}

} // namespace

const char* storeFile(char* buffer, std::size_t size) noexcept
{
    if (const char* const given = variable("ORV_REGISTRY")) return given;
    const char* below = "/orv/registry.db";
    const char* folder = variable("XDG_CONFIG_HOME");
    if (folder == nullptr) {
        folder = variable("HOME");
        below = "/.config/orv/registry.db";
    }
    if (folder == nullptr || std::strlen(folder) + std::strlen(below) >= size) return nullptr;
    std::snprintf(buffer, size, "%s%s", folder, below);
    return buffer;
}

std::int32_t storePath(char16_t* buffer, std::int32_t size) noexcept
{
    char bytes[PATH_MAX];
    const char* const file = storeFile(bytes, sizeof bytes);
    return file == nullptr ? 0 : std::max(widenExactly(file, buffer, size), 0);
}

StoreLease::StoreLease(bool creates) noexcept
{
    char buffer[PATH_MAX];
    const char* const file = storeFile(buffer, sizeof buffer);
    if (file == nullptr) {
        m_result = pathNotFound;
        return;
    }
    if (!takeStore(&m_store)) {
        m_result = notSupported;
        return;
    }
    if (m_store != nullptr) {
        if (m_store->isAt(file)) return;
        close(m_store);
        m_store = nullptr;
    }
    if (creates && file == buffer) makeFolders(file);
    m_result = openStore(file, creates, &m_store);
}

StoreLease::~StoreLease()
{
    if (m_store != nullptr) close(m_store);
}

ORVResult StoreLease::end(ORVResult result) noexcept
{
    const bool isSound = result >= 0 || result == notFound || result == bufferTooSmall;
    if (isSound) {
        keep(m_store);
        m_store = nullptr;
    }
    return result;
}

} // namespace orvcore
