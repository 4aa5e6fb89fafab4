#pragma once
// The .mid half of a MapInfo pair as the complete profile reads it: one row per object of the
// .mif, in the objects' order, its fields apart by the header's delimiter.

#include <cstddef>
#include <string>
#include <vector>

#include <tl_gis/platform/text_file.h>

class TMidTable {
public:
    // Opens the .mid beside the .mif at mifPath (".mid", then ".MID"); false when there is none.
    bool Open(const std::string& mifPath);
    bool IsOpen() const { return m_File.IsOpen(); }
    // Reads the next row into Fields(); false when the table has no more rows. wellFormed is
    // false for a row whose quotes do not pair up (its fields are split as far as they go).
    bool ReadRow(char delimiter, bool& wellFormed);
    const std::vector<std::string>& Fields() const { return m_Fields; }
    // Number of the row last read, from 1.
    long long RowNumber() const { return m_lRow; }
    // Reads the rest of the table and returns how many rows it held.
    long long CountRemainingRows();

private:
    TTextFile m_File;
    std::string m_strLine;
    std::vector<std::string> m_Fields;
    long long m_lRow = 0;
};
