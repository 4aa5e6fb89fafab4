// Writing a layer as a JOB file: header, markers, patterns, and the lines fitted into the
// limits of the format (500 lines, fewer than 999 vertices each, 98,901 in all).

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <string>

#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/text_file.h>
#include "gis/job/job_decimation.h"
#include "gis/job/job_name.h"
#include "gis/job/job_records.h"
#include "gis/text_format.h"
#include "gis/text_ids.h"
#include "platform/no_throw.h"
#include "platform/units.h"

namespace {
constexpr int kMaxLines = 500;
constexpr int kVertexLimit = 999;  // a line must stay below it
constexpr int kMaxTotalVertices = 98901;

// Working state of one write.
struct TJobWriteState {
    int iMarkers = 0;
    int iPatterns = 0;
    int iBoundaries = 0;  // boundary and area lines
    int iGenerics = 0;
    bool bContinue = true;  // option 0: clear once the vertex total was reached
};

// The number at the start of an element's id, or its position among its kind when it has none.
long RecordId(const std::string& id, int counter) {
    return id.empty() ? counter : ParseInt(id);
}

void AppendRecordLine(std::string& out, const char* keyword, long id, const std::string& text) {
    out += keyword;
    out += ' ';
    AppendInt(out, id);
    out += ' ';
    out += text;
    out += '\n';
}

void AppendHeader(std::string& out, int format, const TJobFileName& name, const std::string& llb) {
    if (format == GISFILE_JOB_V3) {
        out += ".JOB 9999 9999\n.VERSION 3\n.JNM " + name.strJobName + "\n.LLB " + llb + "\n\n";
        return;
    }
    const bool v2 = format == GISFILE_JOB_V2;
    AppendRecordLine(out, ".JOB", name.lJobNumber, v2 ? llb : name.strBase);
    out += v2 ? ".VERSION 2\n\n" : ".VERSION 1\n\n";
}

void AppendMarker(std::string& out, const TFeatureMarker& marker, long id) {
    AppendRecordLine(out, ".MAR", id, marker.m_strName);
    const int symbol = marker.GetLowBits();
    const bool usable = (symbol >= 0 && symbol <= 9) || (symbol >= 31 && symbol <= 45);
    out += "\tTYPE ";
    AppendInt(out, usable ? symbol : 0);
    out += '\n';
    AppendJobCoordinateLine(out, marker.m_Loc);
}

void AppendWidthLine(std::string& out, const char* keyword, double metres) {
    out += '\t';
    out += keyword;
    out += ' ';
    AppendFixed(out, metres * FEET_PER_METRE, 4);
    out += '\n';
}

void AppendPattern(std::string& out, TFeaturePattern& pattern, long id) {
    AppendRecordLine(out, ".PAT", id, pattern.m_strId);
    // These kinds have no point C of their own; it is cleared in the element so that it is
    // never written for them.
    if (pattern.m_iKind == BACK_TO_BACK || pattern.m_iKind == EXPAND || pattern.m_iKind == BACK_TO_BACK_SKIP)
        pattern.m_aPoint[2].m_Loc = TLoc(0.0, 0.0);
    const char* keyword = GetPatternKindKeyword(pattern.m_iKind);
    out += '\t';
    out += keyword != nullptr ? keyword : GetPatternKindKeyword(BACK_TO_BACK);
    out += pattern.m_iDirection == LEFT ? "\n\tLEFT\n" : "\n\tRIGHT\n";
    AppendWidthLine(out, "SWIDTH", pattern.m_dSwathWidth);
    AppendWidthLine(out, "FIELD_WIDTH", pattern.m_dFieldWidth);
    AppendWidthLine(out, "OFFSET", pattern.m_dOffset);

    bool written[PATTERN_POINT_COUNT] = {};
    int abLines = 0;
    auto valid = [&](int i) { return IsPatternPointValid(pattern.m_aPoint[i].m_Loc); };
    // A-B, E-F, G-H ... Q-R go out as pairs only; C and D alone. C does not count as a line.
    for (int first = 0; first < PATTERN_POINT_COUNT; first += 2) {
        if (first == 2) continue;
        if (valid(first) && valid(first + 1)) {
            written[first] = written[first + 1] = true;
            ++abLines;
        }
    }
    written[2] = valid(2);
    written[3] = valid(3);
    if (written[3]) ++abLines;

    out += "\tABLINES  ";
    AppendInt(out, abLines);
    out += '\n';
    for (int i = 0; i < PATTERN_POINT_COUNT; ++i) {
        if (!written[i]) continue;
        out += '\t';
        out += static_cast<char>('A' + i);
        out += ' ';
        AppendFixed(out, pattern.m_aPoint[i].m_Loc.dLat, 6);
        out += ' ';
        AppendFixed(out, pattern.m_aPoint[i].m_Loc.dLon, 6);
        out += '\n';
    }
}

std::string SummaryText(int firstTextId) {
    std::string text = GetText(firstTextId);
    text += '\n';
    text += GetText(TEXT_JOB_SUMMARY_1);
    text += '"';
    text += GetText(TEXT_JOB_SUMMARY_2);
    text += "\" ";
    text += GetText(TEXT_JOB_SUMMARY_3);
    return text;
}

void ShowNameError(const TJobFileName& name) {
    std::string format = "%s%s\n";
    format += GetText(TEXT_JOB_NAME_ERROR);
    format += '\n';
    format += GetText(name.iErrorText);
    ShowMessageBox(FormatText(format, {name.strBase, name.strRest}), GetText(TEXT_CAPTION),
                   MSGBOX_OK | MSGBOX_ICONEXCLAMATION, name.iErrorText);
}

tagLOC* CopyVertices(const TFeatureLine& line) {
    tagLOC* copy = new (std::nothrow) tagLOC[static_cast<std::size_t>(line.m_iNumPoints)];
    if (copy != nullptr) std::copy(line.m_pPoints, line.m_pPoints + line.m_iNumPoints, copy);
    return copy;
}
}  // namespace

