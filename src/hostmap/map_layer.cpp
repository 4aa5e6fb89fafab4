#include <tl_gis/hostmap/map_layer.h>

#include <tl_gis/hostmap/map_image.h>

TMapLayer::TMapLayer() {
    m_rcExtents.InitExtents();
}

TMapLayer::~TMapLayer() {
    RemoveAllElements();
}

namespace {
// Doubles a full list's room ahead of a push_back, so that the push_back itself cannot fail.
template <class T>
void GrowForOneMore(std::vector<T>& list) {
    if (list.size() == list.capacity()) list.reserve(list.empty() ? 8 : 2 * list.size());
}
}  // namespace

void TMapLayer::AddElement(TMapElement* element, int mode) {
    if (element == nullptr) return;
    const bool owned = mode != ADD_ELEMENT_BORROWED;
    try {
        GrowForOneMore(m_Elements);
        if (owned) GrowForOneMore(m_Owned);
    } catch (...) {
        if (owned) delete element;
        throw;
    }
    m_Elements.push_back(element);
    if (owned) m_Owned.push_back(element);
    if (element->IncludeInExtents()) m_rcExtents.ExpandExtents(element->m_rcExtents);
}

void TMapLayer::ReserveOneMore() {
    GrowForOneMore(m_Elements);
    GrowForOneMore(m_Owned);
    GrowForOneMore(m_Polygons);
    GrowForOneMore(m_Centroids);
    GrowForOneMore(m_BoundTypes);
}

void TMapLayer::AddPolygon(const tagLOC* points, int count, const std::string& id, double value) {
    m_Polygons.push_back({points, count < 0 ? 0 : count, id, value, 0.0});
}

void TMapLayer::RemoveAllElements() {
    for (TMapElement* element : m_Owned) delete element;
    m_Elements.clear();
    m_Owned.clear();
    m_Polygons.clear();
    m_Centroids.clear();
    m_BoundTypes.clear();
    m_rcExtents.InitExtents();
}

void TMapLayer::CalculateGeoExtents() {
    m_rcExtents.InitExtents();
    for (TMapElement* e : m_Elements)
        if (e->IncludeInExtents()) m_rcExtents.ExpandExtents(e->m_rcExtents);
}

void TMapLayer::Draw(TMapImage& image) const {
    for (const TMapElement* e : m_Elements) e->Draw(image);
}
