#include <tl_gis/gis/shp/spray_table.h>

#include <tl_gis/features/spray_record.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/shp/dbf_table.h"
#include "gis/shp/swath_runs.h"
#include "platform/system_services.h"
#include "platform/units.h"

namespace {
const std::string& OrNotAvailable(const std::string& text) {
    static const std::string kNotAvailable = "N/A";
    return text.empty() ? kNotAvailable : text;
}

void AppendTwoDigits(std::string& out, int value) {
    if (value < 10) out += '0';
    AppendInt(out, value);
}

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}
}  // namespace

TSwathStretches::TSwathStretches(TFeatureSpray& spray, bool singleBlock)
    : m_Spray(spray), m_bSingleBlock(singleBlock), m_bDone(!HasSwathWidth(spray)) {}

bool TSwathStretches::Next(int& first, int& last) {
    if (m_bDone || m_iStart >= m_Spray.m_iNumRecs - 1) return false;
    int end = m_iStart;
    if (FindSwathRun(m_Spray, m_iStart, m_bSingleBlock, end) == SWATH_RUN_STOP || end - m_iStart < 1) {
        m_bDone = true;
        return false;
    }
    first = m_iStart;
    last = end;
    m_iStart = end;
    return true;
}

TLocRect TSwathStretches::RingBox(const TFeatureSpray& spray, int first, int last) {
    TLocRect box;
    box.InitExtents();
    for (int i = 0; i < RingPointCount(first, last); ++i) box.ExpandExtents(RingPoint(spray, first, last, i));
    return box;
}

TSpraySource ReadSpraySource(const std::string& company, const std::string& sourcePath) {
    TSpraySource source;
    source.strCustomer = company;
    TLocalTime modified;
    if (!sourcePath.empty() && GetFileModifiedTime(sourcePath.c_str(), modified)) {
        source.strFileDate.clear();
        AppendTwoDigits(source.strFileDate, modified.iDay);
        source.strFileDate += '/';
        AppendTwoDigits(source.strFileDate, modified.iMonth);
        source.strFileDate += '/';
        AppendInt(source.strFileDate, modified.iYear);
    }
    source.strFileName = TGisFileShp::FileutilGetName(sourcePath);
    return source;
}

TSprayStepSummary SummarizeSpraySteps(const double* area, const std::uint8_t* spray, const std::uint8_t* boom,
                                      int count) {
    TSprayStepSummary summary;
    if (count <= 0 || area == nullptr) return summary;
    summary.bKnown = true;
    for (int i = 0; i < count; ++i) summary.dArea += area[i];
    summary.bySpray = spray[count - 1];
    summary.byBoom = boom[0];
    return summary;
}

void AppendSprayEventTime(std::string& out, const tagSPRAYREC& sample) {
    if (!IsSprayTimeValid(sample)) {
        out += "Time N/A";
        return;
    }
    const TSprayTime t = UnpackSprayTime(sample);
    const int parts[] = {t.iHour, t.iMinute, t.iSecond, t.iHundredths};
    const char separators[] = " ::.";
    for (int i = 0; i < 4; ++i) {
        out += separators[i];
        AppendTwoDigits(out, parts[i]);
    }
}

void SetSampleRowValues(const tagSPRAYREC& sample, const TSpraySource& source, TSprayTableRow& row) {
    row.strEventTime.clear();
    AppendSprayEventTime(row.strEventTime, sample);
    row.strCustomer = source.strCustomer;
    row.strFileName = source.strFileName;
    row.strFileDate = source.strFileDate;
    row.strFieldName = !sample.strFieldName.empty() ? sample.strFieldName : OrNotAvailable(sample.strName);
    row.strOffset = sample.strOffset == "R" ? "Right" : sample.strOffset == "L" ? "Left" : sample.strOffset;
    row.strLineNum.clear();
    AppendInt(row.strLineNum, sample.sLine);
    row.dSpeed = sample.dSpeed;
    row.dTrack = sample.sTrack / 100.0;
    row.dSwathWidth = sample.dSwathWidth;
    row.dHeight = sample.sHeight / 5;
    row.dAgl = sample.dAgl;
    row.bHasRates = true;
    row.dActualRate = sample.afActualRate[0];
    row.dTargetRate = sample.afTargetRate[0];
    row.Steps = TSprayStepSummary{true, 0.0, sample.bySpray, sample.bySpray};
}

void SetSprayRowPosition(TSprayTableRow& row, double lat, double lon) {
    row.strPosLat.clear();
    AppendFixed(row.strPosLat, lat, 10);
    row.strPosLon.clear();
    AppendFixed(row.strPosLon, lon, 10);
}

