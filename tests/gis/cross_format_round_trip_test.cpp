// Every ordered pair (A, B) of the five formats, in the complete profile with the columns ID, VALUE
// and NAME chosen: a layer written as A, read back, written as B and read back gives each element
// both formats hold again, in order, with every property both carry.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/platform/numbers.h>
#include "complete_profile.h"
#include "layer_builders.h"
#include "load_report_check.h"
#include "test_support.h"

using namespace layer_test;

namespace {
// The sorts of element a format may hold.
enum : unsigned { INC_RING = 1, EXC_RING = 2, OPEN_LINE = 4, MARKER = 8, POINT = 16, EVERY_SORT = 31 };
// WORD_NAMES: a name comes back only when it is one word of printable ASCII; a marker named
// otherwise is left out of the layers of such a pair.
enum TNames { NO_NAMES, WORD_NAMES, TEXT_NAMES };

// What a format carries in the complete profile, as the README's "Complete profile" says and
// the files written show; for a pair, what both carry.
struct TFormat {
    const char* name;
    const char* file;  // a shapefile in boundary mode writes f_Spray_Polys, f_Lines and f_Points
    unsigned sorts;
    bool bRoads;   // road, water and misc lines are written (a JOB file has boundaries and polylines)
    bool bKinds;   // lines come back of their kind, not as boundaries
    bool bIds;     // (a hole comes back with its polygon's id and value wherever there is a table)
    bool bValues;  // of lines and points
    TNames names;  // of markers
    bool bSymbols;
    bool bCloses;   // a ring held without its closing vertex comes back closed
    int iDecimals;  // of vertices as written (a shapefile's doubles as held)
};

const TFormat kFormats[] = {
    // No points. Known difference: a marker's name is read as one blank-free token of its record
    // line, bytes above 127 left out, so a name of two words comes back as its first. Ids are
    // record numbers, and ".POL" records are written without their value.
    {"JOB", "12.job", INC_RING | EXC_RING | OPEN_LINE | MARKER, false, false, false, false, WORD_NAMES, true,
     true, 6},
    // Every line is written as an inclusion with its rate; ids are the polygons' positions.
    {"PMH", "rates.pmh", INC_RING, true, false, false, true, NO_NAMES, false, true, 8},
    // Kinds and bound types by layer name; no ids or values (a drawing has no table).
    {"DXF", "f.dxf", EVERY_SORT, true, true, false, false, TEXT_NAMES, true, false, 6},
    {"MIF", "f.mif", EVERY_SORT, true, false, true, true, TEXT_NAMES, false, false, 6},
    {"SHP", "f.shp", EVERY_SORT, true, false, true, true, TEXT_NAMES, false, true, 12},
};

TFormat Both(const TFormat& a, const TFormat& b) {
    return {"",
            "",
            a.sorts & b.sorts,
            a.bRoads && b.bRoads,
            a.bKinds && b.bKinds,
            a.bIds && b.bIds,
            a.bValues && b.bValues,
            std::min(a.names, b.names),
            a.bSymbols && b.bSymbols,
            a.bCloses || b.bCloses,
            std::min(a.iDecimals, b.iDecimals)};
}

unsigned SortOfBound(int bound) {
    return bound == BOUNDARY_OPEN ? OPEN_LINE : bound == BOUNDARY_EXC ? EXC_RING : INC_RING;
}

unsigned SortOf(const TMapElement& e) {
    if (e.GetKind() == ELEMENT_MARKER) return MARKER;
    if (e.GetKind() == ELEMENT_POINT) return POINT;
    return SortOfBound(dynamic_cast<const TFeatureLine&>(e).m_iBoundType);
}

bool Holds(const TFormat& f, std::uint32_t kind, unsigned sort) {
    const bool road = kind == ELEMENT_LINE_ROAD || kind == ELEMENT_LINE_WATER || kind == ELEMENT_LINE_MISC;
    return (f.sorts & sort) != 0 && (f.bRoads || !road);
}

// The properties f carries of an element, in words.
std::string View(const TMapElement& e, const TFormat& f) {
    static const char* const kSorts[] = {"inclusion", "exclusion", "open line", "marker", "point"};
    const unsigned sort = SortOf(e);
    std::string text = kSorts[std::countr_zero(sort)];
    if (f.bKinds && sort <= OPEN_LINE) text += std::string(" ") + GetElementKindName(e.GetKind());
    if (f.bIds && sort != EXC_RING) text += " id=" + e.m_strId;
    if (f.bValues && (sort == INC_RING || sort == OPEN_LINE || sort == POINT))
        text += " value=" + FormatRoundTrip(e.m_dValue);
    if (const auto* marker = dynamic_cast<const TFeatureMarker*>(&e)) {
        if (f.names != NO_NAMES) text += " '" + marker->m_strName + "'";
        if (f.bSymbols) text += " symbol=" + std::to_string(e.GetLowBits());
    }
    return text;
}

// An element's vertices, with the closing vertex added to a ring held without it when asked.
std::vector<tagLOC> Vertices(const TMapElement& e, bool closeRing = false) {
    if (const auto* marker = dynamic_cast<const TFeatureMarker*>(&e)) return {marker->m_Loc};
    if (const auto* point = dynamic_cast<const TFeaturePoint*>(&e)) return {point->m_Loc};
    const auto& line = dynamic_cast<const TFeatureLine&>(e);
    std::vector<tagLOC> points(line.m_pPoints, line.m_pPoints + line.m_iNumPoints);
    const bool open = !points.empty() && (points.front().dLat != points.back().dLat ||
                                          points.front().dLon != points.back().dLon);
    if (closeRing && open && SortOf(e) != OPEN_LINE) points.push_back(points.front());
    return points;
}

std::string Views(const TMapLayer& layer, const TFormat& f) {
    std::string text;
    for (const TMapElement* e : layer.m_Elements) text += "\n  " + View(*e, f);
    return text;
}

// The elements f holds, of rings, lines, markers and a point: in the order of a shapefile's three
// files. Inclusion rings turn clockwise and holes counter-clockwise, as JOB and shapefile writers
// turn them; the rate polygon is held without its closing vertex. Vertices have up to nine
// decimals, which formats of six and eight round.
void FillLayer(TMapLayer& layer, const TFormat& f) {
    const auto line = [&](std::uint32_t kind, int bound, const std::vector<tagLOC>& points, const char* id,
                          double value) {
        if (Holds(f, kind, SortOfBound(bound))) AddLine(layer, kind, bound, points, id, value);
    };
    line(ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, Square(45.5, -93.25, 0.01), "Field 12", 0.0);
    line(ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, Square(45.5, -93.25, 0.002, false), "hole", 0.0);
    line(ELEMENT_LINE_AREA, BOUNDARY_INC,
         {{45.52, -93.21}, {45.5231234, -93.2087654}, {45.5225, -93.2}, {45.5170001, -93.2012345}}, "rate 7",
         37.5);
    line(ELEMENT_LINE_ROAD, BOUNDARY_OPEN, {{45.4912345, -93.26}, {45.5, -93.2587654}, {45.51, -93.26}}, "R1",
         2.25);
    line(ELEMENT_LINE_GENERIC, BOUNDARY_OPEN, {{45.4975, -93.2542}, {45.5035, -93.2542}}, "track", 0.0);
    if ((f.sorts & MARKER) != 0) {
        AddMarker(layer, "M1", "Gate", 5, {45.5012, -93.2524});
        if (f.names == TEXT_NAMES)
            AddMarker(layer, "M2",
                      "Pumpe S\xC3\xBC"
                      "d",
                      33, {45.498812345, -93.247123456});
    }
    if ((f.sorts & POINT) != 0) AddPoint(layer, "P1", {45.4991, -93.2481}, 1.5);
}

// Writes the layer as the format into the folder and reads back every file written.
void WriteAndRead(const TFormat& format, const TTempDir& dir, TMapLayer& layer, TMapLayer& back) {
    TGisMap writer;
    writer.m_bWriteBoundaries = true;
    const std::string path = dir.File(format.file);
    ASSERT_EQ(writer.WriteFile(path.c_str(), &layer), GISFILE_OK) << path;
    std::vector<std::string> files = {path};
    if (std::string(format.name) == "SHP")
        files = {dir.File("f_Spray_Polys.shp"), dir.File("f_Lines.shp"), dir.File("f_Points.shp")};
    for (const std::string& file : files) {
        if (!std::filesystem::exists(file)) continue;
        TLoadReport report;
        EXPECT_EQ(TGisMap().LoadFile(file.c_str(), &back, nullptr, report), GISFILE_OK) << file;
        EXPECT_EQ(DescribeReport(report), "") << file;
    }
}

struct TPair {
    int a, b;
};

class CrossFormatRoundTrip : public ::testing::TestWithParam<TPair> {};

TEST_P(CrossFormatRoundTrip, GivesBackWhatBothFormatsHold) {
    const TFormat& a = kFormats[GetParam().a];
    const TFormat& b = kFormats[GetParam().b];
    const TFormat both = Both(a, b);
    // The layer holds only what both formats hold: what one of them leaves out or turns into
    // something else (an open line into a rate polygon) is not the pair's to keep.
    TMapLayer source, throughA, throughB;
    FillLayer(source, both);

    EnsureLibraryStarted();
    const TCompleteProfile complete;
    TScriptedMessages messages;
    TTempDir dirA, dirB;
    WriteAndRead(a, dirA, source, throughA);
    WriteAndRead(b, dirB, throughA, throughB);
    EXPECT_TRUE(messages.Shown().empty());

    ASSERT_EQ(throughB.m_Elements.size(), source.m_Elements.size())
        << "written:" << Views(source, both) << "\nread:" << Views(throughB, both);
    const double tolerance = std::pow(10.0, -both.iDecimals);
    for (std::size_t i = 0; i < source.m_Elements.size(); ++i) {
        const TMapElement& want = *source.m_Elements[i];
        const TMapElement& got = *throughB.m_Elements[i];
        SCOPED_TRACE("element " + std::to_string(i) + ": " + View(want, both));
        EXPECT_EQ(View(got, both), View(want, both));
        const std::vector<tagLOC> wantPoints = Vertices(want, both.bCloses), gotPoints = Vertices(got);
        ASSERT_EQ(gotPoints.size(), wantPoints.size());
        for (std::size_t k = 0; k < wantPoints.size(); ++k)
            EXPECT_TRUE(std::fabs(gotPoints[k].dLat - wantPoints[k].dLat) <= tolerance &&
                        std::fabs(gotPoints[k].dLon - wantPoints[k].dLon) <= tolerance)
                << "vertex " << k << ": " << FormatRoundTrip(gotPoints[k].dLat) << ", "
                << FormatRoundTrip(gotPoints[k].dLon);
    }
}

std::vector<TPair> EveryPair() {
    std::vector<TPair> pairs;
    for (int a = 0; a < 5; ++a)
        for (int b = 0; b < 5; ++b) pairs.push_back({a, b});
    return pairs;
}

INSTANTIATE_TEST_SUITE_P(Formats, CrossFormatRoundTrip, ::testing::ValuesIn(EveryPair()),
                         [](const ::testing::TestParamInfo<TPair>& info) {
                             return std::string(kFormats[info.param.a].name) + "_then_" +
                                    kFormats[info.param.b].name;
                         });
}  // namespace
