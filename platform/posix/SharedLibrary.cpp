#include "platform/modules.h"

#include "platform/posix/internal/NarrowText.h"
#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/Results.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

namespace {

bool isPath(const char16_t* name) noexcept
{
    return orvcore::hasDrive(name) ||
           std::any_of(name, name + ORVStrLenW(name), orvcore::isSeparator);
}

// `form` has the places of the folder with its slash and of the name.
void* openAs(const char* form, const char* path) noexcept
{
    const char* slash = std::strrchr(path, '/');
    const char* name = slash == nullptr ? path : slash + 1;
    char full[PATH_MAX + sizeof "lib.so"];
    std::snprintf(full, sizeof full, form, static_cast<int>(name - path), path, name);
    return dlopen(full, RTLD_NOW | RTLD_LOCAL);
}

} // namespace

ORVResult ORVModuleLibOpen(const void*, const char16_t* name, ORVHandle* out) noexcept
{
    if (name == nullptr || out == nullptr) return E_POINTER;
    *out = ORV_NO_HANDLE;

    char plain[PATH_MAX];
    orvcore::NativePath path;
    const bool mapped = isPath(name);
    const ORVResult result =
        mapped ? path.assign(name) : orvcore::narrowExactly(name, plain, sizeof plain);
    const char* bytes = mapped ? path.get() : plain;
    // The empty name would open the program itself.
    if (result < 0 || *bytes == 0) return orvcore::libraryNotFound;

    for (const char* form : {"%.*s%s", "%.*s%s.so", "%.*slib%s.so"}) {
        if (void* library = openAs(form, bytes)) {
            *out = reinterpret_cast<ORVHandle>(library);
            return S_OK;
        }
    }
    return orvcore::libraryNotFound;
}

ORVResult ORVModuleLibClose(const void*, ORVHandle library) noexcept
{
    if (library == 0 || library == ORV_NO_HANDLE) return E_INVALIDARG;
    return dlclose(reinterpret_cast<void*>(library)) == 0 ? S_OK : E_FAIL;
}

ORVResult ORVLibGetSymbol(ORVHandle library, const char16_t* name, void** out) noexcept
{
    if (name == nullptr || out == nullptr) return E_POINTER;
    *out = nullptr;
    if (library == 0 || library == ORV_NO_HANDLE) return E_INVALIDARG;
    orvcore::NarrowText bytes;
    if (bytes.assign(name) < 0) return orvcore::symbolNotFound;

    dlerror();
    void* symbol = dlsym(reinterpret_cast<void*>(library), bytes.get());
    if (dlerror() != nullptr) return orvcore::symbolNotFound;
    *out = symbol;
    return S_OK;
}

ORVResult orvcore::moduleFile(const void* address, char16_t* buffer, std::int32_t size) noexcept
{
    Dl_info found;
    if (dladdr(address, &found) == 0 || found.dli_fname == nullptr) return libraryNotFound;
    const char* file = found.dli_fname;
    char absolute[PATH_MAX];
    // Links in an absolute name stay: they outlive the file that they lead to today.
    if (*file != '/') file = ::realpath(file, absolute);
    if (file == nullptr) return libraryNotFound;
    return widenExactly(file, buffer, size) < 0 ? bufferTooSmall : S_OK;
}
