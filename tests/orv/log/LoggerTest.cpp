#include "orv/log/Logger.h"

#include "orv/collections/List.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/i18n/StringMapBundle.h"
#include "orv/io/StringWriter.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/LogEntry.h"
#include "orv/log/StringBundleLogger.h"
#include "orv/log/SyncLogger.h"
#include "orv/log/TimeStamp.h"
#include "tests/orv/io/Streams.h"
#include "tests/support/Living.h"

#include <stdexcept>
#include <thread>

namespace orv::log {
namespace {

using io::test::refusalOf;
using orv::test::Living;

const String LINE(u"-------------------------\n");
constexpr const char16_t* NAMES[] = {u"timestamp", u"text",  u"sequence",
                                     u"name",      u"level", u"thread"};

/// A logger to memory, whose protected operations a test may call.
class OpenLogger : public Logger {
public:
    template <class... Name>
    explicit OpenLogger(const Name&... name) : Logger(name...)
    {
        addProcessor(BasicLogWriter::create(m_text.get()).get());
    }
    using Logger::getLogEntry;
    using Logger::log;
    String written() const { return m_text->toString(); }

private:
    Reference<io::StringWriter> m_text = makeReference<io::StringWriter>(16);
};

/// The names of the fields in their order, with a blank behind each.
String namesOf(const ILogEntry& entry)
{
    String names;
    for (const String* name : entry.getFieldNames()) names.append(*name).append(u" ");
    return names;
}

template <class T>
Reference<const T> fieldOf(const ILogEntry& entry, const char16_t* name)
{
    return Reference<const T>(dynamic_cast<const T*>(entry.getField(name).get()));
}

TEST(LogEntry, givesWhatTheLoggerPutInInTheOrderOfTheNames)
{
    OpenLogger logger(u"here");
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
    EXPECT_FALSE(entry->hasField(u"text") || entry->hasField(u"never set"));
    EXPECT_EQ(refusalOf([&] { entry->getField(u"text"); }).first, E_END_OF_FILE);
    EXPECT_EQ(namesOf(*entry), namesOf(*set)) << "named without a value";
}

// The writers take the values of a Logger's entry without its map; what they print must be what
// the map gives.
TEST(LogEntry, printsAlikeFromPlainValuesAndFromItsFields)
{
    for (unsigned choice = 0; choice < 64; ++choice) {
        OpenLogger logger(u"na\u00EFve <logger>");
        for (unsigned i = 0; i < 6; ++i) logger.enableField(NAMES[i], (choice >> i & 1) != 0);
        const std::int32_t level = choice % 2 == 0 ? INT32_MIN : static_cast<std::int32_t>(choice);
        const auto entry = logger.getLogEntry(level, u"a text");
        logger.log(entry.get());
        String lines;
        for (const String* name : entry->getFieldNames()) {
            lines.append(*name + u"=" + entry->getField(*name)->toString() + u"\n");
        }
        EXPECT_EQ(logger.written(), lines + LINE) << choice;
    }
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
    const std::pair<TimeStamp, const char16_t*> rows[] = {
        {TimeStamp({2024, 1, 5, 5, 7, 8, 9, 10}), u"20240105070809.010"},
        {TimeStamp({0, 0, 0, 0, 0, 0, 1, 0}), u"1.000"},
        {TimeStamp({0, 0, 0, 0, 0, 0, 0, 7}), u"0.007"},
        {TimeStamp({2026, 12, 0, 31, 23, 59, 100, 65535}), u"20261231236065.535"},
        {TimeStamp(std::int32_t{951782399}), u"20000228235959.000"},
    };
    for (const auto& [stamp, text] : rows) EXPECT_EQ(stamp.toLog(), text);

    const TimeStamp stamp(STRUCT_ORV_TIME{2026, 11, 6, 14, 8, 22, 28, 123});
    EXPECT_EQ(stamp.toString(), u"11/14/26 08:22:28");
    EXPECT_EQ(stamp.toString(true), u"Saturday, 14 November 2026 08:22:28");
    EXPECT_THROW(TimeStamp(STRUCT_ORV_TIME{}).toString(), ResultException);
}

TEST(Logger, putsItsFieldsInEntriesWhileItIsEnabled)
{
    OpenLogger plain;
    plain.log(3, u"one");
    plain.setDefaultLevel(-4);
    plain.log(u"two");
    plain.enableField(u"SEQUENCE", true);
    plain.enableField(u"Level", false);
    plain.enableField(u"sequences", true);
    plain.setEnabled(false);
    plain.log(1, u"never, and not counted");
    plain.setEnabled(true);
    plain.log(5, u"");
    EXPECT_EQ(plain.written(), u"level=3\ntext=one\n" + LINE + u"level=-4\ntext=two\n" + LINE +
                                   u"sequence=2\ntext=\n" + LINE);
    OpenLogger named(u"web");
    named.log(1, u"a\nb");
    EXPECT_EQ(named.written(), u"level=1\ntext=a\nb\nname=web\n" + LINE);
}

TEST(Logger, letsSubclassesAddFieldsAndHandOverEntries)
{
    struct CustomLogger : OpenLogger {
        void addCustomFields(ILogEntry* entry) override
        {
            entry->setField(u"user id=\"7\"", makeReference<String>(u"ann").get());
            entry->setField(u"level", makeReference<String>(u"high").get());
        }
    } custom;
    custom.enableField(u"sequence", true);
    custom.setEnabled(false);
    custom.log(LogEntry::create().get());
    custom.setEnabled(true);
    custom.log(1, u"x");
    EXPECT_EQ(custom.written(),
              LINE + u"sequence=1\nlevel=high\ntext=x\nuser id=\"7\"=ann\n" + LINE);
}

/// What loggers log to; fails where the level is negative.
struct Target : ::orv::quark::Implements<Object, ILevelLogger> {
    void log(std::int32_t level, const String& text) override
    {
        EXPECT_EQ(++inside, 1);
        std::this_thread::yield();
        ++calls;
        last = String::valueOf(level) + u": " + text;
        --inside;
        if (level < 0) throw std::runtime_error("closed");
    }
    int inside = 0, calls = 0;
    String last;
};

TEST(SyncLogger, letsOneCallThroughAtATime)
{
    const auto target = makeReference<Target>();
    const auto logger = makeReference<SyncLogger>(target.get());
    EXPECT_THROW(logger->log(-1, u""), std::runtime_error);
    const auto work = [&] {
        for (int i = 0; i < 300; ++i) logger->log(1, u"x");
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(target->calls, 601);
}

TEST(StringBundleLogger, fillsInTheArgumentsOrNone)
{
    const auto map = makeReference<collections::StringHashMap>();
    const auto bundle = makeReference<i18n::StringMapBundle>(map.get(), nullptr);
    const auto target = makeReference<Target>();
    StringBundleLogger logger(bundle.get(), target.get());
    const Reference<Object> objects[] = {makeReference<String>(u"<{1}>"),
                                         makeReference<Integer32>(7), nullptr};
    using Row = std::tuple<const char16_t*, std::vector<int>, const char16_t*>;
    for (const auto& [pattern, indices, expected] :
         {Row{u"{0} and {0}", {}, u"{0} and {0}"},
          {u"{0} and {0}", {0}, u"<{1}> and <{1}>"},
          {u"{1}-{0}", {0}, u"{1}-{0}"},
          {u"{1}-{0}", {0, 1}, u"7-<{1}>"},
          {u"{0}{1}{0}", {0, 1}, u"<{1}>7<{1}>"},
          {u"{0} {2}", {0, 1}, u"<{1}> {2}"},
          {u"{0}{1}", {0, 2}, u"{0}{1}"},
          {nullptr, {0}, u"{0} key"}}) { // no text, so nothing is filled in
        collections::List<Object> arguments(makeReference<collections::quark::ArrayList>().get());
        for (const int index : indices) arguments.add(objects[index].get());
        map->clear();
        if (pattern != nullptr) map->put(u"{0} key", makeReference<String>(pattern).get());
        logger.log(3, u"{0} key", arguments);
        EXPECT_EQ(target->last, u"3: " + String(expected));
        logger.log(4, u"{0} key");
        EXPECT_EQ(target->last, u"4: " + String(pattern == nullptr ? u"{0} key" : pattern));
        EXPECT_THROW(logger.log(-1, u"{0} key", arguments), std::runtime_error);
    }
}

} // namespace
} // namespace orv::log
