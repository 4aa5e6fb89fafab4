// The export's main, index and table files byte by byte, in US and metric units.

#include <gtest/gtest.h>

#include <utime.h>
#include <ctime>
#include <sstream>

#include "platform/system_services.h"
#include "shp_test_support.h"

using namespace shp_test;

static std::string Pad(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text.substr(0, width);
}

// The header of a table written on 5 March 2021, its fields given as "NAME Cwidth" or
// "NAME Nwidth.decimals".
static std::string DbfHeader(const std::string& fields, std::uint32_t count) {
    std::string descriptors;
    std::size_t recordLength = 1;
    std::istringstream in(fields);
    for (std::string name, type; in >> name >> type;) {
        const std::size_t width = std::stoul(type.substr(1)), dot = type.find('.');
        name.resize(11, '\0');
        descriptors += name + type[0] + std::string(4, '\0') + static_cast<char>(width) +
                       static_cast<char>(dot == std::string::npos ? 0 : std::stoi(type.substr(dot + 1))) +
                       std::string(14, '\0');
        recordLength += width;
    }
    std::string h = "\x03\x79\x03\x05";
    PutLE32(h, count);
    const std::size_t headerLength = descriptors.size() + 33;
    for (std::size_t v : {headerLength, recordLength})
        h += {static_cast<char>(v & 0xFF), static_cast<char>(v >> 8)};
    return h + std::string(20, '\0') + descriptors + '\x0D';
}

// Point records of the plans with their index entries.
static std::pair<std::string, std::string> PointFiles(const std::vector<TSamplePlan>& plans,
                                                      const TLocRect& box) {
    const auto n = static_cast<std::uint32_t>(plans.size());
    std::string shp = MainHeader(50 + 14 * n, 1, box), shx = MainHeader(50 + 4 * n, 1, box);
    for (std::uint32_t i = 0; i < n; ++i) {
        PutBE32(shp, i + 1);
        PutBE32(shp, 10);
        shp += PointContent(plans[i].dLon, plans[i].dLat);
        PutBE32(shx, 50 + 14 * i);
        PutBE32(shx, 10);
    }
    return {shp, shx};
}

