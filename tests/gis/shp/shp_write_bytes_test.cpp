// Files of the shapefile export checked byte by byte against the layouts of the main, index
// and table files, in US and metric units.

#include <gtest/gtest.h>

#include <utime.h>
#include <ctime>

#include "platform/system_services.h"
#include "shp_test_files.h"
#include "shp_write_support.h"
#include "test_support.h"

using namespace shp_write_test;

namespace {
std::string Pad(const std::string& text, std::size_t width) {
    return text.size() >= width ? text.substr(0, width) : std::string(width - text.size(), ' ') + text;
}

// A local noon, so that the date is the same in every time zone's reading of it.
std::time_t LocalNoon(int year, int month, int day) {
    std::tm tm{};
    tm.tm_year = year - 1900;
    tm.tm_mon = month - 1;
    tm.tm_mday = day;
    tm.tm_hour = 12;
    tm.tm_isdst = -1;
    return std::mktime(&tm);
}

std::string MainHeader(std::uint32_t words, std::uint32_t type, const TLocRect& box) {
    std::string h;
    shp_test::PutBE32(h, 9994);
    h.append(20, '\0');
    shp_test::PutBE32(h, words);
    shp_test::PutLE32(h, 1000);
    shp_test::PutLE32(h, type);
    for (double v : {box.dWest, box.dSouth, box.dEast, box.dNorth}) shp_test::PutLEDouble(h, v);
    h.append(32, '\0');
    return h;
}

class ShpWriteBytes : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        SetClockForTesting([] { return LocalNoon(2021, 3, 5); });
        m_strSource = m_Dir.File("flight.csv");
        WriteFileBytes(m_strSource, "recorded\n");
        const std::time_t when = LocalNoon(2024, 6, 1);
        utimbuf times{when, when};
        utime(m_strSource.c_str(), &times);
    }
    void TearDown() override { SetClockForTesting({}); }

    TTempDir m_Dir;
    TShpSettingsGuard m_Settings;
    TScriptedMessages m_Messages;
    std::string m_strSource;
};
}  // namespace

TEST_P(ShpWriteBytes, PointExportWithItsTables) {
    const bool metric = GetParam();
    TGisFileShp::s_eESRISprayFormat = ESRI_SPRAY_POINTS;
    TMapLayer layer;
    std::vector<TSamplePlan> plans = Straight(2, 30.0);
    TFeatureSpray* spray = AddSpray(layer, MakeSpray(plans));
    spray->m_pRecs[1].strOffset = "X";
    TGisFileShp writer;
    writer.SetCompanyName("Acme Aerial");
    writer.SetSourceFile(m_strSource);
    writer.SetMetric(metric ? 1 : 0);
    ASSERT_EQ(writer.WriteFile(m_Dir.File("field12.shp").c_str(), &layer), GISFILE_OK);

    const TTriple t = ReadTriple(m_Dir.File("field12_Spray_Pts"));
    const TLocRect box = layer.m_rcExtents;
    std::string main = MainHeader(78, 1, box);
    std::string index = MainHeader(58, 1, box);
    for (int i = 0; i < 2; ++i) {
        shp_test::PutBE32(main, static_cast<std::uint32_t>(i + 1));
        shp_test::PutBE32(main, 10);
        main += shp_test::PointContent(plans[i].dLon, plans[i].dLat);
        shp_test::PutBE32(index, static_cast<std::uint32_t>(50 + 14 * i));
        shp_test::PutBE32(index, 10);
    }
    EXPECT_EQ(t.strShp, main);
    EXPECT_EQ(t.strShx, index);

    ASSERT_EQ(t.strDbf.size(), 737u + 2 * 261 + 1);
    EXPECT_EQ(t.strDbf.substr(1, 7), std::string("\x79\x03\x05\x02\x00\x00\x00", 7));
    EXPECT_EQ(t.strDbf.back(), '\x1A');
    const std::string numbers =
        metric ? " 111.847   2.500  20.000  10.000   3.000  0.000000 48.000000 50.000000"
               : " 111.847   8.202  65.617  32.808   9.843  0.000000  5.131519  5.345332";
    const std::string first = std::string(" ") + Pad("1", 8) + Pad("Acme Aerial", 28) + Pad("flight", 24) +
                              Pad("01/06/2024", 12) + Pad("N512AG", 12) + Pad("J.Smith", 12) +
                              Pad("North 40", 20) + Pad("Right", 5) + Pad("7", 5) + Pad(" 14:03:00.50", 14) +
                              Pad("45.5000000000", 17) + Pad("-93.2500000000", 17) + numbers + Pad("T", 8) +
                              Pad("T", 8);
    EXPECT_EQ(t.strDbf.substr(737, 261), first);
    const TTable table = ReadTable(t.strDbf);
    ASSERT_EQ(table.Rows.size(), 2u);
    EXPECT_EQ(table.Rows[1][7], "    X") << "an offset other than R or L is kept";

    // Both samples spray from the start: the non-spray triple has headers only.
    const TTriple n = ReadTriple(m_Dir.File("flight_NonSpray_PL"));
    EXPECT_EQ(n.strShp, MainHeader(50, 3, TLocRect(0, 0, 0, 0)));
    EXPECT_EQ(n.strShx, MainHeader(50, 3, TLocRect(0, 0, 0, 0)));
    ASSERT_EQ(n.strDbf.size(), 290u);
    EXPECT_EQ(n.strDbf.substr(4, 8), std::string("\x00\x00\x00\x00\x21\x01\x56\x00", 8));
    EXPECT_EQ(n.strDbf.back(), '\x1A');
}

TEST_P(ShpWriteBytes, NonSprayPointsAndTheirTable) {
    const bool metric = GetParam();
    TGisFileShp::s_eESRINonSprayFormat = ESRI_NONSPRAY_POINTS;
    TMapLayer layer;
    // on, off, off, on: the two off samples and the last one.
    std::vector<TSamplePlan> plans = Straight(4, 45.0, 20.0, {0, 0, 0, 1});
    AddSpray(layer, MakeSpray(plans));
    TGisFileShp writer;
    writer.SetSourceFile(m_strSource);
    writer.SetMetric(metric ? 1 : 0);
    ASSERT_EQ(writer.WriteFile(m_Dir.File("field12.shp").c_str(), &layer), GISFILE_OK);
    const TTriple n = ReadTriple(m_Dir.File("flight_NonSpray_Pts"));
    TLocRect box(plans[0].dLon, plans[3].dLat, plans[3].dLon, plans[0].dLat);
    std::string main = MainHeader(50 + 4 * 14, 1, box);
    for (int i = 0; i < 4; ++i) {
        shp_test::PutBE32(main, static_cast<std::uint32_t>(i + 1));
        shp_test::PutBE32(main, 10);
        main += shp_test::PointContent(plans[i].dLon, plans[i].dLat);
    }
    EXPECT_EQ(n.strShp, main);
    ASSERT_EQ(n.strDbf.size(), 289u + 4 * 86 + 1);
    const std::string row = std::string(" ") + Pad("1", 8) + Pad("7", 5) + Pad(" 14:03:00.50", 14) +
                            Pad("45.5000000000", 17) + Pad("-93.2500000000", 17) + " 111.847" +
                            (metric ? "  10.000   3.000" : "  32.808   9.843");
    EXPECT_EQ(n.strDbf.substr(289, 86), row);
    EXPECT_EQ(ReadTable(n.strDbf).Names[6], metric ? "HGT_ELLIPM" : "HGT_ELLIPF");
}

INSTANTIATE_TEST_SUITE_P(Units, ShpWriteBytes, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Metric" : "US"; });
