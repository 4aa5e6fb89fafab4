// AddImportedLine: the class made for each kind, the copied and closed vertices, the fields
// set on the line, and the four registrations with the layer.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "gis/geometry.h"
#include "gis/line_assembly.h"

namespace {

const tagLOC kTriangle[] = {{45.0, 6.0}, {45.01, 6.0}, {45.01, 6.01}};

TFeatureLine* AddPlain(TMapLayer* layer, int kind, int count = 3, const tagLOC* points = kTriangle,
                       bool close = true) {
    return AddImportedLine(layer, kind, BOUNDARY_INC, count, points, "id", close, COLOR_NONE, false, false,
                           false);
}

// Kinds outside the table, the pattern's and one with low bits set among them, make boundaries;
// the marker's makes nothing, as do a count no array holds and a missing layer.
TEST(AddImportedLine, ClassForEachKind) {
    const std::pair<int, const std::type_info&> cases[] = {{0x04102000, typeid(TFeatureLineArea)},
                                                           {0x0410F000, typeid(TFeatureLineGeneric)},
                                                           {0x10000000, typeid(TFeatureLineBoundary)},
                                                           {0x04102010, typeid(TFeatureLineBoundary)}};
    for (const auto& [kind, type] : cases) {
        TMapLayer layer;
        TFeatureLine* line = AddPlain(&layer, kind);
        ASSERT_NE(line, nullptr) << std::hex << kind;
        EXPECT_TRUE(typeid(*line) == type) << std::hex << kind << ": " << typeid(*line).name();
    }
    TMapLayer layer;
    EXPECT_EQ(AddPlain(&layer, static_cast<int>(ELEMENT_MARKER)), nullptr);
    EXPECT_EQ(AddPlain(&layer, static_cast<int>(ELEMENT_LINE_AREA), INT_MAX), nullptr);
    EXPECT_EQ(AddPlain(nullptr, static_cast<int>(ELEMENT_LINE_AREA)), nullptr);
    EXPECT_TRUE(layer.m_Elements.empty() && layer.m_Centroids.empty() && layer.m_Polygons.empty() &&
                layer.m_BoundTypes.empty());
}

TEST(AddImportedLine, VertexCountsAndClosing) {
    const struct {
        const char* name;
        int count;
        const tagLOC* points;
        bool close;
        int stored, alloc;
    } cases[] = {{"three, closed", 3, kTriangle, true, 4, 5},
                 {"three, open", 3, kTriangle, false, 3, 4},
                 {"none", 0, kTriangle, true, 0, 0},
                 {"no points", 3, nullptr, true, 0, 0}};
    for (const auto& c : cases) {
        TMapLayer layer;
        TFeatureLine* line =
            AddPlain(&layer, static_cast<int>(ELEMENT_LINE_AREA), c.count, c.points, c.close);
        ASSERT_NE(line, nullptr) << c.name;
        EXPECT_EQ(line->m_iNumPoints, c.stored) << c.name;
        EXPECT_EQ(line->m_iPointsAlloc, c.alloc) << c.name;
        for (int i = 0; i < c.stored; ++i)
            EXPECT_EQ(line->m_pPoints[i].dLat, kTriangle[i % 3].dLat) << c.name << " vertex " << i;
        // An empty line is registered all the same, without area or extents.
        ASSERT_EQ(layer.m_Polygons.size(), 1u) << c.name;
        EXPECT_EQ(layer.m_Centroids.size() + layer.m_BoundTypes.size(), 2u) << c.name;
        EXPECT_EQ(layer.m_Polygons[0].dArea == 0.0, c.stored == 0) << c.name;
        EXPECT_EQ(layer.m_rcExtents.IsEmpty(), c.stored == 0) << c.name;
    }
}

// Two lines from a buffer the reader reuses: each keeps its own vertices, its bound type in the
// low 12 bits of its type and its colour, and its element, centroid, polygon record and bound
// type share one index.
TEST(AddImportedLine, FieldsAndRegistrations) {
    const int bounds[] = {BOUNDARY_EXC, 0x1011};
    const std::uint32_t colors[] = {COLOR_NONE, 0x00123456};
    TMapLayer layer;
    std::vector<tagLOC> buffer(kTriangle, kTriangle + 3);
    for (int i = 0; i < 2; ++i) {
        layer.m_dValue = 7.0 * i;
        AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_ROAD), bounds[i], 3, buffer.data(),
                        std::to_string(i).c_str(), true, colors[i], true, false, true);
        for (tagLOC& p : buffer) p.dLat += 1.0;
    }
    ASSERT_EQ(layer.m_Centroids.size() + layer.m_Polygons.size() + layer.m_BoundTypes.size(), 6u);
    for (std::size_t i = 0; i < 2; ++i) {
        const auto* line = static_cast<const TFeatureLine*>(layer.m_Elements[i]);
        const TPolygonRecord& record = layer.m_Polygons[i];
        EXPECT_EQ(line->m_dwType, ELEMENT_LINE_ROAD | (static_cast<std::uint32_t>(bounds[i]) & 0xFFFu)) << i;
        std::uint32_t color = 0;
        EXPECT_EQ(line->GetColor(color), colors[i] != COLOR_NONE) << i;
        EXPECT_EQ(color, colors[i]) << i;
        EXPECT_TRUE(line->m_bRgbFlag1 && !line->m_bRgbFlag2 && line->m_bHasColor) << i;
        EXPECT_EQ(line->m_pPoints[0].dLat, 45.0 + static_cast<double>(i)) << i;
        EXPECT_EQ(record.pPoints, line->m_pPoints) << i;
        EXPECT_EQ(record.strId, std::to_string(i));
        EXPECT_EQ(record.dValue, 7.0 * static_cast<double>(i)) << i;
        EXPECT_EQ(record.dArea, GetFeatureArea(line)) << i;
        EXPECT_EQ(layer.m_Centroids[i].dLat, line->m_locCentroid.dLat) << i;
        EXPECT_EQ(layer.m_BoundTypes[i], bounds[i]) << i;
    }
    EXPECT_EQ(layer.m_rcExtents.dNorth, 46.01);
}

}  // namespace
