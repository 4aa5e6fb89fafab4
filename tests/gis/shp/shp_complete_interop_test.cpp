// Peers as oracles: shapefiles of PointZ, PolyLineM, MultiPoint, holed polygons and MultiPatch
// written by pyshp and GDAL load with the elements and dropped Z and M values they were written
// with (and, by default, with those records passed over and counted); what the complete profile
// writes opens in GDAL without a complaint, gives pyshp the same shapes and rows, and reads back.

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include "layer_builders.h"
#include "load_report_check.h"
#include "shp_complete_support.h"
#include "shp_test_support.h"

using namespace shp_test;

namespace {
const char* const kPeerWriter = R"py(
import csv, os, subprocess, sys
folder, writer = sys.argv[1], sys.argv[2]
outer = [[-93.26, 45.49], [-93.26, 45.51], [-93.24, 45.51], [-93.24, 45.49], [-93.26, 45.49]]
hole = [[-93.255, 45.495], [-93.25, 45.495], [-93.25, 45.5], [-93.255, 45.5], [-93.255, 45.495]]
strip = [[-93.2, 45.5], [-93.2, 45.51], [-93.19, 45.5], [-93.19, 45.51]]
pts = [[-93.25 + i * 0.01, 45.5 + i * 0.001] for i in range(4)]
lines = [[[-93.3 + k * 0.01 + i * 0.001, 45.4 + i * 0.002] for i in range(3)] for k in range(2)]
def wkt(ps, extra=None):
    return ",".join("%r %r" % (x, y) + ("" if extra is None else " %r" % extra(i)) for i, (x, y) in enumerate(ps))
sets = {
    "pointz": ("POINTZ", ["POINT Z (%s)" % wkt([p], lambda i: 120.0) for p in pts[:3]]),
    "polylinem": ("POLYLINEM", ["LINESTRING M (%s)" % wkt(l, lambda i: i + 1.0) for l in lines]),
    "multipoint": ("MULTIPOINT", ["MULTIPOINT (%s)" % wkt(pts)]),
    "holes": ("POLYGON", ["POLYGON ((%s),(%s))" % (wkt(outer), wkt(hole))]),
    "multipatch": ("MULTIPATCH", ["POLYHEDRALSURFACE Z (((%s),(%s)))" % (wkt(outer, lambda i: 3.0), wkt(hole, lambda i: 3.0)),
                                  "TIN Z (((%s)),((%s)))" % (wkt(strip[:3] + strip[:1], lambda i: 3.0), wkt(strip[1:] + strip[1:2], lambda i: 3.0))]),
}
for name, (shpt, rows) in sets.items():
    stem = os.path.join(folder, name)
    if writer == "gdal":
        with open(stem + ".csv", "w", newline="") as f:
            w = csv.writer(f)
            w.writerow(["WKT", "ID"])
            for k, r in enumerate(rows):
                w.writerow([r, "%s-%d" % (name, k + 1)])
        subprocess.run(["ogr2ogr", "-f", "ESRI Shapefile", stem + ".shp", stem + ".csv", "-lco", "SHPT=" + shpt.replace("POLYLINE", "ARC")], check=True)
        continue
    import shapefile
    w = shapefile.Writer(stem, shapeType=getattr(shapefile, shpt))
    w.field("ID", "C")
    if name == "pointz":
        for p in pts[:3]: w.pointz(p[0], p[1], 120.0)
    elif name == "polylinem":
        for l in lines: w.linem([[[x, y, i + 1.0] for i, (x, y) in enumerate(l)]])
    elif name == "multipoint":
        w.multipoint(pts)
    elif name == "holes":
        w.poly([outer, hole])
    else:
        z = lambda r: [[x, y, 3.0] for x, y in r]
        w.multipatch([z(outer), z(hole)], partTypes=[shapefile.OUTER_RING, shapefile.INNER_RING])
        w.multipatch([z(strip)], partTypes=[shapefile.TRIANGLE_STRIP])
    n = {"pointz": 3, "polylinem": 2, "multipatch": 2}.get(name, 1)
    for k in range(n): w.record("%s-%d" % (name, k + 1))
    w.close()
)py";

