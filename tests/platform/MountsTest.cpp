#include "platform/mounts.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

constexpr std::string_view table = "/dev/sda1 / ext4 rw,relatime 0 0\n"
                                   "tmpfs /mnt tmpfs rw 0 0\n"
                                   "//srv/share /mnt/win cifs rw 0 0\n"
                                   "//srv/other/sub/dir /mnt/win/deep smb3 rw 0 0\n"
                                   "/dev/sdb1 /mnt/win/stick vfat rw 0 0\n"
                                   "nas:/export/home /home\\040of\\040all nfs4 rw 0 0\n"
                                   "[fe80::1]:/ /mnt/root nfs rw 0 0\n"
                                   "systemd-1 /mnt/auto autofs rw 0 0\n"
                                   "nas:/a\\134b /mnt/auto nfs rw 0 0\n"
                                   "//srv/back\\\\134 /mnt/back\\134slash cifs rw 0 0\n"
                                   "//srv\n"
                                   "//srv/cut /mnt/cut cifs";

std::string narrow(const char16_t* text)
{
    const std::u16string_view units(text);
    return {units.begin(), units.end()};
}

TEST(Mounts, theLongestMountPointDecides)
{
    using Row = std::tuple<const char16_t*, std::string_view, std::int32_t>;
    for (const auto& [path, connection, length] : {
             Row{u"C:\\", "", 2},
             {u"C:\\usr\\bin", "", 2},
             {u"c:\\mnt\\x", "", 6},
             {u"C:\\mnt\\win", "\\\\srv\\share", 10},
             {u"C:/mnt/win/a.txt", "\\\\srv\\share", 10},
             {u"C:\\mnt\\windows", "", 6},
             {u"C:\\mnt\\Win\\a", "", 6},
             {u"C:\\mnt\\win\\deep\\", "\\\\srv\\other\\sub\\dir", 15},
             {u"C:\\mnt\\win\\stick\\a", "", 16},
             {u"C:\\home of all\\ann", "\\\\nas\\export\\home", 14},
             {u"C:\\mnt\\root\\etc", "\\\\[fe80::1]\\", 11},
             {u"C:\\mnt\\auto", "\\\\nas\\a\\b", 11},
             {u"C:\\mnt\\back\\slash", "", 6},
             {u"C:\\mnt\\cut\\a", "\\\\srv\\cut", 10},
             {u"D:\\mnt\\win", "", 0},
         }) {
        orvcore::Mount mount;
        ASSERT_EQ(orvcore::findMount(table.data(), table.size(), path, &mount), S_OK);
        EXPECT_EQ(narrow(mount.connection), connection) << narrow(path);
        EXPECT_EQ(mount.length, length) << narrow(path);
    }
}

TEST(Mounts, aConnectionIsNeverCut)
{
    const std::string longest = "//s/" + std::string(1019, 'x');
    orvcore::Mount mount;
    std::string line = longest + " / cifs rw 0 0\n";
    ASSERT_EQ(orvcore::findMount(line.data(), line.size(), u"C:\\a", &mount), S_OK);
    EXPECT_EQ(narrow(mount.connection).size(), longest.size());
    line = longest + "x / cifs rw 0 0\n";
    EXPECT_EQ(orvcore::findMount(line.data(), line.size(), u"C:\\a", &mount),
              ORVMakeResult(0x80004009));
}

TEST(Mounts, theSystemsOwnTableIsRead)
{
    orvcore::Mount mount;
    ASSERT_EQ(orvcore::findMount(u"C:\\proc\\self\\mounts", &mount), S_OK);
    EXPECT_EQ(mount.length, 7) << "/proc is a file system of its own";
}

} // namespace
