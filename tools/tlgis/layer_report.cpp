#include "layer_report.h"

#include <cstdio>
#include <map>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/platform/numbers.h>
#include "extensions.h"
#include "json_writer.h"

const char* ElementKindName(const TMapElement& element) {
    return GetElementKindName(element.GetKind());
}

namespace {
std::string TypeHex(std::uint32_t type) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "0x%08X", type);
    return buf;
}

void WriteLoadReport(TJsonWriter& json, const TLoadReport& report) {
    json.Key("report").BeginObject();
    json.Key("added").BeginObject();
    for (const auto& [kind, count] : report.GetAdded()) json.Key(kind).Integer(count);
    json.EndObject();
    json.Key("skipped").BeginArray();
    for (const TLoadReport::TSkipped& s : report.GetSkipped()) {
        json.BeginObject();
        json.Key("cause").String(s.strCause);
        json.Key("count").Integer(s.lCount);
        json.Key("first").String(s.strFirst);
        json.EndObject();
    }
    json.EndArray();
    json.Key("stopped");
    if (report.HasStopped()) {
        const TLoadReport::TStopped& stopped = report.GetStopped();
        json.BeginObject();
        json.Key("reason").String(stopped.strReason);
        json.Key("at").String((stopped.bAfter ? "after " : "") + stopped.strAt);
        json.EndObject();
    } else {
        json.Null();
    }
    json.EndObject();
}

// Under reproject: the CRS the coordinates were brought from, null when nothing named one.
void WriteCrs(TJsonWriter& json, const TCrsUse& crs) {
    json.Key("crs");
    if (crs.strName.empty()) {
        json.Null();
        return;
    }
    json.BeginObject();
    json.Key("name").String(crs.strName);
    json.Key("epsg");
    if (crs.iEpsg != 0)
        json.Integer(crs.iEpsg);
    else
        json.Null();
    json.Key("from").String(crs.strFrom);
    json.EndObject();
}

std::string DescribeCrs(const TCrsUse& crs) {
    if (crs.strName.empty()) return "none named; the coordinates are taken as latitude and longitude";
    std::string text = crs.strName;
    if (crs.iEpsg != 0) text += " (EPSG:" + std::to_string(crs.iEpsg) + ")";
    return text + ", from " + crs.strFrom;
}

void WriteLine(TJsonWriter& json, const TFeatureLine& line, const TPolygonRecord* record,
               const TReportOptions& options) {
    json.Key("bound").Integer(line.m_iBoundType);
    json.Key("points").Integer(line.m_iNumPoints);
    json.Key("centroid").Pair(line.m_locCentroid.dLat, line.m_locCentroid.dLon);
    if (record != nullptr) json.Key("area_m2").Number(record->dArea);
    json.Key("value").Number(line.m_dValue);
    std::uint32_t color = 0;
    if (line.GetColor(color)) json.Key("color").Integer(color);
    if (options.bPoints) {
        json.Key("vertices").BeginArray();
        for (int i = 0; i < line.m_iNumPoints; ++i) json.Pair(line.m_pPoints[i].dLat, line.m_pPoints[i].dLon);
        json.EndArray();
    }
}
}  // namespace

