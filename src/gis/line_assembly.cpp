#include <tl_gis/gis/line_assembly.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <new>

#include <tl_gis/gis/geometry.h>

TFeatureLine* CreateLineForKind(int kind) {
    switch (static_cast<std::uint32_t>(kind)) {
        case ELEMENT_MARKER:
            return nullptr;
        case ELEMENT_LINE_AREA:
            return new (std::nothrow) TFeatureLineArea;
        case ELEMENT_LINE_ROAD:
            return new (std::nothrow) TFeatureLineRoad;
        case ELEMENT_LINE_WATER:
            return new (std::nothrow) TFeatureLineWater;
        case ELEMENT_LINE_MISC:
            return new (std::nothrow) TFeatureLineMisc;
        case ELEMENT_LINE_GENERIC:
            return new (std::nothrow) TFeatureLineGeneric;
        default:
            return new (std::nothrow) TFeatureLineBoundary;
    }
}

TFeatureLine* AddImportedLine(TMapLayer* layer, int kind, int boundType, int count, const tagLOC* points,
                              const char* id, bool close, std::uint32_t color, bool rgbFlag1, bool rgbFlag2,
                              bool hasColor) {
    if (layer == nullptr) return nullptr;
    std::unique_ptr<TFeatureLine> line(CreateLineForKind(kind));
    if (!line) return nullptr;
    if (count < 1 || points == nullptr) count = 0;
    // No vertex array of that size can be had (and its size would not fit an int).
    if (count > INT_MAX - 2) return nullptr;
    if (count > 0) {
        const int alloc = count + 1 + (close ? 1 : 0);
        tagLOC* copy = new (std::nothrow) tagLOC[static_cast<std::size_t>(alloc)];
        if (copy == nullptr) return nullptr;
        std::copy(points, points + count, copy);
        int stored = count;
        if (close) copy[stored++] = points[0];
        line->AdoptPoints(copy, stored, alloc);
    }
    line->SetLowBits(boundType);
    line->m_strId = id != nullptr ? id : "";
    line->m_locCentroid = ComputeCentroid(line->m_pPoints, line->m_iNumPoints);
    line->m_bHasColor = hasColor;
    line->m_bRgbFlag1 = rgbFlag1;
    line->m_bRgbFlag2 = rgbFlag2;
    line->m_iBoundType = boundType;
    line->SetColor(color);
    line->m_dValue = layer->m_dValue;
    line->CalculateGeoExtents();

    // Everything that needs memory comes first, so that running out leaves the layer as it was
    // (the line is then destroyed with its owner).
    TPolygonRecord polygon{line->m_pPoints, line->m_iNumPoints, line->m_strId, layer->m_dValue,
                           GetFeatureArea(line.get())};
    layer->ReserveOneMore();
    TFeatureLine* added = line.release();
    layer->AddElement(added, ADD_ELEMENT_OWNED);
    layer->AddCentroid(added->m_locCentroid);
    layer->AddPolygon(std::move(polygon));
    layer->AddBoundType(boundType);
    return added;
}
