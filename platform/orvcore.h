#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>

/// \file
/// The whole face of orvcore, the layer that knows the operating system.
///
/// Results are 32-bit codes: 0 or positive is success, negative is failure. No operation throws,
/// but for what the new-handler throws out of orvcore::allocate() and what unwinds a thread that is
/// cancelled within a component. Every operation may be called
/// from any thread; an object behind a handle has the thread-safety of its kind.
///
/// Text that ends in `W` is zero-terminated UTF-16 in code units, text that ends in `A` is
/// zero-terminated bytes in the default encoding. Sizes of buffers count elements and include the
/// terminator. Time-outs are milliseconds; 0xFFFFFFFF waits for ever. Interrupted system calls are
/// resumed with what remains of the time.

struct addrinfo;

/// A result: 0 or positive is success, negative is failure.
using ORVResult = std::int32_t;

/// An opaque handle. 0 and ORV_NO_HANDLE are never given out.
using ORVHandle = std::uint64_t;

/// No handle: all bits set.
inline constexpr ORVHandle ORV_NO_HANDLE = ~ORVHandle{0};

/// A time-out that never ends, in milliseconds.
inline constexpr std::uint32_t ORV_INFINITE = 0xFFFFFFFFu;

/// Makes a result from the code as it is usually written.
constexpr ORVResult ORVMakeResult(std::uint32_t code) noexcept
{
    return static_cast<ORVResult>(code);
}

/// The results that the platform itself gives a name.
inline constexpr ORVResult S_OK = 0;
inline constexpr ORVResult E_NOTIMPL = ORVMakeResult(0x80004001u);
inline constexpr ORVResult E_NOINTERFACE = ORVMakeResult(0x80004002u);
inline constexpr ORVResult E_POINTER = ORVMakeResult(0x80004003u);
inline constexpr ORVResult E_FAIL = ORVMakeResult(0x80004005u);
inline constexpr ORVResult E_OUTOFMEMORY = ORVMakeResult(0x8007000Eu);
inline constexpr ORVResult E_INVALIDARG = ORVMakeResult(0x80070057u);
inline constexpr ORVResult CLASS_E_NOAGGREGATION = ORVMakeResult(0x80040110u);
inline constexpr ORVResult CLASS_E_CLASSNOTAVAILABLE = ORVMakeResult(0x80040111u);

/// A 16-byte identifier, compared as 16 raw bytes.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
static_assert(sizeof(GUID) == 16);

/// A moment, broken down. Years count from 0, months and days from 1, the week from Sunday = 0.
struct STRUCT_ORV_TIME {
    std::uint16_t year;
    std::uint16_t month;
    std::uint16_t dayOfWeek;
    std::uint16_t day;
    std::uint16_t hour;
    std::uint16_t minute;
    std::uint16_t second;
    std::uint16_t millisecond;
};
static_assert(sizeof(STRUCT_ORV_TIME) == 16);

/// A root of the configuration store. The 32-bit and the 64-bit view are separate trees.
enum ENUM_ORV_HKEY : std::uint32_t {
    ORV_HKEY_CLASSES_32 = 0, ///< class registration, 32-bit view
    ORV_HKEY_CONFIG_32 = 1,  ///< machine configuration, 32-bit view
    ORV_HKEY_USER = 2,       ///< the current user's root, which has no views
    ORV_HKEY_CLASSES_64 = 3, ///< class registration, 64-bit view
    ORV_HKEY_CONFIG_64 = 4,  ///< machine configuration, 64-bit view
};

/// The type of a value in the configuration store.
enum ENUM_ORV_REG_TYPE : std::uint32_t {
    ORV_REG_STRING = 0, ///< units with a terminator, which the size counts
    ORV_REG_UINT32 = 1, ///< 4 bytes
    ORV_REG_UINT64 = 2, ///< 8 bytes
    ORV_REG_BINARY = 3, ///< bytes
};

/// What runs on a new thread. Its result is what ORVThreadJoin() gives.
using ORVThreadEntry = void* (*)(void* argument);

