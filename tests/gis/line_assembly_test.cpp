// AddImportedLine: the class made for each kind, the copied and closed vertices, the fields
// set on the line, and the four registrations with the layer.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <typeinfo>
#include <vector>

#include <tl_gis/gis/line_assembly.h>

namespace {

const tagLOC kTriangle[] = {{45.0, 6.0}, {45.01, 6.0}, {45.01, 6.01}};

TFeatureLine* AddPlain(TMapLayer* layer, int kind, int count = 3, const tagLOC* points = kTriangle,
                       bool close = true) {
    return AddImportedLine(layer, kind, BOUNDARY_INC, count, points, "id", close, COLOR_NONE, false, false,
                           false);
}

// Kinds outside the table, the pattern's and one with low bits set among them, make boundaries.
// A line without vertices is registered all the same, without area or extents.
TEST(AddImportedLine, ClassVerticesAndClosing) {
    const struct {
        int kind, count;
        const tagLOC* points;
        bool close;
        const std::type_info& type;
        int stored, alloc;
    } cases[] = {{0x04102000, 3, kTriangle, true, typeid(TFeatureLineArea), 4, 5},
                 {0x0410F000, 3, kTriangle, false, typeid(TFeatureLineGeneric), 3, 4},
                 {0x10000000, 0, kTriangle, true, typeid(TFeatureLineBoundary), 0, 0},
                 {0x04102010, 3, nullptr, true, typeid(TFeatureLineBoundary), 0, 0}};
    for (const auto& c : cases) {
        TMapLayer layer;
        TFeatureLine* line = AddPlain(&layer, c.kind, c.count, c.points, c.close);
        ASSERT_NE(line, nullptr) << std::hex << c.kind;
        EXPECT_TRUE(typeid(*line) == c.type) << std::hex << c.kind << ": " << typeid(*line).name();
        EXPECT_EQ(line->m_iNumPoints, c.stored) << std::hex << c.kind;
        EXPECT_EQ(line->m_iPointsAlloc, c.alloc) << std::hex << c.kind;
        for (int i = 0; i < c.stored; ++i)
            EXPECT_EQ(line->m_pPoints[i].dLat, kTriangle[i % 3].dLat)
                << std::hex << c.kind << " vertex " << i;
        ASSERT_EQ(layer.m_Polygons.size(), 1u) << std::hex << c.kind;
        EXPECT_EQ(layer.m_Centroids.size() + layer.m_BoundTypes.size(), 2u) << std::hex << c.kind;
        EXPECT_EQ(layer.m_Polygons[0].dArea == 0.0, c.stored == 0) << std::hex << c.kind;
        EXPECT_EQ(layer.m_rcExtents.IsEmpty(), c.stored == 0) << std::hex << c.kind;
    }
    // The marker's kind makes nothing, as do a count no array holds and a missing layer.
    TMapLayer layer;
    EXPECT_EQ(AddPlain(&layer, static_cast<int>(ELEMENT_MARKER)), nullptr);
    EXPECT_EQ(AddPlain(&layer, static_cast<int>(ELEMENT_LINE_AREA), INT_MAX), nullptr);
    EXPECT_EQ(AddPlain(nullptr, static_cast<int>(ELEMENT_LINE_AREA)), nullptr);
    EXPECT_TRUE(layer.m_Elements.empty() && layer.m_Centroids.empty() && layer.m_Polygons.empty() &&
                layer.m_BoundTypes.empty());
}

// Two lines from a buffer the reader reuses: each keeps its own vertices, its bound type in the
// low 12 bits of its type and its colour, and its records share its index.
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
        EXPECT_EQ(line->m_dwType, ELEMENT_LINE_ROAD | (static_cast<std::uint32_t>(bounds[i]) & 0xFFFu)) << i;
        std::uint32_t color = 0;
        EXPECT_EQ(line->GetColor(color), colors[i] != COLOR_NONE) << i;
        EXPECT_EQ(color, colors[i]) << i;
        EXPECT_EQ(line->m_pPoints[0].dLat, 45.0 + static_cast<double>(i)) << i;
        EXPECT_EQ(layer.m_Polygons[i].pPoints, line->m_pPoints) << i;
        EXPECT_EQ(layer.m_Polygons[i].strId, std::to_string(i));
        EXPECT_EQ(layer.m_Polygons[i].dValue, 7.0 * static_cast<double>(i)) << i;
        EXPECT_EQ(layer.m_BoundTypes[i], bounds[i]) << i;
    }
}

}  // namespace
