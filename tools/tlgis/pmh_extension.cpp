// PMH additions to the tool: the header values in `info`, the units a conversion writes, and
// after a conversion to PMH a note of the elements a rate map cannot hold.

#include <map>
#include <string>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/platform/numbers.h>
#include "extensions.h"
#include "json_writer.h"
#include "layer_report.h"
#include "session.h"

namespace {
bool HasPmhHeader(const TMapLayer& layer) {
    return !layer.m_strPmhField1.empty() || layer.m_dPmhField2 != 0.0 || !layer.m_strPmhField3.empty() ||
           layer.m_dPmhField4 != 0.0 || !layer.m_strPmhField5.empty() || layer.m_dPmhLine2 != 0.0 ||
           layer.m_dPmhLine3 != 0.0 || layer.m_dPmhLine4 != 0.0 || layer.m_dPmhLine5 != 0.0 ||
           layer.m_iPmhLine6 != 0 || layer.m_iPmhLine7 != 0 || !layer.m_strPmhLine10.empty() ||
           layer.m_dRateMid != 0.0 || layer.m_dRateMin != 0.0 || layer.m_dRateMax != 0.0 ||
           !layer.m_strPmhLine30.empty() || layer.m_iRateUnits != 0;
}

// Every header value the reader keeps, under the line it comes from.
void DescribePmhJson(TJsonWriter& json, const TMapLayer& layer) {
    json.Key("pmh").BeginObject();
    json.Key("field1").String(layer.m_strPmhField1);
    json.Key("field2").Number(layer.m_dPmhField2);
    json.Key("field3").String(layer.m_strPmhField3);
    json.Key("field4").Number(layer.m_dPmhField4);
    json.Key("field5").String(layer.m_strPmhField5);
    json.Key("line2").Number(layer.m_dPmhLine2);
    json.Key("line3").Number(layer.m_dPmhLine3);
    json.Key("line4").Number(layer.m_dPmhLine4);
    json.Key("line5").Number(layer.m_dPmhLine5);
    json.Key("line6").Integer(layer.m_iPmhLine6);
    json.Key("line7").Integer(layer.m_iPmhLine7);
    json.Key("line10").String(layer.m_strPmhLine10);
    json.Key("rate_mid").Number(layer.m_dRateMid);
    json.Key("rate_min").Number(layer.m_dRateMin);
    json.Key("rate_max").Number(layer.m_dRateMax);
    json.Key("line30").String(layer.m_strPmhLine30);
    json.Key("rate_units").Integer(layer.m_iRateUnits);
    json.EndObject();
}

void DescribePmhText(std::string& out, const TMapLayer& layer) {
    if (!HasPmhHeader(layer)) return;
    out += "PMH line 1: '" + layer.m_strPmhField1 + "' " + FormatRoundTrip(layer.m_dPmhField2) + " '" +
           layer.m_strPmhField3 + "' " + FormatRoundTrip(layer.m_dPmhField4) + " '" + layer.m_strPmhField5 +
           "'\n";
    out += "PMH lines 2-7: " + FormatRoundTrip(layer.m_dPmhLine2) + " " + FormatRoundTrip(layer.m_dPmhLine3) +
           " " + FormatRoundTrip(layer.m_dPmhLine4) + " " + FormatRoundTrip(layer.m_dPmhLine5) + " " +
           std::to_string(layer.m_iPmhLine6) + " " + std::to_string(layer.m_iPmhLine7) + "\n";
    out += "PMH line 10: '" + layer.m_strPmhLine10 + "', line 30: '" + layer.m_strPmhLine30 + "'\n";
    out += "Rates:    mid " + FormatFixed(layer.m_dRateMid, 4) + ", min " + FormatFixed(layer.m_dRateMin, 4) +
           ", max " + FormatFixed(layer.m_dRateMax, 4) + ", units " + std::to_string(layer.m_iRateUnits) +
           "\n";
}

// --pmh-units CODE: the rate units written on line 31, for layers that come from other formats.
bool ParseRateUnits(const TToolOptions& options, int& units, std::string& error) {
    const std::string text = options.Get("pmh-units");
    units = ParseInt(text);
    if (GetPmhUnitsText(units) != nullptr && text.find_first_not_of("0123456789") == std::string::npos)
        return true;
    error = "--pmh-units takes 1, 2, 8 or 10, not '" + text + "'";
    return false;
}

bool CheckRateUnits(const TToolOptions& options, std::string& error) {
    int units = 0;
    return !options.HasValue("pmh-units") || ParseRateUnits(options, units, error);
}

bool SetRateUnits(TMapLayer& layer, const TToolOptions& options, std::string& error) {
    if (!options.HasValue("pmh-units")) return true;
    return ParseRateUnits(options, layer.m_iRateUnits, error);
}

// The writer takes line features only; say how many other elements stayed behind, and warn
// when the file has no units line (a reader then takes the first ".POL" for it). The complete
// profile writes that line blank.
void NoteAfterWrite(const std::string& out, const TMapLayer& layer, const TToolOptions&) {
    if (TGisMap::GetGisFileType(out.c_str()) != GIS_FILE_PMH) return;
    if (!TGisFile::s_bCompleteProfile && GetPmhUnitsText(layer.m_iRateUnits) == nullptr)
        PrintNote(
            "units code " + std::to_string(layer.m_iRateUnits) +
            " has no units line, so the first polygon will not read back; give --pmh-units 1, 2, 8 or 10");
    std::map<std::string, int> leftOut;
    int total = 0;
    for (const TMapElement* element : layer.m_Elements) {
        if (AsPmhPolygon(element) != nullptr) continue;
        ++leftOut[ElementKindName(*element)];
        ++total;
    }
    if (total == 0) return;
    std::string note = std::to_string(total) + (total == 1 ? " element" : " elements") +
                       " left out of the PMH file, which holds polygons only (";
    bool first = true;
    for (const auto& [kind, count] : leftOut) {
        note += (first ? "" : ", ") + kind + " " + std::to_string(count);
        first = false;
    }
    PrintNote(note + ")");
}

// Set member by member, so that members the tool adds to extensions later keep their defaults.
TToolExtension MakePmhExtension() {
    TToolExtension ext;
    ext.name = "pmh";
    ext.valueOptions = {"pmh-units"};
    ext.convertHelp = {"--pmh-units 1|2|8|10    PMH rate units: US gal/acre, lbs/acre, litres/ha, kg/ha"};
    ext.applyWriteOptions = &CheckRateUnits;
    ext.augmentLayer = &SetRateUnits;
    ext.describeLayerJson = &DescribePmhJson;
    ext.describeLayerText = &DescribePmhText;
    ext.afterWrite = &NoteAfterWrite;
    return ext;
}

const int kPmhExtension = RegisterToolExtension(MakePmhExtension());
}  // namespace
