#include "orv/net/FilePath.h"

#include "orv/Exceptions.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

namespace orv::net {
namespace {

TEST(NetFilePath, takesAPathWithAServerApart)
{
    using Row = std::array<const char16_t*, 3>;
    for (const auto& [text, unc, volume] : {
             Row{u"\\\\srv\\share\\d\\f", u"\\\\srv\\share\\d\\f", u"share"},
             {u"//srv/share/", u"\\\\srv\\share\\", u"share"},
             {u"\\\\srv\\share\\x\\a\\..\\b", u"\\\\srv\\share\\x\\b", u"share"},
             {u"\\\\s\\sh\\..\\bcd", u"\\\\s\\shb\\cd", u"shb"}, // see PathNormalizer
         }) {
        const FilePath path(text);
        EXPECT_EQ(path.getUNCPath(), unc);
        EXPECT_EQ(path.getVolume(), volume);
        EXPECT_EQ(path.getMountType(), FilePath::MOUNT_SHARE);
        EXPECT_FALSE(path.isLocal());
    }
    for (const char16_t* const text : {u"ab:", u"\\\\srv"}) {
        EXPECT_THROW(FilePath{text}, InvalidPathException);
    }
}

TEST(NetFilePath, aLocalPathLiesOnTheAdministrativeShareOfThisHost)
{
    char host[260];
    ASSERT_EQ(::gethostname(host, sizeof host), 0);
    const FilePath path(u"c:\\x\\y");
    EXPECT_EQ(path.getUNCPath(), u"\\\\" + String(host) + u"\\c$\\x\\y");
    EXPECT_EQ(path.getVolume(), u"c$");
    EXPECT_TRUE(path.isLocal());
    EXPECT_EQ(FilePath(u"/etc/passwd").getPath(), u"etc\\passwd");
    EXPECT_EQ(FilePath(u"/").getPath(), u"");
    EXPECT_EQ(resultOf([] { FilePath(u"/").getNetwarePath(); }), E_NOT_AVAILABLE);
    EXPECT_THROW(FilePath(String(u'x', 300)), ResultException) << "too long to expand";
    EXPECT_EQ(FilePath(util::FilePath(u"D:\\x")).getVolume(), u"D$");
    const FilePath relative(u"x");
    EXPECT_EQ(u"C:\\" + relative.getPath(), util::FilePath(u"x").getCanonicalPath());
}

} // namespace
} // namespace orv::net
