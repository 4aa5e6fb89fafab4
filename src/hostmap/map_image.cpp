#include <tl_gis/hostmap/map_image.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include <tl_gis/hostmap/geodesy.h>
#include "platform/byte_file.h"

TPen TDeviceContext::SelectPen(const TPen& pen) {
    TPen old = m_pen;
    m_pen = pen;
    return old;
}

TBrush TDeviceContext::SelectBrush(const TBrush& brush) {
    TBrush old = m_brush;
    m_brush = brush;
    return old;
}

int TDeviceContext::SetROP2(int rop) {
    const int old = m_iRop;
    m_iRop = rop;
    return old;
}

TDrawCommand TDeviceContext::Begin(TDrawCommand::Kind kind) const {
    TDrawCommand cmd;
    cmd.eKind = kind;
    cmd.pen = m_pen;
    cmd.brush = m_brush;
    cmd.iRop = m_iRop;
    return cmd;
}

void TDeviceContext::LineTo(TPointLP p) {
    TDrawCommand cmd = Begin(TDrawCommand::Line);
    cmd.points = {m_current, p};
    m_commands.push_back(std::move(cmd));
    m_current = p;
}

void TDeviceContext::Polyline(const TPointLP* points, int count) {
    if (points == nullptr || count < 2) return;
    TDrawCommand cmd = Begin(TDrawCommand::Polyline);
    cmd.points.assign(points, points + count);
    m_commands.push_back(std::move(cmd));
}

void TDeviceContext::Polygon(const TPointLP* points, int count) {
    if (points == nullptr || count < 3) return;
    TDrawCommand cmd = Begin(TDrawCommand::Polygon);
    cmd.points.assign(points, points + count);
    m_commands.push_back(std::move(cmd));
}

void TDeviceContext::Rectangle(const TRectLP& rect) {
    TDrawCommand cmd = Begin(TDrawCommand::Rectangle);
    cmd.points = {{rect.left, rect.top}, {rect.right, rect.bottom}};
    m_commands.push_back(std::move(cmd));
}

void TDeviceContext::Ellipse(const TRectLP& rect) {
    TDrawCommand cmd = Begin(TDrawCommand::Ellipse);
    cmd.points = {{rect.left, rect.top}, {rect.right, rect.bottom}};
    m_commands.push_back(std::move(cmd));
}

void TDeviceContext::DrawLabel(TPointLP at, const std::string& text) {
    TDrawCommand cmd = Begin(TDrawCommand::Text);
    cmd.points = {at};
    cmd.strText = text;
    m_commands.push_back(std::move(cmd));
}

namespace {
// Logical units across the width of the view; keeps coordinates well inside int range.
constexpr double kUnitsAcross = 1.0e6;
}  // namespace

TMapImage::TMapImage(const tagLOCRECT& view, int widthPx) : m_iWidthPx(std::max(16, widthPx)) {
    TLocRect v(view);
    if (v.IsEmpty() || !std::isfinite(v.dWest) || !std::isfinite(v.dEast) || !std::isfinite(v.dNorth) ||
        !std::isfinite(v.dSouth)) {
        v = TLocRect(-0.001, 0.001, 0.001, -0.001);
    }
    m_center = {(v.dNorth + v.dSouth) * 0.5, (v.dWest + v.dEast) * 0.5};
    const double metresPerDegLat =
        GeoDistance(m_center.dLat - 0.5, m_center.dLon, m_center.dLat + 0.5, m_center.dLon);
    const double metresPerDegLon =
        GeoDistance(m_center.dLat, m_center.dLon - 0.5, m_center.dLat, m_center.dLon + 0.5);
    double widthM = std::max((v.dEast - v.dWest) * metresPerDegLon, 1.0);
    double heightM = std::max((v.dNorth - v.dSouth) * metresPerDegLat, 1.0);
    // A view along a meridian or a parallel is widened to at most 20:1, so that the picture's
    // other side keeps a sensible (and representable) number of pixels.
    widthM = std::max(widthM, heightM / 20.0);
    heightM = std::max(heightM, widthM / 20.0);
    const double spanM = std::max(widthM, heightM);
    m_dScale = spanM * 100000.0 / kUnitsAcross;
    const double unitsPerMetre = 100000.0 / m_dScale;
    m_dUnitsPerDegLat = metresPerDegLat * unitsPerMetre;
    m_dUnitsPerDegLon = std::max(metresPerDegLon, 1e-3) * unitsPerMetre;
    const int halfW = static_cast<int>(std::lround(widthM * unitsPerMetre / 2));
    const int halfH = static_cast<int>(std::lround(heightM * unitsPerMetre / 2));
    m_visible = {-halfW, halfH, halfW, -halfH};
    m_iHeightPx = std::max(16, static_cast<int>(std::lround(m_iWidthPx * heightM / widthM)));
}

