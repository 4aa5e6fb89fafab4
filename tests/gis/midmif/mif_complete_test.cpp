// MapInfo pairs in the complete profile: every object the map model carries read with its .mid
// row, hostile tables, files GDAL writes, pairs written for GDAL, and round trips.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/platform/numbers.h>
#include "complete_profile.h"
#include "layer_builders.h"
#include "load_report_check.h"
#include "test_support.h"

namespace {
using namespace layer_test;
// The complete profile for a writer test, and the delimiter set back after it.
class MifCompleteWrite : public testing::Test {
protected:
    void TearDown() override { TGisFileMidMif::s_eMidDelimiter = MID_DELIMITER_COMMA; }
    TCompleteProfile m_Profile;
};

// Every element as "L id bound value: lat lon, ..." (lines of another kind than boundary carry
// their kind's name), "M id 'name' value @lat lon" or "P id value @lat lon", joined by " | ".
std::string DescribeLayer(const TMapLayer& layer) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        out += out.empty() ? "" : " | ";
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) {
            if (line->GetKind() != ELEMENT_LINE_BOUNDARY)
                out += std::string(GetElementKindName(line->GetKind())) + " ";
            out += "L " + line->m_strId + " " + std::to_string(line->m_iBoundType) + " " +
                   FormatRoundTrip(line->m_dValue) + ":";
            for (int i = 0; i < line->m_iNumPoints; ++i)
                out += std::string(i ? "," : "") + " " + FormatRoundTrip(line->m_pPoints[i].dLat) + " " +
                       FormatRoundTrip(line->m_pPoints[i].dLon);
        } else if (const auto* marker = dynamic_cast<const TFeatureMarker*>(e)) {
            out += "M " + marker->m_strId + " '" + marker->m_strName + "' " +
                   FormatRoundTrip(marker->m_dValue) + " @" + FormatRoundTrip(marker->m_Loc.dLat) + " " +
                   FormatRoundTrip(marker->m_Loc.dLon);
        } else if (const auto* point = dynamic_cast<const TFeaturePoint*>(e)) {
            out += "P " + point->m_strId + " " + FormatRoundTrip(point->m_dValue) + " @" +
                   FormatRoundTrip(point->m_Loc.dLat) + " " + FormatRoundTrip(point->m_Loc.dLon);
        } else {
            out += GetElementKindName(e->GetKind());
        }
    }
    return out;
}

// Loads path; the report, when given, is filled. Questions are answered from answers.
std::string LoadDescribed(const std::string& path, TLoadReport* report = nullptr, const char* answers = "",
                          int* result = nullptr, std::size_t* centroids = nullptr) {
    TScriptedMessages messages(ScriptedAnswers(answers));
    TMapLayer layer;
    TLoadReport unused;
    const int r = TGisMap().LoadFile(path.c_str(), &layer, nullptr, report != nullptr ? *report : unused);
    if (result != nullptr) *result = r;
    if (centroids != nullptr) *centroids = layer.m_Centroids.size();
    return DescribeLayer(layer);
}

std::vector<std::string> Header(const std::vector<std::string>& columns, const std::string& delimiter = ",",
                                const std::string& charset = "WindowsLatin1") {
    std::vector<std::string> lines = {"Version 300", "Charset \"" + charset + "\"",
                                      "Delimiter \"" + delimiter + "\"", "CoordSys Earth Projection 1, 104",
                                      "Columns " + std::to_string(columns.size())};
    for (const std::string& c : columns) lines.push_back("  " + c);
    lines.push_back("Data");
    lines.push_back("");
    return lines;
}

const std::vector<std::string> kIdValueName = Header({"ID Char(10)", "VALUE Float", "NAME Char(10)"});

// A cause a case expects, with the text of the line where it first occurs (and the detail the
// report adds there).
struct TCauseAt {
    TLoadCause eCause;
    long long lCount;
    std::string strLine;
    std::string strNote = "";
};

