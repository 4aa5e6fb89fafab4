#pragma once
// Layers for the exchange tests: one holding every element kind of the map model, and a
// comparison that says what differs between two layers, element by element.

#include <gtest/gtest.h>

#include <cmath>
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

inline std::string LocText(const tagLOC& loc) {
    return "(" + std::to_string(loc.dLat) + ", " + std::to_string(loc.dLon) + ")";
}

// What differs between two elements, empty when nothing does.
inline std::string ElementDifference(const TMapElement& a, const TMapElement& b) {
    if (a.m_dwType != b.m_dwType)
        return "type " + std::to_string(a.m_dwType) + " != " + std::to_string(b.m_dwType);
    if (a.m_strId != b.m_strId) return "id '" + a.m_strId + "' != '" + b.m_strId + "'";
    if (a.m_dValue != b.m_dValue)
        return "value " + std::to_string(a.m_dValue) + " != " + std::to_string(b.m_dValue);
    if (const auto* la = dynamic_cast<const TFeatureLine*>(&a)) {
        const auto& lb = dynamic_cast<const TFeatureLine&>(b);
        std::uint32_t ca = 0, cb = 0;
        if (la->GetColor(ca) != lb.GetColor(cb) || ca != cb) return "colour";
        if (la->m_iBoundType != lb.m_iBoundType) return "bound";
        if (la->m_iNumPoints != lb.m_iNumPoints)
            return "vertex count " + std::to_string(la->m_iNumPoints) +
                   " != " + std::to_string(lb.m_iNumPoints);
        for (int i = 0; i < la->m_iNumPoints; ++i)
            if (!Near(la->m_pPoints[i], lb.m_pPoints[i]))
                return "vertex " + std::to_string(i) + " " + LocText(la->m_pPoints[i]) +
                       " != " + LocText(lb.m_pPoints[i]);
    } else if (const auto* ma = dynamic_cast<const TFeatureMarker*>(&a)) {
        const auto& mb = dynamic_cast<const TFeatureMarker&>(b);
        if (ma->m_strName != mb.m_strName) return "name '" + ma->m_strName + "' != '" + mb.m_strName + "'";
        if (!Near(ma->m_Loc, mb.m_Loc)) return "location";
    } else if (const auto* pa = dynamic_cast<const TFeaturePoint*>(&a)) {
        if (!Near(pa->m_Loc, dynamic_cast<const TFeaturePoint&>(b).m_Loc)) return "location";
    } else if (const auto* ta = dynamic_cast<const TFeaturePattern*>(&a)) {
        const auto& tb = dynamic_cast<const TFeaturePattern&>(b);
        if (ta->m_iKind != tb.m_iKind || ta->m_iDirection != tb.m_iDirection ||
            ta->m_iAbLines != tb.m_iAbLines || ta->m_dSwathWidth != tb.m_dSwathWidth ||
            ta->m_dFieldWidth != tb.m_dFieldWidth || ta->m_dOffset != tb.m_dOffset)
            return "pattern settings";
        for (int i = 0; i < PATTERN_POINT_COUNT; ++i) {
            const TFeatureMarker& pa2 = ta->m_aPoint[i];
            const TFeatureMarker& pb = tb.m_aPoint[i];
            if (!Near(pa2.m_Loc, pb.m_Loc) || pa2.m_strName != pb.m_strName || pa2.m_dwType != pb.m_dwType)
                return std::string("pattern point ") + static_cast<char>('A' + i);
        }
    }
    return {};
}

inline ::testing::AssertionResult SameLayer(const TMapLayer& written, const TMapLayer& read) {
    if (written.m_strLLB != read.m_strLLB)
        return ::testing::AssertionFailure()
               << "layer name '" << written.m_strLLB << "' != '" << read.m_strLLB << "'";
    if (written.m_Elements.size() != read.m_Elements.size()) {
        const auto kinds = [](const TMapLayer& layer) {
            std::string text;
            for (const TMapElement* e : layer.m_Elements)
                text += std::string(" ") + GetElementKindName(e->GetKind());
            return text;
        };
        return ::testing::AssertionFailure()
               << written.m_Elements.size() << " elements written," << kinds(written) << "; "
               << read.m_Elements.size() << " read," << kinds(read);
    }
    for (std::size_t i = 0; i < written.m_Elements.size(); ++i) {
        const std::string difference = ElementDifference(*written.m_Elements[i], *read.m_Elements[i]);
        if (!difference.empty())
            return ::testing::AssertionFailure() << "element " << i << ": " << difference;
    }
    return ::testing::AssertionSuccess();
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
