#pragma once

#include "platform/orvcore.h"
#include "platform/posix/internal/Results.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

/// \file
/// The heap records behind handles.

namespace orvcore {

inline constexpr ORVResult invalidHandle = systemResult(6);
inline constexpr ORVResult busy = systemResult(170);
inline constexpr ORVResult stillRunning = systemResult(259);
inline constexpr ORVResult notOwner = systemResult(288);
inline constexpr ORVResult tooManyPosts = systemResult(298);
inline constexpr ORVResult wouldDeadlock = systemResult(1131);
inline constexpr ORVResult timedOut = systemResult(1460);

/// The name of an object as far as it fits, for whoever looks at the memory in a debugger.
struct Label {
    explicit Label(const char* name) noexcept
    {
        if (name != nullptr) std::strncpy(text, name, sizeof text - 1);
    }
    char text[32] = {};
};

/// The record behind `handle`, null for no handle.
template <class T>
T* recordOf(ORVHandle handle) noexcept
{
    if (handle == 0 || handle == ORV_NO_HANDLE) return nullptr;
    return reinterpret_cast<T*>(static_cast<std::uintptr_t>(handle));
}

/// The handle that leads to `record`.
inline ORVHandle handleOf(const void* record) noexcept
{
    return reinterpret_cast<std::uintptr_t>(record);
}

/// Makes a record and stores its handle.
template <class T, class... Arguments>
ORVResult createRecord(ORVHandle* out, Arguments&&... arguments) noexcept
{
    if (out == nullptr) return E_POINTER;
    *out = ORV_NO_HANDLE;
    void* const memory = allocateRaw(sizeof(T));
    if (memory == nullptr) return E_OUTOFMEMORY;
    *out = handleOf(new (memory) T(std::forward<Arguments>(arguments)...));
    return S_OK;
}

/// Destroys a record made by createRecord().
template <class T>
void destroyRecord(T* record) noexcept
{
    record->~T();
    deallocateRaw(record);
}

} // namespace orvcore
