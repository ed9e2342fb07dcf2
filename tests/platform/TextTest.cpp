#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>

#include <sys/mman.h>
#include <unistd.h>

namespace {

TEST(Text, lengthNeverReadsPastThePage)
{
    // Two pages of which the second may not be touched.
    const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const pages =
        mmap(nullptr, 2 * size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    char16_t* const end = static_cast<char16_t*>(pages) + size / sizeof(char16_t);
    ASSERT_EQ(mprotect(end, size, PROT_NONE), 0);
    for (int length = 0; length < 40; ++length) {
        for (int behind = 0; behind < 10; ++behind) {
            char16_t* text = end - behind - 1 - length;
            std::fill(text - 9, text, u'\0');
            std::fill_n(text, length, u'\x0100'); // one byte of each unit is 0
            std::fill(text + length, end, u'\0');
            ASSERT_EQ(ORVStrLenW(text), length) << behind;
        }
    }
    munmap(pages, 2 * size);
}

TEST(CaseMapping, mapsOneToOneInEveryScript)
{
    using Row = std::tuple<char16_t, char16_t, char16_t>;
    for (const auto& [unit, lower, upper] :
         {Row{u'A', u'a', u'A'},    {u'Z', u'z', u'Z'},       {u'z', u'z', u'Z'},
          {u'@', u'@', u'@'},       {u'[', u'[', u'['},       {u'`', u'`', u'`'},
          {u'{', u'{', u'{'},       {0x00B5, 0x00B5, 0x039C}, {0x00C9, 0x00E9, 0x00C9},
          {0x00D7, 0x00D7, 0x00D7},                           // multiplication sign
          {0x00DF, 0x00DF, 0x00DF},                           // sharp s has no single capital here
          {0x00FF, 0x00FF, 0x0178}, {0x0130, 0x0069, 0x0130}, // I with a dot
          {0x0131, 0x0131, 0x0049},                           // i without one
          {0x017F, 0x017F, 0x0053},                           // long s
          {0x01C5, 0x01C6, 0x01C4},                           // title-case letter
          {0x03A3, 0x03C3, 0x03A3}, {0x03C2, 0x03C2, 0x03A3}, // final sigma
          {0x0416, 0x0436, 0x0416}, {0x0561, 0x0561, 0x0531}, {0x10A0, 0x2D00, 0x10A0},
          {0x13A0, 0xAB70, 0x13A0}, {0x1E9E, 0x00DF, 0x1E9E}, {0x2126, 0x03C9, 0x2126}, // ohm sign
          {0x212A, 0x006B, 0x212A}, // kelvin sign
          {0x2170, 0x2170, 0x2160}, {0x24B6, 0x24D0, 0x24B6}, {0x4E00, 0x4E00, 0x4E00},
          {0xA77D, 0x1D79, 0xA77D}, {0xFB00, 0xFB00, 0xFB00}, {0xFF21, 0xFF41, 0xFF21},
          {0xD801, 0xD801, 0xD801}, {0xDC00, 0xDC00, 0xDC00}, // halves of letters with two cases
          {0xFFFF, 0xFFFF, 0xFFFF}}) {
        EXPECT_EQ(ORVToLowerW(unit), lower) << std::hex << int{unit};
        EXPECT_EQ(ORVToUpperW(unit), upper) << std::hex << int{unit};
    }
}

TEST(CaseMapping, comparisonIsByLoweredUnitsUpToTheCountOrTheEnd)
{
    using Row = std::tuple<const char16_t*, const char16_t*, std::int32_t, std::int32_t>;
    for (const auto& [a, b, count, order] :
         {Row{u"aB\u00C9", u"Ab\u00E9", 3, 0}, Row{u"ab", u"aC", 1, 0}, Row{u"ab", u"aC", 2, -1},
          Row{u"A_", u"aZ", 2, u'_' - u'z'}, Row{u"a", u"AB", 2, -u'b'}, Row{u"aB", u"A", 9, u'b'},
          Row{u"a\0x", u"A\0y", 3, 0}, Row{u"a", u"b", 0, 0}, Row{u"a", u"b", -1, 0}}) {
        EXPECT_EQ(ORVStrNICmpW(a, b, count), order) << testing::PrintToString(std::u16string(a));
    }
}

} // namespace
