#pragma once

#include "orv/IORVUnknown.h"
#include "orv/quark/InterfaceData.h"
#include "orv/quark/ObjectCounter.h"

#include <atomic>
#include <cstddef>
#include <new>

namespace orv {

/// The root of reference counting.
///
/// A new object has count 0, wherever it stands. What goes to the heap is owned by Reference, or
/// by AddRef() and Release() in pairs, and the last Release() destroys it. An object on the stack,
/// in a member or in static storage keeps count 0 and must never get into a Reference, which would
/// free storage that was never allocated.
///
/// Copying takes the count and the module over as they stand; Object, the root of nearly all
/// classes, starts its copies with count 0.
///
/// Threads: the count may be changed by any thread; all else is the business of the class.
/// Destructors of some classes throw, so none is implicitly noexcept.
class ORV_API ComObject : public IORVUnknown {
public:
    ComObject() noexcept = default;
    ComObject(const ComObject& other) noexcept;
    ComObject& operator=(const ComObject& other) noexcept;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// Takes a count; the first one takes a count on the module, if there is one.
    std::uint32_t AddRef() const override
    {
        const std::uint32_t count = InternalAddRef();
        if (count == 1 && m_module != nullptr) m_module->addObject();
        return count;
    }

    /// Gives a count back. At 0 the module is let go and the object destroyed. A Release() too many
    /// on a living object wraps to 0xFFFFFFFF and destroys nothing.
    std::uint32_t Release() const override
    {
        const std::uint32_t count = InternalRelease();
        if (count != 0) return count;
        if (m_module != nullptr) m_module->removeObject();
        delete this;
        return 0;
    }

    virtual ~ComObject() noexcept(false) = default;

    /// Calls the virtual QueryInterface().
    Result NonDelegatingQueryInterface(const GUID& iid, void** out);

    /// Takes a count without module or life; returns the new one.
    std::uint32_t InternalAddRef() const noexcept
    {
        return m_count.fetch_add(1, std::memory_order_acquire) + 1;
    }

    /// Gives such a count back, never destroying the object; returns the new one.
    std::uint32_t InternalRelease() const noexcept
    {
        return m_count.fetch_sub(1, std::memory_order_acq_rel) - 1;
    }

    /// Takes the first count of an object that nobody else knows yet, without a locked operation.
    void InternalTakeFirst() const noexcept { m_count.store(1, std::memory_order_relaxed); }

    /// The count, a snapshot without any ordering.
    std::uint32_t GetRefCount() const noexcept { return m_count.load(std::memory_order_relaxed); }

    /// The count, read so that what former owners did before they let go is seen: a caller that
    /// owns one count and finds 1 may write.
    std::uint32_t GetSettledRefCount() const noexcept
    {
        return m_count.load(std::memory_order_acquire);
    }

    /// This object as the root interface, the pointer that stands for its identity.
    IORVUnknown* GetUnknown() noexcept { return this; }
    const IORVUnknown* GetUnknown() const noexcept { return this; }

    /// Refuses with CLASS_E_NOAGGREGATION: no class can be aggregated.
    Result SetOuterUnknown(IORVUnknown* outer) noexcept;

    /// Names the module (orv::quark::Module) that this object keeps alive while it has an owner.
    /// To be called before the first AddRef(); takes no count by itself.
    void SetComModule(quark::ObjectCounter* module) noexcept { m_module = module; }

    /// The interfaces of this class.
    static const quark::InterfaceData* GetComIntfMap();

    /// How a class is registered, null for nothing. A component's class hides these with its own:
    /// its ProgID, as "Tessaly.Greeter.1", a description for people, the version of its objects,
    /// and the ProgID that stays the same from version to version. The texts are static.
    static const char16_t* GetComProgID() noexcept { return nullptr; }
    static const char16_t* GetComDescription() noexcept { return nullptr; }
    static const char16_t* GetComObjectVersion() noexcept { return nullptr; }
    static const char16_t* GetComVersionIndependentProgID() noexcept { return nullptr; }

    /// Objects come from orvcore::allocate(), which throws and never gives null.
    static void* operator new(std::size_t size) { return orvcore::allocate(size); }
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* memory) noexcept { orvcore::deallocate(memory); }
    static void operator delete(void* memory, const std::nothrow_t&) noexcept
    {
        orvcore::deallocate(memory);
    }
    static void operator delete(void*, void*) noexcept {}

protected:
    /// The module of SetComModule(), null for none.
    quark::ObjectCounter* comModule() const noexcept { return m_module; }

private:
    mutable std::atomic<std::uint32_t> m_count{0};
    quark::ObjectCounter* m_module = nullptr;
};

} // namespace orv