struct TCompleteReadCase {
    const char* name;
    std::string body;  // the lines after the header, split at '|'
    const char* mid;   // null: no .mid file
    std::string expected;
    std::vector<TCauseAt> causes = {};
    std::string stop = "";  // "at <line text>: why"
    std::vector<std::string> header = kIdValueName;
    const char* answers = "";
};

TEST(MifCompleteRead, ObjectsAndRowsLeaveTheExpectedLayer) {
    TCompleteProfile profile;
    const TCompleteReadCase cases[] = {
        {"polylines, their sections and Line objects are open lines",
         "Pline 3|1 45|2 46|3 47|  Pen (1,2,0)|Pline|  2|4 45|5 45|Pline Multiple 2|  2|6 45|7 45|  3|8 45|9 "
         "45|10 45|    Smooth|Line 11 45 12 46|  Pen (1,2,0)",
         "a,1,\nb,2,\nc,3,\nd,4.5,\n",
         "L a 18 1: 45 1, 46 2, 47 3 | L b 18 2: 45 4, 45 5 | L c 18 3: 45 6, 45 7 | L c 18 3: 45 8, 45 9, "
         "45 10 | "
         "L d 18 4.5: 45 11, 46 12"},
        // A ring inside an odd number of the region's earlier rings is a hole.
        {"rings of a region: a hole, an island in it, a second polygon",
         "Region 4|  4|0 40|10 40|10 50|0 50|  3|2 42|8 42|5 48|  3|4 43|6 43|5 45|  3|20 40|21 40|20 41|    "
         "Pen (1,2,0)|    Brush (1,0,16777215)",
         "f,7.5,\n",
         "L f 16 7.5: 40 0, 40 10, 50 10, 50 0 | L f 17 7.5: 42 2, 42 8, 48 5 | L f 16 7.5: 43 4, 43 6, 45 5 "
         "| "
         "L f 16 7.5: 40 20, 40 21, 41 20"},
        {"the BOUND column makes a lone region an exclusion ring; ids follow the numbering",
         "Region 1|  3|1 45|2 45|2 46|Region 2|  3|1 45|2 45|2 46|  3|1.2 45.1|1.8 45.1|1.5 45.5|Region 1|  "
         "3|1 45|2 45|2 46",
         ",EXC,,\n,exc,,\n,something,,\n",
         "L 1 17 0: 45 1, 45 2, 46 2 | L 2 17 0: 45 1, 45 2, 46 2 | L 3 17 0: 45.1 1.2, 45.1 1.8, 45.5 1.5 | "
         "L 4 16 0: 45 1, 45 2, 46 2",
         {},
         "",
         Header({"ID Char(5)", "BOUND Char(4)", "VALUE Float", "NAME Char(5)"})},
        // Named points become markers; points without a name and an id stay points numbered apart.
        {"points and multipoints",
         "Point 1 45|    Symbol (35,0,12)|Multipoint 2|2 45|3 46|Point 4 47|MULTIPOINT|  1|5 48",
         "g,1,Gate\n,2,\n,,\np,3,\n",
         "M g 'Gate' 1 @45 1 | P Point 2 2 @45 2 | P Point 3 2 @46 3 | P Point 4 0 @47 4 | P p 3 @48 5"},
        {"a collection's parts share its row; objects not read still take theirs",
         "Text|    \"Region 1\"|    1 45 2 46|    Font (\"Arial\",0,0,0)|Collection 3|  Region 1|    3|1 "
         "45|2 45|2 46|  Pline 2|1 45|2 46|  Multipoint 1|3 47|Arc 1 45 2 46|  0 90|Point 4 48",
         "t,1,\nc,2,\na,3,\np,4,\n",
         "L c 16 2: 45 1, 45 2, 46 2 | L c 18 2: 45 1, 46 2 | P c 2 @47 3 | P p 4 @48 4",
         {{LOAD_MIF_ARC, 1, "Arc 1 45 2 46"}, {LOAD_MIF_TEXT, 1, "Text"}}},
        {"columns named like objects, and objects before any DATA line",
         "Point 1 45",
         "7,p,x\n",
         "M 7 'x' 0 @45 1",
         {{LOAD_MIF_COLUMN_NOT_FOUND, 1, "Point 1 45", "VALUE"}},
         "",
         {"Version 300", "Delimiter \",\"", "Columns 3", "  ID Char(5)", "  Pline Char(5)",
          "  NAME Char(5)"}},
        {"broken counts pass their object over; the reading goes on",
         "Pline 0|1 45|Region x|Pline Multiple -1|Pline 2|1 45|2 46|Region 1|  5|1 45|2 45|2 46|Point "
         "3|Point 3 45",
         nullptr,
         "L 1 18 0: 45 1, 46 2 | L 2 16 0: 45 1, 45 2, 46 2 | P Point 1 0 @45 3",
         {{LOAD_MIF_DAMAGED_OBJECT, 4, "Pline 0"},
          {LOAD_MIF_SHORT_OBJECT, 1, "Region 1"},
          {LOAD_MIF_NO_MID_ROW, 7, "Pline 0", "no .mid file"}}},
        {"a point out of the degree range is dropped",
         "Pline 3|1 45|200 95|2 46|Point 500 45",
         ",,\n,,\n",
         "L 1 18 0: 45 1, 46 2",
         {{LOAD_VERTEX_OUT_OF_RANGE, 2, "200 95"}}},
        {"a projected point stops the reading; the object keeps the points before it",
         "Pline 3|1 45|500000 5000000|2 46|Point 3 47",
         ",,\n,,\n",
         "L 1 18 0: 45 1",
         {},
         "at 500000 5000000: a point (5000000, 500000) looks projected (answered No; either answer ends the "
         "reading); lines 14.. were not read",
         kIdValueName,
         "n"},
        {"rows short, long, unclosed, past the objects, and a value that is no number",
         "Point 1 45|Point 2 45|Point 3 45|Point 4 45",
         "a,1\nb,x,B,extra\n\"c,3,C\nd,4,D\ne,5,E\nf,6,F\n",
         "P a 1 @45 1 | M b 'B' 0 @45 2 | P c,3,C 0 @45 3 | M d 'D' 4 @45 4",
         {{LOAD_MIF_MID_FIELD_COUNT, 3, "Point 1 45", "row 1: 2 fields for 3 columns"},
          {LOAD_MIF_MID_EXTRA_ROW, 2, "Point 4 45", "from row 5 of the .mid"},
          {LOAD_MIF_VALUE_NOT_NUMBER, 1, "Point 2 45"}}},
        {"the .mid ends before the objects, and a chosen column the header lacks",
         "Point 1 45|Point 2 45",
         "a,1\n",
         "P a 1 @45 1 | P Point 2 0 @45 2",
         {{LOAD_MIF_NO_MID_ROW, 1, "Point 2 45", "the .mid has ended"},
          {LOAD_MIF_COLUMN_NOT_FOUND, 1, "Data", "NAME"}},
         "",
         Header({"id Char(5)", "Value Float"})},
        // Windows Latin 1 texts come in as UTF-8; a quoted field may hold the delimiter.
        // Counts claimed past the end of the file: nothing is sized from them; what is there loads.
        {"a point count of two billion",
         "Pline 2000000000|1 45|2 46",
         nullptr,
         "L 1 18 0: 45 1, 46 2",
         {{LOAD_MIF_SHORT_OBJECT, 1, "Pline 2000000000"},
          {LOAD_MIF_NO_MID_ROW, 1, "Pline 2000000000", "no .mid file"}}},
        {"a region of two billion rings",
         "Region 2147483647| 2000000000|1 45|2 46",
         nullptr,
         "L 1 16 0: 45 1, 46 2",
         {{LOAD_MIF_SHORT_OBJECT, 1, "Region 2147483647"},
          {LOAD_MIF_NO_MID_ROW, 1, "Region 2147483647", "no .mid file"}}},
        {"two billion sections",
         "Pline Multiple 2000000000| 1|1 45",
         nullptr,
         "L 1 18 0: 45 1",
         {{LOAD_MIF_SHORT_OBJECT, 1, "Pline Multiple 2000000000"},
          {LOAD_MIF_NO_MID_ROW, 1, "Pline Multiple 2000000000", "no .mid file"}}},
        {"two billion columns",
         "Point 1 45",
         nullptr,
         "P Point 1 0 @45 1",
         {{LOAD_MIF_NO_MID_ROW, 1, "Point 1 45", "no .mid file"},
          {LOAD_MIF_COLUMN_NOT_FOUND, 2, "Data", "VALUE"}},
         "",
         {"Columns 2000000000", "  ID Char(5)", "Data"}},
        {"charset and tab delimiter",
         "Point 1 45|Point 2 45",
         "\"caf\xe9\"\t1\t\"a\tb\"\n\" x \"\t2.5\t\"say \"\"hi\"\"\"\n",
         "M caf\xc3\xa9 'a\tb' 1 @45 1 | M x 'say \"hi\"' 2.5 @45 2",
         {},
         "",
         Header({"ID Char(10)", "VALUE Float", "NAME Char(10)"}, "\t")},
        {"a UTF-8 pair and the space delimiter",
         "Point 1 45",
         "\"\xc5\x82\xc4\x85ka\" 1 \"n m\"\n",
         "M \xc5\x82\xc4\x85ka 'n m' 1 @45 1",
         {},
         "",
         Header({"ID Char(10)", "VALUE Float", "NAME Char(10)"}, " ", "Neutral")},
    };
    for (const TCompleteReadCase& c : cases) {
        std::vector<std::string> lines = c.header;
        std::istringstream body(c.body);
        for (std::string line; std::getline(body, line, '|');) lines.push_back(line);
        TTempDir dir;
        WriteFileBytes(dir.File("t.mif"), JoinLines(lines));
        if (c.mid != nullptr) WriteFileBytes(dir.File("t.mid"), c.mid);
        TLoadReport report;
        int result = -1;
        EXPECT_EQ(LoadDescribed(dir.File("t.mif"), &report, c.answers, &result), c.expected) << c.name;
        EXPECT_EQ(result, GISFILE_OK) << c.name;
        std::vector<TSkipWant> wanted;
        for (const TCauseAt& at : c.causes)
            wanted.push_back(
                {at.eCause, at.lCount,
                 LineAt(lines, at.strLine) + (at.strNote.empty() ? "" : " (" + at.strNote + ")")});
        std::string stop;
        if (!c.stop.empty()) {
            const std::size_t colon = c.stop.find(':');
            stop = "at " + LineAt(lines, c.stop.substr(3, colon - 3)) + c.stop.substr(colon);
        }
        EXPECT_EQ(DescribeReport(report), DescribeWanted(wanted, stop)) << c.name;
    }
}

