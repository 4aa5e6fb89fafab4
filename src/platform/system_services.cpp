#include "platform/system_services.h"
#include "platform/memory_files.h"

#include <chrono>

#ifdef _WIN32
#include <windows.h>

#include "platform/file_system.h"
#else
#include <sys/stat.h>
#endif

namespace {
std::function<std::time_t()>& TestClock() {
    static std::function<std::time_t()> clock;
    return clock;
}
}  // namespace

TLocalTime ToLocalTime(std::time_t t) {
    std::tm parts{};
#ifdef _WIN32
    localtime_s(&parts, &t);
#else
    localtime_r(&t, &parts);
#endif
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
    const auto now = std::chrono::system_clock::now();
    const auto hundredths =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000 / 10;
    TLocalTime out = ToLocalTime(std::chrono::system_clock::to_time_t(now));
    out.iHundredths = static_cast<int>(hundredths);
    return out;
}

void SetClockForTesting(std::function<std::time_t()> clock) {
    TestClock() = std::move(clock);
}

#ifdef _WIN32
// As the system dates its files: the last-write time of the file opened for shared reading,
// turned into local time by Windows' own rules.
bool GetFileModifiedTime(const char* path, TLocalTime& out) {
    // Files in memory have no time of their own.
    if (path == nullptr || IsMemoryPath(path)) return false;
    const std::wstring wide = WidePath(path);
    if (wide.empty()) return false;
    const HANDLE file =
        CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    FILETIME written{}, local{};
    SYSTEMTIME parts{};
    const bool ok = GetFileTime(file, nullptr, nullptr, &written) &&
                    FileTimeToLocalFileTime(&written, &local) && FileTimeToSystemTime(&local, &parts);
    CloseHandle(file);
    if (!ok) return false;
    out = TLocalTime{};
    out.iYear = parts.wYear;
    out.iMonth = parts.wMonth;
    out.iDay = parts.wDay;
    out.iHour = parts.wHour;
    out.iMinute = parts.wMinute;
    out.iSecond = parts.wSecond;
    out.iHundredths = parts.wMilliseconds / 10;
    out.iWeekday = parts.wDayOfWeek;
    static constexpr int kDaysBeforeMonth[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
    const bool leap = (out.iYear % 4 == 0 && out.iYear % 100 != 0) || out.iYear % 400 == 0;
    out.iYearDay = kDaysBeforeMonth[(out.iMonth - 1) % 12] + out.iDay - 1 + (leap && out.iMonth > 2 ? 1 : 0);
    return true;
}
#else
bool GetFileModifiedTime(const char* path, TLocalTime& out) {
    struct stat st {};
    // Files in memory have no time of their own.
    if (path == nullptr || IsMemoryPath(path) || stat(path, &st) != 0) return false;
    out = ToLocalTime(st.st_mtim.tv_sec);
    out.iHundredths = static_cast<int>(st.st_mtim.tv_nsec / 10000000);
    return true;
}
#endif
