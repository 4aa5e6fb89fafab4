#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/hostmap/map_image.h>
#include <tl_gis/platform/numbers.h>
#include "commands.h"
#include "layer_loading.h"
#include "layer_render.h"
#include "session.h"

namespace {
// The view: the layer's extents with a margin, so that edges do not touch the frame.
TLocRect ViewOf(const TMapLayer& layer) {
    TLocRect r = layer.m_rcExtents;
    if (r.IsEmpty()) return TLocRect(-0.001, 0.001, 0.001, -0.001);
    const double padLon = std::max((r.dEast - r.dWest) * 0.06, 1e-5);
    const double padLat = std::max((r.dNorth - r.dSouth) * 0.06, 1e-5);
    return TLocRect(r.dWest - padLon, r.dNorth + padLat, r.dEast + padLon, r.dSouth - padLat);
}

// A round length (1, 2 or 5 times a power of ten metres) near a fifth of the view's width.
double ScaleBarMetres(double viewWidthM) {
    const double target = viewWidthM / 5.0;
    const double power = std::pow(10.0, std::floor(std::log10(std::max(target, 1e-3))));
    for (double step : {5.0, 2.0, 1.0})
        if (step * power <= target) return step * power;
    return power;
}

void DrawScaleBarAndNorthArrow(TMapImage& image) {
    TDeviceContext& dc = image.GetDC();
    const TRectLP& v = image.GetVisibleRect();
    const double unitsPerMetre = 100000.0 / image.GetScale();
    const double widthM = (v.right - v.left) / unitsPerMetre;
    const double barM = ScaleBarMetres(widthM);
    const int barUnits = static_cast<int>(std::lround(barM * unitsPerMetre));
    const int margin = (v.right - v.left) / 30;
    const int tick = (v.top - v.bottom) / 80 + 1;
    const TPointLP start{v.left + margin, v.bottom + margin};
    const TPointLP end{start.x + barUnits, start.y};

    const TPen oldPen = dc.SelectPen({PEN_SOLID, 0, 0x000000});
    const TBrush oldBrush = dc.SelectBrush({BRUSH_SOLID, 0x000000});
    dc.MoveTo(start);
    dc.LineTo(end);
    dc.MoveTo({start.x, start.y - tick});
    dc.LineTo({start.x, start.y + tick});
    dc.MoveTo({end.x, end.y - tick});
    dc.LineTo({end.x, end.y + tick});
    const std::string label =
        barM >= 1000.0 ? FormatRoundTrip(barM / 1000.0) + " km" : FormatRoundTrip(barM) + " m";
    dc.DrawLabel({start.x, start.y + tick * 2}, label);

    // North arrow in the top right corner.
    const int size = (v.top - v.bottom) / 12 + 1;
    const TPointLP tip{v.right - margin - size / 2, v.top - margin};
    const TPointLP arrow[3] = {tip, {tip.x - size / 3, tip.y - size}, {tip.x + size / 3, tip.y - size}};
    dc.Polygon(arrow, 3);
    dc.DrawLabel({tip.x - size / 6, tip.y - size - size / 2}, "N");
    dc.SelectBrush(oldBrush);
    dc.SelectPen(oldPen);
}
// A spray run as its swath strips, one quadrilateral per pair of samples: green where the boom
// was on at the later sample, grey where it was off, under the flown track.
void DrawSpray(TMapImage& image, const TFeatureSpray& spray) {
    if (spray.m_pRecs == nullptr || spray.m_iNumRecs < 1) return;
    TDeviceContext& dc = image.GetDC();
    const TPen oldPen = dc.SelectPen({PEN_NULL, 0, 0});
    const TBrush oldBrush = dc.SelectBrush({BRUSH_SOLID, 0});
    for (int i = 1; i < spray.m_iNumRecs; ++i) {
        const tagSPRAYREC& a = spray.m_pRecs[i - 1];
        const tagSPRAYREC& b = spray.m_pRecs[i];
        dc.SelectBrush({BRUSH_SOLID, b.bySpray != 0 ? 0x60D060u : 0xD8D8D8u});
        const TPointLP strip[4] = {image.Loc2LP(a.locSwathA), image.Loc2LP(b.locSwathA),
                                   image.Loc2LP(b.locSwathB), image.Loc2LP(a.locSwathB)};
        dc.Polygon(strip, 4);
    }
    dc.SelectPen({PEN_SOLID, 0, 0x404040});
    dc.MoveTo(image.Loc2LP(spray.m_pRecs[0].locPos));
    for (int i = 1; i < spray.m_iNumRecs; ++i) dc.LineTo(image.Loc2LP(spray.m_pRecs[i].locPos));
    dc.SelectBrush(oldBrush);
    dc.SelectPen(oldPen);
}
}  // namespace

bool RenderLayerSvg(const TMapLayer& layer, const std::string& out, const std::string& title, int widthPx) {
    TMapImage image(ViewOf(layer), widthPx);
    // Areas first, then lines, then point symbols on top, so nothing hides a marker.
    for (int pass = 0; pass < 3; ++pass) {
        for (const TMapElement* e : layer.m_Elements) {
            const std::uint32_t kind = e->GetKind();
            const int order = (kind == ELEMENT_MARKER || kind == ELEMENT_POINT || kind == ELEMENT_PATTERN) ? 2
                              : (kind == ELEMENT_LINE_BOUNDARY || kind == ELEMENT_LINE_AREA)               ? 0
                                                                                             : 1;
            if (order != pass) continue;
            if (const auto* spray = dynamic_cast<const TFeatureSpray*>(e))
                DrawSpray(image, *spray);
            else
                e->Draw(image);
        }
    }
    DrawScaleBarAndNorthArrow(image);
    return image.WriteSvg(out.c_str(), title);
}

int RunRender(const TToolOptions& options) {
    if (options.positional.size() != 2) {
        PrintError("usage: tlgis render IN OUT.svg [--spray FLIGHT.csv] [--width PX]");
        return kExitUsage;
    }
    bool ok = true;
    const int width = options.HasValue("width") ? ParseInt(options.Get("width"), &ok) : 1000;
    if (!ok || width < 16 || width > 20000) {
        PrintError("--width takes a number of pixels from 16 to 20000");
        return kExitUsage;
    }
    const std::string& in = options.positional[0];
    const std::string& out = options.positional[1];
    TMapLayer layer;
    const TLoadOutcome loaded = LoadLayer(in, layer, options);
    if (!loaded.Complete()) return 1;
    if (!AugmentLayer(layer, options)) return 1;
    layer.CalculateGeoExtents();
    if (!RenderLayerSvg(layer, out, in, width)) {
        PrintError("cannot write " + out);
        return 1;
    }
    PrintNote("wrote " + out);
    return 0;
}
