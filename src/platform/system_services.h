#pragma once
// Small stand-ins for services of the original desktop platform: local time and file times.

#include <cstdint>
#include <ctime>
#include <functional>

// Calendar time with hundredths, in the local time zone.
struct TLocalTime {
    int iYear = 0;   // e.g. 2024
    int iMonth = 0;  // 1..12
    int iDay = 0;    // 1..31
    int iHour = 0;
    int iMinute = 0;
    int iSecond = 0;
    int iHundredths = 0;
    int iWeekday = 0;  // 0 Sunday
    int iYearDay = 0;  // 0..365
};

// The current local time. Tests fix it with SetClockForTesting.
TLocalTime GetLocalTimeNow();
// Replaces the clock (seconds since the epoch, UTC); an empty function restores the real one.
void SetClockForTesting(std::function<std::time_t()> clock);
// Local calendar time of a moment given in seconds since the epoch.
TLocalTime ToLocalTime(std::time_t t);

// Last-modification time of a file, in local time; false when the file has no status.
bool GetFileModifiedTime(const char* path, TLocalTime& out);