void SetSwathRowValues(TFeatureSpray& spray, int first, int last, const TLocRect& box,
                       const TSpraySource& source, TSprayTableRow& row) {
    spray.ComputeSprayStats(first, last, nullptr, nullptr);
    const tagSPRAYREC& end = spray.m_pRecs[last];
    SetSampleRowValues(end, source, row);
    row.strAircraft = OrNotAvailable(spray.m_strAircraft);
    row.strPilot = OrNotAvailable(spray.m_strPilot);
    SetSprayRowPosition(row, (box.dSouth + box.dNorth) / 2, (box.dWest + box.dEast) / 2);
    row.dTrack = static_cast<int>(end.sTrack / 100);
    row.dSwathWidth = spray.m_dSwathWidth;
    row.dHeight = spray.m_dHeight;
    row.dAgl = spray.m_dAgl;
    row.Steps = SummarizeSpraySteps(spray.m_pdStepArea, spray.m_pbySprayFlag, spray.m_pbyBoomFlag,
                                    spray.m_iStepCount);
    row.bHasRates = row.Steps.bKnown && spray.m_pdTargetRate != nullptr && spray.m_pdActualRate != nullptr;
    row.dTargetRate = row.bHasRates ? spray.m_pdTargetRate[0] : 0.0;
    row.dActualRate = row.bHasRates ? spray.m_pdActualRate[0] : 0.0;
}

namespace {
// The cells of a table's columns, named and typed, texts and numbers empty.
std::vector<TSprayTableCell> EmptyCells(TDbfTable table) {
    const auto fields = GetDbfFields(table, true);
    std::vector<TSprayTableCell> cells(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        cells[i].pszColumn = fields[i].pszName;
        cells[i].bNumber = fields[i].cType == 'N';
        cells[i].iDecimals = cells[i].bNumber ? 3 : 0;
    }
    return cells;
}
}  // namespace

std::vector<TSprayTableCell> GetMetricSprayTableCells(const TSprayTableRow& row, long long segmentId) {
    std::vector<TSprayTableCell> cells = EmptyCells(DBF_TABLE_SPRAY);
    cells[0].strText = std::to_string(segmentId);
    const std::string* texts[] = {&row.strCustomer,  &row.strFileName,  &row.strFileDate, &row.strAircraft,
                                  &row.strPilot,     &row.strFieldName, &row.strOffset,   &row.strLineNum,
                                  &row.strEventTime, &row.strPosLat,    &row.strPosLon};
    std::size_t next = 1;
    for (const std::string* text : texts) cells[next++].strText = Trimmed(*text);
    // The numbers carry three decimals, area and rates six, whatever the descriptors declare.
    const double numbers[] = {row.dSpeed * MPH_PER_METRE_PER_SECOND, row.dTrack, row.dSwathWidth, row.dHeight,
                              row.dAgl};
    for (double number : numbers) cells[next++].dNumber = number;
    const double perStep[] = {row.Steps.dArea, row.dTargetRate, row.dActualRate};
    const bool known[] = {row.Steps.bKnown, row.bHasRates, row.bHasRates};
    for (int i = 0; i < 3; ++i) {
        cells[next].dNumber = perStep[i];
        cells[next].bKnown = known[i];
        cells[next++].iDecimals = 6;
    }
    for (std::uint8_t flag : {row.Steps.bySpray, row.Steps.byBoom})
        cells[next++].strText = !row.Steps.bKnown ? "" : flag == 1 ? "T" : flag == 0 ? "F" : "?";
    return cells;
}

std::vector<TSprayTableCell> GetMetricNonSprayTableCells(const tagSPRAYREC& sample, long long sampleId) {
    std::vector<TSprayTableCell> cells = EmptyCells(DBF_TABLE_NONSPRAY);
    cells[0].strText = std::to_string(sampleId);
    cells[1].strText = std::to_string(sample.sLine);
    AppendSprayEventTime(cells[2].strText, sample);
    cells[2].strText = Trimmed(cells[2].strText);
    AppendFixed(cells[3].strText, sample.locPos.dLat, 10);
    AppendFixed(cells[4].strText, sample.locPos.dLon, 10);
    cells[5].dNumber = sample.dSpeed * MPH_PER_METRE_PER_SECOND;
    cells[6].dNumber = sample.sHeight / 5.0;
    cells[7].dNumber = sample.dAgl;
    return cells;
}
