// AddImportedLine: the class made for each kind, the copied and closed vertices, the fields
// set on the line, and the four registrations with the layer.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <typeinfo>
#include <vector>

#include "gis/geometry.h"
#include "gis/line_assembly.h"

namespace {

const tagLOC kTriangle[] = {{45.0, 6.0}, {45.01, 6.0}, {45.01, 6.01}};

TFeatureLine* AddPlain(TMapLayer& layer, int kind, int count = 3, const tagLOC* points = kTriangle,
                       bool close = false) {
    return AddImportedLine(&layer, kind, BOUNDARY_INC, count, points, "id", close, COLOR_NONE, false, false,
                           false);
}

TEST(AddImportedLine, ClassForEachKind) {
    struct TCase {
        const char* name;
        int kind;
        const std::type_info& type;
        std::uint32_t storedKind;
    };
    const std::vector<TCase> cases = {
        {"boundary", 0x04101000, typeid(TFeatureLineBoundary), ELEMENT_LINE_BOUNDARY},
        {"area", 0x04102000, typeid(TFeatureLineArea), ELEMENT_LINE_AREA},
        {"road", 0x04103000, typeid(TFeatureLineRoad), ELEMENT_LINE_ROAD},
        {"water", 0x04104000, typeid(TFeatureLineWater), ELEMENT_LINE_WATER},
        {"misc", 0x0410D000, typeid(TFeatureLineMisc), ELEMENT_LINE_MISC},
        {"generic", 0x0410F000, typeid(TFeatureLineGeneric), ELEMENT_LINE_GENERIC},
        {"plain line kind", 0x04100000, typeid(TFeatureLineBoundary), ELEMENT_LINE_BOUNDARY},
        {"pattern kind", 0x10000000, typeid(TFeatureLineBoundary), ELEMENT_LINE_BOUNDARY},
        {"area with low bits", 0x04102010, typeid(TFeatureLineBoundary), ELEMENT_LINE_BOUNDARY},
        {"negative", -1, typeid(TFeatureLineBoundary), ELEMENT_LINE_BOUNDARY},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        TFeatureLine* line = AddPlain(layer, c.kind);
        ASSERT_NE(line, nullptr) << c.name;
        EXPECT_TRUE(typeid(*line) == c.type) << c.name << ": " << typeid(*line).name();
        EXPECT_EQ(line->GetKind(), c.storedKind) << c.name;
    }
}

TEST(AddImportedLine, NothingAddedWithoutALine) {
    TMapLayer layer;
    layer.m_dValue = 1.0;
    for (const int count : {0, 3}) {
        EXPECT_EQ(AddPlain(layer, static_cast<int>(ELEMENT_MARKER), count), nullptr) << count;
        EXPECT_EQ(AddPlain(layer, static_cast<int>(ELEMENT_MARKER), count, kTriangle, true), nullptr)
            << count;
    }
    EXPECT_TRUE(layer.m_Centroids.empty());
    EXPECT_TRUE(layer.m_Polygons.empty());
    EXPECT_TRUE(layer.m_BoundTypes.empty());
    EXPECT_EQ(AddPlain(layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), INT_MAX, kTriangle, true), nullptr)
        << "a count no array can hold";
    EXPECT_EQ(layer.GetElementCount(), 0);
    EXPECT_EQ(AddImportedLine(nullptr, static_cast<int>(ELEMENT_LINE_BOUNDARY), BOUNDARY_INC, 3, kTriangle,
                              "x", false, COLOR_NONE, false, false, false),
              nullptr)
        << "no layer";
}

TEST(AddImportedLine, VertexCountsAndClosing) {
    const tagLOC open[] = {{1, 1}, {2, 2}, {3, 1}};
    struct TCase {
        const char* name;
        int count;
        const tagLOC* points;
        bool close;
        int stored;
        int alloc;
    };
    const std::vector<TCase> cases = {
        {"three, closed", 3, open, true, 4, 5},    {"three, open", 3, open, false, 3, 4},
        {"one, closed", 1, open, true, 2, 3},      {"none", 0, open, true, 0, 0},
        {"negative count", -5, open, false, 0, 0}, {"no points", 3, nullptr, true, 0, 0},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        TFeatureLine* line = AddPlain(layer, static_cast<int>(ELEMENT_LINE_AREA), c.count, c.points, c.close);
        ASSERT_NE(line, nullptr) << c.name;
        EXPECT_EQ(line->m_iNumPoints, c.stored) << c.name;
        EXPECT_EQ(line->m_iPointsAlloc, c.alloc) << c.name;
        EXPECT_EQ(line->m_pPoints == nullptr, c.stored == 0) << c.name;
        for (int i = 0; i < c.stored; ++i) {
            const tagLOC& want = c.points[i < c.count ? i : 0];
            EXPECT_EQ(line->m_pPoints[i].dLat, want.dLat) << c.name << " vertex " << i;
            EXPECT_EQ(line->m_pPoints[i].dLon, want.dLon) << c.name << " vertex " << i;
        }
        // Registered all the same, an empty line with no vertices, area or extents.
        ASSERT_EQ(layer.m_Polygons.size(), 1u) << c.name;
        EXPECT_EQ(layer.m_Polygons[0].pPoints, line->m_pPoints) << c.name;
        EXPECT_EQ(layer.m_Polygons[0].iNumPoints, c.stored) << c.name;
        EXPECT_EQ(layer.m_Centroids.size(), 1u) << c.name;
        EXPECT_EQ(layer.m_BoundTypes.size(), 1u) << c.name;
        if (c.stored == 0) {
            EXPECT_EQ(layer.m_Polygons[0].dArea, 0.0) << c.name;
            EXPECT_TRUE(layer.m_rcExtents.IsEmpty()) << c.name;
        }
    }
}

