#pragma once
// The host's vector features: lines of six classes, markers and points.

#include <tl_gis/export.h>
#include <cstdint>
#include <memory>
#include <string>

#include <tl_gis/hostmap/map_element.h>

class TL_GIS_API TFeatureVector : public TMapElement {};

class TL_GIS_API TFeatureLine : public TFeatureVector {
public:
    TFeatureLine() = default;
    ~TFeatureLine() override;
    TFeatureLine(const TFeatureLine& other);
    TFeatureLine& operator=(const TFeatureLine& other);

    void CalculateGeoExtents() override;
    void Draw(TMapImage& image) const override;

    // Takes over an array of alloc vertices, count of them in use; releases the old one.
    void AdoptPoints(tagLOC* points, int count, int alloc);
    // Sets the colour (0x00BBGGRR; COLOR_NONE clears it).
    void SetColor(std::uint32_t color) { m_dwColor = color; }
    // True and the colour when one is set.
    bool GetColor(std::uint32_t& color) const {
        color = m_dwColor;
        return m_dwColor != COLOR_NONE;
    }

    int m_iNumPoints = 0;
    tagLOC* m_pPoints = nullptr;  // owned
    int m_iPointsAlloc = 0;
    tagLOC m_locCentroid;
    int m_iBoundType = 0;
    bool m_bHasColor = false;
    bool m_bRgbFlag1 = false;
    bool m_bRgbFlag2 = false;

private:
    std::uint32_t m_dwColor = COLOR_NONE;
};

// A line class sets its kind code; everything else is shared.
template <std::uint32_t Kind>
class TL_GIS_API TFeatureLineOf : public TFeatureLine {
public:
    TFeatureLineOf() { m_dwType = Kind; }
    TMapElement* Clone() const override { return new TFeatureLineOf(*this); }
};

using TFeatureLineBoundary = TFeatureLineOf<ELEMENT_LINE_BOUNDARY>;
using TFeatureLineArea = TFeatureLineOf<ELEMENT_LINE_AREA>;
using TFeatureLineRoad = TFeatureLineOf<ELEMENT_LINE_ROAD>;
using TFeatureLineWater = TFeatureLineOf<ELEMENT_LINE_WATER>;
using TFeatureLineMisc = TFeatureLineOf<ELEMENT_LINE_MISC>;
using TFeatureLineGeneric = TFeatureLineOf<ELEMENT_LINE_GENERIC>;

// A named symbol at one location; the symbol type is in the low 12 bits of m_dwType.
class TL_GIS_API TFeatureMarker : public TFeatureVector {
public:
    TFeatureMarker() { m_dwType = ELEMENT_MARKER; }
    void CalculateGeoExtents() override;
    void Draw(TMapImage& image) const override;
    TMapElement* Clone() const override { return new TFeatureMarker(*this); }

    std::string m_strName;
    TLoc m_Loc;
};

// A bare location, as a shapefile point record gives it.
class TL_GIS_API TFeaturePoint : public TFeatureVector {
public:
    TFeaturePoint() { m_dwType = ELEMENT_POINT; }
    void CalculateGeoExtents() override;
    void Draw(TMapImage& image) const override;
    TMapElement* Clone() const override { return new TFeaturePoint(*this); }

    TLoc m_Loc;
};
