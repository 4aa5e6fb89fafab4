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
    const TSprayTableRow& row = m_SprayRow;
    m_pIo->m_DbfRecord.Begin(GetDbfFields(DBF_TABLE_SPRAY, !us), s_bCompleteProfile);
    m_pIo->m_DbfRecord.AddInteger(++m_lDbfSerial);
    for (const std::string* text : {&row.strCustomer, &row.strFileName, &row.strFileDate, &row.strAircraft,
                                    &row.strPilot, &row.strFieldName, &row.strOffset, &row.strLineNum,
                                    &row.strEventTime, &row.strPosLat, &row.strPosLon})
        m_pIo->m_DbfRecord.AddText(*text);
    m_pIo->m_DbfRecord.AddNumber(row.dSpeed * MPH_PER_METRE_PER_SECOND, 3);
    m_pIo->m_DbfRecord.AddNumber(row.dTrack * length, 3);
    m_pIo->m_DbfRecord.AddNumber(row.dSwathWidth * length, 3);
    m_pIo->m_DbfRecord.AddNumber(row.dHeight * length, 3);
    m_pIo->m_DbfRecord.AddNumber(row.dAgl * length, 3);

    // A polygon stands for several steps (see SummarizeSpraySteps). A run that counted no step
    // has blank values.
    const double area = us ? ACRES_PER_HECTARE : 1.0;
    const double rate = us ? GALLONS_PER_ACRE_PER_LITRE_PER_HECTARE : 1.0;
    if (row.Steps.bKnown)
        m_pIo->m_DbfRecord.AddNumber(row.Steps.dArea * area, 6);
    else
        m_pIo->m_DbfRecord.AddText({});
    switch (s_eESRISprayFormat) {
        case ESRI_SPRAY_POLYGONS:
        case ESRI_SPRAY_POLYLINES:
        case ESRI_SPRAY_POINTS:
        case ESRI_SPRAY_SPOTS:
            if (row.bHasRates) {
                m_pIo->m_DbfRecord.AddNumber(row.dTargetRate * rate, 6);
                m_pIo->m_DbfRecord.AddNumber(row.dActualRate * rate, 6);
            } else {
                m_pIo->m_DbfRecord.AddText({});
                m_pIo->m_DbfRecord.AddText({});
            }
            break;
        default:
            // Polygons written for a format value out of range carry no rates.
            m_pIo->m_DbfRecord.AddNumber(0.0, 6);
            m_pIo->m_DbfRecord.AddNumber(0.0, 6);
            break;
    }
    if (row.Steps.bKnown) {
        m_pIo->m_DbfRecord.AddFlag(row.Steps.bySpray);
        m_pIo->m_DbfRecord.AddFlag(row.Steps.byBoom);
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