TEST(ShpWriteBytes, PointsWithTheirTablesInBothUnits) {
    for (const bool metric : {false, true}) {
        SCOPED_TRACE(metric ? "metric" : "US");
        TTempDir dir;
        WriteFileBytes(dir.File("flight.csv"), "recorded\n");
        utimbuf times{1717243200, 1717243200};  // noon UTC on 1 June 2024: the same date in every zone
        utime(dir.File("flight.csv").c_str(), &times);
        TMapLayer layer;
        const std::vector<TSamplePlan> sprayed = Straight(2, 30.0);
        AddSpray(layer, sprayed)->m_pRecs[1].strOffset = "X";
        std::vector<TSamplePlan> off = Straight(2, 45.0, 20.0, {0, 0});
        for (TSamplePlan& s : off) s = {s.dLat + 0.01, s.dLon + 0.01, 45.0, 20.0, 0};
        AddSpray(layer, off);
        SetClockForTesting([] { return std::time_t{1614945600}; });  // 5 March 2021
        const TExport out =
            Export(layer, {.iSpray = ESRI_SPRAY_POINTS, .iNonSpray = ESRI_NONSPRAY_POINTS, .bMetric = metric},
                   dir, "field12.shp");
        SetClockForTesting({});
        ASSERT_EQ(out.Spray.strStem, dir.File("field12_Spray_Pts"));
        ASSERT_EQ(out.NonSpray.strStem, dir.File("flight_NonSpray_Pts"));

        const auto spray = PointFiles(sprayed, layer.m_rcExtents);
        EXPECT_EQ(out.Spray.strShp, spray.first);
        EXPECT_EQ(out.Spray.strShx, spray.second);
        const auto nonSpray = PointFiles(off, TLocRect(off[0].dLon, off[1].dLat, off[1].dLon, off[0].dLat));
        EXPECT_EQ(out.NonSpray.strShp, nonSpray.first);
        EXPECT_EQ(out.NonSpray.strShx, nonSpray.second);

        const std::string sprayFields =
            "SEGMENTID C8 CUSTOMER C28 FILE_NAME C24 FILE_DATE C12 AIRCRAFT C12 PILOT C12 FIELD_NAME C20 "
            "OFFSET C5 LINE_NUM C5 EVENT_TIME C14 POS_LAT C17 POS_LON C17 SPEED_MPH N8.1 " +
            std::string(
                metric ? "TRK_M N8.1 SWIDTH_M N8.1 HGT_M N8.1 AGL_M N8.1 AREA_M N10.6 TSRATE_LTR N10.6 "
                         "ASRATE_LTR N10.6 "
                       : "TRK_FT N8.1 SWIDTH_FT N8.1 HGT_FT N8.1 AGL_FT N8.1 AREA_US N10.6 TSRATE_US N10.6 "
                         "ASRATE_US N10.6 ") +
            "SPRAY_STAT C8 BOOM_STAT C8";
        const std::string sprayRow =
            " " + Pad("1", 8) + Pad("Acme Aerial", 28) + Pad("flight", 24) + Pad("01/06/2024", 12) +
            Pad("N512AG", 12) + Pad("J.Smith", 12) + Pad("North 40", 20) + Pad("Right", 5) + Pad("7", 5) +
            Pad(" 14:03:00.50", 14) + Pad("45.5000000000", 17) + Pad("-93.2500000000", 17) +
            (metric ? " 111.847   2.500  20.000  10.000   3.000  0.000000 48.000000 50.000000"
                    : " 111.847   8.202  65.617  32.808   9.843  0.000000  5.131519  5.345332") +
            Pad("T", 8) + Pad("T", 8);
        EXPECT_EQ(out.Spray.strDbf.substr(0, 737 + 261), DbfHeader(sprayFields, 2) + sprayRow);
        EXPECT_EQ(out.Spray.Rows.at(1).at(7), "    X") << "an offset other than R or L is kept";

        const std::string nonSprayFields =
            "SAMPLEID C8 LINE_NUM C5 EVENT_TIME C14 POS_LAT C17 POS_LON C17 SPEED_MPH N8.1 " +
            std::string(metric ? "HGT_ELLIPM N8.1 AGL_M N8.1" : "HGT_ELLIPF N8.1 AGL_FT N8.1");
        const std::string nonSprayRow = " " + Pad("1", 8) + Pad("7", 5) + Pad(" 14:03:00.50", 14) +
                                        Pad("45.5100000000", 17) + Pad("-93.2400000000", 17) + " 111.847" +
                                        (metric ? "  10.000   3.000" : "  32.808   9.843");
        EXPECT_EQ(out.NonSpray.strDbf.substr(0, 289 + 86), DbfHeader(nonSprayFields, 2) + nonSprayRow);
    }
}

// A straight run of three samples is one polygon of seven points: the A ends of samples 0..2,
// the B ends of samples 2..0 and the first point again, whichever way that ring turns.
TEST(ShpWriteBytes, SwathPolygonOfAStraightRun) {
    for (const double heading : {30.0, 210.0}) {
        SCOPED_TRACE(heading);
        TMapLayer layer;
        const TFeatureSpray* spray = AddSpray(layer, Straight(3, heading));
        const TExport out = Export(layer, {});
        const tagSPRAYREC* r = spray->m_pRecs;
        std::vector<TXY> ring;
        for (const tagLOC* p : {&r[0].locSwathA, &r[1].locSwathA, &r[2].locSwathA, &r[2].locSwathB,
                                &r[1].locSwathB, &r[0].locSwathB, &r[0].locSwathA})
            ring.emplace_back(p->dLon, p->dLat);
        std::string content = PolyContent(5, {0}, ring);
        TLocRect box;
        box.InitExtents();
        for (const auto& [x, y] : ring) box.ExpandExtents(tagLOC{y, x});
        std::string boxBytes;
        for (double v : {box.dWest, box.dSouth, box.dEast, box.dNorth}) PutLEDouble(boxBytes, v);
        content.replace(4, 32, boxBytes);
        std::string record;
        PutBE32(record, 1);
        PutBE32(record, 80);
        ASSERT_EQ(content.size(), 160u);
        EXPECT_EQ(out.Spray.strShp.substr(100), record + content);
    }
}
