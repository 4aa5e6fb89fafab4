#pragma once
// A drawing surface for map elements: a transform from locations to logical units and a
// device context that records what is drawn, so that it can be inspected or written as SVG.
//
// Logical units have y growing upward (north up). A distance of d metres spans
// d * 100000 / S logical units, S being the image's scale value.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>
#include <vector>

#include <tl_gis/hostmap/loc.h>

struct TPointLP {
    int x = 0;
    int y = 0;
    bool operator==(const TPointLP&) const = default;
};

struct TRectLP {
    int left = 0;
    int top = 0;  // top > bottom: y grows upward
    int right = 0;
    int bottom = 0;
};

enum TPenStyle { PEN_SOLID = 0, PEN_DASH = 1, PEN_DOT = 2, PEN_NULL = 5 };
enum TBrushStyle { BRUSH_SOLID = 0, BRUSH_NULL = 1, BRUSH_HATCHED = 2 };
// Raster operations that the elements use.
enum TRasterOp { ROP_COPYPEN = 13, ROP_MASKPEN = 9 };

struct TPen {
    int iStyle = PEN_SOLID;
    int iWidth = 0;             // logical units; 0 is the thinnest line the surface can draw
    std::uint32_t dwColor = 0;  // 0x00BBGGRR
    bool operator==(const TPen&) const = default;
};

struct TBrush {
    int iStyle = BRUSH_NULL;
    std::uint32_t dwColor = 0;  // 0x00BBGGRR
    bool operator==(const TBrush&) const = default;
};

// One recorded drawing call with the pen, brush and raster operation in force.
struct TDrawCommand {
    enum Kind { Line, Polyline, Polygon, Rectangle, Ellipse, Text };
    Kind eKind = Line;
    std::vector<TPointLP> points;  // Line: 2; Polyline/Polygon: n; Rectangle/Ellipse: 2 corners; Text: 1
    std::string strText;
    TPen pen;
    TBrush brush;
    int iRop = ROP_COPYPEN;
};

class TL_GIS_API TDeviceContext {
public:
    // Each Select returns what was selected before.
    TPen SelectPen(const TPen& pen);
    TBrush SelectBrush(const TBrush& brush);
    int SetROP2(int rop);
    const TPen& GetPen() const { return m_pen; }

    void MoveTo(TPointLP p) { m_current = p; }
    void LineTo(TPointLP p);
    void Polyline(const TPointLP* points, int count);
    void Polygon(const TPointLP* points, int count);
    void Rectangle(const TRectLP& rect);
    void Ellipse(const TRectLP& rect);
    void DrawLabel(TPointLP at, const std::string& text);

    const std::vector<TDrawCommand>& Commands() const { return m_commands; }
    void ClearCommands() { m_commands.clear(); }

private:
    TDrawCommand Begin(TDrawCommand::Kind kind) const;

    TPen m_pen;
    TBrush m_brush;
    int m_iRop = ROP_COPYPEN;
    TPointLP m_current;
    std::vector<TDrawCommand> m_commands;
};

class TL_GIS_API TMapImage {
public:
    // An image showing the given area, widthPx pixels wide when written as SVG.
    TMapImage(const tagLOCRECT& view, int widthPx);

    // Location to logical units. The flag asks for clipping to the visible rectangle.
    TPointLP Loc2LP(const tagLOC& loc, bool clip = false) const;
    TRectLP LocRect2LP(const tagLOCRECT& rect) const;
    // S: d metres span d * 100000 / S logical units.
    double GetScale() const { return m_dScale; }
    const TRectLP& GetVisibleRect() const { return m_visible; }
    TDeviceContext& GetDC() { return m_dc; }
    const TDeviceContext& GetDC() const { return m_dc; }
    int GetWidthPx() const { return m_iWidthPx; }

    // The recorded drawing as a standalone SVG document.
    std::string ToSvg(const std::string& title = "") const;
    bool WriteSvg(const char* path, const std::string& title = "") const;

private:
    tagLOC m_center;
    double m_dScale = 1.0;
    double m_dUnitsPerDegLat = 1.0;
    double m_dUnitsPerDegLon = 1.0;
    TRectLP m_visible;
    int m_iWidthPx = 800;
    int m_iHeightPx = 800;
    TDeviceContext m_dc;
};
