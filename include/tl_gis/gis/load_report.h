#pragma once
// What a load did beside its result code: the elements it added by kind, what it passed over
// by cause (a count and the first place of each), and whether and where it stopped early.
//
// The readers record into a report while they read, without changing their result or what they
// add. Each cause costs one counter, however often a file repeats it; only the first place of a
// cause and a stop keep a text. A host passes a report to TGisMap::LoadFile, or hands one to a
// format object with SetLoadReport before calling its LoadFile.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tl_gis/hostmap/element_kinds.h>

// What was passed over, in the order a report lists it.
enum TLoadCause : int {
    // Shapefile records of a shape type the reader does not read, and what follows the last record.
    LOAD_SHP_NULL,
    LOAD_SHP_MULTIPOINT,
    LOAD_SHP_POINTZ,
    LOAD_SHP_POLYLINEZ,
    LOAD_SHP_POLYGONZ,
    LOAD_SHP_MULTIPOINTZ,
    LOAD_SHP_POINTM,
    LOAD_SHP_POLYLINEM,
    LOAD_SHP_POLYGONM,
    LOAD_SHP_MULTIPOINTM,
    LOAD_SHP_MULTIPATCH,
    LOAD_SHP_UNKNOWN_TYPE,
    LOAD_SHP_TRAILING_BYTES,  // counted in bytes
    // The complete profile: what it reads but cannot carry, records it skips to go on, and the
    // attribute table beside the main file.
    LOAD_SHP_Z_VALUES,            // counted in values
    LOAD_SHP_M_VALUES,            // counted in values
    LOAD_SHP_MULTIPATCH_UNKNOWN_PART,
    LOAD_SHP_LAST_POINT_OUTSIDE,
    LOAD_SHP_DAMAGED_RECORD,
    LOAD_SHP_TABLE_NOT_READ,
    LOAD_SHP_COLUMN_MISSING,
    LOAD_SHP_NO_TABLE_ROW,
    LOAD_SHP_VALUE_NOT_NUMBER,
    LOAD_SHP_UNKNOWN_CHARSET,

    // Coordinates that are not latitude and longitude: the vertex (or position line) dropped,
    // the whole entity left out, or the value kept as read.
    LOAD_VERTEX_NEAR_ORIGIN,
    LOAD_VERTEX_OUT_OF_RANGE,
    LOAD_VERTEX_PROJECTED,
    LOAD_ENTITY_NEAR_ORIGIN,
    LOAD_ENTITY_OUT_OF_RANGE,
    LOAD_ENTITY_PROJECTED,
    LOAD_KEPT_OUT_OF_RANGE,
    LOAD_KEPT_PROJECTED,
    LOAD_LINE_ABANDONED,  // a JOB or PMH line given up at the projected-coordinate question
    LOAD_COORD_UNMAPPED,  // a pair the host's coordinate transform could not map

    // DXF entities that are not read, and entities the reader's rules leave out.
    LOAD_DXF_POINT,
    LOAD_DXF_ARC,
    LOAD_DXF_CIRCLE,
    LOAD_DXF_ELLIPSE,
    LOAD_DXF_SPLINE,
    LOAD_DXF_TEXT,
    LOAD_DXF_MTEXT,
    LOAD_DXF_HATCH,
    LOAD_DXF_SOLID,
    LOAD_DXF_3DFACE,
    LOAD_DXF_DIMENSION,
    LOAD_DXF_OTHER_ENTITY,
    LOAD_DXF_INSERT_NO_TAG,
    LOAD_DXF_LAYER_NOT_TAKEN,
    LOAD_DXF_PAPER_SPACE,
    LOAD_DXF_MARKER_LAYER_LINE,
    LOAD_DXF_POLYLINE_MESH,  // complete profile: polygon and polyface meshes
    LOAD_DXF_BAD_CURVE,      // complete profile: a CIRCLE or ARC without a usable radius
    LOAD_DXF_CURVE_LIMIT,    // complete profile: curves past the load's limit of curve vertices

    // MIF objects that are not read, and what is read only in part.
    LOAD_MIF_LINE,
    LOAD_MIF_ARC,
    LOAD_MIF_TEXT,
    LOAD_MIF_MULTIPOINT,
    LOAD_MIF_RECT,
    LOAD_MIF_ROUNDRECT,
    LOAD_MIF_ELLIPSE,
    LOAD_MIF_NONE,
    LOAD_MIF_REGION_RING,  // rings after the first of a region
    LOAD_MIF_POINT,        // kept as a centroid of the layer, not as an element
    // What the complete profile still cannot take from a MapInfo pair.
    LOAD_MIF_DAMAGED_OBJECT,    // a count or coordinates that cannot be read: the object passed over
    LOAD_MIF_SHORT_OBJECT,      // fewer points or parts than announced: kept with what it holds
    LOAD_MIF_NO_MID_ROW,        // the .mid ended (or is missing) before the object's row
    LOAD_MIF_MID_FIELD_COUNT,   // a .mid row with more or fewer fields than the declared columns
    LOAD_MIF_MID_EXTRA_ROW,     // .mid rows after the last object
    LOAD_MIF_COLUMN_NOT_FOUND,  // a chosen attribute column the header does not declare
    LOAD_MIF_VALUE_NOT_NUMBER,  // a value column field that holds no number

