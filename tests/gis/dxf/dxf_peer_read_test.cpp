// Drawings written by other programs (ezdxf, GDAL) load as the rules say.

#include <gtest/gtest.h>

#include <string>

#include "dxf_test_support.h"
#include "gis/gis_map.h"
#include "test_support.h"

namespace {

// Draws the same content in either release: R12 gives POLYLINE/VERTEX, R2000 LWPOLYLINE.
const char* const kEzdxfScript = R"PY(
import sys, ezdxf
version, out = sys.argv[1], sys.argv[2]
doc = ezdxf.new(version)
for name in ["A41", "H12", "F30", "17", "TRACT1", "ZIP", "CONTOUR", "LEGEND2", "NAME", "PEAK"]:
    doc.layers.add(name)
msp = doc.modelspace()
square = [(10.5, 45.2), (10.6, 45.2), (10.6, 45.3), (10.5, 45.3)]

def poly(layer, close=False, vertex_flag=False, bulge_at=None):
    pts = [(x, y, 1.0 if i == bulge_at else 0.0) for i, (x, y) in enumerate(square)]
    if version == "R12":
        p = msp.add_polyline2d([(x, y) for x, y, b in pts], dxfattribs={"layer": layer}, close=close)
        for v, (x, y, b) in zip(p.vertices, pts):
            v.dxf.bulge = b
        if vertex_flag:
            p.vertices[-1].dxf.flags = 1  # every vertex writes its flags: the last one decides
    else:
        msp.add_lwpolyline(pts, format="xyb", dxfattribs={"layer": layer}, close=close or vertex_flag)

poly("A41")
poly("H12")
poly("17")
poly("F30", close=True)
poly("0")
for layer in ["TRACT1", "ZIP", "CONTOUR", "LEGEND2", "NAME", "PEAK"]:
    poly(layer)
poly("H12", vertex_flag=True)
poly("H12", vertex_flag=True, bulge_at=3)
msp.add_line((10.5, 45.2), (10.6, 45.3), dxfattribs={"layer": "A41"})

# A block in drawing units near (0, 0), inserted once with two attributes.
block = doc.blocks.new(name="SIGN")
block.add_line((0, 0), (0.5, 0.5))
block.add_attdef("TGR_NAME", (0, 0))
ref = msp.add_blockref("SIGN", (10.55, 45.25))
ref.add_attrib("ZIP", "55401", (10.56, 45.26))
ref.add_attrib("TGR_NAME", "Main Street", (10.57, 45.27))

doc.layout("Layout1").add_line((10.5, 45.2), (10.6, 45.3), dxfattribs={"layer": "A41"})
doc.saveas(out)
)PY";

TEST(DxfPeers, EzdxfDrawingsOfBothReleases) {
    if (!FindDxfPeers().bEzdxf)
        GTEST_SKIP() << "ezdxf for " << TL_GIS_PYTHON << " is missing (scripts/install-test-tools.sh)";
    const struct {
        const char* version;
        const char* expected;
    } cases[] = {
        // Release 12 closes a polyline by a vertex flag only, and a bulge above 0.9 opens it again.
        {"R12",
         "road/4 water/4 water/4 boundary/4 boundary/4 water/5 water/4 generic/2 m56:Main "
         "Street@45.27,10.57"},
        {"R2000",
         "road/4 water/4 water/4 boundary/5 boundary/4 water/5 water/5 generic/2 m56:Main "
         "Street@45.27,10.57"},
    };
    TTempDir dir;
    WriteFileBytes(dir.File("draw.py"), kEzdxfScript);
    for (const auto& c : cases) {
        const std::string path = dir.File(std::string(c.version) + ".dxf");
        const TCommandResult made =
            RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(dir.File("draw.py")) + " " + c.version +
                       " " + ShellQuote(path));
        ASSERT_EQ(made.iExit, 0) << c.version << ": " << made.strErr;
        TMapLayer layer;
        TGisMap map;
        EXPECT_EQ(map.LoadFile(path.c_str(), &layer, nullptr), 0) << c.version;
        EXPECT_EQ(DescribeLayer(layer), c.expected) << c.version;
        EXPECT_EQ(layer.m_iMarkerCount, 1) << c.version;
    }
}

TEST(DxfPeers, GdalDrawingLoadsWhatItCan) {
    if (!HaveProgram("ogr2ogr")) GTEST_SKIP() << "GDAL's ogr2ogr is missing (scripts/install-test-tools.sh)";
    TTempDir dir;
    // GDAL writes a line as LWPOLYLINE, a polygon as HATCH and a point as POINT, among tables and
    // objects this reader has no use for.
    WriteFileBytes(dir.File("in.geojson"), R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{},"geometry":{"type":"LineString","coordinates":[[10.5,45.2],[10.6,45.3],[10.7,45.25]]}},
{"type":"Feature","properties":{},"geometry":{"type":"Polygon","coordinates":[[[10.5,45.2],[10.6,45.2],[10.6,45.3],[10.5,45.2]],
 [[10.55,45.22],[10.58,45.22],[10.58,45.25],[10.55,45.22]]]}},
{"type":"Feature","properties":{},"geometry":{"type":"Point","coordinates":[10.55,45.25]}},
{"type":"Feature","properties":{},"geometry":{"type":"MultiLineString","coordinates":[[[11.5,46.2],[11.6,46.3]],[[11.7,46.4],[11.8,46.5]]]}}
]})");
    const std::string path = dir.File("gdal.dxf");
    const TCommandResult made =
        RunCommand("ogr2ogr -f DXF " + ShellQuote(path) + " " + ShellQuote(dir.File("in.geojson")));
    ASSERT_EQ(made.iExit, 0) << made.strErr;
    TMapLayer layer;
    TGisMap map;
    EXPECT_EQ(map.LoadFile(path.c_str(), &layer, nullptr), 0);
    // GDAL puts everything on layer 0, which keeps the default class.
    EXPECT_EQ(DescribeLayer(layer), "boundary/3 boundary/2 boundary/2");
}

}  // namespace
