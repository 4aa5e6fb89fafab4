#include <tl_gis/gis/load_report.h>

#include <charconv>
#include <cmath>

#include <tl_gis/platform/numbers.h>

namespace {
struct TCauseText {
    const char* pszOne;   // the thing, for a count of 1
    const char* pszMany;  // the things, for any other count
    const char* pszWhat;  // what the reader did with them
};

// One row per TLoadCause, in its order.
constexpr TCauseText kCauses[] = {
    {"Null shape record", "Null shape records", "not read (shape type 0, no geometry)"},
    {"MultiPoint record", "MultiPoint records", "not read (shape type 8)"},
    {"PointZ record", "PointZ records", "not read (shape type 11)"},
    {"PolyLineZ record", "PolyLineZ records", "not read (shape type 13)"},
    {"PolygonZ record", "PolygonZ records", "not read (shape type 15)"},
    {"MultiPointZ record", "MultiPointZ records", "not read (shape type 18)"},
    {"PointM record", "PointM records", "not read (shape type 21)"},
    {"PolyLineM record", "PolyLineM records", "not read (shape type 23)"},
    {"PolygonM record", "PolygonM records", "not read (shape type 25)"},
    {"MultiPointM record", "MultiPointM records", "not read (shape type 28)"},
    {"MultiPatch record", "MultiPatch records", "not read (shape type 31)"},
    {"record of an unknown shape type", "records of unknown shape types", "not read"},
    {"byte after the last record", "bytes after the last record", "not read"},
    {"Z value", "Z values", "dropped (the map holds latitude and longitude only)"},
    {"M value", "M values", "dropped (the map holds latitude and longitude only)"},
    {"MultiPatch part of an unknown type", "MultiPatch parts of unknown types", "not read"},
    {"record whose last point is not latitude and longitude",
     "records whose last point is not latitude and longitude", "skipped"},
    {"damaged record", "damaged records", "skipped"},
    {"attribute table", "attribute tables", "not read; the shapes are named as the system names them"},
    {"chosen column", "chosen columns", "not in the attribute table"},
    {"record without a table row", "records without a table row", "named as the system names them"},
    {"value that is no number", "values that are no number", "not taken"},
    {"character set (.cpg) the library does not know", "character sets (.cpg) the library does not know",
     "read as Windows Latin 1"},

    {"coordinate pair within one degree of 0,0", "coordinate pairs within one degree of 0,0", "dropped"},
    {"coordinate pair out of the degree range", "coordinate pairs out of the degree range", "dropped"},
    {"coordinate pair that looks projected", "coordinate pairs that look projected", "dropped"},
    {"entity with a point within one degree of 0,0", "entities with a point within one degree of 0,0",
     "left out"},
    {"entity with a point out of the degree range", "entities with a point out of the degree range",
     "left out"},
    {"entity with a point that looks projected", "entities with a point that looks projected", "left out"},
    {"coordinate pair out of the degree range", "coordinate pairs out of the degree range",
     "kept as read, as latitude and longitude"},
    {"coordinate pair that looks projected", "coordinate pairs that look projected",
     "kept as read, as latitude and longitude"},
    {"boundary or polyline", "boundaries and polylines",
     "given up at the projected-coordinate question (answered Yes)"},
    {"coordinate pair the coordinate transform could not map",
     "coordinate pairs the coordinate transform could not map", "refused as outside the degree range"},

    {"POINT entity", "POINT entities", "not read"},
    {"ARC entity", "ARC entities", "not read"},
    {"CIRCLE entity", "CIRCLE entities", "not read"},
    {"ELLIPSE entity", "ELLIPSE entities", "not read"},
    {"SPLINE entity", "SPLINE entities", "not read"},
    {"TEXT entity", "TEXT entities", "not read"},
    {"MTEXT entity", "MTEXT entities", "not read"},
    {"HATCH entity", "HATCH entities", "not read"},
    {"SOLID entity", "SOLID entities", "not read"},
    {"3DFACE entity", "3DFACE entities", "not read"},
    {"DIMENSION entity", "DIMENSION entities", "not read"},
    {"entity of another kind", "entities of other kinds", "not read"},
    {"INSERT without a known attribute tag", "INSERTs without a known attribute tag", "made no marker"},
    {"entity on a layer that is not imported", "entities on layers that are not imported", "left out"},
    {"paper-space entity", "paper-space entities", "left out"},
    {"polyline on a marker layer (NAME, PEAK)", "polylines on marker layers (NAME, PEAK)", "made no line"},
    {"POLYLINE mesh (polygon or polyface)", "POLYLINE meshes (polygon or polyface)", "not read"},
    {"CIRCLE or ARC without a usable radius or angles", "CIRCLEs and ARCs without a usable radius or angles",
     "left out"},
    {"curve past the load's limit of curve vertices", "curves past the load's limit of curve vertices",
     "drawn as chords (bulges) or left out (CIRCLE, ARC)"},

    {"Line object", "Line objects", "not read"},
    {"Arc object", "Arc objects", "not read"},
    {"Text object", "Text objects", "not read"},
    {"Multipoint object", "Multipoint objects", "not read"},
    {"Rect object", "Rect objects", "not read"},
    {"Roundrect object", "Roundrect objects", "not read"},
    {"Ellipse object", "Ellipse objects", "not read"},
    {"object without geometry (None)", "objects without geometry (None)", "not read"},
    {"region ring after the first", "region rings after the first", "not read"},
    {"Point object", "Point objects", "kept as layer centroids, not as elements"},
    {"object whose point count or coordinates cannot be read",
     "objects whose point counts or coordinates cannot be read", "passed over"},
    {"object with fewer points or parts than announced", "objects with fewer points or parts than announced",
     "kept with the points read"},
    {"object without a .mid row", "objects without a .mid row", "read without attributes"},
    {".mid row whose fields do not match the declared columns",
     ".mid rows whose fields do not match the declared columns", "read with missing fields empty"},
    {".mid row after the last object", ".mid rows after the last object", "not read"},
    {"chosen column not declared in the .mif header", "chosen columns not declared in the .mif header",
     "not read"},
    {"value field that holds no number", "value fields that hold no number", "not taken"},

    {"record of an unknown keyword", "records of unknown keywords", "ignored with their lines"},
    {"line outside any record", "lines outside any record", "ignored"},

    {"feature whose positions carry heights", "features whose positions carry heights",
     "read without the heights (Z values dropped)"},
    {"altitudeMode element", "altitudeMode elements", "dropped (positions are kept on the ground)"},
    {"feature without a geometry", "features without a geometry", "not read"},
    {"geometry of a type not read", "geometries of types not read", "not read"},
    {"geometry that cannot be used", "geometries that cannot be used", "not read"},
    {"spray swath or non-spray path feature", "spray swath and non-spray path features",
     "not read (recorded spray is written for display; its samples cannot be rebuilt from it)"},
    {"swath line of a pattern", "swath lines of patterns", "not read (drawn again from the pattern)"},
    {"overlay or network link", "overlays and network links", "not read"},
    {"text holding a NUL character", "texts holding a NUL character", "cut there"},
    {"KML file beside the one read", "KML files beside the one read", "not read"},
    {"archive entry whose name leaves its folder", "archive entries whose names leave their folder",
     "not read"},
};
static_assert(sizeof kCauses / sizeof kCauses[0] == LOAD_CAUSE_COUNT, "one text per cause");

// The byte after the 100-byte shapefile header, where bytes after no record at all begin.
constexpr long long kShpDataStart = 100;
}  // namespace

