// The GeoJSON and KML readers on small files, one a line: the elements, what is passed over, where
// reading stopped; hostile input (deep nesting, huge numbers, NUL, bad syntax) ends at once.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include <tl_gis/gis/chosen_columns.h>
#include "exchange_test_support.h"
#include "load_report_check.h"

using namespace exchange_test;

namespace {
// "layer Farm" when the load named it, then "boundary INC 1 5" for a line (bound, id, vertices),
// "marker Gate", "point", "pattern 1 AB" for a pattern with its valid points, one a line.
std::string Describe(const TMapLayer& layer) {
    std::string out = layer.m_strLLB.empty() ? "" : "layer " + layer.m_strLLB + "\n";
    for (const TMapElement* e : layer.m_Elements) {
        out += GetElementKindName(e->GetKind());
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e))
            out += std::string(" ") + BoundTypeName(line->m_iBoundType) + " " + e->m_strId + " " +
                   std::to_string(line->m_iNumPoints);
        else if (const auto* marker = dynamic_cast<const TFeatureMarker*>(e))
            out += " " + marker->m_strName;
        else if (const auto* pattern = dynamic_cast<const TFeaturePattern*>(e)) {
            out += " " + e->m_strId + " ";
            for (int i = 0; i < PATTERN_POINT_COUNT; ++i)
                if (IsPatternPointValid(pattern->m_aPoint[i].m_Loc)) out += static_cast<char>('A' + i);
        }
        out += "\n";
    }
    return out;
}

struct TReadCase {
    const char* pszName;
    TExchangeFileType eType;
    std::string strText;
    int iResult;
    std::string strElements;  // Describe() of the layer
    TLoadCause eCause;        // a cause the report must count (LOAD_CAUSE_COUNT for none)
    long long lCount;
    std::string strStop;       // a text the stop's reason holds; empty when reading ran to the end
    const char* answers = "";  // to the projected-coordinate question, one per question asked
};

std::string Feature(const std::string& properties, const std::string& geometry) {
    return R"({"type":"Feature","properties":)" + properties + R"(,"geometry":)" + geometry + "}";
}

std::string Collection(const std::string& features) {
    return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}

std::string Geometry(const std::string& type, const std::string& coordinates) {
    return R"({"type":")" + type + R"(","coordinates":)" + coordinates + "}";
}

std::string Kml(const std::string& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><kml xmlns="http://www.opengis.net/kml/2.2"><Document>)" +
           body + "</Document></kml>";
}

std::string KmlRing(const std::string& coordinates) {
    return "<LinearRing><coordinates>" + coordinates + "</coordinates></LinearRing>";
}

const std::string kSquare = R"([[-93.26,45.49],[-93.26,45.51],[-93.24,45.51],[-93.24,45.49],[-93.26,45.49]])";
const std::string kHole =
    R"([[-93.255,45.495],[-93.25,45.495],[-93.25,45.5],[-93.255,45.5],[-93.255,45.495]])";
const std::string kLine = R"([[-93.2,45.5],[-93.1,45.6]])";
const std::string kGate = "[-93.25,45.5]";
const std::string kKmlSquare = "-93.26,45.49 -93.26,45.51 -93.24,45.51 -93.24,45.49 -93.26,45.49";

