#include "platform/orvcore.h"

#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/RawLock.h"
#include "platform/posix/internal/Results.h"

#include <atomic>
#include <cerrno>
#include <cxxabi.h>
#include <new>
#include <string>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr ORVResult classNotRegistered = ORVMakeResult(0x80040154u);
constexpr ORVResult libraryNotRegistered = ORVMakeResult(0x800401F8u);
constexpr ORVResult nonsense = ORVMakeResult(0x8000FFFFu);
constexpr ORVResult damagedRegistration = systemResult(13);
constexpr ORVResult noLibrary = systemResult(193);
constexpr ORVResult goingDown = systemResult(1115);

/// {00000001-0000-0000-C000-000000000046}
constexpr GUID classFactoryId{1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constinit std::atomic<bool> s_isGoingDown{false};

/// What a component exports as ORVGetClassObject.
using ClassObjectEntry = ORVResult (*)(const GUID& classId, const GUID& iid, void** out);

/// The slots of a class factory. A call through an abstract class would let the compiler reason
/// about who implements it; nobody here does.
struct FactorySlots {
    ORVResult (*queryInterface)(void* factory, const GUID& iid, void** out);
    std::uint32_t (*addRef)(const void* factory);
    std::uint32_t (*release)(const void* factory);
    ORVResult (*createInstance)(const void* factory, void* outer, const GUID& iid, void** out);
};

/// Calls into a component and keeps what it throws on its side, the unwinding of a cancelled
/// thread excepted, which nobody may stop.
template <class Call>
ORVResult acrossBorder(Call call)
{
    try {
        return call();
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

/// One count of a class factory.
class Factory {
public:
    explicit Factory(void* factory) noexcept : m_factory(factory) {}
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;
    ~Factory()
    {
        acrossBorder([this]() -> ORVResult {
            slots().release(m_factory);
            return S_OK;
        });
    }

    ORVResult createInstance(void* outer, const GUID& iid, void** out) const
    {
        return acrossBorder([&] { return slots().createInstance(m_factory, outer, iid, out); });
    }

private:
    const FactorySlots& slots() const noexcept
    {
        return **static_cast<const FactorySlots* const*>(m_factory);
    }

    void* m_factory;
};

/// The path of a key that is put together of parts; a name that is too long is not registered.
class KeyPath {
public:
    bool append(std::u16string_view part) noexcept
    {
        if (part.size() >= room - m_size) return false;
        part.copy(m_units + m_size, part.size());
        m_size += part.size();
        m_units[m_size] = 0;
        return true;
    }
    const char16_t* get() const noexcept { return m_units; }

private:
    static constexpr std::size_t room = 1024;
    char16_t m_units[room] = {};
    std::size_t m_size = 0;
};

/// Reads the default value of a key below the root of the classes, with a terminator.
ORVResult readText(const KeyPath& key, char16_t* text, std::uint32_t units) noexcept
{
    std::uint32_t type = 0;
    std::uint32_t size = (units - 1) * sizeof(char16_t);
    const ORVResult result =
        ORVRegistryGetValue(ORV_HKEY_CLASSES_64, key.get(), u"", &type, text, &size);
    if (result == notFound || result == nameTooLong) return classNotRegistered;
    if (result < 0 && result != bufferTooSmall) return result;
    if (result == bufferTooSmall || type != ORV_REG_STRING) return damagedRegistration;
    text[size / sizeof(char16_t)] = 0;
    return S_OK;
}

ORVResult findClassId(const char16_t* progId, GUID* out) noexcept
{
    KeyPath key;
    if (!key.append(progId) || !key.append(u"\\CLSID")) return classNotRegistered;
    char16_t text[64];
    const ORVResult result = readText(key, text, 64);
    if (result < 0) return result;
    return ORVComGUIDFromString(text, out) < 0 ? damagedRegistration : S_OK;
}

ORVResult findLibrary(const GUID& classId, char16_t* path, std::uint32_t units) noexcept
{
    char16_t guid[39];
    ORVComStringFromGUID(classId, guid, 39);
    KeyPath key;
    key.append(u"CLSID\\");
    key.append(guid);
    key.append(u"\\InprocServer32");
    return readText(key, path, units);
}

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
ORVResult load(const char16_t* path, ClassObjectEntry* out) noexcept
{
    NativePath native;
    // A relative path would mean another file in each folder.
    if (native.assign(path) < 0 || *native.get() != '/') return libraryNotFound;
    void* const library = ::dlopen(native.get(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library != nullptr) {
        *out = reinterpret_cast<ClassObjectEntry>(::dlsym(library, "ORVGetClassObject"));
        return *out == nullptr ? symbolNotFound : S_OK;
    }
    if (::access(native.get(), R_OK) == 0) return noLibrary;
    return errno == ENOENT || errno == ENOTDIR ? libraryNotFound : lastError();
}

ORVResult findEntry(const GUID& classId, ClassObjectEntry* out) noexcept
{
    char16_t path[PATH_MAX];
    ORVResult result = findLibrary(classId, path, PATH_MAX);
    if (result < 0) return result;
    *out = findLoaded(path);
    if (*out != nullptr) return S_OK;
    result = load(path, out);
    if (result >= 0) keepLoaded(path, *out);
    return result;
}

ORVResult getFactory(ClassObjectEntry entry, const GUID& classId, void** out)
{
    const ORVResult result = acrossBorder([&] { return entry(classId, classFactoryId, out); });
    return result >= 0 && *out == nullptr ? nonsense : result;
}

ORVResult createObject(const GUID& classId, void* outer, const GUID& iid, void** out)
{
    ClassObjectEntry entry = nullptr;
    ORVResult result = findEntry(classId, &entry);
    void* made = nullptr;
    if (result >= 0) result = getFactory(entry, classId, &made);
    if (result < 0) return result;

    const Factory factory(made);
    result = factory.createInstance(outer, iid, out);
    if (result >= 0) return *out == nullptr ? nonsense : S_OK;
    *out = nullptr;
    return result;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVModuleSetInitialized(const void*, std::int32_t up) noexcept
{
    s_isGoingDown = up == 0;
    return S_OK;
}

ORVResult ORVModuleComCreateObject(const void*, const GUID& classId, void* outer, const GUID& iid,
                                   void** out)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return s_isGoingDown ? goingDown : createObject(classId, outer, iid, out);
}

ORVResult ORVComCreateObjectByProgID(const char16_t* progId, void* outer, const GUID& iid,
                                     void** out)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    GUID classId{};
    ORVResult result = ORVComClassIDFromProgID(progId, &classId);
    if (result < 0) return result;
    result = ORVModuleComCreateObject(nullptr, classId, outer, iid, out);
    return result == classNotRegistered ? libraryNotRegistered : result;
}

ORVResult ORVComClassIDFromProgID(const char16_t* progId, GUID* out) noexcept
{
    if (progId == nullptr || out == nullptr) return E_POINTER;
    return findClassId(progId, out);
}
