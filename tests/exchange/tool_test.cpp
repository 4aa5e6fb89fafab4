// tlgis with GeoJSON and KML/KMZ: a Google Earth field to a JOB file and back, as-applied maps from
// a flight, the seven formats into each other, hostile files ending with exit 1 and the reason.

#include <gtest/gtest.h>

#include <tl_gis/gis/gis_map.h>
#include "../tools/tool_run.h"
#include "exchange_test_support.h"

using namespace exchange_test;

namespace {
// A field as Google Earth saves it: one polygon with one hole, styled, in a Folder.
const char* const kGoogleEarthField = R"(<?xml version="1.0" encoding="UTF-8"?>
<kml xmlns="http://www.opengis.net/kml/2.2" xmlns:gx="http://www.google.com/kml/ext/2.2">
<Document><name>Field 12.kml</name>
<Style id="s"><LineStyle><color>ff0000ff</color></LineStyle></Style>
<Folder><name>Farm</name>
<Placemark><name>Field 12</name><styleUrl>#s</styleUrl>
<Polygon><tessellate>1</tessellate><outerBoundaryIs><LinearRing><coordinates>
-93.26,45.49,0 -93.26,45.51,0 -93.24,45.51,0 -93.24,45.49,0 -93.26,45.49,0
</coordinates></LinearRing></outerBoundaryIs><innerBoundaryIs><LinearRing><coordinates>
-93.255,45.495,0 -93.25,45.495,0 -93.25,45.5,0 -93.255,45.5,0 -93.255,45.495,0
</coordinates></LinearRing></innerBoundaryIs></Polygon></Placemark>
</Folder></Document></kml>
)";

// The bound types of the boundaries a file loads as, in order.
std::vector<int> Bounds(const std::string& path) {
    TMapLayer layer;
    TGisMap map;
    const TLGIS_FILE_TYPE type = TGisMap::GetGisFileType(path.c_str());
    TLoadReport report;
    if (type != GIS_FILE_NONE)
        map.LoadFile(path.c_str(), &layer, nullptr, report);
    else
        LoadFile(path, layer, report);
    std::vector<int> bounds;
    for (const TMapElement* e : layer.m_Elements)
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) bounds.push_back(line->m_iBoundType);
    return bounds;
}

TEST(ExchangeTool, CommandsWithTheExchangeFormats) {
    TTempDir dir;
    WriteFileBytes(dir.File("field.kml"), kGoogleEarthField);
    WriteFileBytes(dir.File("deep.json"), std::string(100000, '[') + std::string(100000, ']'));
    const std::string flight = ShellQuote(std::string(TL_GIS_SOURCE_DIR) + "/examples/flight.csv");
    const TToolCase cases[] = {
        {"help lists the formats", "help", 0, ".geojson/.json (GeoJSON), .kml (KML), .kmz (KMZ)", ""},
        {"as-applied map for a web map", "convert - applied.geojson --spray " + flight + " --company Acme", 0,
         "", "wrote applied.geojson", "applied.geojson", "\"kind\":\"spray_swath\""},
        {"as-applied map for Google Earth", "convert - applied.kml --spray " + flight + " --single-block", 0,
         "", "wrote applied.kml", "applied.kml", "<styleUrl>#spray_4</styleUrl>"},
        {"info names the type", "info --json field.kml", 0, "\"type\":7", ""},
        {"render", "render field.kml field.svg", 0, "", "wrote field.svg", "field.svg", "<svg"},
        {"deep nesting", "convert deep.json out.job", 1, "",
         "reading deep.json stopped at the file's top level: the JSON nests deeper than 64 levels"},
        {"missing file", "info missing.kmz", 1, "", "cannot open missing.kmz (no such file) (6002)"},
        {"batch to GeoJSON", "convert field.kml -o out -f geojson", 0, "field.kml -> out/field.geojson: ok",
         ""},
    };
    for (const TToolCase& c : cases) RunToolCase(dir.Path(), c);
}

// The field from Google Earth to each of the seven formats and back to KML; the JOB file, the
// aircraft's, keeps the field and its hole both ways.
TEST(ExchangeTool, ConvertsBetweenTheSevenFormats) {
    TTempDir dir;
    WriteFileBytes(dir.File("earth.kml"), kGoogleEarthField);
    const std::vector<int> fieldAndHole = {BOUNDARY_INC, BOUNDARY_EXC};
    for (const std::string format : {"job", "pmh", "dxf", "mif", "shp", "geojson", "kml", "kmz"}) {
        SCOPED_TRACE(format);
        // A JOB file is named by its job number; a shapefile of boundaries is the _Spray_Polys triple.
        const std::string out = format == "job" ? "12.job" : "field." + format;
        const std::string written = format == "shp" ? "field_Spray_Polys.shp" : out;
        const TCommandResult there = RunCommand(InFolder(dir.Path(), "convert earth.kml " + out));
        EXPECT_EQ(there.iExit, 0) << there.strErr;
        const TCommandResult back =
            RunCommand(InFolder(dir.Path(), "convert " + written + " back_" + format + ".kml"));
        EXPECT_EQ(back.iExit, 0) << back.strErr;
        const std::vector<int> bounds = Bounds(dir.File("back_" + format + ".kml"));
        EXPECT_FALSE(bounds.empty());
        if (format == "job") {
            // Heights of 0 are dropped, and said so.
            EXPECT_NE(there.strErr.find("1 feature whose positions carry heights"), std::string::npos)
                << there.strErr;
            EXPECT_EQ(Bounds(dir.File(out)), fieldAndHole);
            EXPECT_EQ(bounds, fieldAndHole);
        }
    }
}
}  // namespace
