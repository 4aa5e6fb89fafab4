// Locations, extents, and layers: which elements they destroy, their extents and polygon records.

#include <gtest/gtest.h>

#include <tl_gis/hostmap/geodesy.h>
#include <tl_gis/hostmap/map_layer.h>

namespace {

// Moving d metres and measuring back gives d, for latitudes of both hemispheres up to 70
// degrees, all bearings and field-sized distances.
TEST(LocOffset, DistanceBackWithinAMillimetre) {
    for (const double lat : {-70.0, -10.0, 0.0, 23.4, 70.0})
        for (const double bearing : {0.0, 45.0, 90.0, 212.5, 359.9})
            for (const double d : {0.001, 12.0, 1000.0, 5000.0}) {
                const TLoc from(lat, lat * 2.0 - 20.0), to = from.Offset(bearing, d);
                EXPECT_NEAR(GeoDistance(from.dLat, from.dLon, to.dLat, to.dLon), d, 0.001)
                    << "lat " << lat << " bearing " << bearing << " d " << d;
            }
}

// An element that counts how many of its kind are alive.
struct TCountedElement : TMapElement {
    explicit TCountedElement(int* alive) : m_pAlive(alive) { ++*m_pAlive; }
    ~TCountedElement() override { --*m_pAlive; }
    TMapElement* Clone() const override { return new TCountedElement(m_pAlive); }
    int* m_pAlive;
};

TEST(MapLayer, FreesOnlyWhatItOwns) {
    int alive = 0;
    TCountedElement borrowed(&alive), pushed(&alive);
    {
        TMapLayer layer;
        layer.m_Elements.push_back(&pushed);  // put straight into the list: not the layer's
        layer.AddElement(new TCountedElement(&alive));
        layer.AddElement(&borrowed, ADD_ELEMENT_BORROWED);
        layer.AddElement(nullptr);
        layer.AddElement(new TCountedElement(&alive), ADD_ELEMENT_OWNED);
        layer.RemoveAllElements();
        EXPECT_EQ(alive, 2) << "the owned elements are gone, the others stay";
        layer.AddElement(new TCountedElement(&alive));
        layer.AddElement(&borrowed, ADD_ELEMENT_BORROWED);
    }
    EXPECT_EQ(alive, 2) << "the destructor frees only the layer's own";
}

TEST(MapLayer, ExtentsAndPolygonRecords) {
    TMapLayer layer;
    for (const auto& [lat, include] : {std::pair{45.0, true}, {46.0, true}, {80.0, false}}) {
        auto* m = new TFeatureMarker;
        m->m_Loc = TLoc(lat, 51.0 - lat);
        m->SetIncludeInExtents(include);
        m->CalculateGeoExtents();
        layer.AddElement(m);
    }
    layer.AddElement(new TFeatureLineBoundary);  // no vertices
    const TLocRect& r = layer.m_rcExtents;
    EXPECT_TRUE(r.dWest == 5.0 && r.dEast == 6.0 && r.dNorth == 46.0 && r.dSouth == 45.0);

    layer.AddPolygon(nullptr, -4, "", 0.0);
    layer.AddCentroid({7, 8});
    layer.AddBoundType(BOUNDARY_EXC);
    EXPECT_TRUE(layer.m_Polygons.size() == 1 && layer.m_Polygons[0].iNumPoints == 0)
        << "a negative count is none";
    layer.RemoveAllElements();
    EXPECT_TRUE(layer.m_rcExtents.IsEmpty());
    EXPECT_TRUE(layer.m_Polygons.empty() && layer.m_Centroids.empty() && layer.m_BoundTypes.empty());
}

}  // namespace