TPointLP TMapImage::Loc2LP(const tagLOC& loc, bool clip) const {
    double x = (loc.dLon - m_center.dLon) * m_dUnitsPerDegLon;
    double y = (loc.dLat - m_center.dLat) * m_dUnitsPerDegLat;
    if (clip) {
        x = std::clamp(x, static_cast<double>(m_visible.left), static_cast<double>(m_visible.right));
        y = std::clamp(y, static_cast<double>(m_visible.bottom), static_cast<double>(m_visible.top));
    }
    // Far-away points saturate instead of overflowing.
    constexpr double lim = 1.0e9;
    x = std::isfinite(x) ? std::clamp(x, -lim, lim) : 0.0;
    y = std::isfinite(y) ? std::clamp(y, -lim, lim) : 0.0;
    return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
}

TRectLP TMapImage::LocRect2LP(const tagLOCRECT& rect) const {
    const TPointLP nw = Loc2LP({rect.dNorth, rect.dWest});
    const TPointLP se = Loc2LP({rect.dSouth, rect.dEast});
    return {nw.x, nw.y, se.x, se.y};
}

namespace {
// One decimal, as "%.1f" in the C locale, whatever locale the host has set.
std::string Fixed1(double v) {
    char buf[400];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, 1);
    return ec == std::errc() ? std::string(buf, end) : std::string("0.0");
}

std::string SvgColor(std::uint32_t bgr) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "#%02x%02x%02x", bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
    return buf;
}

std::string XmlEscape(const std::string& s) {
    std::string out;
    for (unsigned char c : s) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                // Control bytes are not allowed in XML; bytes above 127 are not valid UTF-8 alone.
                if (c < 0x20 && c != '\t')
                    out += ' ';
                else if (c >= 0x80)
                    out += '?';
                else
                    out += static_cast<char>(c);
        }
    }
    return out;
}
}  // namespace

