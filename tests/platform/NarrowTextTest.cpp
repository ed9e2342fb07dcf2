#include "platform/orvcore.h"

#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

#include <string>

#include <langinfo.h>
#include <locale.h>

namespace {

const char* s_codeset = nullptr; ///< what the process's locale pretends to have, null for its own

} // namespace

// Takes the place of the C library's, so that codesets can be tried whose locales are not
// installed.
extern "C" [[gnu::visibility("default")]] char* nl_langinfo(nl_item item)
{
    if (item == CODESET && s_codeset != nullptr) return const_cast<char*>(s_codeset);
    static const locale_t s_plain = newlocale(LC_ALL_MASK, "C", locale_t{});
    return nl_langinfo_l(item, s_plain);
}

namespace {

using orv::test::ScopedVariable;

std::u16string defaultEncoding()
{
    char16_t name[40] = u"?";
    return ORVGetDefaultCharEncoding(name, 40) == S_OK ? name : u"failure";
}

// The bytes with their count, in which the terminator is counted.
std::string narrow(const std::u16string& text, std::int32_t size)
{
    std::string bytes(64, '#');
    const std::int32_t count = ORVUnicodeToAnsi(bytes.data(), text.c_str(), size);
    if (count < 1) return "failure";
    EXPECT_EQ(bytes[static_cast<std::size_t>(count)], '#') << "written past the terminator";
    EXPECT_EQ(bytes[static_cast<std::size_t>(count - 1)], '\0');
    return bytes.substr(0, static_cast<std::size_t>(count - 1));
}

class NarrowText : public testing::Test {
protected:
    void TearDown() override { s_codeset = nullptr; }
    ScopedVariable m_encoding{"ORV_ENCODING", nullptr};
};

TEST_F(NarrowText, theCodesetOfTheLocaleChoosesTheEncoding)
{
    using Row = std::pair<const char*, const char16_t*>;
    for (const auto& [codeset, encoding] :
         {Row{"ANSI_X3.4-1968", u"UTF-8"}, Row{"UTF-8", u"UTF-8"}, Row{"ISO-8859-1", u"CP1252"},
          Row{"ISO-8859-15", u"CP1252"}, Row{"CP1252", u"CP1252"}, Row{"IBM437", u"CP437"},
          Row{"EUC-JP", u"UTF-8"}, Row{"", u"UTF-8"}}) {
        s_codeset = codeset;
        EXPECT_EQ(defaultEncoding(), encoding) << codeset;
    }
    m_encoding.set("AMP-7");
    EXPECT_EQ(defaultEncoding(), u"AMP-7");
    m_encoding.set("");
    EXPECT_EQ(defaultEncoding(), u"UTF-8");
}

TEST_F(NarrowText, isUtf8CutAtAWholeCharacter)
{
    using Row = std::tuple<const char16_t*, std::int32_t, const char*>;
    for (const auto& [text, size, bytes] :
         {Row{u"abc", 4, "abc"}, Row{u"abc", 3, "ab"}, Row{u"abc", 1, ""},
          Row{u"a\u00E9", 4, "a\xC3\xA9"}, Row{u"a\u00E9", 3, "a"},
          Row{u"\u07FF\u0800\uFFFF", 60, "\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
          Row{u"\U0001F600", 5, "\xF0\x9F\x98\x80"}, Row{u"\U0001F600", 4, ""},
          Row{u"\U0010FFFF", 60, "\xF4\x8F\xBF\xBF"}, Row{u"\xD83Dx\xDE00", 60, "?x?"},
          Row{u"\xD83D", 60, "?"}, Row{u"\xD83D\xD83D\xDE00", 60, "?\xF0\x9F\x98\x80"}}) {
        EXPECT_EQ(narrow(text, size), bytes);
    }
    EXPECT_EQ(narrow(u"a", 0), "failure");
}

TEST_F(NarrowText, otherEncodingsReplaceWhatTheyLack)
{
    using Row = std::pair<const char*, const char*>;
    for (const auto& [encoding, bytes] :
         {Row{"CP1252", "a\xE9\x80??"},
          {"CP437", "a\x82???"},
          {"ASCII", "a????"},
          {"ISO8859_1", "a\xE9???"},
          {"UTF-8", "a\xC3\xA9\xE2\x82\xAC\xE4\xB8\x80\xF0\x9F\x98\x80"},
          {"Shift_JIS", "a??\x88\xEA?"},
          {"UTF-16LE", "a\xC3\xA9\xE2\x82\xAC\xE4\xB8\x80\xF0\x9F\x98\x80"},
          {"no such encoding", "a\xC3\xA9\xE2\x82\xAC\xE4\xB8\x80\xF0\x9F\x98\x80"}}) {
        m_encoding.set(encoding);
        EXPECT_EQ(narrow(u"a\u00E9\u20AC\u4E00\U0001F600", 60), bytes) << encoding;
    }
    m_encoding.set("Shift_JIS");
    EXPECT_EQ(narrow(u"a\u4E00", 3), "a") << "two bytes do not fit";
}

TEST(DefaultLocale, comesFromTheFirstVariableThatIsSet)
{
    using Row = std::tuple<const char*, const char*, const char*, const char16_t*>;
    for (const auto& [all, messages, lang, expected] :
         {Row{nullptr, nullptr, nullptr, u"en_US"}, Row{"C", "de_DE", "fr_FR", u"en_US"},
          Row{"", "de_DE.UTF-8@euro", "fr_FR", u"de_DE.UTF-8@euro"}, Row{nullptr, "", "fr", u"fr"},
          Row{nullptr, nullptr, "POSIX", u"en_US"}, Row{nullptr, nullptr, "C.UTF-8", u"en_US"},
          Row{nullptr, nullptr, "Cy_GB", u"Cy_GB"}}) {
        const ScopedVariable variables[] = {
            {"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}};
        char16_t name[40];
        ASSERT_EQ(ORVGetDefaultLocale(name, 40), S_OK);
        EXPECT_EQ(std::u16string(name), expected);
        EXPECT_EQ(ORVGetDefaultLocale(name, 2), ORVMakeResult(0x80004009));
    }
}

} // namespace