std::string LayerToJson(const std::string& file, const TLoadOutcome& outcome, const TMapLayer& layer,
                        const TReportOptions& options) {
    TJsonWriter json;
    json.BeginObject();
    json.Key("file").String(file);
    json.Key("type").Integer(outcome.iType);
    json.Key("result").Integer(outcome.iResult);
    if (outcome.Crs.bReproject) WriteCrs(json, outcome.Crs);
    json.Key("layer").BeginObject();
    json.Key("llb").String(layer.m_strLLB);
    json.Key("centroids").BeginArray();
    for (const tagLOC& c : layer.m_Centroids) json.Pair(c.dLat, c.dLon);
    json.EndArray();
    json.Key("shape_type").Integer(layer.m_iShapeType);
    for (const TToolExtension& ext : ToolExtensions())
        if (ext.describeLayerJson) ext.describeLayerJson(json, layer);
    json.EndObject();

    json.Key("elements").BeginArray();
    std::size_t lineIndex = 0;  // lines are registered with the layer's polygon records in order
    for (const TMapElement* e : layer.m_Elements) {
        json.BeginObject();
        json.Key("kind").String(ElementKindName(*e));
        json.Key("type").String(TypeHex(e->m_dwType));
        json.Key("id").String(e->m_strId);
        bool described = false;
        for (const TToolExtension& ext : ToolExtensions())
            if (!described && ext.describeElementJson) described = ext.describeElementJson(json, *e, options);
        if (described) {
        } else if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) {
            const TPolygonRecord* record = nullptr;
            if (lineIndex < layer.m_Polygons.size()) record = &layer.m_Polygons[lineIndex];
            ++lineIndex;
            WriteLine(json, *line, record, options);
        } else if (const auto* marker = dynamic_cast<const TFeatureMarker*>(e)) {
            json.Key("name").String(marker->m_strName);
            json.Key("symbol").Integer(marker->GetLowBits());
            json.Key("loc").Pair(marker->m_Loc.dLat, marker->m_Loc.dLon);
        } else if (const auto* point = dynamic_cast<const TFeaturePoint*>(e)) {
            json.Key("loc").Pair(point->m_Loc.dLat, point->m_Loc.dLon);
        }
        json.EndObject();
    }
    json.EndArray();
    WriteLoadReport(json, outcome.Report);
    json.EndObject();
    return json.Text() + "\n";
}

std::string LayerSummary(const std::string& file, const TLoadOutcome& outcome, const TMapLayer& layer) {
    std::string out;
    out += "File:     " + file + "\n";
    out += "Type:     " + std::to_string(outcome.iType) + " (" + ToolTypeName(outcome.iType) + ")\n";
    out += "Result:   " + std::to_string(outcome.iResult) + " (" + DescribeResult(outcome.iResult, false) +
           ")\n";
    if (outcome.Crs.bReproject) out += "CRS:      " + DescribeCrs(outcome.Crs) + "\n";
    std::map<std::string, int> counts;
    long long vertices = 0;
    for (const TMapElement* e : layer.m_Elements) {
        ++counts[ElementKindName(*e)];
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) vertices += line->m_iNumPoints;
    }
    out += "Elements: " + std::to_string(layer.m_Elements.size());
    if (!counts.empty()) {
        out += " (";
        bool first = true;
        for (const auto& [kind, n] : counts) {
            out += (first ? "" : ", ") + kind + " " + std::to_string(n);
            first = false;
        }
        out += ")";
    }
    out += "\n";
    if (vertices > 0) out += "Vertices: " + std::to_string(vertices) + "\n";
    if (!layer.m_Centroids.empty()) out += "Centroids: " + std::to_string(layer.m_Centroids.size()) + "\n";
    if (!layer.m_strLLB.empty()) out += "LLB:      " + layer.m_strLLB + "\n";
    if (!layer.m_rcExtents.IsEmpty()) {
        const auto& r = layer.m_rcExtents;
        out += "Extents:  west " + FormatFixed(r.dWest, 6) + ", south " + FormatFixed(r.dSouth, 6) +
               ", east " + FormatFixed(r.dEast, 6) + ", north " + FormatFixed(r.dNorth, 6) + "\n";
    }
    for (const TToolExtension& ext : ToolExtensions())
        if (ext.describeLayerText) ext.describeLayerText(out, layer);
    if (file == "-") return out;
    const std::vector<TLoadReport::TSkipped> skipped = outcome.Report.GetSkipped();
    out += "Skipped:  ";
    if (skipped.empty()) out += "nothing\n";
    for (std::size_t i = 0; i < skipped.size(); ++i)
        out += (i > 0 ? "          " : "") + DescribeSkipped(skipped[i]) + "\n";
    const TLoadReport& report = outcome.Report;
    out += "Stopped:  ";
    if (report.HasStopped())
        out += DescribeStop(report.GetStopped()) + "\n";
    else
        out += outcome.iResult == 0 ? "no, the whole file was read\n" : "yes, with the result above\n";
    return out;
}
