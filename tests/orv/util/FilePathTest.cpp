#include "orv/util/FilePath.h"

#include "orv/Exceptions.h"
#include "orv/util/PathNormalizer.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <array>

namespace orv::util {
namespace {

TEST(PathNormalizer, foldsDotsAndSeparators)
{
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"", u""},
        {u"a\\\\b", u"a\\b"},
        {u"a\\b\\..\\c", u"a\\c"},
        {u"a\\..\\b", u"b"},
        {u"..\\a", u"..\\a"},
        {u"..\\", u"..\\"},
        {u"a\\", u"a\\"},
        {u"a\\.", u"a\\"},
        {u"a\\b\\..", u"a\\"},
        {u"a\\..", u""},
        {u".", u"."},
        {u".\\", u".\\"},
        {u".\\a", u"a"},
        {u"..", u".."},
        {u"..\\.", u"..\\"},
        {u"..a", u"..a"},
        {u"a\\..b", u"a\\..b"},
        {u"a.b\\c.", u"a.b\\c."},
        {u"a/b//c", u"a\\b\\c"},
    };
    PathNormalizer normalizer(PathNormalizer::SLASH_NATIVE);
    for (const auto& [path, normal] : rows) {
        EXPECT_EQ(normalizer.normalize(path), normal) << test::readable(path);
    }
}

TEST(FilePath, answersForEachPart)
{
    const std::array<const char16_t*, 8> rows[] = {
        {u"c:/a/./b/../c", u"c:\\a\\c", u"c:", u"c:\\a", u"c", u"c", u"", u"c:\\a"},
        {u"\\\\srv\\share\\dir\\f.txt", u"\\\\srv\\share\\dir\\f.txt", u"\\\\srv\\share",
         u"\\\\srv\\share\\dir", u"f.txt", u"f", u".txt", u"\\\\srv\\share\\dir"},
        {u"\\\\srv\\share", u"\\\\srv\\share", u"\\\\srv\\share", u"\\\\srv\\share", u"", u"", u"",
         u""},
        {u"/tmp/x.tar.gz", u"\\tmp\\x.tar.gz", u"", u"\\tmp", u"x.tar.gz", u"x.tar", u".gz",
         u"\\tmp"},
        {u"c:\\", u"c:\\", u"c:", u"c:\\", u"", u"", u"", u""},
        {u"c:f.x", u"c:f.x", u"c:", u"c:", u"f.x", u"f", u".x", u"c:"},
        {u":a", u":a", u"", u"", u":a", u":a", u"", u""},
    };
    for (const auto& [text, normal, drive, directory, name, base, extension, parent] : rows) {
        const FilePath path(text);
        SCOPED_TRACE(test::readable(text));
        EXPECT_EQ(path.toString(), normal);
        EXPECT_EQ(path.getDrive(), drive);
        EXPECT_EQ(path.getDirectory(), directory);
        EXPECT_EQ(path.getName(), name);
        EXPECT_EQ(path.getBaseName(), base);
        EXPECT_EQ(path.getExtension(), extension);
        EXPECT_EQ(path.getParentPath(), parent);
        EXPECT_EQ(path.getChildPath(u"child"), u"");
    }
    EXPECT_EQ(FilePath(u"c:\\a\\..\\b").toString(), u"c:b");
}

TEST(FilePath, refusesWrongRoots)
{
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"abc:\\x", "invalid drive"},
        {u"\\\\\\share", "no server name"},
        {u"\\\\srv", "no share name"},
        {u"//srv/", "no share name"},
    };
    for (const auto& [path, words] : rows) {
        EXPECT_EQ(test::refusalOf<InvalidPathException>([at = path] { FilePath made(at); }).second,
                  words);
    }
}

TEST(FilePath, findsItsPlaceInTheFileSystem)
{
    const String current = FilePath::getCurrentDir();
    EXPECT_TRUE(current.startsWith(u"\\"));
    EXPECT_TRUE(current.endsWith(u"\\"));
    EXPECT_TRUE(FilePath::getTempDir().endsWith(u"\\"));
    EXPECT_EQ(FilePath(u"a\\b").getAbsolutePath(), current + u"a\\b");
    EXPECT_EQ(FilePath(u"\\a").getAbsolutePath(), u"\\a");
    EXPECT_EQ(FilePath(u"\\a\\b").getCanonicalPath(), u"C:\\a\\b");
    EXPECT_EQ(FilePath(u"\\\\srv\\share\\f").getCanonicalPath(), u"\\\\srv\\share\\f");
    const FilePath tooLong(String(u'x', 300));
    EXPECT_THROW(tooLong.getCanonicalPath(), ResultException);
}

} // namespace
} // namespace orv::util
