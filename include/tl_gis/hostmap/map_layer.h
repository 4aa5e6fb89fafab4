#pragma once
// Layers hold elements plus the per-polygon records that readers register with them; a map
// is a layer of layers.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>
#include <vector>

#include <tl_gis/hostmap/features.h>
#include <tl_gis/hostmap/map_element.h>

// One registered polygon: its vertices (owned by the line element that was registered with
// it), id, value and area in square metres.
struct TPolygonRecord {
    const tagLOC* pPoints = nullptr;
    int iNumPoints = 0;
    std::string strId;
    double dValue = 0.0;
    double dArea = 0.0;
};

// AddElement modes: the layer owns the element, or only refers to it.
enum : int { ADD_ELEMENT_OWNED = 0, ADD_ELEMENT_BORROWED = 1 };

class TL_GIS_API TMapLayer : public TMapElement {
public:
    TMapLayer();
    ~TMapLayer() override;
    TMapLayer(const TMapLayer&) = delete;
    TMapLayer& operator=(const TMapLayer&) = delete;

    // Appends an element (its extents already calculated) and widens the layer's extents. When
    // memory runs out the layer is left as it was and an element handed over is destroyed.
    void AddElement(TMapElement* element, int mode = ADD_ELEMENT_OWNED);
    // Makes room for one more element with its polygon, centroid and bound type, so that the
    // next AddElement, AddPolygon, AddCentroid and AddBoundType need no memory. May throw
    // std::bad_alloc, leaving the layer as it was.
    void ReserveOneMore();
    // Registers a polygon; the vertices are referred to, not copied.
    void AddPolygon(const tagLOC* points, int count, const std::string& id, double value);
    void AddPolygon(TPolygonRecord&& record) { m_Polygons.push_back(std::move(record)); }
    void AddCentroid(const tagLOC& loc) { m_Centroids.push_back(loc); }
    void AddBoundType(int boundType) { m_BoundTypes.push_back(boundType); }
    // Destroys the owned elements and empties every list.
    void RemoveAllElements();
    int GetElementCount() const { return static_cast<int>(m_Elements.size()); }

    void CalculateGeoExtents() override;
    void Draw(TMapImage& image) const override;
    TMapElement* Clone() const override { return nullptr; }  // layers are not copied

    std::vector<TMapElement*> m_Elements;
    std::vector<TPolygonRecord> m_Polygons;
    std::vector<tagLOC> m_Centroids;
    std::vector<int> m_BoundTypes;
    std::string m_strLLB;
    int m_iShapeType = 0;
    int m_iMarkerCount = 0;

    // Header values of an application-rate map, kept so that it can be written back.
    std::string m_strPmhField1;
    double m_dPmhField2 = 0.0;
    std::string m_strPmhField3;
    double m_dPmhField4 = 0.0;
    std::string m_strPmhField5;
    double m_dPmhLine2 = 0.0;
    double m_dPmhLine3 = 0.0;
    double m_dPmhLine4 = 0.0;
    double m_dPmhLine5 = 0.0;
    int m_iPmhLine6 = 0;
    int m_iPmhLine7 = 0;
    std::string m_strPmhLine10;
    double m_dRateMid = 0.0;
    double m_dRateMin = 0.0;
    double m_dRateMax = 0.0;
    std::string m_strPmhLine30;
    int m_iRateUnits = 0;

private:
    // The elements the layer destroys. Kept apart from m_Elements, which callers may change
    // directly, so that ownership never depends on positions in that list.
    std::vector<TMapElement*> m_Owned;
};

// A map: the layers of a view, or a writer's private collection of layers.
class TL_GIS_API TMap : public TMapLayer {
public:
    TMap() = default;
};
