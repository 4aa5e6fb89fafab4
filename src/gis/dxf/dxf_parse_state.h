#pragma once
// What the drawing reader knows between lines. It is process-wide, as only one load runs at a
// time; values of an open compound entity (POLYLINE, LWPOLYLINE, INSERT) carry over from one
// sub-entity to the next until a group of the same code replaces them.

#include <string>
#include <vector>

#include <tl_gis/hostmap/loc.h>
#include "gis/dxf/dxf_tables.h"

struct TDxfParseState {
    std::string strEntity;        // type of the entity being read (group 0)
    std::string strText;          // group 1
    std::string strName;          // group 2
    std::string strLayer;         // group 8
    double dX0 = 0.0, dY0 = 0.0;  // groups 10, 20
    double dX1 = 0.0, dY1 = 0.0;  // groups 11, 21
    double dBulge = 0.0;          // group 42
    int iFlags = 0;               // group 70 while a polyline is open
    int iPaperSpace = 0;          // group 67 of the current entity
    int iVertexCount = 0;         // group 90: vertices of a lightweight polyline
    std::string strSection;
    bool bInBlocks = false;
    bool bInEntities = false;
    std::string strOpenEntity;  // "POLYLINE", "LWPOLYLINE" or "INSERT" while one is open
    bool bImport = true;        // whether the current entity is taken
    bool bInPolyline = false;
    bool bInLwPolyline = false;
    bool bClosed = false;
    // The last layer name looked up in the class tables and what it gave, since drawings name
    // the same layer entity after entity; the lookup depends on the profile it was made in.
    std::string strLastLayer;
    const TDxfLayerClass* pLastLayerClass = nullptr;
    bool bLastLayerValid = false;
    bool bLastLayerComplete = false;
    int iLastLayerBound = 0;
    int iLastLayerSymbol = -1;

    // The complete profile's reading: whether this load reads in it, then the fields of one
    // entity, cleared when the next one starts.
    bool bComplete = false;
    int iEntityFlags = 0;                    // group 70
    double d40 = 0.0, d50 = 0.0, d51 = 0.0;  // groups 40, 50, 51: radius or text height, angles
    int iAlign72 = 0, iAlign73 = 0;          // groups 72, 73: text alignment
    std::string strMText;                    // groups 3 of an MTEXT: its text before group 1
    std::string strHeaderVar;                // group 9: the header variable whose value follows
    // Of the drawing: its release and code page, for the encoding of its texts.
    std::string strAcadVersion;
    std::string strCodePage;
    // Of the layer last named: the bound type its name ends with, and the symbol of markers on it
    // (-1 when it is no marker layer).
    int iLayerBound = 0;
    int iLayerSymbol = -1;
    // Of the polyline being read: its header's closed flag, whether it is a mesh (whose vertices
    // make no line), the bulge of its last vertex, and a lightweight vertex that waits for its
    // bulge.
    bool bHeaderClosed = false;
    bool bMesh = false;
    double dPendingBulge = 0.0;
    // The drawing's own coordinates (x in dLon, y in dLat) of the line's last and first vertices:
    // arcs are drawn in the drawing's plane, before any coordinate transform.
    tagLOC PendingFrom{};
    tagLOC FirstDrawn{};
    bool bLwVertexPending = false;
    // A POINT that waits for a TEXT at its position to name it.
    bool bPointPending = false;
    tagLOC PendingPoint;
    int iPendingSymbol = -1;  // of the POINT's layer; -1 when it is no marker layer
    // Vertices the load's curves may still add; the vertices of a CIRCLE or ARC.
    long long lCurveBudget = 0;
    std::vector<tagLOC> CurvePoints;
};

extern TDxfParseState s_DxfState;
