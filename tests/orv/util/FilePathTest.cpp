#include "orv/util/FilePath.h"

#include "orv/Exceptions.h"
#include "orv/util/PathNormalizer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::util {
namespace {

TEST(PathNormalizer, foldsDotsAndSeparators)
{
    struct Row {
        const char16_t* path;
        const char16_t* normal;
    };
    const Row rows[] = {
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
    for (const Row& row : rows) {
        EXPECT_EQ(normalizer.normalize(row.path), row.normal)
            << String(row.path).getBytes(u"UTF-8");
    }
}

TEST(FilePath, answersForEachPart)
{
    struct Row {
        const char16_t *path, *normal, *drive, *directory, *name, *base, *extension, *parent;
    };
    const Row rows[] = {
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
    for (const Row& row : rows) {
        const FilePath path(row.path);
        EXPECT_EQ(path.toString(), row.normal);
        EXPECT_EQ(path.getDrive(), row.drive) << String(row.path).getBytes(u"UTF-8");
        EXPECT_EQ(path.getDirectory(), row.directory) << String(row.path).getBytes(u"UTF-8");
        EXPECT_EQ(path.getName(), row.name) << String(row.path).getBytes(u"UTF-8");
        EXPECT_EQ(path.getBaseName(), row.base) << String(row.path).getBytes(u"UTF-8");
        EXPECT_EQ(path.getExtension(), row.extension) << String(row.path).getBytes(u"UTF-8");
        EXPECT_EQ(path.getParentPath(), row.parent) << String(row.path).getBytes(u"UTF-8");
        EXPECT_EQ(path.getChildPath(u"child"), u"");
    }
    EXPECT_EQ(FilePath(u"c:\\a\\..\\b").toString(), u"c:b");
}

TEST(FilePath, refusesWrongRoots)
{
    struct Row {
        const char16_t* path;
        const char16_t* text;
    };
    for (const Row& row : {Row{u"abc:\\x", u"invalid drive"},
                           {u"\\\\\\share", u"no server name"},
                           {u"\\\\srv", u"no share name"},
                           {u"//srv/", u"no share name"}}) {
        try {
            const FilePath path(row.path);
            ADD_FAILURE() << "took " << String(row.path).getBytes(u"UTF-8");
        } catch (const InvalidPathException& exception) {
            EXPECT_EQ(exception.getDescription(), row.text) << String(row.path).getBytes(u"UTF-8");
        }
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
