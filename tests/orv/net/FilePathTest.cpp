#include "orv/net/FilePath.h"

#include "orv/Exceptions.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

namespace orv::net {
namespace {

String thisHost()
{
    char name[260];
    EXPECT_EQ(::gethostname(name, sizeof name), 0);
    return name;
}

TEST(NetFilePath, takesAPathWithAServerApart)
{
    using Row = std::array<const char16_t*, 4>;
    for (const auto& [text, server, volume, below] : {
             Row{u"\\\\srv\\share\\d\\f", u"srv", u"share", u"d\\f"},
             {u"//srv/share/", u"srv", u"share", u""},
             {u"\\\\srv\\share\\x\\a\\..\\b", u"srv", u"share", u"x\\b"},
             {u"\\\\s\\sh\\..\\bcd", u"s", u"shb", u"cd"}, // see PathNormalizer
         }) {
        const FilePath path(text);
        EXPECT_EQ(path.getServer(), server);
        EXPECT_EQ(path.getVolume(), volume);
        EXPECT_EQ(path.getPath(), below) << test::readable(text);
        EXPECT_EQ(path.getMountType(), FilePath::MOUNT_SHARE);
        EXPECT_FALSE(path.isLocal());
    }
    EXPECT_EQ(FilePath(u"\\\\srv\\share\\d\\f").getUNCPath(), u"\\\\srv\\share\\d\\f");
    EXPECT_THROW(FilePath(u"\\\\srv"), InvalidPathException);
}

TEST(NetFilePath, aLocalPathLiesOnTheAdministrativeShareOfThisHost)
{
    const FilePath path(u"c:\\x\\y");
    EXPECT_EQ(path.getServer(), thisHost());
    EXPECT_EQ(path.getVolume(), u"c$");
    EXPECT_EQ(path.getPath(), u"x\\y");
    EXPECT_TRUE(path.isLocal());
    EXPECT_EQ(path.getUNCPath(), u"\\\\" + thisHost() + u"\\c$\\x\\y");

    EXPECT_EQ(FilePath(u"/etc/passwd").getPath(), u"etc\\passwd");
    EXPECT_EQ(FilePath(u"/").getPath(), u"");
    EXPECT_EQ(FilePath(util::FilePath(u"D:\\x")).getVolume(), u"D$");
    const FilePath relative(u"x");
    EXPECT_EQ(u"C:\\" + relative.getPath(), util::FilePath(u"x").getCanonicalPath());
}

using Parser = void (FilePath::*)(const String&);
Parser nfsParser();
Parser ncpParser();

/// An explicit instantiation may name what is private.
template <Parser Nfs, Parser Ncp>
struct Opened {
    friend Parser nfsParser() { return Nfs; }
    friend Parser ncpParser() { return Ncp; }
};
template struct Opened<&FilePath::parseNfs, &FilePath::parseNcp>;

TEST(NetFilePath, readsTheFormsOfOtherNetworks)
{
    FilePath path(u"\\\\srv\\share\\d");
    (path.*nfsParser())(u"host:/export/a:/b");
    EXPECT_EQ(path.getServer() + u" " + path.getPath(), u"host /export/a:/b");
    (path.*ncpParser())(u"other/sys:dir/f");
    EXPECT_EQ(path.getServer() + u" " + path.getVolume(), u"other UNKNOWN");
    EXPECT_THROW((path.*nfsParser())(u"host:export"), InvalidPathException);
    EXPECT_THROW((path.*ncpParser())(u"other"), InvalidPathException);
}

TEST(NetFilePath, whatCannotBeSaidIsRefused)
{
    EXPECT_EQ(resultOf([] { FilePath(u"/").getNetwarePath(); }), E_NOT_AVAILABLE);
    EXPECT_THROW(FilePath(String(u'x', 300)), ResultException) << "too long to expand";
    EXPECT_THROW(FilePath(u"ab:"), InvalidPathException);
}

} // namespace
} // namespace orv::net
