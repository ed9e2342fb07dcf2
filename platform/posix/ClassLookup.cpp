#include "platform/posix/internal/ClassLookup.h"

#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/RawLock.h"
#include "platform/posix/internal/Results.h"
#include "platform/posix/internal/Store.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr ORVResult classNotRegistered = ORVMakeResult(0x80040154u);
constexpr ORVResult libraryNotRegistered = ORVMakeResult(0x800401F8u);
constexpr ORVResult damagedRegistration = systemResult(13);
constexpr ORVResult noLibrary = systemResult(193);

constexpr ENUM_ORV_HKEY classes = ORV_HKEY_CLASSES_64;
constexpr int guidUnits = 38;

/// The name by which a target is remembered with the values of its key. No value's name has that
/// byte, which is none of UTF-8.
constexpr std::string_view targetName = "\xFF";

/// A library that was loaded, by the path that it is registered with. What a component has made may
/// be in use anywhere, so it stays for the life of the process, and so does its entry here.
struct Loaded {
    Loaded* next;
    ClassObjectEntry entry;

    /// Stands behind the record, with its terminator.
    char16_t* path() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
};
constinit std::atomic<Loaded*> s_loaded{nullptr};

ClassObjectEntry findLoaded(std::u16string_view path) noexcept
{
    for (Loaded* each = s_loaded.load(std::memory_order_acquire); each != nullptr;
         each = each->next) {
        if (path == each->path()) return each->entry;
    }
    return nullptr;
}

/// Without memory the library is just looked for again the next time.
void keepLoaded(std::u16string_view path, ClassObjectEntry entry) noexcept
{
    constinit static RawLock lock;
    const RawGuard guard(lock);
    if (findLoaded(path) != nullptr) return;
    void* const memory = allocateRaw(sizeof(Loaded) + (path.size() + 1) * sizeof(char16_t));
    if (memory == nullptr) return;
    auto* const loaded = new (memory) Loaded{s_loaded.load(std::memory_order_relaxed), entry};
    std::char_traits<char16_t>::copy(loaded->path(), path.data(), path.size() + 1);
    s_loaded.store(loaded, std::memory_order_release);
}

