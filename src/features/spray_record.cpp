#include <tl_gis/features/spray_record.h>

#include <cstring>

#include <tl_gis/platform/numbers.h>

void PackSprayTime(const TSprayTime& time, tagSPRAYREC& rec) {
    const auto year = static_cast<std::uint32_t>(time.iYear - SPRAY_BASE_YEAR) & 0x7Fu;
    rec.byMonthYear =
        static_cast<std::uint8_t>((static_cast<std::uint32_t>(time.iMonth) & 0x0Fu) | ((year & 0x0Fu) << 4));
    rec.dwTimeStamp = (static_cast<std::uint32_t>(time.iHundredths) & 0x7Fu) |
                      ((static_cast<std::uint32_t>(time.iSecond) & 0x3Fu) << 7) |
                      ((static_cast<std::uint32_t>(time.iMinute) & 0x3Fu) << 13) |
                      ((static_cast<std::uint32_t>(time.iHour) & 0x1Fu) << 19) |
                      ((static_cast<std::uint32_t>(time.iDay) & 0x1Fu) << 24) | ((year >> 4) << 29);
}

TSprayTime UnpackSprayTime(const tagSPRAYREC& rec) {
    const std::uint32_t t = rec.dwTimeStamp;
    TSprayTime time;
    time.iHundredths = static_cast<int>(t & 0x7Fu);
    time.iSecond = static_cast<int>((t >> 7) & 0x3Fu);
    time.iMinute = static_cast<int>((t >> 13) & 0x3Fu);
    time.iHour = static_cast<int>((t >> 19) & 0x1Fu);
    time.iDay = static_cast<int>((t >> 24) & 0x1Fu);
    time.iMonth = rec.byMonthYear & 0x0F;
    time.iYear = SPRAY_BASE_YEAR + static_cast<int>(((t >> 29) << 4) | (rec.byMonthYear >> 4));
    return time;
}

bool IsSprayTimeValid(const tagSPRAYREC& rec) {
    const TSprayTime t = UnpackSprayTime(rec);
    return t.iHundredths <= 99 && t.iSecond <= 59 && t.iMinute <= 59 && t.iHour <= 23;
}

double SprayTimeOfDay(const tagSPRAYREC& rec) {
    const TSprayTime t = UnpackSprayTime(rec);
    return t.iHour * 3600.0 + t.iMinute * 60.0 + t.iSecond + t.iHundredths / 100.0;
}

namespace {
void AppendPadded(std::string& out, int value, int width) {
    std::string digits;
    AppendInt(digits, value);
    for (int i = static_cast<int>(digits.size()); i < width; ++i) out += '0';
    out += digits;
}
}  // namespace

std::string FormatSprayTime(const tagSPRAYREC& rec) {
    const TSprayTime t = UnpackSprayTime(rec);
    const int values[] = {t.iYear, t.iMonth, t.iDay, t.iHour, t.iMinute, t.iSecond, t.iHundredths};
    const char separators[] = "--T::.";  // after each value but the last
    std::string out;
    for (int i = 0; i < 7; ++i) {
        AppendPadded(out, values[i], i == 0 ? 4 : 2);
        if (i < 6) out += separators[i];
    }
    return out;
}

void SetSprayText(char* field, std::size_t size, const std::string& text) {
    if (size == 0) return;
    const std::size_t n = text.size() < size - 1 ? text.size() : size - 1;
    std::memcpy(field, text.data(), n);
    std::memset(field + n, 0, size - n);
}

std::string GetSprayText(const char* field, std::size_t size) {
    const void* nul = std::memchr(field, '\0', size);
    return std::string(field, nul ? static_cast<const char*>(nul) - field : size);
}
