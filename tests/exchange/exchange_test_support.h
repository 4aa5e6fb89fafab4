#pragma once
// Layers for the exchange tests: one holding every element kind of the map model, and a
// comparison that says what differs between two layers, element by element.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/hostmap/map_layer.h>
#include "exchange_files.h"
#include "layer_builders.h"
#include "test_support.h"

namespace exchange_test {

using layer_test::AddLine;
using layer_test::AddMarker;
using layer_test::AddPoint;
using layer_test::Square;

// Every element kind the map model has: boundaries with a hole (its own colour), an area with a
// rate, a road, a water line, a misc and a generic open line, markers, a point, and two patterns
// (one with point C alone, to the right, with an offset).
inline void FillEveryKind(TMapLayer& layer) {
    layer.m_strLLB = "FARM 12";
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, Square(45.5, -93.25, 0.01), "1");
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, Square(45.5, -93.25, 0.002), "2", 0.0, 0x00FF0000u);
    AddLine(layer, ELEMENT_LINE_AREA, BOUNDARY_INC, Square(45.52, -93.2, 0.003), "rate 7", 37.5);
    AddLine(layer, ELEMENT_LINE_ROAD, BOUNDARY_OPEN, {{45.49, -93.26}, {45.51, -93.26}}, "R1");
    AddLine(layer, ELEMENT_LINE_WATER, BOUNDARY_OPEN, {{45.49, -93.27}, {45.495, -93.268}, {45.5, -93.27}},
            "");
    AddLine(layer, ELEMENT_LINE_MISC, BOUNDARY_OPEN, {{45.48, -93.2}, {45.481, -93.201}}, "m");
    AddLine(layer, ELEMENT_LINE_GENERIC, BOUNDARY_OPEN, {{45.4975, -93.2542}, {45.5035, -93.2542}}, "1");
    AddMarker(layer, "1", "Gate", 3, {45.5012, -93.2524});
    AddMarker(layer, "2", "Pump \xC3\xA9", 5, {45.498812345, -93.247123456});
    AddPoint(layer, "p1", {45.4991, -93.2481});

    auto* pattern = new TFeaturePattern;
    pattern->m_strId = "1";
    pattern->m_dFieldWidth = 182.88;
    pattern->m_aPoint[0].m_Loc = {45.4978, -93.253};
    pattern->m_aPoint[0].m_strName = "FARM-1A";
    pattern->m_aPoint[0].SetLowBits(57);
    pattern->m_aPoint[1].m_Loc = {45.5032, -93.253};
    pattern->m_aPoint[1].m_strName = "FARM-1B";
    pattern->m_aPoint[1].SetLowBits(58);
    pattern->CalculateGeoExtents();
    layer.AddElement(pattern);

    auto* racetrack = new TFeaturePattern;
    racetrack->m_strId = "2";
    racetrack->m_iKind = RACETRACK;
    racetrack->m_iDirection = RIGHT;
    racetrack->m_dSwathWidth = 24.0;
    racetrack->m_dOffset = 3.0;
    racetrack->m_iAbLines = 2;
    racetrack->m_aPoint[0].m_Loc = {45.49, -93.24};
    racetrack->m_aPoint[1].m_Loc = {45.491, -93.23};
    racetrack->m_aPoint[2].m_Loc = {45.492, -93.235};
    racetrack->m_aPoint[2].m_strName = "C";
    racetrack->CalculateGeoExtents();
    layer.AddElement(racetrack);
}

inline bool Near(const tagLOC& a, const tagLOC& b) {
    return std::fabs(a.dLat - b.dLat) <= 1e-9 && std::fabs(a.dLon - b.dLon) <= 1e-9;
}

// One element in words: everything the round trips must keep, vertices to the nine decimals
// written.
inline std::string ElementText(const TMapElement& e) {
    char buffer[160];
    const auto loc = [&](const tagLOC& p) {
        std::snprintf(buffer, sizeof buffer, " (%.9f %.9f)", p.dLat, p.dLon);
        return std::string(buffer);
    };
    std::snprintf(buffer, sizeof buffer, "%08x value %.17g", e.m_dwType, e.m_dValue);
    std::string text = buffer + (" id '" + e.m_strId + "'");
    if (const auto* line = dynamic_cast<const TFeatureLine*>(&e)) {
        std::uint32_t color = 0;
        text += " bound " + std::to_string(line->m_iBoundType) + " colour " +
                (line->GetColor(color) ? std::to_string(color) : "none");
        for (int i = 0; i < line->m_iNumPoints; ++i) text += loc(line->m_pPoints[i]);
    } else if (const auto* marker = dynamic_cast<const TFeatureMarker*>(&e)) {
        text += " '" + marker->m_strName + "'" + loc(marker->m_Loc);
    } else if (const auto* point = dynamic_cast<const TFeaturePoint*>(&e)) {
        text += loc(point->m_Loc);
    } else if (const auto* p = dynamic_cast<const TFeaturePattern*>(&e)) {
        std::snprintf(buffer, sizeof buffer, " %d %d %d %.17g %.17g %.17g", p->m_iKind, p->m_iDirection,
                      p->m_iAbLines, p->m_dSwathWidth, p->m_dFieldWidth, p->m_dOffset);
        text += buffer;
        for (const TFeatureMarker& point : p->m_aPoint)
            text += loc(point.m_Loc) + " '" + point.m_strName + "' " + std::to_string(point.m_dwType);
    }
    return text;
}

// The layer's name and its elements, one a line.
inline std::string LayerText(const TMapLayer& layer) {
    std::string text = "layer '" + layer.m_strLLB + "'\n";
    for (const TMapElement* e : layer.m_Elements) text += ElementText(*e) + "\n";
    return text;
}

// Loads a file of an exchange format; the result, with the report filled.
inline int LoadFile(const std::string& path, TMapLayer& layer, TLoadReport& report) {
    return LoadExchangeFile(path.c_str(), &layer, nullptr, report);
}

// Loads text given as a file's bytes of the type.
inline int LoadBytes(TExchangeFileType type, const std::string& bytes, TMapLayer& layer,
                     TLoadReport& report) {
    std::unique_ptr<TGisFileExchange> file = CreateExchangeFile(type);
    file->SetLoadReport(&report);
    return file->LoadBytes(bytes, &layer);
}

}  // namespace exchange_test
