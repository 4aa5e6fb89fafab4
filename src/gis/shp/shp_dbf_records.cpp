// The attribute tables of the export: their headers and one row per shape, in US units
// (miles per hour, feet, acres, US gallons per acre) or metric units, and the event time text
// that rows of both passes show.

#include <cmath>

#include <tl_gis/features/spray_record.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/shp/shp_file_io.h"
#include "platform/units.h"

namespace {
// Writes a table's header at its start; the row length of the fields.
int WriteTableHeader(TByteFile& table, std::string& scratch, std::span<const TDbfField> fields,
                     std::uint32_t recordCount) {
    scratch.clear();
    AppendDbfHeader(scratch, fields, recordCount, GetDbfDateToday());
    table.Seek(0);
    table.Write(scratch.data(), scratch.size());
    return GetDbfRecordLength(fields);
}
}  // namespace

void TGisFileShp::WriteDbfFileHdr(TDbfTable table, std::uint32_t recordCount) {
    m_iRecordLength = WriteTableHeader(m_pIo->m_Out.m_Table, m_strDbfHeader,
                                       GetDbfFields(table, m_bMetric != 0), recordCount);
}

void TGisFileShp::WriteCompleteDbfFileHdr(std::uint32_t recordCount) {
    m_iRecordLength = WriteTableHeader(m_pIo->m_Out.m_Table, m_strDbfHeader,
                                       m_pIo->m_CompleteTable.GetFields(), recordCount);
}

void TGisFileShp::WriteSprayDbfFileHdr(bool) {
    // The complete profile gives the boundaries a table of their own columns.
    if (s_bCompleteProfile && m_iWriteMode == 0)
        WriteCompleteDbfFileHdr(static_cast<std::uint32_t>(m_iShapeRecords));
    else
        WriteDbfFileHdr(m_iWriteMode == 1 ? DBF_TABLE_SPRAY : DBF_TABLE_NONE,
                        static_cast<std::uint32_t>(m_iShapeRecords));
}

void TGisFileShp::WriteNonSprayDbfFileHdr(bool) {
    WriteDbfFileHdr(m_iWriteMode == 2 ? DBF_TABLE_NONSPRAY : DBF_TABLE_NONE,
                    static_cast<std::uint32_t>(m_iNonSprayRecords));
}

void TGisFileShp::WriteDbfEnd() {
    const char end = static_cast<char>(DBF_FILE_END);
    m_pIo->m_Out.m_Table.Write(&end, 1);
}

int TGisFileShp::WriteSprayDbfRecord() {
    const bool us = m_bMetric == 0;
    const double length = us ? FEET_PER_METRE : 1.0;
    m_pIo->m_DbfRecord.Begin(GetDbfFields(DBF_TABLE_SPRAY, !us), s_bCompleteProfile);
    m_pIo->m_DbfRecord.AddInteger(++m_lDbfSerial);
    for (const std::string* text :
         {&m_strCustomer, &m_strFileName, &m_strFileDate, &m_strAircraft, &m_strPilot, &m_strFieldName,
          &m_strOffset, &m_strLineNum, &m_strEventTime, &m_strPosLat, &m_strPosLon})
        m_pIo->m_DbfRecord.AddText(*text);
    m_pIo->m_DbfRecord.AddNumber(m_dSpeed * MPH_PER_METRE_PER_SECOND, 3);
    m_pIo->m_DbfRecord.AddNumber(m_dTrack * length, 3);
    m_pIo->m_DbfRecord.AddNumber(m_dSwathWidth * length, 3);
    m_pIo->m_DbfRecord.AddNumber(m_dHeight * length, 3);
    m_pIo->m_DbfRecord.AddNumber(m_dAgl * length, 3);

    // A polygon stands for several steps: its row carries their summed area, the spray flag of
    // its last step and the boom flag of its first. A run that counted no step has blank values.
    const bool known = m_iStatCount > 0 && m_pdStatArea != nullptr;
    const double area = us ? ACRES_PER_HECTARE : 1.0;
    const double rate = us ? GALLONS_PER_ACRE_PER_LITRE_PER_HECTARE : 1.0;
    if (known) {
        double sum = 0.0;
        for (int i = 0; i < m_iStatCount; ++i) sum += m_pdStatArea[i];
        m_pIo->m_DbfRecord.AddNumber(sum * area, 6);
    } else {
        m_pIo->m_DbfRecord.AddText({});
    }
    switch (s_eESRISprayFormat) {
        case ESRI_SPRAY_POLYGONS:
            if (known && m_pdRunTargetRate != nullptr && m_pdRunActualRate != nullptr) {
                m_pIo->m_DbfRecord.AddNumber(m_pdRunTargetRate[0] * rate, 6);
                m_pIo->m_DbfRecord.AddNumber(m_pdRunActualRate[0] * rate, 6);
            } else {
                m_pIo->m_DbfRecord.AddText({});
                m_pIo->m_DbfRecord.AddText({});
            }
            break;
        case ESRI_SPRAY_POLYLINES:
        case ESRI_SPRAY_POINTS:
        case ESRI_SPRAY_SPOTS:
            m_pIo->m_DbfRecord.AddNumber(m_dTargetRate * rate, 6);
            m_pIo->m_DbfRecord.AddNumber(m_dActualRate * rate, 6);
            break;
        default:
            // Polygons written for a format value out of range carry no rates.
            m_pIo->m_DbfRecord.AddNumber(0.0, 6);
            m_pIo->m_DbfRecord.AddNumber(0.0, 6);
            break;
    }
    if (known) {
        m_pIo->m_DbfRecord.AddFlag(m_pbyStatSpray[m_iStatCount - 1]);
        m_pIo->m_DbfRecord.AddFlag(m_pbyStatBoom[0]);
    }
    const std::string& bytes = m_pIo->m_DbfRecord.Bytes();
    m_pIo->m_Out.m_Table.Write(bytes.data(), bytes.size());
    return 0;
}

int TGisFileShp::WriteNonSprayDbfRecord() {
    const bool us = m_bMetric == 0;
    const double length = us ? FEET_PER_METRE : 1.0;
    m_pIo->m_DbfRecord.Begin(GetDbfFields(DBF_TABLE_NONSPRAY, !us), s_bCompleteProfile);
    m_pIo->m_DbfRecord.AddInteger(++m_lDbfSerial);
    for (const std::string* text : {&m_strSampleLine, &m_strSampleTime, &m_strSampleLat, &m_strSampleLon})
        m_pIo->m_DbfRecord.AddText(*text);
    m_pIo->m_DbfRecord.AddNumber(m_dSampleSpeed * MPH_PER_METRE_PER_SECOND, 3);
    m_pIo->m_DbfRecord.AddNumber(m_dSampleHeight * length, 3);
    m_pIo->m_DbfRecord.AddNumber(m_dSampleAgl * length, 3);
    const std::string& bytes = m_pIo->m_DbfRecord.Bytes();
    m_pIo->m_Out.m_Table.Write(bytes.data(), bytes.size());
    return 0;
}

void TGisFileShp::AppendEventTime(std::string& out, const tagSPRAYREC& sample) {
    if (!IsSprayTimeValid(sample)) {
        out += "Time N/A";
        return;
    }
    const TSprayTime t = UnpackSprayTime(sample);
    const int parts[] = {t.iHour, t.iMinute, t.iSecond, t.iHundredths};
    const char separators[] = " ::.";
    for (int i = 0; i < 4; ++i) {
        out += separators[i];
        if (parts[i] < 10) out += '0';
        AppendInt(out, parts[i]);
    }
}
