#include "gis/shp/dbf_reader.h"

#include <algorithm>

#include <tl_gis/platform/numbers.h>
#include "gis/byte_order.h"
#include "gis/shp/dbf_table.h"

namespace {
std::string Int(long long v) {
    std::string s;
    AppendInt(s, v);
    return s;
}

// A descriptor's name: up to eleven bytes, ended by a NUL; some writers pad it with blanks.
std::string DescriptorName(const unsigned char* descriptor) {
    std::size_t length = 0;
    while (length < 11 && descriptor[length] != 0) ++length;
    while (length > 0 && descriptor[length - 1] == ' ') --length;
    return std::string(reinterpret_cast<const char*>(descriptor), length);
}
}  // namespace

bool TDbfReader::Open(const char* path, std::string& problem) {
    m_Columns.clear();
    m_iRowsRead = 0;
    m_nBlockRow = m_nBlockRows = 0;
    if (!m_File.Open(path, TByteFile::modeRead)) {
        problem = "it cannot be opened";
        return false;
    }
    const std::int64_t fileLength = m_File.GetLength();
    unsigned char head[DBF_FILE_HEADER_BYTES];
    if (fileLength < static_cast<std::int64_t>(sizeof head) ||
        m_File.Read(head, sizeof head) != sizeof head) {
        problem = "it has " + Int(fileLength) + " bytes, fewer than the 32 of a dBASE header";
        return false;
    }
    m_uDeclaredRows = readLE32(head + 4);
    const std::size_t headerLength = readLE16(head + 8);
    m_nRowLength = readLE16(head + 10);
    if (headerLength < DBF_FILE_HEADER_BYTES || static_cast<std::int64_t>(headerLength) > fileLength) {
        problem =
            "its header length of " + Int(static_cast<long long>(headerLength)) + " bytes " +
            (headerLength < DBF_FILE_HEADER_BYTES ? "is shorter than the 32-byte header itself"
                                                  : "runs past the file's " + Int(fileLength) + " bytes");
        return false;
    }
    if (m_nRowLength == 0) {
        problem = "its rows are 0 bytes long";
        return false;
    }
    // The descriptors run to the 0x0D after them, or to the end of the header when a writer left
    // it out; the header length has been checked against the file, so reading it is safe.
    std::string descriptors(headerLength - DBF_FILE_HEADER_BYTES, '\0');
    if (m_File.Read(descriptors.data(), descriptors.size()) != descriptors.size()) {
        problem = "its header cannot be read";
        return false;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(descriptors.data());
    std::size_t offset = 0;
    for (std::size_t at = 0; at + DBF_DESCRIPTOR_BYTES <= descriptors.size() && bytes[at] != DBF_HEADER_END;
         at += DBF_DESCRIPTOR_BYTES) {
        const unsigned char* d = bytes + at;
        TDbfColumn column;
        column.strName = DescriptorName(d);
        column.cType = static_cast<char>(d[11]);
        // Numbers keep their decimal count in byte 17; the other types may use it as the high
        // byte of a width above 255, as FoxPro and shapelib do for long texts.
        const bool number = column.cType == 'N' || column.cType == 'F';
        column.nWidth = d[16] + (number ? 0u : 256u * d[17]);
        column.nOffset = offset;
        offset += column.nWidth;
        m_Columns.push_back(std::move(column));
    }
    if (1 + offset > m_nRowLength) {
        problem = "its " + Int(static_cast<long long>(m_Columns.size())) + " fields are " +
                  Int(static_cast<long long>(offset)) + " bytes wide, but its rows hold " +
                  Int(static_cast<long long>(m_nRowLength)) + " bytes with the deletion flag";
        m_Columns.clear();
        return false;
    }
    m_iRowsInFile =
        (fileLength - static_cast<std::int64_t>(headerLength)) / static_cast<std::int64_t>(m_nRowLength);
    return m_File.Seek(static_cast<std::int64_t>(headerLength));
}

std::vector<std::string> TDbfReader::GetColumnNames() const {
    std::vector<std::string> names;
    names.reserve(m_Columns.size());
    for (const TDbfColumn& c : m_Columns) names.push_back(c.strName);
    return names;
}

bool TDbfReader::NextRow(std::vector<std::string>& row, std::span<const int> wanted) {
    const std::int64_t rows = std::min<std::int64_t>(m_iRowsInFile, m_uDeclaredRows);
    if (m_iRowsRead >= rows) return false;
    if (m_nBlockRow >= m_nBlockRows) {
        // About 64 KiB of rows at a time (one row at least), never more than the file holds.
        constexpr std::size_t kBlockBytes = 64 * 1024;
        const auto left = static_cast<std::size_t>(rows - m_iRowsRead);
        const std::size_t count = std::min(left, std::max<std::size_t>(1, kBlockBytes / m_nRowLength));
        m_strBlock.resize(count * m_nRowLength);
        m_nBlockRows = m_File.Read(m_strBlock.data(), m_strBlock.size()) / m_nRowLength;
        m_nBlockRow = 0;
        if (m_nBlockRows == 0) return false;
    }
    const std::string_view bytes =
        std::string_view(m_strBlock).substr(m_nBlockRow++ * m_nRowLength, m_nRowLength);
    ++m_iRowsRead;
    for (int c : wanted) {
        if (c < 0 || static_cast<std::size_t>(c) >= m_Columns.size() ||
            static_cast<std::size_t>(c) >= row.size())
            continue;
        const TDbfColumn& column = m_Columns[static_cast<std::size_t>(c)];
        row[static_cast<std::size_t>(c)].assign(bytes.substr(1 + column.nOffset, column.nWidth));
    }
    return true;
}
