#pragma once
// Base of everything a map layer holds.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>

#include <tl_gis/hostmap/element_kinds.h>
#include <tl_gis/hostmap/loc.h>

class TMapImage;

class TL_GIS_API TMapElement {
public:
    TMapElement();
    virtual ~TMapElement() = default;
    TMapElement(const TMapElement&) = default;
    TMapElement& operator=(const TMapElement&) = default;

    // Whether the element lies in (or crosses) the rectangle.
    virtual bool IsIn(const tagLOCRECT& rect) const;
    // Whether the element is at the location (inside its extents).
    virtual bool IsAt(const tagLOC& loc) const;
    // Recomputes m_rcExtents from the element's geometry.
    virtual void CalculateGeoExtents() {}
    virtual void Draw(TMapImage& image) const;
    // A copy of the element; the caller owns it.
    virtual TMapElement* Clone() const = 0;

    // Whether the element counts toward extents; elements that should not move the view say no.
    bool IncludeInExtents() const { return m_bIncludeInExtents; }
    void SetIncludeInExtents(bool include) { m_bIncludeInExtents = include; }
    std::uint32_t GetKind() const { return m_dwType & ELEMENT_KIND_MASK; }
    int GetLowBits() const { return static_cast<int>(m_dwType & ELEMENT_LOW_MASK); }
    void SetLowBits(int bits) {
        m_dwType = (m_dwType & ELEMENT_KIND_MASK) | (static_cast<std::uint32_t>(bits) & ELEMENT_LOW_MASK);
    }

    std::string m_strId;
    double m_dValue = 0.0;       // INC/EXC value; application rate of a rate polygon
    std::uint32_t m_dwType = 0;  // kind code in the high 20 bits, bound type or symbol in the low 12
    std::uint32_t m_dwFlags = 0;
    std::uint32_t m_dwState = 0;
    bool m_bModified = false;  // changed since it was read; readers leave it clear
    TLocRect m_rcExtents;

private:
    bool m_bIncludeInExtents = true;
};