void TLoadReport::Clear() {
    for (TCounter& c : m_aCounters) c = TCounter{};
    for (long long& n : m_alAdded) n = 0;
    m_eUnit = LOAD_PLACE_RECORD;
    m_bStopped = false;
    m_Stopped = TStopped{};
}

void TLoadReport::Stop(long long place, bool after, std::string reason) {
    if (m_bStopped) return;
    m_bStopped = true;
    m_Stopped.strReason = std::move(reason);
    m_Stopped.strAt = PlaceText(place);
    m_Stopped.bAfter = after;
}

std::string TLoadReport::PlaceText(long long place) const {
    // Record numbers start at 1; a shapefile's header stands before them.
    if (m_eUnit == LOAD_PLACE_RECORD && place == 0) return "the file header";
    if (m_eUnit == LOAD_PLACE_FEATURE && place == 0) return "the file's top level";
    std::string text = m_eUnit == LOAD_PLACE_LINE      ? "line "
                       : m_eUnit == LOAD_PLACE_FEATURE ? "feature "
                                                       : "record ";
    AppendInt(text, place);
    return text;
}

std::vector<TLoadReport::TSkipped> TLoadReport::GetSkipped() const {
    std::vector<TSkipped> out;
    for (int i = 0; i < LOAD_CAUSE_COUNT; ++i) {
        const TCounter& c = m_aCounters[i];
        if (c.lCount == 0) continue;
        const auto cause = static_cast<TLoadCause>(i);
        std::string first;
        if (cause == LOAD_SHP_TRAILING_BYTES && c.lFirst <= 0) {
            first = "after the header, at byte ";
            AppendInt(first, kShpDataStart);
        } else {
            first = (cause == LOAD_SHP_TRAILING_BYTES ? "after " : "") + PlaceText(c.lFirst);
        }
        if (!c.strNote.empty()) first += " (" + c.strNote + ")";
        out.push_back({cause, c.lCount, CauseText(cause, 2), std::move(first)});
    }
    return out;
}

