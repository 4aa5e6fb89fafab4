// Reading flight-data CSV files into spray runs.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "features/flight_csv.h"
#include "gis/result_codes.h"
#include "hostmap/geodesy.h"
#include "platform/text_file.h"
#include "test_support.h"

namespace {
const char* const kHeader = "run,time,lat,lon,heading,speed,spray,swath\n";

TFlightImport Read(const std::string& text) {
    TTextFile file;
    file.OpenMemory(text);
    return ReadFlightCsv(file);
}

TEST(FlightCsv, ReadsEveryColumn) {
    const std::string text =
        "\xEF\xBB\xBFRun,Time,Lat,Lon,Heading,Speed,Spray,Swath,height,agl,line,track,boom,rate,target,rate3,"
        "target10,field,aircraft,pilot,offset,comment\r\n"
        "7,2024-06-01T14:03:10.50,45.5,-93.25,90,45.5,1,18.288,12.0,3.5,4,-1.25,1,30.5,30,2.5,9,\"North, "
        "40\","
        "N512AG,J.Smith,l,anything\r\n"
        "8,2024-06-01 14:03:11,45.6,-93.2,0,50,0,0,0.3,0,0,0,0,0,0,0,0,,,,,\r\n"
        "\r\n"
        "7,2024-06-01T14:03:11.999,45.5001,-93.25,90,45,1,20,-1,0,-2,327.67,0,0,0,0,0,\"say "
        "\"\"hi\"\"\",,,R,\r\n";
    const TFlightImport headerOnly = Read(kHeader);
    EXPECT_EQ(headerOnly.iResult, GISFILE_OK) << headerOnly.strError;
    EXPECT_TRUE(headerOnly.Sprays.empty());
    const TFlightImport got = Read(text);
    ASSERT_EQ(got.iResult, GISFILE_OK) << got.strError;
    ASSERT_EQ(got.Sprays.size(), 2u) << "runs 7 and 8, in the order of their first rows";
    const TFeatureSpray& a = *got.Sprays[0];
    const TFeatureSpray& b = *got.Sprays[1];
    EXPECT_EQ(a.m_strId, "7");
    EXPECT_EQ(b.m_strId, "8");
    ASSERT_EQ(a.m_iNumRecs, 2);
    ASSERT_EQ(b.m_iNumRecs, 1);

    const tagSPRAYREC& r = a.m_pRecs[0];
    EXPECT_EQ(FormatSprayTime(r), "2024-06-01T14:03:10.50");
    EXPECT_EQ(r.locPos.dLat, 45.5);
    EXPECT_EQ(r.locPos.dLon, -93.25);
    EXPECT_EQ(r.sHeading, 90);
    EXPECT_EQ(r.dSpeed, 45.5);
    EXPECT_EQ(r.bySpray, 1);
    EXPECT_EQ(r.dSwathWidth, 18.288);
    EXPECT_EQ(r.sHeight, 60) << "12 m in units of 0.2 m";
    EXPECT_EQ(r.dAgl, 3.5);
    EXPECT_EQ(r.sLine, 4);
    EXPECT_EQ(r.sTrack, -125);
    EXPECT_EQ(r.sBoom, 1);
    EXPECT_EQ(r.afActualRate[0], 30.5f);
    EXPECT_EQ(r.afTargetRate[0], 30.0f);
    EXPECT_EQ(r.afActualRate[2], 2.5f);
    EXPECT_EQ(r.afTargetRate[9], 9.0f);
    EXPECT_EQ(r.afActualRate[1], 0.0f);
    EXPECT_EQ(r.strFieldName, "North, 40");
    EXPECT_STREQ(r.szAircraft, "N512AG");
    EXPECT_STREQ(r.szPilot, "J.Smith");
    EXPECT_EQ(r.strOffset, "L");
    // Heading 90: end A lies south of the track, end B north, 9.144 m each.
    EXPECT_LT(r.locSwathA.dLat, r.locPos.dLat);
    EXPECT_GT(r.locSwathB.dLat, r.locPos.dLat);
    EXPECT_NEAR(GeoDistance(r.locSwathA.dLat, r.locSwathA.dLon, r.locSwathB.dLat, r.locSwathB.dLon), 18.288,
                1e-6);

    const tagSPRAYREC& r2 = a.m_pRecs[1];
    EXPECT_EQ(FormatSprayTime(r2), "2024-06-01T14:03:11.99") << "fractions are cut to hundredths";
    EXPECT_EQ(r2.sHeight, -5);
    EXPECT_EQ(r2.sTrack, 32767);
    EXPECT_EQ(r2.strFieldName, "say \"hi\"");
    EXPECT_EQ(r2.strOffset, "R");
    EXPECT_EQ(FormatSprayTime(b.m_pRecs[0]), "2024-06-01T14:03:11.00");
    EXPECT_EQ(b.m_pRecs[0].locSwathA.dLat, b.m_pRecs[0].locSwathB.dLat)
        << "no swath: both ends at the position";

    EXPECT_FALSE(a.m_rcExtents.IsEmpty());
    EXPECT_LE(a.m_rcExtents.dSouth, r.locSwathA.dLat);
    EXPECT_GE(a.m_rcExtents.dNorth, r2.locSwathB.dLat);
}

struct TBadCase {
    const char* pszName;
    std::string strText;
    const char* pszError;  // must appear in the message
};

// The header, a good row and a second row whose fields are given.
std::string Row(const std::string& fields) {
    return std::string(kHeader) + "1,2024-06-01T14:03:10,45.5,-93.25,0,40,1,20\n" + fields + "\n";
}

// A file with one optional column after the required ones, and one row holding value there.
std::string Extra(const char* column, const char* value) {
    return std::string(kHeader).insert(std::strlen(kHeader) - 1, std::string(",") + column) +
           "1,2024-06-01T14:03:11,45.5,-93.25,0,40,1,20," + value + "\n";
}

TEST(FlightCsv, BadInputNamesLineAndColumn) {
    const TBadCase cases[] = {
        {"empty file", "", "header row is required"},
        {"no header, data first", "1,2024-06-01T14:03:10,45.5,-93.25,0,40,1,20\n",
         "lacks the required column(s) run, time"},
        {"missing columns", "run,time,lat,lon,speed\n", "lacks the required column(s) heading, spray, swath"},
        {"duplicate column", "run,time,lat,lon,heading,speed,spray,swath,LAT\n", "column lat appears twice"},
        {"non-numeric speed", Row("1,2024-06-01T14:03:11,45.5,-93.25,0,fast,1,20"),
         "line 3, column speed: \"fast\" is not a number"},
        {"trailing text after a number", Row("1,2024-06-01T14:03:11,45.5x,-93.25,0,40,1,20"),
         "line 3, column lat"},
        {"empty latitude", Row("1,2024-06-01T14:03:11,,-93.25,0,40,1,20"), "line 3, column lat: is empty"},
        {"infinite longitude", Row("1,2024-06-01T14:03:11,45.5,inf,0,40,1,20"),
         "column lon: \"inf\" is not a number"},
        {"latitude out of range", Row("1,2024-06-01T14:03:11,95,-93.25,0,40,1,20"),
         "column lat: \"95\" is outside -90..90"},
        {"spray flag 2", Row("1,2024-06-01T14:03:11,45.5,-93.25,0,40,2,20"),
         "column spray: \"2\" is not 0 or 1"},
        {"negative swath", Row("1,2024-06-01T14:03:11,45.5,-93.25,0,40,1,-3"), "column swath"},
        {"month 13", Row("1,2024-13-01T14:03:11,45.5,-93.25,0,40,1,20"),
         "line 3, column time: \"2024-13-01T14:03:11\" has a month outside 1..12"},
        {"February 30", Row("1,2023-02-29T14:03:11,45.5,-93.25,0,40,1,20"),
         "has a day that its month does not have"},
        {"hour 24", Row("1,2024-06-01T24:00:00,45.5,-93.25,0,40,1,20"), "has a time of day outside"},
        {"second 60", Row("1,2024-06-01T23:59:60,45.5,-93.25,0,40,1,20"), "has a time of day outside"},
        {"year before 1993", Row("1,1992-12-31T10:00:00,45.5,-93.25,0,40,1,20"),
         "has a year outside 1993..2120"},
        {"year after 2120", Row("1,2121-01-01T10:00:00,45.5,-93.25,0,40,1,20"),
         "has a year outside 1993..2120"},
        {"time with a zone", Row("1,2024-06-01T10:00:00Z,45.5,-93.25,0,40,1,20"), "a local time has no zone"},
        {"time without seconds", Row("1,2024-06-01T10:00,45.5,-93.25,0,40,1,20"), "is not a local time like"},
        {"empty run", Row(",2024-06-01T14:03:11,45.5,-93.25,0,40,1,20"), "line 3, column run: is empty"},
        {"too few fields", Row("1,2024-06-01T14:03:11,45.5,-93.25,0,40,1"),
         "line 3 has 7 fields, the header has 8"},
        {"too many fields", Row("1,2024-06-01T14:03:11,45.5,-93.25,0,40,1,20,9"), "line 3 has 9 fields"},
        {"unclosed quote", Row("1,\"2024-06-01T14:03:11,45.5,-93.25,0,40,1,20"),
         "line 3: a quoted field is not closed"},
        {"height does not fit", Extra("height", "7000"), "line 2, column height: \"7000\" is outside"},
        {"line not whole", Extra("line", "2.5"), "column line: \"2.5\" is not a whole number"},
        {"aircraft too long", Extra("aircraft", "ABCDEFGHIJK"),
         "column aircraft: \"ABCDEFGHIJK\" is longer than 10 characters"},
        {"offset not R or L", Extra("offset", "X"), "column offset: \"X\" is not R or L"},
        {"negative rate", Extra("rate7", "-1"), "column rate7"},
        {"overlong line", Row("1,2024-06-01T14:03:11,45.5,-93.25,0,40,1,20," + std::string(100000, 'x')),
         "line 3 is longer than 65536 characters"},
    };
    for (const TBadCase& c : cases) {
        const TFlightImport got = Read(c.strText);
        EXPECT_EQ(got.iResult, GISFILE_ERR_DATA) << c.pszName;
        EXPECT_NE(got.strError.find(c.pszError), std::string::npos) << c.pszName << ": " << got.strError;
        EXPECT_TRUE(got.Sprays.empty()) << c.pszName << ": nothing is half-imported";
    }
}

TEST(FlightCsv, OverlongLineInAFileStopsWithoutReadingItAll) {
    // A 3 MB line stands for a gigabyte one: the reader gives up after the first 64 KiB piece.
    TTempDir dir;
    const std::string path = dir.File("long.csv");
    WriteFileBytes(path, std::string(kHeader) + std::string(3 << 20, '1') + "\n");
    const TFlightImport got = ReadFlightCsvFile(path.c_str());
    EXPECT_EQ(got.iResult, GISFILE_ERR_DATA);
    EXPECT_NE(got.strError.find("line 2 is longer than"), std::string::npos) << got.strError;
}
}  // namespace