// A Point object still gives the layer the centroid the default reading adds, and without
// chosen columns the .mid is not needed.
TEST(MifCompleteRead, PointsKeepTheirCentroidsAndIdsFollowTheNumbering) {
    TCompleteProfile profile(true, "", "", "");
    TTempDir dir;
    WriteFileBytes(dir.File("p.mif"),
                   JoinLines(Header({"Name Char(10)"})) +
                       "Point 1 45\nPline 2\n1 45\n2 46\nPoint 2 46\nDATA\nPline 2\n3 45\n4 46\n");
    std::size_t centroids = 0;
    TLoadReport report;
    EXPECT_EQ(LoadDescribed(dir.File("p.mif"), &report, "", nullptr, &centroids),
              "P Point 1 0 @45 1 | L 1 18 0: 45 1, 46 2 | P Point 2 0 @46 2 | L 1 18 0: 45 3, 46 4");
    EXPECT_EQ(centroids, 4u);  // two points, two lines
    EXPECT_EQ(DescribeReport(report), "");
    EXPECT_EQ(DescribeAdded(report), "boundary 2, point 2");
}

// What GDAL reads from a pair, a feature a line, as "ID|BOUND|VALUE|NAME TYPE (x y ...)...";
// GDAL's messages go to stderr, where none may be an error or a warning.
const char* const kGdalListing = R"PY(
import csv, re, subprocess, sys
run = subprocess.run(["ogr2ogr", "-f", "CSV", "/vsistdout/", sys.argv[1], "-lco", "GEOMETRY=AS_WKT"],
                     capture_output=True, text=True)
