#include "foundation/threads/MDateTime.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/ThreadSystem.h"

namespace
{

constexpr std::int64_t SecondsPerDay = 86400;
constexpr std::int64_t MicrosecondsPerSecond = 1'000'000;

/// Days of the year before each month.
constexpr std::array<int, 12> DaysBefore{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

bool IsLeapYear(int year) noexcept
{
    return year > 0 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

MStringFormatter FormatDate(const char* format, const MDateTime& moment)
{
    return MStringFormatter(format).Add(moment.year).Add(moment.month).Add(moment.day);
}

MStringFormatter AddTime(MStringFormatter formatter, const MDateTime& moment)
{
    return formatter.Add(moment.hour).Add(moment.minute).Add(moment.second);
}

} // namespace

MDateTime MDateTime::Now()
{
    using namespace std::chrono;
    const auto now = floor<microseconds>(system_clock::now());
    const auto wholeSecond = floor<seconds>(now);
    const std::tm local = SystemLocalTime(system_clock::to_time_t(wholeSecond));
    return {
        .hour = static_cast<std::uint8_t>(local.tm_hour),
        .minute = static_cast<std::uint8_t>(local.tm_min),
        .second = static_cast<std::uint8_t>(local.tm_sec),
        .microsecond = static_cast<std::uint32_t>((now - wholeSecond).count()),
        .year = static_cast<std::int16_t>(local.tm_year + 1900),
        .month = static_cast<std::uint8_t>(local.tm_mon + 1),
        .day = static_cast<std::uint8_t>(local.tm_mday),
    };
}

std::int32_t MDateTime::GetDayNumber() const noexcept
{
    const int monthIndex = std::clamp<int>(month, 1, 12) - 1;
    const int leapDay = monthIndex > 1 && IsLeapYear(year) ? 1 : 0;
    const int dayOfYear = DaysBefore.at(static_cast<std::size_t>(monthIndex)) + leapDay + day;
    const int last = year - 1;
    return year * 365 + last / 4 - last / 100 + last / 400 + dayOfYear - 365;
}

std::int64_t MDateTime::GetSeconds() const noexcept
{
    const int ofDay = hour * 3600 + minute * 60 + second;
    return GetDayNumber() * SecondsPerDay + ofDay;
}

std::int64_t MDateTime::GetMicroseconds() const noexcept
{
    return GetSeconds() * MicrosecondsPerSecond + microsecond;
}

MString MDateTime::ToCompactDateAndTime() const
{
    return AddTime(FormatDate("{0:04}{1:02}{2:02} {3:02}{4:02}{5:02}", *this), *this).Result();
}

MString MDateTime::ToFileNameDateAndTime() const
{
    return AddTime(FormatDate("{0:04}_{1:02}_{2:02} {3:02}_{4:02}_{5:02}", *this), *this).Result();
}

MString MDateTime::ToCompactDate() const
{
    return FormatDate("{0:04}{1:02}{2:02}", *this).Result();
}

MString MDateTime::ToDate() const
{
    return FormatDate("{0:04}-{1:02}-{2:02}", *this).Result();
}

MString MDateTime::ToCompactTime() const
{
    return AddTime(MStringFormatter("{0:02}{1:02}{2:02}"), *this).Result();
}

MString MDateTime::ToTime() const
{
    return AddTime(MStringFormatter("{0:02}:{1:02}:{2:02}"), *this).Result();
}

MString MDateTime::ToTimeWithFraction() const
{
    return AddTime(MStringFormatter("{0:02}:{1:02}:{2:02}.{3}"), *this)
        .Add(std::uint64_t{microsecond})
        .Result();
}
