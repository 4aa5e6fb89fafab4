#pragma once
// Reading a dBASE table (dBASE III and IV, and the FoxPro tables of the same layout): the header,
// the field descriptors and the rows in order. Knows nothing of maps. Every length and count the
// header gives is checked against the file's size before it is used, and nothing is allocated
// from a count the file has not been seen to hold: a table that cannot be read says why.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/byte_file.h"

struct TDbfColumn {
    std::string strName;
    char cType = 'C';
    std::size_t nOffset = 0;  // in the row, after its deletion flag
    std::size_t nWidth = 0;
};

class TDbfReader {
public:
    // Opens the table and reads its header and descriptors. False with the problem when the
    // table cannot be opened or its header does not fit the file (a header length past the end,
    // fields wider than the rows, a row length of 0).
    bool Open(const char* path, std::string& problem);
    void Close() { m_File.Close(); }

    const std::vector<TDbfColumn>& GetColumns() const { return m_Columns; }
    std::vector<std::string> GetColumnNames() const;
    // The row count of the header, and the whole rows the file holds after its header.
    std::uint32_t GetDeclaredRows() const { return m_uDeclaredRows; }
    std::int64_t GetRowsInFile() const { return m_iRowsInFile; }

    // Reads the next row: the text of every column named in wanted goes to row[column] (row has
    // a place for every column), as the file holds it, blanks kept. False when the file or the
    // header's count has no further row.
    bool NextRow(std::vector<std::string>& row, std::span<const int> wanted);

private:
    TByteFile m_File;
    std::vector<TDbfColumn> m_Columns;
    std::uint32_t m_uDeclaredRows = 0;
    std::int64_t m_iRowsInFile = 0;
    std::int64_t m_iRowsRead = 0;
    std::size_t m_nRowLength = 0;
    // Rows are read many at a time: a block of whole rows, and the next unread row in it.
    std::string m_strBlock;
    std::size_t m_nBlockRow = 0;
    std::size_t m_nBlockRows = 0;
};