sys.stderr.write(run.stderr)
for row in csv.DictReader(run.stdout.splitlines()):
    kind, wkt = row["WKT"].split(" ", 1)
    parts = ["(" + " ".join("%.10g" % float(v) for v in re.findall(r"[^ ,]+", p)) + ")"
             for p in re.findall(r"\(([^()]*)\)", wkt)]
    print("|".join(row.get(f, "") for f in ["ID", "BOUND", "VALUE", "NAME"]), kind, " ".join(parts))
sys.exit(run.returncode)
)PY";

std::string GdalFeatures(const std::string& mif) {
    WriteFileBytes(mif + ".py", kGdalListing);
    const TCommandResult r =
        RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(mif + ".py") + " " + ShellQuote(mif));
    EXPECT_EQ(r.iExit, 0) << r.strErr;
    EXPECT_EQ(r.strErr.find("ERROR"), std::string::npos) << r.strErr;
    EXPECT_EQ(r.strErr.find("Warning"), std::string::npos) << r.strErr;
    return r.strOut;
}

// A field with a hole and an island inside it, a lone exclusion ring, a road, open lines (one of
// a single point), markers and points, with texts that need quoting. Holes stand after their
// polygon and share its id and value, as they come back.
void FillField(TMapLayer& layer) {
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC,
            {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}, {45.1, -93.0}, {45.0, -93.0}}, "field 1", 12.5);
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC,
            {{45.02, -92.98}, {45.02, -92.95}, {45.05, -92.95}, {45.02, -92.98}}, "field 1", 12.5);
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, {{46.0, -93.0}, {46.0, -92.99}, {46.01, -92.99}},
            "pond");
    AddLine(layer, ELEMENT_LINE_AREA, BOUNDARY_INC, {{44.0, -91.0}, {44.0, -90.9}, {44.123456, -90.987654}},
            "area \"A\", east", 0.25);
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN,
            {{45.2, -93.1}, {45.25, -93.05}, {45.22, -93.0}, {45.2, -93.1}}, "track");
    AddMarker(layer, "7", "Gate, north", 0, {45.5, -93.25});
    AddPoint(layer, "well", {45.6, -93.3}, 3);
}

