#include "platform/files.h"
#include "platform/posix/internal/NarrowText.h"
#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/Results.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace orvcore {
namespace {

// The folder `path`, which begins with a slash, in the form of currentFolder().
std::int32_t folderForm(const char* path, char16_t* buffer, std::int32_t size) noexcept
{
    if (buffer == nullptr || *path != '/') return 0;
    std::int32_t length = widenExactly(path, buffer, size);
    if (length < 1) return 0;
    for (std::int32_t i = 0; i < length; ++i) {
        if (buffer[i] == u'/') buffer[i] = u'\\';
    }
    if (buffer[length - 1] == u'\\') return length;
    if (length + 1 >= size) return 0;
    buffer[length++] = u'\\';
    buffer[length] = 0;
    return length;
}

// Builds an absolute path name by name. The room is more than the longest that callers hold, as
// ".." may shorten what was longer for a while.
class Expansion {
public:
    // The drive, or the server with its share, behind which ".." does not lead.
    void setRoot(const char16_t* root, std::int32_t length) noexcept
    {
        append(root, length);
        for (std::int32_t i = 0; i < m_length; ++i) {
            if (m_units[i] == u'/') m_units[i] = u'\\';
        }
        m_rootLength = m_length;
    }

    void addNames(const char16_t* path) noexcept
    {
        while (*path != 0) {
            while (isSeparator(*path)) ++path;
            std::int32_t length = 0;
            while (path[length] != 0 && !isSeparator(path[length])) ++length;
            addName(path, length);
            path += length;
        }
    }

    ORVResult finish(bool endsInSeparator, char16_t* buffer, std::int32_t size) noexcept
    {
        if (endsInSeparator || m_length == m_rootLength) append(u"\\", 1);
        if (m_overflow || m_length >= size) return bufferTooSmall;
        std::memcpy(buffer, m_units, static_cast<std::size_t>(m_length) * sizeof(char16_t));
        buffer[m_length] = 0;
        return S_OK;
    }

private:
    void addName(const char16_t* name, std::int32_t length) noexcept
    {
        const bool dots = length > 0 && length <= 2 && name[0] == u'.' && name[length - 1] == u'.';
        if (length == 0 || (dots && length == 1)) return;
        if (dots) {
            while (m_length > m_rootLength && m_units[--m_length] != u'\\') {
            }
            return;
        }
        append(u"\\", 1);
        append(name, length);
    }

    void append(const char16_t* units, std::int32_t length) noexcept
    {
        if (m_overflow || length > room - m_length) {
            m_overflow = true;
            return;
        }
        std::memcpy(m_units + m_length, units, static_cast<std::size_t>(length) * sizeof(char16_t));
        m_length += length;
    }

    static constexpr std::int32_t room = 2 * PATH_MAX;
    char16_t m_units[room];
    std::int32_t m_length = 0;
    std::int32_t m_rootLength = 0;
    bool m_overflow = false;
};

// Length of the server and the share at the start of `path`.
std::int32_t shareLength(const char16_t* path) noexcept
{
    std::int32_t length = 2;
    while (path[length] != 0 && !isSeparator(path[length])) ++length;
    if (path[length] == 0) return length;
    ++length;
    while (path[length] != 0 && !isSeparator(path[length])) ++length;
    return length;
}

bool isOtherDrive(const char16_t* path) noexcept
{
    return hasDrive(path) && (path[0] | 0x20) != u'c';
}

} // namespace

std::int32_t currentFolder(char16_t* buffer, std::int32_t size) noexcept
{
    char path[PATH_MAX];
    return getcwd(path, sizeof path) == nullptr ? 0 : folderForm(path, buffer, size);
}

std::int32_t temporaryFolder(char16_t* buffer, std::int32_t size) noexcept
{
    const char* chosen = std::getenv("TMPDIR");
    const bool usable = chosen != nullptr && *chosen == '/';
    return folderForm(usable ? chosen : "/tmp", buffer, size);
}

} // namespace orvcore

ORVResult ORVPathExpand(const char16_t* path, char16_t* buffer, std::int32_t size) noexcept
{
    if (path == nullptr || buffer == nullptr) return E_POINTER;
    const std::int32_t length = ORVStrLenW(path);
    const bool endsInSeparator = length > 0 && orvcore::isSeparator(path[length - 1]);

    orvcore::Expansion expansion;
    if (orvcore::hasServer(path)) {
        const std::int32_t share = orvcore::shareLength(path);
        expansion.setRoot(path, share);
        expansion.addNames(path + share);
        return expansion.finish(endsInSeparator, buffer, size);
    }

    const bool withDrive = orvcore::hasDrive(path);
    expansion.setRoot(withDrive ? path : u"C:", 2);
    const char16_t* names = withDrive ? path + 2 : path;
    if (!orvcore::isSeparator(*names) && !orvcore::isOtherDrive(path)) {
        char16_t current[PATH_MAX + 1];
        if (orvcore::currentFolder(current, PATH_MAX + 1) == 0) return orvcore::pathNotFound;
        expansion.addNames(current);
    }
    expansion.addNames(names);
    return expansion.finish(endsInSeparator, buffer, size);
}
