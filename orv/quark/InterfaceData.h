#pragma once

#include "orv/Export.h"
#include "orv/IORVUnknown.h"

#include <cstdint>

namespace orv {
class ComObject;
}

namespace orv::quark {

/// Answers a query on behalf of a row; returns a result code.
using InterfaceHandler = Result (*)(ComObject* object, const GUID& iid, void** out,
                                    std::uint32_t data);

/// One row of the constant table of interfaces that each class has.
///
/// A class lists its own interfaces and ends with its base and the end:
///
///     const InterfaceData* AbstractCharBuffer::GetComIntfMap()
///     {
///         static const InterfaceData map[] = {
///             interfaceRow<IORVCharBuffer, AbstractCharBuffer>(), baseRow<Object>(), endRow};
///         return map;
///     }
///
/// and answers queries by `QueryInterfaceMap(GetComIntfMap(), this, iid, out)`.
class InterfaceData {
public:
    /// A plain row: the interface lies `distance` bytes from the start of the object.
    constexpr InterfaceData(const GUID* interfaceId, std::uintptr_t distance) noexcept
        : m_iid(interfaceId), m_kind(PLAIN), m_data(distance)
    {
    }

    /// A row that asks `function`; a null `interfaceId` asks it for every interface.
    constexpr InterfaceData(const GUID* interfaceId, InterfaceHandler function,
                            std::uint32_t argument) noexcept
        : m_iid(interfaceId), m_handler(function), m_data(argument)
    {
    }

    /// The row behind the last one.
    constexpr InterfaceData() noexcept : m_iid(nullptr), m_kind(END), m_data(0) {}

    /// Whether this is the row behind the last one.
    bool isEnd() const noexcept { return m_kind == END; }
    /// Whether the row gives a place in the object.
    bool isPlain() const noexcept { return m_kind == PLAIN; }
    /// The interface answered, null for all.
    const GUID* iid() const noexcept { return m_iid; }
    /// The function of a row that is not plain.
    InterfaceHandler handler() const noexcept { return m_handler; }
    /// The distance of a plain row, the argument of another.
    std::uintptr_t data() const noexcept { return m_data; }

private:
    static constexpr std::uintptr_t END = 0;
    static constexpr std::uintptr_t PLAIN = 1;

    const GUID* m_iid;
    union {
        std::uintptr_t m_kind;
        InterfaceHandler m_handler;
    };
    std::uintptr_t m_data;
};

/// Walks `map` for `iid` and stores the interface found, with a count taken, in `*out`.
///
/// IORVUnknown is `object` itself, whatever the map holds. A row's handler that fails ends the
/// walk with its code only where the row names the interface; a row for all that fails is passed.
/// E_NOINTERFACE at the end of the map, E_POINTER for a null `out`.
ORV_API Result QueryInterfaceMap(const InterfaceData* map, ComObject* object, const GUID& iid,
                                 void** out);

/// The row of an interface that `Class` derives from directly or through non-virtual bases.
template <class Interface, class Class>
InterfaceData interfaceRow() noexcept
{
    // Any aligned address that is not null serves to measure the distance.
    constexpr std::uintptr_t place = 0x10000;
    auto* const object = reinterpret_cast<Class*>(place);
    const auto start = reinterpret_cast<std::uintptr_t>(static_cast<ComObject*>(object));
    const auto part = reinterpret_cast<std::uintptr_t>(static_cast<Interface*>(object));
    return InterfaceData(&Interface::IID, part - start);
}

/// The row that hands a query on to the map of `Base`.
template <class Base>
InterfaceData baseRow() noexcept
{
    return InterfaceData(
        nullptr,
        [](ComObject* object, const GUID& iid, void** out, std::uint32_t) {
            return QueryInterfaceMap(Base::GetComIntfMap(), object, iid, out);
        },
        0);
}

/// The end of a map.
inline constexpr InterfaceData endRow{};

} // namespace orv::quark
