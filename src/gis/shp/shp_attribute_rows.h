#pragma once
// The attributes a complete-profile load takes from the dBASE table beside a shapefile: the
// host's chosen columns of each row, rows matched to records by position, texts in UTF-8 by the
// character set of the .cpg file (Windows Latin 1 without one). What keeps the table or a row
// from being used goes to the load report; the shapes load whatever the table holds.

#include <string>
#include <vector>

#include "gis/attribute_columns.h"
#include "gis/shp/dbf_reader.h"
#include "platform/text_encoding.h"

class TLoadReport;

class TShpAttributeRows {
public:
    // Opens the table beside the main file when the host chose a column; notes in the report
    // why it cannot be used, and which chosen columns it lacks.
    void Open(const std::string& shpPath, TLoadReport* report);
    // The chosen values of the next record in the file, or null when the table gives it none
    // (then counted in the report at the record's number).
    const TChosenValues* Next(long long recordNumber);

private:
    void ReadCharset(const std::string& shpPath);

    TLoadReport* m_pReport = nullptr;
    bool m_bOpen = false;
    TDbfReader m_Table;
    TChosenColumns m_Columns;
    std::vector<int> m_Wanted;
    std::vector<std::string> m_Row;
    TChosenValues m_Values;
    TTextEncoding m_eEncoding = ENCODING_WINDOWS_1252;
};
