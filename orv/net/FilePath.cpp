#include "orv/net/FilePath.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/GlobalLock.h"
#include "orv/sync/Lock.h"
#include "platform/mounts.h"

namespace orv::net {

namespace {

constexpr std::int32_t HOST_NAME_ROOM = 260;
constexpr std::int32_t DRIVE_ROOT = 3; ///< units of a drive with its separator

constinit char s_hostName[HOST_NAME_ROOM] = "";

} // namespace

FilePath::FilePath(const String& path) : util::FilePath(path)
{
    initialize();
}

FilePath::FilePath(const util::FilePath& path) : util::FilePath(path)
{
    initialize();
}

FilePath::~FilePath() noexcept(false) = default;

String FilePath::getUNCPath() const
{
    if (m_mountType == MOUNT_NFS) throw InvalidPathException(u"NFS cannot be represented by UNC");
    return s_UNCLead.text + m_server + u"\\" + m_volume + u"\\" + m_pathInVolume;
}

String FilePath::getNetwarePath() const
{
    throwResult(E_NOT_AVAILABLE);
}

void FilePath::initialize()
{
    if (isUNCPath()) {
        const String drive = getDrive();
        parseUnc(drive);
        const String path = toString();
        const std::int32_t end = drive.getLength();
        m_pathInVolume = path.substring(path.getCharAt(end) == dirDelim ? end + 1 : end);
        m_mountType = MOUNT_SHARE;
    } else {
        initWin32();
    }
    if (m_server.isEmpty()) throw InvalidPathException(u"No server name specified.");
    if (m_mountType != MOUNT_NFS && m_volume.isEmpty()) {
        throw InvalidPathException(u"No volume name specified.");
    }
}

void FilePath::initWin32()
{
    const String canonical = getCanonicalPath();
    orvcore::Mount mount;
    throwIfFailed(orvcore::findMount(canonical.getData(), &mount));
    if (mount.connection[0] != 0) {
        m_mountType = MOUNT_SHARE;
        parseUnc(mount.connection);
        m_pathInVolume = canonical.substring(mount.length + 1);
        return;
    }
    m_mountType = MOUNT_LOCAL;
    m_server = getHostName();
    m_volume = util::FilePath(canonical).getDrive();
    if (!m_volume.isEmpty()) m_volume.replace(1, 1, u'$', 1);
    m_pathInVolume = canonical.substring(DRIVE_ROOT);
}

void FilePath::parseUnc(const String& text)
{
    const std::int32_t server = s_UNCLead.length;
    const std::int32_t end = text.indexOf(dirDelim, server);
    if (!text.startsWith(s_UNCLead.text, server) || end < 0) {
        throw InvalidPathException(u"Invalid UNC syntax.");
    }
    m_server = text.substring(server, end);
    m_volume = text.substring(end + 1);
    if (m_volume.endsWith(u":")) m_volume.resize(m_volume.getLength() - 1, u' ');
}

void FilePath::parseNfs(const String& text)
{
    const std::int32_t end = text.indexOf(u":/");
    if (end < 0) throw InvalidPathException(u"Invalid NFS syntax.");
    m_server = text.substring(0, end);
    m_pathInVolume = text.substring(end + 1);
}

void FilePath::parseNcp(const String& text)
{
    const std::int32_t end = text.indexOf(u'/');
    if (end < 0) throw InvalidPathException(u"Invalid NCP syntax.");
    m_server = text.substring(0, end);
    m_volume = u"UNKNOWN";
}

/// The name of this host, asked of the system once.
String FilePath::getHostName()
{
    const sync::Lock lock(g_pGlobalLock);
    if (s_hostName[0] == 0) throwIfFailed(ORVGetHostName(s_hostName, HOST_NAME_ROOM));
    return s_hostName;
}

} // namespace orv::net
