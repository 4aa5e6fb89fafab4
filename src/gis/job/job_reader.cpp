// Reading a JOB file: the header lines, markers and patterns; boundary and polyline bodies
// are read by job_line_reader.cpp.

#include <memory>
#include <new>
#include <string>

#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/platform/numbers.h>
#include "gis/coordinate_transform.h"
#include "gis/job/job_body.h"
#include "gis/load_recording.h"
#include "platform/no_throw.h"
#include "platform/units.h"

namespace {
// A marker symbol outside 0 to 9 and 31 to 45 is shown as this one.
constexpr int kUnknownSymbol = 132;

bool IsUsableSymbol(int symbol) {
    return (symbol >= 0 && symbol <= 9) || (symbol >= 31 && symbol <= 45);
}

// Symbol types of the pattern points: 57, 58 and 59 for A, B and C, then 31 onwards for D to R.
int PatternPointSymbol(int index) {
    return index < 3 ? 57 + index : 31 + (index - 3);
}

// Applies one pattern body line to the pattern; false when the line means nothing to it.
bool ApplyPatternLine(TFeaturePattern& pattern, const std::string& llb, const std::string& patternId,
                      TLoadReport* report) {
    const std::string_view key = JobToken(0);
    struct TKindRule {
        const char* keyword;
        std::size_t compared;  // 0: the whole token
        int kind;
    };
    // Tested in this order, so QUICKTRACK_X is not taken for QUICK nor BACK_TO_BACK_SKIP for
    // BACK_TO_BACK.
    static const TKindRule kKinds[] = {
        {"BACK_TO_BACK", 0, BACK_TO_BACK},
        {"RACETRACK", 3, RACETRACK},
        {"QUICK", 0, QUICK},
        {"REVERSE_RACETRACK", 3, REVERSE_RACETRACK},
        {"SQUEEZE", 3, SQUEEZE},
        {"EXPAND", 3, EXPAND},
        {"MULTI_BACK_TO_BACK", 3, MULTI_BACK_TO_BACK},
        {"BACK_TO_BACK_SKIP", 16, BACK_TO_BACK_SKIP},
        {"QUICKTRACK_X", 8, QUICKTRACK_X},
    };
    for (const TKindRule& rule : kKinds) {
        const std::string_view keyword(rule.keyword);
        const bool match = rule.compared == 0 ? EqualsNoCase(key, keyword)
                                              : StartsWithNoCase(key, keyword.substr(0, rule.compared));
        if (match) {
            pattern.m_iKind = rule.kind;
            return true;
        }
    }
    if (StartsWithNoCase(key, "LEF")) {
        pattern.m_iDirection = LEFT;
    } else if (StartsWithNoCase(key, "RIG")) {
        pattern.m_iDirection = RIGHT;
    } else if (StartsWithNoCase(key, "SWI")) {
        pattern.m_dSwathWidth = ParseDouble(JobToken(1)) * METRES_PER_FOOT;
    } else if (StartsWithNoCase(key, "FIE")) {
        pattern.m_dFieldWidth = ParseDouble(JobToken(1)) * METRES_PER_FOOT;
    } else if (StartsWithNoCase(key, "OFF")) {
        pattern.m_dOffset = ParseDouble(JobToken(1)) * METRES_PER_FOOT;
    } else if (StartsWithNoCase(key, "ABL")) {
        pattern.m_iAbLines = ParseInt(JobToken(1));
    } else if (key.size() == 1 && ((key[0] >= 'A' && key[0] <= 'R') || (key[0] >= 'a' && key[0] <= 'r'))) {
        const int index = (key[0] >= 'a' ? key[0] - 'a' : key[0] - 'A');
        TFeatureMarker& point = pattern.m_aPoint[index];
        double lat = ParseDouble(JobToken(1)), lon = ParseDouble(JobToken(2));
        // Points take any position; only one the host's transform cannot map is refused.
        if (!MapCoordinatePair(lat, lon)) {
            if (report != nullptr) report->Skip(LOAD_COORD_UNMAPPED, GetJobLine());
            return true;
        }
        point.m_Loc = TLoc(lat, lon);
        point.SetLowBits(PatternPointSymbol(index));
        point.m_strName = llb + "-" + patternId + std::string(key);
        point.CalculateGeoExtents();
    } else {
        return false;
    }
    return true;
}
}  // namespace

bool TGisFileJob::IsValidFile(const char* path) {
    return HasFileExtension(path, "JOB");
}

int TGisFileJob::ReadJobLine(TTextFile& file) {
    return ReadJobTokens(file) ? 1 : 0;
}

