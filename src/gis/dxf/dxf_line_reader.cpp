#include "gis/dxf/dxf_line_reader.h"

bool TDxfLineReader::Next(std::string_view& line) {
    if (!m_File.ReadLineView(line, kMaxLine)) return false;
    ++m_iLine;
    if (m_File.LastLineComplete()) return true;
    // Reading the rest may move the buffer under the view, so keep a copy of the start.
    m_strLong.assign(line);
    std::string_view rest;
    while (!m_File.LastLineComplete() && m_File.ReadLineView(rest, kMaxLine)) {
    }
    line = m_strLong;
    return true;
}