/// Called by orvcore::allocate() when memory runs out. It frees memory and returns, or throws.
using ORVNewHandler = void (*)();

/// The parent's ends of the three standard streams of a child process, as file handles.
struct ORVStandardHandles {
    ORVHandle input;  ///< written by the parent, the child's standard input
    ORVHandle output; ///< read by the parent, the child's standard output
    ORVHandle error;  ///< read by the parent, the child's standard error
};

namespace orvcore {

/// Allocates `size` bytes, aligned for any ordinary type, for all objects of the library.
///
/// On exhaustion the handler of ORVSetNewHandler() is called again and again until memory is
/// found or the handler throws; without a handler std::bad_alloc is thrown. Never returns null.
[[nodiscard]] ORVCORE_API void* allocate(std::size_t size);

/// Frees what allocate() gave; null is allowed.
ORVCORE_API void deallocate(void* memory) noexcept;

/// Makes allocations fail, for tests of the behaviour without memory: of the allocations that
/// follow on any thread, the `nth` (counted from 1) fails, and with `forever` all after it too.
/// 0 switches the failures off. Returns the number of allocations since the last call, which are
/// counted while failures are on; an `nth` that is never reached just counts.
/// Holds for allocate(), allocateRaw() and reallocateRaw().
ORVCORE_API std::uint64_t failAllocation(std::uint64_t nth, bool forever) noexcept;

/// std::malloc for the storage of buffers, null on exhaustion; counted by failAllocation().
[[nodiscard]] ORVCORE_API void* allocateRaw(std::size_t size) noexcept;

/// std::realloc for the storage of buffers, null on exhaustion with the block left as it was;
/// counted by failAllocation().
[[nodiscard]] ORVCORE_API void* reallocateRaw(void* memory, std::size_t size) noexcept;

/// std::free for the storage of buffers; null is allowed.
ORVCORE_API void deallocateRaw(void* memory) noexcept;

} // namespace orvcore