// Writes one boundary, area or generic line as the reduction option asks; false when memory
// for its vertex copy could not be had.
class TJobLineFitter {
public:
    TJobLineFitter(TGisFileJob& job, TJobWriteState& state, TTextFile& file)
        : m_job(job), m_state(state), m_file(file) {}

    bool Write(const TFeatureLine& line, bool generic) {
        if (line.m_iNumPoints < 2 || line.m_pPoints == nullptr) return true;
        int& counter = generic ? m_state.iGenerics : m_state.iBoundaries;
        ++counter;
        const int option = TGisFile::s_iCompatible;
        if (option == REDUCE_ALL_LIMITS || option == REDUCE_LINE_LIMITS)
            return WithinLimits(line, generic, counter);
        std::unique_ptr<tagLOC[]> copy(CopyVertices(line));
        if (!copy) return false;
        int count = line.m_iNumPoints;
        if (option != REDUCE_NONE) {
            count =
                DecimateLocArray(copy.get(), count, TGisFile::s_dDecimationLimitM * JOB_DEGREES_PER_METRE);
            m_job.m_iJobVertices += count;
            if (count > kVertexLimit)
                m_job.m_abJobWarnings[JOB_WARN_TOO_MANY_VERTICES] =
                    m_job.m_abJobWarnings[JOB_WARN_TOO_MANY_VERTICES_2] = true;
            if (counter > kMaxLines)
                m_job.m_abJobWarnings[JOB_WARN_TOO_MANY_LINES] =
                    m_job.m_abJobWarnings[JOB_WARN_TOO_MANY_LINES_2] = true;
            if (m_job.m_iJobVertices > kMaxTotalVertices)
                m_job.m_abJobWarnings[JOB_WARN_TOTAL_EXCEEDED] =
                    m_job.m_abJobWarnings[JOB_WARN_TOTAL_EXCEEDED_2] = true;
        }
        Emit(line, generic, counter, count, copy.release());
        return true;
    }

    void Emit(const TFeatureLine& line, bool generic, int number, int count, tagLOC* vertices);

private:
    // Options 0 and 1: lines past the 500th are dropped, long lines decimated until they fit,
    // and with option 0 writing stops at the vertex total.
    bool WithinLimits(const TFeatureLine& line, bool generic, int counter) {
        const bool stopAtTotal = TGisFile::s_iCompatible == REDUCE_ALL_LIMITS;
        if (stopAtTotal && !m_state.bContinue) {
            m_job.m_bJobReduced = m_job.m_abJobWarnings[JOB_WARN_LINE_REDUCED] = true;
            return true;
        }
        if (counter > kMaxLines) {
            m_job.m_bJobReduced = true;
            m_job.m_iJobPolygons = kMaxLines;
            m_job.m_abJobWarnings[JOB_WARN_LINE_DROPPED] = true;
            return true;
        }
        m_job.m_iJobPolygons = counter;
        std::unique_ptr<tagLOC[]> copy(CopyVertices(line));
        if (!copy) return false;
        int count = line.m_iNumPoints;
        const bool reduced = count >= kVertexLimit;
        if (reduced) {
            m_job.m_bJobReduced = m_job.m_abJobWarnings[JOB_WARN_LINE_REDUCED] = true;
            count = ReduceBelowVertexLimit(copy.get(), count, kVertexLimit);
            if (count < 0) {
                // No tolerance brings this line under the limit (coordinates out of all
                // proportion, or no memory to rank its vertices): it is left out.
                --m_job.m_iJobPolygons;
                return true;
            }
        }
        m_job.m_iJobVertices += count;
        if (stopAtTotal && m_job.m_iJobVertices > kMaxTotalVertices) {
            m_job.m_iJobVertices -= count;
            --m_job.m_iJobPolygons;
            m_state.bContinue = false;
            return true;
        }
        Emit(line, generic, counter, count, copy.release());
        return true;
    }