TEST(AddImportedLine, FieldsOfTheLine) {
    struct TCase {
        const char* name;
        int boundType;
        std::uint32_t color;
        bool rgb1, rgb2, hasColor;
        double layerValue;
    };
    const std::vector<TCase> cases = {
        {"included, no colour", BOUNDARY_INC, COLOR_NONE, false, false, false, 0.0},
        {"excluded, blue", BOUNDARY_EXC, 0x00FF0000, true, false, true, 12.5},
        {"bound type wider than 12 bits", 0x1011, 0x00123456, true, true, false, 7.0},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        layer.m_dValue = c.layerValue;
        TFeatureLine* line = AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_ROAD), c.boundType, 3,
                                             kTriangle, c.name, true, c.color, c.rgb1, c.rgb2, c.hasColor);
        ASSERT_NE(line, nullptr) << c.name;
        EXPECT_EQ(line->m_dwType, ELEMENT_LINE_ROAD | (static_cast<std::uint32_t>(c.boundType) & 0xFFFu))
            << c.name;
        EXPECT_EQ(line->m_iBoundType, c.boundType) << c.name;
        EXPECT_EQ(line->m_strId, c.name);
        EXPECT_EQ(line->m_bHasColor, c.hasColor) << c.name;
        EXPECT_EQ(line->m_bRgbFlag1 + 2 * line->m_bRgbFlag2, c.rgb1 + 2 * c.rgb2) << c.name;
        std::uint32_t color = 0;
        EXPECT_EQ(line->GetColor(color), c.color != COLOR_NONE) << c.name;
        EXPECT_EQ(color, c.color) << c.name;
        EXPECT_EQ(line->m_dValue, c.layerValue) << c.name;
        // Extents of the vertices, also on the layer.
        EXPECT_EQ(line->m_rcExtents.dSouth, 45.0) << c.name;
        EXPECT_EQ(line->m_rcExtents.dNorth, 45.01) << c.name;
        EXPECT_EQ(layer.m_rcExtents.dEast, 6.01) << c.name;
        // The polygon record carries a copy of the line's id and its area.
        ASSERT_EQ(layer.m_Polygons.size(), 1u) << c.name;
        const TPolygonRecord& record = layer.m_Polygons[0];
        EXPECT_EQ(record.strId, c.name);
        EXPECT_EQ(record.dValue, c.layerValue) << c.name;
        EXPECT_EQ(record.dArea, GetFeatureArea(line)) << c.name;
        EXPECT_GT(record.dArea, 0.0) << c.name;
        EXPECT_EQ(layer.m_BoundTypes, std::vector<int>{c.boundType}) << c.name;
    }
}

// Each line's element, centroid, polygon record and bound type sit at the same index, and the
// line keeps its own copy of the caller's vertices.
TEST(AddImportedLine, RegistrationsLineUp) {
    TMapLayer layer;
    std::vector<tagLOC> buffer(kTriangle, kTriangle + 3);
    const int bounds[] = {BOUNDARY_INC, BOUNDARY_EXC, BOUNDARY_OPEN, BOUNDARY_INC};
    std::vector<TFeatureLine*> lines;
    for (int i = 0; i < 4; ++i) {
        layer.m_dValue = i * 10.0;
        for (tagLOC& p : buffer) p.dLat += 1.0;  // the reader reuses its buffer for every line
        lines.push_back(AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), bounds[i], 3,
                                        buffer.data(), ("line " + std::to_string(i)).c_str(), i % 2 == 0,
                                        COLOR_NONE, false, false, false));
        ASSERT_NE(lines.back(), nullptr);
    }
    ASSERT_EQ(layer.m_Centroids.size() + layer.m_Polygons.size() + layer.m_BoundTypes.size(), 12u);
    for (std::size_t i = 0; i < 4; ++i) {
        const TFeatureLine* line = lines[i];
        EXPECT_EQ(layer.m_Elements[i], line) << i;
        EXPECT_EQ(layer.m_Centroids[i].dLat, line->m_locCentroid.dLat) << i;
        EXPECT_EQ(layer.m_Polygons[i].pPoints, line->m_pPoints) << i;
        EXPECT_EQ(layer.m_Polygons[i].strId, "line " + std::to_string(i));
        EXPECT_EQ(layer.m_Polygons[i].dValue, i * 10.0) << i;
        EXPECT_EQ(layer.m_BoundTypes[i], bounds[i]) << i;
        EXPECT_DOUBLE_EQ(line->m_pPoints[0].dLat, kTriangle[0].dLat + static_cast<double>(i) + 1.0) << i;
    }
}

}  // namespace
