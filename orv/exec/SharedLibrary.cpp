#include "orv/exec/SharedLibrary.h"

#include "orv/Exception.h"
#include "orv/internal/ModuleToken.h"

namespace orv::exec {

SharedLibrary::SharedLibrary(const char16_t* name)
{
    const Result result = ORVModuleLibOpen(internal::moduleToken(), name, &m_handle);
    if (failed(result)) throw ResultException(result, u"Failed to open shared library.");
}

SharedLibrary::~SharedLibrary() noexcept(false)
{
    if (m_handle != ORV_NO_HANDLE) ORVModuleLibClose(internal::moduleToken(), m_handle);
}

void* SharedLibrary::getSymbol(const char16_t* name)
{
    void* symbol = nullptr;
    const Result result = ORVLibGetSymbol(m_handle, name, &symbol);
    if (failed(result)) throw ResultException(result, u"Failed to get symbol.");
    return symbol;
}

} // namespace orv::exec
