#include "platform/moment.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <thread>

namespace {

using orv::test::ScopedVariable;

TEST(Time, breaksPosixSecondsDownInUtc)
{
    using Row = std::pair<std::int32_t, STRUCT_ORV_TIME>;
    const ScopedVariable zone("TZ", "XYZ-5");
    for (const auto& [seconds, expected] :
         {Row{0, {1970, 1, 4, 1, 0, 0, 0, 0}}, Row{951782399, {2000, 2, 1, 28, 23, 59, 59, 0}},
          Row{951782400, {2000, 2, 2, 29, 0, 0, 0, 0}}, Row{-1, {1969, 12, 3, 31, 23, 59, 59, 0}},
          Row{INT32_MAX, {2038, 1, 2, 19, 3, 14, 7, 0}},
          Row{INT32_MIN, {1901, 12, 5, 13, 20, 45, 52, 0}}}) {
        STRUCT_ORV_TIME time{};
        ASSERT_EQ(ORVTimeFromPosix(seconds, &time), S_OK);
        EXPECT_EQ(std::memcmp(&time, &expected, sizeof time), 0) << seconds;
    }
}

std::int64_t secondsOf(const STRUCT_ORV_TIME& time)
{
    std::tm broken{time.second, time.minute, time.hour, time.day, time.month - 1, time.year - 1900,
                   0,           0,           0,         0,        nullptr};
    return timegm(&broken);
}

// In a thread of its own: a thread knows the zone of the second in which it last asked.
TEST(Time, isLocalByTheZoneOfTheEnvironment)
{
    for (const int hours : {5, -11}) {
        const ScopedVariable zone("TZ", ("XYZ" + std::to_string(-hours)).c_str());
        std::thread([hours] {
            for (int i = 0; i < 1000; ++i) {
                STRUCT_ORV_TIME utc{};
                STRUCT_ORV_TIME local{};
                ASSERT_EQ(ORVTimeGetSystem(&utc, nullptr), S_OK);
                ASSERT_EQ(ORVTimeGetLocal(&local, nullptr), S_OK);
                const std::int64_t passed =
                    (secondsOf(local) - secondsOf(utc) - hours * 3600) * 1000 + local.millisecond -
                    utc.millisecond;
                ASSERT_GE(passed, 0);
                ASSERT_LT(passed, 60'000);
            }
        }).join();
    }
}

std::u16string textOf(const STRUCT_ORV_TIME& moment, bool longDate)
{
    char16_t text[401];
    std::int32_t length = -1;
    EXPECT_EQ(orvcore::formatMoment(moment, longDate, text, 401, &length), S_OK);
    EXPECT_EQ(text[length], u'\0');
    return {text, static_cast<std::size_t>(length)};
}

constexpr STRUCT_ORV_TIME NOVEMBER = {2026, 11, 6, 14, 8, 22, 28, 5};
constexpr STRUCT_ORV_TIME MARCH = {2026, 3, 4, 5, 18, 0, 9, 0};

TEST(MomentText, followsTheLocale)
{
    EXPECT_EQ(textOf(NOVEMBER, false), u"11/14/26 08:22:28");
    EXPECT_EQ(textOf(NOVEMBER, true), u"Saturday, 14 November 2026 08:22:28");
    EXPECT_EQ(textOf(MARCH, true), u"Thursday,  5 March 2026 18:00:09");

    const orv::test::TemporaryFolder folder;
    const std::string make = "localedef -c -i de_DE -f ISO-8859-1 " + folder.path().string() +
                             "/de_DE.ISO-8859-1 2>/dev/null";
    const ScopedVariable path("LOCPATH", folder.path().c_str());
    if (std::system(make.c_str()) < 0 || !std::setlocale(LC_TIME, "de_DE.ISO-8859-1")) {
        GTEST_SKIP() << "no localedef, or no source of de_DE";
    }
    EXPECT_EQ(textOf(MARCH, true), u"Donnerstag,  5 M\u00E4rz 2026 18:00:09");
    EXPECT_EQ(textOf(MARCH, false), u"05.03.2026 18:00:09");
    std::setlocale(LC_TIME, "C");
    EXPECT_EQ(textOf(MARCH, false), u"03/05/26 18:00:09");
}

// Each row differs from the one before in one thing that the text shows, or does not.
TEST(MomentText, isRememberedForTheSecondOnly)
{
    STRUCT_ORV_TIME moment = NOVEMBER;
    moment.millisecond = 999;
    EXPECT_EQ(textOf(moment, false), textOf(NOVEMBER, false));
    moment.dayOfWeek = 2; // not what that day was
    EXPECT_EQ(textOf(moment, true), u"Saturday, 14 November 2026 08:22:28");
    moment.second = 29;
    EXPECT_EQ(textOf(moment, true), u"Saturday, 14 November 2026 08:22:29");
    EXPECT_EQ(textOf(moment, false), u"11/14/26 08:22:29");
    moment.year = 1926;
    EXPECT_EQ(textOf(moment, true), u"Sunday, 14 November 1926 08:22:29");
}

TEST(MomentText, isForMomentsOfTheCalendarAlone)
{
    char16_t text[401];
    std::int32_t length = 0;
    for (const STRUCT_ORV_TIME& moment : {STRUCT_ORV_TIME{2026, 2, 0, 29, 0, 0, 0, 0},
                                          {2026, 0, 0, 1, 0, 0, 0, 0},
                                          {2026, 13, 0, 1, 0, 0, 0, 0},
                                          {2026, 4, 0, 31, 0, 0, 0, 0},
                                          {2026, 4, 0, 0, 0, 0, 0, 0},
                                          {2026, 4, 0, 1, 24, 0, 0, 0},
                                          {2026, 4, 0, 1, 0, 60, 0, 0},
                                          {2026, 4, 0, 1, 0, 0, 61, 0}}) {
        EXPECT_EQ(orvcore::formatMoment(moment, false, text, 401, &length), E_INVALIDARG);
    }
    EXPECT_EQ(textOf({2024, 2, 0, 29, 23, 59, 60, 0}, false), u"02/29/24 23:59:60");
    EXPECT_EQ(orvcore::formatMoment(NOVEMBER, false, text, 17, &length), ORVMakeResult(0x80004009));
    EXPECT_EQ(orvcore::formatMoment(NOVEMBER, false, text, 18, &length), S_OK);
}

} // namespace