extern "C" {

// Memory

/// Sets the handler that orvcore::allocate() calls on exhaustion; null removes it. Returns the
/// one before. Does not touch the handler of the C++ runtime.
ORVCORE_API ORVNewHandler ORVSetNewHandler(ORVNewHandler handler) noexcept;

// Text

/// Length of `text` in units, without the terminator.
ORVCORE_API std::int32_t ORVStrLenW(const char16_t* text) noexcept;
/// Length of `text` in bytes, without the terminator.
ORVCORE_API std::int32_t ORVStrLenA(const char* text) noexcept;
/// The same as ORVStrLenW().
ORVCORE_API std::int32_t ORVStrLenW_32(const char16_t* text) noexcept;
/// The same as ORVStrLenA().
ORVCORE_API std::int32_t ORVStrLenA_32(const char* text) noexcept;

/// Order of two texts by code unit: negative, 0 or positive.
ORVCORE_API std::int32_t ORVStrCmpW(const char16_t* a, const char16_t* b) noexcept;

/// Compares at most `count` units after ORVToLowerW(), ending early where both texts end.
/// Returns 0, or the difference of the first two lowered units that differ.
ORVCORE_API std::int32_t ORVStrNICmpW(const char16_t* a, const char16_t* b,
                                      std::int32_t count) noexcept;

/// Copies `source` with its terminator.
ORVCORE_API void ORVStrCpyW(char16_t* destination, const char16_t* source) noexcept;

/// Copies at most `count` units, stopping after the terminator. Pads nothing, and does not
/// terminate a text of `count` units or more.
ORVCORE_API void ORVStrNCpyW(char16_t* destination, const char16_t* source,
                             std::int32_t count) noexcept;

/// First place of `unit` in `text`, null if there is none. The terminator can be searched for.
ORVCORE_API const char16_t* ORVStrChrW(const char16_t* text, char16_t unit) noexcept;
/// First place of `byte` in `text`, null if there is none. The terminator can be searched for.
ORVCORE_API const char* ORVStrChrA(const char* text, char byte) noexcept;

/// A copy of `text` to be given to ORVStrFreeA(); null when memory is out or `text` is null.
[[nodiscard]] ORVCORE_API char* ORVStrDupA(const char* text) noexcept;
/// Frees a copy made by ORVStrDupA(); null is allowed.
ORVCORE_API void ORVStrFreeA(char* text) noexcept;

/// Takes the next token at `*position` in place: skips leading delimiters, ends the token by a
/// terminator over the delimiter behind it and moves the position behind that. At the end of the
/// text returns null and leaves the position on the terminator. Keeps no state of its own.
ORVCORE_API char16_t* ORVStrTokW(char16_t** position, const char16_t* delimiters) noexcept;

/// Maps `text` in place with ORVToLowerW().
ORVCORE_API void ORVStrToLowerW(char16_t* text) noexcept;
/// Maps `text` in place with ORVToUpperW().
ORVCORE_API void ORVStrToUpperW(char16_t* text) noexcept;
/// Lower case of one unit by the one-to-one mappings of Unicode; the same in every locale.
ORVCORE_API char16_t ORVToLowerW(char16_t unit) noexcept;
/// Upper case of one unit by the one-to-one mappings of Unicode; the same in every locale.
ORVCORE_API char16_t ORVToUpperW(char16_t unit) noexcept;

/// Reads a decimal number behind leading blanks and a sign; 0 where there is none; clamps.
ORVCORE_API std::int32_t ORVStrToIW(const char16_t* text) noexcept;

/// Reads a number in `radix` (2 to 36, or 0 for the C prefixes) behind leading blanks and a sign.
/// Clamps to 32 bits. `end`, if not null, receives the place behind the number, the start of
/// `text` when nothing was read.
ORVCORE_API std::int32_t ORVStrToLW(const char16_t* text, const char16_t** end,
                                    std::int32_t radix) noexcept;

/// The same without a sign in the result: a "-" negates modulo 2^32; clamps to 0xFFFFFFFF.
ORVCORE_API std::uint32_t ORVStrToULW(const char16_t* text, const char16_t** end,
                                      std::int32_t radix) noexcept;

/// Reads a floating-point number with "." as its point, whatever the locale.
ORVCORE_API double ORVStrToDW(const char16_t* text, const char16_t** end) noexcept;

/// Prints `value` in `radix` (2 to 36) with lower-case digits and a terminator; `buffer` holds at
/// least 34 elements. Only radix 10 prints a sign; others print the two's complement.
ORVCORE_API void ORVLToStrW(std::int32_t value, char16_t* buffer, std::int32_t radix) noexcept;
/// The same into bytes.
ORVCORE_API void ORVLToStrA(std::int32_t value, char* buffer, std::int32_t radix) noexcept;

/// Converts `text` to the default encoding, terminated and cut at a whole character where `size`
/// bytes are too few; what has no bytes becomes "?". Returns the bytes written with the
/// terminator, 0 on failure (null pointers, `size` below 1). A default encoding that the system
/// has no converter for counts as UTF-8 here.
ORVCORE_API std::int32_t ORVUnicodeToAnsi(char* destination, const char16_t* text,
                                          std::int32_t size) noexcept;

/// Name of the default encoding: `ORV_ENCODING` of the environment, else by the codeset of the
/// process's locale. `buffer` has room for `size` units, 40 are enough.
ORVCORE_API ORVResult ORVGetDefaultCharEncoding(char16_t* buffer, std::int32_t size) noexcept;

/// Name of the default locale, from LC_ALL, LC_MESSAGES and LANG in this order; C and POSIX give
/// "en_US". `buffer` has room for `size` units, 40 are enough.
ORVCORE_API ORVResult ORVGetDefaultLocale(char16_t* buffer, std::int32_t size) noexcept;

// Errors

/// The result for an error number of the system: 0x80070000 plus the number that hosts compare
/// with (2 not found, 5 denied, 112 disk full, 183 exists, 1460 timed out ...); 0 gives 0.
ORVCORE_API ORVResult ORVResultFromNative(std::int32_t nativeError) noexcept;

// Component model

/// Tells orvcore that the library behind `token` is up (1) or going down (0). No object is created
/// while it is down: 0x8007045B.
ORVCORE_API ORVResult ORVModuleSetInitialized(const void* token, std::int32_t up) noexcept;

/// Creates an object of a registered class: `outer`, always null, and `iid` go to the class
/// factory, and `out` receives the interface with one count, or null.
///
/// The store's key CLSID\\{class identifier}\\InprocServer32, in the 64-bit view of the classes,
/// has the absolute path of the component's library as its default value. The library is loaded
/// with its symbols to itself, once for all threads, and stays for the life of the process; its
/// export ORVGetClassObject(class identifier, interface, out) gives the class factory. A component
/// is found again at each call: what another process registers, holds for the next object.
///
/// | Result | Meaning |
/// |---|---|
/// | 0x80040154 | the class is not registered |
/// | 0x8007000D | what is registered is no path, or for a ProgID no class identifier |
/// | 0x8007007E | there is no file of that path, or the path is not absolute |
/// | 0x80070005 | the file may not be read |
/// | 0x800700C1 | the file is no library, or one that lacks libraries or symbols of others |
/// | 0x8007007F | the library does not export ORVGetClassObject |
/// | 0x80004005 | the component threw an exception |
/// | 0x8007000E | memory ran out, also where the component threw std::bad_alloc |
/// | 0x8000FFFF | the component told success and gave nothing |
/// | another | the component's own, 0x80040111 for a class that it does not have; or the store's |
///
/// Nothing is thrown but what unwinds a cancelled thread.
ORVCORE_API ORVResult ORVModuleComCreateObject(const void* token, const GUID& classId, void* outer,
                                               const GUID& iid, void** out);
/// Creates an object of the class registered under `progId`, in the same way. 0x80040154 where the
/// ProgID is not registered, 0x800401F8 where it is and its class is not.
ORVCORE_API ORVResult ORVComCreateObjectByProgID(const char16_t* progId, void* outer,
                                                 const GUID& iid, void** out);
/// Finds the class identifier registered under `progId`, the default value of the key
/// ProgID\\CLSID. 0x80040154 where there is none, 0x8007000D where it is no identifier.
ORVCORE_API ORVResult ORVComClassIDFromProgID(const char16_t* progId, GUID* out) noexcept;
/// Order of two identifiers by their raw bytes; 0 when equal.
ORVCORE_API std::int32_t ORVComCompareGUID(const GUID& a, const GUID& b) noexcept;
/// Reads the form `{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}` in either case; E_INVALIDARG for
/// anything else.
ORVCORE_API ORVResult ORVComGUIDFromString(const char16_t* text, GUID* out) noexcept;
/// Writes the 38-unit form with braces, in upper case, and a terminator; `size` is at least 39.
ORVCORE_API ORVResult ORVComStringFromGUID(const GUID& guid, char16_t* buffer,
                                           std::int32_t size) noexcept;
/// Makes a new random identifier (version 4).
ORVCORE_API ORVResult ORVComGenerateGUID(GUID* out) noexcept;

// Shared libraries

/// Opens a shared library: the name as given, else with ".so" behind it, else with "lib" before
/// and ".so" behind it; a name with a separator is a path. 0x8007007E when there is none.
ORVCORE_API ORVResult ORVModuleLibOpen(const void* token, const char16_t* name,
                                       ORVHandle* out) noexcept;
/// Closes what ORVModuleLibOpen() opened.
ORVCORE_API ORVResult ORVModuleLibClose(const void* token, ORVHandle library) noexcept;
/// Finds an exported symbol, whose address may be null; 0x8007007F when there is none.
ORVCORE_API ORVResult ORVLibGetSymbol(ORVHandle library, const char16_t* name, void** out) noexcept;

// Synchronisation. Names are labels for diagnosis, not shared objects; flags are 0. An object must
// not be destroyed while a thread waits on it. A Try form returns 0x800700AA when the object is
// not free; a Timed form returns 0x800705B4 on time-out.

/// Creates a mutex that its owner may acquire again; each acquisition wants a release.
ORVCORE_API ORVResult ORVMutexCreate(const char* name, std::uint32_t flags,
                                     ORVHandle* out) noexcept;
/// Acquires; without contention this makes no system call.
ORVCORE_API ORVResult ORVMutexAcquire(ORVHandle mutex) noexcept;
/// Acquires if the mutex is free or the caller's.
ORVCORE_API ORVResult ORVMutexTryAcquire(ORVHandle mutex) noexcept;
/// Releases; 0x80070120 when the caller is not the owner.
ORVCORE_API ORVResult ORVMutexRelease(ORVHandle mutex) noexcept;
/// Destroys; 0x800700AA while the mutex is held by another thread, which leaves it alive.
ORVCORE_API ORVResult ORVMutexDestroy(ORVHandle mutex) noexcept;

/// Creates an event that is not signalled and that resets itself when one waiter has passed.
ORVCORE_API ORVResult ORVEventCreate(const char* name, std::uint32_t flags,
                                     ORVHandle* out) noexcept;
/// Waits for the signal and takes it.
ORVCORE_API ORVResult ORVEventWait(ORVHandle event) noexcept;
/// Waits for the signal for at most `milliseconds`.
ORVCORE_API ORVResult ORVEventTimedWait(ORVHandle event, std::uint32_t milliseconds) noexcept;
/// Signals: one waiter, present or next, passes. Signals do not add up.
ORVCORE_API ORVResult ORVEventSignal(ORVHandle event) noexcept;
/// Destroys the event.
ORVCORE_API ORVResult ORVEventDestroy(ORVHandle event) noexcept;

/// Creates a gate that is closed.
ORVCORE_API ORVResult ORVGateCreate(const char* name, std::uint32_t flags, ORVHandle* out) noexcept;
/// Passes an open gate, waits at a closed one.
ORVCORE_API ORVResult ORVGateWait(ORVHandle gate) noexcept;
/// The same for at most `milliseconds`.
ORVCORE_API ORVResult ORVGateTimedWait(ORVHandle gate, std::uint32_t milliseconds) noexcept;
/// Passes an open gate, does not wait at a closed one.
ORVCORE_API ORVResult ORVGateTryWait(ORVHandle gate) noexcept;
/// Opens the gate: all waiters pass.
ORVCORE_API ORVResult ORVGateOpen(ORVHandle gate) noexcept;
/// Closes the gate.
ORVCORE_API ORVResult ORVGateClose(ORVHandle gate) noexcept;
/// Destroys the gate.
ORVCORE_API ORVResult ORVGateDestroy(ORVHandle gate) noexcept;

/// Creates a counting semaphore; E_INVALIDARG for an initial count above 2^31 - 1.
ORVCORE_API ORVResult ORVSemaphoreCreate(std::uint32_t initialCount, const char* name,
                                         std::uint32_t flags, ORVHandle* out) noexcept;
/// Waits until the count is above 0 and takes 1 off it. Takes named semaphores too; there a
/// positive result tells that the wait got in through the death of a holder.
ORVCORE_API ORVResult ORVSemaphoreWait(ORVHandle semaphore) noexcept;
/// Takes 1 off the count if it is above 0. Takes named semaphores too, as ORVSemaphoreWait().
ORVCORE_API ORVResult ORVSemaphoreTryWait(ORVHandle semaphore) noexcept;
/// Adds 1 to the count; 0x8007012A past 2^31 - 1. Takes named semaphores too.
ORVCORE_API ORVResult ORVSemaphorePost(ORVHandle semaphore) noexcept;
/// Reads the count. Takes named semaphores too.
ORVCORE_API ORVResult ORVSemaphoreGetValue(ORVHandle semaphore, std::int32_t* out) noexcept;
/// Destroys a semaphore made by ORVSemaphoreCreate().
ORVCORE_API ORVResult ORVSemaphoreDestroy(ORVHandle semaphore) noexcept;

/// Creates a reader-writer lock that prefers readers, so that one thread may read-lock twice.
ORVCORE_API ORVResult ORVRWLockCreate(const char* name, std::uint32_t flags,
                                      ORVHandle* out) noexcept;
/// Acquires the shared side.
ORVCORE_API ORVResult ORVRWLockAcquireRead(ORVHandle lock) noexcept;
/// Acquires the exclusive side.
ORVCORE_API ORVResult ORVRWLockAcquireWrite(ORVHandle lock) noexcept;
/// Acquires the shared side if no writer holds the lock.
ORVCORE_API ORVResult ORVRWLockTryAcquireRead(ORVHandle lock) noexcept;
/// Acquires the exclusive side if nobody holds the lock.
ORVCORE_API ORVResult ORVRWLockTryAcquireWrite(ORVHandle lock) noexcept;
/// Releases one hold of whichever side is held; 0x80070120 when none is.
ORVCORE_API ORVResult ORVRWLockReleaseRead(ORVHandle lock) noexcept;
/// Releases one hold of whichever side is held, the shared side too; 0x80070120 when none is.
ORVCORE_API ORVResult ORVRWLockReleaseWrite(ORVHandle lock) noexcept;
/// Destroys; 0x800700AA while the lock is held, which leaves it alive.
ORVCORE_API ORVResult ORVRWLockDestroy(ORVHandle lock) noexcept;

/// Creates a condition with a lock of its own, which is not recursive.
ORVCORE_API ORVResult ORVConditionCreate(const char* name, std::uint32_t flags,
                                         ORVHandle* out) noexcept;
/// Acquires the condition's lock; 0x8007046B when the caller holds it already.
ORVCORE_API ORVResult ORVConditionAcquire(ORVHandle condition) noexcept;
/// Releases the condition's lock; 0x80070120 when the caller does not hold it.
ORVCORE_API ORVResult ORVConditionRelease(ORVHandle condition) noexcept;
/// Releases the lock, waits for a signal and acquires the lock again; may wake without a signal.
/// 0x80070120 when the caller does not hold the lock.
ORVCORE_API ORVResult ORVConditionWait(ORVHandle condition) noexcept;
/// The same for at most `milliseconds`; the lock is held again also after a time-out.
ORVCORE_API ORVResult ORVConditionTimedWait(ORVHandle condition,
                                            std::uint32_t milliseconds) noexcept;
/// Wakes one waiter.
ORVCORE_API ORVResult ORVConditionSignal(ORVHandle condition) noexcept;
/// Wakes all waiters.
ORVCORE_API ORVResult ORVConditionBroadcast(ORVHandle condition) noexcept;
/// Destroys the condition; 0x800700AA while its lock is held, which leaves it alive.
ORVCORE_API ORVResult ORVConditionDestroy(ORVHandle condition) noexcept;

/// Opens the semaphore of that name, one for all processes of the user on this machine, creating
/// it with `initialCount` where no process has it open. Any text is a name, slashes too; null and
/// the empty text make an anonymous one. The object lives as long as some process has it open and
/// leaves nothing behind; what a killed process held comes back, up to the initial count, within a
/// second. Wait, post and read it with the ORVSemaphore... operations.
ORVCORE_API ORVResult ORVNamedSemOpen(const char* name, std::uint32_t initialCount,
                                      ORVHandle* out) noexcept;
/// Closes what ORVNamedSemOpen() opened; holds that were not given back come back.
ORVCORE_API ORVResult ORVNamedSemClose(ORVHandle semaphore) noexcept;

/// Opens the shared memory of that name, one for all processes of the user on this machine, with
/// the lifetime of a named semaphore. `flags` has 0x100 to create it where it is absent, with
/// `permissions` (octal mode bits) and `size` bytes of zeroes. 0x80070002 when absent; E_INVALIDARG
/// when `size` is 0 or above the object's size.
ORVCORE_API ORVResult ORVSharedMemOpen(const char* name, std::uint32_t flags,
                                       std::uint32_t permissions, std::uint32_t size,
                                       ORVHandle* out) noexcept;
/// Maps the memory; `access` is 0xC0000000 for reading and writing, 0x80000000 for reading alone.
ORVCORE_API ORVResult ORVSharedMemAttach(ORVHandle memory, std::uint32_t access,
                                         void** out) noexcept;
/// Unmaps what ORVSharedMemAttach() mapped at `base`.
ORVCORE_API ORVResult ORVSharedMemDetach(void* base) noexcept;
/// Closes the object; mappings stay until they are detached.
ORVCORE_API ORVResult ORVSharedMemClose(ORVHandle memory) noexcept;

// Threads and processes

/// Starts a thread with all signals blocked. `reserved` is 0; a `stackSize` of 0 asks for no
/// particular size, a small one is raised to the least possible. The identifier is what
/// ORVThreadGetCurrentID() gives on the new thread.
ORVCORE_API ORVResult ORVThreadCreate(ORVThreadEntry entry, void* argument, std::uint32_t reserved,
                                      std::uint32_t stackSize, ORVHandle* out,
                                      std::uint32_t* id) noexcept;
/// Waits for the end of the thread and frees the handle; `exitValue` may be null.
ORVCORE_API ORVResult ORVThreadJoin(ORVHandle thread, void** exitValue) noexcept;
/// Lets the thread run on without its handle, which is freed.
ORVCORE_API ORVResult ORVThreadDetach(ORVHandle thread) noexcept;

/// Starts a program.
///
/// `program` is a path, or null: then the first word of `commandLine`, found on PATH.
/// `commandLine` is cut at blanks, double quotes keep a word together; it holds the program's own
/// name as its first word, and null means just the program. `workingDirectory` null is the
/// parent's. `environment` is a list of NAME=VALUE ended by null, or null for the parent's.
/// `flags` is 0. The child gets pipes on its three standard streams and no other descriptor, an
/// empty signal mask and the default SIGPIPE. A program that does not exist is a failure here.
ORVCORE_API ORVResult ORVProcessCreate(const char16_t* program, const char16_t* commandLine,
                                       const char16_t* workingDirectory,
                                       const char16_t* const* environment, std::uint32_t flags,
                                       ORVHandle* out,
                                       ORVStandardHandles* standardHandles) noexcept;
/// Waits for the end of the child and frees the handle. The exit code of a child that a signal
/// ended is 128 plus the signal; -1 where the host ignores SIGCHLD and the code is lost.
ORVCORE_API ORVResult ORVProcessJoin(ORVHandle process, std::int32_t* exitCode) noexcept;
/// Frees the handle and lets the child run on.
ORVCORE_API ORVResult ORVProcessDetach(ORVHandle process) noexcept;
/// Gives the exit code and frees the handle when the child has ended; 0x80070103 while it runs.
ORVCORE_API ORVResult ORVProcessGetExitCode(ORVHandle process, std::int32_t* exitCode) noexcept;
/// The identifier of this process.
ORVCORE_API std::uint32_t ORVProcessGetID() noexcept;

// Files, time and host. Both slashes separate; drive C: is the root of the file system, other
// drives and server names are not found (0x80070003).

/// Opens a file. `flags`: 0x80000000 read, 0x40000000 write, 0x100 create where absent (with
/// `permissions`, octal mode bits, under the process's mask), 0x200 truncate, 0x8 append. A folder
/// is refused with 0x80070005. Read and write through platform/files.h.
ORVCORE_API ORVResult ORVFileOpen(const char16_t* path, std::uint32_t flags,
                                  std::uint32_t permissions, ORVHandle* out) noexcept;
/// Closes the file.
ORVCORE_API ORVResult ORVFileClose(ORVHandle file) noexcept;
/// Size of the open file in bytes.
ORVCORE_API ORVResult ORVFileGetSize(ORVHandle file, std::int64_t* out) noexcept;

/// The absolute form of `path`, with its drive (C: where it has none), backslashes, and no "." or
/// ".." left; purely lexical, the file need not exist. A separator at the end stays. The share of
/// a server (`\\server\share`) stands for a drive. 0x80004009 when `size` units, 261 by
/// convention, are too few.
ORVCORE_API ORVResult ORVPathExpand(const char16_t* path, char16_t* buffer,
                                    std::int32_t size) noexcept;

/// The present moment in local time; `reserved` is null.
ORVCORE_API ORVResult ORVTimeGetLocal(STRUCT_ORV_TIME* out, void* reserved) noexcept;
/// The present moment in UTC; `reserved` is null.
ORVCORE_API ORVResult ORVTimeGetSystem(STRUCT_ORV_TIME* out, void* reserved) noexcept;
/// The moment `seconds` after 1970-01-01, in UTC.
ORVCORE_API ORVResult ORVTimeFromPosix(std::int32_t seconds, STRUCT_ORV_TIME* out) noexcept;

/// Name of this host as bytes with a terminator; `size` is 260 by convention.
ORVCORE_API ORVResult ORVGetHostName(char* buffer, std::int32_t size) noexcept;

/// Resolves a host and a service as getaddrinfo does, its result being 0 or a native resolver
/// error. The list goes to ORVfreeaddrinfo().
ORVCORE_API std::int32_t ORVgetaddrinfo(const char* node, const char* service,
                                        const addrinfo* hints, addrinfo** out) noexcept;
/// Frees a list of ORVgetaddrinfo(); null is allowed.
ORVCORE_API void ORVfreeaddrinfo(addrinfo* list) noexcept;

// Registry: the configuration store. Key and value names are found without regard to case; the
// value named "" or null is the default value of its key. Backslashes divide a path, several count
// as one. Results of all operations: 0x80070002 where key or value is absent, 0x800700CE for a name
// of more than 254 units, 0x800703F1 where the store is damaged, 0x800700AA where other processes
// kept it for too long, 0x80070032 in a forked child of a process that had used it.

/// Reads a value. With `type`, `data` and `size` null tests its existence. `size` holds the room
/// in bytes and receives the size of the value; 0x80004009 when the room is too small.
/// 0x80070002 when key or value is absent.
ORVCORE_API ORVResult ORVRegistryGetValue(ENUM_ORV_HKEY root, const char16_t* path,
                                          const char16_t* name, std::uint32_t* type, void* data,
                                          std::uint32_t* size) noexcept;
/// Writes a value of `size` bytes, creating the key where it is absent. E_INVALIDARG for a type
/// that is none of ENUM_ORV_REG_TYPE and for a number of another size than its own.
ORVCORE_API ORVResult ORVRegistrySetValue(ENUM_ORV_HKEY root, const char16_t* path,
                                          const char16_t* name, std::uint32_t type,
                                          const void* data, std::uint32_t size) noexcept;
/// Deletes a value; 0x80070002 when absent.
ORVCORE_API ORVResult ORVRegistryDeleteValue(ENUM_ORV_HKEY root, const char16_t* path,
                                             const char16_t* name) noexcept;
/// Deletes a key with its values and subkeys; 0x80070002 when absent.
ORVCORE_API ORVResult ORVRegistryDeleteKey(ENUM_ORV_HKEY root, const char16_t* path) noexcept;
/// Opens an enumeration of subkeys, in order of name, on a snapshot.
ORVCORE_API ORVResult ORVRegistryOpenKeyEnum(ENUM_ORV_HKEY root, const char16_t* path,
                                             ORVHandle* out) noexcept;
/// Opens an enumeration of values, in order of name, on a snapshot.
ORVCORE_API ORVResult ORVRegistryOpenValueEnum(ENUM_ORV_HKEY root, const char16_t* path,
                                               ORVHandle* out) noexcept;
/// Gives the next subkey's name; `length` holds the room and receives the length in units.
/// Negative at the end.
ORVCORE_API ORVResult ORVRegistryEnumNextKey(ORVHandle enumeration, char16_t* name,
                                             std::uint32_t* length) noexcept;
/// Gives the next value; data bigger than the room is cut and told with its full size. Negative
/// at the end.
ORVCORE_API ORVResult ORVRegistryEnumNextValue(ORVHandle enumeration, char16_t* name,
                                               std::uint32_t* nameLength, std::uint32_t* type,
                                               void* data, std::uint32_t* size) noexcept;
/// Closes an enumeration.
ORVCORE_API ORVResult ORVRegistryCloseEnum(ORVHandle enumeration) noexcept;

} // extern "C"