// Each set: the elements the complete profile loads (ids from the ID column) and what its report
// counts, then what the default profile's report counts and adds.
struct TPeerSet {
    const char* name;
    std::string elements;
    std::vector<TSkipWant> skips, defaultSkips;
    const char* defaultAdded;
};

void LoadWhatAPeerWrote(const char* writer) {
    SKIP_WITHOUT_PEER(writer);
    TTempDir dir;
    const TCommandResult made = RunPeerScript(dir, kPeerWriter, writer);
    ASSERT_EQ(made.iExit, 0) << made.strOut;
    const std::string m = "boundary:multipatch-";
    // clang-format off
    const TPeerSet sets[] = {
        {"pointz", "point:pointz-1, point:pointz-2, point:pointz-3", {{LOAD_SHP_Z_VALUES, 3, "record 1"}}, {{LOAD_SHP_POINTZ, 3, "record 1"}}, ""},
        {"polylinem", "boundary:polylinem-1/18#3, boundary:polylinem-2/18#3", {{LOAD_SHP_M_VALUES, 6, "record 1"}}, {{LOAD_SHP_POLYLINEM, 2, "record 1"}}, ""},
        {"multipoint", "point:multipoint-1, point:multipoint-1, point:multipoint-1, point:multipoint-1", {}, {{LOAD_SHP_MULTIPOINT, 1, "record 1"}}, ""},
        {"holes", "boundary:holes-1/16#5, boundary:holes-1/17#5", {}, {}, "boundary 2"},
        {"multipatch", m + "1/16#5, " + m + "1/17#5, " + m + "2/16#4, " + m + "2/16#4", {{LOAD_SHP_Z_VALUES, 14, "record 1"}}, {{LOAD_SHP_MULTIPATCH, 2, "record 1"}}, ""},
    };
    // clang-format on
    EnsureLibraryStarted();
    for (const TPeerSet& set : sets) {
        const std::string path = dir.File(std::string(set.name) + ".shp");
        for (const bool complete : {true, false}) {
            const TCompleteProfile profile(complete, "ID", "", "");
            TScriptedMessages quiet;
            TLoadReport report;
            TMapLayer layer;
            EXPECT_EQ(TGisMap().LoadFile(path.c_str(), &layer, nullptr, report), 0) << set.name;
            EXPECT_EQ(complete ? DescribeElements(layer) : DescribeAdded(report),
                      complete ? set.elements : set.defaultAdded)
                << set.name;
            EXPECT_EQ(DescribeReport(report), DescribeWanted(complete ? set.skips : set.defaultSkips))
                << set.name;
        }
    }
}

TEST(ShpCompletePeers, LoadsFilesWrittenByPyshp) {
    SKIP_WITHOUT_LINUX_PEERS();
    LoadWhatAPeerWrote("pyshp");
}

TEST(ShpCompletePeers, LoadsFilesWrittenByGdal) {
    SKIP_WITHOUT_LINUX_PEERS();
    LoadWhatAPeerWrote("gdal");
}

std::vector<tagLOC> Locs(const std::vector<TXY>& points) {
    std::vector<tagLOC> locs;
    for (const auto& [x, y] : points) locs.push_back({y, x});
    return locs;
}

std::string Points(const std::vector<TXY>& points) {
    std::string out;
    for (const auto& [x, y] : points) out += Vertex6(x, y);
    return out;
}

// Shapes (type, part starts, vertices) and rows as pyshp reads them, one shape a line.
const char* const kPyshpDump = R"( -c 'import sys, shapefile
r = shapefile.Reader(sys.argv[1])
for s, rec in zip(r.shapes(), r.records()):
    text = lambda v: "None" if v is None else ("%.6f" % v if isinstance(v, float) else str(v))
    pts = "".join(" %.6f,%.6f" % (p[0], p[1]) for p in s.points)
    print("%d %s%s %s" % (s.shapeType, list(s.parts), pts, "|".join(text(v) for v in rec)))' )";
}  // namespace

