#include "gis/midmif/mid_table.h"

#include <tl_gis/gis/gis_file.h>
#include "gis/delimited_row.h"

bool TMidTable::Open(const std::string& mifPath) {
    for (const char* extension : {".mid", ".MID"}) {
        std::string path = mifPath;
        ChangeExtension(path, extension);
        if (m_File.Open(path.c_str(), TTextFile::modeRead)) return true;
    }
    return false;
}

bool TMidTable::ReadRow(char delimiter, bool& wellFormed) {
    if (!m_File.IsOpen() || !m_File.ReadLine(m_strLine)) return false;
    ++m_lRow;
    std::size_t count = 0;
    wellFormed = SplitDelimitedRow(m_strLine, delimiter, m_Fields, count);
    // Rows of a table mostly have the same width, so the strings stay and are reused.
    m_Fields.resize(count);
    return true;
}

long long TMidTable::CountRemainingRows() {
    long long rows = 0;
    while (m_File.IsOpen() && m_File.ReadLine(m_strLine)) ++rows;
    return rows;
}
