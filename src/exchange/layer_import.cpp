#include "layer_import.h"

#include <tl_gis/gis/chosen_columns.h>
#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "layer_export.h"
#include "spray_features.h"

struct TLayerImport::TChosen {
    std::string strKind;
    std::string strId;
    bool bHasValue = false;
    double dValue = 0.0;
    std::string strName;
    int iBound = 0;
    bool bHasColor = false;
    std::uint32_t dwColor = COLOR_NONE;
    int iSymbol = 0;
};

namespace {
// The line kind a kind property names (boundary, area, road, water, misc, generic), or fallback.
int LineKind(const std::string& name, int fallback) {
    for (std::uint32_t kind : {ELEMENT_LINE_BOUNDARY, ELEMENT_LINE_AREA, ELEMENT_LINE_ROAD,
                               ELEMENT_LINE_WATER, ELEMENT_LINE_MISC, ELEMENT_LINE_GENERIC})
        if (EqualsNoCase(name, GetElementKindName(kind))) return static_cast<int>(kind);
    return fallback;
}

bool IsKind(const std::string& kind, const char* name) {
    return EqualsNoCase(kind, name);
}
}  // namespace

TLayerImport::TLayerImport(TMapLayer& layer, TLoadReport* report, std::string prompt)
    : m_Layer(layer), m_pReport(report), m_strPrompt(std::move(prompt)), m_dLayerValue(layer.m_dValue) {}

TLayerImport::~TLayerImport() {
    m_Layer.m_dValue = m_dLayerValue;
}

void TLayerImport::Skip(TLoadCause cause, long long place, const std::string& note) {
    if (m_pReport != nullptr && m_pReport->Skip(cause, place) && !note.empty())
        m_pReport->SetFirstNote(cause, TLoadReport::EscapeText(note));
}

TLayerImport::TChosen TLayerImport::ChooseValues(const TExchangeFeature& feature) const {
    const TProperties& p = feature.Properties;
    // The properties as a table row, read as a table's chosen columns are: those the host chose,
    // or else the properties id, value and name.
    std::vector<std::string> names, row;
    for (const auto& [key, value] : p) {
        names.push_back(key);
        row.push_back(value.AsText());
    }
    const auto column = [&](const char* name) {
        for (std::size_t i = 0; i < names.size(); ++i)
            if (EqualsNoCase(names[i], name)) return static_cast<int>(i);
        return -1;
    };
    TChosenColumns columns = FindChosenColumns(names);
    if (TGisFile::s_strIdField.empty()) columns.iId = column("id");
    if (TGisFile::s_strValueField.empty()) columns.iValue = column("value");
    if (TGisFile::s_strNameField.empty()) columns.iName = column("name");
    const TChosenValues values = ReadChosenValues(columns, row);

    TChosen chosen;
    chosen.strId = values.strId;
    chosen.bHasValue = values.bHasValue;
    chosen.dValue = values.dValue;
    chosen.strName = values.strName;
    if (const TPropertyValue* v = FindProperty(p, "kind")) chosen.strKind = v->AsText();
    if (const TPropertyValue* v = FindProperty(p, "bound")) chosen.iBound = BoundTypeFromName(v->AsText());
    if (const TPropertyValue* v = FindProperty(p, "color"))
        chosen.bHasColor = ColorFromText(v->AsText(), chosen.dwColor);
    double symbol = 0.0;
    if (const TPropertyValue* v = FindProperty(p, "symbol"); v != nullptr && v->AsNumber(symbol))
        chosen.iSymbol = symbol >= 0.0 && symbol <= 4095.0 ? static_cast<int>(symbol) : 0;
    return chosen;
}

bool TLayerImport::AreGeographic(const std::vector<tagLOC>& positions, long long place) {
    for (const tagLOC& p : positions) {
        const int coordClass = ClassifyCoordinate(p.dLat, p.dLon);
        if (coordClass == COORD_GEOGRAPHIC) continue;
        const std::string where = TLoadReport::PointText(p.dLat, p.dLon);
        if (coordClass == COORD_PROJECTED) {
            if (PromptProjectedCoordinate(m_strPrompt.c_str(), p.dLat, p.dLon) == ANSWER_YES) {
                m_bCancelled = true;
                if (m_pReport != nullptr)
                    m_pReport->Stop(
                        place, false,
                        "its coordinates " + where + " look projected, and reading was stopped there");
                return false;
            }
            Skip(LOAD_ENTITY_PROJECTED, place, where);
        } else {
            Skip(LOAD_ENTITY_OUT_OF_RANGE, place, where);
        }
        return false;
    }
    return true;
}

void TLayerImport::CountAdded(const TMapElement* element) {
    if (element != nullptr && m_pReport != nullptr) m_pReport->CountAdded(element->m_dwType);
}

void TLayerImport::AddElement(TMapElement* element) {
    const std::uint32_t type = element->m_dwType;
    const std::size_t before = m_Layer.m_Elements.size();
    m_Layer.AddElement(element, ADD_ELEMENT_OWNED);  // destroys the element when it cannot take it
    if (m_Layer.m_Elements.size() > before && m_pReport != nullptr) m_pReport->CountAdded(type);
}

