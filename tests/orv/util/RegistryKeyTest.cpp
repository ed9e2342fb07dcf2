#include "orv/util/RegistryKey.h"

#include "orv/Exceptions.h"
#include "tests/support/Refusals.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <tuple>

#include <unistd.h>

namespace orv::util {
namespace {

/// A store of the test's own.
class RegistryKeyTest : public testing::Test {
protected:
    test::TemporaryFolder m_folder;
    const std::filesystem::path m_file = m_folder.path() / "store.db";
    test::ScopedVariable m_variable{"ORV_REGISTRY", m_file.c_str()};
};

using test::Refusal;
using test::refusalOf;
const Refusal absent(makeResult(0x80070002u), "");
const Refusal denied(makeResult(0x80070005u), "");
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
    const signed char bytes[] = {1, 0, -1};
    key.setValue(u"s", String(u"text"));
    key.setValue(u"n", std::uint32_t{0xFEDCBA98u});
    key.setValue(u"w", std::uint64_t{1} << 40);
    key.setValue(u"b", bytes, 3);
    for (std::uint32_t type = ORV_REG_STRING; type <= ORV_REG_BINARY; ++type) {
        EXPECT_EQ(key.getValueType(String(&u"snwb"[type], 1)), type);
    }
    EXPECT_EQ(key.getValueUINT32(u"N"), 0xFEDCBA98u);
    EXPECT_EQ(key.getValueUINT64(u"n"), 0xFEDCBA98u);

    signed char room[4] = {9, 9, 9, 9};
    EXPECT_EQ(key.getValue(u"b", room, 2), 3) << "too small";
    EXPECT_EQ(room[0], 9);
    EXPECT_EQ(key.getValue(u"b", room, 4), 3);
    EXPECT_TRUE(std::equal(bytes, bytes + 3, room));
    EXPECT_EQ(key.getValue(u"none", room, 4), 4) << "no value: the size as it was";
    EXPECT_EQ(key.getValue(u"b", room, -7), -7);