/// The system loads a library once, however many threads ask for it.
ORVResult load(const char16_t* path, ClassObjectEntry* out)
{
    NativePath native;
    // A relative path would mean another file in each folder.
    if (native.assign(path) < 0 || *native.get() != '/') return libraryNotFound;
    void* const library = ::dlopen(native.get(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library != nullptr) {
        *out = reinterpret_cast<ClassObjectEntry>(::dlsym(library, "ORVGetClassObject"));
        if (*out == nullptr) return symbolNotFound;
        keepLoaded(path, *out);
        return S_OK;
    }
    if (::access(native.get(), R_OK) == 0) return noLibrary;
    return errno == ENOENT || errno == ENOTDIR ? libraryNotFound : lastError();
}

/// Reads the default value of a key as text with a terminator.
ORVResult readText(Store& store, std::string_view key, char16_t* text, std::size_t units) noexcept
{
    return store.read(key, "", [&](const StoredValue& value) {
        const std::size_t size = value.bytes.size() / sizeof(char16_t);
        if (!value.isThere) return classNotRegistered;
        if (value.type != ORV_REG_STRING || size >= units) return damagedRegistration;
        std::memcpy(text, value.bytes.data(), size * sizeof(char16_t));
        text[size] = 0;
        return S_OK;
    });
}

ORVResult readClassId(Store& store, const StoreKey& progId, GUID* out) noexcept
{
    StoreText key;
    key.append(progId.text());
    key.appendFolded(u"\\CLSID");
    if (key.failed()) return E_OUTOFMEMORY;
    char16_t text[guidUnits + 2];
    const ORVResult result = readText(store, key.view(), text, guidUnits + 2);
    if (result < 0) return result;
    return ORVComGUIDFromString(text, out) < 0 ? damagedRegistration : S_OK;
}

ORVResult assignClassKey(const GUID& classId, StoreKey* out) noexcept
{
    char16_t path[64] = u"CLSID\\";
    ORVComStringFromGUID(classId, path + ORVStrLenW(path), guidUnits + 1);
    return out->assign(classes, path);
}

ORVResult readPath(Store& store, const GUID& classId, char16_t* path) noexcept
{
    StoreKey classKey;
    const ORVResult result = assignClassKey(classId, &classKey);
    if (result < 0) return result;
    StoreText key;
    key.append(classKey.text());
    key.appendFolded(u"\\InprocServer32");
    return key.failed() ? E_OUTOFMEMORY : readText(store, key.view(), path, PATH_MAX);
}

/// A ProgID that no key can have is not registered.
ORVResult assignProgId(const char16_t* progId, StoreKey* out) noexcept
{
    const ORVResult result = out->assign(classes, progId);
    return result == nameTooLong ? classNotRegistered : result;
}

/// The store, for one look-up.
class Lookup {
public:
    Lookup() noexcept : m_store(false) {}

    /// Negative where there is no store to be asked; without a file nothing is registered.
    ORVResult result() const noexcept
    {
        return m_store.result() == notFound ? classNotRegistered : m_store.result();
    }
    Store& store() const noexcept { return *m_store; }

    /// Tells what the look-up gave. Only the store's own failures say something about it.
    ORVResult end(ORVResult result) noexcept
    {
        const bool isAnswer = result == classNotRegistered || result == libraryNotRegistered ||
                              result == damagedRegistration;
        m_store.end(isAnswer ? S_OK : result);
        return result;
    }

private:
    StoreLease m_store;
};

bool recall(Store& store, const StoreKey& key, ClassTarget* out) noexcept
{
    StoredValue known;
    if (!store.memory().find(key.text(), targetName, &known)) return false;
    std::memcpy(out, known.bytes.data(), sizeof *out);
    return true;
}

void remember(Store& store, const StoreKey& key, const ClassTarget& target) noexcept
{
    const std::string_view bytes(reinterpret_cast<const char*>(&target), sizeof target);
    store.memory().add(key.text(), targetName, {true, ORV_REG_BINARY, bytes});
}

/// Finds the target of the class key or ProgID `key`; `findClass` gives the class identifier. What
/// has been found is remembered until the store changes.
template <class FindClass>
ORVResult findTarget(const StoreKey& key, FindClass findClass, ClassTarget* out)
{
    char16_t path[PATH_MAX];
    Lookup lookup;
    if (lookup.result() < 0) return lookup.result();
    Store& store = lookup.store();
    if (recall(store, key, out)) return lookup.end(S_OK);
    const std::uint32_t age = store.memory().age();
    ORVResult result = findClass(store, &out->classId);
    if (result >= 0) result = readPath(store, out->classId, path);
    if (result >= 0) out->entry = findLoaded(path);
    const bool isFound = result >= 0 && out->entry != nullptr;
    // Two values, both read before the next change.
    if (isFound && store.memory().age() == age) remember(store, key, *out);
    result = lookup.end(result);
    return result < 0 || isFound ? result : load(path, &out->entry);
}

} // namespace

ORVResult findByProgId(const char16_t* progId, ClassTarget* out)
{
    StoreKey key;
    const ORVResult result = assignProgId(progId, &key);
    if (result < 0) return result;
    bool isKnown = false;
    const ORVResult found = findTarget(
        key,
        [&](Store& store, GUID* classId) {
            const ORVResult read = readClassId(store, key, classId);
            isKnown = read >= 0;
            return read;
        },
        out);
    return found == classNotRegistered && isKnown ? libraryNotRegistered : found;
}

ORVResult findByClassId(const GUID& classId, ClassTarget* out)
{
    StoreKey key;
    const ORVResult result = assignClassKey(classId, &key);
    if (result < 0) return result;
    return findTarget(
        key,
        [&](Store&, GUID* found) {
            *found = classId;
            return S_OK;
        },
        out);
}

ORVResult findClassId(const char16_t* progId, GUID* out) noexcept
{
    StoreKey key;
    const ORVResult result = assignProgId(progId, &key);
    if (result < 0) return result;
    Lookup lookup;
    if (lookup.result() < 0) return lookup.result();
    return lookup.end(readClassId(lookup.store(), key, out));
}

} // namespace orvcore
