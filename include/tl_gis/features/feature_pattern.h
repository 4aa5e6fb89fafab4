#pragma once
// A spray guidance pattern: a kind, a side, swath and field widths, an offset and up to nine
// AB lines formed from the named points A to R. The JOB files carry it; the map view draws
// each AB line with its offset line and the parallel swath lines.

#include <tl_gis/export.h>
#include <tl_gis/hostmap/features.h>
#include <tl_gis/hostmap/map_image.h>

enum TPatternKind {
    BACK_TO_BACK = 0,
    RACETRACK = 1,
    QUICK = 2,
    REVERSE_RACETRACK = 3,
    SQUEEZE = 4,
    EXPAND = 5,
    MULTI_BACK_TO_BACK = 6,
    BACK_TO_BACK_SKIP = 7,
    QUICKTRACK_X = 8,
};

// The side of the AB line on which the swath lines are laid.
enum TPatternDirection { LEFT = 0, RIGHT = 1 };

constexpr int PATTERN_POINT_COUNT = 18;  // A to R
constexpr int PATTERN_MAX_AB_LINES = 9;

// Pens shared by every pattern drawing: the AB line and the swath lines.
extern TL_GIS_API const TPen g_penPatternAbLine;
extern TL_GIS_API const TPen g_penPatternSwath;

// The keyword of a kind as JOB files write it ("BACK_TO_BACK" ...); null outside 0 to 8.
TL_GIS_API const char* GetPatternKindKeyword(int kind);

// A point takes part in drawing and extents when it is away from (0, 0) by more than 1e-6 in
// either coordinate, with |latitude| below 90 and |longitude| below 360.
TL_GIS_API bool IsPatternPointValid(const tagLOC& loc);

class TL_GIS_API TFeaturePattern : public TMapElement {
public:
    TFeaturePattern();
    ~TFeaturePattern() override = default;
    TFeaturePattern(const TFeaturePattern& other);
    virtual TFeaturePattern& operator=(const TFeaturePattern& other);

    // Whether the segment from A to B meets the rectangle (A and B tested valid or not).
    bool IsIn(const tagLOCRECT& rect) const override;
    // Extents of the participating valid points (empty when the element stays out of extents).
    void CalculateGeoExtents() override;
    void Draw(TMapImage& image) const override;
    TMapElement* Clone() const override;

    // Whether point index (0 = A) is drawn as a marker and counted in the extents, before
    // its validity is looked at: A and B with at least one AB line, C for the kinds that use
    // it as a point of their own, D onwards with the AB line that they belong to.
    bool IsPointParticipating(int index) const;
    // Whether AB line number line (1 to 9) is drawn: line 1 always, line k when m_iAbLines >= k.
    bool IsAbLineDrawn(int line) const { return line == 1 || m_iAbLines >= line; }
    // Number of swath lines that DrawAbLine lays beside each AB line.
    int GetSwathLineCount() const;
    // Their indexes, first up to end (not included), in swath widths from the guidance line: 0
    // up to the count, or half of them on each side for REVERSE_RACETRACK and EXPAND.
    void GetSwathLineRange(int& first, int& end) const;

    int m_iKind = BACK_TO_BACK;
    int m_iDirection = LEFT;
    double m_dSwathWidth = 18.288;  // metres (60 feet)
    double m_dFieldWidth = 0.0;     // metres
    double m_dOffset = 0.0;         // metres
    TFeatureMarker m_aPoint[PATTERN_POINT_COUNT];
    int m_iAbLines = 1;

protected:
    // Draws one AB line from p1 to p2 (logical units) with its offset and swath lines.
    void DrawAbLine(TMapImage& image, TPointLP p1, TPointLP p2) const;
};

// Clips the segment p1-p2 to the rectangle in place (y grows upward, bottom <= top): -1 when
// nothing of it is inside, 0 when it lies wholly inside unchanged, 1 when an endpoint moved.
// The endpoints may come back swapped so that p1 is the lower one.
TL_GIS_API int ClipSegment(TPointLP& p1, TPointLP& p2, const TRectLP& rect);

// Whether the segment from a to b meets the rectangle (bounds included).
TL_GIS_API bool IsSegmentInRect(const tagLOC& a, const tagLOC& b, const tagLOCRECT& rect);
