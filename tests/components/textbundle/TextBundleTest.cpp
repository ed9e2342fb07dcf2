#include "orv/Exception.h"
#include "orv/collections/List.h"
#include "orv/i18n/StringBundle.h"
#include "orv/util/RegistryKey.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <tuple>
#include <vector>

namespace orv::i18n {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

/// A host that knows of the component nothing but its file.
class TextBundle : public testing::Test {
protected:
    template <class Entry>
    static Entry entry(const char16_t* name)
    {
        exec::SharedLibrary library(String(ORV_TEXTBUNDLE).getData()); // stays loaded
        return reinterpret_cast<Entry>(library.getSymbol(name));
    }

    String path(const std::string& name) const
    {
        return m_registry.folder().file(std::u16string(name.begin(), name.end()));
    }

    Result add(const std::string& name, std::string_view content)
    {
        m_registry.folder().write(name, content);
        return entry<decltype(&ORVRegisterCatalogue)>(u"ORVRegisterCatalogue")(
            String(ORV_TEXTBUNDLE).getData(), path(name).getData());
    }
    Result remove(const std::string& name)
    {
        return entry<decltype(&ORVUnregisterCatalogue)>(u"ORVUnregisterCatalogue")(
            path(name).getData());
    }

    /// The numbers of the lines that are told.
    std::vector<std::int32_t> brokenLines(const std::string& name)
    {
        std::vector<std::int32_t> lines;
        const auto tell = [](void* context, std::int32_t line, const char16_t* reason) {
            EXPECT_GT(ORVStrLenW(reason), 10);
            static_cast<decltype(lines)*>(context)->push_back(line);
        };
        entry<decltype(&ORVCheckCatalogue)>(u"ORVCheckCatalogue")(path(name).getData(), tell,
                                                                  &lines);
        return lines;
    }

    static Reference<StringBundle> open(const char16_t* locale = u"de")
    {
        return StringBundle::getBundle(u"Msg", makeReference<Locale>(locale).get());
    }
    static String textOf(const char16_t* key, const char16_t* locale = u"de")
    {
        try {
            return open(locale)->getString(key);
        } catch (const Exception& exception) {
            return exception.getDescription();
        }
    }

