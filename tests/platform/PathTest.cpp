#include "platform/files.h"

#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

std::u16string expand(const std::u16string& path, std::int32_t size = 261)
{
    std::u16string buffer(static_cast<std::size_t>(size), u'#');
    const ORVResult result = ORVPathExpand(path.c_str(), buffer.data(), size);
    if (result == ORVMakeResult(0x80004009)) return u"too small";
    return result == S_OK ? std::u16string(buffer.c_str()) : u"failure";
}

TEST(Path, expandsToADriveWithoutDots)
{
    using Row = std::pair<const char16_t*, const char16_t*>;
    for (const auto& [path, expanded] :
         {Row{u"/", u"C:\\"}, Row{u"C:\\", u"C:\\"}, Row{u"c:/a/./b/../c", u"c:\\a\\c"},
          Row{u"/a//b///c", u"C:\\a\\b\\c"}, Row{u"/a/b/", u"C:\\a\\b\\"},
          Row{u"/a/b/..", u"C:\\a"}, Row{u"/a/b/.", u"C:\\a\\b"}, Row{u"/a/../../../b", u"C:\\b"},
          Row{u"/..", u"C:\\"}, Row{u"/a/...", u"C:\\a\\..."},
          Row{u"/a/.b/..c/.", u"C:\\a\\.b\\..c"}, Row{u"d:\\x\\..\\y", u"d:\\y"},
          Row{u"D:x", u"D:\\x"}, Row{u"\\\\srv\\share\\a\\..\\..\\b", u"\\\\srv\\share\\b"},
          Row{u"//srv/share", u"\\\\srv\\share\\"}}) {
        EXPECT_EQ(expand(path), expanded) << testing::PrintToString(std::u16string(path));
    }
}

TEST(Path, relativePathsCountFromTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path("/proc/self");
    char16_t folder[64];
    const std::int32_t length = orvcore::currentFolder(folder, 64);
    const std::u16string current(folder);
    EXPECT_EQ(current.substr(0, 6), u"\\proc\\");
    EXPECT_EQ(current.back(), u'\\');
    EXPECT_EQ(expand(u"a/../b"), u"C:" + current + u"b");
    EXPECT_EQ(expand(u"C:b"), u"C:" + current + u"b");
    EXPECT_EQ(expand(u""), u"C:" + current.substr(0, current.size() - 1));
    EXPECT_EQ(expand(u"../../x"), u"C:\\x");
    EXPECT_EQ(orvcore::currentFolder(folder, length), 0) << "no room for the terminator";
    EXPECT_EQ(orvcore::currentFolder(folder, length + 1), length);

    std::filesystem::current_path("/");
    EXPECT_EQ(orvcore::currentFolder(folder, 64), 1);
    EXPECT_EQ(std::u16string(folder), u"\\");
    std::filesystem::current_path(before);
}

TEST(Path, whatDoesNotFitIsRefused)
{
    EXPECT_EQ(expand(u"/abc", 7), u"C:\\abc");
    EXPECT_EQ(expand(u"/abc", 6), u"too small");
    EXPECT_EQ(expand(u"/" + std::u16string(257, u'x')).size(), 260u);
    EXPECT_EQ(expand(u"/" + std::u16string(258, u'x')), u"too small");
    EXPECT_EQ(expand(u"/" + std::u16string(258, u'x') + u"/../y"), u"C:\\y");
    EXPECT_EQ(expand(u"/" + std::u16string(100000, u'x')), u"too small");
}

} // namespace