// A hole goes with its polygon, rings are closed, a line of one point has it twice.
const char* const kFieldInGdal =
    "field 1|INC|12.5| POLYGON (-93 45 -92.9 45 -92.9 45.1 -93 45.1 -93 45) "
    "(-92.98 45.02 -92.95 45.02 -92.95 45.05 -92.98 45.02)\n"
    "pond|EXC|0| POLYGON (-93 46 -92.99 46 -92.99 46.01 -93 46)\n"
    "area \"A\", east|INC|0.25| POLYGON (-91 44 -90.9 44 -90.987654 44.123456 -91 44)\n"
    "track|OPEN|0| LINESTRING (-93.1 45.2 -93.05 45.25 -93 45.22 -93.1 45.2)\n"
    "7||0|Gate, north POINT (-93.25 45.5)\nwell||3| POINT (-93.3 45.6)\n";

struct TWriteCase {
    const char* name;
    std::function<void(TMapLayer&)> fill;
    std::string gdal;  // GDAL's listing, less the "stub" line each case adds
    MIDDELIMITER delimiter = MID_DELIMITER_COMMA;
};

const TWriteCase kWriteCases[] = {
    {"field, comma", FillField, kFieldInGdal},
    {"field, tab", FillField, kFieldInGdal, MID_DELIMITER_TAB},
    {"field, space", FillField, kFieldInGdal, MID_DELIMITER_SPACE},
    {"texts beyond Windows Latin 1",
     [](TMapLayer& l) {
         AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}},
                 "pole \xc5\x82\xc4\x85ka");
         AddMarker(l, "caf\xc3\xa9", "\xe2\x82\xac 5", 0, {45.5, -93.25});
     },
     "pole \xc5\x82\xc4\x85ka|INC|0| POLYGON (-93 45 -92.9 45 -92.9 45.1 -93 45)\n"
     "caf\xc3\xa9||0|\xe2\x82\xac 5 POINT (-93.25 45.5)\n"},
};