    test::ScratchRegistry m_registry;
    test::ScopedVariable m_locale{"LC_ALL", "fr_FR.UTF-8@x"};
};

TEST_F(TextBundle, isFoundFromTheWholeLocaleToEnglish)
{
    const char* const locales[] = {"de_AT@euro", "de_AT", "de",    "fr_FR@x",
                                   "fr_FR",      "fr",    "en_US", "en"};
    for (const std::string locale : locales) {
        ASSERT_EQ(add("Msg." + locale + ".messages", "who = " + locale), S_OK);
    }
    EXPECT_EQ(StringBundle::getBundle(u"Msg", nullptr)->getLocale()->toString(), u"fr_FR@x");
    for (const std::string locale : locales) {
        EXPECT_EQ(textOf(u"who", u"de_AT@euro"), locale.c_str());
        EXPECT_EQ(remove("Msg." + locale + ".messages"), S_OK);
        EXPECT_EQ(remove("Msg." + locale + ".messages"), E_NOT_FOUND);
    }
    EXPECT_EQ(textOf(u"who", u"de_AT@euro"), u"Resource not found");
}

TEST_F(TextBundle, readsEachLineByItself)
{
    const std::string_view broken[] = {
        "none"sv,      " = text"sv,  R"(odd = \q)"sv,  R"(cut = \)"sv,          R"(no \= text)"sv,
        "zero = \0"sv, "mark = 2"sv, "latin = \xFC"sv, "half = \xED\xA0\x80"sv, "tail = \xE2\x82"sv,
        "# \xFC"sv};
    const std::tuple<std::string_view, const char16_t*, const char16_t*> rows[] = {
        {"\t plain  key \t=  two words \t"sv, u"plain  key", u"two words"},
        {"Key=a = b"sv, u"Key", u"a = b"},
        {"key = b\r"sv, u"key", u"b"},
        {R"(\#\=\\ = \ \n\r\t\\n\ )"sv, u"#=\\", u" \n\r\t\\n "},
        {R"(end = \\ )"sv, u"end", u"\\"},
        {"wide = \xC3\xBC\xE2\x82\xAC\xF0\x9F\x99\x82\xEF\xBF\xBD"sv, u"wide",
         u"\u00FC\u20AC\U0001F642\uFFFD"},
        {"empty ="sv, u"empty", u"Resource not found"},
        {" \t"sv, u"\t", u"Resource not found"},
        {"#comment = none"sv, u"#comment", u"Resource not found"},
        {"last = 9"sv, u"last", u"9"},
    };
    std::string file = "\xEF\xBB\xBFmark=1";
    std::vector<std::int32_t> numbers;
    for (const std::string_view line : broken) {
        file.append("\n").append(line);
        numbers.push_back(static_cast<std::int32_t>(numbers.size()) + 2);
    }
    for (const auto& row : rows) file.append("\n").append(std::get<0>(row));
    ASSERT_EQ(add("Msg.de.messages", file), S_OK);
    EXPECT_EQ(brokenLines("Msg.de.messages"), numbers);
    for (const auto& [line, key, text] : rows) EXPECT_EQ(textOf(key), text) << line;
    const auto listed = open()->getKeys();
    std::string keys;
    for (const String* key : *listed) keys.append(key->getBytes()).append(";");
    EXPECT_EQ(keys, "mark;plain  key;Key;key;#=\\;end;wide;empty;last;");
}

TEST_F(TextBundle, standsRubbishAndLongLines)
{
    std::string rubbish(1 << 18, '\0');
    std::minstd_rand random(7);
    for (char& byte : rubbish) byte = static_cast<char>(random() >> 8);
    std::string file = rubbish + "\nlong = " + std::string(3 << 20, 'x') + "\n" + rubbish + "\n";
    for (int i = 0; i < 300; ++i) file += "key" + std::to_string(i) + " = text\n";
    EXPECT_EQ(add("Msg.de.messages", "no catalogue\n"), makeResult(0x8007000Du));
    EXPECT_EQ(add("Msg.de.messages", file), S_OK);
    EXPECT_GT(brokenLines("Msg.de.messages").size(), 1000u);
    const auto bundle = open();
    EXPECT_EQ(bundle->getString(u"long").getLength(), 3 << 20);
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(bundle->getString(u"key" + String::valueOf(i)), u"text");
    }
}

TEST_F(TextBundle, followsItsFileFromOneOpeningToTheNext)
{
    ASSERT_EQ(add("Msg.de.messages", "a = 1"), S_OK);
    ASSERT_EQ(add("Msg.fr.messages", "a = un"), S_OK);
    const auto before = open();
    for (int i = 10; i < 60; ++i) { // some of them within one tick of the file's time
        m_registry.folder().write("Msg.de.messages", "a = " + std::to_string(i));
        EXPECT_EQ(textOf(u"a"), String::valueOf(i));
    }
    std::filesystem::remove(m_registry.folder().path() / "Msg.de.messages");
    EXPECT_EQ(textOf(u"a"), u"un");
    EXPECT_EQ(before->getString(u"a"), u"1") << "keeps what it was opened with";
    std::filesystem::create_directory(m_registry.folder().path() / "Msg.de.messages");
    EXPECT_EQ(textOf(u"a"), u"un");
}

