// The load report of the shapefile reader: every shape type it does not read, the bytes after
// the last record, points kept though not geographic, and where and why loading stopped, with
// counts and first places exact; the result and the elements the same with or without a report;
// a hostile file of many skipped records costs no allocation per record; shapefiles of PointZ,
// MultiPoint and holed polygons written by pyshp and GDAL give the counts they were written with.

#include <gtest/gtest.h>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include "allocation_counter.h"
#include "load_report_check.h"
#include "shp_test_files.h"
#include "shp_test_support.h"
#include "test_support.h"

using namespace shp_test;

namespace {

// A record of the shape type with room for a point and a Z or M value; the reader looks at the
// type only.
std::string Typed(std::uint32_t type) {
    std::string c;
    PutLE32(c, type);
    return c.append(32, '\0');
}

std::string Line(const std::vector<TXY>& points) {
    return PolyContent(3, {0}, points);
}

struct TLoaded {
    int iResult = 0;
    std::string strElements;  // ids, in order
};

TLoaded Load(const std::string& path, const char* answers, TLoadReport* report) {
    TScriptedMessages messages(ScriptedAnswers(answers));
    TMapLayer layer;
    TLoaded out;
    out.iResult = report != nullptr ? TGisMap().LoadFile(path.c_str(), &layer, nullptr, *report)
                                    : TGisMap().LoadFile(path.c_str(), &layer, nullptr);
    for (const TMapElement* e : layer.m_Elements) out.strElements += e->m_strId + " ";
    return out;
}

TEST(ShpLoadReport, CountsFirstPlacesAndStops) {
    const std::string point = PointContent(-93.25, 45.5);
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    TShpBytes types;
    types.Record(1, point).Record(2, Typed(11)).Record(3, Typed(11)).Record(4, std::string(4, '\0'));
    int number = 5;
    for (std::uint32_t type : {8u, 13u, 15u, 18u, 21u, 23u, 25u, 28u, 31u, 77u})
        types.Record(number++, Typed(type));
    const std::string cut = Line(four);
    const std::string utm = TShpBytes().Record(1, Line({{500000, 5000000}, {500100, 5000100}})).Bytes();
    const TReportCase cases[] = {
        {"every shape type it does not read",
         types.Bytes(),
         {{LOAD_SHP_NULL, 1, "record 4"},
          {LOAD_SHP_MULTIPOINT, 1, "record 5"},
          {LOAD_SHP_POINTZ, 2, "record 2"},
          {LOAD_SHP_POLYLINEZ, 1, "record 6"},
          {LOAD_SHP_POLYGONZ, 1, "record 7"},
          {LOAD_SHP_MULTIPOINTZ, 1, "record 8"},
          {LOAD_SHP_POINTM, 1, "record 9"},
          {LOAD_SHP_POLYLINEM, 1, "record 10"},
          {LOAD_SHP_POLYGONM, 1, "record 11"},
          {LOAD_SHP_MULTIPOINTM, 1, "record 12"},
          {LOAD_SHP_MULTIPATCH, 1, "record 13"},
          {LOAD_SHP_UNKNOWN_TYPE, 1, "record 14 (shape type 77)"}},
         "",
         "point 1"},
        {"zero padding after the last record",
         TShpBytes().Record(1, point).Raw(std::string(20, '\0')).Bytes(),
         {},
         "",
         "point 1"},
        {"junk after the last record",
         TShpBytes().Record(1, point).Record(2, point).Raw("\x01junk").Bytes(),
         {{LOAD_SHP_TRAILING_BYTES, 5,
           "after record 2 (the file ends 5 bytes into the header of the record after record 2)"}},
         "",
         "point 2"},
        {"the only record is numbered 0",
         TShpBytes().Record(0, point).Bytes(),
         {{LOAD_SHP_TRAILING_BYTES, 28, "after the header, at byte 100 (a record numbered 0 ends the data)"}},
         "",
         ""},
        {"a record longer than the file",
         TShpBytes().Record(1, point).Record(2, cut, 1000).Bytes(),
         {{LOAD_SHP_TRAILING_BYTES, static_cast<long long>(8 + cut.size()),
           "after record 1 (record 2 gives its content as 2000 bytes, but only " +
               std::to_string(cut.size()) + " bytes of the file follow its header)"}},
         "",
         "point 1"},
        {"points kept though not geographic",
         TShpBytes()
             .Record(1, Line({{-93.25, 45.5}, {10, 95}, {-93.2, 45.5}}))
             .Record(2, PointContent(500000, 5000000))
             .Record(3, Line({{-93.25, 45.5}, {200, 45}, {-93.2, 45.5}}))
             .Bytes(),
         {{LOAD_KEPT_OUT_OF_RANGE, 2, "record 1"}, {LOAD_KEPT_PROJECTED, 1, "record 2"}},
         "",
         "boundary 2, point 1"},
        {"a last point out of range stops the load",
         TShpBytes()
             .Record(1, point)
             .Record(2, Line({{-93.25, 45.5}, {200, 95}}))
             .Record(3, point)
             .Record(4, point)
             .Record(5, point)
             .Bytes(),
         {{LOAD_KEPT_OUT_OF_RANGE, 1, "record 2"}},
         "after record 2: its last point (95, 200) is outside the degree range; records 3.. were not read, 3 "
         "records",
         "boundary 1, point 1",
         2},
        {"projected, answered No",
         utm,
         {{LOAD_KEPT_PROJECTED, 2, "record 1"}},
         "after record 1: its last point (5000100, 500100) looks projected; it was the last record",
         "boundary 1",
         1,
         "nn"},
        {"projected, answered Yes",
         utm,
         {},
         "at record 1: the projected-coordinate question about (5000000, 500000) was answered Yes; the rest "
         "of the file was not read",
         "",
         GISFILE_ERR_CANCELLED,
         "y"},
        {"a damaged record",
         TShpBytes().Record(1, point).Record(2, PolyContent(3, {0, 5}, four)).Bytes(),
         {},
         "at record 2: the record is damaged: part 2 starts at point 5 of 4: past the record's last point",
         "point 1",
         GISFILE_ERR_DATA},
        {"not a shapefile",
         TShpBytes().Record(1, point).Bytes(9995),
         {},
         "at the file header: the file does not start with the shapefile code 9994 (it has 9995)",
         "",
         GISFILE_ERR_OPEN},
    };
    EnsureLibraryStarted();
    for (const TReportCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("t.shp"), c.text);
        TLoadReport report;
        const TLoaded with = Load(dir.File("t.shp"), c.answers, &report);
        const TLoaded without = Load(dir.File("t.shp"), c.answers, nullptr);
        EXPECT_EQ(with.iResult, without.iResult) << c.name;
        EXPECT_EQ(with.strElements, without.strElements) << c.name;
        ExpectReport(c, with.iResult, report);
        EXPECT_EQ(report.IsIncomplete(), c.result != 0 || !c.stop.empty() || c.added.empty()) << c.name;
    }
}

