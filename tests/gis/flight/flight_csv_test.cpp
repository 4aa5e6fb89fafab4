// Reading flight-data CSV files into spray runs.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <tl_gis/gis/flight/flight_csv.h>
#include <tl_gis/hostmap/geodesy.h>
#include <tl_gis/platform/result_codes.h>
#include <tl_gis/platform/text_file.h>
#include "test_support.h"

namespace {

const std::string kHeader = "run,time,lat,lon,heading,speed,spray,swath\n";

TFlightImport Read(const std::string& text) {
    TTextFile file;
    file.OpenMemory(text);
    return ReadFlightCsv(file);
}

TEST(FlightCsv, ReadsEveryColumn) {
    EXPECT_EQ(Read(kHeader).iResult, GISFILE_OK);
    // clang-format off
    const TFlightImport got = Read(
        "\xEF\xBB\xBFRun,Time,Lat,Lon,Heading,Speed,Spray,Swath,height,agl,line,track,boom,rate,target,rate3,target10,"
        "field,aircraft,pilot,offset,comment\r\n"
        "7,2024-06-01T14:03:10.50,45.5,-93.25,90,45.5,1,18.288,12.0,3.5,4,-1.25,1,30.5,30,2.5,9,\"North, 40\","
        "N512AG,J.Smith,l,anything\r\n"
        "8,2024-06-01 14:03:11,45.6,-93.2,0,50,0,0,0.3,0,0,0,0,0,0,0,0,,,,,\r\n"
        "\r\n"
        "7,2024-06-01T14:03:11.999,45.5001,-93.25,90,45,1,20,-1,0,-2,327.67,0,0,0,0,0,\"say \"\"hi\"\"\",,,R,\r\n");
    // clang-format on
    ASSERT_EQ(got.iResult, GISFILE_OK) << got.strError;
    ASSERT_TRUE(got.Sprays.size() == 2 && got.Sprays[0]->m_iNumRecs == 2 && got.Sprays[1]->m_strId == "8")
        << "runs 7 and 8, in the order of their first rows";
    const tagSPRAYREC &r = got.Sprays[0]->m_pRecs[0], &r2 = got.Sprays[0]->m_pRecs[1];
    const tagSPRAYREC& b = got.Sprays[1]->m_pRecs[0];
    EXPECT_TRUE(r.locPos.dLat == 45.5 && r.locPos.dLon == -93.25 && r.sHeading == 90 && r.dSpeed == 45.5);
    EXPECT_TRUE(r.bySpray == 1 && r.dSwathWidth == 18.288 && r.dAgl == 3.5 && r.sLine == 4 && r.sBoom == 1);
    EXPECT_TRUE(r.sHeight == 60 && r.sTrack == -125) << "0.2 m and 0.01 m units";
    EXPECT_TRUE(r.afActualRate[0] == 30.5f && r.afTargetRate[0] == 30.0f && r.afActualRate[1] == 0.0f &&
                r.afActualRate[2] == 2.5f && r.afTargetRate[9] == 9.0f);
    EXPECT_EQ(r.strFieldName + "|" + r.szAircraft + "|" + r.szPilot + "|" + r.strOffset,
              "North, 40|N512AG|J.Smith|L");
    EXPECT_TRUE(r2.sHeight == -5 && r2.sTrack == 32767 && r2.strFieldName == "say \"hi\"" &&
                r2.strOffset == "R");
    EXPECT_EQ(FormatSprayTime(r) + " " + FormatSprayTime(r2) + " " + FormatSprayTime(b),
              "2024-06-01T14:03:10.50 2024-06-01T14:03:11.99 2024-06-01T14:03:11.00")
        << "fractions are cut to hundredths";
    // Heading 90: end A lies south of the track, end B north; no swath puts both at the position.
    EXPECT_TRUE(r.locSwathA.dLat < r.locPos.dLat && r.locSwathB.dLat > r.locPos.dLat);
    EXPECT_NEAR(GeoDistance(r.locSwathA.dLat, r.locSwathA.dLon, r.locSwathB.dLat, r.locSwathB.dLon), 18.288,
                1e-6);
    EXPECT_EQ(b.locSwathA.dLat, b.locSwathB.dLat);
    const TLocRect& e = got.Sprays[0]->m_rcExtents;
    EXPECT_TRUE(e.dSouth <= r.locSwathA.dLat && e.dNorth >= r2.locSwathB.dLat);
}

// The header, a good row, and a row with value at index (index -1: the last field left out).
// A column name adds that optional column, holding good in the good row.
std::string Bad(int index, const std::string& value, const std::string& column = "", const char* good = "0") {
    std::vector<std::string> f = {"1", "2024-06-01T14:03:11", "45.5", "-93.25", "0", "40", "1", "20"};
    std::string header = kHeader, first = "1,2024-06-01T14:03:10,45.5,-93.25,0,40,1,20";
    if (!column.empty()) header.insert(header.size() - 1, "," + column), first += std::string(",") + good;
    if (!column.empty()) f.push_back(good);
    if (index < 0) f.pop_back();
    if (index >= 0) f[index] = value;
    std::string row = f[0];
    for (std::size_t i = 1; i < f.size(); ++i) row += "," + f[i];
    return header + first + "\n" + row + "\n";
}

TEST(FlightCsv, BadInputNamesLineAndColumn) {
    struct TCase {
        const char* name;
        std::string text;
        const char* error;  // must appear in the message
    };
    // clang-format off
    const TCase cases[] = {
        {"empty file", "", "header row is required"},
        {"missing columns", "run,time,lat,lon,speed\n", "lacks the required column(s) heading, spray, swath"},
        {"duplicate column", "run,time,lat,lon,heading,speed,spray,swath,LAT\n", "column lat appears twice"},
        {"not a number", Bad(5, "fast"), "line 3, column speed: \"fast\" is not a number"},
        {"text after a number", Bad(2, "45.5x"), "line 3, column lat"},
        {"infinity", Bad(3, "inf"), "column lon: \"inf\" is not a number"},
        {"latitude out of range", Bad(2, "95"), "column lat: \"95\" is outside -90..90"},
        {"spray flag 2", Bad(6, "2"), "column spray: \"2\" is not 0 or 1"},
        {"month 13", Bad(1, "2024-13-01T14:03:11"), "column time: \"2024-13-01T14:03:11\" has a month outside"},
        {"29 February 2023", Bad(1, "2023-02-29T14:03:11"), "has a day that its month does not have"},
        {"second 60", Bad(1, "2024-06-01T23:59:60"), "has a time of day outside"},
        {"year 2121", Bad(1, "2121-01-01T10:00:00"), "has a year outside 1993..2120"},
        {"time with a zone", Bad(1, "2024-06-01T10:00:00Z"), "a local time has no zone"},
        {"empty run", Bad(0, ""), "line 3, column run: is empty"},
        {"too few fields", Bad(-1, ""), "line 3 has 7 fields, the header has 8"},
        {"unclosed quote", Bad(1, "\"2024-06-01T14:03:11"), "line 3: a quoted field is not closed"},
        {"height does not fit", Bad(8, "7000", "height"), "line 3, column height: \"7000\" is outside"},
        {"aircraft too long", Bad(8, "ABCDEFGHIJK", "aircraft"), "\"ABCDEFGHIJK\" is longer than 10 characters"},
        {"offset not R or L", Bad(8, "X", "offset", "R"), "column offset: \"X\" is not R or L"},
        {"negative rate", Bad(8, "-1", "rate7"), "column rate7"},
        // A 3 MB line stands for a gigabyte one: the reader gives up after the first 64 KiB.
        {"overlong line", kHeader + std::string(3 << 20, '1') + "\n", "line 2 is longer than 65536 characters"},
    };
    // clang-format on
    for (const TCase& c : cases) {
        const TFlightImport got = Read(c.text);
        EXPECT_EQ(got.iResult, GISFILE_ERR_DATA) << c.name;
        EXPECT_NE(got.strError.find(c.error), std::string::npos) << c.name << ": " << got.strError;
        EXPECT_TRUE(got.Sprays.empty()) << c.name << ": nothing is half-imported";
    }
}

}  // namespace