void TLayerImport::AddPoint(const tagLOC& loc, const TChosen& chosen) {
    const bool marker =
        IsKind(chosen.strKind, "marker") || (!IsKind(chosen.strKind, "point") && !chosen.strName.empty());
    TMapElement* element = nullptr;
    if (marker) {
        auto* m = new TFeatureMarker;
        m->m_strName = chosen.strName;
        m->SetLowBits(chosen.iSymbol);
        m->m_Loc = loc;
        element = m;
    } else {
        auto* point = new TFeaturePoint;
        point->m_Loc = loc;
        element = point;
    }
    element->m_strId = chosen.strId;
    element->CalculateGeoExtents();
    AddElement(element);
}

void TLayerImport::AddLine(const std::vector<tagLOC>& positions, int kind, int bound, bool ring,
                           const TChosen& chosen) {
    const int count = static_cast<int>(positions.size());
    const bool close = ring && (positions.front().dLat != positions.back().dLat ||
                                positions.front().dLon != positions.back().dLon);
    m_Layer.m_dValue = chosen.bHasValue ? chosen.dValue : m_dLayerValue;
    CountAdded(AddImportedLine(&m_Layer, kind, bound, count, positions.data(), chosen.strId.c_str(), close,
                               chosen.dwColor, false, false, chosen.bHasColor));
}

void TLayerImport::AddPattern(std::unique_ptr<TFeaturePattern> pattern) {
    if (pattern != nullptr) AddElement(pattern.release());
}

void TLayerImport::Finish() {
    AddPattern(m_Patterns.Finish());
}

bool TLayerImport::Add(const TExchangeFeature& feature, long long place) {
    if (m_bCancelled) return false;
    if (feature.bHadHeights) Skip(LOAD_HEIGHTS_DROPPED, place);
    if (feature.bTextCutAtNul) Skip(LOAD_TEXT_CUT_AT_NUL, place);
    const TChosen chosen = ChooseValues(feature);
    // Swath lines come between the features of their pattern, which they do not end.
    if (IsKind(chosen.strKind, KIND_SWATH_LINE)) {
        Skip(LOAD_FEATURE_SWATH_LINE, place);
        return true;
    }
    const bool pattern = TPatternGatherer::IsPatternFeature(feature.Properties);
    if (!pattern) Finish();  // a pattern's features follow each other
    if (IsKind(chosen.strKind, KIND_SPRAY_SWATH) || IsKind(chosen.strKind, KIND_NONSPRAY_PATH)) {
        Skip(LOAD_FEATURE_SPRAY_DISPLAY, place);
        return true;
    }
    for (const TExchangeGeometry& geometry : feature.Geometries)
        for (const std::vector<tagLOC>& part : geometry.Parts)
            if (!AreGeographic(part, place)) return !m_bCancelled;
    if (pattern) {
        AddPattern(m_Patterns.Add(feature, chosen.strId));
        return true;
    }
    if (feature.Geometries.empty()) {
        if (!feature.bGeometryPassedOver) Skip(LOAD_FEATURE_NO_GEOMETRY, place);
        return true;
    }
    for (const TExchangeGeometry& geometry : feature.Geometries) {
        switch (geometry.eKind) {
            case GEOMETRY_POINT:
                for (const std::vector<tagLOC>& part : geometry.Parts)
                    if (!part.empty()) AddPoint(part.front(), chosen);
                break;
            case GEOMETRY_LINE:
                for (const std::vector<tagLOC>& part : geometry.Parts) {
                    if (part.size() < 2) {
                        Skip(LOAD_FEATURE_BAD_GEOMETRY, place, "a line of fewer than 2 positions");
                        continue;
                    }
                    AddLine(part, LineKind(chosen.strKind, static_cast<int>(ELEMENT_LINE_GENERIC)),
                            chosen.iBound != 0 ? chosen.iBound : BOUNDARY_OPEN, false, chosen);
                }
                break;
            case GEOMETRY_POLYGON:
                for (std::size_t ring = 0; ring < geometry.Parts.size(); ++ring) {
                    const std::vector<tagLOC>& part = geometry.Parts[ring];
                    if (part.size() < 3) {
                        Skip(LOAD_FEATURE_BAD_GEOMETRY, place, "a ring of fewer than 3 positions");
                        continue;
                    }
                    const int outerBound = chosen.iBound != 0 ? chosen.iBound : BOUNDARY_INC;
                    TChosen values = chosen;
                    // A hole shares its polygon's id and value; its colour is not the polygon's.
                    if (ring > 0) {
                        values.bHasColor = false;
                        values.dwColor = COLOR_NONE;
                    }
                    AddLine(part, LineKind(chosen.strKind, static_cast<int>(ELEMENT_LINE_BOUNDARY)),
                            ring == 0 ? outerBound : BOUNDARY_EXC, true, values);
                }
                break;
        }
    }
    return true;
}
