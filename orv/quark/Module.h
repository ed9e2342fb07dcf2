#pragma once

#include "orv/CoreAllocated.h"
#include "orv/quark/ClassData.h"
#include "orv/quark/ObjectCounter.h"
#include "orv/sync/Mutex.h"

#include <cstdint>

namespace orv::quark {

/// A loaded library, named by any address within it, as that of its table of classes.
struct ModuleHandle {
    const void* address;
};

/// Serves the table of classes of a component: gives out class factories, writes and removes the
/// registration, and counts what keeps the component in use.
///
/// A component has one, a DllModule as a rule, which stands in static storage. The table is
/// borrowed and must outlive the module.
///
/// Threads: any, but for the destructor, which releases the class factories. It throws
/// ResultException where the lock cannot be destroyed.
class ORV_API Module : public ObjectCounter, public CoreAllocated {
public:
    /// Throws ResultException where there is no lock to be had.
    explicit Module(ClassData* classes);
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    virtual ~Module() noexcept(false);

    /// 0 when no object of the module has an owner and no server lock is held, else 1. A class
    /// factory of classRow() is such an object, and the module keeps it once it is made.
    virtual Result CanUnloadNow();

    /// The class factory of `clsid`, by its interface `iid`; made once, with the first request.
    /// CLASS_E_CLASSNOTAVAILABLE where the table lacks the class, E_POINTER for a null `out`.
    virtual Result GetClassObject(const GUID& clsid, const GUID& iid, void** out);

    /// Writes the registration of all classes, in the order of the table. `path` is the absolute
    /// path of the component's file. The first failure ends it, and what is written stays.
    virtual Result RegisterServer(const char16_t* path);

    /// Removes the registration of all classes. The first failure ends it, as with 0x80070002 the
    /// first class that is not registered; what is removed is gone.
    virtual Result UnregisterServer();

    /// Registers the file that the library was loaded from. E_FAIL where there is none.
    Result RegisterServer(ModuleHandle module);

    /// One owned object more, or one server lock; the new number.
    std::uint32_t AddRef() noexcept { return addObject(); }
    /// One less; the new number. At 0 nothing happens.
    std::uint32_t Release() noexcept { return removeObject(); }
    /// Owned objects and server locks, a snapshot.
    std::uint32_t GetRefCount() const noexcept { return objectCount(); }

protected:
    /// Writes the keys of one class, in the 64-bit view of the classes. With {guid} for its
    /// identifier, the default values are:
    ///
    /// | Key | Value |
    /// |---|---|
    /// | ProgID | the description |
    /// | ProgID\\CLSID | {guid} |
    /// | CLSID\\{guid} | the description |
    /// | CLSID\\{guid}\\ProgID | the ProgID |
    /// | version-independent ProgID | the description |
    /// | version-independent ProgID\\CLSID | {guid} |
    /// | version-independent ProgID\\CurVer | the ProgID |
    /// | CLSID\\{guid}\\VersionIndependentProgID | the version-independent ProgID |
    ///
    /// A ProgID that the class lacks leaves its keys out; a description counts as empty.
    virtual Result RegisterClassEntry(const ClassData* row, const char16_t* path);

    /// Deletes the keys of one class with all below them: the ProgID's, that of the class
    /// identifier, the version-independent ProgID's. Ends with the first that cannot be deleted.
    virtual Result UnregisterClassEntry(const ClassData* row);

    /// GetClassObject() for one row; CLASS_E_CLASSNOTAVAILABLE where it is another class's.
    virtual Result TryGetClassObject(const GUID& clsid, const GUID& iid, void** out,
                                     ClassData* row);

private:
    IORVUnknown* makeFactory(ClassData& row, Result* result);

    ClassData* m_classes;
    sync::Mutex m_lock;
};

} // namespace orv::quark
