#include "platform/system_services.h"
#include "platform/memory_files.h"

#include <sys/stat.h>
#include <sys/time.h>

namespace {
std::function<std::time_t()>& TestClock() {
    static std::function<std::time_t()> clock;
    return clock;
}
}  // namespace

TBusyCursor::TBusyCursor() = default;
TBusyCursor::~TBusyCursor() = default;
TModuleStateGuard::TModuleStateGuard() = default;
TModuleStateGuard::~TModuleStateGuard() = default;

std::tm TLocalTime::ToTm() const {
    std::tm t{};
    t.tm_year = iYear - 1900;
    t.tm_mon = iMonth - 1;
    t.tm_mday = iDay;
    t.tm_hour = iHour;
    t.tm_min = iMinute;
    t.tm_sec = iSecond;
    t.tm_wday = iWeekday;
    t.tm_yday = iYearDay;
    t.tm_isdst = -1;
    return t;
}

TLocalTime ToLocalTime(std::time_t t) {
    std::tm parts{};
    localtime_r(&t, &parts);
    TLocalTime out;
    out.iYear = parts.tm_year + 1900;
    out.iMonth = parts.tm_mon + 1;
    out.iDay = parts.tm_mday;
    out.iHour = parts.tm_hour;
    out.iMinute = parts.tm_min;
    out.iSecond = parts.tm_sec;
    out.iWeekday = parts.tm_wday;
    out.iYearDay = parts.tm_yday;
    return out;
}

TLocalTime GetLocalTimeNow() {
    if (TestClock()) return ToLocalTime(TestClock()());
    timeval now{};
    gettimeofday(&now, nullptr);
    TLocalTime out = ToLocalTime(now.tv_sec);
    out.iHundredths = static_cast<int>(now.tv_usec / 10000);
    return out;
}

void SetClockForTesting(std::function<std::time_t()> clock) { TestClock() = std::move(clock); }

bool GetFileModifiedTime(const char* path, TLocalTime& out) {
    struct stat st{};
    // Files in memory have no time of their own.
    if (path == nullptr || IsMemoryPath(path) || stat(path, &st) != 0) return false;
    out = ToLocalTime(st.st_mtim.tv_sec);
    out.iHundredths = static_cast<int>(st.st_mtim.tv_nsec / 10000000);
    return true;
}
