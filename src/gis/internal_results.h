#pragma once
// The values that readers and writers pass between their own steps, besides the result codes a
// host is promised (tl_gis/platform/result_codes.h). Several of them reach the host unchanged,
// as the system's own programs return them; the comments say where.

enum TGisInternalResult : int {
    // A record writer refused a length below 1; the non-spray pass had no layer or no scratch
    // block (the shapefile writer's result then).
    RESULT_WRITE_REFUSED = -1,
    // A record builder, or the DXF or MID/MIF writer, could not have its scratch block, outline
    // or output (the DXF writer's result then).
    RESULT_WRITE_FAILED = 1,
    // The record reader found no further record (never returned to the host).
    SHP_END_OF_DATA = 401,
    // No vertex array could be had for a MIF object or a DXF polyline.
    RESULT_NO_VERTEX_ARRAY = 1001,
    // A MIF object announced a vertex count the reader does not take.
    RESULT_MIF_VERTEX_COUNT = 1002,
    // No vertex buffer could be had for a JOB or PMH boundary (ReadPolygon's result).
    RESULT_JOB_NO_VERTEX_BUFFER = 2001,
    // A DXF entity lies on a layer the reader does not import.
    RESULT_DXF_UNKNOWN_LAYER = 5001,
};
