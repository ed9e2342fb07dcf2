#include "orv/log/StringBundleLogger.h"

#include "orv/Exceptions.h"
#include "orv/Integers.h"
#include "orv/collections/List.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/i18n/StringMapBundle.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::log {
namespace {

class Recorder : public ::orv::quark::Implements<Object, ILevelLogger> {
public:
    void log(std::int32_t level, const String& text) override
    {
        if (level < 0) throw IllegalStateException(u"closed");
        m_level = level;
        m_text = text;
    }
    std::int32_t m_level = 0;
    String m_text;
};

class Unprintable : public Object {
public:
    String toString() const override { throw Exception(); }
};

TEST(StringBundleLogger, fillsInTheArgumentsOrNone)
{
    const auto map = makeReference<collections::StringHashMap>();
    const auto bundle = makeReference<i18n::StringMapBundle>(map.get(), nullptr);
    const auto recorder = makeReference<Recorder>();
    StringBundleLogger logger(bundle.get(), recorder.get());
    collections::List<Object> arguments(makeReference<collections::quark::ArrayList>().get());

    struct Row {
        const char16_t *pattern, *none, *one, *two; // by the number of arguments
    };
    const Row rows[] = {
        {u"plain", u"plain", u"plain", u"plain"},
        {u"{0} and {0}", u"{0} and {0}", u"<{1}> and <{1}>", u"<{1}> and <{1}>"},
        {u"{1}-{0}", u"{1}-{0}", u"{1}-{0}", u"7-<{1}>"},
        {u"{0}{1}{0}", u"{0}{1}{0}", u"{0}{1}{0}", u"<{1}>7<{1}>"},
        {u"{1}", u"{1}", u"{1}", u"{1}"},
        {u"{0} {2}", u"{0} {2}", u"<{1}> {2}", u"<{1}> {2}"},
    };
    const auto check = [&](const char16_t* Row::*expected) {
        for (const Row& row : rows) {
            map->put(u"key", makeReference<String>(row.pattern).get());
            logger.log(3, u"key", arguments);
            EXPECT_EQ(recorder->m_text, row.*expected) << test::readable(row.pattern);
        }
    };
    check(&Row::none);
    arguments.add(makeReference<String>(u"<{1}>").get());
    check(&Row::one);
    arguments.add(makeReference<Integer32>(7).get());
    check(&Row::two);
    EXPECT_EQ(recorder->m_level, 3);

    logger.log(4, u"key");
    EXPECT_EQ(recorder->m_text, u"{0} {2}");
    logger.log(4, u"absent {0}", arguments);
    EXPECT_EQ(recorder->m_text, u"absent {0}") << "no text, so nothing is filled in";
    logger.log(5, u"absent");
    EXPECT_EQ(recorder->m_text, u"absent");
    EXPECT_EQ(recorder->m_level, 5);

    map->put(u"key", makeReference<String>(u"{0}").get());
    arguments.set(0, makeReference<Unprintable>().get());
    logger.log(6, u"key", arguments);
    EXPECT_EQ(recorder->m_text, u"{0}");
    EXPECT_THROW(logger.log(-1, u"key", arguments), IllegalStateException);
    EXPECT_THROW(logger.log(-1, u"key"), IllegalStateException);
}

} // namespace
} // namespace orv::log
