// --spray FLIGHT.csv: adds the spray runs of a flight-data file to the loaded layer, and the
// report lines and JSON members that describe spray runs.

#include <string>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/flight/flight_csv.h>
#include <tl_gis/platform/numbers.h>
#include "extensions.h"
#include "json_writer.h"
#include "layer_report.h"

namespace {
struct TSprayFacts {
    int iSamples = 0;
    int iSpraying = 0;
    std::string strStart;
    std::string strEnd;
};

TSprayFacts FactsOf(const TFeatureSpray& spray) {
    TSprayFacts facts;
    facts.iSamples = spray.m_iNumRecs;
    if (spray.m_pRecs == nullptr || spray.m_iNumRecs <= 0) return facts;
    for (int i = 0; i < spray.m_iNumRecs; ++i)
        if (spray.m_pRecs[i].bySpray != 0) ++facts.iSpraying;
    facts.strStart = FormatSprayTime(spray.m_pRecs[0]);
    facts.strEnd = FormatSprayTime(spray.m_pRecs[spray.m_iNumRecs - 1]);
    return facts;
}

bool AddFlightSpray(TMapLayer& layer, const TToolOptions& options, std::string& error) {
    if (!options.HasValue("spray")) return true;
    const std::string path = options.Get("spray");
    TFlightImport flight = ReadFlightCsvFile(path.c_str());
    if (flight.iResult != 0) {
        error = path + ": " + flight.strError;
        return false;
    }
    for (auto& spray : flight.Sprays) {
        // The sprayed area is known from the moment the run exists, as it is for recorded runs.
        spray->ComputeAllSprayStats();
        layer.AddElement(spray.release(), ADD_ELEMENT_OWNED);
    }
    return true;
}

void AppendExtents(std::string& out, const TLocRect& r) {
    if (r.IsEmpty()) {
        out += "none";
        return;
    }
    out += "west " + FormatFixed(r.dWest, 6) + ", south " + FormatFixed(r.dSouth, 6) + ", east " +
           FormatFixed(r.dEast, 6) + ", north " + FormatFixed(r.dNorth, 6);
}

bool DescribeSprayJson(TJsonWriter& json, const TMapElement& element, const TReportOptions&) {
    const auto* spray = dynamic_cast<const TFeatureSpray*>(&element);
    if (spray == nullptr) return false;
    const TSprayFacts facts = FactsOf(*spray);
    json.Key("samples").Integer(facts.iSamples);
    json.Key("spraying").Integer(facts.iSpraying);
    json.Key("start").String(facts.strStart);
    json.Key("end").String(facts.strEnd);
    json.Key("area_ha").Number(spray->m_dTotalArea);
    json.Key("extents").BeginObject();
    if (!spray->m_rcExtents.IsEmpty()) {
        json.Key("west").Number(spray->m_rcExtents.dWest);
        json.Key("south").Number(spray->m_rcExtents.dSouth);
        json.Key("east").Number(spray->m_rcExtents.dEast);
        json.Key("north").Number(spray->m_rcExtents.dNorth);
    }
    json.EndObject();
    return true;
}

void DescribeSprayText(std::string& out, const TMapLayer& layer) {
    for (const TMapElement* e : layer.m_Elements) {
        const auto* spray = dynamic_cast<const TFeatureSpray*>(e);
        if (spray == nullptr) continue;
        const TSprayFacts facts = FactsOf(*spray);
        out += "Spray run " + spray->m_strId + ": " + std::to_string(facts.iSamples) + " samples, " +
               std::to_string(facts.iSpraying) + " spraying";
        if (facts.iSamples > 0) out += ", " + facts.strStart + " to " + facts.strEnd;
        out += ", " + FormatFixed(spray->m_dTotalArea, 4) + " ha\n";
        out += "  extents: ";
        AppendExtents(out, spray->m_rcExtents);
        out += "\n";
    }
}

const int kSprayExtension = RegisterToolExtension({
    .name = "spray",
    .valueOptions = {"spray"},
    .flagOptions = {},
    .convertHelp = {"--spray FLIGHT.csv   add the spray runs of a flight-data CSV file after loading IN"},
    .applyWriteOptions = {},
    .augmentLayer = &AddFlightSpray,
    .describeElementJson = &DescribeSprayJson,
    .describeLayerJson = {},
    .describeLayerText = &DescribeSprayText,
    .writeLayer = {},
    .afterWrite = {},
});
}  // namespace
