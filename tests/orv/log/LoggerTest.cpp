#include "orv/collections/List.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/i18n/StringMapBundle.h"
#include "orv/log/MultiProcessor.h"
#include "orv/log/StringBundleLogger.h"
#include "orv/log/SyncLogger.h"
#include "tests/orv/log/Entries.h"

#include <stdexcept>
#include <thread>
#include <vector>

namespace orv::log {
namespace {

using test::basicText;
using test::calling;

/// A logger with a processor that keeps what it prints.
struct Kept {
    explicit Kept(const Reference<Logger>& to) : logger(to)
    {
        logger->addProcessor(
            calling([this](const ILogEntry& entry) { texts += basicText(entry); }).get());
    }

    Reference<Logger> logger;
    std::u16string texts;
};

const std::u16string LINE = u"-------------------------\n";

TEST(Logger, putsItsFieldsInEntriesWhileItIsEnabled)
{
    Kept plain(Logger::create());
    plain.logger->log(3, u"one");
    plain.logger->setDefaultLevel(-4);
    plain.logger->log(u"two");
    plain.logger->enableField(u"SEQUENCE", true);
    plain.logger->enableField(u"Level", false);
    plain.logger->enableField(u"sequences", true);
    plain.logger->setEnabled(false);
    plain.logger->log(1, u"never, and not counted");
    EXPECT_FALSE(plain.logger->isEnabled());
    plain.logger->setEnabled(true);
    plain.logger->log(5, u"");
    EXPECT_EQ(plain.texts, u"level=3\ntext=one\n" + LINE + u"level=-4\ntext=two\n" + LINE +
                               u"sequence=2\ntext=\n" + LINE);

    Kept named(Logger::create(u"web"));
    named.logger->log(1, u"a\nb");
    EXPECT_EQ(named.texts, u"level=1\ntext=a\nb\nname=web\n" + LINE);
}

class CustomLogger : public test::OpenLogger {
protected:
    void addCustomFields(ILogEntry* entry) override
    {
        entry->setField(u"user id=\"7\"", makeReference<String>(u"ann").get());
        entry->setField(u"level", makeReference<String>(u"high").get());
    }
};

TEST(Logger, letsSubclassesAddFieldsAndHandOverEntries)
{
    const auto custom = makeReference<CustomLogger>();
    Kept kept(custom);
    custom->enableField(u"sequence", true);
    custom->setEnabled(false);
    custom->log(LogEntry::create().get());
    custom->setEnabled(true);
    custom->Logger::log(1, u"x");
    EXPECT_EQ(kept.texts, LINE + u"sequence=1\nlevel=high\ntext=x\nuser id=\"7\"=ann\n" + LINE);
}

template <class Body>
void fromFourThreads(Body body)
{
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n) body();
        });
    }
}

TEST(MultiProcessor, callsInOrderOneEntryAtATimeAndStopsAtAFailure)
{
    const auto multi = MultiProcessor::create();
    const auto logger = Logger::create();
    logger->addProcessor(multi.get());
    logger->log(u"dropped");
    EXPECT_THROW(logger->addProcessor(nullptr), ResultException);
    EXPECT_EQ(Logger::createProcessor(u"file"), nullptr);

    std::string calls;
    bool fails = false;
    int inside = 0;
    for (const char letter : {'a', 'b', 'c'}) {
        const auto noting = calling([&, letter](const ILogEntry&) {
            EXPECT_EQ(++inside, 1);
            calls += letter;
            --inside;
            if (fails && letter == 'b') throw std::runtime_error("b");
        });
        multi->addProcessor(noting.get());
    }
    logger->log(u"to all");
    fails = true;
    EXPECT_THROW(logger->log(u"as far as b"), std::runtime_error);
    EXPECT_EQ(calls, "abcab");
    fails = false;
    fromFourThreads([&] { logger->log(u"from several threads"); });
    EXPECT_EQ(calls.size(), 5u + 3 * 4000);

    logger->addProcessor(multi.get());
    logger->log(u"twice");
    EXPECT_TRUE(calls.ends_with("abcabc"));
    logger->setProcessor(calling([&](const ILogEntry&) { calls += 'd'; }).get());
    logger->log(u"to one alone");
    EXPECT_TRUE(calls.ends_with("abcabcd"));
}

/// What loggers log to; fails where the level is negative.
class Target : public ::orv::quark::Implements<Object, ILevelLogger> {
public:
    void log(std::int32_t newLevel, const String& newText) override
    {
        EXPECT_EQ(++inside, 1);
        level = newLevel;
        text = newText;
        ++calls;
        --inside;
        if (level < 0) throw std::runtime_error("closed");
    }

    int inside = 0, calls = 0;
    std::int32_t level = 0;
    String text;
};

TEST(SyncLogger, letsOneCallThroughAtATime)
{
    const auto target = makeReference<Target>();
    const auto logger = makeReference<SyncLogger>(target.get());
    EXPECT_THROW(logger->log(-1, u""), std::runtime_error);
    fromFourThreads([&] { logger->log(1, u"x"); });
    EXPECT_EQ(target->calls, 4001);
}

class Unprintable : public Object {
public:
    String toString() const override { throw Exception(); }
};

TEST(StringBundleLogger, fillsInTheArgumentsOrNone)
{
    const auto map = makeReference<collections::StringHashMap>();
    const auto bundle = makeReference<i18n::StringMapBundle>(map.get(), nullptr);
    const auto target = makeReference<Target>();
    StringBundleLogger logger(bundle.get(), target.get());
    const Reference<Object> objects[] = {makeReference<String>(u"<{1}>"),
                                         makeReference<Integer32>(7), makeReference<Unprintable>(),
                                         nullptr};
    using Row = std::tuple<const char16_t*, std::vector<int>, const char16_t*>;
    for (const auto& [pattern, indices, expected] :
         {Row{u"{0} and {0}", {}, u"{0} and {0}"},
          {u"{0} and {0}", {0}, u"<{1}> and <{1}>"},
          {u"{1}-{0}", {0}, u"{1}-{0}"},
          {u"{1}-{0}", {0, 1}, u"7-<{1}>"},
          {u"{0}{1}{0}", {0, 1}, u"<{1}>7<{1}>"},
          {u"{0} {2}", {0, 1}, u"<{1}> {2}"},
          {u"{0}", {2}, u"{0}"},
          {u"{1}{0}", {0, 3}, u"{1}{0}"},
          {nullptr, {0}, u"{0} key"}}) { // no text, so nothing is filled in
        collections::List<Object> arguments(makeReference<collections::quark::ArrayList>().get());
        for (const int index : indices) arguments.add(objects[index].get());
        map->clear();
        if (pattern != nullptr) map->put(u"{0} key", makeReference<String>(pattern).get());
        logger.log(3, u"{0} key", arguments);
        EXPECT_EQ(target->text, expected);
        EXPECT_EQ(target->level, 3);
        EXPECT_THROW(logger.log(-1, u"{0} key", arguments), std::runtime_error);
        logger.log(4, u"{0} key");
        EXPECT_EQ(target->text, pattern == nullptr ? u"{0} key" : pattern);
        EXPECT_EQ(target->level, 4);
    }
}

} // namespace
} // namespace orv::log
