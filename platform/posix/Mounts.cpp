#include "platform/mounts.h"

#include "platform/posix/internal/NarrowText.h"
#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/Results.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr std::int32_t connectionRoom = sizeof(Mount::connection) / sizeof(char16_t);

// One line of the table. The names are still escaped.
struct Entry {
    std::string_view source;
    std::string_view point;
    std::string_view type;

    bool isRemote() const noexcept { return isShare() || type == "nfs" || type == "nfs4"; }
    bool isShare() const noexcept { return type == "cifs" || type == "smb3"; }
};

std::string_view takeWord(std::string_view& line) noexcept
{
    const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
}

Entry entryOf(std::string_view line) noexcept
{
    Entry entry;
    entry.source = takeWord(line);
    entry.point = takeWord(line);
    entry.type = takeWord(line);
    return entry;
}

bool isOctal(char digit) noexcept
{
    return digit >= '0' && digit <= '7';
}

// Resolves the octal escapes by which the table writes blanks and backslashes. False where the
// name has no room.
bool unescape(std::string_view name, char (&out)[PATH_MAX]) noexcept
{
    std::size_t length = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (length == PATH_MAX - 1) return false;
        const bool escaped = name[i] == '\\' && i + 3 < name.size() && isOctal(name[i + 1]) &&
                             isOctal(name[i + 2]) && isOctal(name[i + 3]);
        if (!escaped) {
            out[length++] = name[i];
            continue;
        }
        const int code = (name[i + 1] - '0') * 64 + (name[i + 2] - '0') * 8 + (name[i + 3] - '0');
        out[length++] = static_cast<char>(code);
        i += 3;
    }
    out[length] = 0;
    return true;
}

// How many units of `path`, which has no drive, the mount point covers; -1 for none of them.
std::int32_t coveredBy(std::string_view point, const char16_t* path) noexcept
{
    char bytes[PATH_MAX];
    char16_t units[PATH_MAX];
    if (!unescape(point, bytes)) return -1;
    std::int32_t length = widenExactly(bytes, units, PATH_MAX);
    if (length < 1 || units[0] != u'/') return -1;
    if (length == 1) return 0;

    // No path that callers write has a backslash within a name.
    for (std::int32_t i = 0; i < length; ++i) {
        const bool same = units[i] == u'/' ? isSeparator(path[i]) : units[i] == path[i];
        if (!same || units[i] == u'\\') return -1;
    }
    return path[length] == 0 || isSeparator(path[length]) ? length : -1;
}

// Writes the source of a remote file system, `//server/share` or `server:/share`, as
// `\\server\share`.
ORVResult writeConnection(const Entry& entry, char16_t (&out)[connectionRoom]) noexcept
{
    char bytes[PATH_MAX];
    char16_t units[PATH_MAX];
    if (!unescape(entry.source, bytes)) return bufferTooSmall;
    const std::int32_t length = widenExactly(bytes, units, PATH_MAX);
    if (length < 0) return invalidName;

    std::u16string_view share(units, static_cast<std::size_t>(length));
    std::u16string_view server;
    if (!entry.isShare()) {
        const std::size_t end = std::min(share.find(u":/"), share.size());
        server = share.substr(0, end);
        share.remove_prefix(std::min(end + 1, share.size()));
    }
    share.remove_prefix(std::min(share.find_first_not_of(u"/\\"), share.size()));
    if (entry.isShare()) {
        server = share.substr(0, share.find_first_of(u"/\\"));
        share.remove_prefix(std::min(server.size() + 1, share.size()));
    }
    if (server.size() + share.size() + 4 > std::size(out)) return bufferTooSmall;

    char16_t* end = std::copy_n(u"\\\\", 2, out);
    end = std::copy(server.begin(), server.end(), end);
    *end++ = u'\\';
    end = std::copy(share.begin(), share.end(), end);
    *end = 0;
    std::replace(out, end, u'/', u'\\');
    return S_OK;
}

struct Freed {
    void operator()(char* memory) const noexcept { std::free(memory); }
};

// The system's table as one block of bytes.
class SystemTable {
public:
    // Reads it whole; a failure leaves what was read.
    ORVResult read() noexcept
    {
        const int file = ::open("/proc/self/mounts", O_RDONLY | O_CLOEXEC);
        if (file < 0) return errno == ENOENT ? S_OK : lastError();
        ORVResult result = S_OK;
        while (result == S_OK && m_more) result = readBlock(file);
        ::close(file);
        return result;
    }

    const char* data() const noexcept { return m_bytes.get(); }
    std::size_t size() const noexcept { return m_size; }

private:
    static constexpr std::size_t block = 16384;

    ORVResult readBlock(int file) noexcept
    {
        auto* const grown = static_cast<char*>(std::realloc(m_bytes.get(), m_size + block));
        if (grown == nullptr) return E_OUTOFMEMORY;
        static_cast<void>(m_bytes.release());
        m_bytes.reset(grown);

        ssize_t got;
        do {
            got = ::read(file, grown + m_size, block);
        } while (got < 0 && errno == EINTR);
        if (got < 0) return lastError();
        m_more = got > 0;
        m_size += static_cast<std::size_t>(got);
        return S_OK;
    }

    std::unique_ptr<char, Freed> m_bytes;
    std::size_t m_size = 0;
    bool m_more = true;
};

} // namespace

ORVResult findMount(const char* table, std::size_t size, const char16_t* path, Mount* out) noexcept
{
    if (path == nullptr || out == nullptr) return E_POINTER;
    out->connection[0] = 0;
    out->length = 0;
    if (!hasDrive(path) || (path[0] | 0x20) != u'c') return S_OK;

    Entry found;
    std::string_view rest(table, size);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const Entry entry = entryOf(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const std::int32_t covered = entry.type.empty() ? -1 : coveredBy(entry.point, path + 2);
        if (covered < 0 || covered + 2 < out->length) continue;
        found = entry;
        out->length = covered + 2;
    }
    return found.isRemote() ? writeConnection(found, out->connection) : S_OK;
}

ORVResult findMount(const char16_t* path, Mount* out) noexcept
{
    SystemTable table;
    const ORVResult result = table.read();
    return result < 0 ? result : findMount(table.data(), table.size(), path, out);
}

} // namespace orvcore
