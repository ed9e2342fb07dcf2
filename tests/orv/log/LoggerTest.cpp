#include "tests/orv/log/Entries.h"

#include "orv/log/MultiProcessor.h"
#include "orv/log/SyncLogger.h"

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

namespace orv::log {
namespace {

using test::basicText;
using test::calling;

/// A logger with a processor that keeps the entries.
struct Kept {
    explicit Kept(const Reference<Logger>& to) : logger(to)
    {
        logger->addProcessor(
            calling([this](const ILogEntry& entry) { entries.emplace_back(&entry); }).get());
    }
    std::u16string texts() const
    {
        std::u16string all;
        for (const auto& entry : entries) all += basicText(*entry);
        return all;
    }

    Reference<Logger> logger;
    std::vector<Reference<const ILogEntry>> entries;
};

const std::u16string LINE = u"-------------------------\n";

TEST(Logger, putsItsFieldsInEntries)
{
    Kept plain(Logger::create());
    plain.logger->log(3, u"one");
    plain.logger->setDefaultLevel(-4);
    plain.logger->log(u"two");
    plain.logger->enableField(u"SEQUENCE", true);
    plain.logger->enableField(u"Level", false);
    plain.logger->enableField(u"sequences", true);
    plain.logger->log(5, u"");
    EXPECT_EQ(plain.texts(), u"level=3\ntext=one\n" + LINE + u"level=-4\ntext=two\n" + LINE +
                                 u"sequence=2\ntext=\n" + LINE);

    Kept named(Logger::create(u"web"));
    named.logger->log(1, u"a\nb");
    EXPECT_EQ(named.texts(), u"level=1\ntext=a\nb\nname=web\n" + LINE);
}

TEST(Logger, thatIsDisabledMakesAndCountsNothing)
{
    Kept kept(Logger::create());
    kept.logger->enableField(u"sequence", true);
    kept.logger->enableField(u"text", false);
    kept.logger->setEnabled(false);
    kept.logger->log(1, u"never");
    EXPECT_FALSE(kept.logger->isEnabled());
    EXPECT_TRUE(kept.entries.empty());
    kept.logger->setEnabled(true);
    kept.logger->log(1, u"first");
    EXPECT_EQ(kept.texts(), u"sequence=0\nlevel=1\n" + LINE);
}

class CustomLogger : public Logger {
public:
    using Logger::log;

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
    kept.logger->log(1, u"x");
    EXPECT_EQ(test::namesOf(*kept.entries[0]), u"level text user id=\"7\" ");
    EXPECT_EQ(kept.texts(), u"level=high\ntext=x\nuser id=\"7\"=ann\n" + LINE);

    const auto open = makeReference<test::OpenLogger>();
    Kept others(open);
    open->enableField(u"sequence", true);
    open->setEnabled(false);
    open->log(LogEntry::create().get());
    open->setEnabled(true);
    open->Logger::log(2, u"y");
    EXPECT_EQ(others.texts(), LINE + u"sequence=1\nlevel=2\ntext=y\n" + LINE);
}

TEST(Logger, setProcessorLeavesOne)
{
    int first = 0;
    int second = 0;
    const auto logger = Logger::create();
    const auto counting = calling([&](const ILogEntry&) { ++first; });
    logger->addProcessor(counting.get());
    logger->addProcessor(counting.get());
    logger->log(u"to both");
    EXPECT_EQ(first, 2);
    logger->setProcessor(calling([&](const ILogEntry&) { ++second; }).get());
    logger->log(u"to one");
    EXPECT_EQ(first, 2);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(Logger::createProcessor(u"file"), nullptr);
    EXPECT_THROW(logger->addProcessor(nullptr), ResultException);
}

TEST(MultiProcessor, callsInOrderOneEntryAtATimeAndStopsAtAFailure)
{
    const auto multi = MultiProcessor::create();
    const auto logger = Logger::create();
    logger->addProcessor(multi.get());
    logger->log(u"dropped");

    std::string calls;
    bool fails = false;
    int inside = 0;
    const auto noting = [&](char letter) {
        return calling([&, letter](const ILogEntry&) {
            EXPECT_EQ(++inside, 1);
            calls += letter;
            --inside;
            if (fails && letter == 'b') throw std::runtime_error("b");
        });
    };
    for (const char letter : {'a', 'b', 'c'}) multi->addProcessor(noting(letter).get());
    logger->log(u"to all");
    fails = true;
    EXPECT_THROW(logger->log(u"as far as b"), std::runtime_error);
    EXPECT_EQ(calls, "abcab");

    fails = false;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n) logger->log(u"from several threads");
        });
    }
    threads.clear();
    EXPECT_EQ(calls.size(), 5u + 3 * 4000);
}

class BusyLogger : public ::orv::quark::Implements<Object, ILevelLogger> {
public:
    void log(std::int32_t level, const String&) override
    {
        EXPECT_EQ(++inside, 1);
        sum += level;
        --inside;
        if (level == 0) throw std::runtime_error("zero");
    }

    int inside = 0;
    int sum = 0;
};

TEST(SyncLogger, letsOneCallThroughAtATime)
{
    const auto target = makeReference<BusyLogger>();
    const auto logger = makeReference<SyncLogger>(target.get());
    EXPECT_THROW(logger->log(0, u""), std::runtime_error);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n) logger->log(1, u"x");
        });
    }
    threads.clear();
    EXPECT_EQ(target->sum, 4000);
}

} // namespace
} // namespace orv::log
