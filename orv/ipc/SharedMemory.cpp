#include "orv/ipc/SharedMemory.h"

#include "orv/Exception.h"
#include "orv/String.h"

namespace orv::ipc {
namespace {

constexpr std::uint32_t readAndWrite = 0xC0000000u;

} // namespace

SharedMemory::SharedMemory(const char* name, std::uint32_t size, std::uint32_t flags,
                           std::uint32_t permissions)
{
    Result result = ORVSharedMemOpen(name, flags, permissions, size, &m_handle);
    if (failed(result)) throw ResultException(result, String(u"Failed to open shared memory."));

    result = ORVSharedMemAttach(m_handle, readAndWrite, &m_base);
    if (!failed(result)) return;
    ORVSharedMemClose(m_handle);
    throw ResultException(result, String(u"Failed to attach shared memory"));
}

SharedMemory::~SharedMemory() noexcept(false)
{
    if (m_base != nullptr) ORVSharedMemDetach(m_base);
    if (m_handle != ORV_NO_HANDLE) ORVSharedMemClose(m_handle);
}

} // namespace orv::ipc
