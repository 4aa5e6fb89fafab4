#pragma once
// One recorded sample of a spray run, and its packed date and time.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>

#include <tl_gis/hostmap/loc.h>

constexpr int SPRAY_CHANNELS = 10;
// Years are stored as an offset from this one in seven bits: 1993..2120.
constexpr int SPRAY_BASE_YEAR = 1993;
constexpr int SPRAY_LAST_YEAR = SPRAY_BASE_YEAR + 127;

struct tagSPRAYREC {
    char szAircraft[11] = {};  // NUL-terminated
    char szPilot[12] = {};     // NUL-terminated
    std::string strName;       // used as the field name when strFieldName is empty
    std::string strFieldName;
    std::string strOffset;          // boom offset side, "R" or "L"
    std::uint8_t byMonthYear = 0;   // month in bits 0..3, low four bits of (year - 1993) in 4..7
    std::uint32_t dwTimeStamp = 0;  // see PackSprayTime
    tagLOC locPos;
    std::int16_t sHeight = 0;  // units of 0.2 m
    double dAgl = 0.0;         // height above ground, metres
    tagLOC locSwathA;          // the two ends of the swath line across the track
    tagLOC locSwathB;
    std::int16_t sHeading = 0;                // whole degrees
    double dSpeed = 0.0;                      // ground speed, m/s
    std::uint8_t bySpray = 0;                 // 1 while spraying
    std::int16_t sLine = 0;                   // guidance line number
    std::int16_t sTrack = 0;                  // hundredths of a metre
    double dSwathWidth = 0.0;                 // metres
    float afActualRate[SPRAY_CHANNELS] = {};  // L/ha per channel
    float afTargetRate[SPRAY_CHANNELS] = {};
    double adChannel[SPRAY_CHANNELS] = {};  // a further value per channel, only carried along
    std::int16_t sBoom = 0;                 // 0 or 1
};

// Calendar fields of a sample's time stamp.
struct TSprayTime {
    int iYear = SPRAY_BASE_YEAR;
    int iMonth = 0;
    int iDay = 0;
    int iHour = 0;
    int iMinute = 0;
    int iSecond = 0;
    int iHundredths = 0;
};

// Packs the time into a sample: dwTimeStamp holds hundredths in bits 0..6, seconds 7..12,
// minutes 13..18, hours 19..23, day 24..28 and the high three bits of (year - 1993) in 29..31.
// Each field is masked to its width; the caller checks ranges first.
TL_GIS_API void PackSprayTime(const TSprayTime& time, tagSPRAYREC& rec);
TL_GIS_API TSprayTime UnpackSprayTime(const tagSPRAYREC& rec);
// True when hundredths <= 99, seconds and minutes <= 59 and hours <= 23.
TL_GIS_API bool IsSprayTimeValid(const tagSPRAYREC& rec);
// Time of day in seconds, with hundredths.
TL_GIS_API double SprayTimeOfDay(const tagSPRAYREC& rec);
// "2024-06-01T14:03:10.50".
TL_GIS_API std::string FormatSprayTime(const tagSPRAYREC& rec);
// Copies text into a fixed NUL-terminated field, cut to fit.
TL_GIS_API void SetSprayText(char* field, std::size_t size, const std::string& text);
// The text of a fixed field up to its NUL or its end.
TL_GIS_API std::string GetSprayText(const char* field, std::size_t size);
