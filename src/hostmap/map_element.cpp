#include <tl_gis/hostmap/map_element.h>

TMapElement::TMapElement() {
    m_rcExtents.InitExtents();
}

bool TMapElement::IsIn(const tagLOCRECT& rect) const {
    return m_rcExtents.Intersects(rect);
}

bool TMapElement::IsAt(const tagLOC& loc) const {
    return m_rcExtents.Contains(loc);
}

void TMapElement::Draw(TMapImage&) const {}
