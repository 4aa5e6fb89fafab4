// Field texts of the .mid spray rows: packed dates and times, units, padding.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "gis/midmif/mid_fields.h"
#include "gis/numbers.h"

namespace {
constexpr std::uint32_t Stamp(unsigned yearHigh, unsigned day, unsigned h, unsigned m, unsigned s,
                              unsigned hs) {
    return yearHigh << 29 | day << 24 | h << 19 | m << 13 | s << 7 | hs;
}

TEST(MidFields, DateFromPackedFields) {
    // 2020 is 1993 + 27 = 0b001'1011: high bits 1 in the stamp, low nibble 11 in monthYear.
    const struct {
        const char* pszName;
        std::uint8_t byMonthYear;
        std::uint32_t dwStamp;
        const char* pszDate;
    } cases[] = {
        {"march_2020", 0xB3, Stamp(1, 15, 0, 0, 0, 0), "03:15:2020"},
        {"base_year", 0x01, Stamp(0, 1, 0, 0, 0, 0), "01:01:1993"},
        {"last_year", 0xFC, Stamp(7, 31, 0, 0, 0, 0), "12:31:2120"},
        {"month_zero_is_still_written", 0x00, Stamp(0, 0, 0, 0, 0, 0), "00:00:1993"},
        {"month_13", 0xBD, Stamp(1, 15, 0, 0, 0, 0), "00:00:00"},
        {"month_15", 0x0F, 0, "00:00:00"},
    };
    for (const auto& c : cases) {
        std::string out;
        AppendMidDate(out, c.byMonthYear, c.dwStamp);
        EXPECT_EQ(out, c.pszDate) << c.pszName;
    }
}

TEST(MidFields, TimeFromPackedFields) {
    const struct {
        const char* pszName;
        std::uint32_t dwStamp;
        const char* pszTime;
    } cases[] = {
        {"afternoon", Stamp(5, 31, 14, 3, 10, 50), "14:03:10.50"},
        {"last_hundredth", Stamp(0, 0, 23, 59, 59, 99), "23:59:59.99"},
        {"hour_25", Stamp(0, 0, 25, 1, 1, 1), "00:00:00.00"},
        {"hour_24", Stamp(0, 0, 24, 0, 0, 0), "00:00:00.00"},
        {"minute_60", Stamp(0, 0, 1, 60, 0, 0), "00:00:00.00"},
        {"second_60", Stamp(0, 0, 1, 0, 60, 0), "00:00:00.00"},
        {"hundredths_100", Stamp(0, 0, 1, 0, 0, 100), "00:00:00.00"},
    };
    for (const auto& c : cases) {
        std::string out;
        AppendMidTime(out, c.dwStamp);
        EXPECT_EQ(out, c.pszTime) << c.pszName;
    }
}

TEST(MidFields, RateUnits) {
    const struct {
        const char* pszName;
        int iMetric;
        int iUnits;
        const char* pszField;  // "%10.4f" of 30 recorded
    } cases[] = {
        {"us_volume", 0, 4, "    3.2072"},
        {"us_mass", 0, 6, "   26.7654"},
        {"us_other_units_unchanged", 0, 5, "   30.0000"},
        {"metric_volume_unchanged", 1, 4, "   30.0000"},
        {"metric_any_nonzero", -1, 6, "   30.0000"},
    };
    for (const auto& c : cases) {
        std::string out;
        AppendFixedWidth(out, ConvertMidRate(30.0, c.iMetric, c.iUnits), 10, 4);
        EXPECT_EQ(out, c.pszField) << c.pszName;
    }
}

TEST(MidFields, SprayRowLayout) {
    TMidSprayRow row;
    row.dwTimeStamp = Stamp(1, 15, 14, 3, 10, 50);
    row.dSpeed = 50.0;
    row.iHeading = 7;
    row.iHeight = 500;
    row.dFlowRate = ConvertMidRate(30.0, 0, 4);
    const struct {
        char cDelimiter;
        const char* pszRow;
    } cases[] = {
        {',', "03:15:2020,14:03:10.50,111.8,007,00328, ON,    3.2072, "},
        {'\t', "03:15:2020\t14:03:10.50\t111.8\t007\t00328\t ON\t    3.2072\t "},
    };
    for (const auto& c : cases) {
        std::string out;
        AppendMidSprayRow(out, "03:15:2020", c.cDelimiter, row);
        EXPECT_EQ(out, c.pszRow) << "delimiter " << int(c.cDelimiter);
    }
    // Negative heading and height keep the sign before the zeros; slow speeds are padded.
    row.dSpeed = 0.5;
    row.iHeading = -7;
    row.iHeight = -20;  // -4 m = -13.12 ft, cut toward zero
    std::string out;
    AppendMidSprayRow(out, "x", ',', row);
    EXPECT_EQ(out, "x,14:03:10.50,  1.1,-07,-0013, ON,    3.2072, ");
}

// The padded formats must give exactly what printf gives, including rounding and signs.
TEST(MidFields, PaddingMatchesPrintf) {
    const double values[] = {0.0,       -0.0,     0.05,        0.25, -1.25,     2.5,
                             111.84681, 99999.95, -123456.789, 1e-7, 3.20719906};
    for (const double v : values) {
        for (const auto& [width, decimals] : {std::pair{5, 1}, std::pair{10, 4}, std::pair{3, 0}}) {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%*.*f", width, decimals, v);
            std::string got;
            AppendFixedWidth(got, v, width, decimals);
            EXPECT_EQ(got, expected) << v << " width " << width << " decimals " << decimals;
        }
    }
    const long long ints[] = {0, 7, -7, 42, -42, 328, -13, 12345, -12345, 2147483647LL};
    for (const long long v : ints) {
        for (const int width : {2, 3, 5}) {
            char zero[32], space[32];
            std::snprintf(zero, sizeof zero, "%0*lld", width, v);
            std::snprintf(space, sizeof space, "%*lld", width, v);
            std::string z, s;
            AppendIntWidth(z, v, width, true);
            AppendIntWidth(s, v, width, false);
            EXPECT_EQ(z, zero) << v << " width " << width;
            EXPECT_EQ(s, space) << v << " width " << width;
        }
    }
}
}  // namespace