void TGisFileJob::ReadMarker(TTextFile& file, TMapLayer* layer) {
    std::unique_ptr<TFeatureMarker> marker(new (std::nothrow) TFeatureMarker);
    if (!marker) return;
    marker->m_strId = JobToken(1);
    marker->m_strName = JobToken(2);
    ReadJobBody(file, [&]() {
        if (StartsWithNoCase(JobToken(0), "TYP")) {
            bool ok = false;
            const int symbol = ParseInt(JobToken(1), &ok);
            marker->SetLowBits(ok && IsUsableSymbol(symbol) ? symbol : kUnknownSymbol);
            return true;
        }
        double lat = ParseDouble(JobToken(0));
        double lon = ParseDouble(JobToken(1));
        MapCoordinatePair(lat, lon);
        if (IsAcceptedJobCoordinate(lat, lon))
            marker->m_Loc = TLoc(lat, lon);
        else if (m_pLoadReport != nullptr)
            m_pLoadReport->Skip(RefusedCoordinateCause(lat, lon, false), GetJobLine());
        return true;
    });
    marker->CalculateGeoExtents();
    NoteAdded(m_pLoadReport, marker.get());
    layer->AddElement(marker.release(), ADD_ELEMENT_OWNED);
}

void TGisFileJob::ReadPattern(TTextFile& file, TMapLayer* layer) {
    std::unique_ptr<TFeaturePattern> pattern(new (std::nothrow) TFeaturePattern);
    if (!pattern) return;
    const std::string patternId(JobToken(1));
    pattern->m_strId = patternId;
    ReadJobBody(file, [&]() {
        ApplyPatternLine(*pattern, m_strLLB, patternId, m_pLoadReport);
        return true;
    });
    pattern->m_bModified = false;
    pattern->CalculateGeoExtents();
    NoteAdded(m_pLoadReport, pattern.get());
    layer->AddElement(pattern.release(), ADD_ELEMENT_OWNED);
}

void TGisFileJob::NoteIgnoredLine(std::string_view key, bool& inUnknownRecord) {
    if (!key.empty() && key[0] == '.') {
        inUnknownRecord = true;
        if (m_pLoadReport->Skip(LOAD_UNKNOWN_RECORD, GetJobLine()))
            m_pLoadReport->SetFirstNote(LOAD_UNKNOWN_RECORD, TLoadReport::EscapeText(key));
    } else if (!key.empty() && !inUnknownRecord) {
        m_pLoadReport->Skip(LOAD_STRAY_LINE, GetJobLine());
    }
}

int TGisFileJob::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return RunWithoutThrowing([&] { return ReadJob(path, layer, progress); }, [&] { ReleaseLocArray(); });
}

int TGisFileJob::ReadJob(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    const int provisional = TGisFile::LoadFile(path, layer, progress);
    StartLoadReport(m_pLoadReport, LOAD_PLACE_LINE);
    m_iVersion = 0;
    if (layer == nullptr) return GISFILE_ERR_OPEN;
    TTextFile file;
    if (!file.Open(path, TTextFile::modeRead)) return GISFILE_ERR_OPEN;
    m_pLayer = layer;
    SetJobNextLine(1);

    int lineNumber = 0;
    bool inUnknownRecord = false;  // the lines after a record line of an unknown keyword are its own
    for (bool end = ReadJobLine(file) != 0; !end; end = ReadJobLine(file) != 0) {
        ++lineNumber;
        const std::string_view key = JobToken(0);
        if (!key.empty() && key[0] == '.') inUnknownRecord = false;
        if (lineNumber == 1) {
            if (!StartsWithNoCase(key, ".JOB")) {
                if (m_pLoadReport != nullptr)
                    m_pLoadReport->Stop(1, false, "the first line does not start with \".JOB\"");
                return GISFILE_ERR_OPEN;
            }
            m_strJobName = JobToken(1);
            m_strLLB = JobToken(2);
        } else if (StartsWithNoCase(key, ".VE")) {
            m_iVersion = ParseInt(JobToken(1));
        } else if (StartsWithNoCase(key, ".JN")) {
            m_strJobName = JobToken(1);
        } else if (StartsWithNoCase(key, ".LL")) {
            m_strLLB = JobToken(1);
        } else if (StartsWithNoCase(key, ".PA")) {
            ReadPattern(file, layer);
        } else if (StartsWithNoCase(key, ".MA")) {
            ReadMarker(file, layer);
        } else if (StartsWithNoCase(key, ".PO") || StartsWithNoCase(key, ".GP")) {
            // The body overwrites the tokens, so the id and name are copied first.
            const std::string id(JobToken(1)), name(JobToken(2));
            if (StartsWithNoCase(key, ".PO"))
                ReadPolygon(file, layer, id.c_str(), name.c_str(), m_pLoadReport);
            else
                ReadPolyline(file, layer, id.c_str(), name.c_str(), m_pLoadReport);
        } else if (m_pLoadReport != nullptr) {
            NoteIgnoredLine(key, inUnknownRecord);
        }
        layer->m_strLLB = m_strLLB;
        UpdateProgressControl(file);
    }
    return provisional;
}
