// JOB additions to the tool: the writer's header version, reduction option and decimation
// tolerance, and what `info` reports of spray patterns.

#include <cmath>
#include <string>

#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/numbers.h>
#include "extensions.h"
#include "json_writer.h"
#include "layer_report.h"

namespace {
bool ParseWhole(const std::string& text, int low, int high, int& out) {
    bool ok = false;
    const long long v = ParseInt64(text, &ok);
    if (!ok || v < low || v > high || text.find_first_not_of("0123456789") != std::string::npos) return false;
    out = static_cast<int>(v);
    return true;
}

bool ApplyJobOptions(const TToolOptions& options, std::string& error) {
    int version = 1;
    if (options.HasValue("job-version") && !ParseWhole(options.Get("job-version"), 1, 3, version)) {
        error = "--job-version takes 1, 2 or 3, not '" + options.Get("job-version") + "'";
        return false;
    }
    TGisFile::s_iGisFileFormat = version - 1;
    if (options.HasValue("reduction")) {
        int option = 0;
        if (!ParseWhole(options.Get("reduction"), 0, 3, option)) {
            error = "--reduction takes 0, 1, 2 or 3, not '" + options.Get("reduction") + "'";
            return false;
        }
        TGisFile::s_iCompatible = option;
    }
    if (options.HasValue("decimation-m")) {
        const std::string text = options.Get("decimation-m");
        bool ok = false;
        const double metres = ParseDouble(text, &ok);
        if (!ok || !std::isfinite(metres) || metres < 0.0) {
            error = "--decimation-m takes a distance in metres of 0 or more, not '" + text + "'";
            return false;
        }
        TGisFile::s_dDecimationLimitM = metres;
    }
    return true;
}

bool DescribePattern(TJsonWriter& json, const TMapElement& element, const TReportOptions&) {
    const auto* pattern = dynamic_cast<const TFeaturePattern*>(&element);
    if (pattern == nullptr) return false;
    const char* kind = GetPatternKindKeyword(pattern->m_iKind);
    json.Key("pattern_kind").String(kind != nullptr ? kind : std::to_string(pattern->m_iKind));
    json.Key("direction").String(pattern->m_iDirection == LEFT ? "LEFT" : "RIGHT");
    json.Key("swath_width_m").Number(pattern->m_dSwathWidth);
    json.Key("field_width_m").Number(pattern->m_dFieldWidth);
    json.Key("offset_m").Number(pattern->m_dOffset);
    json.Key("ab_lines").Integer(pattern->m_iAbLines);
    json.Key("points").BeginObject();
    for (int i = 0; i < PATTERN_POINT_COUNT; ++i) {
        const TFeatureMarker& point = pattern->m_aPoint[i];
        if (!IsPatternPointValid(point.m_Loc)) continue;
        json.Key(std::string(1, static_cast<char>('A' + i))).Pair(point.m_Loc.dLat, point.m_Loc.dLon);
    }
    json.EndObject();
    return true;
}

void DescribePatternsText(std::string& out, const TMapLayer& layer) {
    for (const TMapElement* element : layer.m_Elements) {
        const auto* pattern = dynamic_cast<const TFeaturePattern*>(element);
        if (pattern == nullptr) continue;
        const char* kind = GetPatternKindKeyword(pattern->m_iKind);
        out += "Pattern " + pattern->m_strId + ": " +
               (kind != nullptr ? kind : std::to_string(pattern->m_iKind)) +
               (pattern->m_iDirection == LEFT ? " LEFT" : " RIGHT") + ", swath " +
               FormatFixed(pattern->m_dSwathWidth, 4) + " m, field " +
               FormatFixed(pattern->m_dFieldWidth, 4) + " m, offset " + FormatFixed(pattern->m_dOffset, 4) +
               " m, AB lines " + std::to_string(pattern->m_iAbLines) + "\n";
        for (int i = 0; i < PATTERN_POINT_COUNT; ++i) {
            const TFeatureMarker& point = pattern->m_aPoint[i];
            if (!IsPatternPointValid(point.m_Loc)) continue;
            out += std::string("  ") + static_cast<char>('A' + i) + " " + FormatFixed(point.m_Loc.dLat, 6) +
                   " " + FormatFixed(point.m_Loc.dLon, 6) + "\n";
        }
    }
}

const int kJobExtension = RegisterToolExtension({
    .name = "job",
    .valueOptions = {"job-version", "reduction", "decimation-m"},
    .flagOptions = {},
    .convertHelp = {"--job-version 1|2|3     JOB header version written (default 1)",
                    "--reduction 0|1|2|3     how JOB lines fit the limits: 0 all limits, 1 line limits,",
                    "                        2 decimate by --decimation-m and warn (library default), 3 none",
                    "--decimation-m METRES   JOB decimation tolerance of reduction 2 (default 0)"},
    .applyWriteOptions = &ApplyJobOptions,
    .augmentLayer = {},
    .describeElementJson = &DescribePattern,
    .describeLayerJson = {},
    .describeLayerText = &DescribePatternsText,
    .writeLayer = {},
    .afterWrite = {},
});
}  // namespace