std::vector<TReadCase> Cases() {
    const TLoadCause none = LOAD_CAUSE_COUNT;
    const TExchangeFileType json = EXCHANGE_FILE_GEOJSON, kml = EXCHANGE_FILE_KML;
    std::string deep = "<kml>";
    for (int i = 0; i < 10000; ++i) deep += "<Folder>";
    for (int i = 0; i < 10000; ++i) deep += "</Folder>";
    const std::string projected = Collection(Feature("{}", Geometry("Point", "[500000,5040000]")) + "," +
                                             Feature("{}", Geometry("Point", "[-93.2,45.5]")));
    const auto point = [](const std::string& at) { return Geometry("Point", at); };
    const auto polygon = [](const std::string& rings) { return Geometry("Polygon", "[" + rings + "]"); };
    const std::string kmlHole = KmlRing("-93.255,45.495 -93.25,45.495 -93.25,45.5 -93.255,45.495");
    const std::string kmlLine = "<LineString><coordinates>-93.2,45.5 -93.1,45.6</coordinates></LineString>";
    // clang-format off
    return {
        {"polygon_with_hole", json, Collection(Feature(R"({"id":"7"})", polygon(kSquare + "," + kHole))),
         0, "boundary INC 7 5\nboundary EXC 7 5\n", none, 0, ""},
        {"multipolygon_and_multiline", json,
         Collection(Feature("{}", Geometry("MultiPolygon", "[[" + kSquare + "],[" + kHole + "]]")) + "," +
                    Feature("null", Geometry("MultiLineString", "[" + kLine + ",[[-93,45],[-93.1,45.1],[-93.2,45]]]"))),
         0, "boundary INC  5\nboundary INC  5\ngeneric OPEN  2\ngeneric OPEN  3\n", none, 0, ""},
        {"points_with_and_without_names", json,
         Collection(Feature(R"({"name":"Gate"})", point(kGate)) + "," +
                    Feature("{}", Geometry("MultiPoint", "[" + kGate + ",[-93.24,45.4]]"))),
         0, "marker Gate\npoint\npoint\n", none, 0, ""},
        {"feature_id_and_bound", json,
         Collection(R"({"type":"Feature","id":12,"properties":{"bound":"exc"},"geometry":)" + polygon(kSquare) + "}"),
         0, "boundary EXC 12 5\n", none, 0, ""},
        {"single_feature_and_bare_geometry", json, Geometry("LineString", kLine), 0, "generic OPEN  2\n", none, 0, ""},
        {"heights_dropped", json,
         Collection(Feature("{}", Geometry("LineString", "[[-93.2,45.5,300],[-93.1,45.6,310]]"))),
         0, "generic OPEN  2\n", LOAD_HEIGHTS_DROPPED, 1, ""},
        {"no_geometry_and_unknown_type", json,
         Collection(Feature("{}", "null") + "," + Feature("{}", Geometry("Curve", "[]"))),
         0, "", LOAD_FEATURE_NO_GEOMETRY, 1, ""},
        {"bad_positions", json, Collection(Feature("{}", Geometry("LineString", "[[-93.2],[-93.1,45.6]]")) + "," +
                                           Feature("{}", point(R"([-93.1,"45"])"))),
         0, "", LOAD_FEATURE_BAD_GEOMETRY, 2, ""},
        {"out_of_range", json, Collection(Feature("{}", point("[200,45]"))), 0, "", LOAD_ENTITY_OUT_OF_RANGE, 1, ""},
        {"nul_in_name", json, Collection(Feature(R"({"name":"Ga\u0000te"})", point(kGate))),
         0, "marker Ga\n", LOAD_TEXT_CUT_AT_NUL, 1, ""},
        {"syntax_error", json, Collection(Feature("{}", point(kGate)) + ",{\"type\":}"),
         GISFILE_ERR_DATA, "point\n", none, 0, "JSON syntax error at line 1"},
        {"number_out_of_range", json, Collection(Feature("{}", point("[1e999,45.5]"))),
         GISFILE_ERR_DATA, "", none, 0, "number overflow"},
        {"deep_nesting", json, std::string(10000, '[') + std::string(10000, ']'),
         GISFILE_ERR_DATA, "", none, 0, "nests deeper than 64 levels"},
        {"deep_properties", json, Collection(Feature(std::string(5000, '[') + std::string(5000, ']'), "null")),
         GISFILE_ERR_DATA, "", none, 0, "nests deeper than 64 levels"},
        {"json_but_no_geojson", json, R"({"name":"x"})", GISFILE_ERR_OPEN, "", none, 0, "no GeoJSON"},
        {"spray_display_features", json, Collection(Feature(R"({"kind":"spray_swath"})", polygon(kSquare))),
         0, "", LOAD_FEATURE_SPRAY_DISPLAY, 1, ""},
        {"pattern_from_two_features", json,
         Collection(Feature(R"({"id":"3","pattern_kind":"RACETRACK","points":"AB"})", Geometry("LineString", kLine)) +
                    "," +
                    Feature(R"({"id":"3","pattern_kind":"RACETRACK","points":"C"})", point("[-93.15,45.55]"))),
         0, "pattern 3 ABC\n", none, 0, ""},
        // Coordinates that look projected ask the system's question: Yes stops the load, No leaves
        // the feature out.
        {"projected_answered_yes", json, projected, GISFILE_ERR_CANCELLED, "", LOAD_ENTITY_PROJECTED, 0,
         "look projected, and reading was stopped there", "y"},
        {"projected_answered_no", json, projected, 0, "point\n", LOAD_ENTITY_PROJECTED, 1, "", "n"},

        {"kml_placemarks_in_folders", kml,
         Kml("<name>Farm</name><Folder><name>Fields</name><Folder><Placemark><name>North</name><Polygon>"
             "<outerBoundaryIs>" + KmlRing(kKmlSquare) + "</outerBoundaryIs><innerBoundaryIs>" + kmlHole +
             "</innerBoundaryIs></Polygon></Placemark></Folder></Folder>"
             "<Placemark><name>Gate</name><Point><coordinates>-93.25,45.5</coordinates></Point></Placemark>"),
         0, "layer Farm\nboundary INC  5\nboundary EXC  4\nmarker Gate\n", none, 0, ""},
        {"kml_extended_data_both_ways", kml,
         Kml("<Placemark><ExtendedData><Data name=\"id\"><value>4</value></Data></ExtendedData>" + kmlLine +
             "</Placemark><Placemark><ExtendedData><SchemaData schemaUrl=\"#s\"><SimpleData name=\"id\">5</SimpleData>"
             "<SimpleData name=\"bound\">INC</SimpleData></SchemaData></ExtendedData>" + KmlRing(kKmlSquare) +
             "</Placemark>"),
         0, "generic OPEN 4 2\nboundary INC 5 5\n", none, 0, ""},
        {"kml_multigeometry_heights_altitude", kml,
         Kml("<Placemark><MultiGeometry><Point><altitudeMode>absolute</altitudeMode><coordinates>-93.2,45.5,120"
             "</coordinates></Point><LineString><coordinates>-93.2,45.5 -93.1, 45.6</coordinates></LineString>"
             "</MultiGeometry></Placemark>"),
         0, "point\ngeneric OPEN  2\n", LOAD_ALTITUDE_MODE_DROPPED, 1, ""},
        {"kml_tracks_and_overlays", kml,
         Kml("<Placemark><gx:Track><gx:coord>-93 45 0</gx:coord></gx:Track></Placemark>"
             "<GroundOverlay><name>photo</name></GroundOverlay><NetworkLink/>"),
         0, "", LOAD_KML_OVERLAY, 2, ""},
        {"kml_bad_coordinates", kml,
         Kml("<Placemark><LineString><coordinates>-93.2;45.5 -93.1,45.6</coordinates></LineString></Placemark>"),
         0, "", LOAD_FEATURE_BAD_GEOMETRY, 1, ""},
        {"kml_latin1", kml, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><kml><Placemark><name>P\xE9" "age</name>"
                            "<Point><coordinates>-93.2,45.5</coordinates></Point></Placemark></kml>",
         0, "marker P\xC3\xA9" "age\n", none, 0, ""},
        {"kml_syntax_error", kml, Kml("<Placemark><name>x</Placemark>"),
         GISFILE_ERR_DATA, "", none, 0, "XML syntax error at line 1"},
        {"xml_but_no_kml", kml, "<gpx><wpt/></gpx>", GISFILE_ERR_OPEN, "", none, 0, "no KML"},
        {"kml_container_names_layer", kml, Kml("<name>Farm</name><Folder><name>Fields</name></Folder>"),
         0, "layer Farm\n", none, 0, ""},
        {"kml_deep_folders", kml, deep + "</kml>", GISFILE_ERR_DATA, "", none, 0, "nest deeper than 64 levels"},
    };
    // clang-format on
}

