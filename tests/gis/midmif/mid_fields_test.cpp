// Field texts of the .mid spray rows: packed dates and times, signs and padding.

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

// 2020 is 1993 + 27 = 0b001'1011: high bits 1 in the stamp, low nibble 11 in monthYear.
TEST(MidFields, DateAndTimeFromPackedFields) {
    const struct {
        const char* pszName;
        std::uint8_t byMonthYear;
        std::uint32_t dwStamp;
        const char* pszText;  // date, a space, time
    } cases[] = {
        {"march_2020", 0xB3, Stamp(1, 15, 14, 3, 10, 50), "03:15:2020 14:03:10.50"},
        {"first_year", 0x01, Stamp(0, 1, 0, 0, 0, 0), "01:01:1993 00:00:00.00"},
        {"last_year_last_moment", 0xFC, Stamp(7, 31, 23, 59, 59, 99), "12:31:2120 23:59:59.99"},
        {"month_zero_is_written", 0x00, 0, "00:00:1993 00:00:00.00"},
        {"month_13", 0xBD, Stamp(1, 15, 1, 2, 3, 4), "00:00:00 01:02:03.04"},
        {"hour_24", 0xB3, Stamp(1, 15, 24, 0, 0, 0), "03:15:2020 00:00:00.00"},
        {"minute_60", 0xB3, Stamp(1, 15, 1, 60, 0, 0), "03:15:2020 00:00:00.00"},
        {"second_60", 0xB3, Stamp(1, 15, 1, 0, 60, 0), "03:15:2020 00:00:00.00"},
        {"hundredths_100", 0xB3, Stamp(1, 15, 1, 0, 0, 100), "03:15:2020 00:00:00.00"},
    };
    for (const auto& c : cases) {
        std::string out;
        AppendMidDate(out, c.byMonthYear, c.dwStamp);
        out += ' ';
        AppendMidTime(out, c.dwStamp);
        EXPECT_EQ(out, c.pszText) << c.pszName;
    }
}

TEST(MidFields, NegativeAndSmallValuesKeepTheirWidths) {
    TMidSprayRow row;
    row.dwTimeStamp = Stamp(1, 15, 14, 3, 10, 50);
    row.dSpeed = 0.5;
    row.iHeading = -7;
    row.iHeight = -20;  // -4 m = -13.12 ft, cut toward zero
    row.dFlowRate = -0.25;
    std::string out;
    AppendMidSprayRow(out, "x", '\t', row);
    EXPECT_EQ(out, "x\t14:03:10.50\t  1.1\t-07\t-0013\t ON\t   -0.2500\t ");
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
    for (const long long v : {0LL, 7LL, -7LL, 42LL, -42LL, 328LL, -13LL, 12345LL, -12345LL, 2147483647LL}) {
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
