#include "orv/i18n/Locale.h"

#include "orv/Exceptions.h"
#include "tests/platform/ScopedVariable.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::i18n {
namespace {

using namespace std::string_view_literals;

TEST(Locale, takesATextApart)
{
    struct Row {
        const char16_t *text, *language, *country, *variant, *name;
    };
    for (const Row& row : {
             Row{u"en", u"en", u"", u"", u"en"},
             {u"en_US", u"en", u"US", u"", u"en_US"},
             {u"en_US.UTF-8@euro", u"en", u"US", u"euro", u"en_US@euro"},
             {u"de@euro", u"de", u"", u"euro", u"de@euro"},
             {u"fr.ISO8859-1", u"fr", u"", u"", u"fr"},
             {u"", u"", u"", u"", u""},
             {u"en_@x", u"en", u"", u"x", u"en@x"},
             {u"en@a_b", u"en@a", u"", u"a_b", u"en@a@a_b"},
             {u"en@x.y", u"en@x", u"", u"x.y", u"en@x@x.y"},
             {u"fr.ISO8859_1", u"fr.ISO8859", u"", u"", u"fr.ISO8859"},
         }) {
        const Locale locale(row.text);
        EXPECT_EQ(locale.getLanguage(), row.language) << test::readable(row.text);
        EXPECT_EQ(locale.getCountry(), row.country) << test::readable(row.text);
        EXPECT_EQ(locale.getVariant(), row.variant) << test::readable(row.text);
        EXPECT_EQ(locale.toString(), row.name);
    }
    EXPECT_EQ(Locale(u"a_b", nullptr, u"c.d").toString(), u"a_b@c.d") << "parts stay as they are";
    EXPECT_EQ(Locale(nullptr).toString(), u"");
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

    Locale copy(lower);
    copy = american;
    EXPECT_TRUE(copy.equals(american));
    EXPECT_EQ(copy.getCountry(), u"US");
}

TEST(Locale, theDefaultComesFromTheEnvironment)
{
    test::ScopedVariable all("LC_ALL", nullptr);
    test::ScopedVariable messages("LC_MESSAGES", "de_AT.UTF-8@euro");
    test::ScopedVariable lang("LANG", "fr_FR.UTF-8");
    EXPECT_EQ(Locale::getDefault()->toString(), u"de_AT@euro");
    messages.set(nullptr);
    EXPECT_EQ(Locale::getDefault()->toString(), u"fr_FR");
    all.set("C");
    EXPECT_EQ(Locale::getDefault()->toString(), u"en_US");
    all.set("a_name_longer_than_forty_bytes_all_in_all");
    EXPECT_THROW(Locale::getDefault(), ResultException);
}

TEST(Locale, answersThroughItsInterface)
{
    const auto locale = makeReference<Locale>(u"de_CH@x");
    void* found = nullptr;
    ASSERT_EQ(locale->QueryInterface(IORVLocale::IID, &found), S_OK);
    const auto face = Reference<IORVLocale>::adopt(static_cast<IORVLocale*>(found));

    using Operation = Result (IORVLocale::*)(util::ICharBuffer*) const;
    struct Row {
        Operation operation;
        std::u16string_view text;
    };
    for (const Row& row : {Row{&IORVLocale::GetLanguage, u"de"sv},
                           {&IORVLocale::GetCountry, u"CH"sv},
                           {&IORVLocale::GetVariant, u"x"sv},
                           {&IORVLocale::ToString, u"de_CH@x"sv}}) {
        test::ForeignCharBuffer buffer(u"before"sv);
        EXPECT_EQ((face.get()->*row.operation)(&buffer), S_OK);
        EXPECT_EQ(buffer.text(), row.text);
        buffer.failWith = E_NOT_AVAILABLE;
        EXPECT_EQ((face.get()->*row.operation)(&buffer), E_NOT_AVAILABLE);
        EXPECT_EQ(buffer.openLocks(), 0);
        EXPECT_EQ((face.get()->*row.operation)(nullptr), E_POINTER);
    }

    test::ForeignCharBuffer buffer(u"before"sv);
    for (const Operation operation :
         {&IORVLocale::GetDisplayName, &IORVLocale::GetDisplayLanguage,
          &IORVLocale::GetDisplayCountry, &IORVLocale::GetDisplayVariant}) {
        EXPECT_EQ((face.get()->*operation)(&buffer), E_FAIL);
    }
    EXPECT_EQ(face->GetDisplayVariantLoc(&buffer, face.get()), E_FAIL);
    EXPECT_EQ(buffer.text(), u"before"sv);
    EXPECT_THROW(locale->getDisplayCountry(locale.get()), Exception);
}

} // namespace
} // namespace orv::i18n