TEST_F(TextBundle, answersThroughItsInterface)
{
    ASSERT_EQ(add("Msg.de_AT.messages", "k = 0123456789\ne ="), S_OK);
    const auto create = [](IORVUnknown* outer, const GUID& iid, void** made) {
        return ORVComCreateObjectByProgID(u"tessaly.MSG.StringBundle.de_at", outer, iid, made);
    };
    void* made = nullptr;
    ASSERT_EQ(create(nullptr, IORVResourceBundle::IID, &made), S_OK);
    const auto bundle =
        Reference<IORVResourceBundle>::adopt(static_cast<IORVResourceBundle*>(made));
    test::ForeignCharBuffer key(u"kept"sv), text(u"kept"sv);
    EXPECT_EQ(bundle->LoadCharBuffer(u"x", &text), E_NOT_FOUND);
    EXPECT_EQ(bundle->LoadCharBuffer(nullptr, &text), E_POINTER);
    EXPECT_EQ(bundle->LoadCharBuffer(u"k", nullptr), E_POINTER);
    EXPECT_EQ(bundle->LoadCharBuffer(u"k", &text), S_OK);
    EXPECT_EQ(text.text(), u"0123456789"sv);
    EXPECT_EQ(bundle->GetResource(1, &key, &text), S_OK);
    EXPECT_EQ(key.text(), u"e"sv);
    EXPECT_EQ(text.text(), u""sv);
    for (const int index : {-1, 2}) {
        EXPECT_EQ(bundle->GetResource(index, &key, nullptr), E_INVALIDARG);
    }
    IORVLocale* locale = nullptr;
    ASSERT_EQ(bundle->GetLocale(&locale), S_OK);
    EXPECT_EQ(Reference<IORVLocale>::adopt(locale)->ToString(&text), S_OK);
    EXPECT_EQ(text.text(), u"de_AT"sv);

    EXPECT_EQ(create(bundle.get(), IORVUnknown::IID, &made), CLASS_E_NOAGGREGATION);
    const auto getClass = entry<decltype(&ORVGetClassObject)>(u"ORVGetClassObject");
    EXPECT_EQ(getClass(IORVUnknown::IID, IORVUnknown::IID, &made), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(TextBundle, isRegisteredUnderOneIdentifierAndRemovedWhole)
{
    for (const char* name : {"Msg.messages", ".de.messages", "Msg.de", "Msg.de-AT.messages",
                             "Msg.de_.messages", "Msg.UTF-8.messages", "Msg.de@a@b.messages"}) {
        EXPECT_EQ(add(name, "a = A"), E_INVALIDARG) << name;
        EXPECT_EQ(brokenLines(name), std::vector{0}) << name;
    }
    std::filesystem::create_directory(m_registry.folder().path() / "other");
    ASSERT_EQ(add("Msg.de_AT@euro.messages", "a = A"), S_OK);
    ASSERT_EQ(add("other/msg.de_AT@euro.messages", "a = other"), S_OK);
    ASSERT_EQ(add("A.b.c.fr.messages", "a = A"), S_OK);
    EXPECT_EQ(textOf(u"a", u"de_AT@euro"), u"other") << "took the place of the first";
    const util::RegistryKey classes(u"ORV_HKEY_CLASSES/CLSID");
    const auto key = classes.getSubkey(u"{F3DF3F03-8487-3428-876D-B9F7C2052B3C}");
    EXPECT_EQ(key.getValueString(u"Catalogue"), path("other/msg.de_AT@euro.messages"));
    EXPECT_EQ(remove("Msg.de_AT@euro.messages"), E_NOT_FOUND) << "another file is registered";

    const auto foreign = classes.getSubkey(u"{00000000-0000-0000-0000-000000000001}");
    foreign.setValue(u"Catalogue", String(u"of something else"));
    EXPECT_EQ(entry<decltype(&ORVUnregisterServer)>(u"ORVUnregisterServer")(), S_OK);
    const auto left = classes.getSubkeyIterator();
    EXPECT_EQ(left->next()->getKeyName(), foreign.getKeyName());
    EXPECT_FALSE(left->hasNext());
    EXPECT_EQ(textOf(u"a", u"de_AT@euro"), u"Resource not found");
}

TEST_F(TextBundle, isOpenedByManyThreadsWhileItsFileIsReplaced)
{
    ASSERT_EQ(add("Msg.de.messages", "a = 1\nb = 1"), S_OK);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([] {
            for (int pass = 0; pass < 50; ++pass) {
                const auto bundle = open();
                EXPECT_EQ(bundle->getString(u"a"), bundle->getString(u"b"));
            }
        });
    }
    const auto& folder = m_registry.folder().path();
    for (int pass = 0; pass < 50; ++pass) {
        m_registry.folder().write("new", pass % 2 == 0 ? "a = 1\nb = 1" : "a = 22\nb = 22");
        std::filesystem::rename(folder / "new", folder / "Msg.de.messages");
    }
}

} // namespace
} // namespace orv::i18n
