#pragma once
// What the readers share to fill a load report.

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/map_layer.h>
#include "gis/coordinate_transform.h"

// A kind of thing a file names (a DXF entity type, a MIF object keyword) and the cause a reader
// counts it under.
struct TNamedCause {
    const char* pszName;
    TLoadCause eCause;
};

// The cause of a coordinate pair a reader refused: one within the degree range was refused
// for lying within one degree of 0,0; one the host's transform could not map has its own.
// wholeEntity tells whether the entity went with it.
inline TLoadCause RefusedCoordinateCause(double lat, double lon, bool wholeEntity) {
    if (IsUnmappedPair(lat, lon)) return LOAD_COORD_UNMAPPED;
    switch (ClassifyCoordinate(lat, lon)) {
        case COORD_GEOGRAPHIC:
            return wholeEntity ? LOAD_ENTITY_NEAR_ORIGIN : LOAD_VERTEX_NEAR_ORIGIN;
        case COORD_PROJECTED:
            return wholeEntity ? LOAD_ENTITY_PROJECTED : LOAD_VERTEX_PROJECTED;
        default:
            return wholeEntity ? LOAD_ENTITY_OUT_OF_RANGE : LOAD_VERTEX_OUT_OF_RANGE;
    }
}

// Counts an element a reader has just handed to the layer (none when it is null), where it is
// added, so that no pass over the layer is needed after the load.
inline void NoteAdded(TLoadReport* report, const TMapElement* element) {
    if (report != nullptr && element != nullptr) report->CountAdded(element->m_dwType);
}

// What a reader's LoadFile does first with its report: clear it and set what its places count.
inline void StartLoadReport(TLoadReport* report, TLoadPlaceUnit unit) {
    if (report == nullptr) return;
    report->Clear();
    report->SetPlaceUnit(unit);
}
