#include "gis/shp/shp_attribute_rows.h"

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/platform/numbers.h>

namespace {
// The file beside the main file with the extension, in lower case or else in upper case, as
// writers on either kind of system name them; empty when neither exists.
std::string FindBeside(const std::string& shpPath, const char* lower, const char* upper) {
    for (const char* extension : {lower, upper}) {
        std::string path = shpPath;
        ChangeExtension(path, extension);
        std::int64_t size = 0;
        if (TByteFile::GetStatus(path.c_str(), size)) return path;
    }
    return {};
}

std::string FileName(const std::string& path) {
    const auto slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// ASCII reads the same in every character set the library knows, so it needs no conversion.
bool IsAscii(const std::string& text) {
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    return true;
}

std::string_view Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return std::string_view(text).substr(first, text.find_last_not_of(' ') - first + 1);
}
}  // namespace

void TShpAttributeRows::Open(const std::string& shpPath, TLoadReport* report) {
    m_pReport = report;
    m_bOpen = false;
    if (TGisFile::s_strIdField.empty() && TGisFile::s_strValueField.empty() &&
        TGisFile::s_strNameField.empty())
        return;
    const std::string table = FindBeside(shpPath, "dbf", "DBF");
    std::string problem;
    if (table.empty()) {
        problem = "there is no .dbf beside the shapefile";
    } else if (!m_Table.Open(table.c_str(), problem)) {
        problem = FileName(table) + ": " + problem;
        m_Table.Close();
    }
    if (!problem.empty()) {
        if (m_pReport != nullptr && m_pReport->Skip(LOAD_SHP_TABLE_NOT_READ, 0))
            m_pReport->SetFirstNote(LOAD_SHP_TABLE_NOT_READ, TLoadReport::EscapeText(problem, 120));
        return;
    }
    const std::vector<std::string> names = m_Table.GetColumnNames();
    m_Columns = FindChosenColumns(names);
    if (m_pReport != nullptr && !m_Columns.Missing.empty()) {
        std::string missing;
        for (const std::string& name : m_Columns.Missing) missing += (missing.empty() ? "" : ", ") + name;
        m_pReport->Skip(LOAD_SHP_COLUMN_MISSING, 0, static_cast<long long>(m_Columns.Missing.size()));
        m_pReport->SetFirstNote(LOAD_SHP_COLUMN_MISSING,
                                TLoadReport::EscapeText(FileName(table) + " has no " + missing, 120));
    }
    m_Wanted.clear();
    for (int column : {m_Columns.iId, m_Columns.iValue, m_Columns.iName})
        if (column >= 0) m_Wanted.push_back(column);
    if (m_Wanted.empty()) {
        m_Table.Close();
        return;
    }
    m_Row.assign(names.size(), std::string());
    ReadCharset(shpPath);
    m_bOpen = true;
}

void TShpAttributeRows::ReadCharset(const std::string& shpPath) {
    m_eEncoding = ENCODING_WINDOWS_1252;
    const std::string cpg = FindBeside(shpPath, "cpg", "CPG");
    if (cpg.empty()) return;
    TByteFile file;
    char text[64] = {};
    if (!file.Open(cpg.c_str(), TByteFile::modeRead)) return;
    const std::size_t length = file.Read(text, sizeof text);
    file.Close();
    if (EncodingFromName(std::string_view(text, length), m_eEncoding)) return;
    if (m_pReport != nullptr && m_pReport->Skip(LOAD_SHP_UNKNOWN_CHARSET, 0))
        m_pReport->SetFirstNote(
            LOAD_SHP_UNKNOWN_CHARSET,
            FileName(cpg) + " says " + TLoadReport::EscapeText(std::string_view(text, length)));
}

const TChosenValues* TShpAttributeRows::Next(long long recordNumber) {
    if (!m_bOpen) return nullptr;
    if (!m_Table.NextRow(m_Row, m_Wanted)) {
        if (m_pReport != nullptr && m_pReport->Skip(LOAD_SHP_NO_TABLE_ROW, recordNumber)) {
            std::string note = "the table announces ";
            AppendInt(note, m_Table.GetDeclaredRows());
            note += " rows";
            if (m_Table.GetRowsInFile() < static_cast<std::int64_t>(m_Table.GetDeclaredRows())) {
                note += " and its file holds ";
                AppendInt(note, m_Table.GetRowsInFile());
            }
            m_pReport->SetFirstNote(LOAD_SHP_NO_TABLE_ROW, note);
        }
        return nullptr;
    }
    m_Values = ReadChosenValues(m_Columns, m_Row);
    if (m_Values.bHasId && !IsAscii(m_Values.strId)) m_Values.strId = ToUtf8(m_Values.strId, m_eEncoding);
    if (m_Values.bHasName && !IsAscii(m_Values.strName))
        m_Values.strName = ToUtf8(m_Values.strName, m_eEncoding);
    // A blank number is the table's way of giving none; any other text that is no number is noted.
    if (m_pReport != nullptr && m_Columns.iValue >= 0 && !m_Values.bHasValue) {
        const std::string_view text = Trimmed(m_Row[static_cast<std::size_t>(m_Columns.iValue)]);
        if (!text.empty() && m_pReport->Skip(LOAD_SHP_VALUE_NOT_NUMBER, recordNumber))
            m_pReport->SetFirstNote(LOAD_SHP_VALUE_NOT_NUMBER, TLoadReport::EscapeText(text));
    }
    return &m_Values;
}