    TGisFileJob& m_job;
    TJobWriteState& m_state;
    TTextFile& m_file;
};

int TGisFileJob::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteJob(path, layer); });
}

int TGisFileJob::WriteJob(const char* path, TMapLayer* layer) {
    const TJobFileName name = ParseJobFileName(path, s_iGisFileFormat);
    if (name.iErrorText != 0) {
        ShowNameError(name);
        return JOBFILE_ERR_NAME;
    }
    TTextFile file;
    if (!file.Open(path, TTextFile::modeCreate)) return JOBFILE_ERR_CREATE;

    std::string out;
    AppendHeader(out, s_iGisFileFormat, name, layer != nullptr ? layer->m_strLLB : std::string());
    file.WriteString(out);

    TJobWriteState state;
    TJobLineFitter fitter(*this, state, file);
    if (layer != nullptr) {
        for (TMapElement* element : layer->m_Elements) {
            if (element == nullptr) continue;
            out.clear();
            switch (element->GetKind()) {
                case ELEMENT_MARKER:
                    if (const auto* marker = dynamic_cast<const TFeatureMarker*>(element)) {
                        ++state.iMarkers;
                        AppendMarker(out, *marker, RecordId(marker->m_strId, state.iMarkers));
                    }
                    break;
                case ELEMENT_PATTERN:
                    if (auto* pattern = dynamic_cast<TFeaturePattern*>(element)) {
                        ++state.iPatterns;
                        AppendPattern(out, *pattern, RecordId(pattern->m_strId, state.iPatterns));
                    }
                    break;
                case ELEMENT_LINE_BOUNDARY:
                case ELEMENT_LINE_AREA:
                case ELEMENT_LINE_GENERIC:
                    if (const auto* line = dynamic_cast<const TFeatureLine*>(element)) {
                        if (!fitter.Write(*line, element->GetKind() == ELEMENT_LINE_GENERIC)) {
                            ShowMessageBox(GetText(TEXT_JOB_COPY_MEMORY), GetText(TEXT_CAPTION),
                                           MSGBOX_OK | MSGBOX_ICONEXCLAMATION, TEXT_JOB_COPY_MEMORY);
                            return GISFILE_ERR_DATA;
                        }
                    }
                    break;
                default:
                    break;
            }
            if (!out.empty()) file.WriteString(out);
        }
    }

    switch (s_iCompatible) {
        case REDUCE_ALL_LIMITS:
        case REDUCE_LINE_LIMITS:
            if (m_abJobWarnings[JOB_WARN_LINE_DROPPED] || m_abJobWarnings[JOB_WARN_LINE_REDUCED]) {
                const int first =
                    s_iCompatible == REDUCE_ALL_LIMITS ? TEXT_JOB_SUMMARY_A : TEXT_JOB_SUMMARY_B;
                ShowMessageBox(SummaryText(first), GetText(TEXT_CAPTION), MSGBOX_OK, first);
            }
            if (m_bJobReduced)
                ShowMessageBox(FormatText(GetText(TEXT_JOB_REDUCED), {m_iJobPolygons, m_iJobVertices}),
                               GetText(TEXT_CAPTION), MSGBOX_OK | MSGBOX_ICONINFORMATION, TEXT_JOB_REDUCED);
            break;
        case REDUCE_BY_TOLERANCE: {
            // Warnings in the order total, lines, vertices, then the three again.
            static const int kOrder[] = {JOB_WARN_TOTAL_EXCEEDED,    JOB_WARN_TOO_MANY_LINES,
                                         JOB_WARN_TOO_MANY_VERTICES, JOB_WARN_TOTAL_EXCEEDED_2,
                                         JOB_WARN_TOO_MANY_LINES_2,  JOB_WARN_TOO_MANY_VERTICES_2};
            for (int k = 0; k < static_cast<int>(std::size(kOrder)); ++k) {
                if (!m_abJobWarnings[kOrder[k]]) continue;
                const int textId = TEXT_JOB_TOTAL_EXCEEDED + k;
                std::string text = GetText(TEXT_JOB_LIMIT_WARNING);
                text += '\n';
                text += GetText(textId);
                ShowMessageBox(text, GetText(TEXT_CAPTION), MSGBOX_OK | MSGBOX_ICONEXCLAMATION, textId);
            }
            break;
        }
        default:
            break;  // no reduction, or an option of its own: nothing to report
    }
    return file.Close() ? GISFILE_OK : JOBFILE_ERR_CREATE;
}

void TJobLineFitter::Emit(const TFeatureLine& line, bool generic, int number, int count, tagLOC* vertices) {
    if (generic)
        m_job.WriteOnePolyline(number, count, &line, vertices, m_file);
    else
        m_job.WriteOnePolygon(number, count, &line, vertices, m_file);
}