    const std::tuple<const char*, Refusal, std::function<void()>> rows[] = {
        {"no text", absent, [&] { key.getValueString(u"x"); }},
        {"no type", absent, [&] { key.getValueType(u"x"); }},
        {"no value", absent, [&] { key.deleteValue(u"x"); }},
        {"no key", absent, [&] { key.getSubkey(u"x").remove(); }},
        {"no keys", absent, [&] { key.getSubkey(u"x").getSubkeyIterator(); }},
        {"no values", absent, [&] { key.getSubkey(u"x").getValueIterator(); }},
        {"64 bits", mismatch, [&] { key.getValueUINT64(u"w"); }},
        {"64 bits in 32", {E_BUFFER_TOO_SMALL, ""}, [&] { key.getValueUINT32(u"w"); }},
        {"number as text", mismatch, [&] { key.getValueString(u"n"); }},
        {"bytes as number", mismatch, [&] { key.getValueUINT32(u"b"); }},
        {"size", {E_INVALIDARG, ""}, [&] { key.setValue(u"b", bytes, -1); }},
    };
    for (const auto& [what, refusal, call] : rows) EXPECT_EQ(refusalOf(call), refusal) << what;
}

TEST_F(RegistryKeyTest, keepsTextsOfEveryLength)
{
    const RegistryKey key(u"ORV_HKEY_CLASSES\\k");
    for (const int length : {0, 1, 510, 511, 512, 40'000}) {
        String text(u'\uD7F0', length); // up to 1024 bytes are read at once
        for (int i = 0; i < length; ++i) text.setCharAt(i, char16_t(0xD7F0 + i % 40));
        key.setValue(text);
        EXPECT_EQ(key.getValueString(u""), text) << length;
    }
    // Without a terminator, and with half a unit behind the last one.
    for (const auto& [size, text] : {std::pair{3u, u"a"}, {4u, u"ab"}}) {
        ORVRegistrySetValue(ORV_HKEY_CLASSES_64, u"k", u"raw", ORV_REG_STRING, "a\0b", size);
        EXPECT_EQ(key.getValueString(u"raw"), text);
    }
    key.setValue(std::uint32_t{5});
    EXPECT_EQ(key.getValueUINT32(u""), 5u);
    key.deleteValue(u"");
    EXPECT_FALSE(key.valueExists(u""));
}

TEST_F(RegistryKeyTest, walksSubkeysAndValues)
{
    const RegistryKey key(u"ORV_HKEY_USER\\k");
    for (const char16_t* name : {u"b", u"C", u"a"}) {
        key.getSubkey(name).setValue(u"v", u"");
        key.setValue(name, String(u'x', 2000));
    }
    const auto keys = key.getSubkeyIterator();
    for (const char16_t* name : {u"a", u"b", u"C"}) {
        EXPECT_TRUE(keys->hasNext());
        for (int again = 0; again < 2; ++again) {
            EXPECT_EQ(keys->next()->getKey(false), String(u"ORV_HKEY_USER\\k\\") + name);
        }
    }
    EXPECT_FALSE(keys->hasNext());
    EXPECT_EQ(refusalOf([&] { keys->next(); }), Refusal(E_FAIL, "no more keys"));
    const auto values = key.getValueIterator();
    EXPECT_EQ(*values->next(), u"a") << "moves where hasNext() did not";
    EXPECT_TRUE(values->hasNext() && values->hasNext());
    EXPECT_EQ(*values->next(), u"C") << "one is skipped";
    EXPECT_FALSE(values->hasNext());
    EXPECT_EQ(refusalOf([&] { values->next(); }), Refusal(E_FAIL, "no more values"));
}

/// Makes the process one of a user who owns nothing, until the end of the scope.
struct AsNobody {
    ~AsNobody()
    {
        if (became && ::setresuid(0, 0, 0) != 0) std::abort();
    }
    const bool became = ::setresuid(65534, 65534, 0) == 0;
};

TEST_F(RegistryKeyTest, isSafeFromAUserWhoMayNotWrite)
{
    const RegistryKey key(u"ORV_HKEY_USER\\k");
    key.setValue(u"v", u"kept");
    std::filesystem::permissions(m_folder.path(), std::filesystem::perms(0755));
    const auto isThereForNobody = [&] {
        const AsNobody nobody;
        return nobody.became && ::access(m_file.c_str(), F_OK) == 0;
    };
    if (!isThereForNobody()) {
        GTEST_SKIP() << "only root can become another user, who must be able to come here";
    }
    // A look elsewhere closes the file, with all that is in it and nothing left beside it.
    m_variable.set((m_folder.path() / "none.db").c_str());
    EXPECT_FALSE(key.valueExists(u"v"));
    m_variable.set(m_file.c_str());
    const std::string before = m_folder.read("store.db");

    using Row = std::tuple<unsigned, unsigned, Refusal>;
    for (const auto& [file, folder, reading] : {Row{0600, 0755, denied},
                                                {0444, 0755, denied},
                                                {0444, 0777, Refusal(S_OK, "not refused")}}) {
        std::filesystem::permissions(m_file, std::filesystem::perms(file));
        std::filesystem::permissions(m_folder.path(), std::filesystem::perms(folder));
        {
            const AsNobody nobody;
            EXPECT_EQ(refusalOf([&] { EXPECT_EQ(key.getValueString(u"v"), u"kept"); }), reading);
            EXPECT_EQ(refusalOf([&] { key.getSubkeyIterator(); }), reading);
            EXPECT_EQ(refusalOf([&] { key.setValue(u"v", u"lost"); }), denied);
            EXPECT_EQ(refusalOf([&] { key.getSubkey(u"new").setValue(u"lost"); }), denied);
            EXPECT_EQ(refusalOf([&] { key.deleteValue(u"v"); }), denied);
            EXPECT_EQ(refusalOf([&] { key.remove(); }), denied);
        }
        EXPECT_EQ(m_folder.read("store.db"), before) << file << " in " << folder;
    }
}

} // namespace
} // namespace orv::util
