#include "gis/point_assembly.h"

#include <memory>
#include <new>

namespace {
template <class TElement>
TMapElement* AddLocated(TMapLayer* layer, std::unique_ptr<TElement> element, const tagLOC& loc,
                        std::string_view id, double value) {
    if (!element) return nullptr;
    element->m_Loc = loc;
    element->m_strId = id;
    element->m_dValue = value;
    element->CalculateGeoExtents();
    // AddElement destroys the element itself when the layer cannot take it.
    TElement* added = element.release();
    layer->AddElement(added, ADD_ELEMENT_OWNED);
    return added;
}
}  // namespace

TMapElement* AddImportedPoint(TMapLayer* layer, const tagLOC& loc, std::string_view id, std::string_view name,
                              double value) {
    if (layer == nullptr) return nullptr;
    if (name.empty())
        return AddLocated(layer, std::unique_ptr<TFeaturePoint>(new (std::nothrow) TFeaturePoint), loc, id,
                          value);
    std::unique_ptr<TFeatureMarker> marker(new (std::nothrow) TFeatureMarker);
    if (marker) marker->m_strName = name;
    TMapElement* added = AddLocated(layer, std::move(marker), loc, id, value);
    if (added != nullptr) ++layer->m_iMarkerCount;
    return added;
}
