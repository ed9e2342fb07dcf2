#include "orv/i18n/Locale.h"

#include "orv/Exceptions.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <tuple>

namespace orv::i18n {
namespace {

using namespace std::string_view_literals;

TEST(Locale, takesATextApart)
{
    using Row = std::tuple<const char16_t*, const char16_t*, const char16_t*, const char16_t*,
                           const char16_t*>;
    for (const auto& [text, language, country, variant, name] : {
             Row{u"en", u"en", u"", u"", u"en"},
             {u"en_US", u"en", u"US", u"", u"en_US"},
             {u"en_US.UTF-8@euro", u"en", u"US", u"euro", u"en_US@euro"},
             {u"de@euro", u"de", u"", u"euro", u"de@euro"},
             {u"", u"", u"", u"", u""},
             {u"en_@x", u"en", u"", u"x", u"en@x"},
             {u"en@x.y", u"en@x", u"", u"x.y", u"en@x@x.y"},
             {u"en@a_b", u"en@a", u"", u"a_b", u"en@a@a_b"},
             {u"fr.ISO8859_1", u"fr.ISO8859", u"", u"", u"fr.ISO8859"},
         }) {
        const Locale locale(text);
        EXPECT_EQ(locale.getLanguage(), language) << test::readable(text);
        EXPECT_EQ(locale.getCountry(), country) << test::readable(text);
        EXPECT_EQ(locale.getVariant(), variant) << test::readable(text);
        EXPECT_EQ(locale.toString(), name);
    }
    EXPECT_EQ(Locale(u"a_b", nullptr, u"c.d").toString(), u"a_b@c.d") << "parts stay as they are";
    EXPECT_EQ(Locale(nullptr).toString(), u"");
    const test::ScopedVariable all("LC_ALL", "a_name_longer_than_forty_bytes_all_in_all");
    EXPECT_THROW(Locale::getDefault(), ResultException);
}

TEST(Locale, comparesByItsText)
{
    const Locale american(u"en_US.UTF-8");
    const Locale same(u"en", u"US", nullptr);
    const Locale lower(u"en_us");
    EXPECT_TRUE(american.equals(same));
    EXPECT_EQ(american.compareTo(same), 0);
    EXPECT_FALSE(american.equals(lower));
    EXPECT_LT(american.compareTo(lower), 0);
    EXPECT_FALSE(american.equals(String(u"en_US")));
    EXPECT_THROW(american.compareTo(String(u"en_US")), CastFailedException);
}

TEST(Locale, answersThroughItsInterface)
{
    const auto locale = makeReference<Locale>(u"de_CH@x");
    using Operation = Result (IORVLocale::*)(util::ICharBuffer*) const;
    const std::tuple<Operation, Result, std::u16string_view> rows[] = {
        {&IORVLocale::GetLanguage, S_OK, u"de"sv},
        {&IORVLocale::GetCountry, S_OK, u"CH"sv},
        {&IORVLocale::GetVariant, S_OK, u"x"sv},
        {&IORVLocale::ToString, S_OK, u"de_CH@x"sv},
        {&IORVLocale::GetDisplayName, E_FAIL, u"before"sv},
        {&IORVLocale::GetDisplayLanguage, E_FAIL, u"before"sv},
        {&IORVLocale::GetDisplayCountry, E_FAIL, u"before"sv},
        {&IORVLocale::GetDisplayVariant, E_FAIL, u"before"sv},
    };
    for (const auto& [operation, result, text] : rows) {
        test::ForeignCharBuffer buffer(u"before"sv);
        EXPECT_EQ((locale.get()->*operation)(&buffer), result);
        EXPECT_EQ(buffer.text(), text);
    }
    test::ForeignCharBuffer buffer(u""sv);
    buffer.failWith = E_NOT_AVAILABLE;
    EXPECT_EQ(locale->ToString(&buffer), E_NOT_AVAILABLE);
    EXPECT_EQ(locale->ToString(nullptr), E_POINTER);
    EXPECT_THROW(locale->getDisplayCountry(locale.get()), Exception);
}

} // namespace
} // namespace orv::i18n