TEST(ExchangeReaders, ReadSmallFilesAsTheMapModelHoldsThem) {
    for (const TReadCase& c : Cases()) {
        TMapLayer layer;
        TLoadReport report;
        TScriptedMessages messages(ScriptedAnswers(c.answers));
        const auto start = std::chrono::steady_clock::now();
        const int result = LoadBytes(c.eType, c.strText, layer, report);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << c.pszName;
        EXPECT_EQ(std::count_if(messages.Shown().begin(), messages.Shown().end(),
                                [](const TMessageBoxRequest& r) { return r.IsQuestion(); }),
                  static_cast<long>(std::strlen(c.answers)))
            << c.pszName;
        EXPECT_EQ(result, c.iResult) << c.pszName;
        EXPECT_EQ(Describe(layer), c.strElements) << c.pszName;
        if (c.eCause != LOAD_CAUSE_COUNT) {
            EXPECT_EQ(report.GetCount(c.eCause), c.lCount) << c.pszName;
        }
        EXPECT_EQ(report.HasStopped(), !c.strStop.empty()) << c.pszName;
        if (report.HasStopped()) {
            EXPECT_NE(report.GetStopped().strReason.find(c.strStop), std::string::npos)
                << c.pszName << ": " << report.GetStopped().strReason;
        }
    }
}

// A layer that has a name keeps it.
TEST(ExchangeReaders, NamedLayerKeepsItsName) {
    TMapLayer named;
    named.m_strLLB = "Mine";
    TLoadReport report;
    ASSERT_EQ(LoadBytes(EXCHANGE_FILE_GEOJSON, R"({"type":"FeatureCollection","name":"x","features":[]})",
                        named, report),
              0);
    EXPECT_EQ(named.m_strLLB, "Mine");
}
}  // namespace