// Every pair the complete profile writes opens in GDAL without an error or a warning, with one
// feature per element (a hole inside its polygon) and the same parts, vertices and values.
TEST_F(MifCompleteWrite, GdalReadsEveryElement) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    for (const TWriteCase& c : kWriteCases) {
        TGisFileMidMif::s_eMidDelimiter = c.delimiter;
        TMapLayer layer;
        c.fill(layer);
        // Open lines of one point are written with it twice.
        AddLine(layer, ELEMENT_LINE_GENERIC, BOUNDARY_OPEN, {{45.3, -93.4}}, "stub");
        TTempDir dir;
        ASSERT_EQ(TGisMap().WriteFile(dir.File("c.mif").c_str(), &layer), 0) << c.name;
        EXPECT_EQ(GdalFeatures(dir.File("c.mif")),
                  c.gdal + "stub|OPEN|0| LINESTRING (-93.4 45.3 -93.4 45.3)\n")
            << c.name;
    }
}

// Recorded spray in the complete profile: every swath block and every sample row has its
// object, and the rows carry the four columns after the system's eight.
TEST_F(MifCompleteWrite, SprayRowsStayPairedWithObjects) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    TMapLayer layer;
    auto* spray = new TFeatureSpray(3);
    for (int s = 0; s < 3; ++s) {
        tagSPRAYREC& r = spray->m_pRecs[s];
        r.locSwathA = TLoc(45.0 + s * 0.001, -93.0);
        r.locSwathB = TLoc(45.0 + s * 0.001, -93.001);
        r.locPos = TLoc(45.0 + s * 0.001, -93.0005);
        r.bySpray = 1;
        r.afActualRate[0] = 5.0f + s;
    }
    spray->m_adChannel[0] = 1.0;  // a run without block rows by default
    layer.AddElement(spray);
    AddMarker(layer, "1", "B", 0, {45.5, -93.25});
    TTempDir dir;
    ASSERT_EQ(TGisMap().WriteFile(dir.File("s.mif").c_str(), &layer), 0);
    std::size_t rows = 0;
    for (char c : ReadFileBytes(dir.File("s.mid"))) rows += c == '\n';
    // One swath region, two sample points, the marker.
    EXPECT_EQ(rows, 4u);
    const std::string features = GdalFeatures(dir.File("s.mif"));
    EXPECT_EQ(std::count(features.begin(), features.end(), '\n'), 4) << features;
    EXPECT_TRUE(features.ends_with("\n1||0|B POINT (-93.25 45.5)\n")) << features;
}

