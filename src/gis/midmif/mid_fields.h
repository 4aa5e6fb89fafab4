#pragma once
// The texts of the .mid attribute fields of recorded spray: date, time, units and the row
// layout that the eight declared columns expect.

#include <cstdint>
#include <string>
#include <string_view>

#include <tl_gis/gis/midmif/gis_file_midmif.h>

// Number of columns the .mif header declares: the system's eight, and in the complete profile
// four more (ID, BOUND, VALUE and NAME).
constexpr int kMidColumnCount = 8;
constexpr int kMidCompleteColumnCount = 12;

// Whether .mid rows have one field per declared column: TGisFileMidMif::s_bMidCompleteRows, or the
// complete profile.
inline bool MidCompleteRows() {
    return TGisFileMidMif::s_bMidCompleteRows || TGisFile::s_bCompleteProfile;
}

// The separator for a delimiter setting: 0 comma, 1 tab, anything else a space.
char MidDelimiterChar(int delimiter);

// "MM:DD:YYYY" from a sample's packed date (month in monthYear bits 0..3, day in timeStamp bits
// 24..28, year 1993 plus timeStamp bits 29..31 over monthYear bits 4..7); "00:00:00" when the
// month is above 12.
void AppendMidDate(std::string& out, std::uint8_t monthYear, std::uint32_t timeStamp);
// "HH:MM:SS.hh" from a packed time stamp; "00:00:00.00" when a field is out of range.
void AppendMidTime(std::string& out, std::uint32_t timeStamp);

// Rate-unit codes of recorded rates.
constexpr int MID_RATE_UNITS_VOLUME = 4;  // litres per hectare, written as US gallons per acre
constexpr int MID_RATE_UNITS_MASS = 6;    // kilograms per hectare, written as pounds per acre

// A recorded rate in the units of the rows: US units when metric is 0, otherwise unchanged.
double ConvertMidRate(double rate, int metric, int rateUnits);

// Values of one spray row, as recorded.
struct TMidSprayRow {
    std::uint32_t dwTimeStamp = 0;
    double dSpeed = 0.0;     // metres per second
    int iHeading = 0;        // whole degrees
    int iHeight = 0;         // units of 0.2 m
    double dFlowRate = 0.0;  // already converted
};

// Appends the eight fields of a spray row: date, time, speed in miles per hour ("%5.1f"),
// heading ("%03d"), altitude in whole feet ("%05d"), " ON", flow rate ("%10.4f") and a single
// space, each followed by the delimiter except the last. With quoteFields set, a field that
// holds the delimiter (the padding of a number under the space separator) is quoted.
void AppendMidSprayRow(std::string& out, std::string_view date, char delimiter, const TMidSprayRow& row,
                       bool quoteFields = false);

// Encloses out[start..] in double quotes, doubling the quotes inside, when it holds the
// delimiter or a quote, so that a reader takes it as one field.
void QuoteMidField(std::string& out, std::size_t start, char delimiter);
