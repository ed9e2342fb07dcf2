#include "orv/util/FilePath.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/util/PathNormalizer.h"
#include "platform/files.h"

#include <algorithm>

namespace orv::util {

namespace {

constexpr std::int32_t EXPANDED_ROOM = 261;
constexpr std::int32_t FOLDER_ROOM = 260;
constexpr std::int32_t LARGEST_ROOM = 1 << 20;

/// What `ask` writes, into as much room as it wants.
String folderOf(std::int32_t (*ask)(char16_t*, std::int32_t) noexcept)
{
    String folder;
    for (std::int32_t room = FOLDER_ROOM; room <= LARGEST_ROOM; room *= 2) {
        const std::int32_t length = ask(folder.getWriteLock(room), room);
        folder.releaseWriteLock(std::max(length, 0));
        if (length > 0) break;
    }
    return folder;
}

} // namespace

FilePath::FilePath(const String& path) : m_path(path)
{
    normalize();
}

FilePath::~FilePath() noexcept(false) = default;

void FilePath::normalize()
{
    m_path.translate(u'/', dirDelim);
    const std::int32_t colon = m_path.indexOf(u':');
    if (colon > 1) throw InvalidPathException(u"invalid drive");
    m_rootLength = colon == 1 ? 2 : uncRoot();

    const std::int32_t start = m_rootLength;
    if (m_rootLength < m_path.getLength() && m_path[m_rootLength] == dirDelim) ++m_rootLength;
    PathNormalizer normalizer(PathNormalizer::SLASH_BACK);
    m_path.replace(start, -1, normalizer.normalize(m_path.substring(start)));
}

/// Where the name of the share ends, 0 for a path without a server.
std::int32_t FilePath::uncRoot() const
{
    const std::int32_t server = s_UNCLead.length;
    if (m_path.getLength() <= server || !m_path.startsWith(s_UNCLead.text, server)) return 0;
    const std::int32_t serverEnd = m_path.indexOf(dirDelim, server);
    if (serverEnd == server) throw InvalidPathException(u"no server name");
    if (serverEnd < 0) throw InvalidPathException(u"no share name");

    const std::int32_t share = serverEnd + 1;
    const std::int32_t found = m_path.indexOf(dirDelim, share);
    const std::int32_t shareEnd = found < 0 ? m_path.getLength() : found;
    if (shareEnd == share) throw InvalidPathException(u"no share name");
    return shareEnd;
}

/// The index of the unit before the name.
std::int32_t FilePath::beforeName() const
{
    return std::max(m_path.lastIndexOf(dirDelim), m_rootLength - 1);
}

String FilePath::toString() const
{
    return m_path;
}

bool FilePath::isUNCPath() const
{
    return m_path.startsWith(s_UNCLead.text, s_UNCLead.length);
}

bool FilePath::isAbsolutePath() const
{
    return m_rootLength > 0;
}

String FilePath::getDrive() const
{
    const bool separated = m_rootLength > 0 && m_path[m_rootLength - 1] == dirDelim;
    return m_path.substring(0, m_rootLength - (separated ? 1 : 0));
}

String FilePath::getDirectory() const
{
    return m_path.substring(0, std::max(m_path.lastIndexOf(dirDelim), m_rootLength));
}

String FilePath::getName() const
{
    return m_path.substring(beforeName() + 1);
}

String FilePath::getBaseName() const
{
    const std::int32_t before = beforeName();
    const std::int32_t dot = m_path.lastIndexOf(u'.');
    return m_path.substring(before + 1, dot > before ? dot : -1);
}

String FilePath::getExtension() const
{
    const std::int32_t dot = m_path.lastIndexOf(u'.');
    return dot > beforeName() ? m_path.substring(dot) : String();
}

String FilePath::getParentPath() const
{
    const std::int32_t separator = m_path.lastIndexOf(dirDelim);
    if (separator >= 0 && separator >= m_rootLength) return m_path.substring(0, separator);
    if (m_rootLength > 0 && m_path.getLength() > m_rootLength) {
        return m_path.substring(0, m_rootLength);
    }
    return String();
}

String FilePath::getChildPath(const char16_t*) const
{
    return String();
}

String FilePath::getAbsolutePath() const
{
    if (m_rootLength > 0) return m_path;
    return FilePath(getCurrentDir() + m_path).m_path;
}

String FilePath::getCanonicalPath() const
{
    if (isUNCPath()) return m_path;
    char16_t expanded[EXPANDED_ROOM];
    throwIfFailed(ORVPathExpand(m_path.getData(), expanded, EXPANDED_ROOM));
    return expanded;
}

String FilePath::getCurrentDir()
{
    return folderOf(&orvcore::currentFolder);
}

String FilePath::getTempDir()
{
    return folderOf(&orvcore::temporaryFolder);
}

} // namespace orv::util