std::string TMapImage::ToSvg(const std::string& title) const {
    const double sx = static_cast<double>(m_iWidthPx) / std::max(1, m_visible.right - m_visible.left);
    const double sy = static_cast<double>(m_iHeightPx) / std::max(1, m_visible.top - m_visible.bottom);
    auto px = [&](TPointLP p) {
        return Fixed1((p.x - m_visible.left) * sx) + "," + Fixed1((m_visible.top - p.y) * sy);
    };
    auto stroke = [&](const TDrawCommand& c) {
        if (c.pen.iStyle == PEN_NULL) return std::string(" stroke=\"none\"");
        const double w = std::max(1.0, c.pen.iWidth * sx);
        return " stroke=\"" + SvgColor(c.pen.dwColor) + "\" stroke-width=\"" + Fixed1(w) + "\"" +
               (c.pen.iStyle == PEN_DASH ? " stroke-dasharray=\"6,4\""
                                         : (c.pen.iStyle == PEN_DOT ? " stroke-dasharray=\"2,3\"" : ""));
    };
    auto fill = [&](const TDrawCommand& c) {
        if (c.brush.iStyle == BRUSH_NULL) return std::string(" fill=\"none\"");
        std::string f = " fill=\"" + SvgColor(c.brush.dwColor) + "\"";
        if (c.brush.iStyle == BRUSH_HATCHED) f = " fill=\"url(#hatch)\"";
        return f;
    };
    auto blend = [&](const TDrawCommand& c) {
        return c.iRop == ROP_MASKPEN ? std::string(" style=\"mix-blend-mode:multiply\"") : std::string();
    };

    std::string out;
    out.reserve(256 + m_dc.Commands().size() * 96);
    char head[512];
    std::snprintf(
        head, sizeof head,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\">\n",
        m_iWidthPx, m_iHeightPx, m_iWidthPx, m_iHeightPx);
    out += head;
    if (!title.empty()) out += "<title>" + XmlEscape(title) + "</title>\n";
    out +=
        "<defs><pattern id=\"hatch\" width=\"8\" height=\"8\" patternUnits=\"userSpaceOnUse\" "
        "patternTransform=\"rotate(45)\"><line x1=\"0\" y1=\"0\" x2=\"0\" y2=\"8\" stroke=\"#d00000\" "
        "stroke-width=\"2\"/></pattern></defs>\n";
    out += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    for (const TDrawCommand& c : m_dc.Commands()) {
        switch (c.eKind) {
            case TDrawCommand::Line:
            case TDrawCommand::Polyline:
            case TDrawCommand::Polygon: {
                out += c.eKind == TDrawCommand::Polygon ? "<polygon points=\"" : "<polyline points=\"";
                for (std::size_t i = 0; i < c.points.size(); ++i) {
                    if (i) out += ' ';
                    out += px(c.points[i]);
                }
                out += "\"";
                out += c.eKind == TDrawCommand::Polygon ? fill(c) : std::string(" fill=\"none\"");
                out += stroke(c) + blend(c) + "/>\n";
                break;
            }
            case TDrawCommand::Rectangle:
            case TDrawCommand::Ellipse: {
                const double x0 = (std::min(c.points[0].x, c.points[1].x) - m_visible.left) * sx;
                const double x1 = (std::max(c.points[0].x, c.points[1].x) - m_visible.left) * sx;
                const double y0 = (m_visible.top - std::max(c.points[0].y, c.points[1].y)) * sy;
                const double y1 = (m_visible.top - std::min(c.points[0].y, c.points[1].y)) * sy;
                if (c.eKind == TDrawCommand::Rectangle)
                    out += "<rect x=\"" + Fixed1(x0) + "\" y=\"" + Fixed1(y0) + "\" width=\"" +
                           Fixed1(x1 - x0) + "\" height=\"" + Fixed1(y1 - y0) + "\"";
                else
                    out += "<ellipse cx=\"" + Fixed1((x0 + x1) / 2) + "\" cy=\"" + Fixed1((y0 + y1) / 2) +
                           "\" rx=\"" + Fixed1((x1 - x0) / 2) + "\" ry=\"" + Fixed1((y1 - y0) / 2) + "\"";
                out += fill(c) + stroke(c) + blend(c) + "/>\n";
                break;
            }
            case TDrawCommand::Text: {
                const TPointLP at = c.points[0];
                out += "<text x=\"" + Fixed1((at.x - m_visible.left) * sx) + "\" y=\"" +
                       Fixed1((m_visible.top - at.y) * sy) +
                       "\" font-family=\"sans-serif\" font-size=\"12\" fill=\"" + SvgColor(c.pen.dwColor) +
                       "\">" + XmlEscape(c.strText) + "</text>\n";
                break;
            }
        }
    }
    out += "</svg>\n";
    return out;
}

bool TMapImage::WriteSvg(const char* path, const std::string& title) const {
    TByteFile file;
    if (!file.Open(path, TByteFile::modeCreate)) return false;
    const std::string svg = ToSvg(title);
    const bool written = file.Write(svg.data(), svg.size());
    return file.Close() && written;
}