std::vector<std::pair<std::string, long long>> TLoadReport::GetAdded() const {
    std::vector<std::pair<std::string, long long>> out;
    for (int i = 0; i < ELEMENT_KIND_ORDER_COUNT; ++i)
        if (m_alAdded[i] != 0) out.emplace_back(GetElementKindNameAt(i), m_alAdded[i]);
    return out;
}

long long TLoadReport::GetAddedTotal() const {
    long long total = 0;
    for (long long n : m_alAdded) total += n;
    return total;
}

bool TLoadReport::IsIncomplete() const {
    if (m_bStopped) return true;
    if (GetAddedTotal() != 0) return false;
    for (const TCounter& c : m_aCounters)
        if (c.lCount != 0) return true;
    return false;
}

std::string TLoadReport::CauseText(TLoadCause cause, long long count) {
    if (cause < 0 || cause >= LOAD_CAUSE_COUNT) return "unknown cause";
    const TCauseText& t = kCauses[cause];
    return std::string(count == 1 ? t.pszOne : t.pszMany) + " " + t.pszWhat;
}

std::string TLoadReport::PointText(double lat, double lon) {
    const auto plain = [](double v) {
        const double a = std::fabs(v);
        if (!std::isfinite(v) || (a != 0.0 && (a < 1e-6 || a >= 1e15))) return FormatRoundTrip(v);
        char buf[64];
        const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed);
        return ec == std::errc() ? std::string(buf, end) : FormatRoundTrip(v);
    };
    return "(" + plain(lat) + ", " + plain(lon) + ")";
}

std::string TLoadReport::EscapeText(std::string_view text, std::size_t maxChars) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string out;
    const std::size_t shown = text.size() < maxChars ? text.size() : maxChars;
    for (std::size_t i = 0; i < shown; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c < 0x7F && c != '\\') {
            out += static_cast<char>(c);
        } else {
            out += "\\x";
            out += kHex[c >> 4];
            out += kHex[c & 15];
        }
    }
    if (shown < text.size()) out += "...";
    return out;
}