    // Lines of the text formats that belong to nothing the reader knows.
    LOAD_UNKNOWN_RECORD,
    LOAD_STRAY_LINE,

    // GeoJSON and KML (read by the exchange module beside the library): what these files hold
    // beyond the map model, and what the exchange writers add for display only.
    LOAD_HEIGHTS_DROPPED,           // features whose positions carry heights (Z)
    LOAD_ALTITUDE_MODE_DROPPED,     // KML altitudeMode elements
    LOAD_FEATURE_NO_GEOMETRY,       // features without a geometry
    LOAD_FEATURE_UNKNOWN_GEOMETRY,  // geometries of a type not read (KML tracks and models, others)
    LOAD_FEATURE_BAD_GEOMETRY,      // geometries too short or with coordinates that are no numbers
    LOAD_FEATURE_SPRAY_DISPLAY,     // recorded spray swaths and non-spray paths
    LOAD_FEATURE_SWATH_LINE,        // swath lines beside a pattern's AB lines
    LOAD_KML_OVERLAY,               // overlays and network links
    LOAD_TEXT_CUT_AT_NUL,           // texts holding a NUL character
    LOAD_KMZ_OTHER_KML,             // KML files of a KMZ beside the one read
    LOAD_KMZ_UNSAFE_NAME,           // KMZ entries whose names leave the archive's folder

    LOAD_CAUSE_COUNT
};

// What the places of a load count: records (shapefiles), lines (the text formats) or features
// (GeoJSON features and KML placemarks).
enum TLoadPlaceUnit : int { LOAD_PLACE_RECORD = 0, LOAD_PLACE_LINE = 1, LOAD_PLACE_FEATURE = 2 };

class TL_GIS_API TLoadReport {
public:
    struct TSkipped {
        TLoadCause eCause;
        long long lCount;
        std::string strCause;  // e.g. "PointZ records not read (shape type 11)"
        std::string strFirst;  // e.g. "record 1"; always holds the record or line number
    };
    struct TStopped {
        std::string strReason;
        std::string strAt;    // e.g. "record 40" or "line 17"
        bool bAfter = false;  // reading stopped after the place (it was read) rather than at it
    };

    TLoadReport() { Clear(); }

    // Forgets everything recorded; the places count records.
    void Clear();

    // Recording, by the readers.
    void SetPlaceUnit(TLoadPlaceUnit unit) { m_eUnit = unit; }
    // Counts count occurrences of a cause at place (a record or line number). True for the
    // first, whose place is kept.
    bool Skip(TLoadCause cause, long long place, long long count = 1) {
        TCounter& c = m_aCounters[cause];
        const bool first = c.lCount == 0;
        if (first) c.lFirst = place;
        c.lCount += count;
        return first;
    }
    // Detail shown after the first place of a cause; text from the file goes through EscapeText.
    void SetFirstNote(TLoadCause cause, std::string note) { m_aCounters[cause].strNote = std::move(note); }
    // Reading stopped at (or after) place; only the first stop of a load is kept.
    void Stop(long long place, bool after, std::string reason);
    // Counts an element of the kind code as added by this load.
    void CountAdded(std::uint32_t kind) { ++m_alAdded[GetElementKindOrder(kind)]; }

    // Reading, by the host.
    // The causes that occurred, in the order of TLoadCause.
    std::vector<TSkipped> GetSkipped() const;
    long long GetCount(TLoadCause cause) const { return m_aCounters[cause].lCount; }
    // Element kind name ("boundary", "marker", ...) and count, in a fixed kind order.
    std::vector<std::pair<std::string, long long>> GetAdded() const;
    long long GetAddedTotal() const;
    bool HasStopped() const { return m_bStopped; }
    const TStopped& GetStopped() const { return m_Stopped; }
    // True when reading stopped early, or when nothing was added from a file that held data
    // (something was passed over): the load did not do what a user would assume.
    bool IsIncomplete() const;
    // The place text of a record, line or feature number in this report's unit ("record 12",
    // "line 7", "feature 3"; record 0 is the shapefile's header, feature 0 the file's top level).
    std::string PlaceText(long long place) const;

    // The cause as a report lists it after a count: singular for 1, plural otherwise.
    static std::string CauseText(TLoadCause cause, long long count);
    // "(lat, lon)" with each value as the shortest text that reads back the same, in plain
    // decimals (5000000, not 5e+06) unless it is huge or tiny.
    static std::string PointText(double lat, double lon);
    // Text from a file made safe to show: printable ASCII kept, every other byte as \xNN, and
    // at most maxChars characters of the text (then "...").
    static std::string EscapeText(std::string_view text, std::size_t maxChars = 40);

private:
    struct TCounter {
        long long lCount = 0;
        long long lFirst = 0;
        std::string strNote;
    };
    TCounter m_aCounters[LOAD_CAUSE_COUNT];
    long long m_alAdded[ELEMENT_KIND_ORDER_COUNT] = {};  // by GetElementKindOrder
    TLoadPlaceUnit m_eUnit = LOAD_PLACE_RECORD;
    bool m_bStopped = false;
    TStopped m_Stopped;
};
