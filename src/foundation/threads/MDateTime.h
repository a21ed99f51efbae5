#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"

/// A date and time of day in the Gregorian calendar, without a time zone.
struct MDateTime
{
    /// The present moment in the user's time zone.
    static MDateTime Now();

    /// Days since 31 December of the year 0. Months outside 1 to 12 count as 1 or 12.
    std::int32_t GetDayNumber() const noexcept;
    /// Since the start of day 0.
    std::int64_t GetSeconds() const noexcept;
    std::int64_t GetMicroseconds() const noexcept;

    MString ToCompactDateAndTime() const;  ///< "20260704 093005"
    MString ToFileNameDateAndTime() const; ///< "2026_07_04 09_30_05"
    MString ToCompactDate() const;         ///< "20260704"
    MString ToDate() const;                ///< "2026-07-04"
    MString ToCompactTime() const;         ///< "093005"
    MString ToTime() const;                ///< "09:30:05"
    MString ToTimeWithFraction() const;    ///< "09:30:05.250": 250 microseconds, not filled up

    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;
    std::uint32_t microsecond = 0;
    std::int16_t year = 0;
    std::uint8_t month = 0; ///< 1 to 12
    std::uint8_t day = 0;   ///< 1 to 31
};