// A field with a hole, a second field written from a ring that does not repeat its first vertex,
// an exclusion ring outside every field, a road and a track, a marker with a name in UTF-8 and a
// point: each comes back from the files written, and the peers read the same.
TEST(ShpCompleteWriter, WritesWhatPeersAndTheProfileReadBack) {
    const std::vector<TXY> fieldA = SquareRing(0.01, false), hole = SquareRing(0.002, false);
    std::vector<TXY> fieldB = SquareRing(0.005, false, -93.2);
    fieldB.pop_back();
    const std::vector<TXY> pond = SquareRing(0.001, true, -93.1);
    const std::vector<TXY> road = {
        {-93.3, 45.4}, {-93.29, 45.41}, {-93.29, 45.41}, {-93.28, 45.4}, {-93.3, 45.4}};
    const std::vector<TXY> track = {{-93.31, 45.41}, {-93.32, 45.42}};
    const std::string gate =
        "\xC3\x91"
        "and\xC3\xBA gate";
    TMapLayer layer;
    const std::tuple<std::uint32_t, int, const char*, double, std::vector<TXY>> lines[] = {
        {ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, "Field A", 12.5, fieldA},
        {ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, "Hole", 0.0, hole},
        {ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, "Field B", 3.0, fieldB},
        {ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, "Pond", 0.0, pond},
        {ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, "Road", 0.5, road},
        {ELEMENT_LINE_ROAD, BOUNDARY_OPEN, "Track", 0.0, track}};
    for (const auto& [kind, bound, id, value, points] : lines)
        layer_test::AddLine(layer, kind, bound, Locs(points), id, value);
    layer_test::AddMarker(layer, "7", gate.c_str(), 0, {45.5, -93.25});
    layer_test::AddPoint(layer, "P1", {45.51, -93.26});

    TTempDir dir;
    EnsureLibraryStarted();
    TScriptedMessages messages;
    {
        const TCompleteProfile complete;
        TGisFileShp writer;
        writer.m_iWriteMode = 0;
        ASSERT_EQ(writer.WriteFile(dir.File("f.shp").c_str(), &layer), 0);
        std::string written;
        for (const std::string& file : writer.GetWrittenFiles())
            written += std::filesystem::path(file).filename().string() + " ";
        EXPECT_EQ(written,
                  "f_Spray_Polys.shp f_Spray_Polys.shx f_Spray_Polys.dbf f_Spray_Polys.prj f_Spray_Polys.cpg "
                  "f_Lines.shp f_Lines.shx f_Lines.dbf f_Lines.prj f_Lines.cpg "
                  "f_Points.shp f_Points.shx f_Points.dbf f_Points.prj f_Points.cpg ");
    }
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(ReadFileBytes(dir.File("f_Lines.cpg")), "UTF-8");

    // Outer rings clockwise, holes and the lone exclusion ring counter-clockwise, every ring
    // closed; a hole shares its field's row. Lines keep every vertex as held.
    const std::string closedB = Points(SquareRing(0.005, true, -93.2));
    struct TTripleWant {
        const char* stem;
        int features;
        std::string elements;  // read back in the complete profile
        std::string pyshp;
    };
    const TTripleWant triples[] = {
        {"f_Spray_Polys", 3,
         "boundary:Field A/16#5 =12.5" + Points(SquareRing(0.01, true)) + ", boundary:Field A/17#5 =12.5" +
             Points(hole) + ", boundary:Field B/16#5 =3" + closedB + ", boundary:Pond/17#5" +
             Points(SquareRing(0.001, false, -93.1)),
         "5 [0, 5]" + Points(SquareRing(0.01, true)) + Points(hole) + " Field A|INC|12.500000|\n" + "5 [0]" +
             closedB + " Field B|INC|3.000000|\n5 [0]" + Points(SquareRing(0.001, false, -93.1)) +
             " Pond|EXC|0.000000|\n"},
        {"f_Lines", 2, "boundary:Road/18#5 =0.5" + Points(road) + ", boundary:Track/18#2" + Points(track),
         "3 [0]" + Points(road) + " Road|OPEN|0.500000|\n3 [0]" + Points(track) + " Track|OPEN|0.000000|\n"},
        {"f_Points", 2,
         "marker:7 '" + gate + "'" + Vertex6(-93.25, 45.5) + ", point:P1" + Vertex6(-93.26, 45.51),
         "1 []" + Vertex6(-93.25, 45.5) + " 7||0.000000|" + gate + "\n1 []" + Vertex6(-93.26, 45.51) +
             " P1||0.000000|\n"},
    };
    const bool gdal = HavePeer("gdal"), pyshp = HavePeer("pyshp");
    for (const TTripleWant& t : triples) {
        SCOPED_TRACE(t.stem);
        const std::string shp = dir.File(std::string(t.stem) + ".shp");
        {
            const TCompleteProfile complete;
            TLoadReport report;
            TMapLayer back;
            EXPECT_EQ(TGisMap().LoadFile(shp.c_str(), &back, nullptr, report), 0);
            EXPECT_EQ(DescribeElements(back, true), t.elements);
            EXPECT_EQ(DescribeReport(report), "");
        }
        if (gdal) ExpectGdalReads(shp, t.features, "ID[\"EPSG\",4326]");
        if (pyshp) {
            const TCommandResult dump = RunCommand(TL_GIS_PYTHON + std::string(kPyshpDump) + ShellQuote(shp));
            EXPECT_EQ(dump.strOut, t.pyshp) << dump.strErr;
        }
    }
}

