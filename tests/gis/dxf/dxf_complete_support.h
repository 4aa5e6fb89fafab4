#pragma once
// What the complete profile's drawing tests share: the switch, and a layer in one line of words.

#include <iomanip>
#include <sstream>
#include <string>

#include <tl_gis/hostmap/map_layer.h>
#include "complete_profile.h"

// One word per element: lines as kind, bound type and vertex count ("boundary16/5"), markers as
// "m<symbol>:<name>@<lat>,<lon>", points as "p@<lat>,<lon>"; when exact, every position with six
// decimals and each line's vertices too ("(lat,lon)..." after it).
inline std::string DescribeLayer(const TMapLayer& layer, bool exact = false) {
    std::ostringstream out;
    if (exact) out << std::fixed << std::setprecision(6);
    for (const TMapElement* e : layer.m_Elements) {
        out << (out.tellp() > 0 ? " " : "");
        if (const auto* m = dynamic_cast<const TFeatureMarker*>(e)) {
            out << 'm' << e->GetLowBits() << ':' << m->m_strName << '@' << m->m_Loc.dLat << ','
                << m->m_Loc.dLon;
        } else if (const auto* p = dynamic_cast<const TFeaturePoint*>(e)) {
            out << "p@" << p->m_Loc.dLat << ',' << p->m_Loc.dLon;
        } else if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) {
            out << GetElementKindName(e->m_dwType) << line->m_iBoundType << '/' << line->m_iNumPoints;
            for (int k = 0; exact && k < line->m_iNumPoints; ++k)
                out << '(' << line->m_pPoints[k].dLat << ',' << line->m_pPoints[k].dLon << ')';
        } else {
            out << GetElementKindName(e->m_dwType);
        }
    }
    return out.str();
}