// A file of 200,000 Null records loads with as many allocations as a file of one.
TEST(ShpLoadReport, RepeatedCausesCostNoAllocationEach) {
    EnsureLibraryStarted();
    TTempDir dir;
    ExpectNoAllocationPerOccurrence(dir.File("nulls.shp"), LOAD_SHP_NULL, 200000, [&](int n) {
        TShpBytes b;
        for (int i = 1; i <= n; ++i) b.Record(i, std::string(4, '\0'));
        WriteFileBytes(dir.File("nulls.shp"), b.Bytes());
    });
}

// pyshp or GDAL writes PointZ points, MultiPoint records and polygons with holes; the report
// counts what was written: every PointZ and MultiPoint record passed over by type, every ring
// added as a boundary, and nothing else.
const char* const kPeerWriter = R"(
import json, os, subprocess, sys
folder, writer = sys.argv[1], sys.argv[2]
def square(cx, cy, r, cw):
    ring = [[cx - r, cy - r], [cx - r, cy + r], [cx + r, cy + r], [cx + r, cy - r], [cx - r, cy - r]]
    return ring if cw else ring[::-1]
sets = {
    "pointz": [("Point", [-93.25 + i * 0.001, 45.5, 300 + i]) for i in range(7)],
    "multipoint": [("MultiPoint", [[-93.25, 45.5 + i * 0.001], [-93.24, 45.5]]) for i in range(4)],
    "holes": [("Polygon", [square(-93.25 + i * 0.1, 45.5, 0.02, True), square(-93.25 + i * 0.1, 45.5, 0.005, False)])
              for i in range(3)] + [("Polygon", [square(-93.0, 45.5, 0.02, True)])],
}
for name, shapes in sets.items():
    stem = os.path.join(folder, name)
    geoms = [{"type": t, "coordinates": c} for t, c in shapes]
    feats = [{"type": "Feature", "properties": {"N": i}, "geometry": g} for i, g in enumerate(geoms)]
    if writer == "gdal":
        json.dump({"type": "FeatureCollection", "features": feats}, open(stem + ".geojson", "w"))
        subprocess.run(["ogr2ogr", "-f", "ESRI Shapefile", stem + ".shp", stem + ".geojson"], check=True)
    else:
        import shapefile
        w = shapefile.Writer(stem)
        w.field("N", "N")
        for i, (t, c) in enumerate(shapes):
            if t == "Point": w.pointz(*c)
            elif t == "MultiPoint": w.multipoint(c)
            else: w.poly(c)
            w.record(i)
        w.close()
)";

void ReportWhatAPeerWrote(const char* writer) {
    TTempDir dir;
    const TCommandResult made = RunPeerScript(dir, kPeerWriter, writer);
    ASSERT_EQ(made.iExit, 0) << made.strOut;
    const struct {
        const char* name;
        std::string skips;
        const char* added;
    } cases[] = {
        {"pointz", DescribeWanted({{LOAD_SHP_POINTZ, 7, "record 1"}}), ""},
        {"multipoint", DescribeWanted({{LOAD_SHP_MULTIPOINT, 4, "record 1"}}), ""},
        {"holes", "", "boundary 7"},
    };
    EnsureLibraryStarted();
    for (const auto& c : cases) {
        TScriptedMessages quiet;
        TMapLayer layer;
        TLoadReport report;
        EXPECT_EQ(TGisMap().LoadFile(dir.File(std::string(c.name) + ".shp").c_str(), &layer, nullptr, report),
                  0)
            << c.name;
        EXPECT_EQ(DescribeReport(report), c.skips) << c.name;
        EXPECT_EQ(DescribeAdded(report), c.added) << c.name;
    }
}

TEST(ShpLoadReport, FilesWrittenByPyshp) {
    if (RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit != 0)
        GTEST_SKIP() << "pyshp is missing for " TL_GIS_PYTHON " (scripts/install-test-tools.sh installs it)";
    ReportWhatAPeerWrote("pyshp");
}

TEST(ShpLoadReport, FilesWrittenByGdal) {
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is missing (scripts/install-test-tools.sh installs it)";
    ReportWhatAPeerWrote("gdal");
}

}  // namespace