// Swath polygons turn clockwise, the spray and non-spray tables keep their 22 and 8 columns with
// UTF-8 texts cut at whole characters, and both triples get their .prj and .cpg.
TEST(ShpCompleteWriter, SprayExportRunsClockwiseWithItsSidecars) {
    TMapLayer layer;
    for (double heading : {0.0, 90.0, 200.0, 300.0}) AddSpray(layer, Straight(5, heading));
    AddSpray(layer, Straight(4, 45.0, 20.0, {0, 0}));
    TWriteOptions options;
    options.strCompany = std::string(27, 'x') + "\xC3\x91";  // 29 bytes for a field of 28
    TTempDir dir;
    TExport out;
    {
        const TCompleteProfile complete;
        out = Export(layer, options, dir);
    }
    ASSERT_EQ(out.iResult, 0);
    ASSERT_EQ(out.Spray.Shapes.size(), 4u);
    for (const TShape& shape : out.Spray.Shapes) {
        double twiceArea = 0.0;
        for (std::size_t i = 0; i + 1 < shape.Points.size(); ++i)
            twiceArea += shape.Points[i].dLon * shape.Points[i + 1].dLat -
                         shape.Points[i + 1].dLon * shape.Points[i].dLat;
        EXPECT_LT(twiceArea, 0.0) << "clockwise";
    }
    EXPECT_EQ(out.Spray.Names.size(), 22u);
    EXPECT_EQ(out.NonSpray.Names.size(), 8u);
    EXPECT_EQ(out.Spray.Rows.at(0).at(1), " " + std::string(27, 'x'));
    for (const TTriple* t : {&out.Spray, &out.NonSpray}) {
        EXPECT_EQ(ReadFileBytes(ShpTriplePath(t->strStem, "cpg")), "UTF-8");
        EXPECT_EQ(ReadFileBytes(ShpTriplePath(t->strStem, "prj")), SHP_PRJ_WGS84);
        if (HavePeer("gdal")) ExpectGdalReads(t->strStem + ".shp", t->Shapes.size());
    }
}

// tlgis lists every file the complete profile writes.
TEST(ShpCompleteWriter, ToolNamesEveryFileWritten) {
    TTempDir dir;
    const std::vector<TXY> line = {{-93.25, 45.5}, {-93.24, 45.51}};
    WriteFileBytes(dir.File("in.shp"), TShpBytes().Record(1, PolyContent(3, {0}, line)).Bytes(9994, 3));
    const TCommandResult r =
        RunCommand(InFolderCommand(dir.Path(), ShellQuote(TLGIS_EXE) + " convert --complete in.shp out.shp"));
    EXPECT_EQ(r.iExit, 0) << r.strErr;
    for (const char* file : {"out_Spray_Polys.shp", "out_Spray_Polys.prj", "out_Lines.dbf", "out_Lines.cpg"})
        EXPECT_NE(r.strErr.find(std::string("wrote ") + file), std::string::npos) << file << "\n" << r.strErr;
    EXPECT_EQ(r.strErr.find("out_Points"), std::string::npos) << "no points, no points triple";
}