// What the complete profile writes reads back, with ID, VALUE and NAME chosen, as the same
// elements: kinds (every line kind comes back as a boundary), bound types, ids, values, names
// and vertices.
TEST_F(MifCompleteWrite, ReadsBackTheSameElements) {
    for (const TWriteCase& c : kWriteCases) {
        TGisFileMidMif::s_eMidDelimiter = c.delimiter;
        TMapLayer layer;
        c.fill(layer);
        for (TMapElement* e : layer.m_Elements)
            if (e->GetKind() == ELEMENT_LINE_AREA) e->m_dwType = ELEMENT_LINE_BOUNDARY | e->GetLowBits();
        TTempDir dir;
        ASSERT_EQ(TGisMap().WriteFile(dir.File("r.mif").c_str(), &layer), 0) << c.name;
        EXPECT_EQ(LoadDescribed(dir.File("r.mif")), DescribeLayer(layer)) << c.name;
    }
}

// Files GDAL writes in the complete profile: a holed polygon and a multipolygon as regions,
// lines as Pline and Line objects, a multiline as Pline Multiple, and points (GDAL writes a
// multipoint as one Point object per point, each with the feature's row).
TEST(MifCompleteRead, FilesWrittenByGdal) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    TCompleteProfile profile(true, "name", "rate", "label");
    TTempDir dir;
    WriteFileBytes(
        dir.File("in.csv"),
        "name,rate,label,WKT\n"
        "field,12.5,,\"POLYGON ((-93 45,-92.9 45,-92.9 45.1,-93 45),(-92.98 45.02,-92.95 45.02,"
        "-92.95 45.05,-92.98 45.02))\"\n"
        "two,5,,\"MULTIPOLYGON (((-94 45,-93.9 45,-93.9 45.1,-94 45)),((-95 45,-94.9 45,-94.9 45.1,"
        "-95 45)))\"\n"
        "road,1,,\"LINESTRING (-93.1 45.2,-93.05 45.25,-93 45.22)\"\n"
        "seg,2,,\"LINESTRING (-93.1 45.2,-93.05 45.25)\"\n"
        "ditches,3,,\"MULTILINESTRING ((-93.1 45.2,-93.05 45.25),(-93.3 45.2,-93.35 45.25,-93.4 45.2))\"\n"
        "pump,4,Pump,\"POINT (-93.2 45.3)\"\n"
        "wells,5,,\"MULTIPOINT ((-93.2 45.3),(-93.21 45.31))\"\n");
    const TCommandResult r =
        RunCommand("ogr2ogr -f \"MapInfo File\" -dsco FORMAT=MIF " + ShellQuote(dir.File("g.mif")) + " " +
                   ShellQuote(dir.File("in.csv")) + " -oo GEOM_POSSIBLE_NAMES=WKT");
    ASSERT_EQ(r.iExit, 0) << r.strErr;
    TLoadReport report;
    EXPECT_EQ(
        LoadDescribed(dir.File("g.mif"), &report),
        "L field 16 12.5: 45 -93, 45 -92.9, 45.1 -92.9, 45 -93 | "
        "L field 17 12.5: 45.02 -92.98, 45.02 -92.95, 45.05 -92.95, 45.02 -92.98 | "
        "L two 16 5: 45 -94, 45 -93.9, 45.1 -93.9, 45 -94 | L two 16 5: 45 -95, 45 -94.9, 45.1 -94.9, 45 -95 "
        "| "
        "L road 18 1: 45.2 -93.1, 45.25 -93.05, 45.22 -93 | L seg 18 2: 45.2 -93.1, 45.25 -93.05 | "
        "L ditches 18 3: 45.2 -93.1, 45.25 -93.05 | L ditches 18 3: 45.2 -93.3, 45.25 -93.35, 45.2 -93.4 | "
        "M pump 'Pump' 4 @45.3 -93.2 | P wells 5 @45.3 -93.2 | P wells 5 @45.31 -93.21");
    EXPECT_EQ(DescribeReport(report), "");
    EXPECT_EQ(DescribeAdded(report), "boundary 8, marker 1, point 2");
}
}  // namespace
