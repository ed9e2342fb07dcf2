#pragma once

#include "orv/String.h"

#include <cstdint>

namespace orv::util {

/// A file path in normal form, with the syntax of drives and servers: `c:\a\b.txt`,
/// `\\server\share\dir\file`, `dir\file`.
///
///     FilePath path(u"c:/logs/./app/../app.log");
///     path.toString();      // c:\logs\app.log
///     path.getExtension();  // .log
///
/// Slashes become backslashes, and PathNormalizer folds the part behind drive or share; see there
/// for ".." directly below the root. Where a file is opened, drive `c:` is the root of the file
/// system. The class works on text; only getAbsolutePath(), getCanonicalPath(), getCurrentDir() and
/// getTempDir() ask the system.
///
/// Threads: see String.
class ORV_API FilePath : public Object {
public:
    static constexpr char16_t dirDelim = u'\\';                     ///< between folders
    static constexpr char16_t pathDelim = u';';                     ///< between paths in a list
    static constexpr STRUCT_ORV_STR_LIT_INFO s_UNCLead{u"\\\\", 2}; ///< what a server stands behind

    /// Normalises `path`. Throws InvalidPathException: "invalid drive" for a colon at an index
    /// other than 0 and 1, "no server name" and "no share name" for what two backslashes begin.
    FilePath(const String& path);
    FilePath(const FilePath& other) = default;
    FilePath& operator=(const FilePath& other) = default;
    ~FilePath() noexcept(false) override;

    /// The normal form.
    String toString() const override;

    /// Whether the path begins with a server.
    bool isUNCPath() const;
    /// Whether the path has a root.
    bool isAbsolutePath() const;
    /// The root without its last separator: `c:` or `\\server\share`; empty without a root.
    String getDrive() const;
    /// The text before the last backslash, at least the root.
    String getDirectory() const;
    /// The text behind the last backslash or the root.
    String getName() const;
    /// The name without its extension.
    String getBaseName() const;
    /// The name from its last "." on, that included; empty without one.
    String getExtension() const;
    /// The path of the folder that this path lies in; the root for what lies in it; else empty.
    String getParentPath() const;
    /// The empty text, whatever the name: join paths as text.
    String getChildPath(const char16_t* name) const;
    /// This path, behind the current folder where it has no root.
    String getAbsolutePath() const;
    /// The form of ORVPathExpand(), at most 260 units; a path with a server stays. Throws
    /// ResultException.
    String getCanonicalPath() const;

    /// The current folder, ending in a backslash.
    static String getCurrentDir();
    /// The folder for temporary files, ending in a backslash.
    static String getTempDir();

protected:
    /// Brings the path into normal form and finds its root.
    void normalize();

private:
    std::int32_t uncRoot() const;
    std::int32_t beforeName() const;

    String m_path;
    std::int32_t m_rootLength = 0; ///< units of drive or share with the separator behind
};

} // namespace orv::util
