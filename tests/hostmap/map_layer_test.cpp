// Layers: which elements they destroy, their extents, and the polygon records readers register.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "hostmap/map_layer.h"

namespace {

// An element that counts how many of its kind are alive.
class TCountedElement : public TMapElement {
public:
    explicit TCountedElement(int* alive) : m_pAlive(alive) { ++*m_pAlive; }
    ~TCountedElement() override { --*m_pAlive; }
    TMapElement* Clone() const override { return new TCountedElement(m_pAlive); }

private:
    int* m_pAlive;
};

TEST(MapLayer, OwnsWhatItIsGivenAndNothingElse) {
    int alive = 0;
    std::vector<std::unique_ptr<TCountedElement>> borrowed;
    borrowed.push_back(std::make_unique<TCountedElement>(&alive));
    borrowed.push_back(std::make_unique<TCountedElement>(&alive));
    {
        TMapLayer layer;
        layer.AddElement(new TCountedElement(&alive), ADD_ELEMENT_OWNED);
        layer.AddElement(borrowed[0].get(), ADD_ELEMENT_BORROWED);
        layer.AddElement(new TCountedElement(&alive));  // owned by default
        layer.AddElement(borrowed[1].get(), ADD_ELEMENT_BORROWED);
        layer.AddElement(nullptr);
        EXPECT_EQ(layer.GetElementCount(), 4);
        EXPECT_EQ(alive, 4);

        layer.RemoveAllElements();
        EXPECT_EQ(layer.GetElementCount(), 0);
        EXPECT_EQ(alive, 2) << "the two owned elements are gone, the borrowed ones stay";

        layer.AddElement(new TCountedElement(&alive));
        layer.AddElement(borrowed[0].get(), ADD_ELEMENT_BORROWED);
        EXPECT_EQ(alive, 3);
    }
    EXPECT_EQ(alive, 2) << "the layer's destructor frees only its own";

    // An element put straight into the public list is not the layer's, and does not shift
    // the ownership of the elements added after it.
    {
        TMapLayer layer;
        layer.m_Elements.push_back(borrowed[1].get());
        layer.AddElement(new TCountedElement(&alive));
        layer.AddElement(borrowed[0].get(), ADD_ELEMENT_BORROWED);
        EXPECT_EQ(alive, 3);
        layer.RemoveAllElements();
        EXPECT_EQ(alive, 2);
    }
}

TEST(MapLayer, ExtentsFollowTheElements) {
    TMapLayer layer;
    auto marker = [](double lat, double lon, bool include) {
        auto* m = new TFeatureMarker;
        m->m_Loc = TLoc(lat, lon);
        m->SetIncludeInExtents(include);
        m->CalculateGeoExtents();
        return m;
    };
    layer.AddElement(marker(45.0, 6.0, true));
    layer.AddElement(marker(46.0, 5.0, true));
    layer.AddElement(marker(80.0, 100.0, false));  // does not move the view
    layer.AddElement(new TFeatureLineBoundary);    // no vertices: empty extents
    EXPECT_EQ(layer.m_rcExtents.dWest, 5.0);
    EXPECT_EQ(layer.m_rcExtents.dEast, 6.0);
    EXPECT_EQ(layer.m_rcExtents.dNorth, 46.0);
    EXPECT_EQ(layer.m_rcExtents.dSouth, 45.0);

    layer.RemoveAllElements();
    EXPECT_TRUE(layer.m_rcExtents.IsEmpty());
}

TEST(MapLayer, PolygonRecords) {
    TMapLayer layer;
    const tagLOC ring[] = {{1, 2}, {3, 4}, {5, 6}};
    layer.AddPolygon(ring, 3, "field A", 16.5);
    layer.AddPolygon(nullptr, -4, "", 0.0);
    layer.AddCentroid({7, 8});
    layer.AddBoundType(BOUNDARY_EXC);
    ASSERT_EQ(layer.m_Polygons.size(), 2u);
    EXPECT_EQ(layer.m_Polygons[0].pPoints, ring) << "the vertices are referred to, not copied";
    EXPECT_EQ(layer.m_Polygons[0].dValue, 16.5);
    EXPECT_EQ(layer.m_Polygons[1].iNumPoints, 0) << "a negative count is none";

    layer.RemoveAllElements();
    EXPECT_TRUE(layer.m_Polygons.empty());
    EXPECT_TRUE(layer.m_Centroids.empty());
    EXPECT_TRUE(layer.m_BoundTypes.empty());
}

// Copies of lines own their own vertices: destroying the original leaves the copy whole.
TEST(FeatureLine, ClonesAndCopiesAreDeep) {
    auto* line = new TFeatureLineWater;
    line->AdoptPoints(new tagLOC[4]{{1, 1}, {1, 2}, {2, 2}, {0, 0}}, 3, 4);
    line->SetColor(0x00112233);
    line->m_iBoundType = BOUNDARY_OPEN;
    line->m_strId = "creek";
    std::unique_ptr<TMapElement> clone(line->Clone());
    TFeatureLineWater assigned;
    assigned = *line;
    delete line;

    for (const auto* copy :
         {static_cast<const TFeatureLine*>(clone.get()), static_cast<const TFeatureLine*>(&assigned)}) {
        EXPECT_EQ(copy->GetKind(), ELEMENT_LINE_WATER);
        ASSERT_EQ(copy->m_iNumPoints, 3);
        EXPECT_EQ(copy->m_pPoints[2].dLat, 2.0);
        EXPECT_EQ(copy->m_strId, "creek");
        std::uint32_t color = 0;
        EXPECT_TRUE(copy->GetColor(color));
        EXPECT_EQ(color, 0x00112233u);
    }

    TFeatureLineWater empty;
    assigned = empty;
    EXPECT_EQ(assigned.m_pPoints, nullptr);
    EXPECT_EQ(assigned.m_iNumPoints, 0);
}

}  // namespace
