#pragma once
// What the readers share to fill a load report.

#include <cstddef>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/map_layer.h>

// The cause of a coordinate pair a reader refused: one within the degree range was refused
// for lying within one degree of 0,0. wholeEntity tells whether the entity went with it.
inline TLoadCause RefusedCoordinateCause(double lat, double lon, bool wholeEntity) {
    switch (ClassifyCoordinate(lat, lon)) {
        case COORD_GEOGRAPHIC:
            return wholeEntity ? LOAD_ENTITY_NEAR_ORIGIN : LOAD_VERTEX_NEAR_ORIGIN;
        case COORD_PROJECTED:
            return wholeEntity ? LOAD_ENTITY_PROJECTED : LOAD_VERTEX_PROJECTED;
        default:
            return wholeEntity ? LOAD_ENTITY_OUT_OF_RANGE : LOAD_VERTEX_OUT_OF_RANGE;
    }
}

// Clears a report and sets what its places count on entry to a reader's LoadFile, and on every
// way out tallies the elements the load added to the layer.
class TLoadReportScope {
public:
    TLoadReportScope(TLoadReport* report, const TMapLayer* layer, TLoadPlaceUnit unit)
        : m_pReport(report), m_pLayer(layer), m_nFirst(layer != nullptr ? layer->m_Elements.size() : 0) {
        if (m_pReport == nullptr) return;
        m_pReport->Clear();
        m_pReport->SetPlaceUnit(unit);
    }
    ~TLoadReportScope() {
        if (m_pReport != nullptr && m_pLayer != nullptr) m_pReport->CountAdded(*m_pLayer, m_nFirst);
    }
    TLoadReportScope(const TLoadReportScope&) = delete;
    TLoadReportScope& operator=(const TLoadReportScope&) = delete;

private:
    TLoadReport* m_pReport;
    const TMapLayer* m_pLayer;
    std::size_t m_nFirst;
};
