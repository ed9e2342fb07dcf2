#include "orv/text/charset/CodecManager.h"

#include "orv/Class.h"
#include "orv/Exceptions.h"
#include "orv/Reference.h"
#include "orv/text/charset/EncInfo.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>
#include <thread>
#include <vector>

namespace orv::text::charset {
namespace {

/// The run-time name of the class that serves a name, "" for none.
String classOf(Object* made)
{
    const Reference<Object> holder(made);
    return made == nullptr ? String() : String(made->getClass()->getName());
}

std::vector<EncInfo> allInfos()
{
    std::uint32_t count = 0;
    EXPECT_EQ(ORVEnumerateEncInfo(&count, nullptr), E_BUFFER_TOO_SMALL);
    std::vector<EncInfo> infos(count);
    EXPECT_EQ(ORVEnumerateEncInfo(&count, infos.data()), S_OK);
    return infos;
}

TEST(CodecManager, keepsTheFirstRegistrationOfAName)
{
    CodecManager* const manager = CodecManager::getInstance();
    const char16_t* const encoder = u"orv::text::charset::CTBCP437";
    const char16_t* const decoder = u"orv::text::charset::BTCCP437";
    manager->registerCodec(u"utf-8", encoder, decoder);
    EXPECT_EQ(classOf(manager->getEncoder(u"UTF-8")), u"orv::text::charset::CTBUTF8");
    manager->registerCodec(u"My-Own", encoder, decoder);
    EXPECT_EQ(classOf(manager->getDecoder(u"mY-oWN")), decoder);
    EXPECT_THROW(manager->registerCodec(u"Broken", encoder, u"none"), ClassNotFoundException);
    EXPECT_EQ(manager->getEncoder(u"Broken"), nullptr);
}

TEST(CodecManager, servesSeveralThreads)
{
    const auto lookUp = [] {
        CodecManager* const manager = CodecManager::getInstance();
        for (std::int32_t i = 0; i < 200; ++i) {
            for (const char16_t* const name : {u"utf8", u"1252", u"A7"}) {
                EXPECT_GT(classOf(manager->getDecoder(name)).getLength(), 0);
            }
            EncInfo info{};
            EXPECT_EQ(ORVGetEncInfoByName(u"Latin1", &info), S_OK);
            EXPECT_EQ(info.codePage, 28591u);
        }
    };
    std::vector<std::thread> threads;
    for (std::int32_t i = 0; i < 4; ++i) threads.emplace_back(lookUp);
    for (std::thread& thread : threads) thread.join();
}

TEST(EncInfo, listsTheEncodingsWithACodePageInOrder)
{
    const std::vector<EncInfo> infos = allInfos();
    ASSERT_EQ(infos.size(), 28u);
    const std::u16string_view first[] = {u"ASCII",  u"ISO8859_1", u"CP437",
                                         u"CP1252", u"UTF-8",     u"CP1250"};
    for (std::size_t i = 0; i < std::size(first); ++i) EXPECT_EQ(infos[i].name, first[i]);
    EXPECT_EQ(String(infos.back().name), u"EUCJP");
    std::set<std::uint32_t> codePages;
    for (const EncInfo& info : infos) {
        codePages.insert(info.codePage);
        EXPECT_EQ(info.reserved, 0u);
        // The names of code pages that begin with CP tell their number.
        const String name(info.name);
        if (name.startsWith(u"CP")) {
            EXPECT_EQ(ORVStrToULW(info.name + 2, nullptr, 10), info.codePage);
        }
        EncInfo found{};
        EXPECT_EQ(ORVGetEncInfoByCodePage(info.codePage, &found), S_OK);
        EXPECT_EQ(found.name, info.name);
        EXPECT_EQ(ORVGetEncInfoByName(name.getData(), &found), S_OK);
        EXPECT_EQ(found.codePage, info.codePage);
    }
    EXPECT_EQ(codePages.size(), infos.size());
    EXPECT_FALSE(codePages.contains(0));
}

TEST(EncodingInfo, listsAllEncodingsWithTheirAliases)
{
    std::uint32_t count = 0;
    EXPECT_EQ(ORVEnumerateEncodings(&count, nullptr), E_BUFFER_TOO_SMALL);
    std::vector<EncodingInfo> infos(count);
    ASSERT_EQ(ORVEnumerateEncodings(&count, infos.data()), S_OK);
    ASSERT_EQ(infos.size(), 33u);
    CodecManager* const manager = CodecManager::getInstance();
    std::size_t aliases = 0;
    for (const EncodingInfo& info : infos) {
        const String served = classOf(manager->getEncoder(info.name));
        EXPECT_EQ(served.getLength() > 0, info.isBuiltIn != 0) << test::readable(info.name);
        for (const char16_t* const* alias = info.aliases; *alias != nullptr; ++alias, ++aliases) {
            EXPECT_EQ(classOf(manager->getEncoder(*alias)), served) << test::readable(*alias);
        }
    }
    EXPECT_EQ(aliases, 35u + 15u);
}

} // namespace
} // namespace orv::text::charset
