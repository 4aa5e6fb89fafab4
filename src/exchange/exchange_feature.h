#pragma once
// A feature as GeoJSON and KML both hold it: geometries of points, lines and polygons (rings,
// the first one outer), and flat properties. The readers of both formats turn what they parse
// into these and hand them to the layer import; the writers get them from the layer export and
// only spell them out. Positions are latitude and longitude in degrees, as the map model keeps
// them; the formats write longitude first.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tl_gis/hostmap/loc.h>

enum TGeometryKind { GEOMETRY_POINT, GEOMETRY_LINE, GEOMETRY_POLYGON };

struct TExchangeGeometry {
    TGeometryKind eKind = GEOMETRY_POINT;
    // A point: one part of one position; a line: one part; a polygon: its rings, outer first.
    std::vector<std::vector<tagLOC>> Parts;
};

struct TPropertyValue {
    enum TType { PROPERTY_NULL, PROPERTY_TEXT, PROPERTY_NUMBER, PROPERTY_BOOLEAN };
    TType eType = PROPERTY_NULL;
    std::string strText;
    double dNumber = 0.0;
    int iDecimals = -1;  // writers: the decimals a number keeps, -1 for all that round-trip

    static TPropertyValue Text(std::string text);
    static TPropertyValue Number(double number, int decimals = -1);
    // The value as a text: numbers in their shortest form that reads back the same, true and
    // false, empty for null.
    std::string AsText() const;
    // The value as a number: a number, or a text that is one (blanks around it allowed).
    bool AsNumber(double& number) const;
};

using TProperties = std::vector<std::pair<std::string, TPropertyValue>>;

// How the KML writer shows a feature; GeoJSON has no styles.
enum TFeatureStyle {
    STYLE_INCLUSION,
    STYLE_EXCLUSION,
    STYLE_OPEN_LINE,
    STYLE_MARKER,
    STYLE_POINT,
    STYLE_AB_LINE,
    STYLE_SWATH_LINE,
    STYLE_SPRAY,  // with a rate class
    STYLE_NONSPRAY,
};

struct TExchangeFeature {
    std::vector<TExchangeGeometry> Geometries;
    TProperties Properties;
    // KML writing: the placemark's name (empty for none) and description, its style and the rate
    // class of spray (0 to SPRAY_RATE_CLASSES - 1).
    std::string strTitle;
    std::string strDescription;
    TFeatureStyle eStyle = STYLE_OPEN_LINE;
    int iRateClass = 0;
    // Reading: the positions carried heights, which were dropped; a text held a NUL character
    // and was cut there.
    bool bHadHeights = false;
    bool bTextCutAtNul = false;
    // Reading: a geometry was passed over (and counted) as unknown or unusable.
    bool bGeometryPassedOver = false;
};

constexpr int SPRAY_RATE_CLASSES = 5;

// The property of that name, ignoring case; null when there is none.
const TPropertyValue* FindProperty(const TProperties& properties, std::string_view name);
// Writers: a number with at most the given decimals, trailing zeros cut ("45.4978", "3");
// degrees keep nine. A number that is not finite gives "null".
void AppendDecimals(std::string& out, double value, int decimals);
inline void AppendDegrees(std::string& out, double degrees) {
    AppendDecimals(out, degrees, 9);
}
// A property's number as written: its decimals, or every digit that reads back the same.
void AppendPropertyNumber(std::string& out, const TPropertyValue& value);

// Whether both coordinates of a position are numbers (the formats have no NaN).
bool IsFinitePosition(const tagLOC& loc);
// "line 3, column 17" of a byte offset into a file's text, for the readers' errors.
std::string LineAndColumn(std::string_view text, std::ptrdiff_t offset);

// Cuts a text read from a file at its first NUL character; true when there was one.
bool CutAtNul(std::string& text);
// Adds or replaces a property.
void SetProperty(TProperties& properties, std::string_view name, TPropertyValue value);
