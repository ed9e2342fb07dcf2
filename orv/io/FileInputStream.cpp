#include "orv/io/FileInputStream.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/util/FilePath.h"
#include "platform/files.h"

namespace orv::io {

FileInputStream::FileInputStream(const String& path)
{
    constexpr std::uint32_t forReading = 0x80000000;
    constexpr std::uint32_t ownerOnly = 0700;
    throwIfFailed(ORVFileOpen(path.getData(), forReading, ownerOnly, &m_handle));
}

FileInputStream::FileInputStream(const util::FilePath& path) : FileInputStream(path.toString()) {}

FileInputStream::FileInputStream(std::uint64_t handle, bool ownsHandle)
    : m_handle(handle), m_ownsHandle(ownsHandle)
{
}

FileInputStream::~FileInputStream() noexcept(false)
{
    static_cast<void>(closeHandle());
}

std::int32_t FileInputStream::read(signed char* buffer, std::int32_t n)
{
    if (n == 0) return -1;
    std::int32_t got = 0;
    const Result result = orvcore::readFile(m_handle, buffer, n, &got);
    if (result == E_END_OF_FILE) return -1;
    throwIfFailed(result);
    return got == 0 ? -1 : got;
}

void FileInputStream::close()
{
    throwIfFailed(closeHandle());
}

Result FileInputStream::closeHandle() noexcept
{
    if (!m_ownsHandle || m_handle == ORV_NO_HANDLE) return S_OK;
    const Result result = ORVFileClose(m_handle);
    if (!failed(result)) m_handle = ORV_NO_HANDLE;
    return result;
}

} // namespace orv::io
