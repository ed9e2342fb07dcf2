#pragma once

#include "orv/util/FilePath.h"

#include <cstdint>

namespace orv::net {

/// A file path as other machines reach it: server, share and the path within the share.
///
///     net::FilePath path(u"\\\\srv\\share\\d\\f");
///     path.getServer();    // srv
///     path.getVolume();    // share
///     path.getPath();      // d\f
///
/// A path with a server is taken apart. Any other is brought into the form of ORVPathExpand(),
/// without following symbolic links, and looked up in the system's table of mounted file systems:
/// on a file system of another machine it lies on that machine's share, and anywhere else on the
/// administrative share of this host, `c:\x\y` being `\\HOST\c$\x\y`.
///
/// Threads: see String.
class ORV_API FilePath : public util::FilePath {
public:
    /// How the file system of a path is reached.
    enum MOUNT_TYPE : std::int32_t {
        MOUNT_LOCAL = 0, ///< it is this machine's
        MOUNT_SHARE = 1, ///< through a network share
        MOUNT_NFS = 2,   ///< through NFS, by a name that is no share
    };

    /// Takes `path` apart. Throws InvalidPathException as util::FilePath does, with "Invalid UNC
    /// syntax.", and with "No server name specified." or "No volume name specified." where the
    /// system gives none, as for the root of an NFS server; ResultException where the system does
    /// not tell.
    FilePath(const String& path);
    FilePath(const util::FilePath& path);
    FilePath(const FilePath& other) = default;
    FilePath& operator=(const FilePath& other) = default;
    ~FilePath() noexcept(false) override;

    /// Whether the file system is this machine's.
    bool isLocal() const noexcept { return m_mountType == MOUNT_LOCAL; }
    MOUNT_TYPE getMountType() const noexcept { return m_mountType; }
    String getServer() const { return m_server; }
    /// The name of the share, with the folders in it from which the file system is mounted.
    String getVolume() const { return m_volume; }
    /// The path within the share, without a separator at its start.
    String getPath() const { return m_pathInVolume; }
    /// `\\server\volume\path`. Throws InvalidPathException "NFS cannot be represented by UNC" for
    /// MOUNT_NFS.
    String getUNCPath() const;
    /// There is no such form: always throws ResultException with E_NOT_AVAILABLE.
    [[noreturn]] String getNetwarePath() const;

private:
    void initialize();
    void initWin32();
    void parseUnc(const String& text);
    /// Takes `server:/path` apart; InvalidPathException "Invalid NFS syntax." for anything else.
    void parseNfs(const String& text);
    /// Takes the server from `server/volume:path`, and gives "UNKNOWN" for the volume;
    /// InvalidPathException "Invalid NCP syntax." without a slash.
    void parseNcp(const String& text);
    static String getHostName();

    String m_server;
    String m_volume;
    String m_pathInVolume;
    MOUNT_TYPE m_mountType = MOUNT_LOCAL;
};

} // namespace orv::net
