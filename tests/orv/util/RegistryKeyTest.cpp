#include "orv/util/RegistryKey.h"

#include "orv/Exceptions.h"
#include "tests/support/Refusals.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orv::util {
namespace {

/// A store of the test's own.
class RegistryKeyTest : public testing::Test {
protected:
    test::TemporaryFolder m_folder;
    test::ScopedVariable m_variable{"ORV_REGISTRY", (m_folder.path() / "store.db").c_str()};
};

using test::Refusal;
using test::refusalOf;
const Refusal absent(makeResult(0x80070002u), "");
const Refusal mismatch(E_FAIL, "Registry type mismatch");

TEST_F(RegistryKeyTest, takesItsRootFromTheStartOfThePath)
{
    using Row = std::tuple<const char16_t*, ENUM_ORV_HKEY, const char16_t*, const char16_t*>;
    for (const auto& [path, root, full, name] : {
             Row{u"ORV_HKEY_CONFIG_CROSS/a/b", ORV_HKEY_CONFIG_32, u"ORV_HKEY_CONFIG_32\\a\\b",
                 u"b"},
             {u"ORV_HKEY_CONFIG", ORV_HKEY_CONFIG_64, u"ORV_HKEY_CONFIG_64", u"ORV_HKEY_CONFIG"},
             {u"ORV_HKEY_CONFIG_32\\a", ORV_HKEY_CONFIG_32, u"ORV_HKEY_CONFIG_32\\a", u"a"},
             {u"ORV_HKEY_CONFIG_64/", ORV_HKEY_CONFIG_64, u"ORV_HKEY_CONFIG_64", u""},
             {u"ORV_HKEY_CLASSES\\x", ORV_HKEY_CLASSES_64, u"ORV_HKEY_CLASSES_64\\x", u"x"},
             {u"orv_hkey_classes_cross\\X", ORV_HKEY_CLASSES_32, u"ORV_HKEY_CLASSES_32\\X", u"X"},
             {u"ORV_HKEY_CLASSES_32/", ORV_HKEY_CLASSES_32, u"ORV_HKEY_CLASSES_32", u""},
             {u"ORV_HKEY_CLASSES_64/", ORV_HKEY_CLASSES_64, u"ORV_HKEY_CLASSES_64", u""},
             {u"orv_hkey_user", ORV_HKEY_USER, u"ORV_HKEY_USER", u"orv_hkey_user"},
         }) {
        const RegistryKey key{String(path)};
        EXPECT_EQ(key.getHKEY(), root) << key.getKey(false).getBytes();
        EXPECT_EQ(key.getKey(false), full);
        EXPECT_EQ(key.getKeyName(), name);
    }
    for (const char16_t* path : {u"\\a\\b", u"", u"ORV_HKEY", u"ORV_HKEY_USER2\\a"}) {
        EXPECT_EQ(refusalOf([&] { RegistryKey{String(path)}; }),
                  Refusal(E_FAIL, "Unknown ORV_HKEY"));
    }
    const RegistryKey odd(static_cast<ENUM_ORV_HKEY>(9), u"a/b");
    EXPECT_EQ(odd.getKey(false), u"\\a\\b");
    EXPECT_FALSE(odd.valueExists(u"v"));
}

TEST_F(RegistryKeyTest, knowsItsParentAndItsSubkeys)
{
    const RegistryKey root(u"ORV_HKEY_USER");
    EXPECT_EQ(root.getKey(true), u"");
    const RegistryKey below = root.getSubkey(u"x");
    EXPECT_EQ(below.getKey(false), u"ORV_HKEY_USER\\\\x");
    EXPECT_EQ(below.getParent().getKey(false), u"ORV_HKEY_USER");
    const RegistryKey deep(ORV_HKEY_CONFIG_32, u"a/b/c");
    EXPECT_EQ(deep.getParent().getKey(false), u"ORV_HKEY_CONFIG_32\\a\\b");
    const Refusal none(E_FAIL, "No parent key");
    EXPECT_EQ(refusalOf([&] { root.getParent(); }), none);
    EXPECT_EQ(refusalOf([] { RegistryKey(ORV_HKEY_USER, u"a").getParent(); }), none);
    below.setValue(u"v", u"text");
    EXPECT_EQ(RegistryKey(u"ORV_HKEY_USER\\X").getValueString(u"V"), u"text");
}

TEST_F(RegistryKeyTest, comparesByItsRoot)
{
    const RegistryKey a(ORV_HKEY_USER, u"a");
    const RegistryKey b(ORV_HKEY_USER, u"b");
    const RegistryKey upper(ORV_HKEY_CONFIG_32, u"A");
    EXPECT_TRUE(a.equals(b)) << "one root";
    EXPECT_FALSE(a.equals(a)) << "the same object";
    EXPECT_EQ(a.compareTo(a), 0);
    EXPECT_TRUE(a.equals(upper)) << "two roots, one path";
    EXPECT_GT(b.compareTo(upper), 0);
    EXPECT_EQ(a.hashCode(), String(u"a").hashCode());
    EXPECT_THROW(a.compareTo(String(u"a")), CastFailedException);
}

TEST_F(RegistryKeyTest, readsAValueAsTheTypeThatItHas)
{
    const RegistryKey key(u"ORV_HKEY_USER\\k");
    EXPECT_EQ(refusalOf([&] { key.getValueString(u"s"); }), absent);
    EXPECT_EQ(refusalOf([&] { key.getValueType(u"s"); }), absent);
    EXPECT_EQ(refusalOf([&] { key.deleteValue(u"s"); }), absent);
    EXPECT_EQ(refusalOf([&] { key.remove(); }), absent);

    key.setValue(u"s", String(u"text"));
    key.setValue(u"n", std::uint32_t{0xFEDCBA98u});
    key.setValue(u"w", std::uint64_t{1} << 40);
    const signed char bytes[] = {1, 0, -1};
    key.setValue(u"b", bytes, 3);
    for (const auto& [name, type] : {std::pair{u"s", ORV_REG_STRING},
                                     {u"n", ORV_REG_UINT32},
                                     {u"w", ORV_REG_UINT64},
                                     {u"b", ORV_REG_BINARY}}) {
        EXPECT_EQ(key.getValueType(name), type);
    }
    EXPECT_EQ(key.getValueUINT32(u"N"), 0xFEDCBA98u);
    EXPECT_EQ(key.getValueUINT64(u"n"), 0xFEDCBA98u);
    for (const auto& wrong : {refusalOf([&] { key.getValueUINT64(u"w"); }),
                              refusalOf([&] { key.getValueString(u"n"); }),
                              refusalOf([&] { key.getValueUINT32(u"b"); })}) {
        EXPECT_EQ(wrong, mismatch);
    }
    EXPECT_EQ(refusalOf([&] { key.getValueUINT32(u"w"); }), Refusal(E_BUFFER_TOO_SMALL, ""));

    signed char room[4] = {9, 9, 9, 9};
    EXPECT_EQ(key.getValue(u"b", room, 2), 3) << "too small";
    EXPECT_EQ(room[0], 9);
    EXPECT_EQ(key.getValue(u"b", room, 4), 3);
    EXPECT_TRUE(std::equal(bytes, bytes + 3, room));
    EXPECT_EQ(key.getValue(u"none", room, 4), 4) << "no value: the size as it was";
    EXPECT_EQ(key.getValue(u"b", room, -7), -7);
    EXPECT_EQ(refusalOf([&] { key.setValue(u"b", bytes, -1); }), Refusal(E_INVALIDARG, ""));
}

TEST_F(RegistryKeyTest, keepsTextsOfEveryLength)
{
    const RegistryKey key(u"ORV_HKEY_CLASSES\\k");
    for (const int length : {0, 1, 254, 255, 510, 511, 512, 1000, 40'000}) {
        std::u16string text(static_cast<std::size_t>(length), u'\u20AC');
        for (std::size_t i = 0; i < text.size(); ++i) text[i] = char16_t(0xD7F0 + i % 40);
        key.setValue(test::textOf(text));
        EXPECT_EQ(key.getValueString(u""), test::textOf(text)) << length;
    }
    for (const std::string& bytes : {std::string("a\0b", 3), std::string("a\0b\0", 4)}) {
        // Without a terminator, and with half a unit behind the last one.
        ORVRegistrySetValue(ORV_HKEY_CLASSES_64, u"k", u"raw", ORV_REG_STRING, bytes.data(),
                            static_cast<std::uint32_t>(bytes.size()));
        EXPECT_EQ(key.getValueString(u"raw"), bytes.size() == 3 ? u"a" : u"ab");
    }
    key.setValue(std::uint32_t{5});
    EXPECT_EQ(key.getValueUINT32(u""), 5u);
    key.deleteValue(u"");
    EXPECT_FALSE(key.valueExists(u""));
}

TEST_F(RegistryKeyTest, walksSubkeysAndValues)
{
    const RegistryKey key(u"ORV_HKEY_USER\\k");
    EXPECT_EQ(refusalOf([&] { key.getSubkeyIterator(); }), absent);
    EXPECT_EQ(refusalOf([&] { key.getValueIterator(); }), absent);
    for (const char16_t* name : {u"b", u"C", u"a"}) {
        key.getSubkey(name).setValue(u"v", u"");
        key.setValue(name, String(u'x', 2000));
    }
    std::vector<String> names;
    for (const auto keys = key.getSubkeyIterator(); keys->hasNext();) {
        names.push_back(keys->next()->getKey(false));
        EXPECT_EQ(keys->next()->getKey(false), names.back()) << "does not move";
    }
    EXPECT_EQ(names, (std::vector<String>{u"ORV_HKEY_USER\\k\\a", u"ORV_HKEY_USER\\k\\b",
                                          u"ORV_HKEY_USER\\k\\C"}));
    const auto values = key.getValueIterator();
    EXPECT_EQ(*values->next(), u"a") << "moves where hasNext() did not";
    EXPECT_TRUE(values->hasNext() && values->hasNext());
    EXPECT_EQ(*values->next(), u"C") << "one is skipped";
    EXPECT_FALSE(values->hasNext());
    EXPECT_EQ(refusalOf([&] { values->next(); }), Refusal(E_FAIL, "no more values"));
    const auto none = key.getSubkey(u"a").getSubkeyIterator();
    EXPECT_EQ(refusalOf([&] { none->next(); }), Refusal(E_FAIL, "no more keys"));
}

} // namespace
} // namespace orv::util
