#include "orv/log/quark/ILogEntry.h"
#include "tests/orv/io/Streams.h"
#include "tests/orv/log/Entries.h"
#include "tests/support/Living.h"

namespace orv::log {
namespace {

using orv::test::Living;
using test::basicText;
using test::namesOf;

constexpr const char16_t* NAMES[] = {u"timestamp", u"text",  u"sequence",
                                     u"name",      u"level", u"thread"};

template <class T>
Reference<const T> fieldOf(const ILogEntry& entry, const char16_t* name)
{
    return Reference<const T>(dynamic_cast<const T*>(entry.getField(name).get()));
}

TEST(LogEntry, givesWhatTheLoggerPutInInTheOrderOfTheNames)
{
    test::OpenLogger logger(u"here");
    const auto set = LogEntry::create();
    for (const char16_t* name : NAMES) {
        logger.enableField(name, true);
        set->setField(name, makeReference<Integer32>(0).get());
    }
    String text(u"of the caller");
    const auto entry = logger.getLogEntry(-7, text);
    text.setCharAt(0, u'X');
    EXPECT_EQ(namesOf(*entry), u"sequence level text name thread timestamp ");
    EXPECT_EQ(namesOf(*set), namesOf(*entry)) << "whatever the order of setting";
    EXPECT_EQ(*fieldOf<Integer32>(*entry, u"level"), -7);
    EXPECT_EQ(*fieldOf<String>(*entry, u"text"), u"of the caller");
    EXPECT_EQ(*fieldOf<Integer32>(*entry, u"sequence"), 0);
    EXPECT_EQ(*fieldOf<UInteger32>(*entry, u"thread"), static_cast<std::uint32_t>(::gettid()));
    EXPECT_EQ(*fieldOf<String>(*entry, u"name"), u"here");
    EXPECT_TRUE(fieldOf<TimeStamp>(*entry, u"timestamp"));
    EXPECT_EQ(entry->getField(u"text"), entry->getField(u"text")) << "one object";

    const int before = Living::count();
    entry->setField(u"text", makeReference<Living>().get());
    EXPECT_TRUE(fieldOf<Living>(*entry, u"text"));
    entry->setField(u"text", nullptr);
    EXPECT_EQ(Living::count(), before);
}

// The writers take the values of a Logger's entry without its map; what they print must be what
// the map gives.
TEST(LogEntry, printsAlikeFromPlainValuesAndFromItsFields)
{
    for (unsigned choice = 0; choice < 64; ++choice) {
        test::OpenLogger logger(u"na\u00EFve <logger>");
        for (unsigned i = 0; i < 6; ++i) logger.enableField(NAMES[i], (choice >> i & 1) != 0);
        const std::int32_t level = choice % 2 == 0 ? INT32_MIN : static_cast<std::int32_t>(choice);
        const auto entry = logger.getLogEntry(level, u"a text");
        const auto foreign = makeReference<test::ForeignEntry>(*entry);
        EXPECT_EQ(basicText(*entry), basicText(*foreign)) << choice;
    }
}

TEST(LogEntry, aFieldWithoutAValueIsAbsentButNamed)
{
    const auto entry = LogEntry::create();
    entry->setField(u"a b", nullptr);
    for (const char16_t* name : {u"a b", u"never set", u""}) {
        EXPECT_FALSE(entry->hasField(name));
        EXPECT_EQ(io::test::codeThrownBy([&] { entry->getField(name); }), 0x80070026);
    }
    EXPECT_EQ(namesOf(*entry), u"a b ");
}

TEST(LogEntry, speaksInResultCodesToComponents)
{
    const auto entry = LogEntry::create();
    quark::ILogEntry* const face = entry.get();
    const auto value = makeReference<Integer32>(5);
    EXPECT_EQ(face->SetField(u"five", toUnknown(value.get())), S_OK);
    EXPECT_EQ(face->SetField(u"none", nullptr), E_FAIL);
    EXPECT_EQ(face->SetField(nullptr, toUnknown(value.get())), E_POINTER);
    EXPECT_EQ(face->HasField(u"five"), 0);
    EXPECT_EQ(face->HasField(u"none"), 1);

    void* out = nullptr;
    ASSERT_EQ(face->GetField(u"five", IORVUnknown::IID, &out), S_OK);
    EXPECT_EQ(Reference<IORVUnknown>::adopt(static_cast<IORVUnknown*>(out)),
              toUnknown(value.get()));
    EXPECT_EQ(face->GetField(u"five", quark::ILogEntry::IID, &out), E_NOINTERFACE);
    EXPECT_EQ(face->GetField(u"none", IORVUnknown::IID, &out), E_FAIL);
    EXPECT_EQ(out, nullptr);

    quark::IFieldIterator* walk = nullptr;
    ASSERT_EQ(face->GetFieldIterator(&walk), S_OK);
    const auto names = Reference<quark::IFieldIterator>::adopt(walk);
    const auto name = makeReference<String>(u"before");
    EXPECT_EQ(names->HasNext(), 0);
    EXPECT_EQ(names->Next(name.get()), S_OK);
    EXPECT_EQ(*name, u"five");
    EXPECT_EQ(names->HasNext(), 1);
    EXPECT_EQ(names->Next(name.get()), E_FAIL);
}

TEST(TimeStamp, isPrintedForFilesAndForReaders)
{
    const std::pair<STRUCT_ORV_TIME, const char16_t*> rows[] = {
        {{2024, 1, 5, 5, 7, 8, 9, 10}, u"20240105070809.010"},
        {{0, 0, 0, 0, 0, 0, 1, 0}, u"1.000"},
        {{0, 0, 0, 0, 0, 0, 0, 7}, u"0.007"},
        {{2026, 12, 0, 31, 23, 59, 100, 65535}, u"20261231236065.535"},
    };
    for (const auto& [time, text] : rows) EXPECT_EQ(TimeStamp(time).toLog(), text);
    EXPECT_EQ(TimeStamp(std::int32_t{951782399}).toLog(), u"20000228235959.000");

    const TimeStamp stamp(STRUCT_ORV_TIME{2026, 11, 6, 14, 8, 22, 28, 123});
    EXPECT_EQ(stamp.toString(), u"11/14/26 08:22:28");
    EXPECT_EQ(stamp.toString(true), u"Saturday, 14 November 2026 08:22:28");
    EXPECT_THROW(TimeStamp(STRUCT_ORV_TIME{}).toString(), ResultException);
}

} // namespace
} // namespace orv::log
