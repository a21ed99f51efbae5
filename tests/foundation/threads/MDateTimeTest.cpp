#include "foundation/threads/MDateTime.h"

#include <chrono>
#include <ctime>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono;

/// Of the calendar's day 1, the first of January of the year 1.
constexpr sys_days FirstDay = year{1} / January / 1;

MDateTime Date(int year, int month, int day)
{
    return {.year = static_cast<std::int16_t>(year),
            .month = static_cast<std::uint8_t>(month),
            .day = static_cast<std::uint8_t>(day)};
}

TEST(MDateTime, DayNumbersAreThoseOfTheCalendar)
{
    const sys_days last = year{3000} / January / 1;
    int number = 1;
    for (sys_days day = FirstDay; day < last; day += days(1), ++number)
    {
        const year_month_day date = day;
        ASSERT_EQ(Date(int{date.year()}, static_cast<int>(unsigned{date.month()}),
                       static_cast<int>(unsigned{date.day()}))
                      .GetDayNumber(),
                  number)
            << int{date.year()} << " " << unsigned{date.month()} << " " << unsigned{date.day()};
    }
}

TEST(MDateTime, TakesOddDatesAsTold)
{
    EXPECT_EQ(Date(2026, 0, 5).GetDayNumber(), Date(2026, 1, 5).GetDayNumber());
    EXPECT_EQ(Date(2024, 200, 5).GetDayNumber(), Date(2024, 12, 5).GetDayNumber());
    EXPECT_EQ(Date(0, 3, 1).GetDayNumber(), 60 - 365) << "the year 0 has no leap day";
    EXPECT_EQ(Date(-4, 3, 1).GetDayNumber(), -4 * 365 - 1 + 60 - 365);
    EXPECT_EQ(Date(32767, 12, 31).GetDayNumber(), 32767 * 365 + 8191 - 327 + 81);
}

TEST(MDateTime, CountsSecondsAndMicroseconds)
{
    const sys_days unixDay = year{1970} / January / 1;
    // 2026-07-04 09:30:05 is 1783157405 seconds behind the start of 1970.
    const MDateTime moment{.hour = 9,
                           .minute = 30,
                           .second = 5,
                           .microsecond = 250,
                           .year = 2026,
                           .month = 7,
                           .day = 4};
    const std::int64_t before = ((unixDay - FirstDay).count() + 1) * std::int64_t{86400};
    EXPECT_EQ(moment.GetSeconds() - before, 1'783'157'405);
    EXPECT_EQ(moment.GetMicroseconds(), moment.GetSeconds() * 1'000'000 + 250);
}

TEST(MDateTime, WritesAllForms)
{
    const MDateTime moment{.hour = 9,
                           .minute = 3,
                           .second = 5,
                           .microsecond = 250,
                           .year = 326,
                           .month = 7,
                           .day = 14};
    EXPECT_EQ(moment.ToCompactDateAndTime().ToUTF8(), "03260714 090305");
    EXPECT_EQ(moment.ToFileNameDateAndTime().ToUTF8(), "0326_07_14 09_03_05");
    EXPECT_EQ(moment.ToCompactDate().ToUTF8(), "03260714");
    EXPECT_EQ(moment.ToDate().ToUTF8(), "0326-07-14");
    EXPECT_EQ(moment.ToCompactTime().ToUTF8(), "090305");
    EXPECT_EQ(moment.ToTime().ToUTF8(), "09:03:05");
    EXPECT_EQ(moment.ToTimeWithFraction().ToUTF8(), "09:03:05.250");
    EXPECT_EQ(MDateTime{.microsecond = 4'000'000'000}.ToTimeWithFraction().ToUTF8(),
              "00:00:00.4000000000");
}

TEST(MDateTime, NowIsTheLocalTime)
{
    const std::time_t before = std::time(nullptr);
    const MDateTime now = MDateTime::Now();
    const std::time_t after = std::time(nullptr);
    std::tm local{};
    local.tm_year = now.year - 1900;
    local.tm_mon = now.month - 1;
    local.tm_mday = now.day;
    local.tm_hour = now.hour;
    local.tm_min = now.minute;
    local.tm_sec = now.second;
    local.tm_isdst = -1;
    const std::time_t told = std::mktime(&local);
    EXPECT_GE(told, before);
    EXPECT_LE(told, after);
    EXPECT_LT(now.microsecond, 1'000'000u);
}

} // namespace
